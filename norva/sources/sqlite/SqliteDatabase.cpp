#include <norva/sources/sqlite/SqliteDatabase.h>

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include <norva/platform/Exceptions.h>
#include <norva/sources/sqlite/internal/SqliteError.h>
#include <norva/sources/sqlite/internal/SqliteMessages.h>
#include <norva/sources/sqlite/internal/SqliteStatement.h>

namespace norva {

using namespace internal;

namespace {

constexpr int BusyMilliseconds = 1000;  // for a writer that is just committing

std::string SystemReason() { return std::generic_category().message(errno) + MsgSqliteCheckPath; }

// Why `FileName` cannot be a readable file; empty when it can. SQLite itself would only say
// "unable to open database file".
std::string FileFault(const std::string& FileName) {
  struct stat status;
  if (::stat(FileName.c_str(), &status) != 0) return SystemReason();
  if (S_ISDIR(status.st_mode)) return MsgSqliteFolder;
  // A pipe would be waited for, and a device read as an empty database.
  if (!S_ISREG(status.st_mode)) return MsgSqliteNoFile;
  if (::faccessat(AT_FDCWD, FileName.c_str(), R_OK, AT_EACCESS) != 0) return SystemReason();
  return {};
}

}  // namespace

TSqliteDatabase::TSqliteDatabase(std::string_view FileName) : FileName_(FileName) {
  if (const std::string fault = FileFault(FileName_); !fault.empty()) {
    throw EDatabaseError(MsgSqliteOpen, FileName_, fault);
  }
  try {
    Connect();
    BeginSnapshot();
  } catch (...) {
    sqlite3_close_v2(Handle_);
    throw;
  }
}

void TSqliteDatabase::Connect() {
  // A name that begins with a slash or a dot is never taken for a URI or for `:memory:`.
  const std::string path = FileName_.front() == '/' ? FileName_ : "./" + FileName_;
  // Without mutexes: each call would take one, and a connection serves one thread.
  constexpr int flags = SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX;
  if (sqlite3_open_v2(path.c_str(), &Handle_, flags, nullptr) != SQLITE_OK) {
    throw EDatabaseError(MsgSqliteOpen, FileName_, SqliteReason(Handle_));
  }
  sqlite3_busy_timeout(Handle_, BusyMilliseconds);
}

// SQLite opens lazily: only reading the schema shows whether the file is a database, and begins
// the transaction.
void TSqliteDatabase::BeginSnapshot() {
  constexpr const char* begin =
      "PRAGMA cell_size_check = ON;"  // finds more of the damage in damaged pages
      "BEGIN;"
      "SELECT count(*) FROM sqlite_master";
  if (sqlite3_exec(Handle_, begin, nullptr, nullptr, nullptr) != SQLITE_OK) {
    throw EDatabaseError(MsgSqliteOpen, FileName_, SqliteReason(Handle_));
  }
}

TSqliteDatabase::~TSqliteDatabase() { sqlite3_close_v2(Handle_); }

std::vector<TSqliteTable> TSqliteDatabase::TableNames() const {
  constexpr const char* query =
      "SELECT name, type = 'view' FROM sqlite_master WHERE type IN ('table', 'view')"
      " AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY name COLLATE NOCASE, name";
  sqlite3_stmt* statement = nullptr;
  int code = sqlite3_prepare_v2(Handle_, query, -1, &statement, nullptr);
  const TSqliteStatement owner(statement);
  std::vector<TSqliteTable> tables;
  while (code == SQLITE_OK && (code = sqlite3_step(statement)) == SQLITE_ROW) {
    const auto* name = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
    tables.push_back({name, sqlite3_column_int(statement, 1) != 0 ? stkView : stkTable});
    code = SQLITE_OK;
  }
  if (code != SQLITE_DONE) {
    throw EDatabaseError(MsgSqliteTables, FileName_, SqliteReason(Handle_));
  }
  return tables;
}

std::string TSqliteDatabase::QuoteIdentifier(std::string_view Name) {
  std::string quoted = "\"";
  for (const char c : Name) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted += '"';
}

}  // namespace norva
