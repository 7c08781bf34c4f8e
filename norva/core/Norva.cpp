#include <norva/core/Norva.h>

#include <algorithm>

#include <norva/core/Norvacommon.h>
#include <norva/core/Norvaconsts.h>
#include <norva/core/internal/CellFormat.h>
#include <norva/core/internal/SourceAdapter.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Locale.h>
#include <norva/platform/Property.h>

namespace norva {

TNorva::TNorva(TComponent* Owner) : TComponent(Owner) {}

TNorva::~TNorva() = default;

const TPropertyList& TNorva::Properties() const {
  static const TPropertyList list{
      Published("ExportSource", &TNorva::ExportSource, esDataSet),
      PublishedReference("DataSet", "TDataSet", &TNorva::DataSet),
      PublishedReference("DBGrid", "TDBGrid", &TNorva::DBGrid),
      PublishedReference("ListView", "TListView", &TNorva::ListView),
      PublishedReference("StringGrid", "TStringGrid", &TNorva::StringGrid),
      PublishedList("ExportedFields", &TNorva::ExportedFields),
      Published("CurrentRecordOnly", &TNorva::CurrentRecordOnly, false),
      Published("GoToFirstRecord", &TNorva::GoToFirstRecord, true),
      Published("ExportRecCount", &TNorva::ExportRecCount, 0),
      Published("SkipRecCount", &TNorva::SkipRecCount, 0),
      Published("OnlyVisibleFields", &TNorva::OnlyVisibleFields, false),
      Published("AutoCalcStrType", &TNorva::AutoCalcStrType, false),
      Published("_Version", &TNorva::Version, "2.25"),
      PublishedEvent("OnBeginExport", "TNotifyEvent"),
      PublishedEvent("OnSkippedRecord", "TExportedRecordEvent"),
      PublishedEvent("OnExportedRecord", "TExportedRecordEvent"),
      PublishedEvent("OnStopExport", "TNorvaStopEvent"),
      PublishedEvent("OnGetExportText", "TGetExportTextEvent"),
      PublishedEvent("OnEndExport", "TNotifyEvent"),
  };
  return list;
}

void TNorva::Notification(TComponent& Component, TOperation Operation) {
  TComponent::Notification(Component, Operation);
  DataSet.Notify(Component, Operation);
  DBGrid.Notify(Component, Operation);
  ListView.Notify(Component, Operation);
  StringGrid.Notify(Component, Operation);
}

void TNorva::MakeSource() {
  Source_ = internal::NewSourceAdapter(*this);
  SourceKind_ = ExportSource;
}

// The driver.

void TNorva::Execute() {}

void TNorva::ExportToStream(TStream& Stream) {
  const std::unique_ptr<TNorvaWriter> writer = GetWriterClass()(Stream);
  ExportThrough(*writer);
}

void TNorva::ExportThrough(TNorvaWriter& Writer) {
  Writer_ = &Writer;
  Settings_ = &FormatSettings();
  Guarded([&] { DoExport(); },
          [&] {
            Writer_ = nullptr;
            Settings_ = nullptr;
          });
}

void TNorva::DoExport() {
  RecordCounter = 0;
  FetchedIndex_ = -1;
  Column_ = -1;
  UnsafeSeen_ = false;
  CheckExportSource();
  if (!IsActive()) throw Exception(MsgSourceClosed, NorvaSourceAsString(ExportSource));
  if (IsEmpty()) throw Exception(MsgSourceEmpty, NorvaSourceAsString(ExportSource));
  DisableControls();
  Guarded(
      [&] {
        BeginExport();
        CopiesTexts_ = CopiesTexts();
        if (Aborted) return;
        if (AutoCalcColWidth) Columns.AutoCalcColWidth();
        if (Aborted) return;
        Guarded([&] { WriteRecords(); }, [&] { EndExport(); });
      },
      [&] { EnableControls(); });
}

void TNorva::WriteRecords() {
  // The captions come before the source is positioned: they do not depend on a record.
  if (AllowCaptions) WriteCaptionRow();
  if (Aborted) return;
  if (GoToFirstRecord) First();
  BeforeExport();
  if (Aborted) return;
  Skip(SkipRecCount);
  if (Aborted) return;
  RecordCounter = 0;
  while (MoreRecords()) {
    WriteDataRow();
    if (OnExportedRecord) OnExportedRecord(*this, RecordCounter);
    if (CurrentRecordOnly) break;
    Next();
  }
  AfterExport();
}

bool TNorva::MoreRecords() {
  if (Eof()) return false;
  if (ExportRecCount != 0 && RecordCounter >= ExportRecCount) return false;
  return !Aborted || CanContinue();
}

bool TNorva::CanContinue() {
  bool canContinue = !Aborted;
  if (OnStopExport) OnStopExport(*this, canContinue);
  Aborted = !canContinue;
  return canContinue;
}

void TNorva::Abort() { Aborted = true; }

void TNorva::CheckExportSource() {
  CheckNorvaSource(ExportSource, DataSet, DBGrid, ListView, StringGrid);
}

TNorvaWriter& TNorva::GetWriter() const {
  if (!Writer_) throw Exception(MsgNoWriter);
  return *Writer_;
}

// The hooks.

TNorvaWriterClass TNorva::GetWriterClass() const { return NewWriter<TNorvaWriter>; }

void TNorva::BeginExport() {
  Columns.Clear();
  Columns.Fill();
  Aborted = false;
  if (ExportSource == esListView) {
    // On purpose: the clamped values stay after the export.
    SkipRecCount = std::min(SkipRecCount, Source().ItemCount());
    if (ExportRecCount > 0) ExportRecCount = std::min(ExportRecCount, Source().ItemCount());
  }
  if (OnBeginExport) OnBeginExport(*this);
}

void TNorva::WriteCaptionRow() {}
void TNorva::BeforeExport() {}
void TNorva::WriteDataRow() {}
void TNorva::AfterExport() {}

void TNorva::EndExport() {
  if (OnEndExport) OnEndExport(*this);
}

void TNorva::GetCaptionRow(std::string& Row) {
  for (int i = 0; i < Columns.Count(); ++i) GetColCaption(i, Row);
}

void TNorva::GetDataRow(bool NeedFormat, std::string& Row) {
  for (int i = 0; i < Columns.Count(); ++i) GetColData(i, NeedFormat, Row);
}

void TNorva::GetColCaption(int Index, std::string& Text) {
  Column_ = -1;
  NormalString(Columns[Index].Caption, Text);
}

void TNorva::GetColData(int Index, bool NeedFormat, std::string& Text) {
  GetColDataSt(Index, NeedFormat, Text);
}

bool TNorva::ColIsNull(int Index) {
  // GetColDataSt has read the cell that it asks about already.
  if (FetchedIndex_ == Index) return FetchedNull_;
  return Source().IsNull(Columns[Index].Number);
}

TSpecialCharacters TNorva::GetSpecialCharacters() const { return {}; }

void TNorva::NormalString(std::string_view S, std::string& Text) { Text += S; }

void TNorva::UnsafeText(std::string_view Text) {
  if (UnsafeSeen_) return;
  UnsafeSeen_ = true;
  if (OnUnsafeText) OnUnsafeText(*this, Column_, Text);
}

// These two are steps of each cell and inlined: the calls would cost a fiftieth of an export.

/// What ColIsNull says, which need not fetch the value again.
[[gnu::always_inline]] inline bool TNorva::IsNullCell(int Index, const TFieldValue& Value) {
  FetchedNull_ = Value.Kind == vkNull;
  FetchedIndex_ = Index;
  const bool null = ColIsNull(Index);
  FetchedIndex_ = -1;
  return null;
}

[[gnu::always_inline]] inline void TNorva::AppendValue(const TNorvaColumn& Column,
                                                       const TFieldValue& Value, bool NeedFormat,
                                                       std::string& Text) {
  if (NeedFormat && Column.ColType == ectString && Value.Kind == vkText) {
    if (CopiesTexts_) {
      Text += Value.Text;
    } else {
      NormalString(Value.Text, Text);
    }
    return;
  }
  // On purpose: booleans and unknown types are not put through NormalString, nor is raw text.
  if (!NeedFormat || Column.ColType == ectBoolean || Column.ColType == ectUnknown) {
    AppendFieldText(Value, Column.FieldType, Settings(), Text);
    return;
  }
  if (CopiesTexts_) {
    internal::AppendCell(Column, Value, Settings(), Text);
    return;
  }
  Cell_.clear();
  internal::AppendCell(Column, Value, Settings(), Cell_);
  NormalString(Cell_, Text);
}

bool TNorva::GetColDataSt(int Index, bool NeedFormat, std::string& Text) {
  Column_ = Index;
  const std::size_t start = Text.size();
  const TNorvaColumn& column = Columns[Index];
  bool null = false;
  try {
    const TFieldValue value = Source().Value(column.Number);
    null = IsNullCell(Index, value);
    if (null) {
      Text += Formats.NullString;
    } else {
      AppendValue(column, value, NeedFormat, Text);
    }
  } catch (const EConvertError& error) {
    CellError(Index, error);
  }
  if (!OnGetExportText) return !null;
  std::string cell = Text.substr(start);
  OnGetExportText(*this, Index, cell);
  Text.replace(start, std::string::npos, cell);
  return !null;
}

/// Whether the cell's text is known to be no longer than its column is wide, without making it.
bool TNorva::SurelyFits(int Index) {
  if (!CopiesTexts_ || OnGetExportText) return false;
  const TNorvaColumn& column = Columns[Index];
  std::size_t bound = 0;
  try {
    const TFieldValue value = Source().Value(column.Number);
    bound = IsNullCell(Index, value) ? Formats.NullString.size()
                                     : internal::LengthBound(column, value, Settings());
  } catch (const EConvertError&) {
    return false;  // making the text reports it
  }
  return column.Width > 0 && bound <= static_cast<std::size_t>(column.Width);
}

std::optional<double> TNorva::GetColNumber(int Index) {
  const TNorvaColumn& column = Columns[Index];
  try {
    const TFieldValue value = Source().Value(column.Number);
    if (IsNullCell(Index, value)) return std::nullopt;
    return internal::TypedNumber(column, value, Settings());
  } catch (const EConvertError& error) {
    CellError(Index, error);
  }
}

void TNorva::CellError(int Index, const EConvertError& Error) const {
  throw EConvertError(MsgColumnValue, Columns[Index].Name, SkipRecCount + RecordCounter + 1,
                      Error.what());
}

void TNorva::GetCellParams(std::int32_t RecNo, std::int32_t ColNo, const std::string& Value,
                           TNorvaColAlign& Align, TFont& AFont, TColor& Background) {
  if (OnGetCellParams) OnGetCellParams(*this, RecNo, ColNo, Value, Align, AFont, Background);
}

// Navigation.

void TNorva::First() {
  RecordCounter = 0;
  Source().First();
}

void TNorva::Next() {
  ++RecordCounter;
  Source().Next();
}

void TNorva::Skip(std::int32_t Count) {
  for (std::int32_t i = 0; i < Count; ++i) {
    Next();
    if (OnSkippedRecord) OnSkippedRecord(*this, RecordCounter);
  }
}

bool TNorva::Eof() { return Source().Eof(); }
TBookmark TNorva::GetBookmark() { return Source().GetBookmark(); }

void TNorva::GoToBookmark(TBookmark Bookmark) {
  RecordCounter = 0;
  Source().GoToBookmark(Bookmark);
}

void TNorva::FreeBookmark(TBookmark Bookmark) { Source().FreeBookmark(Bookmark); }
bool TNorva::IsEmpty() { return Source().IsEmpty(); }
bool TNorva::IsActive() { return Source().IsActive(); }
void TNorva::DisableControls() { Source().DisableControls(); }
void TNorva::EnableControls() { Source().EnableControls(); }

}  // namespace norva
