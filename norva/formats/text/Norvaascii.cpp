#include <norva/formats/text/Norvaascii.h>

#include <charconv>
#include <typeinfo>

#include <norva/core/Norvacommon.h>
#include <norva/platform/Property.h>

namespace norva {
namespace {

constexpr std::int32_t LastCheckedRecord = 65536;  // rows of the spreadsheets that read these files
constexpr int RuleLength = 80;                     // the line below a title

void AppendInt(std::string& Text, std::int64_t Value) {
  char digits[20];
  Text.append(digits, std::to_chars(digits, digits + sizeof digits, Value).ptr);
}

/// The two lines that begin a tuple in DIF.
void BeginTuple(int Index, std::string& Text) {
  if (Index == 0) Text += "-1,0\r\nBOT\r\n";
}

void AppendDIFString(std::size_t Start, std::string& Text) {
  Text.insert(Start, "1,0\r\n\"");
  Text += "\"\r\n";
}

}  // namespace

TNorvaASCII::TNorvaASCII(TComponent* Owner)
    : TNorvaFormatText(Owner), CSVComma(GetListSeparator()) {
  AutoCalcColWidth = true;
}

const TPropertyList& TNorvaASCII::Properties() const {
  using A = TNorvaASCII;
  static const TPropertyList list(
      TNorvaFormatText::Properties(),
      {
          Published("ExportType", &A::ExportType, &A::SetExportType, etTXT),
          Published("CSVComma", &A::CSVComma, ','),
          Published("CSVQuoteStrings", &A::CSVQuoteStrings, true),
          Published("TXTSpacing", &A::TXTSpacing, 1),
          Published("AutoCalcColWidth", &TNorva::AutoCalcColWidth, true),
          PublishedList("ColumnsAlign", &TNorva::ColumnsAlign),
          PublishedList("ColumnsWidth", &TNorva::ColumnsWidth),
          PublishedEvent("OnFetchedRecord", "TExportedRecordEvent"),
      });
  return list;
}

void TNorvaASCII::SetExportType(TNorvaASCIIType Value) {
  if (Value == ExportType_) return;
  ExportType_ = Value;
  if (Value == etTXT) AutoCalcColWidth = true;
}

void TNorvaASCII::BeginExport() {
  TNorvaFormatText::BeginExport();
  AutoCalcColWidth = AutoCalcColWidth && ExportType_ == etTXT;
  switch (ExportType_) {
    case etTXT:
      WriteTXTHeader();
      break;
    case etCSV:
      break;
    case etDIF:
      WriteDIFHeader();
      break;
    case etSYLK:
      GetWriter().WriteLn("ID;PVASCIIEXPORT");
      break;
  }
}

void TNorvaASCII::WriteTXTHeader() {
  if (!Title.empty()) {
    GetWriter().WriteLn(Title);
    GetWriter().CharLine('-', RuleLength);
    GetWriter().EmptyLine();
  }
  if (Header.Empty()) return;
  for (const std::string& line : Header) GetWriter().WriteLn(line);
  GetWriter().EmptyLine();
}

void TNorvaASCII::WriteDIFHeader() {
  TupleCount_ = 0;
  TNorvaWriter& writer = GetWriter();
  writer.WriteLn("TABLE");
  writer.WriteLn("0,1");
  writer.WriteLn("\"" + Title + "\"");
  writer.WriteLn("VECTORS");
  writer.WriteLn("0," + std::to_string(Columns.Count()));
  writer.WriteLn("\"\"");
  writer.WriteLn("TUPLES");
  if (!FetchRecords()) return;
  writer.WriteLn("0," + std::to_string(TupleCount_));
  writer.WriteLn("\"\"");
  writer.WriteLn("DATA");
  writer.WriteLn("0,0");
}

/// Shows the host every record, by OnFetchedRecord, before writing starts. False when the export
/// was aborted meanwhile.
bool TNorvaASCII::FetchRecords() {
  const TBookmark bookmark = GetBookmark();
  bool finished = true;
  Guarded(
      [&] {
        State_ = stFetching;
        First();
        Skip(SkipRecCount);
        RecordCounter = 0;
        while (!Eof() && (ExportRecCount == 0 || RecordCounter < ExportRecCount)) {
          if (Aborted && !CanContinue()) {
            finished = false;
            return;
          }
          Next();
          RecordFetched(RecordCounter);
        }
      },
      [&] {
        GoToBookmark(bookmark);
        FreeBookmark(bookmark);
      });
  return finished;
}

void TNorvaASCII::RecordFetched(std::int32_t RecNo) {
  if (OnFetchedRecord) OnFetchedRecord(*this, RecNo);
}

bool TNorvaASCII::Eof() {
  const bool eof = TNorvaFormatText::Eof();
  // On purpose: past this record the source's end does not end CSV, DIF and SYLK; no row limit.
  return ExportType_ == etTXT ? eof : eof && RecordCounter <= LastCheckedRecord;
}

void TNorvaASCII::WriteCaptionRow() {
  std::string& row = RowBuffer();
  row.clear();
  GetCaptionRow(row);
  if (!row.empty()) GetWriter().Write(row);
}

void TNorvaASCII::GetCaptionRow(std::string& Row) {
  TNorvaFormatText::GetCaptionRow(Row);
  EndRow(Row);
}

void TNorvaASCII::GetColCaption(int Index, std::string& Text) {
  if (ExportType_ == etDIF) BeginTuple(Index, Text);
  if (ExportType_ == etSYLK) {
    Text += "C;X";
    AppendInt(Text, Index + 1);
    Text += ";Y1;K\"";
  }
  const std::size_t start = Text.size();
  TNorvaFormatText::GetColCaption(Index, Text);
  switch (ExportType_) {
    case etTXT:
      PadCell(Index, start, Text);
      break;
    case etCSV:
      Text += CSVComma;
      break;
    case etDIF:
      AppendDIFString(start, Text);
      break;
    case etSYLK:
      Text += "\"\r\n";
      break;
  }
}

void TNorvaASCII::WriteDataRow() {
  std::string& row = RowBuffer();
  row.clear();
  GetDataRow(true, row);
  GetWriter().Write(row);
}

void TNorvaASCII::GetDataRow(bool NeedFormat, std::string& Row) {
  TNorvaFormatText::GetDataRow(NeedFormat, Row);
  EndRow(Row);
}

void TNorvaASCII::GetColData(int Index, bool NeedFormat, std::string& Text) {
  if (ExportType_ == etDIF) BeginTuple(Index, Text);
  if (ExportType_ == etSYLK) {
    Text += "C;X";
    AppendInt(Text, Index + 1);
    Text += ";Y";
    // On purpose: with captions the first record lands on their row, without on row 0.
    AppendInt(Text, RecordCounter + (AllowCaptions ? 1 : 0));
    Text += ";K\"";
  }
  const std::size_t start = Text.size();
  TNorvaFormatText::GetColData(Index, NeedFormat, Text);
  switch (ExportType_) {
    case etTXT:
      PadCell(Index, start, Text);
      break;
    case etCSV:
      Text += CSVComma;
      break;
    case etDIF:
      if (Columns[Index].IsString()) {
        AppendDIFString(start, Text);
      } else {
        Text.insert(start, "0,");
        Text += "\r\nV\r\n";
      }
      break;
    case etSYLK:
      Text += "\"\r\n";
      break;
  }
}

void TNorvaASCII::PadCell(int Index, std::size_t Start, std::string& Text) const {
  const TNorvaColumn& column = Columns[Index];
  TNorvaWriter::PadTail(Text, Start, ' ', column.Width, column.Align, TXTSpacing);
}

void TNorvaASCII::EndRow(std::string& Row) const {
  // The cells of DIF and SYLK end their lines themselves.
  if (ExportType_ == etTXT || ExportType_ == etCSV) Row += "\r\n";
}

bool TNorvaASCII::CopiesTexts() const {
  return typeid(*this) == typeid(TNorvaASCII) && ExportType_ != etCSV;
}

void TNorvaASCII::NormalString(std::string_view S, std::string& Text) {
  if (S.empty() || ExportType_ != etCSV || !CSVQuoteStrings) {
    TNorvaFormatText::NormalString(S, Text);
    return;
  }
  Text += '"';
  for (std::size_t quote; (quote = S.find('"')) != std::string_view::npos;) {
    Text += S.substr(0, quote + 1);
    Text += '"';
    S.remove_prefix(quote + 1);
  }
  Text += S;
  Text += '"';
}

void TNorvaASCII::EndExport() {
  if (ExportType_ == etTXT) {
    WriteFooter();
  } else {
    WriteEnd();
  }
  TNorvaFormatText::EndExport();
}

void TNorvaASCII::Abort() {
  // On purpose: DIF is closed here whatever the state, and once more by EndExport.
  if (ExportType_ == etTXT && State_ == stWritting) WriteFooter();
  if (ExportType_ == etDIF || (ExportType_ == etSYLK && State_ == stWritting)) WriteEnd();
  TNorvaFormatText::Abort();
}

void TNorvaASCII::WriteFooter() {
  GetWriter().EmptyLine();
  for (const std::string& line : Footer) GetWriter().WriteLn(line);
}

void TNorvaASCII::WriteEnd() {
  if (ExportType_ == etDIF) {
    GetWriter().WriteLn("-1,0");
    GetWriter().WriteLn("EOD");
  } else if (ExportType_ == etSYLK) {
    GetWriter().WriteLn("E");
  }
}

}  // namespace norva
