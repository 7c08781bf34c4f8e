/// Number pictures: how a column of numbers looks.
///
///   const TNumberPicture picture("#,##0.00;(#,##0.00);nil");
///   picture.Append(-1234.5, FormatSettings(), text);          // "(1,234.50)"
///
///   0             a digit, or a 0 where the number has none
///   #             a digit, or nothing
///   .             separates integer from decimal places
///   ,             anywhere in a section: thousand separators
///   E+0 E-0 e+00  exponent, with at least as many digits as zeros; with `+` always signed
///   'text' "text" as it stands, as is any other character
///   ;             ends the section for positive values, then the one for negative ones, then the
///                 one for zero; an empty or missing one means the first
///
/// Rounding is half away from zero on the shortest decimal digits that read back to the same
/// double: 2.675 with `0.00` is 2.68. What rounds to zero is shown as zero, without a sign. A
/// negative value shown by the first section gets `-` before everything. Digits in excess of the
/// integer places come out at the first of them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <norva/platform/Export.h>
#include <norva/platform/Locale.h>

namespace norva {

namespace internal {
struct TDecimal;
}

/// A number picture, parsed once and used for many values. The empty picture is the general form:
/// all digits of an integer, 15 significant digits of a double.
///
///   picture = section [";" section [";" section [";" ignored]]]
///   section = { "0" | "#" | "." | "," | exponent | quoted text | any other character }
///
/// `.` and `,` stand for the locale's decimal and thousand separators at the time of each call.
class NORVA_EXPORT TNumberPicture {
 public:
  explicit TNumberPicture(std::string_view Picture = {});

  /// Appends the text of `Value` to `Out`. The 64-bit form is exact over its whole range. A double
  /// that is no number gives NAN, INF or -INF whatever the picture; one of magnitude 10^18 or more
  /// gives the general form unless the section has an exponent.
  void Append(double Value, const TFormatSettings& Settings, std::string& Out) const;
  void Append(std::int64_t Value, const TFormatSettings& Settings, std::string& Out) const;
  /// At least the number of bytes that Append writes for `Value`, found without writing them;
  /// SIZE_MAX where only writing can tell.
  std::size_t LengthBound(double Value, const TFormatSettings& Settings) const;
  std::size_t LengthBound(std::int64_t Value, const TFormatSettings& Settings) const;

 private:
  enum TPartKind : std::uint8_t { pkLiteral, pkIntegerPlace, pkDecimalPlace, pkExponent };
  struct TPart {
    TPartKind Kind;
    std::string Text;  // of a literal; of an exponent its letter
  };
  struct TSection {
    void Parse(std::string_view Text);
    void AddLiteral(std::string_view Text);
    void AddPlace(bool Zero, bool Decimal);
    std::size_t AddExponent(std::string_view Text);
    void FindPlainShape();

    bool CanWritePlain(const TFormatSettings& Settings) const;
    std::size_t PlainLength(bool Negative, std::uint64_t Whole, int Decimals,
                            const TFormatSettings& Settings) const;
    void AppendPlain(bool Negative, std::uint64_t Scaled, int Decimals,
                     const TFormatSettings& Settings, std::string& Out) const;
    void AppendParts(internal::TDecimal Value, const TFormatSettings& Settings,
                     std::string& Out) const;
    void AppendExponent(char Letter, int Exponent, std::string& Out) const;

    bool Empty = true;
    bool Grouping = false;
    bool HasExponent = false;
    bool ExponentPlus = false;  // a positive exponent is written with its sign
    bool Plain = false;         // [Prefix] places [Suffix], no exponent: what AppendPlain can write
    int ExponentDigits = 0;     // at least so many
    int IntegerPlaces = 0;
    int DecimalPlaces = 0;
    int MinInteger = 0;  // digits that are written at least
    int MinDecimals = 0;
    std::string Prefix, Suffix;
    std::vector<TPart> Parts;
  };

  const TSection& SectionFor(bool Negative, bool Zero) const;
  void AppendZero(const TFormatSettings& Settings, std::string& Out) const;
  void AppendDecimal(internal::TDecimal Value, const TSection& Section,
                     const TFormatSettings& Settings, std::string& Out) const;

  std::array<TSection, 3> Sections_;  // positive, negative, zero
};

}  // namespace norva
