#include <norva/sources/sqlite/internal/SqliteCursor.h>

#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <norva/sources/sqlite/internal/SqliteError.h>
#include <norva/sources/sqlite/internal/SqliteMessages.h>

namespace norva::internal {

TSqliteCursor::TSqliteCursor(const TSqliteDatabase& Database, std::string_view Query,
                             std::string Source)
    : Database_(Database), Query_(Query), Source_(std::move(Source)) {
  if (const std::string fault = PrepareFault(); !fault.empty()) {
    throw EDatabaseError(MsgSqliteQuery, Database_.FileName(), fault, Query_);
  }
  Empty_ = !Step();
  First();
}

// Prepares the statement; returns why it cannot be used, empty when it can.
std::string TSqliteCursor::PrepareFault() {
  // SQLite would stop reading there and ignore the rest.
  if (Query_.find('\0') != std::string::npos) return MsgSqliteNul;
  sqlite3_stmt* statement = nullptr;
  const char* tail = nullptr;
  const int code = sqlite3_prepare_v2(Database_.Handle(), Query_.c_str(), -1, &statement, &tail);
  Statement_.reset(statement);
  if (code != SQLITE_OK) return SqliteReason(Database_.Handle());
  if (!statement) return MsgSqliteEmptyQuery;
  if (HasSecondStatement(tail)) return MsgSqliteSecond;
  if (!sqlite3_stmt_readonly(statement)) return MsgSqliteWrites;
  if (sqlite3_column_count(statement) == 0) return MsgSqliteNoColumns;
  return {};
}

// Whether anything but blanks, comments and semicolons stands in `Tail`.
bool TSqliteCursor::HasSecondStatement(const char* Tail) const {
  while (*Tail != '\0') {
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v2(Database_.Handle(), Tail, -1, &statement, &Tail);
    const TSqliteStatement owner(statement);
    if (code != SQLITE_OK || statement) return true;
  }
  return false;
}

void TSqliteCursor::First() {
  RecNo_ = Empty_ ? 0 : 1;
  Eof_ = Empty_;
  Utf8_ = ActiveCodePage() == CodePageUtf8;
}

void TSqliteCursor::GoTo(std::int64_t RecNo) {
  if (Empty_) return;
  if (RecNo < 1) throw EDatabaseError(MsgSqliteNoRow, RecNo, Source_, Database_.FileName());
  RecNo_ = RecNo;
  Eof_ = false;
  Utf8_ = ActiveCodePage() == CodePageUtf8;
}

void TSqliteCursor::Next() {
  Utf8_ = ActiveCodePage() == CodePageUtf8;
  if (Eof_) return;
  if (Held_ != RecNo_) Restore();
  if (Step()) {
    RecNo_ = Held_;
  } else {
    Eof_ = true;
  }
}

// To the record after the held one; false, with none held, when there is no more.
bool TSqliteCursor::Step() {
  const int code = sqlite3_step(Statement_.get());
  if (code == SQLITE_ROW) {
    ++Held_;
    return true;
  }
  const std::int64_t row = Held_ + 1;
  const std::string reason = code == SQLITE_DONE ? "" : SqliteReason(Database_.Handle());
  sqlite3_reset(Statement_.get());
  Held_ = 0;
  if (code != SQLITE_DONE) {
    throw EDatabaseError(MsgSqliteRead, row, Source_, Database_.FileName(), reason);
  }
  return false;
}

// Makes SQLite hold the record that the cursor stands on.
void TSqliteCursor::Restore() {
  if (Held_ > RecNo_) {
    sqlite3_reset(Statement_.get());
    Held_ = 0;
  }
  while (Held_ < RecNo_) {
    if (!Step()) throw EDatabaseError(MsgSqliteNoRow, RecNo_, Source_, Database_.FileName());
  }
}

std::int64_t TSqliteCursor::Count() const {
  sqlite3* const handle = Database_.Handle();
  std::string query = sqlite3_sql(Statement_.get());
  query.erase(query.find_last_not_of("; \t\r\n") + 1);
  sqlite3_stmt* statement = nullptr;
  // The line break ends a comment that the query may end with.
  const std::string counting = "SELECT count(*) FROM (" + query + "\n)";
  bool counted = sqlite3_prepare_v2(handle, counting.c_str(), -1, &statement, nullptr) == SQLITE_OK;
  // PRAGMA and EXPLAIN cannot stand in brackets: their rows are stepped through.
  if (!counted) sqlite3_prepare_v2(handle, query.c_str(), -1, &statement, nullptr);
  const TSqliteStatement owner(statement);
  std::int64_t count = 0;
  int code;
  while ((code = sqlite3_step(statement)) == SQLITE_ROW) {
    count = counted ? sqlite3_column_int64(statement, 0) : count + 1;
  }
  if (code != SQLITE_DONE) {
    throw EDatabaseError(MsgSqliteCount, Source_, Database_.FileName(), SqliteReason(handle));
  }
  return count;
}

}  // namespace norva::internal
