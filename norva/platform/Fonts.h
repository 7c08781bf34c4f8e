/// Fonts, and the width of a text in one of them.
///
/// No screen is asked: widths come from built-in tables, so that a document is the same on every
/// machine.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <norva/platform/Colors.h>
#include <norva/platform/Enums.h>
#include <norva/platform/Export.h>
#include <norva/platform/Persistent.h>
#include <norva/platform/Sets.h>

namespace norva {

enum TFontStyle : std::uint8_t { fsBold, fsItalic, fsUnderline, fsStrikeOut };
inline constexpr std::string_view TFontStyleNames[] = {"fsBold", "fsItalic", "fsUnderline",
                                                       "fsStrikeOut"};
constexpr TEnumInfo EnumInfo(TFontStyle) { return {"TFontStyle", TFontStyleNames}; }

using TFontStyles = TSet<TFontStyle>;

class NORVA_EXPORT TFont : public TPersistent {
 public:
  std::string Name = "Arial";
  /// In points.
  std::int32_t Size = 8;
  TFontStyles Style;
  TColor Color = clWindowText;
  /// The number by which documents name a character set; 1 is the default one.
  std::uint8_t Charset = 1;

  /// Minus the em size in pixels at 96 dots per inch.
  std::int32_t Height() const;
  /// Sets Size to the points that come nearest.
  void SetHeight(std::int32_t Value);

  /// Copies all properties of another TFont.
  void Assign(const TPersistent& Source) override;
  std::string_view ClassName() const override { return "TFont"; }
  const TPropertyList& Properties() const override;
};

/// Width of `Text` in pixels at 96 dots per inch, without kerning. Control characters have none.
NORVA_EXPORT std::int32_t TextWidth(std::string_view Text, const TFont& Font);

}  // namespace norva
