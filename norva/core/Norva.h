/// The exporter base and its driver.
///
/// An exporter walks a source record by record, turns each cell into text and calls its format's
/// hooks in a fixed order:
///
///   BeginExport                     columns filled, OnBeginExport
///   [width pass]                    if AutoCalcColWidth
///   WriteCaptionRow                 if AllowCaptions
///   BeforeExport
///   WriteDataRow, OnExportedRecord  for each record
///   AfterExport
///   EndExport                       on every way out after the width pass; OnEndExport
///
/// A host uses a format's class (norva/formats); a new format derives from one of the bases in
/// NorvaBases.h and overrides hooks. Hooks that give a text append it to a buffer, so that a row is
/// put together without copying cells.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <norva/core/NorvaColumns.h>
#include <norva/core/NorvaFormats.h>
#include <norva/core/NorvaTypes.h>
#include <norva/core/NorvaWriter.h>
#include <norva/platform/Component.h>
#include <norva/platform/Controls.h>
#include <norva/platform/DataSet.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Export.h>
#include <norva/platform/Guarded.h>
#include <norva/platform/Locale.h>
#include <norva/platform/StringList.h>

namespace norva {

namespace internal {
class TSourceAdapter;
}

/// Base of every exporter. It writes nothing itself.
class NORVA_EXPORT TNorva : public TComponent {
 public:
  /// `Owner` may be null; otherwise it destroys this component with itself.
  explicit TNorva(TComponent* Owner = nullptr);
  ~TNorva() override;

  const TPropertyList& Properties() const override;

  /// Number of Next steps: 0 while the first record is written. After an export the number of
  /// exported records, or one less under CurrentRecordOnly.
  std::int32_t RecordCounter = 0;
  /// The columns of the current or last export.
  TNorvaColumns Columns{*this};

  /// Which of the four sources below is read.
  TNorvaSource ExportSource = esDataSet;
  // The sources are not owned; a reference is cleared when its component goes away.
  TReference<TDataSet> DataSet{*this};
  TReference<TDBGrid> DBGrid{*this};
  TReference<TListView> ListView{*this};
  TReference<TStringGrid> StringGrid{*this};

  /// Names of the columns to export, in output order (for a string grid column numbers); empty:
  /// all.
  TStringList ExportedFields;
  /// Title of the document, where the format has one.
  std::string Title;
  /// Lines before the data.
  TStringList Header;
  /// `name=caption` by column name; else the source's titles.
  TStringList Captions;
  bool AllowCaptions = true;
  /// Lines after the data.
  TStringList Footer;
  TNorvaFormats Formats;
  /// `name=picture` by column name; else the format of the column's type.
  TStringList UserFormats;
  /// `name=width` in characters, by column name.
  TStringList ColumnsWidth;
  /// `name=alignment` by column name: by its first letter C centre, R right, else left.
  TStringList ColumnsAlign;
  /// `name=length` in characters, by column name; for texts of list views and string grids.
  TStringList ColumnsLength;

  /// Writes only the record that the source stands on (with GoToFirstRecord: the first one).
  bool CurrentRecordOnly = false;
  bool GoToFirstRecord = true;
  /// Greatest number of records to write; 0: no limit. Clamped to the items of a list view.
  std::int32_t ExportRecCount = 0;
  /// Records to step over first. Clamped to the items of a list view.
  std::int32_t SkipRecCount = 0;
  /// Leaves out invisible fields. On purpose: the first one ends the list of columns.
  bool OnlyVisibleFields = false;
  /// Infers the column types of list views and string grids from a sample text.
  bool AutoCalcStrType = false;
  /// Widens the columns to their data in a pass of its own before writing.
  bool AutoCalcColWidth = false;
  /// Set by Abort; stays true after an aborted export.
  bool Aborted = false;
  /// Published as "_Version"; informational.
  std::string Version = "2.25";

  /// Fired at the end of BeginExport.
  TNotifyEvent OnBeginExport;
  /// Fired for each record of a first pass over the source, from 1.
  TExportedRecordEvent OnFetchedRecord;
  /// Fired for each record stepped over, from 1.
  TExportedRecordEvent OnSkippedRecord;
  /// Fired after each written record, from 0.
  TExportedRecordEvent OnExportedRecord;
  /// Asked before each record whether an aborted export may go on.
  TNorvaStopEvent OnStopExport;
  /// Last chance to change a cell's text; called for every cell, null or not.
  TGetExportTextEvent OnGetExportText;
  /// Alignment, font and background of a cell, in the formats that have them.
  TGetCellParamsEvent OnGetCellParams;
  /// Fired for the first name, caption or cell text of an export that the format writes as it
  /// stands although it breaks the file there; the header of a format's class says which do. Not
  /// published: it is for hosts that want to warn.
  TUnsafeTextEvent OnUnsafeText;
  TNotifyEvent OnEndExport;

