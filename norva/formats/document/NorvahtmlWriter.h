/// The line writer of the HTML exporter: one operation a tag, each a line of its own.
#pragma once

#include <string>
#include <string_view>

#include <norva/core/NorvaWriter.h>
#include <norva/platform/Colors.h>
#include <norva/platform/Export.h>

namespace norva {

/// `#rrggbb`. On purpose: a system colour is not resolved, the formula for a plain one is applied
/// to its number, which may give eight digits.
NORVA_EXPORT std::string HtmlColor(TColor Color);

/// Writes the tags of a page. Texts are written as they stand.
class NORVA_EXPORT TLumHTMLWriter : public TNorvaWriter {
 public:
  using TNorvaWriter::TNorvaWriter;

  /// Whether the output goes to a file.
  bool WritesFile() const;
  using TNorvaWriter::SetStream;

  void StartHTML() { WriteLn("<HTML>"); }
  void EndHTML() { WriteLn("</HTML>"); }
  void StartHEAD() { WriteLn("<HEAD>"); }
  void EndHEAD() { WriteLn("</HEAD>"); }
  void StartBODY() { WriteLn("<BODY>"); }
  void EndBODY() { WriteLn("</BODY>"); }
  void StartSTYLE() { WriteLn("<Style type=\"text/css\">"); }
  void EndSTYLE() { WriteLn("</STYLE>"); }
  // On purpose: UI, not UL.
  void StartUI() { WriteLn("<UI>"); }
  void EndUI() { WriteLn("</UI>"); }
  void LI() { WriteLn("<LI>"); }
  /// `Title` is written as it stands.
  void WriteTITLE(std::string_view Title);

  /// "Left", "Center" or "Right".
  std::string AlignToStr(TNorvaColAlign Align) const override;
};

}  // namespace norva
