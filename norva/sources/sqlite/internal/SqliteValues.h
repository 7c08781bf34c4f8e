/// Stored values, read as what their column's type says they are.
///
/// SQLite stores any kind of value in any column. These functions convert where nothing is lost by
/// it; where they give nothing, the value does not fit.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <norva/platform/DateTime.h>

namespace norva::internal {

/// The bytes of a stored text, with any NUL among them; valid as long as the value.
std::string_view TextOf(sqlite3_value* Value);

/// The integer that a real is; none for fractions and outside 64 bits.
std::optional<std::int64_t> WholeNumber(double Value);
/// By the decimal point whatever the locale, without blanks around it.
std::optional<std::int64_t> TextToInteger(std::string_view Text);
/// None, too, for a text with more digits than a double keeps.
std::optional<double> TextToFloat(std::string_view Text);
/// 1 and 0, true and false, t and f, yes and no, in any case.
std::optional<bool> TextToBoolean(std::string_view Text);

/// An ISO 8601 date, time or both.
std::optional<TDateTimeParts> TextToDateTime(std::string_view Text);
/// Seconds since 1 January 1970.
std::optional<TDateTime> UnixToDateTime(std::int64_t Seconds);
/// Days since noon of 24 November 4714 BC, to the nearest millisecond.
std::optional<TDateTime> JulianToDateTime(double Days);

/// A value as a message shows it: "abc" in quotes and without its control characters, 1.5, or
/// "a blob of 12 bytes".
std::string ValueInWords(sqlite3_value* Value);

}  // namespace norva::internal
