#include <norva/platform/Colors.h>

#include <charconv>
#include <cstddef>

#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>
#include <norva/platform/Numbers.h>

namespace norva {

namespace {

struct TNamedColor {
  std::string_view Name;
  TColor Value;
};

// Writing takes the first name of a value, so the second names stand at the end.
constexpr TNamedColor NamedColors[] = {
    {"clBlack",                   clBlack                  },
    {"clMaroon",                  clMaroon                 },
    {"clGreen",                   clGreen                  },
    {"clOlive",                   clOlive                  },
    {"clNavy",                    clNavy                   },
    {"clPurple",                  clPurple                 },
    {"clTeal",                    clTeal                   },
    {"clGray",                    clGray                   },
    {"clSilver",                  clSilver                 },
    {"clRed",                     clRed                    },
    {"clLime",                    clLime                   },
    {"clYellow",                  clYellow                 },
    {"clBlue",                    clBlue                   },
    {"clFuchsia",                 clFuchsia                },
    {"clAqua",                    clAqua                   },
    {"clWhite",                   clWhite                  },
    {"clMoneyGreen",              clMoneyGreen             },
    {"clSkyBlue",                 clSkyBlue                },
    {"clCream",                   clCream                  },
    {"clMedGray",                 clMedGray                },
    {"clNone",                    clNone                   },
    {"clDefault",                 clDefault                },
    {"clScrollBar",               clScrollBar              },
    {"clBackground",              clBackground             },
    {"clActiveCaption",           clActiveCaption          },
    {"clInactiveCaption",         clInactiveCaption        },
    {"clMenu",                    clMenu                   },
    {"clWindow",                  clWindow                 },
    {"clWindowFrame",             clWindowFrame            },
    {"clMenuText",                clMenuText               },
    {"clWindowText",              clWindowText             },
    {"clCaptionText",             clCaptionText            },
    {"clActiveBorder",            clActiveBorder           },
    {"clInactiveBorder",          clInactiveBorder         },
    {"clAppWorkSpace",            clAppWorkSpace           },
    {"clHighlight",               clHighlight              },
    {"clHighlightText",           clHighlightText          },
    {"clBtnFace",                 clBtnFace                },
    {"clBtnShadow",               clBtnShadow              },
    {"clGrayText",                clGrayText               },
    {"clBtnText",                 clBtnText                },
    {"clInactiveCaptionText",     clInactiveCaptionText    },
    {"clBtnHighlight",            clBtnHighlight           },
    {"cl3DDkShadow",              cl3DDkShadow             },
    {"cl3DLight",                 cl3DLight                },
    {"clInfoText",                clInfoText               },
    {"clInfoBk",                  clInfoBk                 },
    {"clHotLight",                clHotLight               },
    {"clGradientActiveCaption",   clGradientActiveCaption  },
    {"clGradientInactiveCaption", clGradientInactiveCaption},
    {"clMenuHighlight",           clMenuHighlight          },
    {"clMenuBar",                 clMenuBar                },
    {"clLtGray",                  clLtGray                 },
    {"clDkGray",                  clDkGray                 },
};

// The system colours by number, as 0xRRGGBB: a classic desktop, the same on every machine.
constexpr std::int32_t SystemRGB[] = {
    0xD4D0C8,  // 0 clScrollBar
    0x3A6EA5,  // 1 clBackground
    0x0A246A,  // 2 clActiveCaption
    0x808080,  // 3 clInactiveCaption
    0xD4D0C8,  // 4 clMenu
    0xFFFFFF,  // 5 clWindow
    0x000000,  // 6 clWindowFrame
    0x000000,  // 7 clMenuText
    0x000000,  // 8 clWindowText
    0xFFFFFF,  // 9 clCaptionText
    0xD4D0C8,  // 10 clActiveBorder
    0xD4D0C8,  // 11 clInactiveBorder
    0x808080,  // 12 clAppWorkSpace
    0x0A246A,  // 13 clHighlight
    0xFFFFFF,  // 14 clHighlightText
    0xD4D0C8,  // 15 clBtnFace
    0x808080,  // 16 clBtnShadow
    0x808080,  // 17 clGrayText
    0x000000,  // 18 clBtnText
    0xD4D0C8,  // 19 clInactiveCaptionText
    0xFFFFFF,  // 20 clBtnHighlight
    0x404040,  // 21 cl3DDkShadow
    0xD4D0C8,  // 22 cl3DLight
    0x000000,  // 23 clInfoText
    0xFFFFE1,  // 24 clInfoBk
    0x000000,  // 25 no name
    0x000080,  // 26 clHotLight
    0xA6CAF0,  // 27 clGradientActiveCaption
    0xC0C0C0,  // 28 clGradientInactiveCaption
    0x0A246A,  // 29 clMenuHighlight
    0xD4D0C8,  // 30 clMenuBar
};

/// 0xRRGGBB to $00BBGGRR or back.
constexpr std::int32_t SwapRedAndBlue(std::int32_t Color) {
  return (Color & 0xFF) << 16 | (Color & 0xFF00) | (Color >> 16 & 0xFF);
}

bool TryHashToColor(std::string_view Text, TColor& Color) {
  if (Text.size() != 7 || Text[0] != '#') return false;
  std::uint32_t rgb = 0;
  const char* end = Text.data() + Text.size();
  if (std::from_chars(Text.data() + 1, end, rgb, 16).ptr != end) return false;
  Color = SwapRedAndBlue(static_cast<std::int32_t>(rgb));
  return true;
}

}  // namespace

std::string ColorToString(TColor Color) {
  for (const TNamedColor& named : NamedColors) {
    if (named.Value == Color) return std::string(named.Name);
  }
  constexpr char digits[] = "0123456789ABCDEF";
  const auto bits = static_cast<std::uint32_t>(Color);
  std::string text = "$";
  for (int shift = 28; shift >= 0; shift -= 4) text += digits[bits >> shift & 0xF];
  return text;
}

TColor StringToColor(std::string_view Text) {
  for (const TNamedColor& named : NamedColors) {
    if (CompareText(named.Name, Text) == 0) return named.Value;
  }
  TColor color = 0;
  if (TryHashToColor(Text, color) || TryStrToInt(Text, color)) return color;
  throw EConvertError(MsgNotAColor, Text);
}

TColor ColorToRGB(TColor Color) {
  if (Color >= 0) return Color & 0xFFFFFF;
  const auto number = static_cast<std::size_t>(Color & 0xFF);
  return number < std::size(SystemRGB) ? SwapRedAndBlue(SystemRGB[number]) : clBlack;
}

}  // namespace norva
