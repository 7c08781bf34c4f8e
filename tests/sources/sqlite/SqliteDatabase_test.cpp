#include <norva/sources/sqlite/SqliteDatabase.h>

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include <norva/platform/Exceptions.h>
#include <norva/sources/sqlite/SqliteDataSet.h>
#include <tests/ErrorText.h>
#include <tests/TempFolder.h>

#include "SqliteScript.h"

namespace norva {
namespace {

using tests::ErrorText;
using tests::RunScript;
using tests::TSqliteWriter;
using tests::TTempFolder;

std::string OpenError(const std::string& FileName) {
  return ErrorText<EDatabaseError>([&] { TSqliteDatabase database(FileName); });
}

std::string CannotOpen(const std::string& FileName, const std::string& Reason) {
  return "Cannot open database \"" + FileName + "\": " + Reason;
}

// A page of 4096 bytes begins every 4096 bytes; the first holds the schema.
std::string Overwritten(std::string File, std::size_t Page) {
  return File.replace(Page * 4096, 4096, 4096, '\x5A');
}

std::string ManyRows() {
  return "CREATE TABLE t(id INTEGER PRIMARY KEY, s TEXT);"
         "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 2000)"
         " INSERT INTO t SELECT i, 'a text of some length, number ' || i FROM n;";
}

TEST(TSqliteDatabase, NamesTablesAndViewsInOrder) {
  TTempFolder folder;
  const std::string file = folder.Path("shop.db");
  RunScript(file,
            "CREATE TABLE Zebra(id INTEGER PRIMARY KEY AUTOINCREMENT);"  // makes sqlite_sequence
            "CREATE TABLE apple(x); CREATE INDEX i ON apple(x);"
            "CREATE VIEW \"b v\" AS SELECT x FROM apple; CREATE TABLE sqlitex(a)");
  std::string names;
  for (const TSqliteTable& table : TSqliteDatabase(file).TableNames()) {
    names += table.Name + (table.Kind == stkView ? " view, " : " table, ");
  }
  EXPECT_EQ(names, "apple table, b v view, sqlitex table, Zebra table, ");
}

const char* const Missing = "No such file or directory; check the path and the right to read it";
const char* const NoFile = "it is a device or pipe; give a database file";
const char* const NoDatabase =
    "file is not a database; give an SQLite 3 file that is not encrypted";
const char* const Damaged =
    "database disk image is malformed; restore it from a copy or rescue it with .recover of the "
    "sqlite3 shell";

struct TOpenCase {
  const char *Name, *Reason;
};
const TOpenCase OpenCases[] = {
    {"missing.db",   Missing                                                   },
    {"good.db/x",    "Not a directory; check the path and the right to read it"},
    {"folder",       "it is a folder; give the database file in it"            },
    {"pipe",         NoFile                                                    },
    {"/dev/null",    NoFile                                                    },
    {"text.db",      NoDatabase                                                },
    {"encrypted.db", NoDatabase                                                },
    {"cut.db",       Damaged                                                   },
    {"schema.db",    Damaged                                                   },
};

TEST(TSqliteDatabase, SaysWhyAFileCannotBeOpened) {
  TTempFolder folder;
  RunScript(folder.Path("good.db"), ManyRows());
  const std::string bytes = folder.Read("good.db");
  std::filesystem::create_directory(folder.Path("folder"));
  ASSERT_EQ(::mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  folder.Write("text.db", std::string(5000, 'x'));
  folder.Write("encrypted.db", Overwritten(bytes, 0));
  folder.Write("cut.db", bytes.substr(0, 20000));
  folder.Write("schema.db", bytes.substr(0, 100) + std::string(bytes.size() - 100, '\x5A'));
  for (const TOpenCase& c : OpenCases) {
    SCOPED_TRACE(c.Name);
    EXPECT_EQ(OpenError(folder.Path(c.Name)), CannotOpen(folder.Path(c.Name), c.Reason));
  }
  // A path, never a URI or a database in memory.
  for (const std::string& name :
       {std::string(), std::string(":memory:"), "file:" + folder.Path("good.db")}) {
    EXPECT_EQ(OpenError(name), CannotOpen(name, Missing));
  }
  EXPECT_FALSE(std::filesystem::exists(folder.Path("missing.db")));
}

const char* const FileNames[] = {":memory:", "file:x?mode=memory", "a b%20#?", "caf\xE9", "-x"};

TEST(TSqliteDatabase, OpensAnyFileName) {
  TTempFolder folder;
  const std::string previous = std::filesystem::current_path();
  std::filesystem::current_path(folder.Path());
  for (const char* name : FileNames) {
    SCOPED_TRACE(name);
    RunScript("./" + std::string(name), "CREATE TABLE t(x); INSERT INTO t VALUES(7)");
    EXPECT_EQ(TSqliteDataSet(name, TSqliteTable{"t"}).Fields(0).AsString(), "7");
  }
  std::filesystem::current_path(previous);
}

TEST(TSqliteDatabase, TakesAnEmptyFileForADatabaseWithoutTables) {
  TTempFolder folder;
  EXPECT_TRUE(TSqliteDatabase(folder.Write("empty.db", "")).TableNames().empty());
}

TEST(TSqliteDatabase, ReportsALockedFile) {
  TTempFolder folder;
  const std::string file = folder.Path("locked.db");
  TSqliteWriter writer(file, "CREATE TABLE t(x); BEGIN EXCLUSIVE");
  EXPECT_EQ(OpenError(file),
            CannotOpen(file,
                       "database is locked; end the program that writes to it, or export a "
                       "copy"));
}

// As root nothing is unreadable; the test then becomes somebody else for a while.
class TUnprivileged {
 public:
  TUnprivileged() { EXPECT_TRUE(::geteuid() != 0 || ::seteuid(65534) == 0); }
  ~TUnprivileged() { EXPECT_EQ(::seteuid(::getuid()), 0); }
};

TEST(TSqliteDatabase, ReportsMissingRights) {
  TTempFolder folder;
  std::filesystem::permissions(folder.Path(), std::filesystem::perms(0755));
  const std::string secret = folder.Path("secret.db");
  RunScript(secret, "CREATE TABLE t(x)");
  std::filesystem::permissions(secret, std::filesystem::perms::none);
  // A WAL database needs two files beside it, which are gone while nobody has it open.
  std::filesystem::create_directory(folder.Path("sub"));
  const std::string wal = folder.Path("sub/wal.db");
  RunScript(wal, "PRAGMA journal_mode = WAL; CREATE TABLE t(x)");
  std::filesystem::permissions(folder.Path("sub"), std::filesystem::perms(0555));
  {
    const TUnprivileged unprivileged;
    EXPECT_EQ(OpenError(secret),
              CannotOpen(secret, "Permission denied; check the path and the right to read it"));
    EXPECT_EQ(OpenError(wal),
              CannotOpen(wal,
                         "attempt to write a readonly database; a database in WAL mode, or one "
                         "whose writer died, needs a folder that can be written: export a copy"));
  }
  std::filesystem::permissions(folder.Path("sub"), std::filesystem::perms(0755));
}

TEST(TSqliteDatabase, KeepsItsSnapshotWhileAnotherConnectionWrites) {
  TTempFolder folder;
  const std::string file = folder.Path("wal.db");
  TSqliteWriter writer(file,
                       "PRAGMA journal_mode = WAL; CREATE TABLE t(x INT);"
                       "INSERT INTO t VALUES(1), (2)");
  TSqliteDatabase database(file);
  writer.Run("UPDATE t SET x = x + 10; INSERT INTO t VALUES(13); CREATE TABLE u(x)");
  TSqliteDataSet set(database, TSqliteTable{"t"});
  writer.Run("DELETE FROM t WHERE x = 12");
  EXPECT_EQ(set.RecordCount(), 2);
  for (int pass = 0; pass < 2; ++pass) {
    std::string values;
    for (set.First(); !set.Eof(); set.Next()) values += set.Fields(0).AsString() + ' ';
    EXPECT_EQ(values, "1 2 ");
  }
  EXPECT_EQ(database.TableNames().size(), 1u);

  TSqliteDataSet own(file, "SELECT group_concat(x) FROM t");
  EXPECT_EQ(own.Fields(0).AsString(), "11,13");
  writer.Run("INSERT INTO t VALUES(14)");
  own.Close();
  own.Open();  // by the state that the file then has
  EXPECT_EQ(own.Fields(0).AsString(), "11,13,14");
}

TEST(TSqliteDatabase, NeverEndsSilentlyAtADamagedPage) {
  TTempFolder folder;
  RunScript(folder.Path("good.db"), ManyRows());
  const std::string bytes = folder.Read("good.db");
  const std::size_t pages = bytes.size() / 4096;
  ASSERT_GT(pages, 10u);
  const std::string file = folder.Write("bad.db", Overwritten(bytes, pages / 2));
  TSqliteDataSet set(file, TSqliteTable{"t"});
  int rows = 0;
  const std::string error = ErrorText<EDatabaseError>([&] {
    for (; !set.Eof(); set.Next()) ++rows;
  });
  EXPECT_GT(rows, 100);
  EXPECT_LT(rows, 1900);
  const std::string expected = "Cannot read row " + std::to_string(rows + 1) +
                               " of table \"t\" in \"" + file + "\": " + Damaged;
  EXPECT_EQ(error, expected);
  // Asked again it fails again, and the readable rows stay readable.
  EXPECT_EQ(ErrorText<EDatabaseError>([&] { set.Next(); }), expected);
  set.First();
  EXPECT_EQ(set.Fields(0).AsString(), "1");
}

}  // namespace
}  // namespace norva
