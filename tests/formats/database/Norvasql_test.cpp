#include <norva/formats/database/Norvasql.h>

#include <limits>

#include <gtest/gtest.h>

#include <tests/Exports.h>
#include <tests/Vectors.h>

namespace norva::tests {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr std::int64_t Least = std::numeric_limits<std::int64_t>::min();
const TMemoryValue Day = TMemoryValue::DateTime(45322.0);  // 31 January 2024
const TMemoryValue Noon = TMemoryValue::DateTime(45322.5);
const TMemoryValue Six = TMemoryValue::DateTime(0.25);
const TMemoryValue WithNul = std::string{'a', '\0', 'b'};

/// `Count` records 1, O'Brien; 2, O'Brien ... in a locale with a decimal comma.
struct TScript {
  TLocaleScope Scope{TFormatSettings()};
  TMemoryDataSet Set{
      {{"ID", ftInteger}, {"NAME", ftString, 20}}
  };
  TNorvaSQL Export;

  explicit TScript(const char* Settings = "", int Count = 1) {
    FormatSettings().DecimalSeparator = ',';
    Export.DataSet = &Set;
    tests::Set(Export, Settings);
    for (int i = 1; i <= Count; ++i) Set.Append({i, "O'Brien"});
  }
};

TEST(NorvaSQL, WritesAScript) {
  TScript script("CreateTable=true TableName=T CommitAfterScript=true StatementTerm=/");
  script.Export.Header = {"BEGIN;", "-- go"};
  script.Export.Footer = {"-- end"};
  EXPECT_EQ(Exported(script.Export),
            Lines({"BEGIN;", "-- go", "CREATE TABLE T(", "  ID  INTEGER,", "  NAME  CHAR(20));", "",
                   "INSERT INTO T", "  (ID,NAME)", "VALUES(1,'O''Brien')/", "", "COMMIT WORK;",
                   "-- end"}));
  script.Export.CommitStatement.clear();
  script.Export.TableName.clear();  // no table to create; the statements name none
  EXPECT_EQ(Exported(script.Export), Lines({"BEGIN;", "-- go", "INSERT INTO ", "  (ID,NAME)",
                                            "VALUES(1,'O''Brien')/", "", "-- end"}));
}

TEST(NorvaSQL, CommitsAfterTheFirstRecordOfEachBatch) {
  struct Case {
    const char *Settings, *Statements;  // I: an INSERT, C: a commit
  };
  const Case cases[] = {
      {"CommitRecCount=3",                        "ICIIICIIIC"},
      {"CommitRecCount=-1",                       "IIIIIII"   },
      {"CommitAfterScript=true",                  "IIIIIII|"  },
      {"CommitRecCount=4 CommitAfterScript=true", "ICIIIICII|"},
      {"CommitRecCount=3 SkipRecCount=2",         "ICIIICI"   },
  };
  for (const Case& c : cases) {
    TScript script(c.Settings, 7);
    script.Export.ExportedFields = {"NAME"};
    std::string text = Exported(script.Export);
    text = Replace(text, Lines("INSERT INTO /  (NAME)/VALUES('O''Brien');//"), "I");
    text = Replace(text, Lines("COMMIT WORK;//"), "C");
    EXPECT_EQ(Replace(text, Lines("COMMIT WORK;/"), "|"), c.Statements) << c.Settings;
  }
}

TEST(NorvaSQL, WritesLiterals) {
  struct Case {
    TFieldType Type;
    TMemoryValue Value;
    const char* Literal;
  };
  const Case cases[] = {
      {ftString,   "it's",       "'it''s'"              },
      {ftString,   "''a'b\r\n'", "'''''a''b\r\n'''"     },
      {ftString,   "",           "''"                   },
      {ftString,   nullptr,      "<n>"                  },
      {ftLargeint, Least,        "-9223372036854775808" },
      {ftFloat,    0.1 + 0.2,    "0.30000000000000004"  },
      {ftFloat,    1e-7,         "1E-7"                 },
      {ftBoolean,  true,         "yes"                  },
      {ftDate,     Day,          "'2024-01-31'"         },
      {ftTime,     Six,          "'06:00:00'"           },
      {ftDateTime, Noon,         "'2024-01-31 12:00:00'"},
      {ftUnknown,  "x'00'",      "x'00'"                },
  };
  for (const Case& c : cases) {
    TScript script("TableName=T");
    TMemoryDataSet set;
    set.AddField("F", c.Type);
    set.Append({c.Value});
    script.Export.DataSet = &set;
    script.Export.Formats.NullString = "<n>";
    script.Export.Formats.SetBooleanTrue("yes");
    script.Export.Formats.SetBooleanFalse("no");
    script.Export.UserFormats = {"F=0.0"};  // values are not put through pictures
    EXPECT_EQ(Exported(script.Export),
              Lines({"INSERT INTO T", "  (F)", std::string("VALUES(") + c.Literal + ");", ""}));
  }
}

TEST(NorvaSQL, HandlersSeeADecimalPointAndMayAnswerWithATruth) {
  TMemoryDataSet set{
      {{"B", ftBoolean}, {"F", ftFloat}, {"S", ftString, 9}}
  };
  set.Append({false, 1.5, nullptr});
  TScript script;
  script.Export.DataSet = &set;
  std::string seen;
  script.Export.OnGetExportText = [&](TObject&, std::int32_t, std::string& text) {
    seen += text + FormatSettings().DecimalSeparator + " ";
    if (text == "False") text = " tRUE\t";
    if (text == "1.5") text = FloatToStr(2.5);
  };
  script.Export.OnExportedRecord = [&](TObject&, std::int32_t) {
    seen += FormatSettings().DecimalSeparator;
  };
  EXPECT_EQ(Exported(script.Export), Lines("INSERT INTO /  (B,F,S)/VALUES(true,2.5,null);//"));
  EXPECT_EQ(seen, "False. False. 1.5. ,");  // the boolean is fetched twice, null not at all

  script.Export.OnGetExportText = [](TObject&, std::int32_t, std::string&) {
    throw Exception("%s", "stop");
  };
  EXPECT_EQ(ExportedOrError(script.Export), "!stop");
  EXPECT_EQ(FormatSettings().DecimalSeparator, ',');
}

TEST(NorvaSQL, ReportsWhatBreaksAScript) {
  struct Case {
    const char *Table, *Column;
    TFieldType Type;
    TMemoryValue Value;
    const char* Report;  // of names -1, of values the column
  };
  const Case cases[] = {
      {"T",            "größe_1", ftFloat,  1.5,       ""           },
      {"main.\"a.b\"", "\"a b\"",   ftString, "a\"b",    ""           },
      {"T",            "F",         ftFloat,  nullptr,   ""           },
      {"",             "F",         ftFloat,  1.5,       "-1 "        },
      {"my table",     "F",         ftFloat,  1.5,       "-1 my table"},
      {"a..b",         "F",         ftFloat,  1.5,       "-1 a..b"    },
      {"\"a\"b\"",     "F",         ftFloat,  1.5,       "-1 \"a\"b\""},
      {"T",            "a.b",       ftFloat,  1.5,       "-1 a.b"     },
      {"T",            "F",         ftFloat,  -Infinity, "0 -INF"     },
      {"T",            "F",         ftString, WithNul,   "0 a\\0b"    },
  };
  for (const Case& c : cases) {
    TMemoryDataSet set;
    set.AddField(c.Column, c.Type);
    set.Append({c.Value});
    TNorvaSQL exporter;
    exporter.DataSet = &set;
    exporter.TableName = c.Table;
    std::string report;
    exporter.OnUnsafeText = [&](TObject&, std::int32_t column, std::string_view text) {
      report += std::to_string(column) + " " + Replace(text, std::string(1, '\0'), "\\0");
    };
    Exported(exporter);
    EXPECT_EQ(report, c.Report) << c.Table << " " << c.Column;
  }
}

}  // namespace
}  // namespace norva::tests
