#include <norva/formats/text/Norvaascii.h>

#include <ranges>

#include <gtest/gtest.h>

#include <norva/sources/memory/RangeDataSet.h>
#include <tests/ErrorText.h>
#include <tests/Exports.h>
#include <tests/Vectors.h>

namespace norva::tests {
namespace {

struct TInvariant {
  const TLocaleScope Scope{TFormatSettings()};
};

/// Exports three records of four types. Derived, to reach what is there for derived classes.
class TASCII : TInvariant, public TNorvaASCII {
 public:
  explicit TASCII(const char* Settings = "") {
    for (const char* name : {"Id", "Name", "Ok", "Price"}) ColumnsWidth.SetValue(name, "1");
    Source_.Append({1, "Ann \"A\" O", true, 12.5});
    Source_.Append({2, "Zoë", nullptr, nullptr});
    Source_.Append({3, "a,b", false, -1});
    DataSet = &Source_;
    Title = "A \"title\"";
    Header = {"head", "er"};
    Footer = {"foot", "er"};
    Set(*this, Settings);
  }
  using TNorvaASCII::SetState;
  TMemoryDataSet& Source() { return Source_; }

 private:
  TMemoryDataSet Source_{
      {{"Id", ftInteger}, {"Name", ftString, 20}, {"Ok", ftBoolean}, {"Price", ftFloat}}
  };
};

// Whole files.

TEST(NorvaASCII, TXT) {
  TASCII exporter;
  EXPECT_EQ(Exported(exporter), Lines("A \"title\"/" + std::string(80, '-') +
                                      "//head/er//"
                                      "Id Name       Ok   Price /"
                                      " 1 Ann \"A\" O True  12.50 /"
                                      " 2 Zoë       null   null /"
                                      " 3 a,b       False -1.00 /"
                                      "/foot/er/"));
}

TEST(NorvaASCII, TXTWithoutTitleHeaderAndFooter) {
  TASCII exporter("AllowCaptions=false TXTSpacing=0 AutoCalcColWidth=false");
  exporter.Title.clear();
  exporter.Header.Clear();
  exporter.Footer.Clear();
  exporter.ColumnsWidth = {"Id=2", "Name=6", "Ok=5", "Price=3"};
  exporter.ColumnsAlign = {"Id=l", "Name=c", "Ok=r", "Price=c"};
  const std::string expected = Lines(
      "1 Ann \"A\" O True12.50/"  // too long: never cut
      "2  Zoë   nullnull/"        // three characters, four bytes
      "3  a,b  False-1.00/"
      "/");
  EXPECT_EQ(Exported(exporter), expected);
  exporter.TXTSpacing = -3;
  EXPECT_EQ(Exported(exporter), expected);
}

TEST(NorvaASCII, CSV) {
  TASCII exporter("ExportType=etCSV");
  EXPECT_EQ(Exported(exporter), Lines(R"("Id","Name","Ok","Price",/)"
                                      R"("1","Ann ""A"" O",True,"12.50",/)"
                                      R"("2","Zoë",null,null,/)"
                                      R"("3","a,b",False,"-1.00",/)"));
}

TEST(NorvaASCII, DIF) {
  TASCII exporter("ExportType=etDIF ExportRecCount=2");
  EXPECT_EQ(Exported(exporter),
            Lines(R"(TABLE/0,1/"A "title""/)"  // no quote is doubled
                  R"(VECTORS/0,4/""/)"
                  R"(TUPLES/0,0/""/)"  // on purpose: always 0
                  R"(DATA/0,0/)"
                  R"(-1,0/BOT/1,0/"Id"/1,0/"Name"/1,0/"Ok"/1,0/"Price"/)"
                  R"(-1,0/BOT/0,1/V/1,0/"Ann "A" O"/0,True/V/0,12.50/V/)"
                  R"(-1,0/BOT/0,2/V/1,0/"Zoë"/0,null/V/0,null/V/)"
                  R"(-1,0/EOD/)"));
}

TEST(NorvaASCII, SYLK) {
  TASCII exporter("ExportType=etSYLK");
  exporter.ExportedFields = {"Name", "Price"};
  EXPECT_EQ(Exported(exporter), Lines(R"(ID;PVASCIIEXPORT/)"
                                      R"(C;X1;Y1;K"Name"/C;X2;Y1;K"Price"/)"
                                      R"(C;X1;Y1;K"Ann "A" O"/C;X2;Y1;K"12.50"/)"  // on purpose
                                      R"(C;X1;Y2;K"Zoë"/C;X2;Y2;K"null"/)"
                                      R"(C;X1;Y3;K"a,b"/C;X2;Y3;K"-1.00"/)"
                                      R"(E/)"));
  Set(exporter, "AllowCaptions=false ExportRecCount=2");
  exporter.ExportedFields = {"Name"};
  EXPECT_EQ(Exported(exporter),
            Lines(R"(ID;PVASCIIEXPORT/C;X1;Y0;K"Ann "A" O"/C;X1;Y1;K"Zoë"/E/)"));
}

// Rules of single formats.

TEST(NorvaASCII, QuotesCSVStrings) {
  struct Case {
    const char *Text, *Quoted;
  };
  const Case cases[] = {
      {"a",      R"("a")"     },
      {"",       ""           }, // an empty text stays empty
      {"\"a\"b", R"("""a""b")"},
      {"a;b",    R"("a;b")"   },
      {"a\r\nb", "\"a\r\nb\"" },
  };
  for (const Case& c : cases) {
    TMemoryDataSet set;
    set.AddField("F", ftString).DisplayName = c.Text;  // captions go the same way
    set.Append({c.Text});
    TNorvaASCII exporter;
    exporter.DataSet = &set;
    exporter.SetExportType(etCSV);
    exporter.CSVComma = ';';
    EXPECT_EQ(Exported(exporter),
              Lines({std::string(c.Quoted) + ";", std::string(c.Quoted) + ";"}));
    exporter.CSVQuoteStrings = false;
    EXPECT_EQ(Exported(exporter), Lines({std::string(c.Text) + ";", std::string(c.Text) + ";"}));
  }
}

TEST(NorvaASCII, OnlyTXTCalculatesWidths) {
  TASCII exporter("ExportType=etTXT");
  Set(exporter, "AutoCalcColWidth=false ExportType=etTXT");
  EXPECT_FALSE(exporter.AutoCalcColWidth);  // not a switch
  exporter.SetExportType(etCSV);
  exporter.AutoCalcColWidth = true;
  int fetched = 0;
  exporter.OnFetchedRecord = [&](TObject&, std::int32_t) { ++fetched; };
  Exported(exporter);
  EXPECT_EQ(fetched, 0);
  EXPECT_FALSE(exporter.AutoCalcColWidth);  // and stays so
  exporter.SetExportType(etTXT);
  EXPECT_TRUE(exporter.AutoCalcColWidth);
  Exported(exporter);
  EXPECT_EQ(fetched, 3);
}

TEST(NorvaASCII, DIFShowsEveryRecordBeforeWriting) {
  TASCII exporter("ExportType=etDIF SkipRecCount=1 GoToFirstRecord=false CurrentRecordOnly=true");
  exporter.Source().Next();
  std::string log;
  exporter.OnSkippedRecord = [&](TObject&, std::int32_t n) { log += "s" + std::to_string(n); };
  exporter.OnFetchedRecord = [&](TObject& Sender, std::int32_t n) {
    EXPECT_EQ(&Sender, &exporter);
    log += "f" + std::to_string(n);
  };
  const std::string text = Exported(exporter);
  EXPECT_EQ(log, "s1f1f2s1");  // the pass begins at the first record and returns to the second
  EXPECT_NE(text.find("\r\n0,3\r\nV\r\n"), std::string::npos) << text;
  exporter.OnFetchedRecord = [](TObject&, std::int32_t) { throw Exception("now"); };
  EXPECT_EQ(ErrorText<Exception>([&] { Exported(exporter); }), "now");
  EXPECT_EQ(exporter.Source().RecNo(), 3);
}

TEST(NorvaASCII, NeverEndsAtTheEndOfALongSource) {
  struct Case {
    TNorvaASCIIType Type;
    int Records, Exported;
  };
  const Case cases[] = {
      {etCSV, 65536, 65536},
      {etCSV, 65537, 65600}, // on purpose: only the limit ends it
      {etTXT, 65540, 65540},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << EnumToStr(c.Type) << " of " << c.Records);
    TRangeDataSet source(std::views::iota(1, c.Records + 1),
                         Column("N", [](const int& N) { return N; }));
    TNorvaASCII exporter;
    exporter.DataSet = &source;
    exporter.SetExportType(c.Type);
    exporter.ExportRecCount = 65600;
    exporter.UserFormats.Add("N=0");
    const std::string text = Exported(exporter), last = std::to_string(c.Records);
    EXPECT_EQ(exporter.RecordCounter, c.Exported);
    int repeats = 0;  // of the last record
    for (std::size_t at = 0; (at = text.find(last, at)) != std::string::npos; ++at) ++repeats;
    EXPECT_EQ(repeats, c.Exported - c.Records + 1);
  }
}

// Abort.

struct AbortCase {
  const char* Settings;
  bool Writing;       // a derived class has set stWritting
  const char* Event;  // that calls Abort, on its first record
  bool Overruled;
  const char* Expected;  // `/` behind each line
};
// clang-format off
const AbortCase AbortCases[] = {
    {"ExportType=etTXT", false, "exported", false, "Id / 1 //foot/"},
    {"ExportType=etTXT", true, "exported", false, "Id / 1 //foot//foot/"},
    {"ExportType=etTXT", false, "begin", false, ""},
    {"ExportType=etCSV", true, "exported", false, "\"Id\",/\"1\",/"},
    {"ExportType=etSYLK", true, "exported", false,
     "ID;PVASCIIEXPORT/C;X1;Y1;K\"Id\"/C;X1;Y1;K\"1\"/E/E/"},
    {"ExportType=etDIF", false, "exported", false,  // closed twice
     "TABLE/0,1/\"\"/VECTORS/0,1/\"\"/TUPLES/0,0/\"\"/DATA/0,0/-1,0/BOT/1,0/\"Id\"/-1,0/BOT/0,1/V/"
     "-1,0/EOD/-1,0/EOD/"},
    {"ExportType=etDIF", false, "fetched", false,
     "TABLE/0,1/\"\"/VECTORS/0,1/\"\"/TUPLES/-1,0/EOD/"},
    {"ExportType=etDIF ExportRecCount=2 AllowCaptions=false", false, "fetched", true,
     "TABLE/0,1/\"\"/VECTORS/0,1/\"\"/TUPLES/-1,0/EOD/0,0/\"\"/DATA/0,0/-1,0/BOT/0,1/V/-1,0/BOT/"
     "0,2/V/-1,0/EOD/"},
};
// clang-format on

TEST(NorvaASCII, AbortEndsTheFile) {
  for (const AbortCase& c : AbortCases) {
    SCOPED_TRACE(testing::Message() << c.Settings << " at " << c.Event);
    TASCII exporter(c.Settings);
    exporter.ExportedFields = {"Id"};
    exporter.Title.clear();
    exporter.Header.Clear();
    exporter.Footer = {"foot"};
    if (c.Writing) exporter.SetState(stWritting);
    const std::string_view event = c.Event;
    const auto abort = [&](TObject&, std::int32_t n) {
      if (n <= 1 && !exporter.Aborted) exporter.Abort();
    };
    if (event == "begin") exporter.OnBeginExport = [&](TObject&) { exporter.Abort(); };
    if (event == "fetched") exporter.OnFetchedRecord = abort;
    if (event == "exported") exporter.OnExportedRecord = abort;
    if (c.Overruled)
      exporter.OnStopExport = [](TObject&, bool& CanContinue) { CanContinue = true; };
    EXPECT_EQ(Exported(exporter), Lines(c.Expected));
  }
}

}  // namespace
}  // namespace norva::tests