  /// Exports; nothing in this class, a file or the clipboard in the bases that derive from it.
  virtual void Execute();
  /// Exports to `Stream`, which stays the caller's. Throws Exception when the source is missing,
  /// closed or empty, EConvertError for a value that does not fit its column's type, and what
  /// source, stream or handlers throw.
  void ExportToStream(TStream& Stream);
  /// Stops the export at the next check; called from an event handler.
  virtual void Abort();
  /// Throws when the source that ExportSource names is missing.
  void CheckExportSource();

 protected:
  // The driver's hooks, in the order in which it calls them.
  virtual TNorvaWriterClass GetWriterClass() const;
  virtual void BeginExport();
  virtual void WriteCaptionRow();
  virtual void BeforeExport();
  virtual bool Eof();
  virtual void WriteDataRow();
  virtual void AfterExport();
  virtual void EndExport();

  // The texts, each appended to `Text` or `Row`.
  /// All captions, without separator.
  virtual void GetCaptionRow(std::string& Row);
  /// All cells of the current record, without separator.
  virtual void GetDataRow(bool NeedFormat, std::string& Row);
  virtual void GetColCaption(int Index, std::string& Text);
  virtual void GetColData(int Index, bool NeedFormat, std::string& Text);
  virtual bool ColIsNull(int Index);
  /// The characters that NormalString escapes.
  virtual TSpecialCharacters GetSpecialCharacters() const;
  /// `S` made safe for the format.
  virtual void NormalString(std::string_view S, std::string& Text);
  /// Whether NormalString is known to copy every cell text as it stands; the driver then writes
  /// cells straight into the row. Asked once an export, after BeginExport. A class that says so
  /// must make sure that no class derived from it changes NormalString.
  virtual bool CopiesTexts() const { return false; }
  /// For formats to call on a text that breaks the file, NormalString included. Fires OnUnsafeText
  /// for the first one of an export.
  void UnsafeText(std::string_view Text);

  /// The cell text of the current record: NullString for null; with `NeedFormat` the value by the
  /// column's type and picture, through NormalString (booleans and unknown types excepted); else
  /// the source's own text. Then OnGetExportText. False when the cell is null.
  bool GetColDataSt(int Index, bool NeedFormat, std::string& Text);
  /// The number, or the day number, that the source's own text of a cell in a number, date or time
  /// column would be read as, without the way over the text. Nothing for null, for other columns
  /// and where only the text can tell.
  std::optional<double> GetColNumber(int Index);
  /// Throws `Error` again, with the column and the current record in front of its message.
  [[noreturn]] void CellError(int Index, const EConvertError& Error) const;
  /// Calls OnGetCellParams, if assigned.
  void GetCellParams(std::int32_t RecNo, std::int32_t ColNo, const std::string& Value,
                     TNorvaColAlign& Align, TFont& AFont, TColor& Background);
  /// Whether the export goes on; asks OnStopExport, which may overrule an abort.
  bool CanContinue();
  /// The driver's tests before a record: end of the source, limit, abort.
  bool MoreRecords();
  /// Runs an export over the writer. For formats that make their writer themselves.
  void DoExport();
  /// Runs an export through `Writer`, which lives as long as the call.
  void ExportThrough(TNorvaWriter& Writer);
  /// The writer of the running export; throws when none runs.
  TNorvaWriter& GetWriter() const;
  /// A buffer that keeps its capacity from row to row.
  std::string& RowBuffer() { return Row_; }

  // Navigation over the chosen source.
  void First();
  void Next();
  void Skip(std::int32_t Count);
  TBookmark GetBookmark();
  void GoToBookmark(TBookmark Bookmark);
  void FreeBookmark(TBookmark Bookmark);
  bool IsEmpty();
  bool IsActive();
  void DisableControls();
  void EnableControls();

  void Notification(TComponent& Component, TOperation Operation) override;

 private:
  friend class TNorvaColumns;

  // Asked for every cell.
  internal::TSourceAdapter& Source() {
    if (!Source_ || SourceKind_ != ExportSource) MakeSource();
    return *Source_;
  }
  void MakeSource();
  const TFormatSettings& Settings() const { return Settings_ ? *Settings_ : FormatSettings(); }
  void WriteRecords();
  bool SurelyFits(int Index);
  bool IsNullCell(int Index, const TFieldValue& Value);
  void AppendValue(const TNorvaColumn& Column, const TFieldValue& Value, bool NeedFormat,
                   std::string& Text);

  std::unique_ptr<internal::TSourceAdapter> Source_;
  TNorvaSource SourceKind_ = esDataSet;  // the kind that Source_ was made for
  TNorvaWriter* Writer_ = nullptr;       // not owned; set while an export runs
  // The thread's record while an export runs, which spares looking it up for each cell.
  const TFormatSettings* Settings_ = nullptr;
  std::string Row_;
  int Column_ = -1;  // the column whose caption or cell is under way
  bool UnsafeSeen_ = false;
  bool CopiesTexts_ = false;  // as the format said at the start of the export
  int FetchedIndex_ = -1;     // the column whose cell has been read ...
  bool FetchedNull_ = false;  // ... and whether that is null
  std::string Cell_;          // one formatted value on its way through NormalString
};

}  // namespace norva
