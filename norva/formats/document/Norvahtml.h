/// HTML exporter: one page, or a series of numbered pages with an index page.
///
///   <HTML>
///   <HEAD>
///    <Title>Orders</Title>
///   <Style type="text/css">
///     BODY { background: #333399; color: #ffffff;
///     ...
///   </STYLE>
///   </HEAD>
///   <BODY>
///   <br>                                          Header
///   <Table Border="1" Cellpadding="4" Cellspacing="1">
///     <tr>                                        if AllowCaptions
///       <td class="ThRows">Name</td>
///     </tr>
///     <tr>
///       <td class="TrRows" align=Left>Ann &amp; Bob</td>
///     </tr>
///     <tr>
///       <td class="TrOdd" align=Left>&nbsp</td>
///     </tr>
///   </Table>
///   <br>                                          Footer
///   </BODY>
///   </HTML>
///
/// Every line ends in CR LF. `"`, `&`, `<` and `>` in captions and values are escaped and a line
/// break becomes <br>. The title, the lines of Header and Footer and the texts of boolean columns
/// are written as they stand, so that a host can put markup there.
///
/// A page does not name its character set, so browsers guess: a short file mostly right, a long one
/// or a page from a server often wrong. `<meta charset="utf-8">` as a line of Header tells them,
/// with `windows-1252` and the like for other code pages. It has to stand among the first 1024
/// bytes, as it does unless the title is long or the background picture's name.
///
/// What may not be expected, and is meant:
/// - Of parts the first one holds one record, each other MaxRecords. Only the last one has the end
///   of table and page, which browsers supply.
/// - The number of a part goes before the first point of FileName, folders included; the index
///   looks for it before the last one.
/// - With parts, FileName itself is left empty, or holds the index.
/// - Of two line breaks in a value, however far apart, the second one is dropped.
/// - The head, the captions and the table's start are written to files only: an export to another
///   kind of stream holds the rows and what follows them. A file stream is only the sign to write
///   FileName; nothing goes to it.
/// - An export without records holds only what follows them.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <norva/core/NorvaBases.h>
#include <norva/formats/document/NorvahtmlOptions.h>
#include <norva/formats/document/NorvahtmlTemplates.h>
#include <norva/formats/document/NorvahtmlWriter.h>
#include <norva/platform/Enums.h>
#include <norva/platform/Export.h>

namespace norva {

/// Where the style sheet stands.
enum TUsingCSS : std::uint8_t {
  usInternal,  ///< in each page
  usExternal,  ///< in the file CSSFileName
};
inline constexpr std::string_view TUsingCSSNames[] = {"usInternal", "usExternal"};
constexpr TEnumInfo EnumInfo(TUsingCSS) { return {"TUsingCSS", TUsingCSSNames}; }

/// Writes the records of a source as HTML tables.
class NORVA_EXPORT TNorvaHTML : public TNorvaFormatText {
 public:
  /// `Owner` may be null; otherwise it destroys this component with itself.
  explicit TNorvaHTML(TComponent* Owner = nullptr);
  std::string_view ClassName() const override { return "TNorvaHTML"; }
  const TPropertyList& Properties() const override;

  /// Escapes no value at all.
  bool BoolAsCheckBox = false;
  /// Writes a page of links to the parts, as FileName.
  bool GenerateIndex = false;
  /// Records in a part; 0: a single page.
  std::int32_t MaxRecords() const { return MaxRecords_; }
  /// A negative value is stored as 0.
  void SetMaxRecords(std::int32_t Value) { MaxRecords_ = Value < 0 ? 0 : Value; }
  /// The external style sheet. When it is empty, an export sets it to the name of the page or of
  /// the first part, with extension `.css`.
  std::string CSSFileName;
  THTMLOptions HTMLOptions;
  THTMLTemplate HTMLTemplate() const { return HTMLTemplate_; }
  /// Fills in the template's colours and font name. A value that is set already changes nothing,
  /// and htCustom keeps the colours there are. A form that is loaded sets the colours first: a host
  /// that has changed some behind a template sets htCustom, or the template brings its own back.
  void SetHTMLTemplate(THTMLTemplate Value);
  TTableOptions TableOptions;
  TUsingCSS UsingCSS = usInternal;

  /// Saves colours and font name in an INI file, whose other keys stay. Throws what TIniFile
  /// throws.
  void SaveTemplateToFile(const std::string& TemplateName);
  /// Loads what SaveTemplateToFile saves. What is missing or no number stays as it is, and so does
  /// HTMLTemplate. On purpose: so do the colours that stand there by name, such as clWhite.
  void LoadTemplateFromFile(const std::string& TemplateName);

  /// Throws also EFCreateError and EWriteError for parts, style sheet and index.
  void Execute() override;

 protected:
  TNorvaWriterClass GetWriterClass() const override;
  void BeginExport() override;
  /// Nothing: each part has captions of its own.
  void WriteCaptionRow() override;
  void WriteDataRow() override;
  /// Attributes, `>` and content of a cell.
  void GetColData(int Index, bool NeedFormat, std::string& Text) override;
  TSpecialCharacters GetSpecialCharacters() const override;
  bool CopiesTexts() const override;
  void NormalString(std::string_view S, std::string& Text) override;
  void AfterExport() override;
  void EndExport() override;

 private:
  TLumHTMLWriter& HTMLWriter() const { return static_cast<TLumHTMLWriter&>(GetWriter()); }

  void AddBodyRule();
  void AddRowRule(const std::string& Selector, TColor Background, TColor Text, bool IsHeader);
  void AddFontLines(std::size_t Indent);

  bool PartBegins() const;
  void BeginPart();
  void WriteStyle(const std::string& PartName);
  void WriteTableStart();
  void WriteCaptions();
  void AppendCell(int Index, bool NeedFormat, std::string& Text);
  void AppendCellByEvent(int Index, bool NeedFormat, std::string& Text);
  std::string StyleOf(const TFont& Font, TColor Background, TColor Usual) const;
  void DoGenerateIndex();

  std::int32_t MaxRecords_ = 0;
  THTMLTemplate HTMLTemplate_ = htCustom;
  TStringList StyleSheet_;
  std::int32_t PartCount_ = 0;
  bool HasOuterBorder_ = false;
  std::unique_ptr<TFileStream> Part_;  // what the writer writes to, if that is a file of this class
  std::array<std::string, 3> Attributes_;  // of a cell, by alignment
  bool Fetching_ = false;                  // a value is on its way and not yet to be escaped
  std::string Cell_;
};

}  // namespace norva
