#include <norva/core/Norvacommon.h>
#include <tests/tools/Tool.h>
#include <tools/norva/Formats.h>
#include <tools/norva/Nearest.h>

namespace norva::tests {
namespace {

class UsageTest : public ToolTest {
 protected:
  /// `Message` with the formats of this build for @names and @extensions.
  static std::string WithFormats(std::string Message) {
    std::vector<std::string> names, extensions;
    for (const tool::TFormat& format : tool::Formats()) {
      names.emplace_back(format.Name);
      if (!format.Extensions.empty()) extensions.emplace_back(format.Extensions);
    }
    Message = Replace(Message, "@names", tool::Joined(names));
    return Replace(Message, "@extensions", tool::Joined(extensions));
  }
};

struct TBadCall {
  const char* Arguments;
  const char* Message;
};

const TBadCall BadCalls[] = {
    {"",                                                                       "A subcommand is required; see `norva --help`"                                   },
    {"exprot",                                                                 "\"exprot\" is no command; nearest: \"export\""                                  },
    {"--bogus",                                                                "\"--bogus\" is no command; it has: export, columns, tables, formats, properties"},
    {"export",                                                                 "SOURCE is required; see `norva export --help`"                                  },
    {"export shop.db --tabel items",
     "--tabel is no option of `norva export`; nearest: \"--table\"; see `norva export --help`"                                                                  },
    {"export shop.db items",                                                   "\"items\" is one argument too many; see `norva export --help`"                  },
    {"export shop.db --table items -o x.csv --null",
     "--null needs a value; see `norva export --help`"                                                                                                          },
    {"export shop.db --table items --query x -o x.csv",
     "--table excludes --query; see `norva export --help`"                                                                                                      },
    {"export shop.db --progress --no-progress",
     "--progress excludes --no-progress; see `norva export --help`"                                                                                             },
    {"export shop.db -o x.csv",
     "\"shop.db\" has 5 tables; choose one with --table: empty, items, onlyblobs, photos, wrong"                                                                },
    {"export odbc:DSN=shop -o x.csv",
     "\"odbc:DSN=shop\": this build has no ODBC; give the path of an SQLite database file"                                                                      },

 // Format and output.
    {"export shop.db --table items",                                           "Give a format with --format: @names"                                            },
    {"export shop.db --table items -o -",                                      "Give a format with --format: @names"                                            },
    {"export shop.db --table items --format csv",
     "Give the file to write with -o, or -o - for standard output"                                                                                              },
    {"export shop.db --table items -o x.cvs",
     "The extension of \"x.cvs\" names no format; give one of @extensions, or --format"                                                                         },
    {"export shop.db --table items -o x --format pdf",
     "\"pdf\" is no format of this build; it has: @names"                                                                                                       },
    {"properties pdf",                                                         "\"pdf\" is no format of this build; it has: @names"                             },
    {"export shop.db --table items -o ./shop.db --format csv",
     "\"./shop.db\" is the database itself; give another file to write"                                                                                         },
    {"export shop.db --table items -o - --format csv --open",
     "--open needs a file: give -o a name that is neither standard output nor a device"                                                                         },
    {"export shop.db --table items --format clipboard --set PrintFile=true",
     "--print needs a file: give -o a name that is neither standard output nor a device"                                                                        },

 // Values.
    {"export shop.db --table items -o x.csv --limit -1",
     "--limit \"-1\": give a whole number from 0 to 2147483647"                                                                                                 },
    {"export shop.db --table items -o x.csv --limit 2147483648",
     "--limit \"2147483648\": give a whole number from 0 to 2147483647"                                                                                         },
    {"export shop.db --table items -o x.csv --skip 1x",
     "--skip \"1x\": give a whole number from 0 to 2147483647"                                                                                                  },
    {"export shop.db --table items -o x.csv --skip=",
     "--skip \"\": give a whole number from 0 to 2147483647"                                                                                                    },
    {"export shop.db --table items -o x.csv --caption name",                   "--caption \"name\": give NAME=TEXT"                                             },
    {"export shop.db --table items -o x.csv --user-format =0",
     "--user-format \"=0\": give NAME=PICTURE"                                                                                                                  },
    {"export shop.db --table items -o x.csv --width name=wide",
     "--width \"wide\": give a whole number from 0 to 2147483647"                                                                                               },
    {"export shop.db --table items -o x.csv --length name=-1",
     "--length \"-1\": give a whole number from 0 to 2147483647"                                                                                                },
    {"export shop.db --table items -o x.csv --align name=middle",
     "--align \"middle\": give left, center or right"                                                                                                           },
    {"export shop.db --table items -o x.csv --code-page 1259",
     "--code-page 1259 is not known; give one of: 437, 850, 866, 1250, 1251, 1252, 1253, 1254, "
     "1255, 1256, 1257, 1258, 65001"                                                                                                                            },
    {"export shop.db --table items -o x.csv --on-unmappable ignore",
     "--on-unmappable \"ignore\": give error or replace"                                                                                                        },
    {"export shop.db --table items -o x.csv --locale xx_YY",
     "--locale: Locale \"xx_YY\" is not installed on this system; `locale -a` lists those that "
     "are"                                                                                                                                                      },
    {"export shop.db --table items -o x.txt --code-page 1252 --title Łódź",
     "--title \"Łódź\": Character U+0141 cannot be written in code page 1252; change the text or "
     "give another --code-page"                                                                                                                                 },

 // --set.
    {"export shop.db --table items -o x.csv --set CSVComma",                   "--set \"CSVComma\": give NAME=VALUE"                                            },
    {"export shop.db --table items -o x.csv --set CSVCommas=;",
     "--set \"CSVCommas\": there is no such property; nearest: \"CSVComma\""                                                                                    },
    {"export shop.db --table items -o x.csv --set Formats.NulString=-",
     "--set \"Formats.NulString\": there is no such property; nearest: \"Formats.NullString\""                                                                  },
    {"export shop.db --table items --format clipboard --set TXTSpacing=1",
     "--set \"TXTSpacing\": there is no such property; nearest: \"Spacing\""                                                                                    },
    {"export shop.db --table items -o x.csv --set Formats=1",
     "--set \"Formats\": this is a group of properties; set one of them, such as "
     "Formats.IntegerFormat"                                                                                                                                    },
    {"export shop.db --table items -o x.csv --set Captions=id=No",
     "--set \"Captions\": this is a list of lines; use --caption"                                                                                               },
    {"export shop.db --table items -o x.csv --set DataSet=x",
     "--set \"DataSet\": a TDataSet cannot be given as text"                                                                                                    },
    {"export shop.db --table items -o x.csv --set OnEndExport=x",
     "--set \"OnEndExport\": a TNotifyEvent cannot be given as text"                                                                                            },
    {"export shop.db --table items -o x.csv --set CSVComma=;;",
     "--set: \";;\" is not a value of CSVComma: give one character, or # and its code from 0 to "
     "255"                                                                                                                                                      },
    {"export shop.db --table items -o x.csv --set CSVQuoteStrings=on",
     "--set: \"on\" is not a value of CSVQuoteStrings: give true or false"                                                                                      },
    {"export shop.db --table items -o x.csv --set ExportType=etPDF",
     "--set: \"etPDF\" is not a value of ExportType: give one of etTXT, etCSV, etDIF, etSYLK"                                                                   },
    {"export shop.db --table items -o x.txt --set TXTSpacing=two",
     "--set: \"two\" is not a value of TXTSpacing: give a whole number from -2147483648 to "
     "2147483647"                                                                                                                                               },
    {"export shop.db --table items -o x.txt --set SkipRecCount=-2",
     "--set SkipRecCount \"-2\": give a whole number from 0 to 2147483647"                                                                                      },
    {"export shop.db --table items -o x.txt --set ExportSource=esListView",
     "--set ExportSource=esListView: the source here is a data set, esDataSet"                                                                                  },
    {"export shop.db --query VALUES(1) -o x.sql",
     "A query has no name for the table that the script fills; give --set TableName=NAME"                                                                       },
    {"export shop.db --table items -o x.tex --code-page 65001",
     "LaTeX has no input encoding cp65001; give a --code-page of: 437, 850, 866, 1250, 1251, "
     "1252, 1255, 1256, 1257 (norva(1) has a way for UTF-8)"                                                                                                    },
    {"export shop.db --table items -o x.xls --set Options.SheetTitle=a[1]",
     "--set Options.SheetTitle=a[1]: give at most 31 characters, none of them / \\ : * ? [ ]"                                                                   },
    {"export shop.db --table items -o x.xls --set "
     "Options.SheetTitle=Łódź_6789012345678901234567890é2",           "--set Options.SheetTitle=Łódź_6789012345678901234567890é2: give at most 31 characters, none "
     "of them / \\ : * ? [ ]"                                                               },
};

TEST_F(UsageTest, BadArgumentsEndWith2AndSayWhatIsRight) {
  for (const TBadCall& call : BadCalls) {
    SCOPED_TRACE(call.Arguments);
    const TRun run = Run(Words(call.Arguments));
    EXPECT_EQ(run.Code, 2);
    EXPECT_EQ(run.Err, "norva: " + WithFormats(call.Message) + "\n");
    EXPECT_EQ(run.Out, "");
    EXPECT_EQ(Files(), "");
  }
}

TEST_F(UsageTest, PagesThatDoNotGoWithTheOutput) {
  const std::string severalFiles =
      "norva: These settings write several files, which standard output and devices cannot hold; "
      "give -o a file name\n";
  const auto error = [this](const char* words) {
    const TRun run = Run(Words("export shop.db --table items --format html -o ") + Words(words));
    EXPECT_EQ(run.Code, 2);
    return run.Err;
  };
  EXPECT_EQ(error("- --set MaxRecords=9"), severalFiles);
  EXPECT_EQ(error("/dev/null --set UsingCSS=usExternal"), severalFiles);
  EXPECT_EQ(
      error("a.b.html --set MaxRecords=9 --set GenerateIndex=true"),
      "norva: -o a.b.html: the links of an index lead nowhere when the name has more than the "
      "point of its extension; give another name\n");
  for (const std::string sheet : {"css/a.css", "../a.css", "/a.css", "a.html"}) {
    EXPECT_EQ(
        error(("out/a.html --set UsingCSS=usExternal --set CSSFileName=" + sheet).c_str()),
        "norva: CSSFileName \"" + sheet +
            "\": the style sheet stands beside the page; give a name without a folder that is "
            "not the page's\n");
  }
}

TEST_F(UsageTest, ManyTablesAreNotAllListed) {
  std::string script;
  for (int i = 10; i < 22; ++i) script += "CREATE TABLE t" + std::to_string(i) + " (a);";
  MakeDatabase("many.db", script);
  EXPECT_EQ(Run(Words("export many.db -o x.csv")).Err,
            "norva: \"many.db\" has 12 tables; choose one with --table: t10, t11, t12, t13, t14, "
            "t15, t16, t17, t18, t19, ...\n");
}

TEST_F(UsageTest, HelpAndVersionGoToStandardOutput) {
  const TRun version = Run({"--version"});
  EXPECT_EQ(version.Code, 0);
  EXPECT_TRUE(std::regex_match(version.Out, std::regex("norva \\d+\\.\\d+\\.\\d+\n")))
      << version.Out;
  const TRun help = Run({"export", "--help"});
  EXPECT_EQ(help.Code, 0);
  EXPECT_EQ(help.Err, "");
  for (const char* option : {"--table", "--on-unmappable", "--keep-partial", "-q,--quiet"}) {
    EXPECT_NE(help.Out.find(option), std::string::npos) << option;
  }
}

}  // namespace
}  // namespace norva::tests
