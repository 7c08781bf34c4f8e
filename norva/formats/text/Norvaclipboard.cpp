#include <norva/formats/text/Norvaclipboard.h>

#include <norva/core/Norvacommon.h>
#include <norva/platform/Property.h>

namespace norva {

TNorvaClipboard::TNorvaClipboard(TComponent* Owner)
    : TNorvaMemory(Owner), Separator(GetListSeparator()) {}

const TPropertyList& TNorvaClipboard::Properties() const {
  using C = TNorvaClipboard;
  static const TPropertyList list(
      TNorvaMemory::Properties(),
      {
          // The separator depends on the locale, so it has no stored default.
          PublishedAlways("Separator", &C::Separator),
          Published("Spacing", &C::Spacing, 2),
          Published("ClipboardViewer", &C::ClipboardViewer, "Clipbrd.exe"),
          Published("ExportType", &C::ExportType, &C::SetExportType, etSeparated),
          PublishedList("Header", &TNorva::Header),
          PublishedList("Footer", &TNorva::Footer),
          Published("AllowCaptions", &TNorva::AllowCaptions, true),
          PublishedList("Captions", &TNorva::Captions),
          PublishedGroup("Formats", &TNorva::Formats),
          PublishedList("UserFormats", &TNorva::UserFormats),
          PublishedEvent("OnFetchedRecord", "TExportedRecordEvent"),
      });
  return list;
}

void TNorvaClipboard::SetExportType(TLumClipboardExportType Value) {
  ExportType_ = Value;
  AutoCalcColWidth = Value == etFixed;
}

void TNorvaClipboard::BeginExport() {
  TNorvaMemory::BeginExport();
  AutoCalcColWidth = ExportType_ == etFixed;
  if (!Title.empty()) GetWriter().WriteLn(Title);
  // Each line of the text ends in CR LF already, so WriteLn leaves an empty line behind it.
  if (!Header.Empty()) GetWriter().WriteLn(Header.Text());
}

void TNorvaClipboard::WriteCaptionRow() {
  std::string& row = RowBuffer();
  row.clear();
  GetCaptionRow(row);
  GetWriter().WriteLn(row);
}

void TNorvaClipboard::GetColCaption(int Index, std::string& Text) {
  const std::size_t start = Text.size();
  TNorvaMemory::GetColCaption(Index, Text);
  EndCell(Index, start, Text);
}

void TNorvaClipboard::WriteDataRow() {
  std::string& row = RowBuffer();
  row.clear();
  GetDataRow(true, row);
  GetWriter().WriteLn(row);
}

void TNorvaClipboard::GetColData(int Index, bool NeedFormat, std::string& Text) {
  const std::size_t start = Text.size();
  TNorvaMemory::GetColData(Index, NeedFormat, Text);
  EndCell(Index, start, Text);
}

void TNorvaClipboard::EndCell(int Index, std::size_t Start, std::string& Text) const {
  if (ExportType_ == etFixed) {
    // On purpose: blanks before the text whatever the column's alignment, and none between cells.
    TNorvaWriter::PadTail(Text, Start, ' ', Columns[Index].Width, ecaRight);
  } else {
    Text += Separator;
  }
}

void TNorvaClipboard::EndExport() {
  if (!Footer.Empty()) GetWriter().WriteLn(Footer.Text());
  TNorvaMemory::EndExport();
}

}  // namespace norva
