#include <tests/tools/Tool.h>

#include <norva/platform/IniFile.h>

namespace norva::tests {
namespace {

class OptionsTest : public ToolTest {};

/// Exports of every format, with settings of its own.
const char* const Exports[] = {
    "txt --set TXTSpacing=3 --set AutoCalcColWidth=false --width name=12 --align name=right",
    "csv --null -- --set CSVComma=#9 --set CSVQuoteStrings=false",
    "dif",
    "sylk --no-captions --null ?",
    "xls --set Options.PageHeader=P --set Options.SheetTitle=Items --width name=20",
    "xls --set Options.CaptionsFormat.Font.Color=clrRed --set Options.FooterFormat.Font.Size=20",
    "html --set HTMLTemplate=htGray --set HTMLOptions.LinkColor=clRed --title Items --align "
    "id=left",
    "html --set TableOptions.Border=3 --set HTMLOptions.TextFont.Name=Verdana",
    "xml --set Options.StandAlone=false --set Options.Encoding=utf-8",
    "rtf --set Options.PageOrientation=poLandscape --set Options.HeaderFont.Size=14 --width id=9",
    "latex --footer \\relax",
    "dbf --set Formats.FloatFormat=0.0",
    "sql --null NIL --set TableName=t --set CreateTable=true --set CommitRecCount=1 --set "
    "StatementTerm=%",
    "clipboard --header H",
};

TEST_F(OptionsTest, ASavedRunIsRepeatedByteForByte) {
  for (const char* const words : Exports) {
    SCOPED_TRACE(words);
    const TArguments shared = Words("export shop.db --table items --locale invariant");
    const TArguments given = Words(
        "--skip 1 --limit 1 --user-format price=0.000 --caption id=No "
        "--field price --field name --field id --field paid "
        "-o a --save-options o.ini --format " +
        std::string(words));
    const TRun saving = Run(shared + given);
    ASSERT_EQ(saving.Code, 0) << saving.Err;
    const TRun loading = Run(shared + Words("--options o.ini -o b -q"));
    ASSERT_EQ(loading.Code, 0) << loading.Err;
    EXPECT_EQ(Folder.Read("b"), Folder.Read("a"));
    // Saved once more, the file is the same but for the output.
    EXPECT_EQ(Run(shared + Words("--options o.ini --save-options p.ini -q")).Code, 0);
    EXPECT_EQ(Folder.Read("p.ini"), Folder.Read("o.ini"));
  }
}

struct TPrecedence {
  const char *Arguments, *Output, *Begins;
};
const TPrecedence Precedences[] = {
    {"",                                       "stored.txt", "\"No\";\"name\";"                 }, // the file says all
    {"-o x",                                   "x",          "\"No\";"                          },
    {"-o x.slk",                               "x.slk",      "ID;P"                             },
    {"-o x.slk --format csv",                  "x.slk",      "\"No\";"                          },
    {"-o x --set CSVComma=|",                  "x",          "\"No\"|"                          },
    {"-o x --caption id=Nr",                   "x",          "\"Nr\";\"name\";"                 },
    {"-o x --field name",                      "x",          "\"name\";\r\n\"Tea"               },
    {"-o x --set AllowCaptions=true --skip 1", "x",          "\"No\";\"name\";\r\n\"1,234\";\"C"},
};

TEST_F(OptionsTest, FlagsBesideAnOptionsFileWin) {
  Folder.Write("o.ini",
               "[GENERAL]\nExportType=7\nFileName=stored.txt\n[FIELDS]\nfield0=id\n"
               "field1=name\n[CAPTIONS]\nid=No\n[CSV]\nComma=;\n");
  for (const TPrecedence& c : Precedences) {
    SCOPED_TRACE(c.Arguments);
    const std::string text =
        Exported(Words("--table items --options o.ini " + std::string(c.Arguments)), c.Output);
    EXPECT_EQ(text.substr(0, std::string_view(c.Begins).size()), c.Begins);
  }
  Folder.Write("w.ini", "[GENERAL]\nExportType=1\n");
  Exported(Words("--table items --options w.ini -o letter.doc --save-options v.ini"));
  EXPECT_EQ(TIniFile(Folder.Path("v.ini")).ReadString("GENERAL", "ExportType", ""), "1");
}

TEST_F(OptionsTest, NamesWhatTheFileCannotHold) {
  const auto note = [this](const char* words) {
    const TRun run =
        Run(Words("export shop.db --table items --save-options o.ini -o " + std::string(words)));
    return run.Err.substr(std::min(run.Err.size(), run.Err.find('\n') + 1));
  };
  EXPECT_EQ(note("x.csv --set CSVComma=;"), "");
  EXPECT_EQ(note("x.html --set HTMLTemplate=htGray"), "");
  const std::string begin =
      "norva: Note: \"o.ini\" cannot hold these settings; give them again beside it: ";
  EXPECT_EQ(note("x.xml --set Options.Version=1.1 --title T --locale invariant --code-page 1252"),
            begin + "Options.Version, Title, --locale, --code-page\n");
  EXPECT_EQ(note("x.xls --set Options.DataFormat.Font.Size=9 --align id=left"),
            begin + "Options.DataFormat.Font.Size, --align\n");
}

struct TBadRun {
  const char* Arguments;
  int Code;
  const char* Message;
};
const TBadRun BadRuns[] = {
    {"--options no.ini",                  1, "Cannot open \"no.ini\": No such file or directory"},
    {"--options type.ini",                1,
     "Section \"GENERAL\", key \"ExportType\": \"99\" cannot be used: give one of 0, 1, 2, 3, 4, "
     "5, 6, 7, 8, 9, 10, 11, 12"                                                                },
    {"--options field.ini",               1,
     "--options: field \"nmae\" is not in table \"items\" in \"shop.db\"; nearest: \"name\""    },
    {"-o x.csv --save-options ./shop.db", 2,
     "--save-options \"./shop.db\" is the database; give another file"                          },
    {"-o x.csv --save-options /dev/zero", 2,
     "--save-options \"/dev/zero\" is no regular file; give another file"                       },
    {"-o x.csv --save-options x.csv",     2,
     "--save-options \"x.csv\" is the output; give another file"                                },
};

TEST_F(OptionsTest, BadFilesAreNamedAndNothingIsWritten) {
  Folder.Write("type.ini", "[GENERAL]\nExportType=99\n");
  Folder.Write("field.ini", "[GENERAL]\nFileName=x.xls\n[WIDTH]\nnmae=3\n");
  for (const TBadRun& c : BadRuns) {
    const TRun run = Run(Words("export shop.db --table items " + std::string(c.Arguments)));
    EXPECT_EQ(run.Code, c.Code);
    EXPECT_EQ(run.Err, "norva: " + std::string(c.Message) + "\n");
  }
  EXPECT_EQ(Files(), "field.ini type.ini");
}

TEST_F(OptionsTest, TheExampleFits) {
  std::ifstream script(NORVA_EXAMPLES "/shop.sql");
  MakeDatabase("sales.db", std::string(std::istreambuf_iterator<char>(script), {}));
  const TRun run = Run({"export", "sales.db", "--table", "sales", "-q", "--options",
                        NORVA_EXAMPLES "/shop-export.ini"});
  EXPECT_EQ(run.Code, 0) << run.Err;
  const std::string title("S\0a\0l\0e\0s\0 \0o\0f\0", 16);  // texts are UTF-16 there
  EXPECT_NE(Folder.Read("sales.xls").find(title), std::string::npos);
}

}  // namespace
}  // namespace norva::tests
