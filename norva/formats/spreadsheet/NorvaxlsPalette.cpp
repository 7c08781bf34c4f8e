#include <norva/formats/spreadsheet/NorvaxlsFormat.h>

#include <cstddef>
#include <iterator>

namespace norva {

namespace {

struct TPaletteEntry {
  int Index;
  std::int32_t RGB;  // 0xRRGGBB
};

// The BIFF8 palette begins at 8 and is used in its standard state, so that no record redefines it.
constexpr TPaletteEntry Palette[] = {
    {8,  0x000000}, // clrBlack
    {60, 0x993300}, // clrBrown
    {59, 0x333300}, // clrOliveGreen
    {58, 0x003300}, // clrDarkGreen
    {56, 0x003366}, // clrDarkTeal
    {18, 0x000080}, // clrDarkBlue
    {62, 0x333399}, // clrIndigo
    {63, 0x333333}, // clrGray80Percent
    {16, 0x800000}, // clrDarkRed
    {53, 0xFF6600}, // clrOrange
    {19, 0x808000}, // clrDarkYellow
    {17, 0x008000}, // clrGreen
    {21, 0x008080}, // clrTeal
    {12, 0x0000FF}, // clrBlue
    {54, 0x666699}, // clrBlueGray
    {23, 0x808080}, // clrGray50Percent
    {10, 0xFF0000}, // clrRed
    {52, 0xFF9900}, // clrLightOrange
    {50, 0x99CC00}, // clrLime
    {57, 0x339966}, // clrSeaGreen
    {49, 0x33CCCC}, // clrAqua
    {48, 0x3366FF}, // clrLightBlue
    {20, 0x800080}, // clrViolet
    {55, 0x969696}, // clrGray40Percent
    {14, 0xFF00FF}, // clrPink
    {51, 0xFFCC00}, // clrGold
    {13, 0xFFFF00}, // clrYellow
    {11, 0x00FF00}, // clrBrightGreen
    {15, 0x00FFFF}, // clrTurquoise
    {40, 0x00CCFF}, // clrSkyBlue
    {61, 0x993366}, // clrPlum
    {22, 0xC0C0C0}, // clrGray25Percent
    {45, 0xFF99CC}, // clrRose
    {47, 0xFFCC99}, // clrTan
    {43, 0xFFFF99}, // clrLightYellow
    {42, 0xCCFFCC}, // clrLihtGreen
    {41, 0xCCFFFF}, // clrLightTurquoise
    {44, 0x99CCFF}, // clrPaleBlue
    {46, 0xCC99FF}, // clrLavender
    {9,  0xFFFFFF}, // clrWhite
};
static_assert(std::size(Palette) == std::size(TxlsColorNames) && clrWhite + 1 == 40);

}  // namespace

int PaletteIndex(TxlsColor Color) { return Palette[Color].Index; }

TColor PaletteColor(TxlsColor Color) {
  const std::int32_t rgb = Palette[Color].RGB;
  return (rgb & 0xFF) << 16 | (rgb & 0xFF00) | rgb >> 16;
}

TxlsColor PaletteMember(TColor Color) {
  for (std::size_t i = 0; i < std::size(Palette); ++i) {
    const auto member = static_cast<TxlsColor>(i);
    if (PaletteColor(member) == Color) return member;
  }
  return clrBlack;
}

std::string XLSClr2Str(TxlsColor Color) { return ColorToString(PaletteColor(Color)); }

TxlsColor Str2XLSClr(std::string_view Text) { return PaletteMember(StringToColor(Text)); }

}  // namespace norva
