#include <norva/sources/memory/MemoryDataSet.h>

#include <cstdint>
#include <optional>
#include <string>

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
    {ftBlob,   std::string("a\0b", 2),                     vkText,                     "a"},
    {ftString,        nullptr,                   vkNull,                           ""                            },
    {ftInteger,        std::optional<int>(7),                  vkInteger,            "7"},
    {ftSmallint,        32767,                 vkInteger,                           "32767"                                            },
    {ftWord,        65535,                     vkInteger,                               "65535"},
    {ftInteger,        INT32_MIN,                  vkInteger,                        "-2147483648"                                        },
    {ftLargeint,        INT64_MAX,                 vkInteger,                       "9223372036854775807"},
    {ftFloat,        3,                    vkFloat,                                  "3"                                                  }, // an integer becomes a float
    {ftCurrency,        1.25f,                 vkFloat,                           "1.25"},
    {ftBoolean,        true,                  vkBoolean,                             "True"                                                 },
    {ftDateTime,        TMemoryValue::DateTime(45322.5),                 vkDateTime, "2024-01-31 12:00:00"},
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
    {ftInteger,  1.5,                             "1.5 does not fit ftInteger"                },
    {ftSmallint, 32768,                           "32768 does not fit ftSmallint"             },
    {ftWord,     -1,                              "-1 does not fit ftWord"                    },
    {ftBoolean,  1,                               "1 does not fit ftBoolean"                  },
    {ftDate,     45322.0,                         "45322 does not fit ftDate"                 },
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
