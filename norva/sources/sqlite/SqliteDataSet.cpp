#include <norva/sources/sqlite/SqliteDataSet.h>

#include <algorithm>
#include <vector>

#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <norva/sources/sqlite/internal/SqliteCursor.h>
#include <norva/sources/sqlite/internal/SqliteFields.h>
#include <norva/sources/sqlite/internal/SqliteMessages.h>

namespace norva {

using namespace internal;

namespace {

constexpr std::size_t ListedTables = 10;  // in a message

std::string SelectAll(const std::string& Table) {
  return "SELECT * FROM " + TSqliteDatabase::QuoteIdentifier(Table);
}

}  // namespace

TSqliteDataSet::TSqliteDataSet(std::string_view FileName, std::string_view Query, TComponent* Owner)
    : TDataSet(Owner), FileName_(FileName), Query_(Query) {
  Open();
}

TSqliteDataSet::TSqliteDataSet(std::string_view FileName, const TSqliteTable& Table,
                               TComponent* Owner)
    : TDataSet(Owner), FileName_(FileName), Table_(Table.Name), Query_(SelectAll(Table.Name)) {
  Open();
}

TSqliteDataSet::TSqliteDataSet(TSqliteDatabase& Database, std::string_view Query, TComponent* Owner)
    : TDataSet(Owner), Query_(Query), Database_(&Database) {
  Open();
}

TSqliteDataSet::TSqliteDataSet(TSqliteDatabase& Database, const TSqliteTable& Table,
                               TComponent* Owner)
    : TDataSet(Owner), Table_(Table.Name), Query_(SelectAll(Table.Name)), Database_(&Database) {
  Open();
}

TSqliteDataSet::~TSqliteDataSet() { TSqliteDataSet::Close(); }

void TSqliteDataSet::Open() {
  if (Active()) return;
  try {
    if (!Database_) {
      OwnDatabase_ = std::make_unique<TSqliteDatabase>(FileName_);
      Database_ = OwnDatabase_.get();
    }
    if (!Table_.empty()) CheckTable();
    const std::string source = Table_.empty() ? "the query" : "table \"" + Table_ + "\"";
    Cursor_ = std::make_unique<TSqliteCursor>(*Database_, Query_, source);
    AddFields();
  } catch (...) {
    Close();
    throw;
  }
}

void TSqliteDataSet::Close() {
  ClearFields();  // they refer to the cursor, which refers to the database
  Cursor_.reset();
  RecordCount_.reset();
  if (OwnDatabase_) Database_ = nullptr;
  OwnDatabase_.reset();
}

// SQLite would say that there is no such table, but not which ones there are.
void TSqliteDataSet::CheckTable() const {
  const std::vector<TSqliteTable> tables = Database_->TableNames();
  std::string names;
  for (std::size_t i = 0; i < tables.size(); ++i) {
    if (CompareText(tables[i].Name, Table_) == 0) return;
    if (i <= ListedTables) names += i == 0 ? "" : ", ";
    if (i <= ListedTables) names += i < ListedTables ? tables[i].Name : "...";
  }
  throw EDatabaseError(MsgSqliteNoTable, Table_, Database_->FileName(),
                       names.empty() ? "no tables" : names);
}

void TSqliteDataSet::AddFields() {
  const int count = sqlite3_column_count(Cursor_->Statement());
  for (int column = 0; column < count; ++column) {
    const char* const name = sqlite3_column_name(Cursor_->Statement(), column);
    try {
      AddField(MakeSqliteField(*Cursor_, column, FreeFieldName(FromUtf8(name))));
    } catch (const EConvertError& error) {
      throw EConvertError(MsgSqliteName, name, Cursor_->Source(), error.what());
    }
  }
}

// Fields are found by name. A query can name two columns alike; the second "ID" becomes "ID_1".
std::string TSqliteDataSet::FreeFieldName(const std::string& Wanted) const {
  std::string free = Wanted;
  for (int number = 1; FindField(free); ++number) free = Wanted + '_' + std::to_string(number);
  return free;
}

TSqliteCursor& TSqliteDataSet::Cursor() const {
  if (!Cursor_) throw EDatabaseError(MsgSqliteClosed, Table_.empty() ? Query_ : Table_);
  return *Cursor_;
}

void TSqliteDataSet::First() { Cursor().First(); }

void TSqliteDataSet::Next() { Cursor().Next(); }

bool TSqliteDataSet::Eof() const { return Cursor().Eof(); }

bool TSqliteDataSet::IsEmpty() const { return Cursor().IsEmpty(); }

TBookmark TSqliteDataSet::GetBookmark() { return Cursor().RecNo(); }

void TSqliteDataSet::GotoBookmark(TBookmark Bookmark) { Cursor().GoTo(Bookmark); }

std::int64_t TSqliteDataSet::RecordCount() {
  if (!RecordCount_) RecordCount_ = Cursor().Count();
  return *RecordCount_;
}

}  // namespace norva
