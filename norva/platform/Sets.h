/// A set of enumeration values, one bit each.
///
///   TFontStyles style = {fsBold, fsItalic};
///   if (style.Contains(fsBold)) ...
#pragma once

#include <cstdint>
#include <initializer_list>
#include <type_traits>

namespace norva {

/// Any of the values of `TEnum`, which lie between 0 and 31.
template <class TEnum>
requires std::is_enum_v<TEnum>
class TSet {
 public:
  constexpr TSet() = default;
  constexpr TSet(std::initializer_list<TEnum> Values) {
    for (TEnum value : Values) Include(value);
  }

  constexpr bool Contains(TEnum Value) const { return (Bits_ & Bit(Value)) != 0; }
  constexpr void Include(TEnum Value) { Bits_ |= Bit(Value); }
  constexpr void Exclude(TEnum Value) { Bits_ &= ~Bit(Value); }
  constexpr bool Empty() const { return Bits_ == 0; }
  /// Value n as bit n.
  constexpr std::uint32_t Bits() const { return Bits_; }

  constexpr bool operator==(const TSet&) const = default;

 private:
  static constexpr std::uint32_t Bit(TEnum Value) {
    return std::uint32_t{1} << static_cast<unsigned>(Value);
  }

  std::uint32_t Bits_ = 0;
};

}  // namespace norva
