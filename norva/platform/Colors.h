/// Colours, their names and their text form.
///
///   ColorToString(clRed)        "clRed"
///   ColorToString(0x123456)     "$00123456"
///   StringToColor("#FF0000")    clRed
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <norva/platform/Export.h>

namespace norva {

/// $00BBGGRR, or a system colour: the high bit set and its number in the low byte.
using TColor = std::int32_t;

inline constexpr TColor clBlack = 0x000000;
inline constexpr TColor clMaroon = 0x000080;
inline constexpr TColor clGreen = 0x008000;
inline constexpr TColor clOlive = 0x008080;
inline constexpr TColor clNavy = 0x800000;
inline constexpr TColor clPurple = 0x800080;
inline constexpr TColor clTeal = 0x808000;
inline constexpr TColor clGray = 0x808080;
inline constexpr TColor clSilver = 0xC0C0C0;
inline constexpr TColor clRed = 0x0000FF;
inline constexpr TColor clLime = 0x00FF00;
inline constexpr TColor clYellow = 0x00FFFF;
inline constexpr TColor clBlue = 0xFF0000;
inline constexpr TColor clFuchsia = 0xFF00FF;
inline constexpr TColor clAqua = 0xFFFF00;
inline constexpr TColor clWhite = 0xFFFFFF;
inline constexpr TColor clMoneyGreen = 0xC0DCC0;
inline constexpr TColor clSkyBlue = 0xF0CAA6;
inline constexpr TColor clCream = 0xF0FBFF;
inline constexpr TColor clMedGray = 0xA4A0A0;
/// No colour: a background that shows what is below.
inline constexpr TColor clNone = 0x1FFFFFFF;
/// The colour that the reader of the document prefers.
inline constexpr TColor clDefault = 0x20000000;
/// Other names of two colours, read but never written.
inline constexpr TColor clLtGray = clSilver;
inline constexpr TColor clDkGray = clGray;

/// The system colour with the given number.
constexpr TColor SystemColor(std::uint8_t Number) {
  return static_cast<TColor>(0x80000000U | Number);
}

inline constexpr TColor clScrollBar = SystemColor(0);
inline constexpr TColor clBackground = SystemColor(1);
inline constexpr TColor clActiveCaption = SystemColor(2);
inline constexpr TColor clInactiveCaption = SystemColor(3);
inline constexpr TColor clMenu = SystemColor(4);
inline constexpr TColor clWindow = SystemColor(5);
inline constexpr TColor clWindowFrame = SystemColor(6);
inline constexpr TColor clMenuText = SystemColor(7);
inline constexpr TColor clWindowText = SystemColor(8);
inline constexpr TColor clCaptionText = SystemColor(9);
inline constexpr TColor clActiveBorder = SystemColor(10);
inline constexpr TColor clInactiveBorder = SystemColor(11);
inline constexpr TColor clAppWorkSpace = SystemColor(12);
inline constexpr TColor clHighlight = SystemColor(13);
inline constexpr TColor clHighlightText = SystemColor(14);
inline constexpr TColor clBtnFace = SystemColor(15);
inline constexpr TColor clBtnShadow = SystemColor(16);
inline constexpr TColor clGrayText = SystemColor(17);
inline constexpr TColor clBtnText = SystemColor(18);
inline constexpr TColor clInactiveCaptionText = SystemColor(19);
inline constexpr TColor clBtnHighlight = SystemColor(20);
inline constexpr TColor cl3DDkShadow = SystemColor(21);
inline constexpr TColor cl3DLight = SystemColor(22);
inline constexpr TColor clInfoText = SystemColor(23);
inline constexpr TColor clInfoBk = SystemColor(24);
inline constexpr TColor clHotLight = SystemColor(26);
inline constexpr TColor clGradientActiveCaption = SystemColor(27);
inline constexpr TColor clGradientInactiveCaption = SystemColor(28);
inline constexpr TColor clMenuHighlight = SystemColor(29);
inline constexpr TColor clMenuBar = SystemColor(30);

/// The name of exactly this value, else `$` and eight upper-case hexadecimal digits.
NORVA_EXPORT std::string ColorToString(TColor Color);
/// A name in any letter case, `#RRGGBB`, or an integer as StrToInt reads it; throws EConvertError.
NORVA_EXPORT TColor StringToColor(std::string_view Text);
/// The colour as $00BBGGRR. System colours have fixed values; a number without a name is black.
NORVA_EXPORT TColor ColorToRGB(TColor Color);

}  // namespace norva
