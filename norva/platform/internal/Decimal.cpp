#include <norva/platform/internal/Decimal.h>

#include <algorithm>
#include <charconv>
#include <cstring>

namespace norva::internal {
namespace {

void DropTrailingZeros(TDecimal& Value) {
  while (Value.Count > 0 && Value.DigitAt(Value.Count - 1) == '0') --Value.Count;
}

// Sets `Magnitude` / 10^`Decimals`.
void SetDigits(TDecimal& Value, std::uint64_t Magnitude, int Decimals) {
  if (Magnitude == 0) return;
  char* const first = Value.Digits.data();
  const char* const end = std::to_chars(first, first + Value.Digits.size(), Magnitude).ptr;
  Value.Count = static_cast<int>(end - first);
  Value.Point = Value.Count - Decimals;
  DropTrailingZeros(Value);
}

// The quick way for what tables are full of: numbers with up to four decimals.
//
// Let r be v * 10^4 rounded to an integer, of 15 digits at most. r and 10^4 are exact as doubles,
// so r / 10^4 is computed as the double nearest to that decimal: when it equals v, the decimal
// reads back to v. Two different decimals of up to 15 digits never read back to the same double,
// so nothing else that is as short or shorter does: without its trailing zeros this decimal is
// the shortest one. How r was found does not matter for this.
bool SetShortDigits(TDecimal& Value, double Magnitude) {
  constexpr int decimals = 4;
  constexpr double power = PowersOf10[decimals];
  const double product = Magnitude * power + 0.5;
  if (!(product < 1e15)) return false;
  const auto digits = static_cast<std::int64_t>(product);
  if (static_cast<double>(digits) / power != Magnitude) return false;
  SetDigits(Value, static_cast<std::uint64_t>(digits), decimals);
  return true;
}

// The general way, through d.dddde+xx.
void SetShortestDigits(TDecimal& Value, double Magnitude) {
  char text[32];
  const char* const end =
      std::to_chars(text, text + sizeof text, Magnitude, std::chars_format::scientific).ptr;
  const char* const letter = std::find(text, text + sizeof text, 'e');
  for (const char* c = text; c != letter; ++c) {
    if (*c != '.') Value.Digits[static_cast<std::size_t>(Value.Count++)] = *c;
  }
  int exponent = 0;
  std::from_chars(letter + (letter[1] == '+' ? 2 : 1), end, exponent);
  Value.Point = exponent + 1;
  DropTrailingZeros(Value);
}

}  // namespace

TDecimal DecimalOf(double Value) {
  TDecimal decimal;
  if (Value == 0) return decimal;
  decimal.Negative = Value < 0;
  const double magnitude = std::fabs(Value);
  if (!SetShortDigits(decimal, magnitude)) SetShortestDigits(decimal, magnitude);
  return decimal;
}

TDecimal DecimalOf(std::int64_t Value) {
  TDecimal decimal;
  decimal.Negative = Value < 0;
  const auto bits = static_cast<std::uint64_t>(Value);
  SetDigits(decimal, Value < 0 ? 0 - bits : bits, 0);
  return decimal;
}

void Round(TDecimal& Value, int Keep) {
  if (Keep >= Value.Count) return;
  const bool up = Keep >= 0 && Value.DigitAt(Keep) >= '5';
  Value.Count = std::max(Keep, 0);
  if (up) {
    while (Value.Count > 0 && Value.DigitAt(Value.Count - 1) == '9') --Value.Count;
    if (Value.Count > 0) {
      ++Value.Digits[static_cast<std::size_t>(Value.Count) - 1];
    } else {
      Value.Digits[0] = '1';
      Value.Count = 1;
      ++Value.Point;
    }
  }
  DropTrailingZeros(Value);
  if (Value.Count == 0) {
    Value.Point = 0;
    Value.Negative = false;
  }
}

void AppendInteger(std::int64_t Value, std::string& Out) {
  char text[24];
  const char* const end = std::to_chars(text, text + sizeof text, Value).ptr;
  Out.append(text, static_cast<std::size_t>(end - text));
}

void AppendGeneral(const TDecimal& Value, char DecimalSeparator, std::string& Out) {
  if (Value.IsZero()) {
    Out += '0';
    return;
  }
  char text[48];  // sign, "0.", 4 zeros, up to 20 digits; or a sign, digits, E and an exponent
  char* c = text;
  const auto put = [&](int from, int to) {
    std::memcpy(c, Value.Digits.data() + from, static_cast<std::size_t>(to - from));
    c += to - from;
  };
  if (Value.Negative) *c++ = '-';
  if (Value.Point < -4 || Value.Point > 15) {
    put(0, 1);
    if (Value.Count > 1) {
      *c++ = DecimalSeparator;
      put(1, Value.Count);
    }
    *c++ = 'E';
    c = std::to_chars(c, text + sizeof text, Value.Point - 1).ptr;
  } else {
    if (Value.Point <= 0) *c++ = '0';
    put(0, std::clamp(Value.Point, 0, Value.Count));
    for (int i = Value.Count; i < Value.Point; ++i) *c++ = '0';
    if (Value.Count > Value.Point) {
      *c++ = DecimalSeparator;
      for (int i = Value.Point; i < 0; ++i) *c++ = '0';
      put(std::max(Value.Point, 0), Value.Count);
    }
  }
  Out.append(text, static_cast<std::size_t>(c - text));
}

}  // namespace norva::internal
