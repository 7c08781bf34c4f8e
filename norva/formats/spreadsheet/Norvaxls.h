/// Workbook exporter: one worksheet of a BIFF8 workbook (.xls).
///
///   TNorvaXLS Export;
///   Export.DataSet = &Orders;
///   Export.FileName = "orders.xls";
///   Export.Options.SetSheetTitle("Orders");
///   TxlsFieldFormat& total = Export.FieldFormats.Add();
///   total.FieldName = "total";
///   total.Aggregate = aggSum;
///   Export.Execute();
///
/// The sheet, from its first row:
///
///   header lines          a cell for each piece between TABs, from column 0
///   captions              if AllowCaptions
///   records               from column StartDataCol
///   aggregates            if a field format asks for one
///   footer lines          as the header lines
///
/// Numbers, dates and booleans become cells of these kinds: they are written from the source's own
/// values, and the column's picture goes into the number format of the cell where a field format or
/// a style applies. Without one the cell has the default format, which shows a date as its day
/// number.
///
/// A sheet ends at row 65536 and column 256. Cells are kept in memory until the export ends.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <norva/core/NorvaBases.h>
#include <norva/formats/spreadsheet/Norvabiff.h>
#include <norva/formats/spreadsheet/NorvaxlsFormat.h>
#include <norva/formats/spreadsheet/NorvaxlsLists.h>
#include <norva/formats/spreadsheet/NorvaxlsStrings.h>
#include <norva/platform/Export.h>

namespace norva {

// What a handler leaves in `Format` and in the text is written. `Col` and `Row` are those of the
// sheet, from 0.
using TGetHeaderFooterParamsEvent =
    std::function<void(TObject& Sender, int Col, int Row, TxlsFormat& Format, std::string& S)>;
using TGetCaptionParamsEvent =
    std::function<void(TObject& Sender, int Col, TxlsFormat& Format, std::string& Caption)>;
/// `FormatText` is the number format; left empty it becomes the column's picture.
using TGetDataParamsEvent = std::function<void(TObject& Sender, int Col, int Row,
                                               TxlsFormat& Format, std::string& FormatText)>;
/// `Value` is the text of a cell without aggregate.
using TGetAggregateParamsEvent = std::function<void(TObject& Sender, int Col, TxlsFormat& Format,
                                                    std::string& FormatText, std::string& Value)>;

/// Writes the records of a source as a workbook.
class NORVA_EXPORT TNorvaXLS : public TNorvaFormatText {
 public:
  using TNorvaFormatText::TNorvaFormatText;
  std::string_view ClassName() const override { return "TNorvaXLS"; }
  const TPropertyList& Properties() const override;

  /// Page header and footer, sheet title, and how the cells of each stage look.
  TXLSOptions Options;
  /// Formats and aggregates by field name, case ignored. Items start as copies of
  /// Options.DataFormat.
  TxlsFieldFormats FieldFormats{this, &Options.DataFormat};
  /// Taken by the columns in turn under ssCol.
  TxlsFormats ColStyles{this, "Col_"};
  /// Taken by the records in turn under ssRow.
  TxlsFormats RowStyles{this, "Row_"};
  /// Which of them applies, to cells without field format.
  TxlsStripStyle StripStyle = ssNone;
  /// Number of header rows; 0: one for each header line.
  std::uint16_t HeaderRows = 0;
  /// Sheet column of the first exported column.
  std::uint8_t StartDataCol = 0;
  /// Number of footer rows; 0: one for each footer line.
  std::uint16_t FooterRows = 0;

  /// Fired for each of the 256 cells of a header row.
  TGetHeaderFooterParamsEvent OnGetHeaderParams;
  TGetCaptionParamsEvent OnGetCaptionParams;
  /// Fired for the cells left of captions, records and aggregates.
  TGetHeaderFooterParamsEvent OnGetBeforeDataParams;
  TGetDataParamsEvent OnGetDataParams;
  /// Fired for each cell of the aggregate row.
  TGetAggregateParamsEvent OnGetAggregateParams;
  /// Fired for each of the 256 cells of a footer row.
  TGetHeaderFooterParamsEvent OnGetFooterParams;

  /// What the running export is writing.
  TxlsExportStage ExportStage() const { return Stage_; }

 protected:
  TNorvaWriterClass GetWriterClass() const override;
  /// Throws Exception when the columns do not fit into a sheet.
  void BeginExport() override;
  void WriteCaptionRow() override;
  void WriteDataRow() override;
  void EndExport() override;

 private:
  TLumXLSWriter& XLSWriter() const { return static_cast<TLumXLSWriter&>(GetWriter()); }
  void ClearTemporaryVariables();

  int AddXF(const std::string& FormatText, const TxlsFormat* Format);
  int AddNewXF(TxlsXFormat& XFormat, const TxlsTextFormat& TextFormat, const TxlsFont& Font);
  int GetXF(int Col);
  int GetEventXF(int Col, int XF);
  void AddColumnToFormatList(int Col);
  void AddColsToFormatList();
  void AddRowsToFormatList();
  void FillDataXFs();

  void CheckRow(const char* What) const;
  void HeaderFooter(const TStringList& Lines, int RowCount, const TxlsFormat& Format,
                    const TGetHeaderFooterParamsEvent& Event, const char* What);
  void HeaderFooterLine(std::string_view Line, const TxlsFormat& Format,
                        const TGetHeaderFooterParamsEvent& Event);
  void DoOnGetBeforeDataParams();
  void WriteText(int Col, int XF, std::string_view Text);
  void WriteCell(int Index);
  double TextToNumber(int Index, std::string_view Text) const;
  int GetStartDataRow() const;
  bool HasAggregates() const;
  void WriteAggregateRow();
  void WriteAggregateCell(int Index);
  void FinishWorkbook();

  // The formats in use; the fonts and text formats that XFs_ refers to are in the other two.
  TxlsFontList Fonts_;
  TxlsTextFormatList TextFormats_;
  TxlsXFormatList XFs_;
  TxlsXFormatFieldList FieldXFs_;
  TxlsXFormatColRowList ColRowXFs_;
  std::uint16_t LastFont_ = 0, LastTextFormat_ = 0, LastXF_ = 0;  // handed out last
  TxlsStrings Strings_;

  // The XF of each column, for each row style one after the other.
  std::vector<int> DataXFs_;
  int RowStyleCount_ = 1;
  bool TypedCells_ = false;  // numbers and dates need not take the way over their texts
  TxlsExportStage Stage_ = esNone;
  int CurrentRow_ = 0;
  int LastCol_ = -1;  // the rightmost one in use
  std::string Cell_;
};

}  // namespace norva
