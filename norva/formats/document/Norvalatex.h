/// LaTeX exporter: a document with the records in one ruled table.
///
///   \documentclass[a4paper]{article}      under LaTeX209 \documentstyle, and no preamble
///   \usepackage[cp1252]{inputenc}         CodePage
///   \usepackage[english]{babel}           Languages
///   Preambula lines and an empty line     if there are any
///   \begin{document}
///   \Rus                                  if Languages names russian
///
///   Header lines
///   \par\bigskip
///   \begin{tabular}{|l|r|}                r: numbers
///   \hline
///   Name & Amount                         the captions, then each record: three lines
///   \\                                    .
///   \hline
///   \end{tabular}
///
///   Footer lines
///   \end{document}
///
/// Lines end in CR LF. Captions and values are escaped; header, footer and preamble lines, null
/// texts, booleans and values of unknown type are LaTeX already and written as they stand.
///
/// What LaTeX (TeX Live 2022) makes of it:
/// - The escapes of \ ^ ~ do not give the character back: "\backslash" outside of a formula is an
///   error, "\^" and "\~" put an accent on the next character or, with none left in the row, are
///   an error. Errors are also ¬ ± ² ³ µ ¹ × ÷ in a Windows code page, which inputenc takes in
///   formulas only, and control characters (a form feed is lost). LaTeX209 loses what is beyond
///   ASCII. The first text with one of these fires OnUnsafeText. OnGetExportText sees a text with
///   its escapes and can turn the three into "\textbackslash{}", "\^{}" and "\~{}". A line
///   "\DeclareInputText{177}{\textpm}" in Preambula or Header makes byte 177 one for texts.
/// - The fonts that LaTeX starts with lack Ą ą Ę ę Ð ð Þ þ (errors) and show | as a dash, " as a
///   closing quote and _ as a rule. "\usepackage[T1]{fontenc}" in Preambula, or in Header
///   "\fontencoding{T1}\selectfont", chooses fonts that have them. With all fonts ' becomes an
///   apostrophe, -- a dash, `` and '' quotes, ?` and !` Spanish marks; some Languages use ".
/// - Blanks and line ends in a value show as one blank, at its ends as none.
/// - The babel of today has no \Rus: "\newcommand{\Rus}{}" in Preambula.
/// - inputenc has no cp65001 (UTF-8), cp1253, cp1254 or cp1258. For texts in UTF-8 set CodePage to
///   1252 and let Preambula turn to it: "\inputencoding{utf8}".
/// - LaTeX209 takes "a4paper" for a file that does not exist: DocumentParams must be without it.
/// - A tabular does not break over pages; what does not fit is cut off. In Preambula
///   "\usepackage{longtable}\let\tabular\longtable\let\endtabular\endlongtable" makes it break.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include <norva/core/NorvaBases.h>
#include <norva/platform/Enums.h>
#include <norva/platform/Export.h>
#include <norva/platform/Persistent.h>
#include <norva/platform/StringList.h>

namespace norva {

enum TLaTeXVersion : std::uint8_t {
  LaTeX209,  ///< \documentstyle, and no packages
  LaTeX2e,   ///< \documentclass
};
inline constexpr std::string_view TLaTeXVersionNames[] = {"LaTeX209", "LaTeX2e"};
constexpr TEnumInfo EnumInfo(TLaTeXVersion) { return {"TLaTeXVersion", TLaTeXVersionNames}; }

enum TLaTeXDocStyle : std::uint8_t { dsArticle, dsBook };
inline constexpr std::string_view TLaTeXDocStyleNames[] = {"dsArticle", "dsBook"};
constexpr TEnumInfo EnumInfo(TLaTeXDocStyle) { return {"TLaTeXDocStyle", TLaTeXDocStyleNames}; }
/// "article" or "book"; empty for any other value.
NORVA_EXPORT std::string_view StyleToStr(TLaTeXDocStyle Style);

/// The document around the table.
class NORVA_EXPORT TLaTeXOptions : public TPersistent {
 public:
  TLaTeXOptions();
  TLaTeXOptions(const TLaTeXOptions&) = default;
  TLaTeXOptions& operator=(const TLaTeXOptions&) = default;
  /// Copies another TLaTeXOptions.
  void Assign(const TPersistent& Source) override;
  std::string_view ClassName() const override { return "TLaTeXOptions"; }
  const TPropertyList& Properties() const override;

  TLaTeXDocStyle DocumentStyle = dsArticle;
  /// In brackets behind the document class; empty: no brackets.
  std::string DocumentParams = "a4paper";
  TLaTeXVersion LaTeXVersion = LaTeX2e;
  /// Options of the package babel, separated by commas.
  std::string Languages = "english";
  /// The input encoding that the document names. Initially the system's ANSI code page; nothing is
  /// converted by it, so a host that writes in another page sets that.
  std::int32_t CodePage() const { return CodePage_; }
  /// A value below 1 sets the system's ANSI code page.
  void SetCodePage(std::int32_t Value);

 private:
  std::int32_t CodePage_;
};

/// Writes the commands of LaTeX, a line each.
class NORVA_EXPORT TLumLaTeXWriter : public TNorvaWriter {
 public:
  using TNorvaWriter::TNorvaWriter;
  /// `Params` in braces behind it; empty: none.
  void BeginEnv(std::string_view Name, std::string_view Params = {});
  void EndEnv(std::string_view Name);
  void UsePackage(std::string_view Name, std::string_view Options);
  void HLine();
  void NewLine();
};

/// Writes the records of a source as a LaTeX document.
class NORVA_EXPORT TNorvaLaTeX : public TNorvaFormatText {
 public:
  explicit TNorvaLaTeX(TComponent* Owner = nullptr);
  std::string_view ClassName() const override { return "TNorvaLaTeX"; }
  const TPropertyList& Properties() const override;

  TLaTeXOptions Options;
  /// Lines of the preamble behind the packages; not written under LaTeX209.
  TStringList Preambula;

  /// Ends the document, without footer; the lines that EndExport writes behind its end do no harm.
  void Abort() override;

 protected:
  TNorvaWriterClass GetWriterClass() const override;
  void BeginExport() override;
  void WriteCaptionRow() override;
  void GetCaptionRow(std::string& Row) override;
  void GetColCaption(int Index, std::string& Text) override;
  void WriteDataRow() override;
  void GetDataRow(bool NeedFormat, std::string& Row) override;
  void GetColData(int Index, bool NeedFormat, std::string& Text) override;
  TSpecialCharacters GetSpecialCharacters() const override;
  void NormalString(std::string_view S, std::string& Text) override;
  void EndExport() override;

 private:
  TLumLaTeXWriter& LaTeXWriter() const { return static_cast<TLumLaTeXWriter&>(GetWriter()); }
  void FillEscapes(const TSpecialCharacters& Special);
  void WritePreamble();
  void BeginTable();
  void EndRow(std::string& Row);
  void CheckRawText(std::size_t Start, std::string_view Text);

  std::array<std::uint8_t, 256> Escapes_{};  // what NormalString does with each byte
};

}  // namespace norva
