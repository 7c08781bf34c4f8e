#include <norva/sources/sqlite/SqliteDataSet.h>

#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <tests/ErrorText.h>
#include <tests/TempFolder.h>
#include <tests/Vectors.h>

#include "SqliteScript.h"

namespace norva {
namespace {

using tests::ErrorText;
using tests::RunScript;
using tests::TLocaleScope;
using tests::TTempFolder;

// Each test has a database of its own, the invariant locale, and UTF-8 to begin with.
class TSqliteDataSetTest : public testing::Test {
 protected:
  TSqliteDataSetTest() : Locale_(TFormatSettings()) {
    SetActiveCodePage(CodePageUtf8);
    Script("PRAGMA user_version = 1");  // makes the file
  }
  ~TSqliteDataSetTest() override {
    SetActiveCodePage(CodePage_);
    SetUnmappablePolicy(Unmappable_);
  }

  std::unique_ptr<TSqliteDataSet> Query(const std::string& Text) const {
    return std::make_unique<TSqliteDataSet>(File(), Text);
  }
  std::unique_ptr<TSqliteDataSet> Table(const std::string& Name) const {
    return std::make_unique<TSqliteDataSet>(File(), TSqliteTable{Name});
  }
  // A new table of one column and one row.
  std::unique_ptr<TSqliteDataSet> Column(const std::string& Name, const std::string& Declared,
                                         const std::string& Stored) const {
    Script("CREATE TABLE " + Name + "(\"Ä col\" " + Declared + "); INSERT INTO " + Name +
           " VALUES(" + Stored + ")");
    return Table(Name);
  }
  std::string QueryError(const std::string& Text) const {
    return ErrorText<EDatabaseError>([&] { Query(Text); });
  }
  void Script(const std::string& Text) const { RunScript(File(), Text); }
  std::string File() const { return Folder_.Path("shop.db"); }

