#include <norva/formats/document/Norvartf.h>

#include <gtest/gtest.h>

#include <tests/ErrorText.h>
#include <tests/Exports.h>
#include <tests/Vectors.h>

namespace norva::tests {
namespace {

struct TInvariant {
  const TLocaleScope Scope{TFormatSettings()};
};

/// Exports two records of three columns.
class TRTF : TInvariant, public TNorvaRTF {
 public:
  explicit TRTF(const char* Settings = "") {
    ColumnsWidth = {"Id=10", "Name=2", "Ok=1"};
    ColumnsAlign = {"Id=r", "Name=c", "Ok=l"};
    Source_.Append({1, "a\\b", true});
    Source_.Append({2, "x\r\ny\nz", nullptr});
    DataSet = &Source_;
    Set(*this, Settings);
  }

  const char* CellFont = nullptr;  // makes column 0 a cell of this font, red on yellow

 protected:
  void GetColData(int Index, bool NeedFormat, std::string& Text) override {
    if (!CellFont || Index > 0) return TNorvaRTF::GetColData(Index, NeedFormat, Text);
    TFont font = Options.DefaultFont;
    font.Name = CellFont;
    font.Color = clRed;
    font.Style = {fsItalic};
    Text += GetCellStart(ecaCenter, font, clYellow) + "}\\cell";
  }

