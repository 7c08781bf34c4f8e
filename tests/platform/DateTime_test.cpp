#include <norva/platform/DateTime.h>

#include <cmath>
#include <cstdint>
#include <ctime>
#include <initializer_list>
#include <limits>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include <norva/platform/Clock.h>
#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <tests/ErrorText.h>
#include <tests/Vectors.h>

namespace norva::tests {
namespace {

// In every locale the same.
constexpr const char* FullPicture = "yyyy-mm-dd hh':'nn':'ss.zzz";

TDateTime IsoValue(const std::string& Text) {
  TDateTimeParts parts;
  TDateTime value = 0;
  EXPECT_TRUE(TryIsoToDateTime(Text, parts) && TryEncodeDateTime(parts, value)) << Text;
  return value;
}

/// Invariant settings, UTF-8 and a clock that stands at noon of 9 March of a year.
class DateTime : public testing::Test {
 protected:
  DateTime() : CodePage_(ActiveCodePage()), Locale_(TFormatSettings()) {
    SetActiveCodePage(CodePageUtf8);
    SetYear(2026);
  }
  ~DateTime() override {
    SetActiveCodePage(CodePage_);
    SetClock({});
  }
  static void SetYear(int Year) {
    std::int32_t day = 0;
    ASSERT_TRUE(TryEncodeDate(Year, 3, 9, day));
    SetClock([day] { return day + 0.5; });
  }

