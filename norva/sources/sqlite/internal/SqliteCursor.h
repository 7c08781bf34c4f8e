/// A running query: forward reading, with the way back by running it again.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string>
#include <string_view>

#include <norva/sources/sqlite/SqliteDatabase.h>
#include <norva/sources/sqlite/internal/SqliteStatement.h>

namespace norva::internal {

/// Stands on one record of a query's result. SQLite holds only the record that it stepped to last;
/// going anywhere else costs nothing by itself, and the statement is stepped, or run again, once a
/// value there is asked for.
class TSqliteCursor {
 public:
  /// Prepares `Query` and steps to the first record. `Source` names the query in messages.
  /// Throws EDatabaseError unless it is one statement that returns columns and only reads.
  /// `Database` must outlive the cursor.
  TSqliteCursor(const TSqliteDatabase& Database, std::string_view Query, std::string Source);

  void First();
  /// To record `RecNo`, 1 for the first. A record that is not there is an error when it is read.
  void GoTo(std::int64_t RecNo);
  void Next();
  bool Eof() const { return Eof_; }
  /// Whether texts are wanted in UTF-8, as SQLite has them: the active code page at the time of the
  /// last move. Asking for the page once a record, not once a text, saves a tenth of the reading.
  bool Utf8() const { return Utf8_; }
  bool IsEmpty() const { return Empty_; }
  /// The record it stands on; 0 only in an empty result.
  std::int64_t RecNo() const { return RecNo_; }
  /// Counts the result by a statement of its own.
  std::int64_t Count() const;

  /// The value of a column, valid until the cursor moves; null in an empty result.
  ///
  /// It is asked by sqlite3_value_..., which spares the look-up that each sqlite3_column_... makes.
  /// This is allowed as long as one thread uses the connection.
  sqlite3_value* Cell(int Column) {
    if (Held_ != RecNo_) Restore();
    return sqlite3_column_value(Statement_.get(), Column);
  }

  sqlite3_stmt* Statement() const { return Statement_.get(); }
  /// How messages name the query: `table "orders"` or `the query`.
  const std::string& Source() const { return Source_; }

 private:
  std::string PrepareFault();
  bool HasSecondStatement(const char* Tail) const;
  bool Step();
  void Restore();

  const TSqliteDatabase& Database_;
  std::string Query_;
  std::string Source_;
  TSqliteStatement Statement_;
  std::int64_t RecNo_ = 0;
  std::int64_t Held_ = 0;  // the record that SQLite holds; 0 for none
  bool Empty_ = false;
  bool Eof_ = false;
  bool Utf8_ = false;
};

}  // namespace norva::internal
