/// What the pages of the HTML exporter and their tables look like.
///
/// The colours described as "by the template" are those that TNorvaHTML's HTMLTemplate fills in.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <norva/platform/Colors.h>
#include <norva/platform/Enums.h>
#include <norva/platform/Export.h>
#include <norva/platform/Fonts.h>
#include <norva/platform/Persistent.h>
#include <norva/platform/Sets.h>
#include <norva/platform/StringList.h>

namespace norva {

/// What is left to the browser.
enum TDefaultOption : std::uint8_t {
  doFontName,  ///< no font-family in the style sheet
  doFontSize,  ///< no font-size in the style sheet
};
inline constexpr std::string_view TDefaultOptionNames[] = {"doFontName", "doFontSize"};
constexpr TEnumInfo EnumInfo(TDefaultOption) { return {"TDefaultOption", TDefaultOptionNames}; }

using TDefaultOptions = TSet<TDefaultOption>;

/// The page.
class NORVA_EXPORT THTMLOptions : public TPersistent {
 public:
  /// By the template, as the next three and the colour and name of TextFont.
  TColor BackgroundColor = clBlack;
  /// A picture behind the page; empty: none.
  std::string BackgroundFileName;
  TColor VLinkColor = clBlack;
  TColor LinkColor = clBlack;
  TColor ALinkColor = clBlack;
  /// Of all texts. A cell's font is written where it differs from this one.
  TFont TextFont;
  /// Kept, but not written.
  TStringList AdvancedAttributes;
  TDefaultOptions DefaultOptions = {doFontSize};

  /// Copies another THTMLOptions.
  void Assign(const TPersistent& Source) override;
  std::string_view ClassName() const override { return "THTMLOptions"; }
  const TPropertyList& Properties() const override;
};

/// The table.
class NORVA_EXPORT TTableOptions : public TPersistent {
 public:
  /// In pixels, as the next two.
  std::int32_t CellPadding = 4;
  std::int32_t CellSpacing = 1;
  std::int32_t Border = 1;
  /// Kept, but not written.
  TStringList AdvancedAttributes;
  /// Behind the second record, the fourth and so on. By the template, as the next four.
  TColor OddRowBgColor = clBlack;
  TColor HeadersRowFontColor = clBlack;
  /// Of all records.
  TColor TableFontColor = clBlack;
  /// Behind the first record, the third and so on.
  TColor TableBgColor = clBlack;
  TColor HeadersRowBgColor = clBlack;
  /// Of a second table around the first; white: there is none.
  TColor BorderColor = clWhite;

  /// Copies another TTableOptions.
  void Assign(const TPersistent& Source) override;
  std::string_view ClassName() const override { return "TTableOptions"; }
  const TPropertyList& Properties() const override;
};

}  // namespace norva
