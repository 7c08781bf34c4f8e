/// SQLite database files, opened to be read.
///
///   TSqliteDatabase Shop("shop.db");
///   for (const TSqliteTable& table : Shop.TableNames()) Export(Shop, table);
///
/// What goes to SQLite is UTF-8 whatever the active code page is: queries and the names of tables.
/// So are the messages.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <norva/platform/Export.h>

struct sqlite3;

namespace norva {

enum TSqliteTableKind : std::uint8_t { stkTable, stkView };

/// A table or view of a database.
struct NORVA_EXPORT TSqliteTable {
  std::string Name;
  TSqliteTableKind Kind = stkTable;
};

/// A database file, open for reading from construction to destruction. Data sets made over it
/// must be destroyed or closed first. To be used by one thread at a time.
///
/// It holds one read transaction, so that everything read through it, however often, is the state
/// of the file at the time of opening. A writer of a database in WAL mode is not held up by that;
/// in the other journal modes its commit waits until this object is gone.
class NORVA_EXPORT TSqliteDatabase {
 public:
  /// `FileName` is a path and nothing else (no URI, no `:memory:`). Throws EDatabaseError, naming
  /// the file and the reason, when it is missing, no database, damaged, encrypted or locked.
  /// Never creates or changes a database; an empty file is one without tables.
  explicit TSqliteDatabase(std::string_view FileName);
  TSqliteDatabase(const TSqliteDatabase&) = delete;
  TSqliteDatabase& operator=(const TSqliteDatabase&) = delete;
  ~TSqliteDatabase();

  const std::string& FileName() const { return FileName_; }
  /// The tables and views by name, without those that SQLite keeps for itself (`sqlite_...`).
  std::vector<TSqliteTable> TableNames() const;
  /// The connection, for hosts that add functions or collations of their own. Not to be closed,
  /// nor its transaction ended.
  sqlite3* Handle() const { return Handle_; }

  /// `Name` in double quotes, as a query may hold it whatever its characters are.
  static std::string QuoteIdentifier(std::string_view Name);

 private:
  void Connect();
  void BeginSnapshot();

  std::string FileName_;
  sqlite3* Handle_ = nullptr;
};

}  // namespace norva
