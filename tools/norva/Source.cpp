#include <tools/norva/Source.h>

#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>

#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <tools/norva/Errors.h>
#include <tools/norva/Interrupt.h>
#include <tools/norva/Messages.h>
#include <tools/norva/Nearest.h>

namespace norva::tool {
namespace {

constexpr int StepsBetweenChecks = 100000;  // of SQLite's machine; some milliseconds

const std::string& CheckIsFile(const std::string& Name) {
  const bool odbc = SameText(std::string_view(Name).substr(0, 5), "odbc:");
  if (odbc && ::access(Name.c_str(), F_OK) != 0) throw EUsage(MsgNoOdbc, Name);
  return Name;
}

std::vector<std::string> NamesOf(const std::vector<TSqliteTable>& Tables, TSqliteTableKind Kind) {
  std::vector<std::string> names;
  for (const TSqliteTable& table : Tables) {
    if (table.Kind == Kind) names.push_back(table.Name);
  }
  return names;
}

/// The table that needs no naming: the only one or, in a file without tables, the only view.
std::string OnlyTable(const TSqliteDatabase& Database) {
  const std::vector<TSqliteTable> all = Database.TableNames();
  std::vector<std::string> names = NamesOf(all, stkTable);
  if (names.empty()) names = NamesOf(all, stkView);
  if (names.empty()) throw EDatabaseError(MsgNoTables, Database.FileName());
  if (names.size() > 1) {
    throw EUsage(MsgTableWanted, Database.FileName(), names.size(), FirstOf(names));
  }
  return names.front();
}

void CheckTable(const TSqliteDatabase& Database, const std::string& Table) {
  std::vector<std::string> names;
  for (const TSqliteTable& table : Database.TableNames()) {
    if (CompareText(table.Name, Table) == 0) return;
    names.push_back(table.Name);
  }
  if (names.empty()) throw EDatabaseError(MsgNoTables, Database.FileName());
  throw EDatabaseError(MsgNoTable, Table, Database.FileName(), Suggestion(Table, names));
}

}  // namespace

TDatabase::TDatabase(const std::string& FileName) : Database_(CheckIsFile(FileName)) {
  sqlite3_progress_handler(
      Database_.Handle(), StepsBetweenChecks, [](void*) { return Interrupted() ? 1 : 0; }, nullptr);
}

TSource::TSource(const TSourceArguments& Arguments) : Database_(Arguments.Name) {
  TSqliteDatabase& database = Database_.Get();
  if (Arguments.Query) {
    Description_ = "the query on \"" + Arguments.Name + "\"";
    DataSet_.emplace(database, *Arguments.Query);
    return;
  }
  const std::string table = Arguments.Table ? *Arguments.Table : OnlyTable(database);
  CheckTable(database, table);
  TableName_ = table;
  Description_ = "table \"" + table + "\" in \"" + Arguments.Name + "\"";
  DataSet_.emplace(database, TSqliteTable{table});
}

std::vector<std::string> TSource::FieldNames(bool Blobs) const {
  std::vector<std::string> names;
  names.reserve(static_cast<std::size_t>(DataSet_->FieldCount()));
  for (int i = 0; i < DataSet_->FieldCount(); ++i) {
    const TField& field = DataSet_->Fields(i);
    if (field.IsBlob() == Blobs) names.push_back(field.FieldName);
  }
  return names;
}

void TSource::CheckField(const char* Option, const std::string& Name) const {
  if (DataSet_->FindField(Name)) return;
  std::vector<std::string> names;
  for (int i = 0; i < DataSet_->FieldCount(); ++i) names.push_back(DataSet_->Fields(i).FieldName);
  throw EDatabaseError(
      "%s", ToUtf8(Format(MsgNoField, Option, Name, Description_, Suggestion(Name, names))));
}

}  // namespace norva::tool
