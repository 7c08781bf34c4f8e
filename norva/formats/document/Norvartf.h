/// RTF exporter: one table with borders.
///
///   {\rtf1\ansi\deff0\deftab720
///   {\fonttbl{\f0\fnil Arial;}{\f1\fnil Arial;}}       fonts of the captions and of the cells
///   {\colortbl\red0\green0\blue0;}
///   \f0\fs20
///   \paperw11906                                       A4 in twips; \landscape in front if so
///   \paperh16838
///   header line                                        each
///   \par
///   \par
///   \trowd\trql\trgaph0\trleft36                       the row, once for the whole table
///   \clbrdrl\brdrth \clbrdrr\brdrth ...                each column
///   \cellx1096                                         and where it ends
///   \f0\fs20
///   \pard\intbl\li30\ri30{\b Id}\cell...\row           if AllowCaptions
///   \f0\fs20
///   \pard\intbl\li30\ri30\ql{1}\cell...\row            each record
///   \pard
///   \par
///   \par                                               each
///   footer line
///   }
///
/// Every line but the last ends in CR LF. What other programs may not expect, and is meant:
/// - In captions and values only the backslash is escaped. Braces stay as they are: a pair of them
///   vanishes in the reader, a single one breaks the document, and OnUnsafeText is fired for the
///   first one. A handler of OnGetExportText can replace `{` with `\{` and `}` with `\}`: what it
///   leaves is written as it is, its backslashes too.
/// - CR LF in a value becomes " \par ". A CR or LF alone stays, and readers pass over it, so that
///   the words around it run together; in captions CR LF stays as well.
/// - Header and footer lines are RTF themselves, not escaped, as are null and boolean texts.
/// - Texts are bytes of the active code page, and the document says only "\ansi", which means 1252.
///   For another page the host says so in a header line that shows nothing, `\ansicpg1251`: so
///   LibreOffice shows the right letters. unrtf drops all bytes above 127; for it a handler of
///   OnGetExportText writes them as `\'e9`.
/// - No border has a width, and LibreOffice 7.4 draws none.
/// - A table is as wide as its columns, and cut off where the page ends.
/// - A font is selected by the first entry with its name: number 0 for both, unless they differ.
/// - OnGetCellParams is never fired; colours of fonts are not written.
/// - Abort ends the table and writes the footer, and EndExport does so again behind records.
#pragma once

#include <string>
#include <string_view>

#include <norva/core/NorvaBases.h>
#include <norva/formats/document/Norvartflist.h>
#include <norva/platform/Export.h>
#include <norva/platform/Fonts.h>
#include <norva/platform/Persistent.h>

namespace norva {

/// How an RTF document looks.
class NORVA_EXPORT TRTFOptions : public TPersistent {
 public:
  /// Arial of 10 points, bold in the captions.
  TRTFOptions();

  /// Of the cells; its style is theirs.
  TFont DefaultFont;
  /// Of the captions; the width of its X is the unit of the column widths.
  TFont HeaderFont;
  TNorvaPageOrientation PageOrientation = poPortrait;

  void Assign(const TPersistent& Source) override;
  std::string_view ClassName() const override { return "TRTFOptions"; }
  const TPropertyList& Properties() const override;
};

/// Writes the records of a source as a table in an RTF document.
class NORVA_EXPORT TNorvaRTF : public TNorvaFormatText {
 public:
  using TNorvaFormatText::TNorvaFormatText;
  std::string_view ClassName() const override { return "TNorvaRTF"; }
  const TPropertyList& Properties() const override;

  TRTFOptions Options;

  /// Ends the table and writes the footer; on purpose without the closing brace.
  void Abort() override;

 protected:
  TNorvaWriterClass GetWriterClass() const override;
  void BeginExport() override;
  void WriteCaptionRow() override;
  void BeforeExport() override;
  void GetColCaption(int Index, std::string& Text) override;
  void GetColData(int Index, bool NeedFormat, std::string& Text) override;
  void WriteDataRow() override;
  void EndExport() override;
  void NormalString(std::string_view S, std::string& Text) override;

  TLumRTFWriter& RTFWriter() const { return static_cast<TLumRTFWriter&>(GetWriter()); }
  /// What stands in front of a cell's value, up to and with the opening brace and the attributes:
  /// "\pard\intbl\li30\ri30\ql{". For derived classes with cells of different looks: name and
  /// colour of `Font` matter where they differ from DefaultFont's, styles add to its styles, and
  /// `Background` matters when it is not white. New fonts and colours enter the writer's tables.
  std::string GetCellStart(TNorvaColAlign Align, const TFont& Font, TColor Background);

 private:
  void WriteTables();
  void WritePage();
  void WriteRowDefinition();
  void WriteFooter();

  // What GetCellStart gives for each alignment in the default font, and for what is none.
  std::string CellStarts_[4];
};

}  // namespace norva
