#include <norva/sources/memory/RangeDataSet.h>

#include <chrono>
#include <cstdint>
#include <deque>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <norva/platform/Exceptions.h>
#include <tests/ErrorText.h>
#include <tests/Vectors.h>

namespace norva {
namespace {

using namespace std::chrono_literals;
using std::chrono::duration;
using std::chrono::hh_mm_ss;
using std::chrono::local_days;
using std::chrono::local_seconds;
using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;
using std::chrono::sys_time;
using std::chrono::year_month_day;
using tests::ErrorText;

class TRangeDataSetTest : public testing::Test {
 private:
  tests::TLocaleScope Locale_{TFormatSettings()};
};

struct TPerson {
  std::string Name;
  int Age;
  std::optional<double> Height;

  std::string Initial() const { return Name.substr(0, 1); }
};
const std::vector<TPerson> People = {
    {"Ann", 31, 1.75        },
    {"Bob", 42, std::nullopt},
    {"Cid", 53, 1.5         },
};

// The values of the current record, with `|` between.
std::string Row(const TDataSet& Set) {
  std::string row;
  for (int i = 0; i < Set.FieldCount(); ++i) {
    const TField& field = Set.Fields(i);
    row += (i > 0 ? "|" : "") + (field.IsNull() ? "null" : field.AsString());
  }
  return row;
}

std::vector<std::string> AllRows(TDataSet& Set) {
  std::vector<std::string> rows;
  for (Set.First(); !Set.Eof(); Set.Next()) rows.push_back(Row(Set));
  return rows;
}

TEST_F(TRangeDataSetTest, ReadsMembersFunctionsAndCallables) {
  TRangeDataSet set(People, Column("Name", &TPerson::Name), Column("Age", &TPerson::Age),
                    Column("Height", &TPerson::Height), Column("Initial", &TPerson::Initial),
                    Column("Months", [](const TPerson& P) { return P.Age * 12; }));
  EXPECT_EQ(AllRows(set), (std::vector<std::string>{"Ann|31|1.75|A|372", "Bob|42|null|B|504",
                                                    "Cid|53|1.5|C|636"}));
}

struct FieldCase {
  TFieldType Type;
  int Size;
  const char* Text;
};

// The first record of `Set`, a case for each field.
template <std::size_t N>
void ExpectFields(const TDataSet& Set, const FieldCase (&Cases)[N]) {
  ASSERT_EQ(Set.FieldCount(), static_cast<int>(N));
  for (int i = 0; i < Set.FieldCount(); ++i) {
    const TField& field = Set.Fields(i);
    SCOPED_TRACE(field.FieldName);
    EXPECT_EQ(EnumToStr(field.DataType), EnumToStr(Cases[i].Type));
    EXPECT_EQ(field.Size, Cases[i].Size);
    EXPECT_EQ(field.IsNull() ? "null" : field.AsString(), Cases[i].Text);
  }
}

TEST_F(TRangeDataSetTest, DeducesTheFieldTypeOfNumbers) {
  struct TRecord {
    bool Bool = true;
    std::int8_t Int8 = -128;
    std::uint8_t UInt8 = 255;
    std::int16_t Int16 = -32768;
    std::uint16_t UInt16 = 65535;
    std::int32_t Int32 = INT32_MIN;
    std::uint32_t UInt32 = UINT32_MAX;
    std::int64_t Int64 = INT64_MIN;
    std::uint64_t UInt64 = INT64_MAX;
    float Float = 0.5f;
    double Double = 0.1;
    long double LongDouble = 2.5L;
    std::optional<bool> MayBool = false;
    std::optional<int> NoInt;
  };
  const TRecord records[1];
  const TRangeDataSet set(records, Column("Bool", &TRecord::Bool), Column("Int8", &TRecord::Int8),
                          Column("UInt8", &TRecord::UInt8), Column("Int16", &TRecord::Int16),
                          Column("UInt16", &TRecord::UInt16), Column("Int32", &TRecord::Int32),
                          Column("UInt32", &TRecord::UInt32), Column("Int64", &TRecord::Int64),
                          Column("UInt64", &TRecord::UInt64), Column("Float", &TRecord::Float),
                          Column("Double", &TRecord::Double),
                          Column("LongDouble", &TRecord::LongDouble),
                          Column("MayBool", &TRecord::MayBool), Column("NoInt", &TRecord::NoInt));
  const FieldCase cases[] = {
      {ftBoolean,  0, "True"                },
      {ftSmallint, 0, "-128"                },
      {ftSmallint, 0, "255"                 },
      {ftSmallint, 0, "-32768"              },
      {ftWord,     0, "65535"               },
      {ftInteger,  0, "-2147483648"         },
      {ftLargeint, 0, "4294967295"          },
      {ftLargeint, 0, "-9223372036854775808"},
      {ftLargeint, 0, "9223372036854775807" },
      {ftFloat,    0, "0.5"                 },
      {ftFloat,    0, "0.1"                 },
      {ftFloat,    0, "2.5"                 },
      {ftBoolean,  0, "False"               },
      {ftInteger,  0, "null"                },
  };
  ExpectFields(set, cases);
}

TEST_F(TRangeDataSetTest, DeducesTheFieldTypeOfTexts) {
  struct TRecord {
    std::string String = "a text too long for the short-string buffer";
    std::string_view View = "view";
    const char* Pointer = "pointer";
    const char* NoPointer = nullptr;
    char Ended[4] = "ab";
    char Full[4] = {'a', 'b', 'c', 'd'};
    char Char = 'c';
    std::optional<std::string> MayString = "maybe";
    std::optional<std::string> NoString;
  };
  const TRecord records[1];
  const TRangeDataSet set(records, Column("String", &TRecord::String),
                          Column("View", &TRecord::View), Column("Pointer", &TRecord::Pointer),
                          Column("NoPointer", &TRecord::NoPointer),
                          Column("Ended", &TRecord::Ended), Column("Full", &TRecord::Full),
                          Column("Char", &TRecord::Char), Column("MayString", &TRecord::MayString),
                          Column("NoString", &TRecord::NoString),
                          Column("CharCopy", [](const TRecord& R) { return R.Char; }),
                          Column("NoStringCopy", [](const TRecord& R) { return R.NoString; }));
  const FieldCase cases[] = {
      {ftString, 255, "a text too long for the short-string buffer"},
      {ftString, 255, "view"                                       },
      {ftString, 255, "pointer"                                    },
      {ftString, 255, "null"                                       },
      {ftString, 4,   "ab"                                         },
      {ftString, 4,   "abcd"                                       },
      {ftString, 1,   "c"                                          },
      {ftString, 255, "maybe"                                      },
      {ftString, 255, "null"                                       },
      {ftString, 1,   "c"                                          },
      {ftString, 255, "null"                                       },
  };
  ExpectFields(set, cases);
}

TEST_F(TRangeDataSetTest, DeducesTheFieldTypeOfDatesAndTimes) {
  static constexpr sys_days day = 2024y / 1 / 31;
  struct TRecord {
    year_month_day Date = day;
    year_month_day FirstDate = 1y / 1 / 1;
    sys_days SysDays = day;
    local_days LocalDays{day.time_since_epoch()};
    sys_seconds Seconds = day + 13h + 5min + 9s;
    sys_seconds LastMinute = sys_days(9999y / 12 / 31) + 23h + 59min;
    sys_seconds BeforeDay0 = sys_days(1899y / 12 / 29) + 6h;
    sys_time<microseconds> Microseconds = day + 9999999us;
    local_seconds LocalSeconds{day.time_since_epoch() + 6h};
    hh_mm_ss<seconds> Clock{86399s};
    minutes Midnight{0};
    duration<double> Fraction{61.5};
    std::optional<year_month_day> LeapDay = 2024y / 2 / 29;
    std::optional<seconds> NoTime;
  };
  const TRecord records[1];
  const TRangeDataSet set(
      records, Column("Date", &TRecord::Date), Column("FirstDate", &TRecord::FirstDate),
      Column("SysDays", &TRecord::SysDays), Column("LocalDays", &TRecord::LocalDays),
      Column("Seconds", &TRecord::Seconds), Column("LastMinute", &TRecord::LastMinute),
      Column("BeforeDay0", &TRecord::BeforeDay0), Column("Microseconds", &TRecord::Microseconds),
      Column("LocalSeconds", &TRecord::LocalSeconds), Column("Clock", &TRecord::Clock),
      Column("Midnight", &TRecord::Midnight), Column("Fraction", &TRecord::Fraction),
      Column("LeapDay", &TRecord::LeapDay), Column("NoTime", &TRecord::NoTime));
  const FieldCase cases[] = {
      {ftDate,     0, "2024-01-31"         },
      {ftDate,     0, "0001-01-01"         },
      {ftDate,     0, "2024-01-31"         },
      {ftDate,     0, "2024-01-31"         },
      {ftDateTime, 0, "2024-01-31 13:05:09"},
      {ftDateTime, 0, "9999-12-31 23:59:00"},
      {ftDateTime, 0, "1899-12-29 06:00:00"},
      {ftDateTime, 0, "2024-01-31 00:00:09"},
      {ftDateTime, 0, "2024-01-31 06:00:00"},
      {ftTime,     0, "23:59:59"           },
      {ftTime,     0, "00:00:00"           },
      {ftTime,     0, "00:01:01"           },
      {ftDate,     0, "2024-02-29"         },
      {ftTime,     0, "null"               },
  };
  ExpectFields(set, cases);
}

TEST_F(TRangeDataSetTest, RefusesValuesThatNoFieldHolds) {
  struct TRecord {
    std::uint64_t Large = std::uint64_t{INT64_MAX} + 1;
    year_month_day NoDate = 2023y / 2 / 29;
    sys_days TooLate = 10000y / 1 / 1;
    sys_seconds TooEarly = sys_days(1y / 1 / 1) - 1s;
    sys_seconds Min = sys_seconds::min();
    milliseconds Negative{-1};
    minutes WholeDay{1440};
    std::optional<minutes> MoreThanADay{1441};
  };
  const TRecord records[2];
  TRangeDataSet set(records, Column("Large", &TRecord::Large), Column("NoDate", &TRecord::NoDate),
                    Column("TooLate", &TRecord::TooLate), Column("TooEarly", &TRecord::TooEarly),
                    Column("Min", &TRecord::Min), Column("Negative", &TRecord::Negative),
                    Column("WholeDay", &TRecord::WholeDay),
                    Column("MoreThanADay", &TRecord::MoreThanADay));
  set.Next();
  const char* const errors[] = {
      "field \"Large\": 9223372036854775808 does not fit ftLargeint",
      "field \"NoDate\": the date 2023-02-29 does not fit ftDate",
      "field \"TooLate\": day number 2958466 does not fit ftDate",
      "field \"TooEarly\": day number -693594 does not fit ftDateTime",
      "field \"Min\": day number -106751991141732 does not fit ftDateTime",
      "field \"Negative\": -0.001 seconds does not fit ftTime",
      "field \"WholeDay\": 86400 seconds does not fit ftTime",
      "field \"MoreThanADay\": 86460 seconds does not fit ftTime",
  };
  ASSERT_EQ(set.FieldCount(), static_cast<int>(std::size(errors)));
  for (int i = 0; i < set.FieldCount(); ++i) {
    EXPECT_EQ(ErrorText<EDatabaseError>([&] { set.Fields(i).Value(); }),
              std::string("Record 2, ") + errors[i]);
  }
}

TEST_F(TRangeDataSetTest, RefusesTwoColumnsOfOneName) {
  EXPECT_EQ(ErrorText<EDatabaseError>([] {
              TRangeDataSet set(People, Column("Name", &TPerson::Name),
                                Column("NAME", &TPerson::Initial));
            }),
            "There is a field \"NAME\" already");
}

TEST_F(TRangeDataSetTest, TextsStayValidUntilTheSetMoves) {
  struct TRecord {
    std::string Text;
  };
  const std::vector<TRecord> records = {{"a text too long for the short-string buffer"}, {"b"}};
  TRangeDataSet set(records,
                    Column("Copy", [](const TRecord& R) { return std::optional(R.Text + "!"); }));
  const TFieldValue first = set.Fields(0).Value();
  EXPECT_FALSE(set.Fields(0).IsNull());
  EXPECT_EQ(set.Fields(0).Value().Text, first.Text);
  EXPECT_EQ(first.Text, "a text too long for the short-string buffer!");
}

TEST_F(TRangeDataSetTest, ReferencesTheContainer) {
  std::vector<TPerson> people;
  TRangeDataSet set(people, Column("Name", &TPerson::Name));
  EXPECT_TRUE(set.IsEmpty());
  people = People;  // after construction, and without First
  EXPECT_EQ(Row(set), "Ann");
  set.Next();
  people[1].Name = "Bea";
  EXPECT_EQ(Row(set), "Bea");
  people.clear();
  people.shrink_to_fit();
  people.push_back({"Dan", 20, {}});
  EXPECT_EQ(AllRows(set), std::vector<std::string>{"Dan"});
}

TEST_F(TRangeDataSetTest, ReadsViewsTemporariesAndPointers) {
  TRangeDataSet filtered(People | std::views::filter([](const TPerson& P) { return P.Age > 40; }),
                         Column("Name", &TPerson::Name));
  EXPECT_EQ(AllRows(filtered), (std::vector<std::string>{"Bob", "Cid"}));

  int made = 0;
  TRangeDataSet transformed(People | std::views::transform([&made](const TPerson& P) {
                              ++made;
                              return TPerson{P.Name + P.Name, P.Age, {}};
                            }),
                            Column("Name", &TPerson::Name), Column("Age", &TPerson::Age));
  EXPECT_EQ(AllRows(transformed),
            (std::vector<std::string>{"AnnAnn|31", "BobBob|42", "CidCid|53"}));
  EXPECT_EQ(made, 3);  // once a record, not once a field

  TRangeDataSet owned(std::deque<TPerson>(People.begin(), People.end()),
                      Column("Age", &TPerson::Age));
  EXPECT_EQ(AllRows(owned), (std::vector<std::string>{"31", "42", "53"}));

  std::vector<std::unique_ptr<TPerson>> pointers;
  pointers.push_back(std::make_unique<TPerson>(People[2]));
  TRangeDataSet pointed(pointers, Column("Name", &TPerson::Name));
  EXPECT_EQ(Row(pointed), "Cid");
}

}  // namespace
}  // namespace norva
