#include <norva/formats/document/Norvahtml.h>

#include <gtest/gtest.h>

#include <norva/platform/Exceptions.h>
#include <tests/ErrorText.h>
#include <tests/Exports.h>
#include <tests/TempFolder.h>
#include <tests/Vectors.h>

namespace norva::tests {
namespace {

/// Exports `Count` records into page.htm of a folder of its own.
struct THTML {
  const TLocaleScope Locale{TFormatSettings()};
  const TTempFolder Folder;
  TMemoryDataSet Source{
      {{"N", ftInteger}, {"Ok", ftBoolean}, {"Text", ftString, 20}}
  };
  TNorvaHTML Export;

  explicit THTML(const char* Settings = "", int Count = 2) {
    for (int n = 1; n <= Count; ++n) Source.Append({n, n == 1, "t" + std::to_string(n)});
    Export.DataSet = &Source;
    Export.FileName = Folder.Path("page.htm");
    Set(Export, Settings);
  }
  std::string Page() {
    Export.Execute();
    return Text("page.htm");
  }
  /// A file of the folder, with `\n` for CR LF.
  std::string Text(const char* Name) const { return Replace(Folder.Read(Name), "\r\n", "\n"); }
  /// The texts of a file's cells, and a point at the end of a page.
  std::string Cells(const char* Name) const {
    const std::string page = Text(Name);
    std::string cells;
    for (std::size_t at = page.find("<td "); at != std::string::npos; at = page.find("<td ", at)) {
      at = page.find('>', at) + 1;
      cells += page.substr(at, page.find("</td>", at) - at) + " ";
    }
    return cells + (page.ends_with("</BODY>\n</HTML>\n") ? "." : "");
  }
  /// The last cell of a record whose text is `Value`, from the alignment on.
  std::string Cell(const TMemoryValue& Value) {
    Source.Append({9, true, Value});
    Export.SkipRecCount = static_cast<std::int32_t>(Source.RecordCount() - 1);
    const std::string rows = Exported(Export);
    const std::size_t begin = rows.rfind(" align=");
    return rows.substr(begin, rows.rfind("</td>") - begin);
  }
};

TEST(NorvaHTML, Page) {
  THTML html;
  html.Export.Title = "A & <B>";  // as it stands
  html.Export.Captions = {"Text=a<b"};
  html.Export.ColumnsAlign = {"Ok=c"};
  html.Source.Append({nullptr, nullptr, ""});
  EXPECT_EQ(html.Page(), R"(<HTML>
<HEAD>
 <Title>A & <B></Title>
<Style type="text/css">
  BODY { background: #333399; color: #ffffff;
         font-family: Arial;
  }
  A:link { color: #69ef7d }
  A:visited { color: #ff00ff }
  A:active { color: #00ff00 }
  .ThRows { background-color: #ff0000;  color: #ffffff;
            font-weight: bold; text-align: center;
            font-family: Arial;
  }
  .TrRows { background-color: #007aec;  color: #ffffff;
            font-family: Arial;
  }
  .TrOdd  { background-color: #006bce;  color: #ffffff;
            font-family: Arial;
  }
</STYLE>
</HEAD>
<BODY>
<br>
<Table Border="1" Cellpadding="4" Cellspacing="1">
  <tr>
    <td class="ThRows">N</td>
    <td class="ThRows">Ok</td>
    <td class="ThRows">a&lt;b</td>
  </tr>
  <tr>
    <td class="TrRows" align=Right>1</td>
    <td class="TrRows" align=Center>True</td>
    <td class="TrRows" align=Left>t1</td>
  </tr>
  <tr>
    <td class="TrOdd" align=Right>2</td>
    <td class="TrOdd" align=Center>False</td>
    <td class="TrOdd" align=Left>t2</td>
  </tr>
  <tr>
    <td class="TrRows" align=Right>null</td>
    <td class="TrRows" align=Center>null</td>
    <td class="TrRows" align=Left>&nbsp</td>
  </tr>
</Table>
<br>
</BODY>
</HTML>
)");
  EXPECT_EQ(html.Folder.Read("page.htm").find("<HEAD>\r\n"), 8U);
}

TEST(NorvaHTML, StyleSheetAndTableByTheOptions) {
  THTML html("AllowCaptions=false HTMLTemplate=htBW", 1);
  Set(html.Export.HTMLOptions, "DefaultOptions=[doFontName] BackgroundFileName=a.png");
  Set(html.Export.TableOptions, "BorderColor=$112233 Border=2 CellPadding=3 CellSpacing=5");
  html.Export.Header = {"head", "er"};
  html.Export.ExportedFields = {"N"};
  const std::string page = html.Page();
  for (const char* part :
       {"  BODY { background: #ffffff; color: #000000;\n         font-size: 8pt;\n"
        "background-image: url(a.png)\n  }\n",
        "  A:active { color: #0000ff }\n"
        "  .TrRows { background-color: #ffffff;  color: #000000;\n            font-size: 8pt;\n  "
        "}\n",
        "  }\n  .TrBC { background-color: #332211 }\n</STYLE>\n",
        "<BODY>\nhead\ner\n<Table cellspacing=0 cellpadding=0 class=\"TrBC\">\n<tr><td>\n"
        "<Table Border=\"2\" Cellpadding=\"3\" Cellspacing=\"5\">\n  <tr>\n    <td "
        "class=\"TrRows\""}) {
    EXPECT_NE(page.find(part), std::string::npos) << part << page;
  }
}

TEST(NorvaHTML, OnlyRowsWithoutAFile) {
  THTML html("", 1);
  html.Export.ExportedFields = {"N"};
  EXPECT_EQ(Exported(html.Export), Lines({"  <tr>", "    <td class=\"TrRows\" align=Right>1</td>",
                                          "  </tr>", "</Table>", "<br>", "</BODY>", "</HTML>"}));
  TMemoryDataSet blobs{{{"B", ftBlob}}};
  blobs.Append({"x"});
  TNorvaHTML empty;
  empty.DataSet = &blobs;  // no column
  EXPECT_EQ(Exported(empty),
            Lines({"  <tr>", "  </tr>", "</Table>", "<br>", "</BODY>", "</HTML>"}));
  html.Export.SkipRecCount = 1;  // no record: no head either
  EXPECT_EQ(html.Page(), "</Table>\n<br>\n</BODY>\n</HTML>\n");
}

// Cells.

struct EscapeCase {
  const char *Value, *Expected;
};
const EscapeCase EscapeCases[] = {
    {"<a href=\"x\">&amp;", "&lt;a href=&quot;x&quot;&gt;&amp;amp;"},
    {"",                    "&nbsp"                                },
    {"a\r\nb",              "a<br>b"                               },
    {"a\nb\nc",             "a<br>bc"                              }, // on purpose
    {"\n",                  "<br>"                                 },
    {"\r\r\r\n",            "<br><br>"                             },
    {"Zoë'",               "Zoë'"                                },
};
TEST(NorvaHTML, EscapesValuesOnce) {
  THTML html;
  for (const EscapeCase& c : EscapeCases) {
    EXPECT_EQ(html.Cell(c.Value), std::string(" align=Left>") + c.Expected);
  }
  html.Export.Formats.NullString = "<&>";
  EXPECT_EQ(html.Cell(nullptr), " align=Left>&lt;&amp;&gt;");
  html.Export.OnGetExportText = [](TObject&, std::int32_t, std::string& text) { text += "<"; };
  EXPECT_EQ(html.Cell(">"), " align=Left>&gt;&lt;");
  html.Export.ExportedFields = {"Ok"};
  EXPECT_EQ(html.Cell(""), " align=Center>True<");
}

TEST(NorvaHTML, BoolAsCheckBoxEscapesNothing) {
  THTML html("BoolAsCheckBox=true");
  std::string unsafe;
  html.Export.OnUnsafeText = [&](TObject&, std::int32_t column, std::string_view text) {
    unsafe += std::to_string(column) + ":" + std::string(text) + " ";
  };
  EXPECT_EQ(html.Cell("\"a\"\n"), " align=Left>\"a\"\n");
  EXPECT_EQ(unsafe, "");
  EXPECT_EQ(html.Cell("<b>"), " align=Left><b>");
  EXPECT_EQ(unsafe, "2:<b> ");
}

struct CellCase {
  const char *Font, *Style;
};
const CellCase CellCases[] = {
    {"Name=ARIAL",                   ""                                                     },
    {"Name=Times Size=9",            "font-family: Times; font-size: 9pt"                   },
    {"Color=clRed Style=[fsBold]",   "color: #ff0000; font-weight: bold; font-style: normal"},
    {"Style=[fsItalic,fsUnderline]", "text-decoration: underline"                           },
};
TEST(NorvaHTML, WritesWhatACellHasOfItsOwn) {
  THTML html;
  html.Export.HTMLOptions.TextFont.Style = {fsItalic};
  for (const CellCase& c : CellCases) {
    html.Export.OnGetCellParams = [&](TObject&, std::int32_t, std::int32_t, const std::string&,
                                      TNorvaColAlign&, TFont& font, TColor&) { Set(font, c.Font); };
    const std::string style = c.Style;
    EXPECT_EQ(html.Cell("x"),
              " align=Left" + (style.empty() ? "" : " style=\"" + style + "\"") + ">x");
  }
}

TEST(NorvaHTML, AsksForEachCell) {
  THTML html("", 1);
  html.Source.Append({2, false, ""});
  html.Export.ExportedFields = {"Ok", "Text"};
  std::string log;
  html.Export.OnGetCellParams = [&](TObject& Sender, std::int32_t record, std::int32_t column,
                                    const std::string& value, TNorvaColAlign& align, TFont&,
                                    TColor& background) {
    EXPECT_EQ(&Sender, &html.Export);
    log += std::to_string(record) + "," + std::to_string(column) + " " + value + " ";
    align = ecaCenter;
    if (record == 1) background = column == 0 ? 0xEC7A00 : 0xCE6B00;
  };
  // On purpose: the usual colour of a row is that of the rows between.
  EXPECT_EQ(Replace(Exported(html.Export), "\r\n", ""),
            "  <tr>    <td class=\"TrRows\" align=Center>True</td>"
            "    <td class=\"TrRows\" align=Center>t1</td>  </tr>"
            "  <tr>    <td class=\"TrOdd\" align=Center>False</td>"
            "    <td class=\"TrOdd\" align=Center style=\"background-color: #006bce\">&nbsp</td>"
            "  </tr></Table><br></BODY></HTML>");
  EXPECT_EQ(log, "0,0 True 0,1 t1 1,0 False 1,1 &nbsp ");
}

// Several files.

TEST(NorvaHTML, Parts) {
  THTML html("MaxRecords=2 UsingCSS=usExternal GenerateIndex=true", 5);
  html.Export.ExportedFields = {"Text"};
  const std::string index = Replace(html.Page(), html.Folder.Path() + "/", "~");
  const std::string link = " <link rel=\"stylesheet\" type=\"text/css\" href=\"~page01.css\">\n";
  EXPECT_EQ(index, "<HTML>\n<HEAD>\n" + link + R"(</HEAD>
<BODY>
<UI>
<LI>
<a href="~page01.htm">~page01.htm</a>
<LI>
<a href="~page02.htm">~page02.htm</a>
<LI>
<a href="~page03.htm">~page03.htm</a>
</UI>
</BODY>
</HTML>
)");
  EXPECT_EQ(html.Export.CSSFileName, html.Folder.Path("page01.css"));
  EXPECT_EQ(html.Text("page01.css").substr(0, 8), "  BODY {");
  EXPECT_EQ(html.Cells("page01.htm"), "Text t1 ");  // on purpose: one record, and no end
  EXPECT_EQ(html.Cells("page02.htm"), "Text t2 t3 ");
  EXPECT_EQ(html.Cells("page03.htm"), "Text t4 t5 .");
  EXPECT_EQ(Replace(html.Text("page03.htm"), html.Folder.Path() + "/", "~").find(link), 31U);
  html.Export.SkipRecCount = 5;
  EXPECT_NE(html.Page().find("<UI>\n</UI>\n</BODY>\n</HTML>\n"), std::string::npos);
}

TEST(NorvaHTML, NumbersParts) {
  THTML html("MaxRecords=1", 10);
  html.Export.ExportedFields = {"N"};
  html.Export.FileName = html.Folder.Path("a.b.htm");
  html.Export.Execute();
  EXPECT_EQ(html.Text("a.b.htm"), "");
  EXPECT_EQ(html.Cells("a09.b.htm") + html.Cells("a10.b.htm"), "N 9 N 10 .");
  html.Export.GenerateIndex = true;
  html.Export.Execute();  // on purpose: its links look elsewhere
  EXPECT_NE(html.Text("a.b.htm").find("/a.b10.htm</a>"), std::string::npos);
  Set(html.Export, "MaxRecords=-1");
  EXPECT_EQ(html.Export.MaxRecords(), 0);
}

TEST(NorvaHTML, ReportsFilesThatCannotBeWritten) {
  THTML html("UsingCSS=usExternal");
  html.Export.CSSFileName = html.Folder.Path("no/a.css");
  EXPECT_EQ(ErrorText<EFCreateError>([&] { html.Export.Execute(); }),
            "Cannot create \"" + html.Export.CSSFileName + "\": No such file or directory");
  html.Export.CSSFileName = "/dev/full";
  const std::string full = "Cannot write \"/dev/full\": No space left on device";
  EXPECT_EQ(ErrorText<EWriteError>([&] { html.Export.Execute(); }), full);
  html.Export.UsingCSS = usInternal;
  html.Export.FileName = "/dev/full";
  EXPECT_EQ(ErrorText<EWriteError>([&] { html.Export.Execute(); }), full);
  // A part that is full when the next one begins.
  html.Export.SetMaxRecords(1);
  html.Export.FileName = html.Folder.Path("p.htm");
  std::filesystem::create_symlink("/dev/full", html.Folder.Path("p01.htm"));
  EXPECT_EQ(ErrorText<EWriteError>([&] { html.Export.Execute(); }),
            "Cannot write \"" + html.Folder.Path("p01.htm") + "\": No space left on device");
}

// Colours and templates.

TEST(NorvaHTML, Colors) {
  for (const TVector& row : ReadVectors("colors")) {
    if (row["function"] != "HtmlColor") continue;
    EXPECT_EQ(HtmlColor(StringToColor(row["input"])), row["expected"]) << row.Place;
  }
}

std::string ColorsOf(const TNorvaHTML& Export) {
  const THTMLOptions& page = Export.HTMLOptions;
  const TTableOptions& table = Export.TableOptions;
  std::string text = page.TextFont.Name;
  for (const TColor color :
       {page.BackgroundColor, page.LinkColor, page.VLinkColor, page.ALinkColor, page.TextFont.Color,
        table.HeadersRowBgColor, table.HeadersRowFontColor, table.TableBgColor,
        table.TableFontColor, table.OddRowBgColor}) {
    text += " " + HtmlColor(color).substr(1);
  }
  return text;
}

const char* const TemplateCases[] = {
    "Custom Arial ffffff ff0000 800080 0000ff 004080 336699 ffffff ffffff 000000 ffffcf",
    "Black&White Arial ffffff ff0000 800080 0000ff 000000 000000 ffffff ffffff 000000 f3f3f3",
    "Classic Arial 333399 69ef7d ff00ff 00ff00 ffffff ff0000 ffffff 007aec ffffff 006bce",
    "ColorFul Arial 339966 0066cc 923fc1 0000ff ffffff cc0033 ffffff ffffff 000000 faf100",
    "Gray Arial ffffff ff0000 800080 0000ff 000000 808080 ffffff ffffff 000000 eeeeee",
    "MS_Money Arial ffffff ff0000 800080 0000ff 000000 cec6b5 000000 dee7de 000000 fffbf0",
    "Murky Arial 317676 ffe760 cccc39 ffff00 ffffff 3a9393 ffffff 276262 ffe760 367800",
    "Olive Arial ffffff ff0000 800080 0000ff 5f605f cfc890 000000 ffffff 5f605f ffffcf",
    "Plain Arial ffffff ff0000 800080 0000ff 000000 068fe6 ffffff ffffff 000000 fffcd9",
    "Simple Arial ffffff ff0000 800080 0000ff 004080 336699 ffffff ffffff 000000 ffffcf",
};
TEST(NorvaHTML, Templates) {
  TNorvaHTML exporter;
  for (int i = htSimple; i >= htCustom; --i) {
    const auto value = static_cast<THTMLTemplate>(i);
    if (value == htCustom) exporter.SetHTMLTemplate(htSimple);  // whose colours it keeps
    exporter.SetHTMLTemplate(value);
    EXPECT_EQ(TemplateToStr(value) + " " + ColorsOf(exporter), TemplateCases[i]);
    exporter.HTMLOptions.TextFont.Name = "X";
  }
  exporter.SetHTMLTemplate(htGray);
  exporter.HTMLOptions.LinkColor = 0x123456;
  exporter.SetHTMLTemplate(htGray);  // no switch: the host's own colour stays
  EXPECT_EQ(exporter.HTMLOptions.LinkColor, 0x123456);
}

TEST(NorvaHTML, TemplateFile) {
  const TTempFolder folder;
  TNorvaHTML exporter, other;
  exporter.HTMLOptions.TextFont.Name = "Verdana";
  exporter.TableOptions.BorderColor = clBtnFace;
  exporter.SaveTemplateToFile(folder.Path("t.ini"));
  EXPECT_EQ(Replace(folder.Read("t.ini"), "\r\n", "\n"), R"([HTML options]
Background-color=$00993333
Font-color=clWhite
Font-family=Verdana
LinkColor=$007DEF69
VLinkColor=clFuchsia
ALinkColor=clLime

[Table options]
Header-bgcolor=clRed
Header-color=clWhite
Table-color=clWhite
Even_row-bgcolor=$00EC7A00
Odd_row-bgcolor=$00CE6B00
Border-color=clBtnFace
)");
  other.SetHTMLTemplate(htMurky);
  other.LoadTemplateFromFile(folder.Path("none.ini"));
  other.LoadTemplateFromFile(folder.Path("t.ini"));  // on purpose: what has a name stays as it was
  EXPECT_EQ(ColorsOf(other),
            "Verdana 333399 69ef7d cccc39 ffff00 ffffff 3a9393 ffffff 007aec ffe760 006bce");
  EXPECT_EQ(other.HTMLTemplate(), htMurky);
  EXPECT_EQ(other.TableOptions.BorderColor, clWhite);
  other.LoadTemplateFromFile(
      folder.Write("n.ini", "[Table options]\nBorder-color=0x10\nTable-color=$80000005\n"));
  EXPECT_EQ(other.TableOptions.BorderColor, 16);
  EXPECT_EQ(other.TableOptions.TableFontColor, clWindow);
}

TEST(NorvaHTML, AssignsOptions) {
  TNorvaHTML exporter;
  THTMLOptions page;
  page.Assign(exporter.HTMLOptions);
  TTableOptions table;
  table.Assign(exporter.TableOptions);
  EXPECT_EQ(page.TextFont.Color, clWhite);
  EXPECT_EQ(table.OddRowBgColor, 0xCE6B00);
  EXPECT_EQ(ErrorText<EConvertError>([&] { page.Assign(table); }),
            "A TTableOptions cannot be assigned to a THTMLOptions");
}

}  // namespace
}  // namespace norva::tests
