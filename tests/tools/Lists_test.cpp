#include <tests/tools/Tool.h>

namespace norva::tests {
namespace {

class ListsTest : public ToolTest {
 protected:
  /// `Text` has lines that match these patterns.
  static void ExpectLines(const std::string& Text, const std::vector<std::string>& Patterns) {
    for (const std::string& pattern : Patterns) {
      EXPECT_TRUE(std::regex_search(Text, std::regex("(^|\n)" + pattern + "\n"))) << pattern;
    }
  }
};

TEST_F(ListsTest, TablesAndViews) {
  const TRun run = Run(Words("tables shop.db"));
  EXPECT_EQ(run.Code, 0);
  EXPECT_EQ(run.Out,
            "name       kind\n"
            "empty      table\n"
            "items      table\n"
            "names      view\n"
            "onlyblobs  table\n"
            "photos     table\n"
            "wrong      table\n");
}

TEST_F(ListsTest, ColumnsBehindABlobToo) {
  EXPECT_EQ(Run(Words("columns shop.db --table photos")).Out,
            "no  name   type     caption  width  align  format     SQL type   length  state\n"
            " 0  id     Integer  id          10  right  #,###,##0  INTEGER         0  exported\n"
            " 1  small  String   small       10  left              BLOB            0  available\n"
            " 2  title  String   title       20  left              CHAR(255)     254  exported\n"
            " 3  large  String   large       10  left              BLOB            0  available\n");
}

TEST_F(ListsTest, ColumnsOfAQuery) {
  EXPECT_EQ(Run({"columns", "shop.db", "--query", "SELECT paid, day AS \"Día\" FROM items"}).Out,
            "no  name  type     caption  width  align   format      SQL type  length  state\n"
            " 0  paid  Boolean  paid         5  center              INTEGER        0  exported\n"
            " 1  Día   Date     Día         10  left    yyyy-mm-dd  DATE           0  exported\n");
}

TEST_F(ListsTest, FormatsWithTheirExtensions) {
  ExpectLines(Run({"formats"}).Out, {
                                        "format +extensions +description",
                                        "txt +\\.txt +Fixed-width text",
                                        "csv +\\.csv +Comma-separated values",
                                        "dif +\\.dif +Data Interchange Format",
                                        "sylk +\\.slk +Symbolic Link format",
                                        "html +\\.html \\.htm +Web pages",
                                        "clipboard +Text on the clipboard",
                                    });
}

TEST_F(ListsTest, PropertiesWithTypeAndDefault) {
  const std::string text = Run(Words("properties csv")).Out;
  ExpectLines(text, {
                        "property +type +default",
                        "ExportRecCount +Integer +0",
                        "DataSet +TDataSet",
                        "OnEndExport +TNotifyEvent",
                        "Captions +String list",
                        "Formats\\.CurrencyFormat +String +\"00\\.00\\$\"",
                        "ExportType +TNorvaASCIIType \\(etTXT, etCSV, etDIF, etSYLK\\) +etCSV",
                        "CSVComma +Char +,",
                        "AutoCalcColWidth +Boolean +true",
                    });
  EXPECT_EQ(text.find("Title"), std::string::npos);  // of HTML only
}

TEST_F(ListsTest, FullDiskIsAnError) {
  const TRun run = Run({"formats"}, [] { ::dup2(::open("/dev/full", O_WRONLY), STDOUT_FILENO); });
  EXPECT_EQ(run.Code, 1);
  EXPECT_EQ(run.Err, "norva: Cannot write \"standard output\": No space left on device\n");
}

}  // namespace
}  // namespace norva::tests
