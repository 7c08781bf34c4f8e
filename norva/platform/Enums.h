/// Enumerations with a name table, so that a value can be stored, shown and read as text.
///
/// Beside each enumeration stands
///
///   inline constexpr std::string_view TNorvaColAlignNames[] = {"ecaLeft", "ecaCenter",
///   "ecaRight"}; constexpr TEnumInfo EnumInfo(TNorvaColAlign) { return {"TNorvaColAlign",
///   TNorvaColAlignNames}; }
///
/// The names are in the order of the values, which run from 0 without a gap.
#pragma once

#include <concepts>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <type_traits>

namespace norva {

/// An enumeration's own name and the names of its values.
struct TEnumInfo {
  std::string_view TypeName;
  std::span<const std::string_view> Names;
};

/// An enumeration whose values have names.
template <class T>
concept NamedEnum = std::is_enum_v<T> && requires(T value) {
  { EnumInfo(value) } -> std::convertible_to<TEnumInfo>;
};

/// The name of `Value`; empty for a value outside the enumeration.
template <NamedEnum TEnum>
constexpr std::string_view EnumToStr(TEnum Value) {
  const TEnumInfo info = EnumInfo(Value);
  const auto index = static_cast<std::size_t>(Value);
  return index < info.Names.size() ? info.Names[index] : std::string_view();
}

/// The value named `Name`, spelt exactly so.
template <NamedEnum TEnum>
constexpr std::optional<TEnum> StrToEnum(std::string_view Name) {
  const TEnumInfo info = EnumInfo(TEnum{});
  for (std::size_t i = 0; i < info.Names.size(); ++i) {
    if (info.Names[i] == Name) return static_cast<TEnum>(i);
  }
  return std::nullopt;
}

}  // namespace norva
