/// Text file exporter: fixed-width text, CSV, DIF and SYLK.
///
///   etTXT                  etCSV                  etDIF               etSYLK
///   Title                  "Id","Name",           TABLE               ID;PVASCIIEXPORT
///   -------- (80)          "1","Ann ""A"" O",     0,1                 C;X1;Y1;K"Id"
///                                                 "Title"             C;X2;Y1;K"Name"
///   Header lines                                  VECTORS             C;X1;Y1;K"1"
///                                                 0,2                 C;X2;Y1;K"Ann"
///   Id Name                                       ""                  E
///    1 Ann                                        TUPLES
///                                                 0,0  ""  DATA  0,0
///   Footer lines                                  -1,0  BOT  1,0  "Id" ...
///                                                 -1,0  EOD
///
/// Every line ends in CR LF. What other programs may not expect, and is meant:
/// - A CSV line ends with the separator. CSV has no title, header or footer.
/// - With CSVQuoteStrings numbers and dates are quoted too; booleans and null texts never are.
/// - The count behind TUPLES is always 0, and no title line follows DATA, which some readers of DIF
///   wait for: LibreOffice 7.4 finds no cell, Gnumeric 1.12 loses the first row. CSV is read whole.
/// - SYLK puts the captions and the first record both on row 1; without captions the first record
///   stands on row 0.
/// - DIF and SYLK copy texts as they stand: a double quote inside a value is not doubled.
/// - Past record 65,536 the end of the source no longer ends a CSV, DIF or SYLK export. A data set
///   stays on its last record then and that record is written without end, so a host whose source
///   may hold more sets ExportRecCount to the number of records: the limit always ends the export.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <norva/core/NorvaBases.h>
#include <norva/platform/Enums.h>
#include <norva/platform/Export.h>

namespace norva {

enum TNorvaASCIIType : std::uint8_t {
  etTXT,   ///< fixed-width text
  etCSV,   ///< separated values
  etDIF,   ///< Data Interchange Format
  etSYLK,  ///< Symbolic Link format
};
inline constexpr std::string_view TNorvaASCIITypeNames[] = {"etTXT", "etCSV", "etDIF", "etSYLK"};
constexpr TEnumInfo EnumInfo(TNorvaASCIIType) { return {"TNorvaASCIIType", TNorvaASCIITypeNames}; }

/// What an export is doing; for derived classes, nothing here sets stWritting.
enum TExportState : std::uint8_t { stFetching, stWritting };

/// Writes the records of a source as lines of text.
class NORVA_EXPORT TNorvaASCII : public TNorvaFormatText {
 public:
  explicit TNorvaASCII(TComponent* Owner = nullptr);
  std::string_view ClassName() const override { return "TNorvaASCII"; }
  const TPropertyList& Properties() const override;

  TNorvaASCIIType ExportType() const { return ExportType_; }
  /// Switching to etTXT turns AutoCalcColWidth on; an export of another type turns it off.
  void SetExportType(TNorvaASCIIType Value);

  /// Behind every CSV cell. Initially the locale's list separator; the stored default is ",".
  char CSVComma;
  /// Puts captions and values in double quotes and doubles those inside. Off, a value is written
  /// as it is, separators included.
  bool CSVQuoteStrings = true;
  /// Blanks behind every TXT column; none when 0 or negative.
  std::int32_t TXTSpacing = 1;

  /// Ends the file as EndExport would, as far as the format asks for it.
  void Abort() override;

 protected:
  void BeginExport() override;
  bool Eof() override;
  void WriteCaptionRow() override;
  void GetCaptionRow(std::string& Row) override;
  void GetColCaption(int Index, std::string& Text) override;
  void WriteDataRow() override;
  void GetDataRow(bool NeedFormat, std::string& Row) override;
  void GetColData(int Index, bool NeedFormat, std::string& Text) override;
  bool CopiesTexts() const override;
  void NormalString(std::string_view S, std::string& Text) override;
  void EndExport() override;

  /// Fires OnFetchedRecord.
  virtual void RecordFetched(std::int32_t RecNo);
  TExportState State() const { return State_; }
  void SetState(TExportState Value) { State_ = Value; }

 private:
  void WriteTXTHeader();
  void WriteDIFHeader();
  bool FetchRecords();
  void WriteFooter();
  void WriteEnd();
  void PadCell(int Index, std::size_t Start, std::string& Text) const;
  void EndRow(std::string& Row) const;

  TNorvaASCIIType ExportType_ = etTXT;
  TExportState State_ = stFetching;
  std::int32_t TupleCount_ = 0;  // what DIF writes behind TUPLES; never advanced
};

}  // namespace norva
