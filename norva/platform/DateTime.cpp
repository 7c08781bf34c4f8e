#include <norva/platform/DateTime.h>

#include <cmath>

#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>
#include <norva/platform/Numbers.h>

namespace norva {
namespace {

constexpr int MinDay = -693593;  // 1 January of the year 1
constexpr int MaxDay = 2958465;  // 31 December 9999

constexpr int MSecsPerSecond = 1000;
constexpr int MSecsPerMinute = 60 * MSecsPerSecond;
constexpr int MSecsPerHour = 60 * MSecsPerMinute;
constexpr int MSecsPerDay = 24 * MSecsPerHour;

// The conversions count years from 1 March, so that the leap day is a year's last one: the months
// March to January then have 31 30 31 30 31 | 31 30 31 30 31 | 31 days, 153 in every five, and
// (153 * month + 2) / 5 is the number of days before a month. 400 years are one cycle.
constexpr int DaysPerYear = 365;
constexpr int DaysPer4Years = 4 * DaysPerYear + 1;
constexpr int DaysPer100Years = 25 * DaysPer4Years - 1;
constexpr int DaysPer400Years = 4 * DaysPer100Years + 1;
constexpr int Day0FromMarch = 693899;  // 30 December 1899, in days since 1 March of the year 0

bool IsLeapYear(int Year) { return Year % 4 == 0 && (Year % 100 != 0 || Year % 400 == 0); }

int DaysInMonth(int Year, int Month) {
  constexpr int Days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return Month == 2 && IsLeapYear(Year) ? 29 : Days[Month - 1];
}

void SetDate(std::int32_t DayNumber, TDateTimeParts& Parts) {
  const auto days = static_cast<unsigned>(DayNumber + Day0FromMarch);
  const unsigned cycle = days / DaysPer400Years;
  const unsigned inCycle = days % DaysPer400Years;
  // Taking out the leap days before a day leaves years of 365: one at the end of every fourth
  // year but the hundredth, and one at the end of the cycle, its last day.
  const unsigned leapDays =
      inCycle / (DaysPer4Years - 1) - inCycle / DaysPer100Years + inCycle / (DaysPer400Years - 1);
  const unsigned year = (inCycle - leapDays) / DaysPerYear;
  const unsigned inYear = inCycle - (DaysPerYear * year + year / 4 - year / 100);
  const unsigned month = (5 * inYear + 2) / 153;  // 0 is March
  Parts.Day = static_cast<int>(inYear - (153 * month + 2) / 5 + 1);
  Parts.Month = static_cast<int>(month < 10 ? month + 3 : month - 9);
  Parts.Year = static_cast<int>(cycle * 400 + year + (month < 10 ? 0 : 1));
}

void SetTime(int MSecs, TDateTimeParts& Parts) {
  Parts.Hour = MSecs / MSecsPerHour;
  Parts.Minute = MSecs / MSecsPerMinute % 60;
  Parts.Second = MSecs / MSecsPerSecond % 60;
  Parts.Millisecond = MSecs % MSecsPerSecond;
}

std::string TextOf(const TDatePicture& Picture, TDateTime Value) {
  std::string text;
  Picture.Append(Value, FormatSettings(), text);
  return text;
}

}  // namespace

TDateTimeParts DecodeDateTime(TDateTime Value, std::int32_t& DayNumber) {
  // Written so that NaN fails it.
  if (!(Value > MinDay - 1 && Value < MaxDay + 1)) {
    throw EConvertError(MsgDayOutOfRange, FloatToStr(Value));
  }
  auto day = static_cast<std::int32_t>(Value);  // cuts toward day 0
  // NOLINTNEXTLINE(bugprone-incorrect-roundings): it is never negative
  auto mSecs = static_cast<int>(std::fabs(Value - day) * MSecsPerDay + 0.5);
  if (mSecs == MSecsPerDay) {
    mSecs = 0;
    day += Value < 0 ? -1 : 1;
    if (day < MinDay || day > MaxDay) throw EConvertError(MsgDayOutOfRange, FloatToStr(day));
  }
  TDateTimeParts parts;
  SetDate(day, parts);
  SetTime(mSecs, parts);
  DayNumber = day;
  return parts;
}

TDateTimeParts DecodeDateTime(TDateTime Value) {
  std::int32_t dayNumber;
  return DecodeDateTime(Value, dayNumber);
}

bool TryEncodeDate(int Year, int Month, int Day, std::int32_t& DayNumber) {
  if (Year < 1 || Year > 9999 || Month < 1 || Month > 12 || Day < 1 ||
      Day > DaysInMonth(Year, Month)) {
    return false;
  }
  const int month = Month > 2 ? Month - 3 : Month + 9;
  const int year = Month > 2 ? Year : Year - 1;
  DayNumber = DaysPerYear * year + year / 4 - year / 100 + year / 400 + (153 * month + 2) / 5 +
              Day - 1 - Day0FromMarch;
  return true;
}

bool TryEncodeDateTime(const TDateTimeParts& Parts, TDateTime& Value) {
  const auto in = [](int Part, int Limit) { return Part >= 0 && Part < Limit; };
  std::int32_t day;
  if (!in(Parts.Hour, 24) || !in(Parts.Minute, 60) || !in(Parts.Second, 60) ||
      !in(Parts.Millisecond, 1000) || !TryEncodeDate(Parts.Year, Parts.Month, Parts.Day, day)) {
    return false;
  }
  const int mSecs = Parts.Hour * MSecsPerHour + Parts.Minute * MSecsPerMinute +
                    Parts.Second * MSecsPerSecond + Parts.Millisecond;
  const double time = static_cast<double>(mSecs) / MSecsPerDay;
  Value = day < 0 ? day - time : day + time;
  return true;
}

int DayOfWeek(TDateTime Value) {
  std::int32_t dayNumber;
  DecodeDateTime(Value, dayNumber);
  return internal::WeekdayOf(dayNumber) + 1;
}

std::string FormatDateTime(std::string_view Picture, TDateTime Value) {
  return TextOf(TDatePicture(Picture), Value);
}

std::string DateTimeToStr(TDateTime Value) {
  static const TDatePicture picture("c");
  return TextOf(picture, Value);
}

std::string DateToStr(TDateTime Value) {
  static const TDatePicture picture("ddddd");
  return TextOf(picture, Value);
}

std::string TimeToStr(TDateTime Value) {
  static const TDatePicture picture("tt");
  return TextOf(picture, Value);
}

}  // namespace norva
