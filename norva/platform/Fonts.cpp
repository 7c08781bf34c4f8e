#include <norva/platform/Fonts.h>

#include <cstddef>

#include <norva/platform/CodePages.h>
#include <norva/platform/Property.h>

namespace norva {

namespace {

constexpr std::int64_t DotsPerInch = 96;
constexpr std::int64_t PointsPerInch = 72;
constexpr std::int64_t UnitsPerEm = 1000;

// Advances in units per em of the usual sans-serif faces, for the characters 32 to 126.
constexpr char32_t FirstInTable = 32;
constexpr std::int16_t RegularAdvances[] = {
    278, 278, 355, 556, 556, 889, 667,  191,                           // blank to '
    333, 333, 389, 584, 278, 333, 278,  278,                           // ( to /
    556, 556, 556, 556, 556, 556, 556,  556, 556, 556,                 // digits
    278, 278, 584, 584, 584, 556, 1015,                                // : to @
    667, 667, 722, 722, 667, 611, 778,  722, 278, 500, 667, 556, 833,  // A to M
    722, 778, 667, 778, 722, 667, 611,  722, 667, 944, 667, 667, 611,  // N to Z
    278, 278, 278, 469, 556, 333,                                      // [ to `
    556, 556, 500, 556, 556, 278, 556,  556, 222, 222, 500, 222, 833,  // a to m
    556, 556, 556, 556, 333, 500, 278,  556, 500, 722, 500, 500, 500,  // n to z
    334, 260, 334, 584};                                               // { to ~
constexpr std::int16_t BoldAdvances[] = {
    278, 333, 474, 556, 556, 889, 722, 238,                           // blank to '
    333, 333, 389, 584, 278, 333, 278, 278,                           // ( to /
    556, 556, 556, 556, 556, 556, 556, 556, 556, 556,                 // digits
    333, 333, 584, 584, 584, 611, 975,                                // : to @
    722, 722, 722, 722, 667, 611, 778, 722, 278, 556, 722, 611, 833,  // A to M
    722, 778, 667, 778, 722, 667, 611, 722, 667, 944, 667, 667, 611,  // N to Z
    333, 278, 333, 584, 556, 333,                                     // [ to `
    556, 611, 556, 611, 556, 333, 611, 611, 278, 278, 556, 278, 889,  // a to m
    611, 611, 611, 611, 389, 556, 333, 611, 556, 778, 556, 556, 500,  // n to z
    389, 280, 389, 584};                                              // { to ~
static_assert(std::size(RegularAdvances) == 95 && std::size(BoldAdvances) == 95);
constexpr int OtherAdvance = 556;  // an average letter, for what the tables lack
constexpr int OtherBoldAdvance = 611;
constexpr int FixedPitchAdvance = 600;

/// The nearest whole number, halves up.
constexpr std::int64_t RoundedQuotient(std::int64_t Dividend, std::int64_t Divisor) {
  const std::int64_t numerator = 2 * Dividend + Divisor;
  const std::int64_t denominator = 2 * Divisor;
  const std::int64_t quotient = numerator / denominator;
  return numerator % denominator < 0 ? quotient - 1 : quotient;
}

std::int64_t EmInPixels(const TFont& Font) {
  return RoundedQuotient(Font.Size * DotsPerInch, PointsPerInch);
}

bool IsFixedPitch(const TFont& Font) {
  const std::string name = UpperCase(Font.Name);
  return name.find("COURIER") != name.npos || name.find("MONO") != name.npos;
}

bool IsControl(char32_t Character) {
  return Character < 0x20 || (Character >= 0x7F && Character < 0xA0);
}

int Advance(char32_t Character, bool Bold) {
  if (Character < FirstInTable || Character - FirstInTable >= std::size(RegularAdvances)) {
    return Bold ? OtherBoldAdvance : OtherAdvance;
  }
  return (Bold ? BoldAdvances : RegularAdvances)[Character - FirstInTable];
}

}  // namespace

std::int32_t TFont::Height() const { return static_cast<std::int32_t>(-EmInPixels(*this)); }

void TFont::SetHeight(std::int32_t Value) {
  const std::int64_t em = -std::int64_t{Value};
  Size = static_cast<std::int32_t>(RoundedQuotient(em * PointsPerInch, DotsPerInch));
}

void TFont::Assign(const TPersistent& Source) {
  if (const auto* font = dynamic_cast<const TFont*>(&Source)) {
    *this = *font;
  } else {
    TPersistent::Assign(Source);
  }
}

const TPropertyList& TFont::Properties() const {
  static const TPropertyList list{
      Published("Name", &TFont::Name, "Arial"),
      Published("Size", &TFont::Size, 8),
      Published("Style", &TFont::Style, TFontStyles()),
      PublishedColor("Color", &TFont::Color, clWindowText),
      Published("Charset", &TFont::Charset, 1),
  };
  return list;
}

std::int32_t TextWidth(std::string_view Text, const TFont& Font) {
  const std::int64_t em = EmInPixels(Font);
  const bool fixedPitch = IsFixedPitch(Font);
  const bool bold = Font.Style.Contains(fsBold);
  std::int64_t width = 0;
  for (char32_t character : ToUtf32(Text)) {
    if (IsControl(character)) continue;
    const int advance = fixedPitch ? FixedPitchAdvance : Advance(character, bold);
    width += RoundedQuotient(advance * em, UnitsPerEm);
  }
  return static_cast<std::int32_t>(width);
}

}  // namespace norva
