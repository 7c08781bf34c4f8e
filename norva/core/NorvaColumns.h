/// The columns of an export: what each exporter knows of the source.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <norva/core/NorvaTypes.h>
#include <norva/platform/DataSet.h>
#include <norva/platform/DateTime.h>
#include <norva/platform/Export.h>
#include <norva/platform/Numbers.h>

namespace norva {

class TNorva;

/// One exported column.
class NORVA_EXPORT TNorvaColumn {
 public:
  /// Index in the source: field, list-view column, grid column or string-grid column.
  std::int32_t Number = 0;
  TNorvaColType ColType = ectInteger;
  /// The key of the user's per-column lists: field name, list-view caption or column number.
  std::string Name;
  /// The title in caption rows.
  std::string Caption;
  /// In characters.
  std::int32_t Width = 0;
  TNorvaColAlign Align = ecaLeft;
  /// The picture of the values; empty for texts, booleans and unknown types unless given.
  const std::string& Format() const { return Format_; }
  void SetFormat(std::string Value);
  /// The type in CREATE TABLE; empty for list views and string grids.
  std::string SQLType;
  /// The greatest length of a text in characters; 0 for other types.
  std::int32_t Length = 0;
  /// How the source declares the values; ftString for list views and string grids.
  TFieldType FieldType = ftUnknown;
  /// Free for the exporters.
  std::int32_t Tag = 0;

  bool IsNumeric() const {
    return ColType == ectInteger || ColType == ectFloat || ColType == ectCurrency;
  }
  bool IsDateTime() const {
    return ColType == ectDate || ColType == ectTime || ColType == ectDateTime;
  }
  bool IsString() const { return ColType == ectString; }

  /// Format, parsed as a number or a date picture.
  const TNumberPicture& NumberPicture() const {
    if (!Number_) Number_.emplace(Format_);
    return *Number_;
  }
  const TDatePicture& DatePicture() const {
    if (!Date_) Date_.emplace(Format_);
    return *Date_;
  }

 private:
  std::string Format_;
  mutable std::optional<TNumberPicture> Number_;  // parsed when first asked for
  mutable std::optional<TDatePicture> Date_;
};

/// The list of columns of one exporter; refilled by each BeginExport and kept after the export.
class NORVA_EXPORT TNorvaColumns : public TObject {
 public:
  explicit TNorvaColumns(TNorva& Exporter) : Exporter_(Exporter) {}
  TNorvaColumns(const TNorvaColumns&) = delete;
  TNorvaColumns& operator=(const TNorvaColumns&) = delete;

  int Count() const { return static_cast<int>(Items_.size()); }
  /// Throws EListError when `Index` is out of range, as do all operations by index.
  TNorvaColumn& operator[](int Index) const {
    if (Index < 0 || Index >= Count()) IndexError(Index);
    return *Items_[static_cast<std::size_t>(Index)];
  }
  TNorvaColumn& Add();
  void Delete(int Index);
  void Clear() { Items_.clear(); }

  /// Adds a column for each exported source column, in output order. On purpose: the first
  /// position that names no exportable column (a blob, an invisible field under
  /// OnlyVisibleFields, an unknown list-view caption) ends the list. Throws EDatabaseError for an
  /// ExportedFields entry that names no field of a data set.
  void Fill();
  /// The source column exported at position `Index`, or -1.
  int SetColumnNumber(int Index) const;

  // Each sets one attribute of column `Index` from the source and the user's lists.
  void SetColumnName(int Index);
  void SetColumnType(int Index);
  void SetColumnCaption(int Index);
  void SetColumnWidth(int Index);
  void SetColumnFormat(int Index);
  void SetColumnAlign(int Index);
  /// On purpose: stores nothing for list views and string grids.
  void SetColumnSQLType(int Index);
  void SetColumnLength(int Index);

  /// Widens the columns to their captions and to all values, in a pass of its own over the
  /// records, which fires OnFetchedRecord with this list as the sender.
  void AutoCalcColWidth();

  /// Index of the first column named `Name`, case ignored, or -1.
  int IndexOfName(std::string_view Name) const;
  /// Sets every Tag to 0.
  void EmptyTags();

 private:
  [[noreturn]] static void IndexError(int Index);
  void WidenToRecord();

  TNorva& Exporter_;
  std::vector<std::unique_ptr<TNorvaColumn>> Items_;
};

/// The value type of a field; ectUnknown without one.
NORVA_EXPORT TNorvaColType DataType2NorvaColType(const TField* Field);
/// The SQL type of a field; "UNKNOWN" without one.
NORVA_EXPORT std::string DataType2SQLType(const TField* Field);
/// The SQL type of a column by its value type. On purpose: "DOUBLE PRECISSION" and "CHAR{%d)".
NORVA_EXPORT std::string NorvaType2SQLType(const TNorvaColumn& Column);
/// "Integer", "Float" ... "Boolean", else "Unknown".
NORVA_EXPORT std::string NorvaColTypeAsString(TNorvaColType ColType);

}  // namespace norva
