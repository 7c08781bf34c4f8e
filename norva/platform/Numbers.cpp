#include <norva/platform/Numbers.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>
#include <norva/platform/internal/Decimal.h>

namespace norva {
namespace {

bool IsDigit(char C) { return C >= '0' && C <= '9'; }

// Takes the sign that `Text` begins with: '+', '-', or 0 for none.
char TakeSign(std::string_view& Text) {
  if (Text.empty() || (Text[0] != '+' && Text[0] != '-')) return 0;
  const char sign = Text[0];
  Text.remove_prefix(1);
  return sign;
}

// Takes `$`, `0x` or `0X` and returns the base of the digits that follow.
int TakeBase(std::string_view& Text) {
  if (Text.starts_with('$')) {
    Text.remove_prefix(1);
    return 16;
  }
  if (Text.starts_with("0x") || Text.starts_with("0X")) {
    Text.remove_prefix(2);
    return 16;
  }
  return 10;
}

// `TInt` is a signed type; nothing when the text is no integer or out of its range.
template <class TInt>
std::optional<TInt> ParseInteger(std::string_view Text) {
  using TBits = std::make_unsigned_t<TInt>;
  Text.remove_prefix(std::min(Text.find_first_not_of(" \t"), Text.size()));
  const char sign = TakeSign(Text);
  const int base = TakeBase(Text);
  TBits bits = 0;
  const char* const end = Text.data() + Text.size();
  const auto [parsed, error] = std::from_chars(Text.data(), end, bits, base);
  if (error != std::errc() || parsed != end) return std::nullopt;
  // On purpose: only hexadecimal without a sign is a bit pattern.
  const bool pattern = base == 16 && sign == 0;
  constexpr auto largest = static_cast<TBits>(std::numeric_limits<TInt>::max());
  if (!pattern && bits > largest + (sign == '-' ? 1U : 0U)) return std::nullopt;
  return static_cast<TInt>(sign == '-' ? TBits(0) - bits : bits);
}

template <class TInt>
TInt IntegerOrError(std::string_view Text) {
  if (const std::optional<TInt> value = ParseInteger<TInt>(Text)) return *value;
  throw EConvertError(MsgNotAnInteger, Text);
}

template <class TInt>
bool TryInteger(std::string_view Text, TInt& Value) {
  const std::optional<TInt> value = ParseInteger<TInt>(Text);
  if (value) Value = *value;
  return value.has_value();
}

// Number of digits that `Text` begins with, from `From` on.
std::size_t CountDigits(std::string_view Text, std::size_t From) {
  std::size_t end = From;
  while (end < Text.size() && IsDigit(Text[end])) ++end;
  return end - From;
}

// Where the parts of an unsigned decimal number stand. With one digit at least before or after the
// separator, and one after E.
struct TNumberShape {
  bool Valid = false;
  std::size_t Separator = std::string_view::npos;
  std::size_t MantissaEnd = 0;
};

TNumberShape ShapeOf(std::string_view Text, char DecimalSeparator) {
  TNumberShape shape;
  std::size_t digits = CountDigits(Text, 0);
  std::size_t at = digits;
  if (at < Text.size() && Text[at] == DecimalSeparator) {
    shape.Separator = at;
    const std::size_t decimals = CountDigits(Text, at + 1);
    digits += decimals;
    at += 1 + decimals;
  }
  shape.MantissaEnd = at;
  if (digits == 0) return shape;
  if (at < Text.size() && (Text[at] == 'E' || Text[at] == 'e')) {
    ++at;
    if (at < Text.size() && (Text[at] == '+' || Text[at] == '-')) ++at;
    const std::size_t exponent = CountDigits(Text, at);
    if (exponent == 0) return shape;
    at += exponent;
  }
  shape.Valid = at == Text.size();
  return shape;
}

// True when a number outside the range of doubles is too small rather than too large. Its decimal
// exponent is far from 0, so that its sign settles it.
bool IsTooSmall(std::string_view Text, const TNumberShape& Shape) {
  const std::size_t point = std::min(Shape.Separator, Shape.MantissaEnd);
  const std::size_t first = Text.find_first_not_of("0.");
  long long exponent = first < point ? static_cast<long long>(point - first)
                                     : -static_cast<long long>(first - point - 1);
  if (Shape.MantissaEnd < Text.size()) {
    std::string_view digits = Text.substr(Shape.MantissaEnd + 1);
    const bool negative = TakeSign(digits) == '-';
    // So long a mantissa does not exist that it would outweigh an exponent beyond this.
    long long written = std::numeric_limits<long long>::max() / 2;
    std::from_chars(digits.data(), digits.data() + digits.size(), written);
    exponent += negative ? -written : written;
  }
  return exponent < 0;
}

// The value of an unsigned number that is written with a point.
std::optional<double> ParseMagnitude(std::string_view Text, const TNumberShape& Shape) {
  double value = 0;
  const auto error = std::from_chars(Text.data(), Text.data() + Text.size(), value).ec;
  if (error == std::errc()) return value;
  if (error == std::errc::result_out_of_range && IsTooSmall(Text, Shape)) return 0.0;
  return std::nullopt;
}

bool EqualsInCapitals(std::string_view Text, std::string_view Capitals) {
  return std::equal(Text.begin(), Text.end(), Capitals.begin(), Capitals.end(),
                    [](char a, char b) { return (a >= 'a' && a <= 'z' ? a - 32 : a) == b; });
}

std::optional<double> ParseFloat(std::string_view Text, char DecimalSeparator) {
  const auto isBlank = [](char c) { return static_cast<unsigned char>(c) <= 32; };
  while (!Text.empty() && isBlank(Text.front())) Text.remove_prefix(1);
  while (!Text.empty() && isBlank(Text.back())) Text.remove_suffix(1);
  const char sign = TakeSign(Text);

  std::optional<double> value;
  const TNumberShape shape = ShapeOf(Text, DecimalSeparator);
  if (shape.Valid && (DecimalSeparator == '.' || shape.Separator == std::string_view::npos)) {
    value = ParseMagnitude(Text, shape);
  } else if (shape.Valid) {
    std::string pointed(Text);
    pointed[shape.Separator] = '.';
    value = ParseMagnitude(pointed, shape);
  } else if (EqualsInCapitals(Text, "INF")) {
    value = std::numeric_limits<double>::infinity();
  } else if (EqualsInCapitals(Text, "NAN")) {
    value = std::numeric_limits<double>::quiet_NaN();
  }
  if (value && sign == '-') value = -*value;
  return value;
}

}  // namespace

std::string FormatFloat(std::string_view Picture, double Value) {
  std::string text;
  TNumberPicture(Picture).Append(Value, FormatSettings(), text);
  return text;
}

std::string FormatFloat(std::string_view Picture, std::int64_t Value) {
  std::string text;
  TNumberPicture(Picture).Append(Value, FormatSettings(), text);
  return text;
}

std::string FloatToStr(double Value) {
  std::string text;
  AppendFloatToStr(Value, FormatSettings(), text);
  return text;
}

void AppendFloatToStr(double Value, const TFormatSettings& Settings, std::string& Out) {
  if (!std::isfinite(Value)) {
    Out += internal::NonNumberText(Value);
  } else if (std::fabs(Value) < 1e15 && Value == std::trunc(Value)) {
    // Shorter than by way of the digits, and -0 becomes 0.
    internal::AppendInteger(static_cast<std::int64_t>(Value), Out);
  } else {
    internal::AppendGeneral(internal::DecimalOf(Value), Settings.DecimalSeparator, Out);
  }
}

std::string FloatToFixed(double Value, int Decimals) {
  if (!std::isfinite(Value)) return std::string(internal::NonNumberText(Value));
  const int decimals = std::max(Decimals, 0);
  internal::TDecimal decimal = internal::DecimalOf(Value);
  internal::Round(decimal, decimal.Point + decimals);
  std::string text;
  if (decimal.Negative) text += '-';
  // At least one integer digit, a 0 if there is none.
  for (int i = std::min(decimal.Point - 1, 0); i < decimal.Point; ++i) text += decimal.DigitAt(i);
  if (decimals > 0) text += FormatSettings().DecimalSeparator;
  for (int i = 0; i < decimals; ++i) text += decimal.DigitAt(decimal.Point + i);
  return text;
}

std::int32_t StrToInt(std::string_view Text) { return IntegerOrError<std::int32_t>(Text); }
std::int64_t StrToInt64(std::string_view Text) { return IntegerOrError<std::int64_t>(Text); }

std::int32_t StrToIntDef(std::string_view Text, std::int32_t Default) {
  return ParseInteger<std::int32_t>(Text).value_or(Default);
}

std::int64_t StrToInt64Def(std::string_view Text, std::int64_t Default) {
  return ParseInteger<std::int64_t>(Text).value_or(Default);
}

bool TryStrToInt(std::string_view Text, std::int32_t& Value) { return TryInteger(Text, Value); }
bool TryStrToInt64(std::string_view Text, std::int64_t& Value) { return TryInteger(Text, Value); }

double StrToFloat(std::string_view Text) {
  if (const auto value = ParseFloat(Text, FormatSettings().DecimalSeparator)) return *value;
  throw EConvertError(MsgNotANumber, Text);
}

bool TryStrToFloat(std::string_view Text, double& Value) {
  const auto value = ParseFloat(Text, FormatSettings().DecimalSeparator);
  if (value) Value = *value;
  return value.has_value();
}

}  // namespace norva
