/// Dates and times: a day number as a double, its text forms and back.
///
/// The scale: whole days since 30 December 1899 in the proleptic Gregorian calendar, the time of
/// day as a fraction. Before day 0 the fraction still counts forward: -1.25 is 29 December 1899,
/// 06:00. The range is the years 1 to 9999.
///
///   FormatDateTime("d mmmm yyyy", 45322.5)     "31 January 2024"
///   StrToDateTime("2024-01-31 12:00")          45322.5
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <norva/platform/Export.h>
#include <norva/platform/Locale.h>

namespace norva {

/// Days since 30 December 1899.
using TDateTime = double;

struct NORVA_EXPORT TDateTimeParts {
  int Year = 1899, Month = 12, Day = 30;
  int Hour = 0, Minute = 0, Second = 0, Millisecond = 0;
};

/// Splits to the nearest millisecond; a time that rounds to a full day carries away from day 0.
/// Throws EConvertError for NaN and values outside the range.
NORVA_EXPORT TDateTimeParts DecodeDateTime(TDateTime Value);
/// The same; `DayNumber` is the day the parts name, which a carry makes differ from Value's.
NORVA_EXPORT TDateTimeParts DecodeDateTime(TDateTime Value, std::int32_t& DayNumber);
/// False, with `Value` unchanged, when the parts name no existing date or time of day.
NORVA_EXPORT bool TryEncodeDateTime(const TDateTimeParts& Parts, TDateTime& Value);
/// The day number of a date; false, with `DayNumber` unchanged, when there is no such day.
NORVA_EXPORT bool TryEncodeDate(int Year, int Month, int Day, std::int32_t& DayNumber);
/// 1 for Sunday to 7 for Saturday.
NORVA_EXPORT int DayOfWeek(TDateTime Value);

namespace internal {

/// 0 for Sunday to 6 for Saturday.
constexpr int WeekdayOf(std::int32_t DayNumber) {
  // Day 0 is a Saturday; 99085 whole weeks make every day of the scale positive.
  return (DayNumber + 6 + 99085 * 7) % 7;
}

enum TDateItemKind : std::uint8_t;  // DatePicture.cpp

/// One specifier or literal of a date picture.
struct TDateItem {
  TDateItemKind Kind;
  std::uint32_t Start, Length;  // of a literal or a half of the day: its text in the picture
};

class TDateSink;

}  // namespace internal

/// A date picture, parsed once and used for many values.
///
///   c                      ShortDateFormat, and LongTimeFormat unless the time is 00:00:00
///   d dd ddd dddd          day: 5, 05, short name, long name
///   ddddd dddddd           ShortDateFormat, LongDateFormat
///   m mm mmm mmmm          month; m and mm are minutes when the last specifier was the hour
///   yy yyyy                year with two and with four digits
///   h hh n nn s ss z zzz   hour, minute, second, millisecond
///   t tt                   ShortTimeFormat, LongTimeFormat
///   am/pm a/p ampm         half of the day, as spelled or in the locale's words; hours are 1 to 12
///   / :                    the locale's date and time separators
///   "text" 'text'          the text; as is any other character
///
/// Letters count in either case. Seconds and milliseconds are cut, not rounded.
class NORVA_EXPORT TDatePicture {
 public:
  /// The empty picture is `c`.
  explicit TDatePicture(std::string_view Picture = {});

  /// Appends the text of `Value` to `Out`. Pictures of the locale (`c`, `ddddd`, `t` ...) are
  /// taken from `Settings` at the time of the call; they nest two deep, deeper ones write nothing.
  /// Throws EConvertError, with `Out` unchanged, for NaN and values outside the range.
  void Append(TDateTime Value, const TFormatSettings& Settings, std::string& Out) const;
  /// The same for a value that is decoded already. The parts must name an existing date and time of
  /// day; they are not checked again.
  void Append(const TDateTimeParts& Parts, const TFormatSettings& Settings, std::string& Out) const;
  /// At least the number of bytes that Append writes for any value; SIZE_MAX for a picture with
  /// names or pictures of the locale.
  std::size_t LengthBound(const TFormatSettings& Settings) const;

 private:
  std::size_t ReadItem(std::size_t At);
  std::size_t ReadQuoted(std::size_t At);
  std::size_t ReadHalfOfDay(std::size_t At);
  void Add(internal::TDateItemKind Kind, std::size_t Start = 0, std::size_t Length = 0);
  void AddLiteral(std::size_t Start, std::size_t Length);
  bool FollowsHour() const;

  std::string_view TextOf(const internal::TDateItem& Item) const;
  void Write(internal::TDateSink& Sink, int Depth) const;

  std::string Picture_;  // never empty
  std::vector<internal::TDateItem> Items_;
  bool TwelveHours_ = false;
};

NORVA_EXPORT std::string FormatDateTime(std::string_view Picture, TDateTime Value);
NORVA_EXPORT std::string DateTimeToStr(TDateTime Value);  ///< picture `c`
NORVA_EXPORT std::string DateToStr(TDateTime Value);      ///< picture `ddddd`
NORVA_EXPORT std::string TimeToStr(TDateTime Value);      ///< picture `tt`

/// A date, a time, or both, by the thread's locale settings; throws EConvertError.
///
///   text  = date [blanks time] | time
///   date  = number sep [blanks] number [sep [blanks] number] [sep]
///   time  = [mark [blanks]] clock | clock [[blanks] mark]             mark: AM, PM, A, P ...
///   clock = hour [":" minute [":" second [("." | decimal separator) 1 to 9 digits]]]
///
/// The numbers of a date stand in the order of ShortDateFormat; two are a day of the current
/// year. A year of one or two digits lies in the hundred years that begin 50 years ago.
NORVA_EXPORT TDateTime StrToDateTime(std::string_view Text);
/// False, with `Value` unchanged, in place of an error.
NORVA_EXPORT bool TryStrToDateTime(std::string_view Text, TDateTime& Value);

/// Reads ISO text as data files hold it, whatever the locale: `YYYY-MM-DD`, `HH:MM[:SS[.f]]`, or
/// both with a blank or `T` between; `f` is 1 to 9 digits, cut to milliseconds. A time alone is on
/// day 0. Nothing else may stand around it. False, with `Parts` unchanged, for any other text
/// and for dates and times that do not exist.
NORVA_EXPORT bool TryIsoToDateTime(std::string_view Text, TDateTimeParts& Parts);

}  // namespace norva
