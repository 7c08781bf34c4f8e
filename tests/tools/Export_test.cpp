#include <tests/tools/Tool.h>

#include <norva/formats/text/Norvaascii.h>
#include <norva/formats/text/Norvaclipboard.h>
#include <norva/platform/Streams.h>
#include <norva/sources/sqlite/SqliteDataSet.h>

namespace norva::tests {
namespace {

/// Has the tool find the locale de_DE in one character set, whatever the machine has installed.
class TGermanScope {
 public:
  TGermanScope(const TTempFolder& Folder, const std::string& Charset)
      : Locales_("LOCPATH", Folder.Path().c_str()),
        Leaks_("LSAN_OPTIONS", LeakOptions(Folder).c_str()) {
    const std::string command =
        "localedef -i de_DE -f " + Charset + " '" + Folder.Path("de_DE." + Charset) + "'";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
  }

 private:
  // newlocale of the C library never frees the copy that it makes of LOCPATH.
  static std::string LeakOptions(const TTempFolder& Folder) {
    return "print_suppressions=0:suppressions=" + Folder.Write("leaks", "leak:argz_add_sep\n");
  }

  const TEnvironmentScope Locales_, Leaks_;
};

class ExportTest : public ToolTest {
 protected:
  /// What the library writes without the tool.
  std::string Direct(TNorva& Exporter) const {
    TSqliteDataSet items(Folder.Path("shop.db"), TSqliteTable{"items"});
    Exporter.DataSet = &items;
    TMemoryStream stream;
    Exporter.ExportToStream(stream);
    return stream.Bytes();
  }
  std::string DirectAscii(TNorvaASCIIType Type) const {
    TNorvaASCII exporter;
    exporter.SetExportType(Type);
    return Direct(exporter);
  }
  std::string DirectClipboard() const {
    TNorvaClipboard exporter;
    return Direct(exporter);
  }
};

TEST_F(ExportTest, WritesWhatTheLibraryWrites) {
  struct TCase {
    const char *Format, *FileName;
    std::string Expected;
  };
  const TCase cases[] = {
      {"txt",       "x.txt", DirectAscii(etTXT) },
      {"csv",       "x.CSV", DirectAscii(etCSV) },
      {"dif",       "x.dif", DirectAscii(etDIF) },
      {"sylk",      "x.slk", DirectAscii(etSYLK)},
      {"Clipboard", "x",     DirectClipboard()  },
  };
  for (const TCase& c : cases) {
    SCOPED_TRACE(c.Format);
    const std::string table = "--table items ";
    EXPECT_EQ(Exported(Words(table + "-o " + c.FileName + " --format " + c.Format), c.FileName),
              c.Expected);
    EXPECT_EQ(Exported(Words(table + "-o - --format " + c.Format)), c.Expected);
    if (std::string_view(c.FileName) == "x") continue;  // says no format
    EXPECT_EQ(Exported(Words(table + "-o " + c.FileName), c.FileName), c.Expected);
  }
  EXPECT_EQ(Files(), "x x.CSV x.dif x.slk x.txt");
}

TEST_F(ExportTest, SaysWhatItHasDone) {
  const TRun file = Run(Words("export shop.db --table items -o x.csv"));
  EXPECT_EQ(Timeless(file.Err), "norva: x.csv: 3 records, 5 columns, " +
                                    std::to_string(Folder.Read("x.csv").size()) + " bytes in T\n");
  const TRun output =
      Run(Words("export shop.db --table items --field id --limit 1 -o - --format csv"));
  EXPECT_EQ(output.Out, "\"id\",\r\n\"7\",\r\n");
  EXPECT_EQ(Timeless(output.Err), "norva: standard output: 1 record, 1 column, 13 bytes in T\n");
}

struct TOptionCase {
  TArguments Options;
  const char* Expected;  // `/` for each line end
};

std::string Slashed(std::string Text) {
  for (std::size_t at; (at = Text.find("\r\n")) != std::string::npos;) Text.replace(at, 2, "/");
  return Text;
}

const TOptionCase CsvCases[] = {
    {{},                                                                               "\"id\",\"name\",/\"7\",\"Tea\",/\"1,234\",\"C \"\"b\"\"\",/\"-3\",\"Öl;x\",/"},
    {{"--limit", "1", "--skip", "1"},                                                  "\"id\",\"name\",/\"1,234\",\"C \"\"b\"\"\",/"                                 },
    {{"--limit", "9", "--skip", "2"},                                                  "\"id\",\"name\",/\"-3\",\"Öl;x\",/"                                          },
    {{"--limit=0", "--skip=2"},                                                        "\"id\",\"name\",/\"-3\",\"Öl;x\",/"                                          },
    {{"--limit", "1", "--no-captions"},                                                "\"7\",\"Tea\",/"                                                              },
    {{"--limit", "1", "--caption", "ID=No=1", "--caption", "name="},                   "\"No=1\",,/\"7\",\"Tea\",/"                                                   },
    {{"--limit", "1", "--caption", "id=a", "--caption", "Id=b"},                       "\"b\",\"name\",/\"7\",\"Tea\",/"                                              },
    {{"--limit", "1", "--user-format", "id=000"},                                      "\"id\",\"name\",/\"007\",\"Tea\",/"                                           },
    {{"--limit", "1", "--header", "x", "--footer", "y", "--title", "t"},
     "\"id\",\"name\",/\"7\",\"Tea\",/"                                                                                                                               }, // CSV has none of them

  // --set: a value of every kind.
    {{"--limit", "1", "--set", "CSVComma=;"},                                          "\"id\";\"name\";/\"7\";\"Tea\";/"                                             },
    {{"--limit", "1", "--set", "csvcomma=#9"},                                         "\"id\"\t\"name\"\t/\"7\"\t\"Tea\"\t/"                                         },
    {{"--limit", "1", "--set", "CSVComma=="},                                          "\"id\"=\"name\"=/\"7\"=\"Tea\"=/"                                             },
    {{"--limit", "1", "--set", "CSVQuoteStrings=false"},                               "id,name,/7,Tea,/"                                                             },
    {{"--set", "SkipRecCount=1", "--set", "ExportRecCount=1"},
     "\"id\",\"name\",/\"1,234\",\"C \"\"b\"\"\",/"                                                                                                                   },
    {{"--set", "CurrentRecordOnly=true"},                                              "\"id\",\"name\",/\"7\",\"Tea\",/"                                             },
    {{"--limit", "1", "--set", "Formats.IntegerFormat=0.00"},
     "\"id\",\"name\",/\"7.00\",\"Tea\",/"                                                                                                                            },
    {{"--limit", "1", "--set", "AllowCaptions=false"},                                 "\"7\",\"Tea\",/"                                                              },
    {{"--limit", "1", "--set", "ExportType=etSYLK", "--no-captions", "--field", "id"},
     "ID;PVASCIIEXPORT/C;X1;Y0;K\"7\"/C;X2;Y0;K\"Tea\"/C;X3;Y0;K\"7\"/E/"                                                                                             },
};

TEST_F(ExportTest, OptionsOfCsv) {
  for (const TOptionCase& c : CsvCases) {
    std::string trace;
    for (const std::string& option : c.Options) trace += option + " ";
    SCOPED_TRACE(trace);
    EXPECT_EQ(Slashed(Exported(Words("--table items --field id --field name --format csv -o -") +
                               c.Options)),
              c.Expected);
  }
}

const TOptionCase TextCases[] = {
    {{},                                                                 "name     day        /Tea      2024-01-31 /C \"b\"               /Öl;x     1999-12-31 //"},
    {{"--width", "name=7", "--align", "name=right", "--limit", "1"},
     "   name day        /    Tea 2024-01-31 //"                                                                                                                   },
    {{"--align", "day=center", "--width", "day=14", "--limit", "1"},
     "name          day       /Tea        2024-01-31   //"                                                                                                         },
    {{"--set", "TXTSpacing=3", "--limit", "1"},
     "name       day          /Tea        2024-01-31   //"                                                                                                         },
    {{"--header", "a", "--header", "", "--footer", "z", "--limit", "1"},
     "a///name     day        /Tea      2024-01-31 //z/"                                                                                                           },
    {{"--set", "Title=T", "--limit", "1", "--no-captions"},
     "T/--------------------------------------------------------------------------------//"
     "Tea      2024-01-31 //"                                                                                                                                      },
};

TEST_F(ExportTest, OptionsOfText) {
  for (const TOptionCase& c : TextCases) {
    std::string trace;
    for (const std::string& option : c.Options) trace += option + " ";
    SCOPED_TRACE(trace);
    EXPECT_EQ(Slashed(Exported(Words("--table items --field name --field day --format txt -o - "
                                     "--null=") +
                               c.Options)),
              c.Expected);
  }
}

TEST_F(ExportTest, NullTextAndTheOrderOfFields) {
  EXPECT_EQ(Slashed(Exported(Words("--table items --field day --field price --skip 1 --limit 1 "
                                   "-o - --format csv --no-captions"))),
            "null,null,/");
  EXPECT_EQ(Slashed(Exported(Words("--table items --field day --field price --skip 1 --limit 1 "
                                   "-o - --format csv --no-captions --null n/a"))),
            "n/a,n/a,/");
}

TEST_F(ExportTest, QueriesAndTheOnlyTable) {
  EXPECT_EQ(Exported({"--query", "SELECT 1+1 AS two", "-o", "-", "--format", "csv"}),
            "\"two\",\r\n\"2\",\r\n");
  MakeDatabase("one.db",
               "CREATE TABLE t (a INT); INSERT INTO t VALUES (4);"
               "CREATE VIEW v AS SELECT 5;");
  EXPECT_EQ(Run(Words("export one.db -o - --format csv")).Out, "\"a\",\r\n\"4\",\r\n");
}

// Past 65,536 records the end of a source does not end these formats; the tool's limit does.
TEST_F(ExportTest, ManyRecordsEndWithTheLast) {
  const std::string query =
      "WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 65540) SELECT i FROM n";
  const TRun run = Run({"export", "shop.db", "--query", query, "-o", "x.slk", "--skip", "2"});
  EXPECT_EQ(run.Code, 0);
  EXPECT_EQ(run.Err.substr(0, 41), "norva: x.slk: 65,538 records, 1 column, 1");
  const std::string text = Folder.Read("x.slk");
  EXPECT_TRUE(text.ends_with("C;X1;Y65538;K\"65,540\"\r\nE\r\n")) << text.substr(text.size() - 80);
}

TEST_F(ExportTest, BlobsAreLeftOutAloudOrNamed) {
  const TRun run = Run(Words("export shop.db --table photos -o - --format csv"));
  EXPECT_EQ(run.Out, "\"id\",\"title\",\r\n\"1\",\"One\",\r\n");
  EXPECT_EQ(Timeless(run.Err),
            "norva: Left out, because blobs are exported only by name: small, large\n"
            "norva: standard output: 1 record, 2 columns, 27 bytes in T\n");
  EXPECT_EQ(Exported(Words("--table photos -o - --format csv --field small")),
            "\"small\",\r\n\"ab\",\r\n");
}

TEST_F(ExportTest, SkippingAllLeavesTheCaptions) {
  for (const char* skip : {"3", "2147483647"}) {
    const TRun run =
        Run(Words("export shop.db --table items --field id -o x.csv --skip ") + TArguments{skip});
    EXPECT_EQ(run.Code, 0);
    EXPECT_EQ(Timeless(run.Err),
              "norva: Note: --skip leaves none of the 3 records; only what surrounds them is "
              "written\nnorva: x.csv: 0 records, 1 column, 7 bytes in T\n");
    EXPECT_EQ(Folder.Read("x.csv"), "\"id\",\r\n");
  }
}

TEST_F(ExportTest, CodePages) {
  const std::string name = "--table items --field name --no-captions -o - --format csv --skip 2";
  EXPECT_EQ(Exported(Words(name)), "\"Öl;x\",\r\n");
  EXPECT_EQ(Exported(Words(name + " --code-page 1252")), "\"\xD6l;x\",\r\n");
  EXPECT_EQ(Exported(Words(name + " --code-page 850")), "\"\x99l;x\",\r\n");
  EXPECT_EQ(Exported(Words(name + " --code-page 1251 --on-unmappable replace")), "\"?l;x\",\r\n");
  // The arguments, too, are converted.
  EXPECT_EQ(
      Exported(Words("--table items --field name -o - --format csv --limit 1 --code-page 1252 "
                     "--caption name=Größe")),
      "\"Gr\xF6\xDF"
      "e\",\r\n\"Tea\",\r\n");
}

TEST_F(ExportTest, ArgumentsAreInTheShellsCharacterSet) {
  const TGermanScope latin(Folder, "ISO-8859-1");
  const TEnvironmentScope locale("LC_ALL", "de_DE.ISO-8859-1");
  EXPECT_EQ(Exported(Words("--table items --field name -o - --format csv --limit 1 "
                           "--set CSVComma=, --caption name=Gr\xF6\xDF"
                           "e")),
            "\"Größe\",\r\n\"Tea\",\r\n");
  EXPECT_EQ(Run(Words("export shop.db --table Gr\xF6\xDF -o x.csv")).Err.substr(0, 20),
            "norva: Table \"Gr\xF6\xDF\" ");
}

TEST_F(ExportTest, Locales) {
  const TGermanScope locales(Folder, "UTF-8");
  const std::string row =
      "--table items --field id --field price --field day --format csv -o - --no-captions ";
  const char* const german = "\"7\";\"4,50\";\"31.01.2024\";\r\n";
  const char* const invariant = "\"7\",\"4.50\",\"2024-01-31\",\r\n";
  EXPECT_EQ(Exported(Words(row + "--limit 1 --locale de_DE.UTF-8")), german);
  EXPECT_EQ(Exported(Words(row + "--limit 1")), invariant);  // the environment's, C
  const TEnvironmentScope environment("LC_ALL", "de_DE.UTF-8");
  EXPECT_EQ(Exported(Words(row + "--limit 1")), german);
  EXPECT_EQ(Exported(Words(row + "--limit 1 --locale invariant")), invariant);
}

// The database is read from where it is, though the files are made in another folder.
TEST_F(ExportTest, RelativePathsAndFoldersOfTheTarget) {
  std::filesystem::create_directory(Folder.Path("out"));
  EXPECT_EQ(Exported(Words("--table items --field id --limit 1 -o out/x.csv"), "out/x.csv"),
            "\"id\",\r\n\"7\",\r\n");
  EXPECT_EQ(Exported(Words("--table items --field id --limit 1 -o ") +
                         TArguments{Folder.Path("out/y.txt")},
                     "out/y.txt"),
            "             id \r\n              7 \r\n\r\n");
  EXPECT_EQ(Files(), "out");
}

TEST_F(ExportTest, TheNewFileHasTheModeOfTheUmask) {
  Folder.Write("x.csv", "old");
  Run(Words("export shop.db --table items -o x.csv"), [] { ::umask(027); });
  struct stat status;
  ASSERT_EQ(::stat(Folder.Path("x.csv").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0640u);
}

TEST_F(ExportTest, SymbolicLinksStayLinks) {
  Folder.Write("real.csv", "old");
  std::filesystem::create_symlink("real.csv", Folder.Path("link.csv"));
  std::filesystem::create_symlink("new.csv", Folder.Path("dangling.csv"));
  for (const char* link : {"link.csv", "dangling.csv"}) {
    Exported(Words("--table items --field id --limit 1 -o") + TArguments{link});
    EXPECT_TRUE(std::filesystem::is_symlink(Folder.Path(link)));
  }
  EXPECT_EQ(Folder.Read("real.csv"), "\"id\",\r\n\"7\",\r\n");
  EXPECT_EQ(Folder.Read("new.csv"), "\"id\",\r\n\"7\",\r\n");
}

TEST_F(ExportTest, PipesAreWrittenDirectly) {
  const std::string pipe = Folder.Path("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const pid_t child =
      Start(Words("export shop.db --table items --field id --limit 1 -o pipe "
                  "--format csv -q"));
  EXPECT_EQ(Folder.Read("pipe"), "\"id\",\r\n\"7\",\r\n");
  EXPECT_EQ(Wait(child).Code, 0);
  EXPECT_TRUE(std::filesystem::is_fifo(pipe));
}

TEST_F(ExportTest, FillsTheClipboard) {
  Folder.WriteProgram("xclip", "cat >clip");
  const std::string path = Folder.Path() + ":" + std::getenv("PATH");
  const TEnvironmentScope programs("PATH", path.c_str());
  const TEnvironmentScope display("DISPLAY", ":0"), wayland("WAYLAND_DISPLAY", nullptr);
  const TRun run = Run(Words("export shop.db --table items --format clipboard --code-page 1252"));
  EXPECT_EQ(run.Code, 0);
  EXPECT_EQ(Folder.Read("clip"), DirectClipboard());  // in UTF-8, whatever the export's page is
  EXPECT_EQ(Timeless(run.Err), "norva: clipboard: 3 records, 5 columns, " +
                                   std::to_string(DirectClipboard().size() - 1) + " bytes in T\n");
}

// The file in its place, not the one that was written, and only once it is there.
TEST_F(ExportTest, OpensAndPrintsTheFinishedFile) {
  for (const char* program : {"xdg-open", "lp"}) {
    Folder.WriteProgram(program,
                        "cp \"$1\" \"$0.file\"; echo \"$1\" >\"$0.part\"; "
                        "mv \"$0.part\" \"$0.name\"");
  }
  const std::string path = Folder.Path() + ":" + std::getenv("PATH");
  const TEnvironmentScope programs("PATH", path.c_str());
  Exported(Words("--table items --field id --limit 1 -o x.csv --open --set PrintFile=true"));
  for (const std::string program : {"xdg-open", "lp"}) {
    for (int i = 0; i < 500 && !std::filesystem::exists(Folder.Path(program + ".name")); ++i) {
      ::usleep(10000);  // the tool does not wait for them
    }
    EXPECT_EQ(Folder.Read(program + ".name"), Folder.Path("x.csv") + "\n");
    EXPECT_EQ(Folder.Read(program + ".file"), "\"id\",\r\n\"7\",\r\n");
  }
}

TEST_F(ExportTest, ProgressOnlyWhenWantedOrOnATerminal) {
  const std::string query =
      "WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 2048) SELECT i FROM n";
  const TArguments exporting = {"export", "shop.db", "--query", query, "-o", "x.csv"};
  EXPECT_EQ(Run(exporting).Err.find('\r'), std::string::npos);
  const std::string shown = Run(exporting + TArguments{"--progress"}).Err;
  EXPECT_EQ(shown.substr(0, 65),
            "\r[############------------] 50%  1,024 of 2,048 written, 0 s left");
  EXPECT_NE(shown.find("\nnorva: x.csv: 2,048 records"), std::string::npos);
  EXPECT_EQ(Run(exporting + TArguments{"--progress", "-q"}).Err, "");
}

}  // namespace
}  // namespace norva::tests
