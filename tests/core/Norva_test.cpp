#include <norva/core/Norva.h>

#include <gtest/gtest.h>

#include <norva/platform/Exceptions.h>
#include <tests/ErrorText.h>
#include <tests/Exports.h>
#include <tests/Vectors.h>

namespace norva::tests {
namespace {

// The driver: what is called in which order. `At` is the word of the log at which a handler aborts
// the export or throws.

enum TAct { Nothing, Aborts, Throws };

struct DriverCase {
  const char *Settings, *At;
  TAct Act;
  const char* Log;
  int Counter;
};
// clang-format off
const DriverCase DriverCases[] = {
    {"", "", Nothing,
     "disable Begin begin Captions first Before Row:0 exported:0 next Row:1 exported:1 next Row:2 "
     "exported:2 next After End end enable", 3},
    {"AllowCaptions=false GoToFirstRecord=false", "", Nothing,
     "disable Begin begin Before Row:0 exported:0 next Row:1 exported:1 next Row:2 exported:2 next "
     "After End end enable", 3},
    {"SkipRecCount=1 ExportRecCount=1", "", Nothing,
     "disable Begin begin Captions first Before next skipped:1 Row:0 exported:0 next After End end "
     "enable", 1},
    {"SkipRecCount=4", "", Nothing,  // Skip does not look for the end
     "disable Begin begin Captions first Before next skipped:1 next skipped:2 next skipped:3 next "
     "skipped:4 After End end enable", 0},
    {"SkipRecCount=1 GoToFirstRecord=false CurrentRecordOnly=true", "", Nothing,
     "disable Begin begin Captions Before next skipped:1 Row:0 exported:0 After End end enable", 0},
    {"SkipRecCount=-1 ExportRecCount=-1", "", Nothing,
     "disable Begin begin Captions first Before After End end enable", 0},
    {"AutoCalcColWidth=true GoToFirstRecord=false SkipRecCount=1 ExportRecCount=1", "", Nothing,
     "disable Begin begin mark first next skipped:1 next fetched:1 goto free Captions Before next "
     "skipped:1 Row:0 exported:0 next After End end enable", 1},

    {"", "begin", Aborts, "disable Begin begin enable", 0},
    {"AutoCalcColWidth=true ExportRecCount=1", "fetched:1", Aborts,  // after the last record
     "disable Begin begin mark first next fetched:1 goto free enable", 0},
    {"", "Captions", Aborts, "disable Begin begin Captions End end enable", 0},
    {"SkipRecCount=2", "skipped:1", Aborts,
     "disable Begin begin Captions first Before next skipped:1 next skipped:2 End end enable", 2},
    {"ExportRecCount=1", "exported:0", Aborts,
     "disable Begin begin Captions first Before Row:0 exported:0 next After End end enable", 1},

    {"AutoCalcColWidth=true", "fetched:1", Throws,
     "disable Begin begin mark first next fetched:1 goto free enable", 0},
    {"", "Captions", Throws, "disable Begin begin Captions End end enable", 0},
    {"", "exported:1", Throws,
     "disable Begin begin Captions first Before Row:0 exported:0 next Row:1 exported:1 End end "
     "enable", 1},
    {"CurrentRecordOnly=true", "End", Throws,
     "disable Begin begin Captions first Before Row:0 exported:0 After End enable", 0},
};
// clang-format on

TEST(Norva, CallsInOrder) {
  for (const DriverCase& c : DriverCases) {
    SCOPED_TRACE(testing::Message() << c.Settings << ", " << c.Act << " at " << c.At);
    TLogged run;
    Set(run.Export, c.Settings);
    run.Export.RecordCounter = 5;  // left by an export before this one
    run.Export.Aborted = true;
    run.Log.ActAt = c.At;
    run.Log.Act = [&] {
      if (c.Act == Throws) throw Exception("from the handler");
      run.Export.Abort();
    };
    EXPECT_EQ(ExportedOrError(run.Export) == "!from the handler", c.Act == Throws);
    EXPECT_EQ(run.Log.Text, c.Log);
    EXPECT_EQ(run.Export.RecordCounter, c.Counter);
    EXPECT_EQ(run.Export.Aborted, c.Act == Aborts);
    EXPECT_EQ(run.Set.ControlsDisabled(), 0);
    EXPECT_EQ(ErrorText<Exception>([&] { run.Export.GetWriter(); }),
              "The writer exists only while an export runs");
  }
}

TEST(Norva, ReportsTheFirstOfTwoErrors) {
  TLogged run;
  run.Log.ActAt = "End";
  run.Log.Act = [] { throw Exception("second"); };
  run.Export.OnExportedRecord = [](TObject&, std::int32_t) { throw Exception("first"); };
  EXPECT_EQ(ErrorText<Exception>([&] { Exported(run.Export); }), "first");
  EXPECT_EQ(run.Set.ControlsDisabled(), 0);
}

TEST(Norva, StopHandlerOverrulesAnAbort) {
  for (const char* at : {"fetched:1", "exported:0", "exported:2"}) {
    TLogged run;
    run.Export.AutoCalcColWidth = true;
    int asked = 0;
    run.Export.OnStopExport = [&](TObject& Sender, bool& CanContinue) {
      EXPECT_EQ(&Sender, &run.Export);
      EXPECT_FALSE(CanContinue);
      CanContinue = ++asked == 1;
    };
    run.Log.ActAt = at;
    run.Log.Act = [&] { run.Export.Abort(); };
    EXPECT_EQ(Exported(run.Export), Lines({"N|", "1|", "2|", "3|"})) << at;
    const bool atEnd = at == std::string_view("exported:2");  // nobody asks any more
    EXPECT_EQ(asked, atEnd ? 0 : 1);
    EXPECT_EQ(run.Export.Aborted, atEnd);
  }
}

TEST(Norva, UnusableSourcesGiveErrorsBeforeAnyCall) {
  TDataSource source;
  TMemoryDBGrid grid;
  TMemoryListView list;
  TMemoryStringGrid strings(2, 1, 1);
  TMemoryDataSet closed, empty;
  closed.Close();
  grid.DataSource = &source;
  struct Case {
    TNorvaSource Kind;
    TDataSet* Set;
    bool Controls;
    const char* Error;
  };
  const Case cases[] = {
      {esDataSet,    nullptr, true,  "Export source (DataSet) is not assigned"   },
      {esListView,   nullptr, false, "Export source (ListView) is not assigned"  },
      {esStringGrid, nullptr, false, "Export source (StringGrid) is not assigned"},
      {esDataSet,    &closed, false, "Export source (DataSet) is closed"         }, // and empty
      {esDBGrid,     &closed, true,  "Export source (DBGrid) is closed"          },
      {esDataSet,    &empty,  false, "Export source (DataSet) is empty"          },
      {esDBGrid,     &empty,  true,  "Export source (DBGrid) is empty"           },
      {esListView,   &empty,  true,  "Export source (ListView) is empty"         },
      {esStringGrid, &empty,  true,  "Export source (StringGrid) is empty"       },
  };
  TLog log;
  TLogExport exporter(log);
  for (const Case& c : cases) {
    exporter.ExportSource = c.Kind;
    exporter.DataSet = c.Set;
    source.DataSet = c.Set;
    exporter.DBGrid = c.Controls ? &grid : nullptr;
    exporter.ListView = c.Controls ? &list : nullptr;
    exporter.StringGrid = c.Controls ? &strings : nullptr;
    EXPECT_EQ(ErrorText<Exception>([&] { Exported(exporter); }), c.Error);
  }
  EXPECT_EQ(log.Text, "");
}

// The four kinds of source.

struct SourceCase {
  TNorvaSource Kind;
  int Skip, Limit;
  TStringList Fields;
  const char* Expected;  // `/` behind each line
};
const SourceCase SourceCases[] = {
    {esDataSet,    0, 0, {},             "Id|Full name|Town|/1|Ann|Ulm|/2|Bob|Bath|/3|Zoë|Köln|/"      },
    {esDBGrid,     0, 0, {},             "No|Town|Full name|/1|Ulm|Ann|/2|Bath|Bob|/3|Köln|Zoë|/"      },
    {esListView,   0, 0, {},             "Id|Name|Town|/1|Ann|Ulm|/2|Bob|Bath|/3|Zoë|Köln|/"           },
    {esStringGrid, 0, 0, {},             "ColNo_0|ColNo_1|ColNo_2|/1|Ann|Ulm|/2|Bob|Bath|/3|Zoë|Köln|/"},
    {esDataSet,    1, 1, {"town", "ID"}, "Town|Id|/Bath|2|/"                                             },
    {esDBGrid,     1, 1, {"town", "ID"}, "Town|No|/Bath|2|/"                                             },
    {esStringGrid, 1, 1, {"2", "0"},     "ColNo_2|ColNo_0|/Bath|2|/"                                     },
    {esStringGrid, 2, 5, {"1"},          "ColNo_1|/Zoë|/"                                               },
};

TEST(Norva, ReadsEachKindOfSource) {
  for (const SourceCase& c : SourceCases) {
    for (const bool widths : {false, true}) {  // the pass before changes nothing
      SCOPED_TRACE(NorvaSourceAsString(c.Kind) + " from " + std::to_string(c.Skip));
      TSources sources(c.Kind);
      TLogExport& exporter = sources.Export;
      exporter.SkipRecCount = c.Skip;
      exporter.ExportRecCount = c.Limit;
      exporter.AutoCalcColWidth = widths;
      exporter.ExportedFields = c.Fields;
      exporter.OnBeginExport = [&](TObject&) {
        EXPECT_EQ(sources.Set.ControlsDisabled(), c.Kind == esDataSet || c.Kind == esDBGrid);
        EXPECT_EQ(sources.ListView.UpdateCount(), c.Kind == esListView);
      };
      EXPECT_EQ(Exported(exporter), Lines(c.Expected));
      EXPECT_EQ(sources.Set.ControlsDisabled() + sources.ListView.UpdateCount(), 0);
    }
  }
}

TEST(Norva, ListViewClampsSkipAndLimitForGood) {
  struct Case {
    int Skip, Limit, SkipAfter, LimitAfter;
  };
  const Case cases[] = {
      {9, 0,  3, 0 },
      {3, 3,  3, 3 },
      {1, 4,  1, 3 },
      {0, -2, 0, -2},
  };
  for (const Case& c : cases) {
    TSources sources(esListView);
    sources.Export.SkipRecCount = c.Skip;
    sources.Export.ExportRecCount = c.Limit;
    Exported(sources.Export);
    EXPECT_EQ(sources.Export.SkipRecCount, c.SkipAfter);
    EXPECT_EQ(sources.Export.ExportRecCount, c.LimitAfter);
  }
}

TEST(Norva, ControlsAreLeftWhereTheWalkEnds) {
  TSources sources(esStringGrid);
  TLogExport& exporter = sources.Export;
  exporter.GoToFirstRecord = false;
  sources.StringGrid.SetRow(2);
  EXPECT_EQ(Exported(exporter),  // counted from the first row, though read from row 2
            Lines({"ColNo_0|ColNo_1|ColNo_2|", "2|Bob|Bath|", "3|Zoë|Köln|", "3|Zoë|Köln|"}));
  EXPECT_EQ(sources.StringGrid.Row(), 3);
  exporter.AutoCalcColWidth = exporter.CurrentRecordOnly = true;  // the pass returns to row 3
  EXPECT_EQ(Exported(exporter), Lines({"ColNo_0|ColNo_1|ColNo_2|", "3|Zoë|Köln|"}));

  sources.Attach(exporter, esListView);
  Exported(exporter);
  EXPECT_EQ(sources.ListView.Selected(), 0);  // none was selected: the pass leaves item 0
  sources.ListView.Select(2);
  Exported(exporter);
  EXPECT_EQ(sources.ListView.Selected(), 2);
}

TEST(Norva, ForgetsSourcesThatGoAway) {
  TLog log;
  TLogExport exporter(log);
  {
    TSources sources(esDataSet);
    sources.Attach(exporter, esDataSet);
    exporter.ListView = nullptr;
  }
  EXPECT_EQ(exporter.DataSet, nullptr);
  EXPECT_EQ(exporter.DBGrid, nullptr);
  EXPECT_EQ(exporter.ListView, nullptr);
  EXPECT_EQ(exporter.StringGrid, nullptr);
}

// Cell texts.

struct CellCase {
  TFieldType Type;
  TMemoryValue Value;
  const char *Picture, *Formatted, *Raw;  // an empty picture: that of the type
};
TMemoryValue Day(double Number) { return TMemoryValue::DateTime(Number); }

const CellCase CellCases[] = {
    {ftInteger,   -1234567,         "",      "<-1,234,567>",       "-1234567"           },
    {ftLargeint,  9007199254740993, "0",     "<9007199254740993>", "9007199254740993"   },
    {ftFloat,     1234.565,         "",      "<1,234.57>",         "1234.565"           },
    {ftBCD,       0.5,              "0.000", "<0.500>",            "0.5"                },
    {ftDate,      Day(45322.5),     "",      "<2024-01-31>",       "2024-01-31"         },
    {ftDateTime,  Day(45322.5),     "",      "<2024-01-31 12:00>", "2024-01-31 12:00:00"},
    {ftDateTime,  Day(45322),       "d mmm", "<31 Jan>",           "2024-01-31"         },
    {ftString,    "a",              "000",   "<a>",                "a"                  }, // as it is
    {ftMemo,      "a\nb",           "",      "<a\nb>",             "a\nb"               },
    {ftBoolean,   true,             "0",     "True",               "True"               },
    {ftFixedChar, "x",              "0",     "x",                  "x"                  }, // unknown
    {ftInteger,   nullptr,          "",      "null",               "null"               },
};

TEST(Norva, MakesCellTexts) {
  const TLocaleScope locale{TFormatSettings()};
  for (const CellCase& c : CellCases) {
    SCOPED_TRACE(testing::Message() << EnumToStr(c.Type) << " " << c.Formatted);
    TMemoryDataSet set;
    set.AddField("Cell", c.Type);
    set.Append({c.Value});
    TLog log;
    TLogExport exporter(log);
    exporter.DataSet = &set;
    exporter.ExportedFields.Add("Cell");  // named, a memo is exported too
    exporter.Brackets = true;
    exporter.AllowCaptions = false;
    if (*c.Picture) exporter.UserFormats.SetValue("Cell", c.Picture);
    std::string seen;
    exporter.OnGetExportText = [&](TObject& Sender, std::int32_t ColNo, std::string& Text) {
      EXPECT_EQ(&Sender, &exporter);
      EXPECT_EQ(ColNo, 0);
      seen = Text;
      Text = "changed";
    };
    EXPECT_EQ(Exported(exporter), "changed|\r\n");
    EXPECT_EQ(seen, c.Formatted);
    std::string text = "before ";
    exporter.GetColDataSt(0, false, text);
    EXPECT_EQ(text, "before changed");
    EXPECT_EQ(seen, c.Raw);
  }
}

// Texts of a grid whose types are inferred from its first row: the second row need not fit.
struct TextCase {
  const char *Sample, *Text, *Expected;
};
const TextCase TextCases[] = {
    {"1",          "abc",              "0"            },
    {"1",          "5000000000",       "5,000,000,000"}, // read with 64 bits
    {"1.5",        "1e3",              "1,000.00"     },
    {"1.5",        "1,000",            "!number"      },
    {"2024-01-31", "2024-02-01 10:30", "2024-02-01"   },
    {"2024-01-31", "soon",             "!date or time"},
    {"10:30",      "2024-02-01 11:45", "11:45"        },
    {"TRUE",       "perhaps",          "perhaps"      },
};

TEST(Norva, ParsesTextsByTheirInferredType) {
  const TLocaleScope locale{TFormatSettings()};
  for (const TextCase& c : TextCases) {
    SCOPED_TRACE(testing::Message() << c.Sample << " then " << c.Text);
    TMemoryStringGrid grid(1, 3);
    grid.SetCells(0, 1, c.Sample);
    grid.SetCells(0, 2, c.Text);
    TLog log;
    TLogExport exporter(log);
    exporter.ExportSource = esStringGrid;
    exporter.StringGrid = &grid;
    exporter.AutoCalcStrType = true;
    exporter.AllowCaptions = false;
    exporter.SkipRecCount = 1;
    const bool fails = *c.Expected == '!';
    EXPECT_EQ(
        ExportedOrError(exporter),
        fails ? Format("!Column \"0\", record 2: \"%s\" is not a valid %s", c.Text, c.Expected + 1)
              : std::string(c.Expected) + "|\r\n");
  }
}

}  // namespace
}  // namespace norva::tests