 private:
  int CodePage_;
  TLocaleScope Locale_;
};

TEST_F(DateTime, FormatsTheVectors) {
  for (const TVector& row : ReadVectors("formatdatetime")) {
    SCOPED_TRACE(row.Place);
    const TLocaleScope locale(VectorLocale(row["locale"]));
    const std::string& value = row["value"];
    const TDateTime number = value[0] == '@' ? std::stod(value.substr(1)) : IsoValue(value);
    EXPECT_EQ(TextOrError<EConvertError>([&] { return FormatDateTime(row["picture"], number); }),
              row["expected"]);
  }
}

TEST_F(DateTime, ReadsTheVectors) {
  for (const TVector& row : ReadVectors("strtodatetime")) {
    SCOPED_TRACE(row.Place);
    const TLocaleScope locale(VectorLocale(row["locale"]));
    SetYear(std::stoi(row["year"]));
    TDateTime value = 4711;
    EXPECT_EQ(TextOrError<EConvertError>([&] {
                value = StrToDateTime(row["text"]);
                return FormatDateTime(FullPicture, value);
              }),
              row["expected"]);
    EXPECT_EQ(value, row["day"].empty() ? 4711 : std::stod(row["day"]));
    TDateTime tried = 4711;
    EXPECT_EQ(TryStrToDateTime(row["text"], tried), !row["day"].empty());
    EXPECT_EQ(tried, value);
  }
}

// Against a calendar that is counted day by day.
TEST_F(DateTime, EncodesAndDecodesEveryDay) {
  int year = 1, month = 1, day = 1;
  for (std::int32_t number = -693593; number <= 2958465; ++number) {
    std::int32_t encoded = 0;
    ASSERT_TRUE(TryEncodeDate(year, month, day, encoded)) << number;
    const TDateTimeParts parts = DecodeDateTime(number);
    ASSERT_TRUE(encoded == number && parts.Year == year && parts.Month == month &&
                parts.Day == day && DayOfWeek(number) == (number + 693593 + 1) % 7 + 1)
        << number;  // the first day of the year 1 is a Monday
    const bool isLeap = year % 400 == 0 || (year % 4 == 0 && year % 100 != 0);
    const int length = month == 2 ? (isLeap ? 29 : 28) : 31 - (month - 1) % 7 % 2;
    if (++day <= length) continue;
    ASSERT_FALSE(TryEncodeDate(year, month, day, encoded)) << number;
    day = 1;
    if (++month <= 12) continue;
    month = 1;
    ++year;
  }
  EXPECT_EQ(year, 10000);
}

TEST_F(DateTime, EncodesExistingTimesOnly) {
  TDateTime value = 4711;
  EXPECT_TRUE(TryEncodeDateTime({9999, 12, 31, 23, 59, 59, 999}, value));
  EXPECT_NE(value, 4711);
  value = 4711;
  // clang-format off
  const TDateTimeParts wrong[] = {
      {0, 1, 1}, {10000, 1, 1}, {2024, 0, 1}, {2024, 13, 1}, {2024, 1, 0}, {2024, 1, 1, -1},
      {2024, 1, 1, 24}, {2024, 1, 1, 0, 60}, {2024, 1, 1, 0, 0, 60}, {2024, 1, 1, 0, 0, 0, 1000}};
  // clang-format on
  for (const TDateTimeParts& parts : wrong) {
    EXPECT_FALSE(TryEncodeDateTime(parts, value));
    EXPECT_EQ(value, 4711);
  }
}

TEST_F(DateTime, RejectsValuesOutsideTheScale) {
  struct RangeCase {
    double Value;
    const char* Expected;
  };
  const RangeCase cases[] = {
      {-693593.999,                              "0001-01-01 23:58:33.600"                             },
      {2958466.5,                                "!Day number 2958466.5 is outside the years 1 to 9999"},
 // Rounded to the millisecond these two are midnight of a day that does not exist.
      {-693593.999999999,                        "!Day number -693594 is outside the years 1 to 9999"  },
      {2958465.999999999,                        "!Day number 2958466 is outside the years 1 to 9999"  },
      {std::numeric_limits<double>::quiet_NaN(), "!Day number NAN is outside the years 1 to 9999"      },
  };
  for (const RangeCase& c : cases) {
    EXPECT_EQ(TextOrError<EConvertError>([&] { return FormatDateTime(FullPicture, c.Value); }),
              c.Expected);
  }
  std::string out = "kept";
  EXPECT_THROW(TDatePicture().Append(1e9, FormatSettings(), out), EConvertError);
  EXPECT_EQ(out, "kept");
}

TEST_F(DateTime, CarriesTheNamesOfTheDay) {
  const double value = 45000.999999999;  // decodes to the midnight that follows
  EXPECT_EQ(FormatDateTime("ddd d", value), "Thu 16");
  EXPECT_EQ(DayOfWeek(value), 5);
  EXPECT_EQ(FormatDateTime("ddd d", -1.999999999), "Thu 28");
}

// One picture is parsed once, but what it names in the locale is taken anew at every call.
TEST_F(DateTime, TakesLocalePicturesAtTheCall) {
  const TDatePicture picture("c|ddddd|dddddd|t|tt");
  const double value = IsoValue("2024-03-05 15:04:05");
  TFormatSettings settings;
  const auto text = [&] {
    std::string out;
    picture.Append(value, settings, out);
    return out;
  };
  EXPECT_EQ(text(), "2024-03-05 15:04:05|2024-03-05|5 March 2024|15:04|15:04:05");
  settings = VectorLocale("us");
  EXPECT_EQ(text(), "3/5/2024 3:04:05 PM|3/5/2024|Tuesday, March 5, 2024|3:04 PM|3:04:05 PM");
  settings.ShortDateFormat = "d.m";
  settings.ShortTimeFormat = "";  // writes nothing; only a picture of the caller means `c`
  EXPECT_EQ(text(), "5.3 3:04:05 PM|5.3|Tuesday, March 5, 2024||3:04:05 PM");
  std::string elsewhere;
  std::thread([&] { picture.Append(value, TFormatSettings(), elsewhere); }).join();
  EXPECT_EQ(elsewhere, "2024-03-05 15:04:05|2024-03-05|5 March 2024|15:04|15:04:05");
}

TEST_F(DateTime, NestsLocalePicturesTwoDeep) {
  TFormatSettings settings;
  settings.ShortDateFormat = "<dddddd>";
  settings.LongDateFormat = "(d t)";
  settings.ShortTimeFormat = "h am/pm";  // 12 hours in this picture only
  std::string out;
  TDatePicture("h ddddd; t").Append(0.625, settings, out);
  EXPECT_EQ(out, "15 <(30 )>; 3 pm");
  settings.ShortDateFormat = "[ddddd]";
  out.clear();
  TDatePicture("ddddd").Append(0.625, settings, out);
  EXPECT_EQ(out, "[[]]");
}

TEST_F(DateTime, WritesTextsLongerThanItsBuffer) {
  const std::string longText(100, 'x');
  TFormatSettings settings;
  settings.LongMonthNames[2] = longText;
  std::string out = "before ";
  TDatePicture("yyyy '" + longText + "' mmmm dd " + std::string(70, '-'))
      .Append(IsoValue("2024-03-05"), settings, out);
  EXPECT_EQ(out, "before 2024 " + longText + " " + longText + " 05 " + std::string(70, '-'));
}

struct ReadCase {
  const char *Text, *Expected;
};

void ExpectReadings(std::initializer_list<ReadCase> Cases) {
  for (const ReadCase& c : Cases) {
    SCOPED_TRACE(c.Text);
    TDateTime value = 4711;
    const bool good = TryStrToDateTime(c.Text, value);
    EXPECT_EQ(good ? FormatDateTime(FullPicture, value) : "", c.Expected);
    EXPECT_EQ(value == 4711, !good);
  }
}

TEST_F(DateTime, ReadsAmbiguousTexts) {
  FormatSettings() = VectorLocale("de");
  ExpectReadings({
      {"31.1. 10:30",      "2026-01-31 10:30:00.000"}, // the third number turns out to be an hour
      {"31.1. 10",         "2010-01-31 00:00:00.000"}, // ... and here it is a year
      {"31.1.24. 10",      "2024-01-31 10:00:00.000"},
      {"31.1.24 10 A",     "2024-01-31 10:00:00.000"}, // behind a date a single letter will do
      {"31.1. 10:75",      ""                       },
      {"1:2:3,1234567891", ""                       },
      {"\xC3\xA4 10:30",   ""                       },
  });
}

TEST_F(DateTime, ReadsBlankSeparators) {
  FormatSettings().DateSeparator = ' ';
  FormatSettings().TimeSeparator = ' ';
  ExpectReadings({
      {"2024 01 31",          "2024-01-31 00:00:00.000"},
      {"01 31 13:45",         "2026-01-31 13:45:00.000"},
      {"2024 01 31 13 45 10", "2024-01-31 13:45:10.000"},
  });
}

TEST_F(DateTime, ReadsByTheOrderOfTheShortDate) {
  struct OrderCase {
    const char *ShortDate, *Three, *Two;
  };
  const OrderCase cases[] = {
      {"d-m-y",          "2003-02-01", "2026-02-01"},
      {"'d' \"m\" y-d",  "2001-03-02", "2026-02-01"}, // quotes skipped, m added
      {"",               "2001-02-03", "2026-01-02"},
      {"mmm-mm-d-yy-dd", "2003-01-02", "2026-01-02"}, // the first of each counts
  };
  for (const OrderCase& c : cases) {
    SCOPED_TRACE(c.ShortDate);
    FormatSettings().ShortDateFormat = c.ShortDate;
    EXPECT_EQ(FormatDateTime("yyyy-mm-dd", StrToDateTime("1-2-3")), c.Three);
    EXPECT_EQ(FormatDateTime("yyyy-mm-dd", StrToDateTime("1-2")), c.Two);
  }
}

TEST_F(DateTime, ReadsTheMarksOfTheLocale) {
  FormatSettings().TimeAMString = "\xCF\x80\xCE\xBC";  // Greek small pi, mu
  FormatSettings().TimePMString = "a";                 // not the usual A then
  ExpectReadings({
      {"10:30 \xCE\xA0\xCE\x9C", "1899-12-30 10:30:00.000"}, // capitals
      {"\xCF\x80\xCE\xBC 10",    "1899-12-30 10:00:00.000"}, // two letters: minutes may lack
      {"10:30 A",                "1899-12-30 22:30:00.000"},
      {"10 a",                   ""                       },
  });
}

TEST_F(DateTime, ReadsBackWhatLocalesWrite) {
  for (const char* name : {"inv", "de", "us", "gb"}) {
    const TLocaleScope locale(VectorLocale(name));
    for (const char* iso : {"2024-01-05", "2024-01-05 00:00:30", "1899-12-29 18:00:00",
                            "0031-12-11 12:13:14", "1899-12-30 09:08:07"}) {
      SCOPED_TRACE(testing::Message() << name << " " << iso);
      const TDateTime value = IsoValue(iso);
      EXPECT_EQ(StrToDateTime(DateTimeToStr(value)), value);
      EXPECT_EQ(StrToDateTime(DateToStr(value)), std::trunc(value));
      const TDateTime time = StrToDateTime(TimeToStr(value));
      EXPECT_EQ(FormatDateTime("d hh:nn:ss.zzz", time), FormatDateTime("30 hh:nn:ss.zzz", value));
    }
  }
}

TEST_F(DateTime, ReadsIsoTexts) {
  // A locale that reads none of them.
  FormatSettings() = VectorLocale("de");
  const ReadCase cases[] = {
      {"2024-02-29",                    "2024-02-29 00:00:00.000"},
      {"2024-02-29T13:45",              "2024-02-29 13:45:00.000"},
      {"2024-02-29 23:59:59.999999999", "2024-02-29 23:59:59.999"}, // cut
      {"0001-01-01",                    "0001-01-01 00:00:00.000"},
      {"13:45:06.07",                   "1899-12-30 13:45:06.070"},
  };
  for (const char* text : {"",
                           "2023-02-29",
                           "0000-01-01",
                           "2024-13-01",
                           "2024-2-29",
                           "2024/02/29",
                           "2024-02-29 ",
                           " 2024-02-29",
                           "2024-02-29t13:45",
                           "2024-02-29  13:45",
                           "2024-02-29 13",
                           "2024-02-29 24:00",
                           "2024-02-29 13:60",
                           "2024-02-29 13:45:60",
                           "2024-02-29 13:45:6",
                           "2024-02-29 13:45:06.",
                           "2024-02-29 13:45:06,5",
                           "2024-02-29 13:45:06.1234567890",
                           "2024-02-29 13:45Z",
                           "2024-02-29 13:45:06+01:00",
                           "+024-02-29",
                           "9:30",
                           "13:45 ",
                           "2024-02-2\xFF"}) {
    TDateTimeParts parts = {4711, 1, 2};
    EXPECT_FALSE(TryIsoToDateTime(text, parts)) << text;
    EXPECT_EQ(parts.Year, 4711) << text;
  }
  for (const ReadCase& c : cases) {
    SCOPED_TRACE(c.Text);
    TDateTimeParts parts;
    EXPECT_TRUE(TryIsoToDateTime(c.Text, parts));
    std::string text;
    TDatePicture(FullPicture).Append(parts, FormatSettings(), text);
    EXPECT_EQ(text, c.Expected);
  }
}

TEST_F(DateTime, ClockIsReplacedAndRestored) {
  SetClock([] { return 45322.75; });
  EXPECT_EQ(Now(), 45322.75);
  EXPECT_EQ(Date(), 45322);
  EXPECT_EQ(CurrentYear(), 2024);
  SetClock({});
  const std::time_t before = std::time(nullptr);
  const TDateTime now = Now();
  const std::time_t after = std::time(nullptr);
  const TDateTimeParts parts = DecodeDateTime(now);
  std::tm local = {};
  local.tm_year = parts.Year - 1900;
  local.tm_mon = parts.Month - 1;
  local.tm_mday = parts.Day;
  local.tm_hour = parts.Hour;
  local.tm_min = parts.Minute;
  local.tm_sec = parts.Second;
  local.tm_isdst = -1;
  EXPECT_GE(std::mktime(&local), before);
  EXPECT_LE(std::mktime(&local), after);
}

}  // namespace
}  // namespace norva::tests
