/// Data sets over SQLite: the records of a query or of a whole table.
///
///   TSqliteDataSet Orders("shop.db", "SELECT * FROM orders WHERE paid");
///   TSqliteDataSet Customers("shop.db", TSqliteTable{"customers"});
///
/// Field types come from the declared column types, `Size` from their `(n)`:
///
///   _OR_TEXT                ftString      as in INTEGER_OR_TEXT: texts beside numbers
///   BOOL                    ftBoolean     0/1, true/false, t/f, yes/no
///   DATETIME TIMESTAMP      ftDateTime    ISO 8601 text, Unix seconds (an integer) or
///   DATE                    ftDate          a Julian day (a real)
///   TIME                    ftTime
///   MONEY CURRENCY          ftCurrency
///   DEC NUMERIC             ftBCD
///   TINYINT SMALLINT INT2   ftSmallint
///   BIGINT INT8             ftLargeint    and exactly INTEGER
///   INT                     ftInteger
///   CHAR CLOB TEXT          ftString      Size 255 without a declared length
///   BLOB                    ftBlob
///   REAL FLOA DOUB          ftFloat
///
/// The first of these that the declared type contains counts, upper or lower case. A column with
/// none of them, an expression for one, is taken by the value in the first record: ftLargeint,
/// ftFloat, ftString or ftBlob, and ftString for null.
///
/// SQLite stores any value in any column. One that cannot be converted to the column's type
/// without loss throws EDatabaseError, naming column, row and value, when it is read.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <norva/platform/DataSet.h>
#include <norva/sources/sqlite/SqliteDatabase.h>

namespace norva {

namespace internal {
class TSqliteCursor;
}

/// The records of one query, read forward with one record in memory. Open after construction.
///
/// A bookmark is the number of its record. Going back, also by First, runs the query again, once a
/// value is asked for; the end is reached by stepping over it, so that the last record, on which
/// the set then stays, costs a whole run when a field is read there. A query whose result differs
/// from run to run (`random()`) should not be used.
///
/// Texts are converted to the code page that is active when the set moves to their record (First
/// is such a move, too), field names to the one at opening. EDatabaseError names column and row of
/// a character that the page lacks.
class NORVA_EXPORT TSqliteDataSet : public TDataSet {
 public:
  /// Opens the database for this set alone. Throws EDatabaseError, naming the file, the query and
  /// SQLite's reason, when it cannot be opened or when `Query`, in UTF-8, is not one statement that
  /// returns columns and only reads.
  TSqliteDataSet(std::string_view FileName, std::string_view Query, TComponent* Owner = nullptr);
  /// All records of a table or view.
  TSqliteDataSet(std::string_view FileName, const TSqliteTable& Table, TComponent* Owner = nullptr);
  /// Reads from `Database`, which must outlive the set or its closing.
  TSqliteDataSet(TSqliteDatabase& Database, std::string_view Query, TComponent* Owner = nullptr);
  TSqliteDataSet(TSqliteDatabase& Database, const TSqliteTable& Table, TComponent* Owner = nullptr);
  ~TSqliteDataSet() override;

  std::string_view ClassName() const override { return "TSqliteDataSet"; }
  bool Active() const override { return Cursor_ != nullptr; }
  /// Opens a closed set again, by the state that the file then has; the fields are made anew.
  void Open() override;
  /// Ends the query and destroys the fields; a database of its own is closed.
  void Close() override;
  void First() override;
  void Next() override;
  bool Eof() const override;
  bool IsEmpty() const override;
  TBookmark GetBookmark() override;
  void GotoBookmark(TBookmark Bookmark) override;

  /// The number of records, counted by a query of its own, once.
  std::int64_t RecordCount();

 private:
  void CheckTable() const;
  void AddFields();
  std::string FreeFieldName(const std::string& Wanted) const;
  internal::TSqliteCursor& Cursor() const;

  std::string FileName_;  // of a database of its own
  std::string Table_;     // empty for a query
  std::string Query_;
  std::unique_ptr<TSqliteDatabase> OwnDatabase_;
  TSqliteDatabase* Database_ = nullptr;  // owned only as OwnDatabase_
  std::unique_ptr<internal::TSqliteCursor> Cursor_;
  std::optional<std::int64_t> RecordCount_;
};

}  // namespace norva
