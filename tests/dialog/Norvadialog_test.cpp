#include <norva/dialog/Norvadialog.h>

#include <gtest/gtest.h>

#include <norva/core/Norvaconsts.h>
#include <norva/platform/FormText.h>
#include <norva/platform/IniFile.h>
#include <tests/ErrorText.h>
#include <tests/Exports.h>
#include <tests/TempFolder.h>

namespace norva {
namespace {

using namespace tests;

/// A cell format as it stands in a file, in a font of that name.
std::string CellFormat(const std::string& Section, const std::string& Font,
                       const std::string& Last = "") {
  return "/[" + Section + "]/FontName=" + Font +
         "/FontSize=12/FontColor=clRed/FontBold=1/FontItalic=0/FontStrikeOut=1/FontUnderline=2/"
         "HorAlignment=3/VertAlignment=1/BorderTop=1/BorderTopColor=clBlue/BorderBottom=2/"
         "BorderBottomColor=clLime/BorderLeft=3/BorderLeftColor=clAqua/BorderRight=4/"
         "BorderRightColor=clTeal/FillPattern=5/FillBackground=clYellow/FillForeground=clOlive/" +
         Last;
}

/// The sections of all formats, `/` behind each line; no value is a default.
std::string CommonPart(int Kind) {
  return "[GENERAL]/ExportType=" + std::to_string(Kind) +
         "/FileName=out.x/ShowFile=1/PrintFile=1/GoToFirstRecord=0/CurrentRecordOnly=1/"
         "ExportRecCount=7/SkipRecCount=8/AllowCaptions=0/"
         "/[FORMATS]/Integer=0i/Float=0f/Date=d/Time=t/DateTime=dt/Currency=0c/BooleanTrue=Y/"
         "BooleanFalse=N/NullString=\" \"/"
         "/[USER_FORMATS]/Price=0.00/Id=/"
         "/[FIELDS]/field0=Price/field1=Id/";
}
constexpr const char* LinesPart =
    "/[HEADER]/line0=H1/line1=/line2=H3/"
    "/[FOOTER]/line0=F1/";
constexpr const char* CaptionsPart = "/[CAPTIONS]/Price=In EUR/Id=/";
constexpr const char* AlignPart = "/[ALIGN]/Price=center/";
constexpr const char* WidthPart = "/[WIDTH]/Price=9/Id=-1/";
constexpr const char* RTFPart =
    "/[RTF]/DefFontName=Courier/DefFontBold=1/DefFontItalic=0/DefFontUnderline=1/"
    "DefFontStrikeOut=0/DefFontSize=11/DefFontColor=clRed/DefFontCharset=204/"
    "HeaderFontName=Symbol/HeaderFontBold=0/HeaderFontItalic=1/HeaderFontUnderline=0/"
    "HeaderFontStrikeOut=1/HeaderFontSize=14/HeaderFontColor=$00123456/HeaderFontCharset=2/"
    "PageOrientation=1/";
constexpr const char* RTFValues =
    "RTFOptions.DefaultFont.Name=Courier RTFOptions.DefaultFont.Style=[fsBold,fsUnderline] "
    "RTFOptions.DefaultFont.Size=11 RTFOptions.DefaultFont.Color=clRed "
    "RTFOptions.DefaultFont.Charset=204 RTFOptions.HeaderFont.Name=Symbol "
    "RTFOptions.HeaderFont.Style=[fsItalic,fsStrikeOut] RTFOptions.HeaderFont.Size=14 "
    "RTFOptions.HeaderFont.Color=$00123456 RTFOptions.HeaderFont.Charset=2 "
    "RTFOptions.PageOrientation=poLandscape";

struct TFileCase {
  TAllowedExport Kind;
  std::string Part;    // behind CommonPart
  const char* Values;  // of published properties
};

// clang-format off
const TFileCase FileCases[] = {
    {aeXLS, std::string(LinesPart) + CaptionsPart + WidthPart +
         "/[XLS]/PageHeader=PH/PageFooter=PF/SheetTitle=Sales/StripStyle=2/" +
         CellFormat("XLS_FIELD_PRICE", "Pf", "Aggregate=2/") +
         CellFormat("XLS_FIELD_GRÖSSE", "Gf", "Aggregate=1/") +
         CellFormat("XLS_OPTION_HEADER", "Hf") + CellFormat("XLS_OPTION_CAPTION", "Cf") +
         CellFormat("XLS_OPTION_AGGREGATE", "Af") + CellFormat("XLS_OPTION_FOOTER", "Ff") +
         CellFormat("XLS_STYLE_ITEM_1", "S1") + CellFormat("XLS_STYLE_ITEM_2", "S2") +
         CellFormat("XLS_STYLE_ITEM_3", "S3"),
     "XLSOptions.PageHeader=PH XLSOptions.PageFooter=PF XLSOptions.SheetTitle=Sales "
     "XLSStripStyle=ssRow XLSOptions.HeaderFormat.Font.Name=Hf "
     "XLSOptions.CaptionsFormat.Font.Name=Cf XLSOptions.AggregateFormat.Font.Name=Af "
     "XLSOptions.FooterFormat.Font.Name=Ff"},
    {aeWord, std::string(LinesPart) + CaptionsPart + AlignPart + WidthPart + RTFPart, RTFValues},
    {aeRTF, std::string(LinesPart) + CaptionsPart + AlignPart + WidthPart + RTFPart, RTFValues},
    {aeHTML, std::string(LinesPart) + CaptionsPart + AlignPart +
         "/[HTML]/Title=T/CSS=1/CSSFile=a.css/FileRecCount=3/GenerateIndex=1/FontName=Verdana/"
         "BackgroundFile=b.png/BodyAdvanced=x=1/CellPadding=5/CellSpacing=6/BorderWidth=7/"
         "TableAdvanced=y=2/BackgroundColor=clRed/FontColor=clBlue/HeadBackgroundColor=clLime/"
         "HeadFontColor=clAqua/OddRowBackgroundColor=clTeal/EvenRowBackgroundColor=clNavy/"
         "DataFontColor=clYellow/LinkColor=clOlive/VLinkColor=clGray/ALinkColor=$000A0B0C/",
     "Title=T HTMLUsingCSS=usExternal HTMLCSSFileName=a.css HTMLMaxRecords=3 "
     "HTMLGenerateIndex=true HTMLOptions.TextFont.Name=Verdana "
     "HTMLOptions.BackgroundFileName=b.png HTMLTableOptions.CellPadding=5 "
     "HTMLTableOptions.CellSpacing=6 HTMLTableOptions.Border=7 HTMLOptions.BackgroundColor=clRed "
     "HTMLOptions.TextFont.Color=clBlue HTMLTableOptions.HeadersRowBgColor=clLime "
     "HTMLTableOptions.HeadersRowFontColor=clAqua HTMLTableOptions.OddRowBgColor=clTeal "
     "HTMLTableOptions.TableBgColor=clNavy HTMLTableOptions.TableFontColor=clYellow "
     "HTMLOptions.LinkColor=clOlive HTMLOptions.VLinkColor=clGray "
     "HTMLOptions.ALinkColor=$000A0B0C HTMLTemplate=htCustom"},
    {aeXML, std::string(CaptionsPart) + "/[XML]/Standalone=0/Encoding=windows-1252/",
     "XMLOptions.StandAlone=false XMLOptions.Encoding=windows-1252"},
    {aeDBF, CaptionsPart, "FileName=out.x ShowFile=true PrintFile=true GoToFirstRecord=false "
     "CurrentRecordOnly=true ExportRecCount=7 SkipRecCount=8 AllowCaptions=false "
     "Formats.IntegerFormat=0i Formats.FloatFormat=0f Formats.DateFormat=d Formats.TimeFormat=t "
     "Formats.DateTimeFormat=dt Formats.CurrencyFormat=0c Formats.BooleanTrue=Y "
     "Formats.BooleanFalse=N"},
    {aeTXT, std::string(LinesPart) + CaptionsPart + AlignPart + WidthPart +
         "/[TXT]/AutoCalcColWidth=0/Spacing=4/",
     "AutoCalcColWidth=false TXTSpacing=4"},
    {aeCSV, std::string(LinesPart) + CaptionsPart + "/[CSV]/QuoteStrings=0/Comma=\"\t\"/",
     "CSVQuoteStrings=false CSVComma=#9"},
    {aeDIFF, std::string(LinesPart) + CaptionsPart, ""},
    {aeSylk, std::string(LinesPart) + CaptionsPart, ""},
    {aeLaTeX, std::string(LinesPart) + CaptionsPart, ""},
    {aeSQL, std::string(LinesPart) + "/[SQL]/TableName=T/CreateTable=1/CommitRecCount=5/"
         "CommitAfterScript=1/CommitStatement=COMMIT;/StatementTerm=%/",
     "SQLTableName=T SQLCreateTable=true SQLCommitRecCount=5 SQLCommitAfterScript=true "
     "SQLCommitStatement=COMMIT; SQLStatementTerm=%"},
    {aeClipboard, std::string(LinesPart) + CaptionsPart, ""},
};
// clang-format on

/// The published properties of `Values` as they are now.
std::string ValuesOf(TNorvaDialog& Dialog, const char* Values) {
  std::istringstream words(Values);
  std::string text;
  for (std::string word; words >> word;) {
    const std::string path = word.substr(0, word.find('='));
    const TPropertyPath at = FindProperty(Dialog, path);
    if (!at.Property) return "no property " + path;
    text += (text.empty() ? "" : " ") + path + "=" + at.Property->Get(*at.Object);
  }
  return text;
}

class NorvaDialogTest : public testing::Test {
 protected:
  const TTempFolder Folder;

