/// The engine's one view of the four source kinds.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <norva/core/NorvaTypes.h>
#include <norva/platform/DataSet.h>

namespace norva {

class TNorva;
class TNorvaColumn;

namespace internal {

/// What the engine asks of a source; each kind is one implementation. Columns are addressed by
/// their number in the source.
class TSourceAdapter {
 public:
  explicit TSourceAdapter(TNorva& Exporter) : Exporter_(Exporter) {}
  TSourceAdapter(const TSourceAdapter&) = delete;
  TSourceAdapter& operator=(const TSourceAdapter&) = delete;
  virtual ~TSourceAdapter() = default;

  // Navigation. The record counter is the exporter's and is kept there.
  virtual void First() = 0;
  virtual void Next() = 0;
  virtual bool Eof() const = 0;
  virtual bool IsEmpty() const = 0;
  virtual bool IsActive() const = 0;
  virtual void DisableControls() = 0;
  virtual void EnableControls() = 0;
  virtual TBookmark GetBookmark() = 0;
  virtual void GoToBookmark(TBookmark Bookmark) = 0;
  virtual void FreeBookmark(TBookmark) {}
  /// Number of records the source can tell by itself; -1 for data sets.
  virtual int ItemCount() const { return -1; }

  // Columns.
  virtual int ColumnCount() const = 0;
  /// The column exported at `Position` when all are, or -1 to end the list.
  virtual int NumberAt(int Position) const = 0;
  /// The column that the ExportedFields entry `Name` stands for, or -1.
  virtual int NumberOf(const std::string& Name) const = 0;
  virtual std::string ColumnName(int Number) const = 0;
  virtual TNorvaColType ColumnType(int Number) const = 0;
  virtual std::string ColumnCaption(int Number) const = 0;
  virtual int ColumnWidth(int Number) const = 0;
  virtual std::string ColumnSQLType(int Number) const = 0;
  /// The length of a text column.
  virtual int ColumnLength(const TNorvaColumn& Column) const = 0;

  // Cells of the current record.
  virtual bool IsNull(int Number) const = 0;
  virtual TFieldValue Value(int Number) const = 0;
  /// How Value turns into text.
  virtual TFieldType FieldType(int Number) const = 0;

 protected:
  TNorva& Exporter() const { return Exporter_; }

 private:
  TNorva& Exporter_;
};

/// The adapter of the exporter's ExportSource.
std::unique_ptr<TSourceAdapter> NewSourceAdapter(TNorva& Exporter);

}  // namespace internal
}  // namespace norva
