#include <norva/formats/spreadsheet/Norvabiff.h>

#include <algorithm>
#include <bit>

#include <norva/core/Norvaconsts.h>
#include <norva/platform/CodePages.h>
#include <norva/platform/CompoundFile.h>
#include <norva/platform/Exceptions.h>

namespace norva {
namespace {

constexpr int RecordBOF = 0x0809;
constexpr int RecordContinue = 0x003C;
constexpr std::size_t MaxTextBytes = 32767;  // what a cell holds in spreadsheet programs
constexpr std::size_t MaxShortLength = 255;  // a length of one byte
constexpr std::size_t CatchwordRest = 5;     // the body of HEADER and FOOTER without its text
constexpr int MaxColumnWidth = 255;          // in characters
constexpr int WideCharacters = 0x01;         // option flag: 16 bits a character

int Length(std::u16string_view Text) { return static_cast<int>(Text.size()); }

bool IsWide(std::u16string_view Text) {
  return std::any_of(Text.begin(), Text.end(), [](char16_t c) { return c > 0xFF; });
}

bool IsHighSurrogate(char16_t Unit) { return Unit >= 0xD800 && Unit < 0xDC00; }

int UnderlineCode(TxlsFontUnderline Underline) {
  switch (Underline) {
    case fulSingle:
      return 0x01;
    case fulDouble:
      return 0x02;
    case fulSingleAccounting:
      return 0x21;
    case fulDoubleAccounting:
      return 0x22;
    default:
      return 0;
  }
}

/// Colour of a border's side; 0 when it is not drawn.
int SideColor(const TxlsBorder& Side) {
  return Side.Style == bstNone ? 0 : PaletteIndex(Side.Color);
}

}  // namespace

// The body under way.

void TLumXLSWriter::Put32(std::uint32_t Value) {
  Put16(static_cast<int>(Value & 0xFFFF));
  Put16(static_cast<int>(Value >> 16));
}

void TLumXLSWriter::PutDouble(double Value) {
  const auto bits = std::bit_cast<std::uint64_t>(Value);
  Put32(static_cast<std::uint32_t>(bits));
  Put32(static_cast<std::uint32_t>(bits >> 32));
}

void TLumXLSWriter::PutZeros(std::size_t Count) {
  for (std::size_t i = 0; i < Count; ++i) Put8(0);
}

void TLumXLSWriter::PutUtf16(std::u16string_view Text) {
  for (const char16_t unit : Text) Put16(unit);
}

/// Option byte and characters: one byte each where that is enough for all of them.
void TLumXLSWriter::PutOptionsAndText(std::u16string_view Text) {
  if (IsWide(Text)) {
    Put8(WideCharacters);
    PutUtf16(Text);
  } else {
    Put8(0);
    for (const char16_t unit : Text) Put8(unit);
  }
}

std::u16string_view TLumXLSWriter::Utf16(std::string_view Text) {
  const bool ascii = std::all_of(Text.begin(), Text.end(),
                                 [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  if (ascii) {
    Utf16_.assign(Text.begin(), Text.end());
  } else {
    Utf16_ = ToUtf16(Text);
  }
  return Utf16_;
}

/// Ends the record whose body was put.
char* TLumXLSWriter::WriteRecord(int Record) {
  const std::size_t end = Length_;
  const auto body = static_cast<int>(BodyLength());
  Length_ = 0;
  Put16(Record);
  Put16(body);
  return Sections_[Section_].Append({Buffer_.data(), end}) + HeaderSize;
}

void TLumXLSWriter::WriteWord(int Record, int Value) {
  Put16(Value);
  WriteRecord(Record);
}

// The globals.

void TLumXLSWriter::WriteGlobals(const TXLSOptions& Options) {
  Section_ = secGlobals;
  WriteBOF(0x0005);  // workbook globals
  WriteWRITEACCESS();
  WriteWord(0x0042, 1252);  // CODEPAGE
  WriteWord(0x0161, 0);     // DSF
  WriteWord(0x013D, 1);     // TABID
  WriteWord(0x009C, 14);    // FNGROUPCOUNT
  WriteWord(0x0019, 0);     // WINDOWPROTECT
  WriteWord(0x0012, 0);     // PROTECT
  WriteWord(0x0013, 0);     // PASSWORD
  WriteWord(0x01AF, 0);     // PROT4REV
  WriteWord(0x01BC, 0);     // PROT4REVPASS
  WriteWINDOW1();
  WriteWord(0x0040, 0);  // BACKUP
  WriteWord(0x008D, 0);  // HIDEOBJ
  WriteWord(0x0022, 0);  // DATEMODE: days count from 1900
  WriteWord(0x000E, 1);  // PRECISION
  WriteWord(0x01B7, 0);  // REFRESHALL
  WriteWord(0x00DA, 0);  // BOOKBOOL
  WriteFont(TxlsFont());
  for (int i = 1; i <= 3; ++i) WriteFont(Options.DataFormat.Font);
  for (int i = 0; i <= DefaultXF; ++i) WriteStandardFormat(i);
  Section_ = secSheets;
  WriteBOUNDSHEET(Options.SheetTitle());
  WriteCOUNTRY();
}

// BOF, 0x0809: begins a substream of type `Type`.
void TLumXLSWriter::WriteBOF(int Type) {
  Put16(0x0600);  // BIFF8
  Put16(Type);
  Put16(0x0DBB);  // build
  Put16(0x07CC);  // year: 1996
  Put32(0);       // file history
  Put32(0x0206);  // lowest version that can read it
  WriteRecord(RecordBOF);
}

// EOF, 0x000A: ends a substream.
void TLumXLSWriter::WriteEOF() { WriteRecord(0x000A); }

// WRITEACCESS, 0x005C: the user's name, "X", in a field of 112 bytes.
void TLumXLSWriter::WriteWRITEACCESS() {
  Put16(1);  // characters
  Put8(0);
  Put8('X');
  while (BodyLength() < 112) Put8(' ');
  WriteRecord(0x005C);
}

// WINDOW1, 0x003D: the window of the workbook.
void TLumXLSWriter::WriteWINDOW1() {
  Put16(0x0078);  // left, in twips
  Put16(0x0078);  // top
  Put16(0x5D0C);  // width
  Put16(0x3D68);  // height
  Put16(0x0038);  // scroll bars and tabs are shown
  Put16(0);       // active sheet
  Put16(0);       // first visible tab
  Put16(1);       // selected sheets
  Put16(0x0258);  // width of the tabs
  WriteRecord(0x003D);
}

// XF, 0x00E0: one of the 16 formats that every workbook begins with.
void TLumXLSWriter::WriteStandardFormat(int Index) {
  const bool isNormal = Index == 0, isCell = Index == DefaultXF;
  const bool isRow = Index == 1 || Index == 2, isColumn = Index == 3 || Index == 4;
  Put16(isRow || isCell ? 1 : isColumn ? 2 : 0);  // font
  Put16(0);                                       // number format
  Put16(isCell ? 0x0001 : 0xFFF5);                // a cell format, or a style
  Put8(0x20);                                     // bottom aligned
  Put8(0);                                        // rotation
  Put8(0);
  Put8(isNormal || isCell ? 0 : 0xF4);  // attributes in use
  PutZeros(8);                          // borders
  Put16(0x20C0);                        // no fill
  WriteRecord(0x00E0);
}

// BOUNDSHEET, 0x0085: where the sheet begins, and its title.
void TLumXLSWriter::WriteBOUNDSHEET(const std::string& SheetTitle) {
  const std::u16string_view title = Utf16(SheetTitle);
  if (title.size() > MaxShortLength) {
    throw Exception(MsgWorkbookText, "sheet title", SheetTitle, MaxShortLength);
  }
  Put32(0);  // offset of the sheet's BOF; set by WriteWorkbook
  Put16(0);  // a visible worksheet
  Put8(Length(title));
  Put8(WideCharacters);
  PutUtf16(title);
  BoundSheet_ = WriteRecord(0x0085);
}

// COUNTRY, 0x008C: of the program and of the system.
void TLumXLSWriter::WriteCOUNTRY() {
  Put16(1);
  Put16(1);
  WriteRecord(0x008C);
}

// The sheet.

void TLumXLSWriter::WriteSheetStart(const TXLSOptions& Options, const TNorvaColumns& Columns,
                                    int StartDataCol) {
  Section_ = secSheet;
  WriteBOF(0x0010);        // worksheet
  WriteWord(0x000D, 1);    // CALCMODE: automatic
  WriteWord(0x000C, 100);  // CALCCOUNT
  WriteWord(0x000F, 1);    // REFMODE: A1
  WriteWord(0x0011, 0);    // ITERATION
  WriteDELTA();
  WriteWord(0x005F, 1);  // SAVERECALC
  WriteWord(0x002A, 0);  // PRINTHEADERS
  WriteWord(0x002B, 0);  // PRINTGRIDLINES
  WriteWord(0x0082, 1);  // GRIDSET
  WriteGUTS();
  WriteDEFAULTROWHEIGHT();
  WriteWord(0x0081, 0x04C1);  // WSBOOL
  WriteCatchword(0x0014, "page header", Options.PageHeader);
  WriteCatchword(0x0015, "page footer", Options.PageFooter);
  WriteWord(0x0083, 0);  // HCENTER
  WriteWord(0x0084, 0);  // VCENTER
  WriteWord(0x0055, 8);  // DEFCOLWIDTH
  for (int i = 0; i < Columns.Count(); ++i) {
    WriteCOLINFO(StartDataCol + i, Columns[i].Width, DefaultXF);
  }
  WriteDimension();
}

// DELTA, 0x0010: where an iteration ends.
void TLumXLSWriter::WriteDELTA() {
  PutDouble(0.001);
  WriteRecord(0x0010);
}

// GUTS, 0x0080: no outlines.
void TLumXLSWriter::WriteGUTS() {
  PutZeros(8);
  WriteRecord(0x0080);
}

// DEFAULTROWHEIGHT, 0x0225.
void TLumXLSWriter::WriteDEFAULTROWHEIGHT() {
  Put16(0);       // options
  Put16(0x00FF);  // in twips
  WriteRecord(0x0225);
}

// HEADER, 0x0014, and FOOTER, 0x0015: what is printed on every page.
void TLumXLSWriter::WriteCatchword(int Record, const char* What, const std::string& Text) {
  if (!Text.empty()) {
    const std::u16string_view text = Utf16(Text);
    const std::size_t most = (MaxRecordBody - CatchwordRest) / (IsWide(text) ? 2 : 1);
    if (text.size() > most) throw Exception(MsgWorkbookText, What, Text, most);
    Put8(Length(text));  // On purpose: the low byte of the length, whatever it is.
    Put8(0);
    PutOptionsAndText(text);
    PutZeros(2);  // On purpose: two bytes that say nothing.
  }
  WriteRecord(Record);
}

// COLINFO, 0x007D: `Width` in characters. On purpose: 11 bytes, one less than usual.
void TLumXLSWriter::WriteCOLINFO(int Col, int Width, int XF) {
  Put16(Col);                                         // first column
  Put16(Col);                                         // last column
  Put16(std::clamp(Width, 0, MaxColumnWidth) * 256);  // in 1/256 of a character
  Put16(XF);
  Put16(0);  // options
  Put8(0);   // reserved
  WriteRecord(0x007D);
}

// DIMENSIONS, 0x0200: the cells in use; set by WriteDIM.
void TLumXLSWriter::WriteDimension() {
  PutZeros(14);
  Dimension_ = WriteRecord(0x0200);
}

// The cells.

// BLANK, 0x0201.
void TLumXLSWriter::WriteBlank(int Row, int Col, int XF) {
  PutCell(Row, Col, XF);
  WriteRecord(0x0201);
}

// LABELSST, 0x00FD: a text by its index in the SST.
void TLumXLSWriter::WriteString(int Row, int Col, int XF, std::string_view Text,
                                TxlsStrings& Strings) {
  if (Text.empty()) return;
  if (Text.size() > MaxTextBytes) throw Exception(MsgCellTooLong, Row, Col);
  PutCell(Row, Col, XF);
  Put32(Strings.Add(Text));
  WriteRecord(0x00FD);
}

// NUMBER, 0x0203.
void TLumXLSWriter::WriteNumber(int Row, int Col, int XF, double Value) {
  PutCell(Row, Col, XF);
  PutDouble(Value);
  WriteRecord(0x0203);
}

// BOOLERR, 0x0205.
void TLumXLSWriter::WriteBoolean(int Row, int Col, int XF, bool Value) {
  PutCell(Row, Col, XF);
  Put8(Value);
  Put8(0);  // a boolean, no error
  WriteRecord(0x0205);
}

// FORMULA, 0x0006: a function over rows of the cell's own column.
void TLumXLSWriter::WriteAggregate(int Row, int Col, int FirstRow, int LastRow,
                                   TxlsAggregate Aggregate, int XF) {
  // The numbers of SUM, AVERAGE, MIN and MAX among the built-in functions.
  static constexpr int functions[] = {0, 4, 5, 6, 7};
  PutCell(Row, Col, XF);
  PutDouble(0);   // the result; not calculated yet
  Put16(0x0002);  // to be calculated when the file is loaded
  Put32(0);
  Put16(13);   // length of the formula
  Put8(0x25);  // an area
  Put16(FirstRow);
  Put16(LastRow);
  Put16(Col | 0xC000);  // rows and columns are relative
  Put16(Col | 0xC000);
  Put8(0x42);  // a function ...
  Put8(1);     // ... of one argument
  Put16(functions[Aggregate]);
  WriteRecord(0x0006);
}

// The end.

void TLumXLSWriter::WriteSheetFinish() {
  WriteWINDOW2();
  WriteSELECTION();
  WriteEOF();
}

// WINDOW2, 0x023E: the sheet's view.
void TLumXLSWriter::WriteWINDOW2() {
  Put16(0x06B6);  // grid, headings, zeros and outlines shown; selected and active
  Put16(0);       // first visible row
  Put16(0);       // first visible column
  Put32(0);       // colour of the grid
  PutZeros(8);
  WriteRecord(0x023E);
}

// SELECTION, 0x001D: the first cell. On purpose: 16 bytes, one more than usual.
void TLumXLSWriter::WriteSELECTION() {
  Put8(3);      // pane: top left
  Put16(0);     // active row
  Put16(0);     // active column
  Put16(0);     // its reference
  Put16(1);     // number of references
  PutZeros(6);  // rows 0 to 0, columns 0 to 0
  Put8(0);
  WriteRecord(0x001D);
}

void TLumXLSWriter::WriteXF(const TxlsFontList& Fonts, const TxlsTextFormatList& TextFormats,
                            const TxlsXFormatList& XFormats) {
  Section_ = secXF;
  for (int i = 0; i < Fonts.Count(); ++i) WriteFont(Fonts[i]);
  for (int i = 0; i < TextFormats.Count(); ++i) {
    WriteTextFormat(TextFormats[i].FormatIndex, TextFormats[i].FormatString);
  }
  for (int i = 0; i < XFormats.Count(); ++i) WriteXFormat(XFormats[i]);
}

// FONT, 0x0031.
void TLumXLSWriter::WriteFont(const TxlsFont& Font) {
  const std::u16string_view name = Utf16(Font.Name);
  if (name.size() > MaxShortLength) {
    throw Exception(MsgWorkbookText, "font name", Font.Name, MaxShortLength);
  }
  if (Font.Size < 1 || Font.Size > MaxFontSize) {
    throw Exception(MsgWorkbookFontSize, Font.Size, Font.Name, MaxFontSize);
  }
  Put16(Font.Size * 20);  // in twips
  Put16((Font.Style.Contains(xfsItalic) ? 0x0002 : 0) |
        (Font.Style.Contains(xfsStrikeOut) ? 0x0008 : 0));
  Put16(PaletteIndex(Font.Color));
  Put16(Font.Style.Contains(xfsBold) ? 700 : 400);  // weight
  Put16(Font.Script);
  Put8(UnderlineCode(Font.Underline));
  Put8(0);  // family
  Put8(Font.Charset);
  Put8(0);
  Put8(Length(name));
  Put8(WideCharacters);
  PutUtf16(name);
  WriteRecord(0x0031);
}

// FORMAT, 0x041E: a number format.
void TLumXLSWriter::WriteTextFormat(int Index, const std::string& Text) {
  const std::u16string_view text = Utf16(Text);
  const std::size_t most = (MaxRecordBody - 5) / (IsWide(text) ? 2 : 1);
  if (text.size() > most) throw Exception(MsgWorkbookText, "number format", Text, most);
  Put16(Index);
  Put8(Length(text));  // On purpose: the low byte of the length, whatever it is.
  Put8(0);
  PutOptionsAndText(text);
  WriteRecord(0x041E);
}

// XF, 0x00E0: a cell format. It begins as the standard one, whose font is FONT 1.
void TLumXLSWriter::WriteXFormat(const TxlsXFormat& XFormat) {
  const TxlsBorders& borders = XFormat.Borders;
  const TxlsBorder& diagonal = borders.DiagDown.Style ? borders.DiagDown : borders.DiagUp;
  Put16(XFormat.Font ? XFormat.Font->FontIndex : 1);
  Put16(XFormat.TextFormat ? XFormat.TextFormat->FormatIndex : 0);
  Put16(0x0001);  // a cell format, locked
  Put8(XFormat.Alignment.Horizontal | (XFormat.Wrap ? 0x08 : 0) | XFormat.Alignment.Vertical << 4);
  Put8(0);  // rotation
  Put8(0);
  Put8(0x40 | 0x10 | (XFormat.Font ? 0x08 : 0) | (borders.HasStyle() ? 0x20 : 0));
  Put16(borders.Left.Style | borders.Right.Style << 4 | borders.Top.Style << 8 |
        borders.Bottom.Style << 12);
  Put16(SideColor(borders.Left) | SideColor(borders.Right) << 7 |
        (borders.DiagDown.Style ? 0x4000 : 0) | (borders.DiagUp.Style ? 0x8000 : 0));
  Put32(static_cast<std::uint32_t>(SideColor(borders.Top) | SideColor(borders.Bottom) << 7 |
                                   SideColor(diagonal) << 14 | diagonal.Style << 21) |
        std::uint32_t{XFormat.Fill.Pattern} << 26);
  Put16(PaletteIndex(XFormat.Fill.Background) | PaletteIndex(XFormat.Fill.Foreground) << 7);
  WriteRecord(0x00E0);
}

// SST, 0x00FC: the texts of the cells; goes on in CONTINUE records, 0x003C.
void TLumXLSWriter::WriteSST(const TxlsStrings& Strings) {
  Section_ = secSST;
  int record = 0x00FC;
  Put32(Strings.References());
  Put32(Strings.Count());
  for (std::uint32_t i = 0; i < Strings.Count(); ++i) MakeSSTString(Utf16(Strings[i]), record);
  WriteRecord(record);
  WriteEOF();
}

/// Puts an entry of the SST. One that does not fit into what is left of `Record` begins the next;
/// only one that fits into no record is split.
void TLumXLSWriter::MakeSSTString(std::u16string_view Text, int& Record) {
  const auto next = [&] {
    WriteRecord(Record);
    Record = RecordContinue;
  };
  constexpr std::size_t headSize = 3;
  if (BodyLength() + headSize + 2 * Text.size() > MaxRecordBody) next();
  Put16(Length(Text));
  Put8(WideCharacters);
  for (;;) {
    // Readers take a piece for itself: it holds whole characters.
    std::size_t count = std::min((MaxRecordBody - BodyLength()) / 2, Text.size());
    if (count < Text.size() && IsHighSurrogate(Text[count - 1])) --count;
    PutUtf16(Text.substr(0, count));
    Text.remove_prefix(count);
    if (Text.empty()) return;
    next();
    Put8(WideCharacters);
  }
}

void TLumXLSWriter::WriteDIM(int FirstRow, int LastRow, int FirstCol, int LastCol) {
  Length_ = 0;
  Put32(static_cast<std::uint32_t>(FirstRow));
  Put32(static_cast<std::uint32_t>(LastRow + 1));
  Put16(FirstCol);
  Put16(LastCol + 1);
  std::copy_n(Buffer_.data(), Length_, Dimension_);
  Length_ = HeaderSize;
}

void TLumXLSWriter::WriteWorkbook() {
  Section_ = secSheet;
  WriteEOF();
  std::size_t sheetOffset = 0;
  for (std::size_t i = 0; i < secSheet; ++i) sheetOffset += Sections_[i].Size();
  Length_ = 0;
  Put32(static_cast<std::uint32_t>(sheetOffset));
  std::copy_n(Buffer_.data(), Length_, BoundSheet_);
  Length_ = HeaderSize;

  TCompoundStream workbook;
  workbook.Name = "Workbook";
  for (const TxlsBytes& section : Sections_) section.AppendTo(workbook.Pieces);
  WriteCompoundFile(Stream(), {&workbook, 1});
}

}  // namespace norva