  std::string Saved(TNorvaDialog& Dialog) const {
    Dialog.SaveExportOptions(Folder.Path("saved.ini"));
    return Folder.Read("saved.ini");
  }
  void Load(TNorvaDialog& Dialog, const std::string& Text) const {
    Dialog.LoadExportOptions(Folder.Write("loaded.ini", Text));
  }
};

TEST_F(NorvaDialogTest, EveryKeyOfEveryFormatIsLoadedAndSavedInOrder) {
  for (const TFileCase& c : FileCases) {
    SCOPED_TRACE(EnumToStr(c.Kind));
    const std::string text = Lines(CommonPart(c.Kind) + c.Part);
    TNorvaDialog dialog;
    Load(dialog, text);
    EXPECT_EQ(Saved(dialog), text);
    EXPECT_EQ(dialog.Formats.NullString, " ");
    EXPECT_EQ(ValuesOf(dialog, c.Values), c.Values);

    // The way over an exporter loses nothing either.
    const std::unique_ptr<TNorva> exporter = dialog.CreateExporter();
    TNorvaDialog other;
    other.ExportType = c.Kind == aeWord ? aeWord : aeXLS;
    other.Assign(*exporter);
    if (c.Kind == aeClipboard) other.FileName = "out.x", other.ShowFile = other.PrintFile = true;
    EXPECT_EQ(Saved(other), text);
  }
}

TEST_F(NorvaDialogTest, AFileHoldsTheChosenFormatAndTheShownPagesOnly) {
  TNorvaDialog dialog;
  dialog.Header = {"H"};
  dialog.Captions = {"Id=No"};
  dialog.ExportedFields = {"Id"};
  dialog.ExportType = aeHTML;
  EXPECT_NE(Saved(dialog).find("[HTML]"), std::string::npos);
  dialog.ExportType = aeSQL;
  dialog.CommonOptions = {};
  Saved(dialog);
  EXPECT_EQ(TIniFile(Folder.Path("saved.ini")).ReadSections().Text(),
            Lines({"GENERAL", "FIELDS", "SQL"}));
}

TEST_F(NorvaDialogTest, WhatAFileDoesNotHoldStays) {
  TNorvaDialog dialog;
  Set(dialog, "ExportType=aeHTML SkipRecCount=3 HTMLTemplate=htGray");
  dialog.HTML.TableOptions.Border = 5;
  dialog.Header = {"H"};
  dialog.Captions = {"id=old", "Name=Who"};
  const std::string before = ValuesOf(dialog, "HTMLTemplate HTMLOptions.LinkColor");
  Load(dialog,
       "[GENERAL]\nExportType=3\nMore=1\n[CAPTIONS]\nID=No\n[HTML]\nCellPadding=9\n[Own]\n");
  EXPECT_EQ(ValuesOf(dialog, "HTMLTemplate HTMLOptions.LinkColor"), before);
  EXPECT_EQ(ValuesOf(dialog, "SkipRecCount HTMLTableOptions.Border HTMLTableOptions.CellPadding"),
            "SkipRecCount=3 HTMLTableOptions.Border=5 HTMLTableOptions.CellPadding=9");
  EXPECT_EQ(dialog.Header.Text() + dialog.Captions.Text(), Lines({"H", "ID=No", "Name=Who"}));
  Load(dialog, "[HTML]\nCellPadding=1\n");  // no kind of its own: a workbook
  EXPECT_EQ(ValuesOf(dialog, "ExportType HTMLTableOptions.CellPadding"),
            "ExportType=aeXLS HTMLTableOptions.CellPadding=9");
}

struct TBadFile {
  const char *Text, *Section, *Key, *Value, *Expected;
};
const TBadFile BadFiles[] = {
    {"[GENERAL]/ExportType=13",                         "GENERAL",      "ExportType",      "13",      "one of 0, 2, 3, 6, 7, 8, 11"},
    {"[GENERAL]/ExportType=1",                          "GENERAL",      "ExportType",      "1",       "one of 0, 2, 3, 6, 7, 8, 11"},
    {"[GENERAL]/SkipRecCount=-1",                       "GENERAL",      "SkipRecCount",    "-1",
     "a whole number from 0 to 2147483647"                                                                                         },
    {"[GENERAL]/ShowFile=maybe",                        "GENERAL",      "ShowFile",        "maybe",   "1 or 0"                     },
    {"[GENERAL]/ExportType=2/[RTF]/PageOrientation=2",  "RTF",          "PageOrientation", "2",
     "a number from 0 to 1"                                                                                                        },
    {"[GENERAL]/ExportType=2/[RTF]/DefFontCharset=256", "RTF",          "DefFontCharset",  "256",
     "a whole number from 0 to 255"                                                                                                },
    {"[GENERAL]/ExportType=3/[HTML]/LinkColor=reddish", "HTML",         "LinkColor",       "reddish",
     "a colour as $00BBGGRR, #RRGGBB or a standard name"                                                                           },
    {"[GENERAL]/ExportType=7/[CSV]/Comma=;;",           "CSV",          "Comma",           ";;",      "one character"              },
    {"[WIDTH]/Price=wide",                              "WIDTH",        "Price",           "wide",
     "a whole number from -2147483648 to 2147483647"                                                                               },
    {"[XLS_FIELD_ID]/Aggregate=9",                      "XLS_FIELD_ID", "Aggregate",       "9",       "a number from 0 to 4"       },
};

TEST_F(NorvaDialogTest, AValueThatCannotBeIsNamed) {
  for (const TBadFile& c : BadFiles) {
    TNorvaDialog dialog;
    dialog.AllowedExports = {aeXLS, aeRTF, aeHTML, aeTXT, aeCSV, aeDIFF, aeSQL};
    EXPECT_EQ(ErrorText<EIniError>([&] { Load(dialog, Lines(c.Text)); }),
              Format(MsgIniValue, c.Section, c.Key, c.Value, c.Expected));
  }
  TNorvaDialog dialog;
  EXPECT_EQ(ErrorText<EFOpenError>([&] { dialog.LoadExportOptions(Folder.Path("no.ini")); }),
            "Cannot open \"" + Folder.Path("no.ini") + "\": No such file or directory");
}

TEST_F(NorvaDialogTest, AFailedSaveLeavesTheOldFile) {
  TNorvaDialog dialog;
  const std::string old = Saved(dialog);
  dialog.FileName = "other";
  dialog.ColumnsWidth = {"Id=5", "Price=wide"};
  EXPECT_EQ(ErrorText<EConvertError>([&] { Saved(dialog); }),
            "\"wide\" is not a valid integer value");
  dialog.ColumnsWidth.Clear();
  dialog.Footer = {"two\nlines"};
  EXPECT_EQ(ErrorText<EIniError>([&] { Saved(dialog); }),
            Format(MsgIniLineBreak, "FOOTER", "line0"));
  EXPECT_EQ(Folder.Read("saved.ini"), old);
}

TEST_F(NorvaDialogTest, ExecuteLoadsExportsAndSaves) {
  TSources sources(esDataSet);
  TNorvaDialog dialog;
  dialog.DataSet = &sources.Set;
  Set(dialog, "ExportType=aeCSV CSVComma=; AutoLoadOptions=true AutoSaveOptions=true");
  dialog.FileName = Folder.Path("people.csv");
  dialog.OptionsFileName = Folder.Path("o.ini");
  int created = 0;
  dialog.OnCreateExporter = [&](TObject& sender, TNorva& exporter) {
    EXPECT_EQ(&sender, &dialog);
    exporter.OnEndExport = [&](TObject&) { ++created; };
  };
  dialog.Execute();  // there is no file to load yet
  EXPECT_EQ(Folder.Read("people.csv").substr(0, 17), "\"Id\";\"Full name\";");
  EXPECT_NE(Folder.Read("o.ini").find("Comma=;"), std::string::npos);
  Folder.Write("o.ini", "[GENERAL]\nExportType=7\nAllowCaptions=0\n[CSV]\nComma=|\n");
  dialog.Execute();
  EXPECT_EQ(Folder.Read("people.csv").substr(0, 16), "\"1\"|\"Ann\"|\"Ulm\"|");
  EXPECT_EQ(created, 2);

  dialog.AllowedExports = {aeXLS};
  dialog.AutoLoadOptions = false;
  EXPECT_EQ(ErrorText<Exception>([&] { dialog.Execute(); }), Format(MsgExportNotAllowed, "aeCSV"));
  EXPECT_EQ(ErrorText<EConvertError>([&] { dialog.Assign(TStringList()); }),
            "A TStringList cannot be assigned to a TNorvaDialog");
}

TEST_F(NorvaDialogTest, AnExporterKeepsItsOwnLinesWhereNoneAreGiven) {
  TNorvaDialog dialog;
  dialog.ExportType = aeHTML;
  EXPECT_EQ(dialog.CreateExporter()->Header.Text(), "<br>\r\n");
  dialog.Assign(*dialog.CreateExporter());
  EXPECT_TRUE(dialog.Header.Empty());
}

TEST_F(NorvaDialogTest, PublishesDefaultsAndTheWholeFormatWithoutTwins) {
  TNorvaDialog dialog;
  EXPECT_EQ(ChangedProperties(dialog), "");
  EXPECT_EQ(ValuesOf(dialog,
                     "ExportType CommonOptions OptionsFileName AutoLoadOptions "
                     "AutoSaveOptions SaveLoadButtons XLSStartDataCol ClipboardViewer"),
            "ExportType=aeXLS CommonOptions=[coFields,coFormats,coColons,coCaptions,coOptions] "
            "OptionsFileName= AutoLoadOptions=false AutoSaveOptions=false SaveLoadButtons=false "
            "XLSStartDataCol=0 ClipboardViewer=Clipbrd.exe");
  EXPECT_EQ(dialog.AllowedExports.Bits(), 0x1FFFU);
  EXPECT_FALSE(dialog.Properties().Find("XLSFileName") || dialog.Properties().Find("HTMLTitle"));

  // A form stores them.
  Set(dialog, "ClipboardExportType=etFixed");
  dialog.XLS.Options.PageHeader = "P";
  TNorvaDialog other;
  LoadComponent(SaveComponent(dialog), other);
  EXPECT_EQ(other.Clipboard.ExportType(), etFixed);
  EXPECT_EQ(other.XLS.Options.PageHeader, "P");
}

}  // namespace
}  // namespace norva
