/// Locale settings: how numbers, dates and times look. One record for each thread.
///
///   FormatSettings().DecimalSeparator = ',';              // this thread only
///   FormatSettings() = TFormatSettings::FromLocale("de_DE.UTF-8");
///
/// A new thread starts with a copy of the process's initial record, the environment's. The
/// process's own locale (setlocale) is never changed.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include <norva/platform/Export.h>

namespace norva {

/// The settings; a default-constructed record is the invariant locale.
struct NORVA_EXPORT TFormatSettings {
  char DecimalSeparator = '.';
  /// Between groups of three integer digits; empty: no grouping.
  std::string ThousandSeparator = ",";
  /// Between the items of a list; the default separator of CSV and clipboard text.
  char ListSeparator = ',';
  char DateSeparator = '-';
  char TimeSeparator = ':';
  std::string CurrencyString = "$";
  /// Pictures in the language of FormatDateTime.
  std::string ShortDateFormat = "yyyy-mm-dd";
  std::string LongDateFormat = "d mmmm yyyy";
  std::string ShortTimeFormat = "hh:mm";
  std::string LongTimeFormat = "hh:mm:ss";
  std::string TimeAMString = "AM";
  std::string TimePMString = "PM";
  /// January first.
  std::array<std::string, 12> ShortMonthNames = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                 "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  std::array<std::string, 12> LongMonthNames = {"January",   "February", "March",    "April",
                                                "May",       "June",     "July",     "August",
                                                "September", "October",  "November", "December"};
  /// Sunday first.
  std::array<std::string, 7> ShortDayNames = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  std::array<std::string, 7> LongDayNames = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                             "Thursday", "Friday", "Saturday"};

  /// The environment's locale: for each category the first non-empty of LC_ALL, LC_<category>
  /// and LANG. `C`, `POSIX` (also as `C.UTF-8`), none, or a name that the system lacks gives that
  /// category's invariant settings.
  /// Texts are in the thread's active code page at the time of the call.
  static TFormatSettings FromEnvironment();

  /// `invariant`, or a POSIX locale name. Throws EConvertError when the system lacks it.
  static TFormatSettings FromLocale(std::string_view Name);
};

/// The calling thread's record, to read and to change. The texts it starts with are in the page
/// of the environment; a host that works in another one assigns FromEnvironment() or FromLocale()
/// after SetActiveCodePage().
NORVA_EXPORT TFormatSettings& FormatSettings();

}  // namespace norva
