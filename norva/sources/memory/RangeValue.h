/// How C++ values become field values; the types are listed in RangeDataSet.h.
#pragma once

#include <chrono>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <ratio>
#include <string_view>
#include <type_traits>
#include <utility>

#include <norva/platform/DataSet.h>
#include <norva/platform/Export.h>
#include <norva/sources/memory/RecordDataSet.h>

namespace norva::internal {

/// The field that a value is read for, as errors name it.
struct TRangePlace {
  const TRecordDataSet& Set;
  const TField& Field;
};

inline constexpr std::chrono::sys_days RangeFirstDay = std::chrono::year(1) / 1 / 1;
inline constexpr std::chrono::sys_days RangeLastDay = std::chrono::year(9999) / 12 / 31;

NORVA_EXPORT TFieldValue RangeDate(std::chrono::year_month_day Date, const TRangePlace& Place);
/// `Time` is the time of day.
NORVA_EXPORT TFieldValue RangeDateTime(std::chrono::sys_days Day, std::chrono::milliseconds Time,
                                       const TRangePlace& Place);
NORVA_EXPORT TFieldValue RangeTime(std::chrono::milliseconds Time);
/// These throw the error for a value that the field cannot hold.
[[noreturn]] NORVA_EXPORT void RangeIntegerError(std::uint64_t Value, const TRangePlace& Place);
[[noreturn]] NORVA_EXPORT void RangeTimeError(double Seconds, const TRangePlace& Place);

/// How values of type T become field values: Type, Size and Read. Empty for types that no field
/// can hold.
template <class T>
struct TRangeValue {};

/// A type that a field can hold.
template <class T>
concept RangeReadable = requires {
  TRangeValue<T>::Type;
};

/// Whether a T may stand for null.
template <class T>
inline constexpr bool RangeNullable = std::is_pointer_v<T>;
template <class T>
inline constexpr bool RangeNullable<std::optional<T>> = true;

template <>
struct TRangeValue<bool> {
  static constexpr TFieldType Type = ftBoolean;
  static constexpr int Size = 0;
  static TFieldValue Read(bool Value, const TRangePlace&) { return TFieldValue::OfBoolean(Value); }
};

template <class T>
concept RangeInteger = std::integral<T> && !std::same_as<T, wchar_t> && !std::same_as<T, char8_t> &&
                       !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

/// The smallest type that holds every T.
template <RangeInteger T>
constexpr TFieldType RangeIntegerType() {
  constexpr T max = std::numeric_limits<T>::max();
  if (std::in_range<std::int16_t>(max)) return ftSmallint;
  if (std::in_range<std::uint16_t>(max)) return ftWord;
  return std::in_range<std::int32_t>(max) ? ftInteger : ftLargeint;
}

template <RangeInteger T>
struct TRangeValue<T> {
  static constexpr TFieldType Type = RangeIntegerType<T>();
  static constexpr int Size = 0;
  static TFieldValue Read(T Value, const TRangePlace& Place) {
    if (!std::in_range<std::int64_t>(Value)) {
      RangeIntegerError(static_cast<std::uint64_t>(Value), Place);
    }
    return TFieldValue::OfInteger(static_cast<std::int64_t>(Value));
  }
};

template <std::floating_point T>
struct TRangeValue<T> {
  static constexpr TFieldType Type = ftFloat;
  static constexpr int Size = 0;
  static TFieldValue Read(T Value, const TRangePlace&) {
    return TFieldValue::OfFloat(static_cast<double>(Value));
  }
};

template <class T>
requires std::convertible_to<const T&, std::string_view>
struct TRangeValue<T> {
  static constexpr TFieldType Type = ftString;
  static constexpr int Size = 255;
  static TFieldValue Read(const T& Value, const TRangePlace&) {
    if constexpr (std::is_pointer_v<T>) {
      if (!Value) return {};
    }
    return TFieldValue::OfText(Value);
  }
};

template <std::size_t N>
struct TRangeValue<char[N]> {
  static constexpr TFieldType Type = ftString;
  static constexpr int Size = static_cast<int>(N);
  static TFieldValue Read(const char (&Value)[N], const TRangePlace&) {
    const std::string_view whole(Value, N);
    return TFieldValue::OfText(whole.substr(0, whole.find('\0')));
  }
};

template <>
struct TRangeValue<char> {
  static constexpr TFieldType Type = ftString;
  static constexpr int Size = 1;
  static TFieldValue Read(const char& Value, const TRangePlace&) {
    return TFieldValue::OfText({&Value, 1});
  }
};

template <>
struct TRangeValue<std::chrono::year_month_day> {
  static constexpr TFieldType Type = ftDate;
  static constexpr int Size = 0;
  static TFieldValue Read(std::chrono::year_month_day Value, const TRangePlace& Place) {
    return RangeDate(Value, Place);
  }
};

template <class TClock>
concept RangeClock =
    std::same_as<TClock, std::chrono::system_clock> || std::same_as<TClock, std::chrono::local_t>;

template <RangeClock TClock, class TDuration>
requires std::ratio_less_equal_v<typename TDuration::period, std::chrono::days::period>
struct TRangeValue<std::chrono::time_point<TClock, TDuration>> {
  static constexpr TFieldType Type =
      std::same_as<TDuration, std::chrono::days> ? ftDate : ftDateTime;
  static constexpr int Size = 0;
  static TFieldValue Read(std::chrono::time_point<TClock, TDuration> Value,
                          const TRangePlace& Place) {
    using std::chrono::days, std::chrono::milliseconds, std::chrono::sys_days;
    const TDuration sinceEpoch = Value.time_since_epoch();
    const sys_days day(std::chrono::floor<days>(sinceEpoch));
    // Far before the calendar (time_point::min() and the like) the difference overflows.
    const bool exists = RangeFirstDay <= day && day <= RangeLastDay;
    const milliseconds time =
        exists ? std::chrono::floor<milliseconds>(sinceEpoch - day.time_since_epoch())
               : milliseconds(0);
    return RangeDateTime(day, time, Place);
  }
};

template <class TRep, class TPeriod>
struct TRangeValue<std::chrono::duration<TRep, TPeriod>> {
  static constexpr TFieldType Type = ftTime;
  static constexpr int Size = 0;
  static TFieldValue Read(std::chrono::duration<TRep, TPeriod> Value, const TRangePlace& Place) {
    const std::chrono::duration<double> seconds(Value);
    const bool exists = seconds.count() >= 0 && Value < std::chrono::hours(24);
    if (!exists) RangeTimeError(seconds.count(), Place);
    return RangeTime(std::chrono::floor<std::chrono::milliseconds>(Value));
  }
};

template <class TDuration>
struct TRangeValue<std::chrono::hh_mm_ss<TDuration>> {
  using TPrecision = typename std::chrono::hh_mm_ss<TDuration>::precision;
  static constexpr TFieldType Type = ftTime;
  static constexpr int Size = 0;
  static TFieldValue Read(const std::chrono::hh_mm_ss<TDuration>& Value, const TRangePlace& Place) {
    return TRangeValue<TPrecision>::Read(Value.to_duration(), Place);
  }
};

template <RangeReadable T>
struct TRangeValue<std::optional<T>> {
  static constexpr TFieldType Type = TRangeValue<T>::Type;
  static constexpr int Size = TRangeValue<T>::Size;
  static TFieldValue Read(const std::optional<T>& Value, const TRangePlace& Place) {
    return Value ? TRangeValue<T>::Read(*Value, Place) : TFieldValue();
  }
};

}  // namespace norva::internal
