#include <norva/core/NorvaColumns.h>

#include <gtest/gtest.h>

#include <norva/platform/Exceptions.h>
#include <tests/ErrorText.h>
#include <tests/Exports.h>
#include <tests/Vectors.h>

namespace norva::tests {
namespace {

/// Every column by `Show`, with blanks between.
template <class TShow>
std::string Columns(const TNorva& Export, TShow Show) {
  std::string text;
  for (int i = 0; i < Export.Columns.Count(); ++i) {
    text += (i > 0 ? " " : "") + Show(Export.Columns[i]);
  }
  return text;
}

// Which columns are exported. The sources have the columns Id, Photo (a blob), Name, Secret
// (invisible), Town; the data-aware grid has Town, a column without field, Id, Secret, Name, town.
struct FillCase {
  TNorvaSource Kind;
  bool OnlyVisible;
  TStringList Fields;
  const char* Expected;  // numbers in the source
};
const FillCase FillCases[] = {
    {esDataSet,    false, {},                         "0"                            }, // the blob ends the list
    {esDataSet,    false, {"name", "ID", "Photo"},    "2 0 1"                        }, // unless it is asked for
    {esDataSet,    true,  {"Town", "Secret", "Id"},   "4"                            },
    {esDataSet,    false, {"Id", "No"},               "!Field \"No\" not found"      },
    {esDBGrid,     false, {},                         "0"                            }, // the unbound column ends it
    {esDBGrid,     false, {"Name", "Town", "Secret"}, "4 5 3"                        }, // the last column of a field
    {esDBGrid,     false, {"Id", "No", "Name"},       "2"                            },
    {esListView,   false, {"TOWN", "id"},             "4 0"                          },
    {esStringGrid, true,  {},                         "0 1 2 3 4"                    },
    {esStringGrid, false, {"4", "$2"},                "4 2"                          },
    {esStringGrid, false, {"0", "Bogus", "2"},        "0"                            },
    {esStringGrid, false, {"0", "5"},                 "!List index 5 is out of range"},
};

/// The numbers of the columns, or `!` and the error.
std::string Filled(TNorva& Export) {
  return TextOrError<Exception>([&] {
    Export.Columns.Fill();
    return Columns(Export, [](auto& Column) { return std::to_string(Column.Number); });
  });
}

TEST(NorvaColumns, FillsUpToTheFirstThatIsNotExported) {
  TMemoryDataSet set;
  set.AddField("Id", ftInteger);
  set.AddField("Photo", ftGraphic);
  set.AddField("Name", ftString);
  set.AddField("Secret", ftString).Visible = false;
  set.AddField("Town", ftString);
  TDataSource source;
  source.DataSet = &set;
  TMemoryDBGrid grid;
  grid.DataSource = &source;
  for (const char* name : {"Town", "", "Id", "Secret", "Name", "town"}) grid.AddColumn(name);
  TMemoryListView list;
  for (const char* name : {"Id", "Photo", "Name", "Secret", "Town"}) list.AddColumn(name);
  TMemoryStringGrid strings(5, 2);
  TLog log;
  TLogExport exporter(log);
  exporter.DataSet = &set;
  exporter.DBGrid = &grid;
  exporter.ListView = &list;
  exporter.StringGrid = &strings;
  for (const FillCase& c : FillCases) {
    SCOPED_TRACE(NorvaSourceAsString(c.Kind) + " " + c.Fields.Text());
    exporter.ExportSource = c.Kind;
    exporter.OnlyVisibleFields = c.OnlyVisible;
    exporter.ExportedFields = c.Fields;
    exporter.Columns.Clear();
    EXPECT_EQ(Filled(exporter), c.Expected);
  }
}

// Every attribute, by kind of source: Number Name Type "Caption" Width Align "Format" "SQLType"
// Length. An X of the grids' font is 7 pixels wide, of the list view 8.
std::string Attributes(const TNorvaColumn& Column) {
  return Format("%d %s %s \"%s\" %d %s \"%s\" \"%s\" %d/", Column.Number, Column.Name,
                NorvaColTypeAsString(Column.ColType), Column.Caption, Column.Width,
                EnumToStr(Column.Align).substr(3), Column.Format(), Column.SQLType, Column.Length);
}

struct AttributeCase {
  TNorvaSource Kind;
  bool UserLists;
  const char* Expected;
};
// clang-format off
const AttributeCase AttributeCases[] = {
    {esDataSet, false,
     "0 Id Integer \"Id\" 10 Right \"#,###,##0\" \"INTEGER\" 0/ "
     "1 Name String \"Full name\" 20 Left \"\" \"CHAR(20)\" 20/ "
     "2 Town String \"Town\" 300 Left \"\" \"CHAR(300)\" 254/"},
    {esDBGrid, false,
     "0 Id Integer \"No\" 10 Right \"#,###,##0\" \"INTEGER\" 0/ "
     "1 Town String \"Town\" 12 Left \"\" \"CHAR(300)\" 254/ "
     "2 Name String \"Full name\" 20 Left \"\" \"CHAR(20)\" 20/"},
    {esListView, false,
     "0 Id Integer \"Id\" 10 Right \"#,###,##0\" \"\" 0/ "
     "1 Name String \"Name\" 20 Left \"\" \"\" 254/ "
     "2 Town String \"Town\" 6 Left \"\" \"\" 254/"},
    {esStringGrid, false,
     "0 0 Integer \"ColNo_0\" 9 Right \"#,###,##0\" \"\" 0/ "
     "1 1 String \"ColNo_1\" 14 Left \"\" \"\" 254/ "
     "2 2 String \"ColNo_2\" 9 Left \"\" \"\" 254/"},
    {esDataSet, true,  // ColumnsLength is for texts of the other two
     "0 Id Integer \"\" 0 Center \"0\" \"INTEGER\" 0/ "
     "1 Name String \"a=b\" -3 Right \"000\" \"CHAR(20)\" 20/ "
     "2 Town String \"Town\" 300 Left \"\" \"CHAR(300)\" 254/"},
    {esListView, true,
     "0 Id Integer \"\" 0 Center \"0\" \"\" 0/ "
     "1 Name String \"a=b\" -3 Right \"000\" \"\" 300/ "
     "2 Town String \"Town\" 6 Left \"\" \"\" 254/"},
};
// clang-format on

TEST(NorvaColumns, TakesAttributesFromSourceAndUser) {
  const TLocaleScope locale{TFormatSettings()};
  for (const AttributeCase& c : AttributeCases) {
    SCOPED_TRACE(NorvaSourceAsString(c.Kind));
    TSources sources(c.Kind);
    TLogExport& exporter = sources.Export;
    exporter.AutoCalcStrType = true;
    if (c.UserLists) {
      exporter.Captions = {"ID=", "Name=a=b", "name=second"};
      exporter.ColumnsWidth = {"Id=wide", "NAME=-3"};
      exporter.ColumnsAlign = {"Id=center", "Name=r", "Town=x"};
      exporter.UserFormats = {"Id=0", "Name=000", "Town"};  // the last is no entry
      exporter.ColumnsLength = {"Id=7", "Name=300", "Town=long"};
    }
    exporter.Columns.Fill();
    EXPECT_EQ(Columns(exporter, Attributes), c.Expected);
  }
}

TEST(NorvaColumns, AlignsAndFormatsByType) {
  struct Case {
    const char *Text, *Align, *Expected;
  };
  const Case cases[] = {
      {"1.5",              nullptr, "Float Right #,###,##0.00"      },
      {"2024-01-31",       nullptr, "Date Left yyyy-mm-dd"          },
      {"2024-01-31 10:30", nullptr, "DateTime Left yyyy-mm-dd hh:mm"},
      {"ja",               nullptr, "Boolean Center "               },
      {"1.5",              "",      "Float Left #,###,##0.00"       },
      {"text",             " r",    "String Left "                  }, // the first letter is a blank
      {"text",             "C",     "String Center "                },
  };
  const TLocaleScope locale{TFormatSettings()};
  for (const Case& c : cases) {
    TMemoryStringGrid grid(1, 2);
    grid.SetCells(0, 1, c.Text);
    TLog log;
    TLogExport exporter(log);
    exporter.ExportSource = esStringGrid;
    exporter.StringGrid = &grid;
    exporter.AutoCalcStrType = true;
    exporter.Formats.SetBooleanTrue("JA");
    if (c.Align) exporter.ColumnsAlign.Add(std::string("0=") + c.Align);
    exporter.Columns.Fill();
    const TNorvaColumn& column = exporter.Columns[0];
    EXPECT_EQ(Format("%s %s %s", NorvaColTypeAsString(column.ColType),
                     EnumToStr(column.Align).substr(3), column.Format()),
              c.Expected);
  }
}

// The width pass.

TEST(NorvaColumns, WidenToCaptionsAndTexts) {
  TMemoryDataSet set({
      {"Number", ftInteger},
      {"N",      ftString },
      {"X",      ftString }
  });
  set.Fields(2).DisplayWidth = 3;
  set.Append({1234567, "skipped, long enough to be seen", "abcd"});
  set.Append({1234567, "éé", nullptr});
  set.Append({-1234567, "é", "ab"});
  set.Append({1, "behind the limit", "ab"});
  TLog log;
  TLogExport exporter(log);
  exporter.DataSet = &set;
  exporter.AutoCalcColWidth = true;
  exporter.ColumnsWidth = {"Number=2", "N=0"};
  exporter.SkipRecCount = 1;
  exporter.ExportRecCount = 2;
  exporter.OnGetExportText = [](TObject&, std::int32_t ColNo, std::string& Text) {
    if (ColNo == 0) Text += "!";
  };
  exporter.OnFetchedRecord = [&](TObject& Sender, std::int32_t) {
    EXPECT_EQ(&Sender, &exporter.Columns);
  };
  const auto widths = [](auto& Column) { return std::to_string(Column.Width); };
  Exported(exporter);
  EXPECT_EQ(Columns(exporter, widths), "11 2 4");  // -1,234,567!  éé  null
  exporter.Formats.NullString = "";
  exporter.Captions = {"X=caption"};
  Exported(exporter);
  EXPECT_EQ(Columns(exporter, widths), "11 2 7");
}

// The list itself.

TEST(NorvaColumns, FindsDeletesAndChecksIndexes) {
  TSources sources(esListView);
  TNorvaColumns& columns = sources.Export.Columns;
  columns.Fill();
  EXPECT_EQ(columns.IndexOfName("TOWN"), 2);
  EXPECT_EQ(columns.IndexOfName("Tow"), -1);
  columns[2].Tag = 5;
  columns.Delete(0);
  EXPECT_EQ(columns.IndexOfName("town"), 1);
  columns.EmptyTags();
  EXPECT_EQ(columns[1].Tag, 0);
  for (const int index : {-1, 2}) {
    const std::string expected = Format("List index %d is out of range", index);
    EXPECT_EQ(ErrorText<EListError>([&] { columns[index].Tag = 1; }), expected);
    EXPECT_EQ(ErrorText<EListError>([&] { columns.Delete(index); }), expected);
    EXPECT_EQ(ErrorText<EListError>([&] { columns.SetColumnName(index); }), expected);
  }
}

// The mapping tables.

TEST(NorvaColumns, MapsFieldTypes) {
  std::string types;
  for (std::size_t i = 0; i < std::size(TFieldTypeNames); ++i) {
    TMemoryDataSet set;
    const TField& field = set.AddField("A", static_cast<TFieldType>(i), 7);
    types += Format("%s %s %s/", TFieldTypeNames[i].substr(2),
                    NorvaColTypeAsString(DataType2NorvaColType(&field)), DataType2SQLType(&field));
  }
  EXPECT_EQ(types,
            "Unknown Unknown UNKNOWN/String String CHAR(7)/Smallint Integer INTEGER/"
            "Integer Integer INTEGER/Word Integer INTEGER/Boolean Boolean INTEGER/"
            "Float Float DOUBLE PRECISION/Currency Currency DOUBLE PRECISION/"
            "BCD Float DOUBLE PRECISION/Date Date DATE/Time Time DATE/DateTime DateTime DATE/"
            "Bytes Unknown UNKNOWN/AutoInc Integer UNKNOWN/Blob String BLOB/Memo String BLOB/"
            "Graphic Unknown BLOB/FmtMemo Unknown BLOB/FixedChar Unknown UNKNOWN/"
            "WideString String CHAR(7)/Largeint Integer INTEGER/");
  EXPECT_EQ(DataType2NorvaColType(nullptr), ectUnknown);
}

TEST(NorvaColumns, MapsColumnTypes) {
  std::string types;
  for (int i = ectInteger; i <= ectUnknown; ++i) {
    TNorvaColumn column;
    column.ColType = static_cast<TNorvaColType>(i);
    column.Width = 12;
    column.Length = 34;
    types += std::string(NorvaColTypeAsString(column.ColType)) + " " + NorvaType2SQLType(column);
    types += std::string(column.IsNumeric() ? " numeric" : "") +
             (column.IsString() ? " string" : "") + "/";
  }
  EXPECT_EQ(types,
            "Integer INTEGER numeric/Float DOUBLE PRECISSION numeric/"
            "Currency DOUBLE PRECISSION numeric/Date DATE/Time DATE/DateTime DATE/"
            "String CHAR{12) string/Boolean INTEGER/Unknown /");  // spelt so
  EXPECT_EQ(NorvaColTypeAsString(static_cast<TNorvaColType>(9)), "Unknown");
}

}  // namespace
}  // namespace norva::tests
