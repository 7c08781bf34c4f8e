// The templates of the HTML exporter, and its template files:
//
//   [HTML options]
//   Background-color=$00993333       colours by a standard name or as $00BBGGRR
//   Font-color=clWhite
//   Font-family=Arial
//   ...
//   [Table options]
//   Header-bgcolor=clRed
//   ...

#include <norva/formats/document/NorvahtmlTemplates.h>

#include <iterator>

#include <norva/formats/document/Norvahtml.h>
#include <norva/platform/IniFile.h>

namespace norva {
namespace {

struct TTemplate {
  const char* DisplayText;
  TColor Background, Link, VLink, ALink, Text;
  const char* FontName;
  TColor HeaderBg, HeaderText, TableBg, TableText, OddRowBg;
};

// htBW and those behind it.
// clang-format off
constexpr TTemplate Templates[] = {
    {"Black&White",
     0xFFFFFF, 0x0000FF, 0x800080, 0xFF0000, 0x000000, "Arial",
     0x000000, 0xFFFFFF, 0xFFFFFF, 0x000000, 0xF3F3F3},
    {"Classic",
     0x993333, 0x7DEF69, 0xFF00FF, 0x00FF00, 0xFFFFFF, "Arial",
     0x0000FF, 0xFFFFFF, 0xEC7A00, 0xFFFFFF, 0xCE6B00},
    {"ColorFul",
     0x669933, 0xCC6600, 0xC13F92, 0xFF0000, 0xFFFFFF, "Arial",
     0x3300CC, 0xFFFFFF, 0xFFFFFF, 0x000000, 0x00F1FA},
    {"Gray",
     0xFFFFFF, 0x0000FF, 0x800080, 0xFF0000, 0x000000, "Arial",
     0x808080, 0xFFFFFF, 0xFFFFFF, 0x000000, 0xEEEEEE},
    {"MS_Money",
     0xFFFFFF, 0x0000FF, 0x800080, 0xFF0000, 0x000000, "Arial",
     0xB5C6CE, 0x000000, 0xDEE7DE, 0x000000, 0xF0FBFF},
    {"Murky",
     0x767631, 0x60E7FF, 0x39CCCC, 0x00FFFF, 0xFFFFFF, "Arial",
     0x93933A, 0xFFFFFF, 0x626227, 0x60E7FF, 0x007836},
    {"Olive",
     0xFFFFFF, 0x0000FF, 0x800080, 0xFF0000, 0x5F605F, "Arial",
     0x90C8CF, 0x000000, 0xFFFFFF, 0x5F605F, 0xCFFFFF},
    {"Plain",
     0xFFFFFF, 0x0000FF, 0x800080, 0xFF0000, 0x000000, "Arial",
     0xE68F06, 0xFFFFFF, 0xFFFFFF, 0x000000, 0xD9FCFF},
    {"Simple",
     0xFFFFFF, 0x0000FF, 0x800080, 0xFF0000, 0x804000, "Arial",
     0x996633, 0xFFFFFF, 0xFFFFFF, 0x000000, 0xCFFFFF},
};
// clang-format on
static_assert(std::size(Templates) == std::size(THTMLTemplateNames) - htBW);

/// Calls `Color(section, key, colour)` and `Text(section, key, text)` for each value that a
/// template file holds, in its order.
template <class TColorCall, class TTextCall>
void ForEachKey(THTMLOptions& Page, TTableOptions& Table, TColorCall Color, TTextCall Text) {
  constexpr const char* page = "HTML options";
  Color(page, "Background-color", Page.BackgroundColor);
  Color(page, "Font-color", Page.TextFont.Color);
  Text(page, "Font-family", Page.TextFont.Name);
  Color(page, "LinkColor", Page.LinkColor);
  Color(page, "VLinkColor", Page.VLinkColor);
  Color(page, "ALinkColor", Page.ALinkColor);
  constexpr const char* table = "Table options";
  Color(table, "Header-bgcolor", Table.HeadersRowBgColor);
  Color(table, "Header-color", Table.HeadersRowFontColor);
  Color(table, "Table-color", Table.TableFontColor);
  Color(table, "Even_row-bgcolor", Table.TableBgColor);
  Color(table, "Odd_row-bgcolor", Table.OddRowBgColor);
  Color(table, "Border-color", Table.BorderColor);
}

}  // namespace

std::string TemplateToStr(THTMLTemplate Template) {
  if (Template == htCustom) return "Custom";
  return Template <= htSimple ? Templates[Template - htBW].DisplayText : "";
}

void TNorvaHTML::SetHTMLTemplate(THTMLTemplate Value) {
  if (Value == HTMLTemplate_) return;
  HTMLTemplate_ = Value;
  if (Value == htCustom) return;
  const TTemplate& colors = Templates[Value - htBW];
  HTMLOptions.BackgroundColor = colors.Background;
  HTMLOptions.LinkColor = colors.Link;
  HTMLOptions.VLinkColor = colors.VLink;
  HTMLOptions.ALinkColor = colors.ALink;
  HTMLOptions.TextFont.Color = colors.Text;
  HTMLOptions.TextFont.Name = colors.FontName;
  TableOptions.HeadersRowBgColor = colors.HeaderBg;
  TableOptions.HeadersRowFontColor = colors.HeaderText;
  TableOptions.TableBgColor = colors.TableBg;
  TableOptions.TableFontColor = colors.TableText;
  TableOptions.OddRowBgColor = colors.OddRowBg;
}

void TNorvaHTML::SaveTemplateToFile(const std::string& TemplateName) {
  TIniFile file(TemplateName);
  ForEachKey(
      HTMLOptions, TableOptions,
      [&file](const char* section, const char* key, TColor color) {
        file.WriteString(section, key, ColorToString(color));
      },
      [&file](const char* section, const char* key, const std::string& text) {
        file.WriteString(section, key, text);
      });
  file.UpdateFile();
}

void TNorvaHTML::LoadTemplateFromFile(const std::string& TemplateName) {
  const TIniFile file(TemplateName);
  ForEachKey(
      HTMLOptions, TableOptions,
      [&file](const char* section, const char* key, TColor& color) {
        // On purpose: numbers only. A colour that was saved by its name stays as it is.
        color = file.ReadInteger(section, key, color);
      },
      [&file](const char* section, const char* key, std::string& text) {
        text = file.ReadString(section, key, text);
      });
}

}  // namespace norva
