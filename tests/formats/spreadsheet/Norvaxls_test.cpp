#include <norva/formats/spreadsheet/Norvaxls.h>

#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <norva/platform/Exceptions.h>
#include <tests/ErrorText.h>
#include <tests/Exports.h>
#include <tests/TempFolder.h>
#include <tests/Vectors.h>
#include <tests/formats/spreadsheet/Workbook.h>

namespace norva::tests {
namespace {

/// Exports two records of two columns.
class TXLS : public TNorvaXLS {
 public:
  const TLocaleScope Locale{TFormatSettings()};
  TMemoryDataSet Source{
      {{"Id", ftInteger}, {"Name", ftString, 20}}
  };

  explicit TXLS(const char* Settings = "") {
    Source.Append({1, "Ann"});
    Source.Append({2, "Bob"});
    DataSet = &Source;
    Set(*this, Settings);
  }
  TxlsFieldFormat& AddFormat(const char* FieldName, TxlsAggregate Aggregate = aggNone) {
    TxlsFieldFormat& format = FieldFormats.Add();
    format.FieldName = FieldName;
    format.Aggregate = Aggregate;
    return format;
  }
  TWorkbook Book() { return TWorkbook(Exported(*this)); }
};

TEST(NorvaXLS, ItemsStartAsTheDataAndKnowTheirNames) {
  TNorvaXLS exporter;
  exporter.Options.DataFormat.Wrap = true;
  EXPECT_TRUE(exporter.FieldFormats.Add().Wrap);
  exporter.Options.DataFormat.Wrap = false;
  EXPECT_TRUE(exporter.FieldFormats[0].Wrap);  // a copy
  EXPECT_EQ(exporter.ColStyles.Add().GetDisplayName(), "Col_0");
  EXPECT_EQ(exporter.RowStyles.Add().GetDisplayName(), "Row_0");
}

TEST(NorvaXLS, Sheet) {
  TXLS exporter;
  exporter.Header = {"head\t\tthird", "", "\tsecond"};
  exporter.Footer = {"foot"};
  exporter.Captions = {"Name="};  // an empty caption writes no cell
  exporter.ColumnsWidth = {"Id=7"};
  const TWorkbook book = exporter.Book();
  EXPECT_EQ(book.Cells(),
            "A1 x16 'head' | C1 x16 'third'\n"
            "B3 x16 'second'\n"
            "A4 x17 'Id'\n"
            "A5 x15 1 | B5 x15 'Ann'\n"
            "A6 x15 2 | B6 x15 'Bob'\n"
            "A7 x16 'foot'");
  EXPECT_EQ(Hex(book.Body(0x0200)), "00 00 00 00 07 00 00 00 00 00 03 00 00 00");
  EXPECT_EQ(Hex(book.Body(0x007D, 0)), "00 00 00 00 00 07 0F 00 00 00 00");
  EXPECT_EQ(Hex(book.Body(0x007D, 1)), "01 00 01 00 00 14 0F 00 00 00 00");
}

TEST(NorvaXLS, ExportsAgainFromAFreshState) {
  TXLS exporter("StripStyle=ssCol");
  exporter.ColStyles.Add().Font.Size = 8;
  const std::string first = Exported(exporter);
  EXPECT_EQ(Exported(exporter), first);
}

struct RowsCase {
  const char *Settings, *Header, *Cells;
};
const RowsCase RowsCases[] = {
    {"",                 "",      "A1 x15 1 | B1 x15 'Ann'"                         },
    {"HeaderRows=1",     "a/b",   "A1 x16 'a'\nA2 x15 1 | B2 x15 'Ann'"             },
    {"HeaderRows=3",     "a",     "A1 x16 'a'\nA4 x15 1 | B4 x15 'Ann'"             },
    {"",                 "a\tb/", "A1 x16 'a' | B1 x16 'b'\nA2 x15 1 | B2 x15 'Ann'"},
    {"StartDataCol=254", "a",     "A1 x16 'a'\nIU2 x15 1 | IV2 x15 'Ann'"           },
};
TEST(NorvaXLS, RowsAndColumns) {
  for (const RowsCase& c : RowsCases) {
    TXLS exporter(c.Settings);
    exporter.AllowCaptions = false;
    exporter.ExportRecCount = 1;
    exporter.Header.SetText(Replace(c.Header, "/", "\n"));
    EXPECT_EQ(exporter.Book().Cells(), c.Cells) << c.Settings << c.Header;
  }
}

TEST(NorvaXLS, FooterRows) {
  TXLS exporter("AllowCaptions=false FooterRows=3 ExportRecCount=1");
  exporter.Footer = {"a", "\tb", "c", "d"};
  EXPECT_EQ(exporter.Book().Cells(), "A1 x15 1 | B1 x15 'Ann'\nA2 x16 'a'\nB3 x16 'b'\nA4 x16 'c'");
}

TEST(NorvaXLS, NoRecords) {
  TXLS exporter("AllowCaptions=false SkipRecCount=9");
  exporter.Source.Next();
  exporter.AddFormat("Id", aggSum);
  const TWorkbook book = exporter.Book();
  EXPECT_EQ(book.Cells(), "");  // a sum would refer to itself
  EXPECT_EQ(Hex(book.Body(0x0200)), "00 00 00 00 01 00 00 00 00 00 02 00 00 00");
}

// Values.

constexpr double Infinity = std::numeric_limits<double>::infinity();

struct ValueCase {
  TFieldType Type;
  TMemoryValue Value;
  const char *NullString, *Cell;
};
const ValueCase ValueCases[] = {
    {ftInteger,  -5,                              "null", "-5"                  },
    {ftInteger,  nullptr,                         "",     "-"                   },
    {ftInteger,  5,                               "5",    "'5'"                 }, // as null
    {ftLargeint, 9007199254740993,                "null", "9.007199254740992E15"},
    {ftFloat,    Infinity,                        "INF",  "'INF'"               },
    {ftCurrency, 12.5,                            "null", "12.5"                },
    {ftDate,     TMemoryValue::DateTime(45322.5), "null", "45322"               },
    {ftTime,     TMemoryValue::DateTime(45322.5), "null", "0.5"                 },
    {ftDateTime, TMemoryValue::DateTime(-1.25),   "null", "-1.25"               },
    {ftBoolean,  true,                            "null", "TRUE"                },
    {ftString,   "12",                            "null", "'12'"                },
    {ftString,   "",                              "null", "-"                   },
};
TEST(NorvaXLS, Values) {
  for (const ValueCase& c : ValueCases) {
    TMemoryDataSet source({
        {"F", c.Type}
    });
    source.Append({c.Value});
    TXLS exporter("AllowCaptions=false");
    exporter.DataSet = &source;
    exporter.Formats.NullString = c.NullString;
    EXPECT_EQ(exporter.Book().Cells(), std::string("A1 x15 ") + c.Cell) << EnumToStr(c.Type);
  }
}

TEST(NorvaXLS, Booleans) {
  struct {
    const char *BooleanTrue, *Text, *Cell;
  } const cases[] = {
      {"ja",   "JA",   "TRUE" },
      {"ja",   "True", "TRUE" }, // what a field of this type says
      {"ja",   "true", "FALSE"},
      {"true", "TRUE", "TRUE" },
  };
  for (const auto& c : cases) {
    TMemoryDataSet source({
        {"F", ftBoolean}
    });
    source.Append({false});
    TXLS exporter("AllowCaptions=false");
    exporter.DataSet = &source;
    exporter.Formats.SetBooleanTrue(c.BooleanTrue);
    exporter.OnGetExportText = [&](TObject&, int, std::string& text) { text = c.Text; };
    EXPECT_EQ(exporter.Book().Cells(), std::string("A1 x15 ") + c.Cell) << c.Text;
  }
}

/// The cells of one column, or the error.
std::string ColumnCells(TFieldType Type, const std::vector<TMemoryValue>& Values, bool ByText) {
  TMemoryDataSet source({
      {"F", Type}
  });
  for (const TMemoryValue& value : Values) source.Append({value});
  TNorvaXLS exporter;
  exporter.DataSet = &source;
  if (ByText) exporter.OnGetExportText = [](TObject&, int, std::string&) {};
  TMemoryStream stream;
  const std::string error = ErrorText<Exception>([&] { exporter.ExportToStream(stream); });
  return error + "\n" + TWorkbook(stream.Bytes()).Cells();
}

TEST(NorvaXLS, TypedValuesGiveTheCellsOfTheirTexts) {
  const std::vector<TMemoryValue> integers = {0, -7, nullptr};
  const std::vector<TMemoryValue> large = {9007199254740993,
                                           std::numeric_limits<std::int64_t>::min(), nullptr};
  const std::vector<TMemoryValue> floats = {0.0,    -0.0,   0.1,      2.0 / 3,
                                            -1e300, 5e-324, Infinity, nullptr};
  std::vector<TMemoryValue> moments = {nullptr};
  for (const double day : {0.0, 0.999999999, -1.25, 45322.525706018, 2958465.5, -693593.0}) {
    moments.push_back(TMemoryValue::DateTime(day));
  }
  int errors = 0;
  std::vector<TFormatSettings> locales;
  for (const TVector& row : ReadVectors("locales")) locales.push_back(VectorLocale(row["name"]));
  locales.emplace_back().ShortDateFormat = "d mmm yy";  // dates that are not read back
  locales.emplace_back().DecimalSeparator = '5';
  for (const TFormatSettings& settings : locales) {
    const TLocaleScope scope(settings);
    for (const auto type : {ftSmallint, ftInteger, ftLargeint, ftFloat, ftCurrency, ftBCD, ftDate,
                            ftTime, ftDateTime}) {
      const bool isInteger = type == ftSmallint || type == ftInteger;
      const bool isMoment = type == ftDate || type == ftTime || type == ftDateTime;
      for (const TMemoryValue& value : type == ftLargeint ? large
                                       : isInteger        ? integers
                                       : isMoment         ? moments
                                                          : floats) {
        const std::string byText = ColumnCells(type, {value}, true);
        EXPECT_EQ(ColumnCells(type, {value}, false), byText)
            << EnumToStr(type) << " " << settings.ShortDateFormat;
        errors += byText.starts_with("Column");
      }
    }
  }
  EXPECT_GT(errors, 0);
}

TEST(NorvaXLS, TextThatIsNoNumberNamesItsPlace) {
  TXLS exporter("SkipRecCount=1");
  exporter.OnGetExportText = [](TObject&, int, std::string& text) { text += "x"; };
  TMemoryStream stream;
  EXPECT_EQ(ErrorText<EConvertError>([&] { exporter.ExportToStream(stream); }),
            "Column \"Id\", record 2: \"2x\" is not a valid number");
  // What came before it is there.
  EXPECT_EQ(TWorkbook(stream.Bytes()).Cells(), "A1 x16 'Id' | B1 x16 'Name'");
}

// Formats.

TEST(NorvaXLS, StageFormats) {
  TXLS exporter("ExportRecCount=1 HeaderRows=1");
  exporter.Header = {"head"};
  exporter.Footer = {"foot"};
  exporter.Options.HeaderFormat.Font.Size = 20;
  exporter.Options.FooterFormat.Font.Size = 8;
  exporter.Options.DataFormat.Font.Name = "Courier";
  const TWorkbook book = exporter.Book();
  EXPECT_EQ(book.Cells(),
            "A1 x16 'head'\nA2 x17 'Id' | B2 x17 'Name'\nA3 x15 1 | B3 x15 'Ann'\nA4 x18 'foot'");
  // 4 is no font's index; the bold one of the captions stands between the others.
  EXPECT_EQ(book.UserFonts(), "arial 20/arial 10/arial 8");
  EXPECT_EQ(book.UserXFs(), "16: f5 n0 p0/17: f6 n0 p0/18: f7 n0 p0");
}

TEST(NorvaXLS, CaptionsInTheDefaultFormat) {
  TXLS exporter("ExportRecCount=1");
  exporter.Options.CaptionsFormat.SetDefault();
  EXPECT_EQ(exporter.Book().Cells(),  // on purpose: a new format is not default
            "A1 x16 'Id' | B1 x16 'Name'\nA2 x15 1 | B2 x15 'Ann'");
  exporter.Options.CaptionsFormat.Fill.Foreground = clrWhite;
  EXPECT_EQ(exporter.Book().Cells(), "A1 x15 'Id' | B1 x15 'Name'\nA2 x15 1 | B2 x15 'Ann'");
}

TEST(NorvaXLS, FieldFormats) {
  TXLS exporter("AllowCaptions=false ExportRecCount=1");
  exporter.UserFormats = {"Id=0.000", "Name=@"};
  exporter.AddFormat("ID");  // letter case does not count
  TxlsFieldFormat& name = exporter.AddFormat("Name");
  name.Fill.Pattern = ptSolid;
  name.Font.Size = 12;
  const TWorkbook book = exporter.Book();
  EXPECT_EQ(book.Cells(), "A1 x16 1 | B1 x17 'Ann'");
  EXPECT_EQ(book.UserFonts(), "arial 12");
  EXPECT_EQ(book.UserFormats(), "50: 0.000/51: @");
  EXPECT_EQ(book.UserXFs(), "16: f1 n50 p0/17: f5 n51 p1");
}

TEST(NorvaXLS, EqualFormatsAreKeptOnce) {
  TXLS exporter("StripStyle=ssCol");
  for (int i = 0; i < 3; ++i) exporter.ColStyles.Add().Font.Name = i < 2 ? "Arial" : "ARIAL";
  exporter.UserFormats = {"Id=0", "Name=0"};
  exporter.Options.CaptionsFormat.Font.Name = "ARIAL";  // case makes another font
  const TWorkbook book = exporter.Book();
  EXPECT_EQ(book.Cells(),
            "A1 x17 'Id' | B1 x17 'Name'\nA2 x16 1 | B2 x16 'Ann'\nA3 x16 2 | B3 x16 'Bob'");
  EXPECT_EQ(book.UserFonts(), "Arial 10/ARIAL 10");
  EXPECT_EQ(book.UserFormats(), "50: 0");
}

struct StripCase {
  TxlsStripStyle Style;
  int Styles;
  const char* XFs;  // of the six cells of three records
};
const StripCase StripCases[] = {
    {ssNone, 2, "15 15 15 15 15 15"},
    {ssCol,  1, "16 17 16 17 16 17"}, // the pictures differ
    {ssCol,  2, "16 17 16 17 16 17"},
    {ssRow,  0, "15 15 15 15 15 15"},
    {ssRow,  1, "16 17 16 17 16 17"},
    {ssRow,  2, "16 17 18 19 16 17"},
};
TEST(NorvaXLS, StripStyles) {
  for (const StripCase& c : StripCases) {
    TXLS exporter("AllowCaptions=false SkipRecCount=1");
    exporter.Source.Append({3, "Cid"});
    exporter.Source.Append({4, "Dan"});
    exporter.StripStyle = c.Style;
    for (int i = 0; i < c.Styles; ++i) {
      exporter.ColStyles.Add().Fill.Pattern = static_cast<TxlsPattern>(i + 1);
      exporter.RowStyles.Add().Fill.Pattern = static_cast<TxlsPattern>(i + 1);
    }
    std::string xfs;
    for (const TRecord& record : exporter.Book().Records) {
      if (record.Number != 0x0203 && record.Number != 0x00FD) continue;
      xfs += (xfs.empty() ? "" : " ") + std::to_string(NumberAt(record.Body, 4));
    }
    EXPECT_EQ(xfs, c.XFs) << EnumToStr(c.Style) << " " << c.Styles;
  }
}

TEST(NorvaXLS, FieldFormatsGoBeforeStrips) {
  TXLS exporter("AllowCaptions=false StripStyle=ssRow");
  exporter.RowStyles.Add().Fill.Pattern = ptSolid;
  exporter.RowStyles.Add().Fill.Pattern = ptChess;
  TxlsFieldFormat& name = exporter.AddFormat("Name");
  name.Fill.Pattern = ptCells;
  const TWorkbook book = exporter.Book();
  EXPECT_EQ(book.Cells(), "A1 x16 1 | B1 x20 'Ann'\nA2 x18 2 | B2 x20 'Bob'");
  EXPECT_EQ(book.UserXFs(), "16: f1 n50 p1/17: f1 n0 p1/18: f1 n50 p2/19: f1 n0 p2/20: f1 n0 p15");
}

// Aggregates.

TEST(NorvaXLS, Aggregates) {
  TMemoryDataSet source;
  for (const char* name : {"A", "B", "C", "D", "E"}) source.AddField(name, ftInteger);
  source.Append({1, 2, 3, 4, 5});
  source.Append({6, 7, 8, 9, 10});
  TXLS exporter("StartDataCol=1");
  exporter.DataSet = &source;
  const TxlsAggregate aggregates[] = {aggSum, aggNone, aggAvg, aggMin, aggMax};
  const char* const names[] = {"a", "b", "c", "d", "e"};
  for (int i = 0; i < 5; ++i) exporter.AddFormat(names[i], aggregates[i]);
  exporter.Footer = {"below"};
  exporter.Options.AggregateFormat.Fill.Foreground = clrWhite;  // default, as IsDefault has it
  const std::string cells = exporter.Book().Cells();
  EXPECT_EQ(cells.substr(cells.find("\nB4") + 1),
            "B4 x15 SUM(2:3) | D4 x15 AVERAGE(2:3) | E4 x15 MIN(2:3) | F4 x15 MAX(2:3)\n"
            "A5 x18 'below'");
}

struct StartCase {
  const char *Settings, *Header, *Sum;
};
const StartCase StartCases[] = {
    {"",                                 "",        "SUM(2:3)"},
    {"HeaderRows=2",                     "a/b/c/d", "SUM(4:5)"},
    {"HeaderRows=3",                     "a",       "SUM(3:6)"}, // over an empty row, too
    {"HeaderRows=3 AllowCaptions=false", "",        "SUM(1:5)"},
};
TEST(NorvaXLS, RowsOfAggregates) {
  for (const StartCase& c : StartCases) {
    TXLS exporter(c.Settings);
    exporter.Header.SetText(Replace(c.Header, "/", "\n"));
    exporter.AddFormat("Id", aggSum);
    const std::string cells = exporter.Book().Cells();
    EXPECT_EQ(cells.substr(cells.rfind(' ') + 1), c.Sum) << c.Settings << c.Header;
  }
}

// Events.

TEST(NorvaXLS, HeaderAndFooterEvents) {
  TXLS exporter("AllowCaptions=false HeaderRows=2");
  exporter.Header = {"a\tb"};
  exporter.Footer = {"x"};
  std::string log;
  int calls = 0;
  exporter.OnGetHeaderParams = [&](TObject& sender, int col, int row, TxlsFormat& format,
                                   std::string& s) {
    EXPECT_EQ(&sender, &exporter);
    EXPECT_EQ(exporter.ExportStage(), esHeader);
    EXPECT_EQ(format.Wrap, true);
    ++calls;
    if (!s.empty()) log += s + std::to_string(row) + std::to_string(col) + " ";
    if (col == 1) s.clear();
    if (col == 255) s = "last", format.Wrap = false;
  };
  exporter.OnGetFooterParams = [&](TObject&, int col, int row, TxlsFormat&, std::string& s) {
    if (col == 2) s = "row " + std::to_string(row);
  };
  exporter.Options.HeaderFormat.Wrap = true;
  EXPECT_EQ(exporter.Book().Cells(),
            "A1 x16 'a' | IV1 x17 'last'\nIV2 x17 'last'\nA3 x15 1 | B3 x15 'Ann'\n"
            "A4 x15 2 | B4 x15 'Bob'\nA5 x17 'x' | C5 x17 'row 4'");
  EXPECT_EQ(log, "a00 b01 ");
  EXPECT_EQ(calls, 2 * 256);
}

TEST(NorvaXLS, CaptionEvent) {
  TXLS exporter("StartDataCol=2 ExportRecCount=1");
  exporter.OnGetCaptionParams = [](TObject&, int col, TxlsFormat& format, std::string& caption) {
    format.Font.Size = col;
    caption = col == 2 ? "" : caption + std::to_string(col);
  };
  const TWorkbook book = exporter.Book();
  EXPECT_EQ(book.Cells(), "D1 x16 'Name3'\nC2 x15 1 | D2 x15 'Ann'");
  EXPECT_EQ(book.UserFonts(), "arial 3");
}

TEST(NorvaXLS, EventLeftOfTheData) {
  TXLS exporter("StartDataCol=2 ExportRecCount=1");
  exporter.AddFormat("Id", aggMax);
  exporter.OnGetBeforeDataParams = [](TObject&, int col, int row, TxlsFormat& format,
                                      std::string& s) {
    format.Fill.Pattern = ptSolid;
    if (col == 1) s = "left of " + std::to_string(row);
  };
  EXPECT_EQ(exporter.Book().Cells(),
            "B1 x17 'left of 0' | C1 x18 'Id' | D1 x18 'Name'\n"
            "B2 x17 'left of 1' | C2 x16 1 | D2 x15 'Ann'\n"
            "B3 x17 'left of 2' | C3 x19 MAX(2:2)");
}

TEST(NorvaXLS, DataEvent) {
  TXLS exporter("StartDataCol=1 AllowCaptions=false");
  exporter.UserFormats = {"Id=0.0"};
  TxlsFieldFormat& name = exporter.AddFormat("Name");
  name.Fill.Pattern = ptSolid;
  name.Alignment.Horizontal = halRight;
  exporter.Options.DataFormat.Font.Size = 9;
  exporter.Options.DataFormat.Alignment.Horizontal = halCenter;
  name.Font.Size = 9;
  std::string log;
  exporter.OnGetDataParams = [&](TObject&, int col, int row, TxlsFormat& format,
                                 std::string& text) {
    EXPECT_EQ(exporter.ExportStage(), esData);
    log += Format("%d,%d %s p%d a%d s%d/", col, row, text, int{format.Fill.Pattern},
                  int{format.Alignment.Horizontal}, format.Font.Size);
    if (row == 1) text.clear();  // the column's own picture
    if (row == 0) text = "0;-0";
  };
  const TWorkbook book = exporter.Book();
  // On purpose: the alignment of a registered format does not reach the event.
  EXPECT_EQ(log,
            "1,0 General p0 a2 s9/2,0 General p1 a0 s9/1,1 General p0 a2 s9/2,1 General p1 a0 s9/");
  EXPECT_EQ(book.Cells(), "B1 x17 1 | C1 x18 'Ann'\nB2 x19 2 | C2 x20 'Bob'");
  EXPECT_EQ(book.UserFormats(), "50: 0;-0/51: 0.0");
  EXPECT_EQ(book.UserFonts(), "");
}

TEST(NorvaXLS, AggregateEvent) {
  TXLS exporter("AllowCaptions=false StartDataCol=1");
  exporter.AddFormat("Id", aggSum);
  exporter.OnGetAggregateParams = [&](TObject&, int col, TxlsFormat& format, std::string& text,
                                      std::string& value) {
    EXPECT_EQ(exporter.ExportStage(), esAggregate);
    EXPECT_EQ(text + "|" + value, "General|");
    format.Wrap = true;
    text = "0.0";
    value = "value " + std::to_string(col);
  };
  const TWorkbook book = exporter.Book();
  const std::string cells = book.Cells();
  EXPECT_EQ(cells.substr(cells.rfind('\n') + 1), "B3 x17 SUM(1:2) | C3 x17 'value 2'");
  EXPECT_EQ(book.UserFormats(), "50: #,###,##0/51: 0.0");
}

// Limits and failures.

TEST(NorvaXLS, Rows) {
  TXLS exporter("AllowCaptions=false");
  for (int i = 3; i <= 65536; ++i) exporter.Source.Append({i, nullptr});
  EXPECT_EQ(Hex(exporter.Book().Body(0x0200)), "00 00 00 00 00 00 01 00 00 00 02 00 00 00");
  exporter.AllowCaptions = true;
  TMemoryStream stream;
  EXPECT_EQ(ErrorText<Exception>([&] { exporter.ExportToStream(stream); }),
            "Record 65536 does not fit: a sheet has 65536 rows; write fewer with ExportRecCount "
            "and SkipRecCount");
  // What fits is there.
  EXPECT_EQ(TWorkbook(stream.Bytes()).Bodies(0x0203).size(), 65535U);
  exporter.AllowCaptions = false;
  exporter.Footer = {"too many"};
  EXPECT_EQ(ExportedOrError(exporter),
            "!The footer does not fit: a sheet has 65536 rows; write fewer records with "
            "ExportRecCount");
  exporter.FieldFormats.Add().Aggregate = aggSum;
  EXPECT_EQ(ExportedOrError(exporter),
            "!The aggregate row does not fit: a sheet has 65536 rows; write fewer records with "
            "ExportRecCount");
}

TEST(NorvaXLS, Columns) {
  TXLS exporter("StartDataCol=255 AllowCaptions=false ExportRecCount=1");
  EXPECT_EQ(ExportedOrError(exporter),
            "!Column \"Name\" does not fit: a sheet has 256 columns; choose them with "
            "ExportedFields");
  exporter.ExportedFields = {"Id"};
  EXPECT_EQ(exporter.Book().Cells(), "IV1 x15 1");
}

TEST(NorvaXLS, FileThatCannotBeCreated) {
  const TTempFolder folder;
  TXLS exporter;
  exporter.FileName = folder.Path("missing/a.xls");
  exporter.OnBeginExport = [](TObject&) { ADD_FAILURE() << "an event before the error"; };
  EXPECT_EQ(ErrorText<EFCreateError>([&] { exporter.Execute(); }),
            "Cannot create \"" + exporter.FileName + "\": No such file or directory");
}

TEST(NorvaXLS, FullDisk) {
  TXLS exporter;
  exporter.FileName = "/dev/full";
  EXPECT_EQ(ErrorText<EWriteError>([&] { exporter.Execute(); }),
            "Cannot write \"/dev/full\": No space left on device");
}

struct AbortCase {
  const char *At, *Cells;
};
const AbortCase AbortCases[] = {
    {"begin",   "(none)"                                                                      },
    {"caption", "A1 x16 'h'\nA2 x17 'Id' | B2 x17 'Name'\nA3 x16 'f'"                         },
    {"data",    "A1 x16 'h'\nA2 x17 'Id' | B2 x17 'Name'\nA3 x16 1 | B3 x16 'Ann'\nA4 x16 'f'"},
    {"footer",
     "A1 x16 'h'\nA2 x17 'Id' | B2 x17 'Name'\nA3 x16 1 | B3 x16 'Ann'\nA4 x16 2 | B4 x16 "
     "'Bob'\nA5 x16 'f'"                                                                      },
};
TEST(NorvaXLS, Aborts) {
  for (const AbortCase& c : AbortCases) {
    TXLS exporter;
    exporter.Header = {"h"};
    exporter.Footer = {"f"};
    const auto at = [&](std::string_view stage) {
      if (stage == c.At) exporter.Abort();
    };
    exporter.OnBeginExport = [&](TObject&) { at("begin"); };
    exporter.OnGetHeaderParams = [&](TObject&, int, int, TxlsFormat&, std::string&) {
      at("header");
    };
    exporter.OnGetCaptionParams = [&](TObject&, int, TxlsFormat&, std::string&) { at("caption"); };
    exporter.OnGetDataParams = [&](TObject&, int, int, TxlsFormat&, std::string&) { at("data"); };
    exporter.OnGetFooterParams = [&](TObject&, int, int, TxlsFormat&, std::string&) {
      at("footer");
    };
    const std::string bytes = Exported(exporter);
    EXPECT_EQ(bytes.empty() ? "(none)" : TWorkbook(bytes).Cells(), c.Cells) << c.At;
    EXPECT_TRUE(exporter.Aborted) << c.At;
  }
}

}  // namespace
}  // namespace norva::tests
