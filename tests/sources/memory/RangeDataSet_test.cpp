#include <norva/sources/memory/RangeDataSet.h>

#include <chrono>
#include <cstdint>
#include <deque>
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
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;
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

/// "ftInteger 5": how a column of this value shows it, with the size if it has one.
template <class T>
std::string Shown(const T& Value) {
  const int record[1] = {};
  const TRangeDataSet set(record, Column("F", [&](const int&) -> const T& { return Value; }));
  const TField& field = set.Fields(0);
  return std::string(EnumToStr(field.DataType)) +
         (field.Size > 0 ? "(" + std::to_string(field.Size) + ") " : " ") + Row(set);
}

TEST_F(TRangeDataSetTest, DeducesTheFieldTypeOfNumbers) {
  EXPECT_EQ(Shown(true), "ftBoolean True");
  EXPECT_EQ(Shown(std::int8_t{-128}), "ftSmallint -128");
  EXPECT_EQ(Shown(std::uint8_t{255}), "ftSmallint 255");
  EXPECT_EQ(Shown(std::int16_t{-32768}), "ftSmallint -32768");
  EXPECT_EQ(Shown(std::uint16_t{65535}), "ftWord 65535");
  EXPECT_EQ(Shown(std::int32_t{INT32_MIN}), "ftInteger -2147483648");
  EXPECT_EQ(Shown(std::uint32_t{UINT32_MAX}), "ftLargeint 4294967295");
  EXPECT_EQ(Shown(std::int64_t{INT64_MIN}), "ftLargeint -9223372036854775808");
  EXPECT_EQ(Shown(std::uint64_t{INT64_MAX}), "ftLargeint 9223372036854775807");
  EXPECT_EQ(Shown(0.5f), "ftFloat 0.5");
  EXPECT_EQ(Shown(0.1), "ftFloat 0.1");
  EXPECT_EQ(Shown(2.5L), "ftFloat 2.5");
  EXPECT_EQ(Shown(std::optional(false)), "ftBoolean False");
  EXPECT_EQ(Shown(std::optional<int>()), "ftInteger null");
}

TEST_F(TRangeDataSetTest, DeducesTheFieldTypeOfTexts) {
  const char ended[4] = "ab", full[4] = {'a', 'b', 'c', 'd'};
  EXPECT_EQ(Shown(std::string("view")), "ftString(255) view");
  EXPECT_EQ(Shown(std::string_view("view")), "ftString(255) view");
  EXPECT_EQ(Shown<const char*>("pointer"), "ftString(255) pointer");
  EXPECT_EQ(Shown<const char*>(nullptr), "ftString(255) null");
  EXPECT_EQ(Shown(ended), "ftString(4) ab");
  EXPECT_EQ(Shown(full), "ftString(4) abcd");
  EXPECT_EQ(Shown('c'), "ftString(1) c");
  EXPECT_EQ(Shown(std::optional<std::string>("maybe")), "ftString(255) maybe");
  EXPECT_EQ(Shown(std::optional<std::string>()), "ftString(255) null");
}

TEST_F(TRangeDataSetTest, DeducesTheFieldTypeOfDatesAndTimes) {
  constexpr sys_days day = 2024y / 1 / 31;
  EXPECT_EQ(Shown(year_month_day(day)), "ftDate 2024-01-31");
  EXPECT_EQ(Shown(1y / 1 / 1), "ftDate 0001-01-01");
  EXPECT_EQ(Shown(day), "ftDate 2024-01-31");
  EXPECT_EQ(Shown(local_days(day.time_since_epoch())), "ftDate 2024-01-31");
  EXPECT_EQ(Shown(day + 13h + 5min + 9s), "ftDateTime 2024-01-31 13:05:09");
  EXPECT_EQ(Shown(sys_days(9999y / 12 / 31) + 23h + 59min), "ftDateTime 9999-12-31 23:59:00");
  EXPECT_EQ(Shown(sys_days(1899y / 12 / 29) + 6h), "ftDateTime 1899-12-29 06:00:00");
  EXPECT_EQ(Shown(day + 9999999us), "ftDateTime 2024-01-31 00:00:09");
  EXPECT_EQ(Shown(local_seconds(day.time_since_epoch() + 6h)), "ftDateTime 2024-01-31 06:00:00");
  EXPECT_EQ(Shown(hh_mm_ss<seconds>(86399s)), "ftTime 23:59:59");
  EXPECT_EQ(Shown(minutes(0)), "ftTime 00:00:00");
  EXPECT_EQ(Shown(duration<double>(61.5)), "ftTime 00:01:01");
  EXPECT_EQ(Shown(std::optional<seconds>()), "ftTime null");
}

TEST_F(TRangeDataSetTest, RefusesValuesThatNoFieldHolds) {
  const auto error = [](const auto& value) {
    return ErrorText<EDatabaseError>([&] { Shown(value); });
  };
  const std::string place = "Record 1, field \"F\": ";
  EXPECT_EQ(error(std::uint64_t{INT64_MAX} + 1),
            place + "9223372036854775808 does not fit ftLargeint");
  EXPECT_EQ(error(2023y / 2 / 29), place + "the date 2023-02-29 does not fit ftDate");
  EXPECT_EQ(error(sys_days(10000y / 1 / 1)), place + "day number 2958466 does not fit ftDate");
  EXPECT_EQ(error(sys_days(1y / 1 / 1) - 1s), place + "day number -693594 does not fit ftDateTime");
  EXPECT_EQ(error(sys_seconds::min()),
            place + "day number -106751991141732 does not fit ftDateTime");
  EXPECT_EQ(error(milliseconds(-1)), place + "-0.001 seconds does not fit ftTime");
  EXPECT_EQ(error(std::optional(minutes(1440))), place + "86400 seconds does not fit ftTime");
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
