/// Writer of the workbook's records.
///
/// A workbook (BIFF8) is a compound document with one stream, "Workbook", made of records: number
/// and length of the body, 16 bits each, then a body of at most 8224 bytes; all numbers are little-
/// endian. Rows and columns count from 0.
///
///   BOF, WRITEACCESS ... BOOKBOOL        WriteGlobals
///   FONT 0 to 3, XF 0 to 15
///   FONT 5 ..., FORMAT 50 ..., XF 16 ... WriteXF, when all cells are known
///   BOUNDSHEET, COUNTRY                  WriteGlobals
///   SST, CONTINUE ...                    WriteSST, when all texts are known
///   EOF
///   BOF, CALCMODE ... COLINFO            WriteSheetStart
///   DIMENSIONS                           WriteDimension, completed by WriteDIM
///   BLANK, LABELSST, NUMBER ...          the cells
///   WINDOW2, SELECTION, EOF              WriteSheetFinish
///   EOF                                  WriteWorkbook. On purpose: one more than usual.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <norva/core/NorvaColumns.h>
#include <norva/core/NorvaWriter.h>
#include <norva/formats/spreadsheet/NorvaxlsBytes.h>
#include <norva/formats/spreadsheet/NorvaxlsFormat.h>
#include <norva/formats/spreadsheet/NorvaxlsLists.h>
#include <norva/formats/spreadsheet/NorvaxlsStrings.h>
#include <norva/platform/Export.h>
#include <norva/platform/Streams.h>

namespace norva {

/// Gathers the records of a workbook and lays them out in a compound document at the end. Each
/// record is built in one buffer that is used again for the next; what comes late but stands early
/// has a section of its own, so that nothing is moved.
class NORVA_EXPORT TLumXLSWriter : public TNorvaWriter {
 public:
  /// Index of the cell format that every cell has unless it gets another one.
  static constexpr int DefaultXF = 15;
  static constexpr int MaxRows = 65536;
  static constexpr int MaxColumns = 256;

  /// `Stream` is written by WriteWorkbook only, from front to back.
  explicit TLumXLSWriter(TStream& Stream) : TNorvaWriter(Stream) {}

  // In the order in which an export calls them.
  /// Everything up to EOF that does not depend on the cells. Throws Exception when the sheet's
  /// title is longer than 255 UTF-16 units.
  void WriteGlobals(const TXLSOptions& Options);
  /// Everything before the cells; column i of `Columns` stands in column `StartDataCol` + i.
  void WriteSheetStart(const TXLSOptions& Options, const TNorvaColumns& Columns, int StartDataCol);

  void WriteBlank(int Row, int Col, int XF);
  /// Enters `Text` in `Strings`; writes nothing when it is empty. Throws Exception when it has more
  /// than 32767 bytes.
  void WriteString(int Row, int Col, int XF, std::string_view Text, TxlsStrings& Strings);
  void WriteNumber(int Row, int Col, int XF, double Value);
  void WriteBoolean(int Row, int Col, int XF, bool Value);
  /// A formula over the rows `FirstRow` to `LastRow` of column `Col`. `Aggregate` is not aggNone.
  void WriteAggregate(int Row, int Col, int FirstRow, int LastRow, TxlsAggregate Aggregate, int XF);

  void WriteSheetFinish();
  void WriteXF(const TxlsFontList& Fonts, const TxlsTextFormatList& TextFormats,
               const TxlsXFormatList& XFormats);
  void WriteSST(const TxlsStrings& Strings);
  /// Tells which cells are used; the last ones are -1 when none is.
  void WriteDIM(int FirstRow, int LastRow, int FirstCol, int LastCol);
  /// Ends the workbook and writes the compound document.
  void WriteWorkbook();

 private:
  enum TSection { secGlobals, secXF, secSheets, secSST, secSheet, secCount };
  static constexpr std::size_t HeaderSize = 4;
  static constexpr std::size_t MaxRecordBody = 8224;

  // The body under way.
  void Put8(int Value) { Buffer_[Length_++] = static_cast<char>(Value); }
  void Put16(int Value) { Put8(Value), Put8(Value >> 8); }
  void Put32(std::uint32_t Value);
  void PutDouble(double Value);
  void PutZeros(std::size_t Count);
  void PutCell(int Row, int Col, int XF) { Put16(Row), Put16(Col), Put16(XF); }
  void PutUtf16(std::u16string_view Text);
  void PutOptionsAndText(std::u16string_view Text);
  std::size_t BodyLength() const { return Length_ - HeaderSize; }

  // Records. Each returns the place of its body, which stays there.
  char* WriteRecord(int Record);
  void WriteWord(int Record, int Value);
  void WriteBOF(int Type);
  void WriteEOF();
  void WriteWRITEACCESS();
  void WriteWINDOW1();
  void WriteStandardFormat(int Index);
  void WriteBOUNDSHEET(const std::string& SheetTitle);
  void WriteCOUNTRY();
  void WriteDELTA();
  void WriteGUTS();
  void WriteDEFAULTROWHEIGHT();
  void WriteCatchword(int Record, const char* What, const std::string& Text);
  void WriteCOLINFO(int Col, int Width, int XF);
  void WriteDimension();
  void WriteWINDOW2();
  void WriteSELECTION();
  void WriteFont(const TxlsFont& Font);
  void WriteTextFormat(int Index, const std::string& Text);
  void WriteXFormat(const TxlsXFormat& XFormat);
  void MakeSSTString(std::u16string_view Text, int& Record);

  std::u16string_view Utf16(std::string_view Text);

  TSection Section_ = secGlobals;
  std::array<TxlsBytes, secCount> Sections_;
  std::size_t Length_ = HeaderSize;
  std::array<char, HeaderSize + MaxRecordBody> Buffer_;
  char* BoundSheet_ = nullptr;  // the body of BOUNDSHEET, whose offset is known at the end
  char* Dimension_ = nullptr;   // the body of DIMENSIONS
  std::u16string Utf16_;
};

}  // namespace norva
