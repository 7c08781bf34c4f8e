/// What an export reads: a table or a query of a database file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <norva/platform/StringList.h>
#include <norva/sources/sqlite/SqliteDataSet.h>
#include <tools/norva/CommandLine.h>

namespace norva::tool {

/// An open database file. A request to end (Interrupted) stops a query that is running.
class TDatabase {
 public:
  /// Throws EUsage for an ODBC source, EDatabaseError when the file cannot be read.
  explicit TDatabase(const std::string& FileName);
  TSqliteDatabase& Get() { return Database_; }

 private:
  TSqliteDatabase Database_;
};

/// An open table or query. Field names are in the code page that is active meanwhile.
class TSource {
 public:
  /// Throws EUsage when neither table nor query is given and the file has several tables,
  /// EDatabaseError, naming those most like it, when there is no such table.
  explicit TSource(const TSourceArguments& Arguments);

  TSqliteDataSet& DataSet() { return *DataSet_; }
  /// `table "orders" in "shop.db"` or `the query on "shop.db"`.
  const std::string& Description() const { return Description_; }

  /// The table that is read, in UTF-8; empty for a query.
  const std::string& TableName() const { return TableName_; }

  /// The names of the blob fields, or of all others.
  std::vector<std::string> FieldNames(bool Blobs) const;
  /// Throws EDatabaseError when there is no field `Name`; `Option` is who asks.
  void CheckField(const char* Option, const std::string& Name) const;

 private:
  TDatabase Database_;
  std::string Description_;
  std::string TableName_;
  std::optional<TSqliteDataSet> DataSet_;
};

}  // namespace norva::tool
