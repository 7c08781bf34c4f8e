/// The decimal digits of a number: what all number formatting starts from.
///
/// A double stands for the shortest decimal that reads back to it, so that 2.675 (in binary a
/// little less) rounds to 2.68 as a reader of "2.675" expects.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

namespace norva::internal {

/// The value 0.d1d2d3... * 10^Point. The first and the last digit are not 0; zero has no digits.
struct TDecimal {
  std::array<char, 20> Digits;  // '0' to '9'; the first Count are set
  int Count = 0;
  int Point = 0;
  bool Negative = false;

  bool IsZero() const { return Count == 0; }
  /// The digit at `Index`; zeros stand before the first and after the last one.
  char DigitAt(int Index) const {
    return Index >= 0 && Index < Count ? Digits[static_cast<std::size_t>(Index)] : '0';
  }
};

/// 10^0 to 10^22: the powers of ten that a double holds exactly.
inline constexpr std::array<double, 23> PowersOf10 = {
    1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
    1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// The shortest digits that read back to `Value`, which must be finite.
TDecimal DecimalOf(double Value);
/// All digits of `Value`.
TDecimal DecimalOf(std::int64_t Value);

/// Rounds to the first `Keep` digits (none or a negative number of them included), half away from
/// zero. A value that becomes zero loses its sign.
void Round(TDecimal& Value, int Keep);

/// Sets `Scaled` to `Magnitude` * 10^`Decimals`, rounded half away from zero on the shortest
/// digits; false, with `Scaled` unset, where that takes the digits themselves. `Magnitude` is not
/// negative, `Decimals` is 0 to 22.
///
/// Let s be the shortest decimal of the double v, and p the product v * 10^d as computed. s lies
/// within half a unit in the last place of v, hence |s - v| <= v * 2^-53, and the product is off
/// by at most p * 2^-53. So s * 10^d and p differ by less than p * 2^-51 (when the product is
/// tiny or denormal: by much less than 1/2). If p keeps twice that distance from the nearest
/// half, s * 10^d lies on the same side of it, and both round to the same integer.
inline bool ScaleRounded(double Magnitude, int Decimals, std::uint64_t& Scaled) {
  const double product = Magnitude * PowersOf10[static_cast<std::size_t>(Decimals)];
  // From 2^49 on the margin is at least 1/2, and no product passes.
  if (!(product < 0x1p49)) return false;
  const auto whole = static_cast<std::int64_t>(product);
  const double aboveHalf = product - static_cast<double>(whole) - 0.5;
  if (std::fabs(aboveHalf) <= product * 0x1p-50) return false;
  Scaled = static_cast<std::uint64_t>(whole) + (aboveHalf > 0 ? 1 : 0);
  return true;
}

/// The text of a value that is no number: NAN, INF or -INF.
inline std::string_view NonNumberText(double Value) {
  if (std::isnan(Value)) return "NAN";
  return Value < 0 ? "-INF" : "INF";
}

void AppendInteger(std::int64_t Value, std::string& Out);

/// Plain digits from 0.00001 to below 10^15, else one digit before the separator and an exponent:
/// `1.5E-7`.
void AppendGeneral(const TDecimal& Value, char DecimalSeparator, std::string& Out);

}  // namespace norva::internal
