/// The colour templates of the HTML exporter.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <norva/platform/Enums.h>
#include <norva/platform/Export.h>

namespace norva {

/// A fixed set of colours and a font name.
enum THTMLTemplate : std::uint8_t {
  htCustom,  ///< whatever the host has set
  htBW,
  htClassic,
  htColorFul,
  htGray,
  htMS_Money,
  htMurky,
  htOlive,
  htPlain,
  htSimple,
};
inline constexpr std::string_view THTMLTemplateNames[] = {
    "htCustom",   "htBW",    "htClassic", "htColorFul", "htGray",
    "htMS_Money", "htMurky", "htOlive",   "htPlain",    "htSimple"};
constexpr TEnumInfo EnumInfo(THTMLTemplate) { return {"THTMLTemplate", THTMLTemplateNames}; }

/// The template's name for people: "Black&White". Empty for a value outside the enumeration.
NORVA_EXPORT std::string TemplateToStr(THTMLTemplate Template);

}  // namespace norva
