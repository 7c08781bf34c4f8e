#include <norva/sources/memory/MemoryDataSet.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <norva/platform/Exceptions.h>
#include <tests/ErrorText.h>
#include <tests/Vectors.h>

namespace norva {
namespace {

using tests::ErrorText;

class TMemoryDataSetTest : public testing::Test {
 private:
  tests::TLocaleScope Locale_{TFormatSettings()};
};

struct ValueCase {
  TFieldType Type;
  TMemoryValue Value;
  TValueKind Kind;
  const char* Text;
};
const ValueCase ValueCases[] = {
    {ftString, "Ann",              vkText,                 "Ann"                     },
    {ftString, "",                 vkText,                 ""                        },
    {ftBlob,   std::string("a\0b", 2),                     vkText,                     "a"},
    {ftMemo,        std::string_view("memo"),                     vkText,            "memo"           },
    {ftString,        nullptr,                   vkNull,                           ""                 },
    {ftInteger,        std::nullopt,                  vkNull,                     ""      },
    {ftInteger,        std::optional<int>(),                  vkNull,             ""         },
    {ftInteger,        std::optional<int>(7),                  vkInteger,            "7"  },
    {ftSmallint,        -32768,                 vkInteger,                          "-32768"                        },
    {ftSmallint,        32767,                 vkInteger,                           "32767"   },
    {ftWord,        65535,                     vkInteger,                               "65535"                        },
    {ftInteger,        INT32_MIN,                  vkInteger,                        "-2147483648"},
    {ftAutoInc,        INT32_MAX,                  vkInteger,                        "2147483647"                        },
    {ftLargeint,        INT64_MAX,                 vkInteger,                       "9223372036854775807"},
    {ftFloat,        12.5,                    vkFloat,                               "12.5"                               },
    {ftFloat,        3,                    vkFloat,                                  "3"  }, // an integer becomes a float
    {ftCurrency,        1.25f,                 vkFloat,                           "1.25"                           },
    {ftBoolean,        true,                  vkBoolean,                             "True" },
    {ftDate,        TMemoryValue::DateTime(45322),                     vkDateTime,       "2024-01-31" },
    {ftTime,        TMemoryValue::DateTime(0.5),                     vkDateTime,         "12:00:00"   },
    {ftDateTime,        TMemoryValue::DateTime(45322.5),                 vkDateTime, "2024-01-31 12:00:00"},
    {ftUnknown,        false,                  vkBoolean,                            "False"                              },
};

TEST_F(TMemoryDataSetTest, GivesBackWhatItHolds) {
  for (const ValueCase& c : ValueCases) {
    SCOPED_TRACE(testing::Message() << EnumToStr(c.Type) << " " << c.Text);
    TMemoryDataSet set({
        {"Before", ftInteger},
        {"Field",  c.Type   }
    });
    set.Append({1, c.Value});
    const TField& field = set.FieldByName("field");
    EXPECT_EQ(field.Value().Kind, c.Kind);
    EXPECT_EQ(field.IsNull(), c.Kind == vkNull);
    if (c.Type != ftBlob) {
      EXPECT_EQ(field.AsString(), c.Text);
    } else {
      EXPECT_EQ(field.AsString(), std::string("a\0b", 2));
    }
  }
}

struct MisfitCase {
  TFieldType Type;
  TMemoryValue Value;
  const char* Error;  // after the record and the field
};
const MisfitCase MisfitCases[] = {
    {ftString,   5,                               "5 does not fit ftString"                   },
    {ftString,   "Zoë W.",                       "\"Zoë W.\" is longer than 5 characters"   },
    {ftInteger,  "abc",                           "\"abc\" does not fit ftInteger"            },
    {ftInteger,  1.5,                             "1.5 does not fit ftInteger"                },
    {ftInteger,  true,                            "True does not fit ftInteger"               },
    {ftSmallint, 32768,                           "32768 does not fit ftSmallint"             },
    {ftSmallint, -32769,                          "-32769 does not fit ftSmallint"            },
    {ftWord,     -1,                              "-1 does not fit ftWord"                    },
    {ftWord,     65536,                           "65536 does not fit ftWord"                 },
    {ftInteger,  2147483648,                      "2147483648 does not fit ftInteger"         },
    {ftBoolean,  1,                               "1 does not fit ftBoolean"                  },
    {ftFloat,    "1.5",                           "\"1.5\" does not fit ftFloat"              },
    {ftDate,     45322.0,                         "45322 does not fit ftDate"                 },
    {ftDate,     TMemoryValue::DateTime(2958466), "day number 2958466 does not fit ftDate"    },
    {ftDateTime, TMemoryValue::DateTime(-693594), "day number -693594 does not fit ftDateTime"},
    {ftLargeint, TMemoryValue::DateTime(45322.5), "day number 45322.5 does not fit ftLargeint"},
};

TEST_F(TMemoryDataSetTest, RefusesValuesThatDoNotFit) {
  for (const MisfitCase& c : MisfitCases) {
    SCOPED_TRACE(c.Error);
    TMemoryDataSet set({
        {"Id",    ftInteger                 },
        { "Field", c.Type, c.Type == ftString ? 5 : 0}
    });
    set.Append({1, nullptr});
    EXPECT_EQ(ErrorText<EDatabaseError>([&] {
                set.Append({2, c.Value});
              }),
              std::string("Record 2, field \"Field\": ") + c.Error);
    EXPECT_EQ(set.RecordCount(), 1);
  }
}

TEST_F(TMemoryDataSetTest, MeasuresTextsInCharacters) {
  TMemoryDataSet set({
      {"Name", ftString, 5}
  });
  set.Append({"Zoë W"});  // 6 bytes
  EXPECT_EQ(set.Fields(0).AsString(), "Zoë W");
}

TEST_F(TMemoryDataSetTest, RefusesIntegersAbove64Bits) {
  EXPECT_EQ(ErrorText<EConvertError>([] { TMemoryValue(UINT64_MAX); }),
            "\"18446744073709551615\" is not a valid integer value");
}

TEST_F(TMemoryDataSetTest, RefusesAnotherNumberOfValues) {
  TMemoryDataSet set({
      {"A", ftInteger},
      {"B", ftInteger}
  });
  set.Append({1, 2});
  EXPECT_EQ(ErrorText<EDatabaseError>([&] { set.Append({3}); }),
            "Record 2 has 1 values for 2 fields");
  EXPECT_EQ(ErrorText<EDatabaseError>([&] {
              set.Append({3, 4, 5});
            }),
            "Record 2 has 3 values for 2 fields");
}

TEST_F(TMemoryDataSetTest, TakesFieldsUntilTheFirstRecord) {
  TMemoryDataSet set;
  set.AddField("Id", ftSmallint);
  TField& name = set.AddField("Name", ftString, 30);
  EXPECT_EQ(name.Index, 1);
  EXPECT_EQ(name.Size, 30);
  EXPECT_EQ(name.DisplayWidth, 30);
  EXPECT_EQ(ErrorText<EDatabaseError>([&] { set.AddField("ID", ftFloat); }),
            "There is a field \"ID\" already");
  set.Append({1, "Ann"});
  EXPECT_EQ(ErrorText<EDatabaseError>([&] { set.AddField("Age", ftInteger); }),
            "Field \"Age\" cannot be added: the set has records already");
  EXPECT_EQ(set.FieldCount(), 2);
}

TEST_F(TMemoryDataSetTest, RecordsMayComeAndGo) {
  TMemoryDataSet set({
      {"Id", ftInteger}
  });
  EXPECT_TRUE(set.Eof());
  set.Append({1});
  EXPECT_FALSE(set.Eof());
  set.Append({2});
  set.Next();
  EXPECT_EQ(set.Fields(0).AsString(), "2");
  set.Clear();
  EXPECT_TRUE(set.IsEmpty());
  set.Append({3});
  EXPECT_EQ(set.Fields(0).AsString(), "3");
  EXPECT_EQ(set.RecNo(), 1);
}

}  // namespace
}  // namespace norva