 private:
  const int CodePage_ = ActiveCodePage();
  const TUnmappable Unmappable_ = UnmappablePolicy();
  TLocaleScope Locale_;
  TTempFolder Folder_;
};

std::string TypeName(TFieldType Type) { return std::string(TFieldTypeNames[Type]); }

// The records' first fields, from where the set stands.
std::string Walk(TSqliteDataSet& Set) {
  std::string values;
  for (; !Set.Eof(); Set.Next()) values += Set.Fields(0).AsString() + ' ';
  return values;
}

struct TColumnCase {
  const char *Declared, *Stored;
  const char* Field;  // type, size and display width
  TValueKind Kind;
  const char* Text;
};
const TColumnCase ColumnCases[] = {
    {"BOOLEAN",         "1",                     "ftBoolean 0 5",   vkBoolean,  "True"                },
    {"bool",            "'f'",                   "ftBoolean 0 5",   vkBoolean,  "False"               },
    {"BOOL",            "NULL",                  "ftBoolean 0 5",   vkNull,     ""                    },
    {"DATETIME",        "'2024-01-31 13:45:07'", "ftDateTime 0 18", vkDateTime, "2024-01-31 13:45:07" },
    {"DATETIME",        "1706708700",            "ftDateTime 0 18", vkDateTime, "2024-01-31 13:45:00" },
    {"DATETIME",        "-2209183201",           "ftDateTime 0 18", vkDateTime, "1899-12-29 17:59:59" },
    {"DATETIME",        "-62135596800",          "ftDateTime 0 18", vkDateTime, "0001-01-01"          },
    {"DATETIME",        "253402300799",          "ftDateTime 0 18", vkDateTime, "9999-12-31 23:59:59" },
    {"DATETIME",        "2460341.0729976851",    "ftDateTime 0 18", vkDateTime, "2024-01-31 13:45:07" },
    {"Timestamp",       "2396820.7125810185",    "ftDateTime 0 18", vkDateTime, "1850-03-04 05:06:07" },
    {"DATE",            "'2024-02-29'",          "ftDate 0 10",     vkDateTime, "2024-02-29"          },
    {"TIME",            "'13:45:07'",            "ftTime 0 10",     vkDateTime, "13:45:07"            },
    {"MONEY",           "12.50",                 "ftCurrency 0 10", vkFloat,    "12.5"                },
    {"CURRENCY",        "9007199254740993",      "ftCurrency 0 10", vkInteger,  "9007199254740993"    },
    {"DECIMAL(10,2)",   "7",                     "ftBCD 0 10",      vkInteger,  "7"                   },
 // TEXT in the name keeps SQLite from converting; the number is one all the same.
    {"DECIMAL_TEXT",    "'0001234.5600'",        "ftBCD 0 10",      vkFloat,    "1234.56"             },
    {"INT2",            "99999",                 "ftSmallint 0 6",  vkInteger,  "99999"               },
    {"smallint(5)",     "-5",                    "ftSmallint 0 6",  vkInteger,  "-5"                  },
    {"BIGINT",          "-9223372036854775808",  "ftLargeint 0 15", vkInteger,  "-9223372036854775808"},
    {"integer",         "9",                     "ftLargeint 0 15", vkInteger,  "9"                   },
    {"INT",             "5000000000",            "ftInteger 0 10",  vkInteger,  "5000000000"          },
    {"CHAR INT",        "'12.0'",                "ftInteger 0 10",  vkInteger,  "12"                  },
    {"VARCHAR(30)",     "'abc'",                 "ftString 30 30",  vkText,     "abc"                 },
    {"INTEGER_OR_TEXT", "9001",                  "ftString 255 20", vkText,     "9001"                },
    {"NCHAR ( 7 )",     "''",                    "ftString 7 7",    vkText,     ""                    },
    {"VARCHAR(0)",      "5",                     "ftString 255 20", vkText,     "5"                   },
    {"FLOAT",           "3",                     "ftFloat 0 10",    vkFloat,    "3"                   },
    {"",                "5",                     "ftLargeint 0 15", vkInteger,  "5"                   },
    {"",                "2.5",                   "ftFloat 0 10",    vkFloat,    "2.5"                 },
    {"",                "x'41'",                 "ftBlob 0 10",     vkText,     "A"                   },
    {"",                "NULL",                  "ftString 255 20", vkNull,     ""                    },
    {"JSON",            "'[1]'",                 "ftString 255 20", vkText,     "[1]"                 },
};

TEST_F(TSqliteDataSetTest, MapsDeclaredTypesAndReadsStoredValues) {
  int number = 0;
  for (const TColumnCase& c : ColumnCases) {
    SCOPED_TRACE(testing::Message() << c.Declared << " " << c.Stored);
    const auto set = Column("t" + std::to_string(++number), c.Declared, c.Stored);
    const TField& field = set->Fields(0);
    EXPECT_EQ(field.FieldName + field.DisplayName, "Ä colÄ col");
    EXPECT_EQ(Format("%s %d %d", TypeName(field.DataType), field.Size, field.DisplayWidth),
              c.Field);
    EXPECT_EQ(field.Value().Kind, c.Kind);
    EXPECT_EQ(field.IsNull(), c.Kind == vkNull);
    EXPECT_EQ(field.AsString(), c.Text);
  }
}

TEST_F(TSqliteDataSetTest, GivesTextsAndBlobsWhole) {
  const auto set = Query("SELECT CAST(x'4100C3A942' AS TEXT), x'00FF00', 'kept'");
  EXPECT_EQ(set->Fields(0).Value().Text, std::string_view("A\0\xC3\xA9"
                                                          "B",
                                                          5));
  EXPECT_EQ(set->Fields(1).Value().Text, std::string_view("\0\xFF\0", 3));
  // Values of one record do not disturb each other.
  const std::string_view first = set->Fields(0).Value().Text;
  EXPECT_EQ(set->Fields(2).Value().Text, "kept");
  EXPECT_EQ(first, std::string_view("A\0\xC3\xA9"
                                    "B",
                                    5));
}

TEST_F(TSqliteDataSetTest, ReadsDatabasesInUtf16) {
  Script("PRAGMA encoding = 'UTF-16'; CREATE TABLE t(s TEXT); INSERT INTO t VALUES('Ωmega €')");
  EXPECT_EQ(Table("t")->Fields(0).AsString(), "Ωmega €");
}

TEST_F(TSqliteDataSetTest, ShowsNumbersInTextColumnsByTheLocale) {
  FormatSettings().DecimalSeparator = ',';
  // The first row is null, so the column is taken for text.
  const auto set = Query("VALUES(NULL), (0.1 + 0.2), (7), ('x')");
  EXPECT_EQ(Walk(*set), " 0,30000000000000004 7 x ");
}

TEST_F(TSqliteDataSetTest, GivesEveryFieldANameOfItsOwn) {
  const auto set = Query("SELECT 1 AS id, 2 AS ID, 3 AS id, 4 AS id_1");
  const char* const names[] = {"id", "ID_1", "id_2", "id_1_1"};
  for (int i = 0; i < 4; ++i) EXPECT_EQ(set->Fields(i).FieldName, names[i]);
  EXPECT_EQ(set->FieldByName("id_2").AsString(), "3");
}

TEST_F(TSqliteDataSetTest, StaysOnTheLastRecordAtTheEnd) {
  const auto set = Query("VALUES(1), (2), (3)");
  EXPECT_EQ(Walk(*set), "1 2 3 ");
  EXPECT_TRUE(set->Eof());
  EXPECT_FALSE(set->IsEmpty());
  EXPECT_EQ(set->GetBookmark(), 3);
  EXPECT_FALSE(set->Fields(0).IsNull());
  EXPECT_EQ(set->Fields(0).AsString(), "3");
  EXPECT_TRUE(set->Eof());
  set->Next();
  EXPECT_EQ(set->GetBookmark(), 3);
  EXPECT_EQ(set->Fields(0).AsString(), "3");
}

TEST_F(TSqliteDataSetTest, GoesBackByRunningAgain) {
  const auto set = Query("VALUES(1), (2), (3), (4)");
  set->Next();
  const TBookmark second = set->GetBookmark();
  EXPECT_EQ(Walk(*set), "2 3 4 ");
  set->GotoBookmark(second);
  EXPECT_FALSE(set->Eof());
  EXPECT_EQ(Walk(*set), "2 3 4 ");
  set->First();
  EXPECT_EQ(set->GetBookmark(), 1);
  EXPECT_EQ(Walk(*set), "1 2 3 4 ");
  set->First();
  set->Next();  // no value was read on the first record
  EXPECT_EQ(set->Fields(0).AsString(), "2");
  set->GotoBookmark(4);  // forward
  EXPECT_EQ(set->Fields(0).AsString(), "4");
  set->Next();
  EXPECT_TRUE(set->Eof());
  set->FreeBookmark(second);
}

TEST_F(TSqliteDataSetTest, RunsTheQueryOnlyWhenItMust) {
  Script("CREATE TABLE t(x)");
  TSqliteDatabase database(File());
  int calls = 0;
  const auto count = [](sqlite3_context* Context, int, sqlite3_value**) {
    sqlite3_result_int(Context, ++*static_cast<int*>(sqlite3_user_data(Context)));
  };
  ASSERT_EQ(sqlite3_create_function(database.Handle(), "calls", 0, SQLITE_UTF8, &calls, count,
                                    nullptr, nullptr),
            SQLITE_OK);
  TSqliteDataSet set(database, "SELECT calls() AS n, column1 FROM (VALUES(1), (2), (3))");
  set.First();
  EXPECT_EQ(set.Fields(0).AsString(), "1");  // still the first run
  while (!set.Eof()) set.Next();
  set.First();
  set.GotoBookmark(3);
  set.First();
  EXPECT_EQ(calls, 3);
  EXPECT_EQ(set.Fields(1).AsString(), "1");
  EXPECT_EQ(calls, 4);
}

TEST_F(TSqliteDataSetTest, IsEmptyWithoutRecords) {
  Script("CREATE TABLE t(a INT, b)");
  const auto set = Table("t");
  EXPECT_TRUE(set->IsEmpty());
  EXPECT_TRUE(set->Eof());
  EXPECT_EQ(set->RecordCount(), 0);
  set->First();
  set->Next();
  set->GotoBookmark(set->GetBookmark());
  EXPECT_TRUE(set->Eof());
  EXPECT_TRUE(set->Fields(0).IsNull());
  EXPECT_EQ(set->Fields(1).AsString(), "");
  EXPECT_EQ(TypeName(set->Fields(1).DataType), "ftString");
}

TEST_F(TSqliteDataSetTest, ClosesAndOpensAgain) {
  Script("CREATE TABLE t(a INT); INSERT INTO t VALUES(5)");
  const auto set = Table("T");  // names are found in any case
  set->Close();
  EXPECT_FALSE(set->Active());
  EXPECT_EQ(set->FieldCount(), 0);
  EXPECT_EQ(ErrorText<EDatabaseError>([&] { set->First(); }),
            "The data set over \"T\" is closed; open it first");
  Script("DROP TABLE t; CREATE TABLE t(a INT, b); INSERT INTO t VALUES(6, 7)");  // not locked
  set->Open();
  EXPECT_EQ(set->Fields(1).AsString(), "7");
}

TEST_F(TSqliteDataSetTest, CountsRecords) {
  Script("CREATE TABLE t(a); INSERT INTO t VALUES(1), (2), (3)");
  const std::pair<const char*, std::int64_t> cases[] = {
      {"SELECT * FROM t WHERE a > 1;",             2},
      {"SELECT a FROM t -- all; of them",          3},
      {"/* first */ SELECT a FROM t; -- last\n;",  3},
      {"WITH c(x) AS (VALUES(1)) SELECT * FROM c", 1},
      {"PRAGMA table_info(t)",                     1}, // cannot be counted in brackets
  };
  for (const auto& [query, count] : cases) {
    SCOPED_TRACE(query);
    const auto set = Query(query);
    EXPECT_EQ(set->RecordCount(), count);
    EXPECT_EQ(set->GetBookmark(), 1);
  }
  EXPECT_EQ(Table("t")->RecordCount(), 3);
}

TEST_F(TSqliteDataSetTest, TakesOneReadingStatement) {
  Script("CREATE TABLE t(a)");
  const std::pair<std::string, std::string> cases[] = {
      {"SELEC a FROM t",                      "near \"SELEC\": syntax error"                     },
      {"SELECT b FROM t",                     "no such column: b"                                },
      {"",                                    "it is empty; give one SELECT"                     },
      {" ; -- nothing",                       "it is empty; give one SELECT"                     },
      {"SELECT a FROM t;; nonsense",          "it holds more than one statement; give one SELECT"},
      {"DELETE FROM t",                       "it would change the database; give one SELECT"    },
      {"INSERT INTO t VALUES(1) RETURNING a", "it would change the database; give one SELECT"    },
      {"COMMIT",                              "it returns no columns; give one SELECT"           },
  };
  for (const auto& [query, reason] : cases) {
    SCOPED_TRACE(query);
    EXPECT_EQ(QueryError(query),
              "Cannot run the query on \"" + File() + "\": " + reason + "; the query is: " + query);
  }
  EXPECT_EQ(QueryError(std::string("SELECT 1\0, 2", 12)),
            "Cannot run the query on \"" + File() +
                "\": it holds a NUL character; the query is: SELECT 1");
  EXPECT_EQ(QueryError("SELECT abs(-9223372036854775808)"),
            "Cannot read row 1 of the query in \"" + File() + "\": integer overflow");
}

TEST_F(TSqliteDataSetTest, NamesTheTablesThatThereAre) {
  Script("CREATE TABLE \"order \"\"lines\"\"\"(a); CREATE VIEW v AS SELECT 1 AS x");
  EXPECT_EQ(Table("v")->Fields(0).AsString(), "1");
  EXPECT_TRUE(Table("order \"lines\"")->IsEmpty());
  EXPECT_EQ(ErrorText<EDatabaseError>([&] { Table("orders"); }),
            "Table \"orders\" is not in \"" + File() + "\"; it has order \"lines\", v");
  std::string many;
  for (int i = 10; i < 20; ++i) many += "CREATE TABLE a" + std::to_string(i) + "(x);";
  Script(many);
  EXPECT_EQ(ErrorText<EDatabaseError>([&] { Table("orders"); }),
            "Table \"orders\" is not in \"" + File() +
                "\"; it has a10, a11, a12, a13, a14, a15, a16, a17, a18, a19, ...");
}

struct TMisfitCase {
  const char *Declared, *Stored, *InWords, *Takes;
};
const char* const Booleans = "0 and 1, true and false, t and f, yes and no";
const char* const Dates =
    "ISO 8601 texts such as 2024-01-31 13:45:00, Unix seconds and Julian days";
const TMisfitCase MisfitCases[] = {
    {"INT",          "'abc'",                   "\"abc\"",                  "whole numbers"    },
    {"INTEGER",      "1.5",                     "1.5",                      "whole numbers"    },
    {"SMALLINT",     "x'0102'",                 "a blob of 2 bytes",        "whole numbers"    },
    {"INT",          "'two' || char(10, 0, 9)", "\"two   \"",               "whole numbers"    },
    {"REAL",         "'1,5'",                   "\"1,5\"",                  "numbers"          },
 // More digits than a double keeps: not cut silently.
    {"DECIMAL_TEXT", "'1234567890.123456789'",  "\"1234567890.123456789\"", "numbers"          },
    {"BOOLEAN",      "2",                       "2",                        Booleans           },
    {"BOOLEAN",      "'maybe'",                 "\"maybe\"",                Booleans           },
    {"DATE",         "'2023-02-29'",            "\"2023-02-29\"",           Dates              },
    {"DATETIME",     "'2024-01-31 24:00:00'",   "\"2024-01-31 24:00:00\"",  Dates              },
    {"DATETIME",     "-62135596801",            "-62135596801",             Dates              },
    {"DATETIME",     "5373484.5",               "5373484.5",                Dates              },
    {"TEXT",         "x'41'",                   "a blob of 1 bytes",        "texts and numbers"},
};

TEST_F(TSqliteDataSetTest, NamesAValueThatDoesNotFit) {
  int number = 0;
  for (const TMisfitCase& c : MisfitCases) {
    SCOPED_TRACE(testing::Message() << c.Declared << " " << c.Stored);
    const std::string table = "t" + std::to_string(++number);
    Script("CREATE TABLE " + table + "(id, \"Qty\" " + c.Declared + "); INSERT INTO " + table +
           " VALUES(1, NULL), (2, " + c.Stored + ")");
    const auto set = Table(table);
    set->Next();
    EXPECT_FALSE(set->Fields(1).IsNull());
    EXPECT_EQ(ErrorText<EDatabaseError>([&] { set->Fields(1).Value(); }),
              "Column \"Qty\" of table \"" + table + "\", row 2: " + c.InWords +
                  " does not fit the type " + c.Declared + ", which takes " + c.Takes +
                  "; correct it or query CAST(... AS TEXT)");
  }
}

TEST_F(TSqliteDataSetTest, HoldsColumnsWithoutATypeToTheirFirstRow) {
  const auto set = Query("SELECT column1 AS n FROM (VALUES(1), (2.0), ('3'), (4.5))");
  EXPECT_EQ(ErrorText<EDatabaseError>([&] { Walk(*set); }),
            "Column \"n\" of the query, row 4: 4.5 does not fit the type of the first row, which "
            "takes whole numbers; correct it or query CAST(... AS TEXT)");
  // A long text is cut between two characters.
  std::string text(59, 'x');
  const auto cut = Query("VALUES(1), ('" + text + "€ and more')");
  cut->Next();
  EXPECT_NE(ErrorText<EDatabaseError>([&] { cut->Fields(0).Value(); }).find('"' + text + "...\""),
            std::string::npos);
}

TEST_F(TSqliteDataSetTest, ConvertsToTheActiveCodePage) {
  Script("CREATE TABLE t(\"Größe\" TEXT); INSERT INTO t VALUES('Jürgen'), ('10 €'), ('☃ x')");
  SetActiveCodePage(1252);
  const auto set = Table("t");
  EXPECT_EQ(set->Fields(0).FieldName,
            "Gr\xF6\xDF"
            "e");
  EXPECT_EQ(set->Fields(0).AsString(), "J\xFCrgen");
  set->Next();
  EXPECT_EQ(set->Fields(0).AsString(), "10 \x80");
  set->Next();
  EXPECT_EQ(ErrorText<EDatabaseError>([&] { set->Fields(0).Value(); }),
            "Column \"Größe\" of table \"t\", row 3: Character U+2603 cannot be written in code "
            "page 1252; choose another code page or have such characters replaced");
  SetUnmappablePolicy(umReplace);
  EXPECT_EQ(set->Fields(0).AsString(), "? x");
  SetActiveCodePage(CodePageUtf8);
  set->First();  // takes the new page up
  EXPECT_EQ(set->Fields(0).AsString(), "Jürgen");
}

TEST_F(TSqliteDataSetTest, NamesAColumnWhoseNameTheCodePageLacks) {
  SetActiveCodePage(1252);
  EXPECT_EQ(ErrorText<EConvertError>([&] { Query("SELECT 1 AS \"☃\""); }),
            "Column \"☃\" of the query: Character U+2603 cannot be written in code page 1252; "
            "choose another code page or give it another name with AS");
}

TEST_F(TSqliteDataSetTest, RefusesBookmarksThatAreNotThere) {
  const auto set = Query("VALUES(1), (2)");
  EXPECT_EQ(ErrorText<EDatabaseError>([&] { set->GotoBookmark(0); }),
            "Row 0 of the query in \"" + File() + "\" is not there");
  set->GotoBookmark(3);
  EXPECT_EQ(ErrorText<EDatabaseError>([&] { set->Fields(0).Value(); }),
            "Row 3 of the query in \"" + File() + "\" is not there");
  set->First();
  EXPECT_EQ(Walk(*set), "1 2 ");
}

}  // namespace
}  // namespace norva
