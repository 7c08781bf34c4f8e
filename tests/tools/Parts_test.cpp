#include <norva/formats/text/Norvaascii.h>
#include <norva/platform/Exceptions.h>
#include <norva/sources/sqlite/SqliteDataSet.h>
#include <tests/ErrorText.h>
#include <tests/tools/Tool.h>
#include <tools/norva/Errors.h>
#include <tools/norva/Formats.h>
#include <tools/norva/Nearest.h>
#include <tools/norva/Report.h>
#include <tools/norva/Target.h>

namespace norva::tests {
namespace {

using namespace norva::tool;

struct TSuggestionCase {
  const char* Wanted;
  std::vector<std::string> Names;
  const char* Expected;
};
const TSuggestionCase SuggestionCases[] = {
    {"ordres", {"customers", "orders"},  "nearest: \"orders\""             }, // letters swapped
    {"ORDERS", {"orders2", "orders"},    "nearest: \"orders\", \"orders2\""}, // the same first
    {"item",   {"order_items", "x"},     "nearest: \"order_items\""        }, // a part of it
    {"items",  {"m", "names"},           "it has: m, names"                }, // too small a part
    {"ab",     {"ac", "ad", "ae", "af"}, "nearest: \"ac\", \"ad\", \"ae\"" }, // at most three
    {"a",      {"b"},                    "it has: b"                       }, // nothing in common
    {"zebra",  {"lion", "crocodile"},    "it has: lion, crocodile"         },
    {"zebra",  {},                       "it has: "                        },
    {"",       {"lion"},                 "it has: lion"                    },
};
TEST(Suggestion, NamesMostAlike) {
  for (const TSuggestionCase& c : SuggestionCases) {
    EXPECT_EQ(Suggestion(c.Wanted, c.Names), c.Expected) << c.Wanted;
  }
}

TEST(Report, GroupsDigitsAndCounts) {
  EXPECT_EQ(Grouped(0), "0");
  EXPECT_EQ(Grouped(999), "999");
  EXPECT_EQ(Grouped(1000), "1,000");
  EXPECT_EQ(Grouped(-123456), "-123,456");
  EXPECT_EQ(Grouped(1234567), "1,234,567");
  EXPECT_EQ(DoneLine("x.csv", 1, 2, 1000, 0.5),
            "x.csv: 1 record, 2 columns, 1,000 bytes in 0.500 s (2 rows/s)");
}

/// Writes a second file beside its own, as a format with parts does.
class TTwoFiles : public TNorvaASCII {
 public:
  void Execute() override {
    TNorvaASCII::Execute();
    TFileStream(FileName + ".part", fmCreate).Write(std::string_view("part"));
  }
};

class TargetTest : public testing::Test {
 protected:
  TargetTest() {
    RunScript(Folder.Path("t.db"), "CREATE TABLE t (a INT); INSERT INTO t VALUES (5);");
    Rows.emplace(Folder.Path("t.db"), TSqliteTable{"t"});
  }
  void Attach(TNorvaASCII& Exporter) {
    Exporter.SetExportType(etCSV);
    Exporter.DataSet = &*Rows;
  }
  // Of the table, but as a format that names files would be.
  TFormat NamesFiles() const {
    TFormat format = FormatByName("csv");
    format.Streams = false;
    return format;
  }

  const TTempFolder Folder;
  std::optional<TSqliteDataSet> Rows;
};

TEST_F(TargetTest, AllFilesOfASetAreMovedIntoPlace) {
  TTwoFiles exporter;
  Attach(exporter);
  Folder.Write("x.csv.part", "old");
  const auto target = MakeFileTarget(Folder.Path("x.csv"));
  target->Write(exporter);
  EXPECT_EQ(exporter.FileName, "x.csv");  // parts and links are made of a bare name
  EXPECT_EQ(Folder.Read("x.csv.part"), "old");
  target->Commit();
  EXPECT_EQ(Folder.Read("x.csv"), "\"a\",\r\n\"5\",\r\n");
  EXPECT_EQ(Folder.Read("x.csv.part"), "part");
  EXPECT_EQ(target->Bytes(), 16);
}

TEST_F(TargetTest, FormatsThatNameFilesReachAStreamThroughOne) {
  const TEnvironmentScope temporary("TMPDIR", Folder.Path().c_str());
  TNorvaASCII exporter;
  Attach(exporter);
  const std::string path = Folder.Write("stream", "");
  {
    const auto target = MakeHandleTarget(::open(path.c_str(), O_WRONLY), "stream", NamesFiles());
    target->Write(exporter);
    EXPECT_EQ(Folder.Read("stream"), "");
    target->Commit();
    EXPECT_EQ(target->Bytes(), 12);
  }
  EXPECT_EQ(Folder.Read("stream"), "\"a\",\r\n\"5\",\r\n");
  EXPECT_EQ(Folder.Names().size(), 2u);  // t.db and stream: the folder between them is gone
}

TEST_F(TargetTest, SeveralFilesDoNotGoIntoOneStream) {
  const TEnvironmentScope temporary("TMPDIR", Folder.Path().c_str());
  TTwoFiles exporter;
  Attach(exporter);
  const std::string path = Folder.Write("stream", "");
  const auto target = MakeHandleTarget(::open(path.c_str(), O_WRONLY), "stream", NamesFiles());
  target->Write(exporter);
  EXPECT_EQ(ErrorText<EUsage>([&] { target->Commit(); }),
            "These settings write several files, which standard output and devices cannot hold; "
            "give -o a file name");
  EXPECT_EQ(Folder.Read("stream"), "");
}

}  // namespace
}  // namespace norva::tests