 private:
  TMemoryDataSet Source_{
      {{"Id", ftInteger}, {"Name", ftString, 20}, {"Ok", ftBoolean}}
  };
};

const std::string Fonts = "{\\fonttbl{\\f0\\fnil Arial;}{\\f1\\fnil Arial;}}/";
const std::string Black = "{\\colortbl\\red0\\green0\\blue0;}/";
const std::string Begin = "{\\rtf1\\ansi\\deff0\\deftab720/" + Fonts + Black + "\\f0\\fs20/";
const std::string Portrait = "\\paperw11906/\\paperh16838/";
const std::string Border =
    "\\clbrdrl\\brdrth \\clbrdrr\\brdrth \\clbrdrt\\brdrth \\clbrdrb\\brdrth/";
const std::string RowDefinition = "\\trowd\\trql\\trgaph0\\trleft36/";
const std::string Cell = "\\pard\\intbl\\li30\\ri30";

/// What is written, `/` behind each line.
std::string Written(TNorva& Export) { return Replace(ExportedOrError(Export), "\r\n", "/"); }

TEST(NorvaRTF, WritesOneTable) {
  TRTF exporter;
  exporter.Header = {"{\\b head}", "er"};
  exporter.Footer = {"foot", "er"};
  // A bold X of 10 points has 9 pixels.
  EXPECT_EQ(Written(exporter),
            Begin + Portrait + "{\\b head}/\\par/er/\\par/\\par/" + RowDefinition +  //
                Border + "\\cellx1396/" + Border + "\\cellx1676/" + Border + "\\cellx1821/" +
                "\\f0\\fs20/" + Cell + "{\\b Id}\\cell" + Cell + "{\\b Name}\\cell" + Cell +
                "{\\b Ok}\\cell\\row/" + "\\f0\\fs20/" +  //
                Cell + "\\qr{1}\\cell" + Cell + "\\qc{a\\\\b}\\cell" + Cell +
                "\\ql{True}\\cell\\row/" +  //
                Cell + "\\qr{2}\\cell" + Cell + "\\qc{x \\par y\nz}\\cell" + Cell +
                "\\ql{null}\\cell\\row/" + "\\pard/\\par/\\par/foot/\\par/er/}");
}

TEST(NorvaRTF, WritesItsOptions) {
  TRTF exporter("AllowCaptions=false ExportRecCount=1");
  exporter.ExportedFields = {"Id"};
  Set(exporter.Options, "PageOrientation=poLandscape");
  Set(exporter.Options.DefaultFont, "Name=Times Size=8 Style=[fsStrikeOut,fsUnderline]");
  Set(exporter.Options.HeaderFont, "Name=Courier Size=12 Style=[fsItalic,fsBold]");
  TRTFOptions copy;
  copy.Assign(exporter.Options);
  exporter.Options = TRTFOptions();
  exporter.Options.Assign(copy);
  const std::string start =
      "{\\rtf1\\ansi\\deff0\\deftab720/{\\fonttbl{\\f0\\fnil Courier;}{\\f1\\fnil Times;}}/" +
      Black + "\\f1\\fs16/\\landscape/\\paperw16838/\\paperh11906/\\par/" + RowDefinition + Border +
      "\\cellx1546/";  // an X of 10 pixels
  const std::string record = "\\f1\\fs16/" + Cell + "\\qr{\\ul\\strike 1}\\cell\\row/";
  EXPECT_EQ(Written(exporter), start + record + "\\pard/\\par/}");
  exporter.AllowCaptions = true;
  EXPECT_EQ(Written(exporter),
            start + "\\f0\\fs24/" + Cell + "{\\b\\i Id}\\cell\\row/" + record + "\\pard/\\par/}");
  EXPECT_EQ(ErrorText<EConvertError>([&] { copy.Assign(exporter); }),
            "A TNorvaRTF cannot be assigned to a TRTFOptions");
}

TEST(NorvaRTF, WritesRowsWithoutColumns) {
  TMemoryDataSet blobs{{{"B", ftBlob}}};
  blobs.Append({"x"});
  TNorvaRTF exporter;
  exporter.DataSet = &blobs;
  EXPECT_EQ(Written(exporter), Begin + Portrait + "\\par/" + RowDefinition +
                                   "\\f0\\fs20/\\row/\\f0\\fs20/\\row/\\pard/\\par/}");
}

TEST(NorvaRTF, CopiesBracesAndTellsTheHost) {
  struct Case {
    const char *Caption, *Value, *Unsafe, *Escaped;
  };
  const Case cases[] = {
      {"C",   "a/b", "",       "a/b"   },
      {"C",   "}{",  "0:}{",   "\\}\\{"},
      {"{C}", "}",   "-1:{C}", "\\}"   },
  };
  for (const Case& c : cases) {
    TMemoryDataSet set{{{"C", ftString, 9}}};
    set.Fields(0).DisplayName = c.Caption;
    set.Append({c.Value});
    TNorvaRTF exporter;
    exporter.DataSet = &set;
    std::string unsafe;
    exporter.OnUnsafeText = [&](TObject&, std::int32_t ColNo, std::string_view Text) {
      unsafe += std::to_string(ColNo) + ":" + std::string(Text);
    };
    const std::string rows =
        "{\\b " + std::string(c.Caption) + "}\\cell\\row/\\f0\\fs20/" + Cell + "\\ql{";
    EXPECT_NE(Written(exporter).find(rows + c.Value + "}\\cell\\row/"), std::string::npos);
    EXPECT_EQ(unsafe, c.Unsafe);
    exporter.OnGetExportText = [](TObject&, std::int32_t, std::string& Text) {  // the way out
      Text = Replace(Replace(Text, "{", "\\{"), "}", "\\}");
    };
    EXPECT_NE(Written(exporter).find(rows + c.Escaped + "}\\cell\\row/"), std::string::npos);
  }
}

TEST(NorvaRTF, GivesDerivedClassesCellsOfOtherLooks) {
  TRTF exporter("AllowCaptions=false ExportRecCount=1");
  exporter.ExportedFields = {"Id"};
  Set(exporter.Options.DefaultFont, "Style=[fsBold]");
  const std::string red = "\\red255\\green0\\blue0;", yellow = "\\red255\\green255\\blue0;";
  struct Case {
    const char* Font;
    std::string Entry, Word;
  };
  for (const Case& c : {
           Case{"Times", "{\\f2\\fnil Times;}", "\\f2\\fs20"},
           Case{"ARIAL", "",                    ""          }
  }) {
    exporter.CellFont = c.Font;
    const std::string text = Written(exporter);
    EXPECT_NE(text.find("{\\f1\\fnil Arial;}" + c.Entry + "}/{\\colortbl\\red0\\green0\\blue0;" +
                        red + yellow + "}/"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find(Cell + "\\cbpat2\\qc{" + c.Word + "\\cf1\\b\\i }\\cell\\row/"),
              std::string::npos)
        << text;
  }
}

TEST(NorvaRTF, AbortEndsTheTable) {
  TRTF exporter("AllowCaptions=false");
  exporter.ExportedFields = {"Id"};
  exporter.Footer = {"foot"};
  const std::string end = "\\pard/\\par/\\par/foot/";
  exporter.OnExportedRecord = [&](TObject&, std::int32_t) { exporter.Abort(); };
  EXPECT_EQ(Written(exporter), Begin + Portrait + "\\par/" + RowDefinition + Border +
                                   "\\cellx1396/\\f0\\fs20/" + Cell + "\\qr{1}\\cell\\row/" + end +
                                   end + "}");
  exporter.OnBeginExport = [&](TObject&) { exporter.Abort(); };
  EXPECT_EQ(Written(exporter),
            end + Begin + Portrait + "\\par/" + RowDefinition + Border + "\\cellx1396/");
}

}  // namespace
}  // namespace norva::tests
