#include <norva/sources/sqlite/internal/SqliteValues.h>

#include <charconv>
#include <cmath>
#include <new>

#include <norva/platform/CodePages.h>
#include <norva/platform/Format.h>

namespace norva::internal {
namespace {

constexpr double Int64Limit = 9223372036854775808.0;  // 2^63, the first real beyond the integers

constexpr std::int64_t SecondsPerDay = 86400;
constexpr std::int64_t MillisecondsPerDay = SecondsPerDay * 1000;
constexpr std::int64_t UnixEpochDay = 25569;  // 1 January 1970, in days since 30 December 1899
constexpr double JulianDayZero = 2415018.5;   // 30 December 1899, 00:00, in Julian days
constexpr std::int64_t FirstDay = -693593;    // 1 January 1
constexpr std::int64_t LastDay = 2958465;     // 31 December 9999
constexpr std::size_t ShownBytes = 60;        // of a text in a message

std::optional<double> ParseFloat(std::string_view Text) {
  // from_chars also takes "inf" and "nan".
  if (Text.empty() || Text.find_first_not_of("0123456789+-.eE") != std::string_view::npos)
    return {};
  double value;
  const char* const end = Text.data() + Text.size();
  const auto [stop, error] = std::from_chars(Text.data(), end, value);
  if (error != std::errc() || stop != end) return {};
  return value;
}

// The digits of a decimal number from the first to the last that is not zero.
std::string SignificantDigits(std::string_view Number) {
  std::string digits;
  for (const char c : Number) {
    if (c == 'e' || c == 'E') break;
    if (c >= '0' && c <= '9' && !(c == '0' && digits.empty())) digits += c;
  }
  digits.erase(digits.find_last_not_of('0') + 1);
  return digits;
}

// The day number of a day and a time within it. Before day 0 the time still counts forward.
std::optional<TDateTime> EncodeDay(std::int64_t Day, std::int64_t Milliseconds) {
  if (Day < FirstDay || Day > LastDay) return {};
  const double time = static_cast<double>(Milliseconds) / static_cast<double>(MillisecondsPerDay);
  const double day = static_cast<double>(Day);
  return Day < 0 ? day - time : day + time;
}

// Division towards the earlier, with the rest always from 0 on.
std::int64_t FloorDivide(std::int64_t Value, std::int64_t By, std::int64_t& Rest) {
  Rest = Value % By;
  if (Rest < 0) Rest += By;
  return (Value - Rest) / By;
}

// On one line and not too long.
std::string Shown(std::string_view Text) {
  std::string shown(Text.substr(0, ShownBytes));
  if (shown.size() < Text.size()) {
    // Not in the middle of a UTF-8 character.
    std::size_t end = ShownBytes;
    while (end > 0 && (static_cast<unsigned char>(Text[end]) & 0xC0) == 0x80) --end;
    shown.resize(end);
    shown += "...";
  }
  for (char& c : shown) {
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = ' ';
  }
  return shown;
}

}  // namespace

std::string_view TextOf(sqlite3_value* Value) {
  // In this order: the text may have to be converted from UTF-16 before its length is known.
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(Value));
  if (!text) throw std::bad_alloc();
  return {text, static_cast<std::size_t>(sqlite3_value_bytes(Value))};
}

std::optional<std::int64_t> WholeNumber(double Value) {
  if (!(Value >= -Int64Limit && Value < Int64Limit) || std::trunc(Value) != Value) return {};
  return static_cast<std::int64_t>(Value);
}

std::optional<std::int64_t> TextToInteger(std::string_view Text) {
  std::int64_t value;
  const char* const end = Text.data() + Text.size();
  const auto [stop, error] = std::from_chars(Text.data(), end, value);
  if (error == std::errc() && stop == end) return value;
  const std::optional<double> number = TextToFloat(Text);  // "12.0", "1e3"
  return number ? WholeNumber(*number) : std::nullopt;
}

std::optional<double> TextToFloat(std::string_view Text) {
  const std::optional<double> value = ParseFloat(Text);
  if (!value) return {};
  char shortest[32];
  const auto end = std::to_chars(shortest, shortest + sizeof shortest, *value).ptr;
  const std::string_view kept(shortest, static_cast<std::size_t>(end - shortest));
  if (SignificantDigits(kept) != SignificantDigits(Text)) return {};
  return value;
}

std::optional<bool> TextToBoolean(std::string_view Text) {
  for (const char* text : {"1", "true", "t", "yes"}) {
    if (CompareText(Text, text) == 0) return true;
  }
  for (const char* text : {"0", "false", "f", "no"}) {
    if (CompareText(Text, text) == 0) return false;
  }
  return {};
}

std::optional<TDateTimeParts> TextToDateTime(std::string_view Text) {
  TDateTimeParts parts;
  if (!TryIsoToDateTime(Text, parts)) return {};
  return parts;
}

std::optional<TDateTime> UnixToDateTime(std::int64_t Seconds) {
  std::int64_t second;
  const std::int64_t day = FloorDivide(Seconds, SecondsPerDay, second);
  return EncodeDay(day + UnixEpochDay, second * 1000);
}

std::optional<TDateTime> JulianToDateTime(double Days) {
  const double days = Days - JulianDayZero;
  if (!(days >= FirstDay && days < LastDay + 1)) return {};
  std::int64_t millisecond;
  const std::int64_t day = FloorDivide(std::llround(days * static_cast<double>(MillisecondsPerDay)),
                                       MillisecondsPerDay, millisecond);
  return EncodeDay(day, millisecond);
}

std::string ValueInWords(sqlite3_value* Value) {
  switch (sqlite3_value_type(Value)) {
    case SQLITE_BLOB:
      return Format("a blob of %d bytes", sqlite3_value_bytes(Value));
    case SQLITE_TEXT:
      return '"' + Shown(TextOf(Value)) + '"';
    case SQLITE_FLOAT: {
      char digits[32];
      const auto end =
          std::to_chars(digits, digits + sizeof digits, sqlite3_value_double(Value)).ptr;
      return {digits, end};
    }
    default:
      return std::to_string(sqlite3_value_int64(Value));
  }
}

}  // namespace norva::internal
