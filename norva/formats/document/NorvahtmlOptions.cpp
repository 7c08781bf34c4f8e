#include <norva/formats/document/NorvahtmlOptions.h>

#include <norva/platform/Property.h>

namespace norva {

void THTMLOptions::Assign(const TPersistent& Source) {
  const auto* options = dynamic_cast<const THTMLOptions*>(&Source);
  if (!options) return TPersistent::Assign(Source);
  *this = *options;
}

// The colours have no stored defaults: they come from a template, and the host's own are to survive
// whatever template the exporter starts with.
const TPropertyList& THTMLOptions::Properties() const {
  using O = THTMLOptions;
  static const TPropertyList list{
      PublishedColor("BackgroundColor", &O::BackgroundColor),
      Published("BackgroundFileName", &O::BackgroundFileName, ""),
      PublishedColor("LinkColor", &O::LinkColor),
      PublishedColor("VLinkColor", &O::VLinkColor),
      PublishedColor("ALinkColor", &O::ALinkColor),
      PublishedGroup("TextFont", &O::TextFont),
      PublishedList("AdvancedAttributes", &O::AdvancedAttributes),
      Published("DefaultOptions", &O::DefaultOptions, TDefaultOptions{doFontSize}),
  };
  return list;
}

void TTableOptions::Assign(const TPersistent& Source) {
  const auto* options = dynamic_cast<const TTableOptions*>(&Source);
  if (!options) return TPersistent::Assign(Source);
  *this = *options;
}

const TPropertyList& TTableOptions::Properties() const {
  using O = TTableOptions;
  static const TPropertyList list{
      Published("Border", &O::Border, 1),
      Published("CellPadding", &O::CellPadding, 4),
      Published("CellSpacing", &O::CellSpacing, 1),
      PublishedList("AdvancedAttributes", &O::AdvancedAttributes),
      PublishedColor("HeadersRowBgColor", &O::HeadersRowBgColor),
      PublishedColor("HeadersRowFontColor", &O::HeadersRowFontColor),
      PublishedColor("TableBgColor", &O::TableBgColor),
      PublishedColor("TableFontColor", &O::TableFontColor),
      PublishedColor("OddRowBgColor", &O::OddRowBgColor),
      PublishedColor("BorderColor", &O::BorderColor, clWhite),
  };
  return list;
}

}  // namespace norva
