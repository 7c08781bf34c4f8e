#include <norva/formats/text/Norvaclipboard.h>

#include <gtest/gtest.h>

#include <tests/Exports.h>
#include <tests/Vectors.h>

namespace norva::tests {
namespace {

struct CopyCase {
  const char* Settings;
  const char *Title, *Header, *Footer;
  std::string Expected;
};
const CopyCase CopyCases[] = {
    {"",                                   "",      "",         "",     Lines({"Id;Name;", "1;Zoë;", "22;null;"})                                          },
    {"Separator=#9 Spacing=7",             "Title", "head\ner", "foot",
     Lines({"Title", "head", "er", "", "Id\tName\t", "1\tZoë\t", "22\tnull\t", "foot", ""})                                                                },
    {"ExportType=etFixed Spacing=7",       "",      "head",     "foot", // all on the right, nothing between
     Lines({"head", "", "Id      Name", " 1       Zoë", "22      null", "foot", ""})},
    {"AllowCaptions=false",                "Title", "",         "",     Lines({"Title", "1;Zoë;", "22;null;"})                                             },
    {"SkipRecCount=9",                     "",      "",         "",     Lines({"Id;Name;"})                                                                 },
    {"SkipRecCount=9 AllowCaptions=false", "",      "",         "",     ""                                                                                  },
};

TEST(NorvaClipboard, CopiesText) {
  TFormatSettings settings;
  settings.ListSeparator = ';';
  const TLocaleScope locale(settings);
  for (const CopyCase& c : CopyCases) {
    SCOPED_TRACE(c.Settings);
    TMemoryDataSet set;
    set.AddField("Id", ftInteger).DisplayWidth = 1;
    set.AddField("Name", ftString, 10);
    set.Append({1, "Zoë"});
    set.Append({22, nullptr});
    TNorvaClipboard exporter;
    exporter.DataSet = &set;
    Set(exporter, c.Settings);
    exporter.Title = c.Title;
    exporter.Header.SetText(c.Header);
    exporter.Footer.SetText(c.Footer);
    EXPECT_EQ(Copied(exporter), c.Expected);
  }
}

TEST(NorvaClipboard, TypeDecidesOnWidths) {
  TSources sources(esListView);
  TNorvaClipboard exporter;
  sources.Attach(exporter, esListView);
  for (const TLumClipboardExportType type : {etFixed, etSeparated}) {
    exporter.AutoCalcColWidth = type != etFixed;
    exporter.SetExportType(type);
    EXPECT_EQ(exporter.AutoCalcColWidth, type == etFixed);
    exporter.AutoCalcColWidth = type != etFixed;
    int fetched = 0;
    exporter.OnFetchedRecord = [&](TObject&, std::int32_t) { ++fetched; };
    Copied(exporter);
    EXPECT_EQ(exporter.AutoCalcColWidth, type == etFixed);
    EXPECT_EQ(fetched, type == etFixed ? 3 : 0);
  }
}

}  // namespace
}  // namespace norva::tests
