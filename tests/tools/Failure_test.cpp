#include <tests/tools/Tool.h>

namespace norva::tests {
namespace {

class FailureTest : public ToolTest {
 protected:
  /// Rows enough for an export that somebody can interrupt.
  static std::string Numbers(int Count) {
    return "WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT " + std::to_string(Count) +
           ") SELECT i, 'a text beside it' AS t FROM n";
  }

  /// Runs the tool and interrupts it as soon as it has written something to `Descriptor`.
  TRun Interrupt(const TArguments& Arguments, int Descriptor, int Signal) const {
    int ends[2];
    EXPECT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    const pid_t child = Start(Arguments, [&] { ::dup2(ends[1], Descriptor); });
    ::close(ends[1]);
    std::string text(4096, '\0');
    const ssize_t got = ::read(ends[0], text.data(), text.size());
    ::kill(child, Signal);
    // Standard error is read on; what is no longer wanted of standard output is not.
    text.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    std::string rest(4096, '\0');
    while (Descriptor == STDERR_FILENO) {
      const ssize_t more = ::read(ends[0], rest.data(), rest.size());
      if (more <= 0) break;
      text.append(rest.data(), static_cast<std::size_t>(more));
    }
    TRun run = Wait(child);
    ::close(ends[0]);
    (Descriptor == STDERR_FILENO ? run.Err : run.Out) = text;
    return run;
  }

  static std::string LastLine(const std::string& Text) {
    const std::size_t last = Text.rfind('\n', Text.size() - 2);
    return last == std::string::npos ? Text : Text.substr(last + 1);
  }
};

struct TFailure {
  TArguments Arguments;
  const char* Message;
};

const TFailure Failures[] = {
    {{"--table", "itmes", "-o", "x.csv"},
     "Table \"itmes\" is not in \"shop.db\"; nearest: \"items\""                                 },
    {{"--table", "zebra", "-o", "x.csv"},
     "Table \"zebra\" is not in \"shop.db\"; it has: empty, items, names, onlyblobs, photos, "
     "wrong"                                                                                     },
    {{"--table", "items", "--field", "prize", "-o", "x.csv"},
     "--field: field \"prize\" is not in table \"items\" in \"shop.db\"; nearest: \"price\""     },
    {{"--query", "SELECT id AS Größe FROM items", "--width", "id=3", "-o", "x.csv", "--code-page",
      "1252"},
     "--width: field \"id\" is not in the query on \"shop.db\"; it has: Größe"                 },
    {{"--table", "wrong", "-o", "x.csv"},
     "Column \"price\" of table \"wrong\", row 2: \"cheap\" does not fit the type REAL, which "
     "takes "
     "numbers; correct it or query CAST(... AS TEXT)"                                            },
    {{"--table", "empty", "-o", "x.csv"},
     "Export source (DataSet) is empty: table \"empty\" in \"shop.db\" has no records"           },
    {{"--query", "SELECT 1 WHERE 0", "-o", "x.csv"},
     "Export source (DataSet) is empty: the query on \"shop.db\" has no records"                 },
    {{"--table", "onlyblobs", "-o", "x.csv"},
     "No column of table \"onlyblobs\" in \"shop.db\" can be exported: all are blobs; name those "
     "whose bytes are wanted with --field"                                                       },
    {{"--query", "SELEC\nT 1", "-o", "x.csv"},
     "Cannot run the query on \"shop.db\": near \"SELEC\": syntax error; the query is: SELEC T 1"},
    {{"--table", "items", "-o", "none/x.csv"},
     "Cannot create \"none/x.csv\": No such file or directory; give -o a file in a folder that "
     "exists and can be written"                                                                 },
    {{"--table", "items", "-o", "shop.db/x.csv"},
     "Cannot create \"shop.db/x.csv\": Not a directory; give -o a file in a folder that exists and "
     "can be written"                                                                            },
 // Not even the superuser makes a file there.
    {{"--table", "items", "-o", "/proc/x.csv"},
     "Cannot create \"/proc/x.csv\": No such file or directory; give -o a file in a folder that "
     "exists and can be written"                                                                 },
    {{"--table", "items", "-o", ".", "--format", "csv"},
     "Cannot create \".\": it is a folder; give -o a file in a folder that exists and can be "
     "written"                                                                                   },
    {{"--table", "items", "-o", "/dev/full", "--format", "csv"},
     "Cannot write \"/dev/full\": No space left on device"                                       },
};

TEST_F(FailureTest, EndWith1OneLineAndNoFile) {
  for (const TFailure& failure : Failures) {
    SCOPED_TRACE(failure.Message);
    const TRun run = Run(TArguments{"export", "shop.db"} + failure.Arguments);
    EXPECT_EQ(run.Code, 1);
    EXPECT_EQ(run.Err, std::string("norva: ") + failure.Message + "\n");
    EXPECT_EQ(run.Out, "");
    EXPECT_EQ(Files(), "");
  }
}

TEST_F(FailureTest, SourcesThatCannotBeRead) {
  Folder.Write("text.db", std::string(5000, 'x'));
  MakeDatabase("bare.db", "CREATE TABLE t (a); DROP TABLE t;");
  const TFailure cases[] = {
      {{"none.db"}, "Cannot open database \"none.db\": No such file or directory"},
      {{"."},       "Cannot open database \".\": it is a folder"                 },
      {{"text.db"}, "Cannot open database \"text.db\": file is not a database"   },
      {{"bare.db"}, "\"bare.db\" has no tables"                                  },
  };
  for (const TFailure& c : cases) {
    SCOPED_TRACE(c.Message);
    const TRun run = Run(TArguments{"export"} + c.Arguments + TArguments{"-o", "x.csv"});
    EXPECT_EQ(run.Code, 1);
    EXPECT_TRUE(run.Err.starts_with(std::string("norva: ") + c.Message)) << run.Err;
    EXPECT_EQ(Files(), "");
  }
}

TEST_F(FailureTest, CharactersOutsideTheCodePage) {
  const TRun run = Run(Words("export shop.db --table items -o x.csv --code-page 1251"));
  EXPECT_EQ(run.Code, 1);
  EXPECT_NE(run.Err.find("Column \"name\" of table \"items\", row 3: Character U+00D6 cannot be "
                         "written in code page 1251; choose another code page"),
            std::string::npos)
      << run.Err;
}

TEST_F(FailureTest, AnOldTargetIsUntouched) {
  Folder.Write("x.csv", "old");
  const TRun run = Run(Words("export shop.db --table wrong -o x.csv"));
  EXPECT_EQ(run.Code, 1);
  EXPECT_EQ(Folder.Read("x.csv"), "old");
  EXPECT_EQ(Files(), "x.csv");
}

// The limit raises SIGXFSZ; the write fails as on a full disk.
TEST_F(FailureTest, FullDisk) {
  const auto limit = [] {
    const rlimit size = {100000, 100000};
    ::setrlimit(RLIMIT_FSIZE, &size);
  };
  const TArguments exporting = {"export", "shop.db", "--query", Numbers(20000), "-o", "big.txt"};
  const TRun run = Run(exporting, limit);
  EXPECT_EQ(run.Code, 1);
  EXPECT_EQ(run.Err,
            "norva: Cannot write \"big.txt\": File too large; make room there, or write elsewhere "
            "with -o\n");
  EXPECT_EQ(Files(), "");

  const TRun keeping = Run(exporting + TArguments{"--keep-partial"}, limit);
  EXPECT_EQ(keeping.Code, 1);
  EXPECT_EQ(keeping.Err,
            "norva: Cannot write \"big.txt\": File too large; make room there, or write elsewhere "
            "with -o; what was written is in \"big.txt.partial\"\n");
  EXPECT_EQ(Folder.Read("big.txt.partial").size(), 100000u);
  EXPECT_EQ(Files(), "big.txt.partial");
}

TEST_F(FailureTest, NothingWrittenIsNothingKept) {
  const TRun run = Run(Words("export shop.db --table empty -o x.csv --keep-partial"));
  EXPECT_EQ(run.Code, 1);
  EXPECT_EQ(Files(), "");
}

TEST_F(FailureTest, AReaderThatGoesAwayIsAnError) {
  int ends[2];
  ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
  ::close(ends[0]);
  const TRun run =
      Run({"export", "shop.db", "--query", Numbers(20000), "-o", "-", "--format", "csv"},
          [&] { ::dup2(ends[1], STDOUT_FILENO); });
  ::close(ends[1]);
  EXPECT_EQ(run.Code, 1);
  EXPECT_EQ(run.Err, "norva: Cannot write \"standard output\": Broken pipe\n");
}

TEST_F(FailureTest, CtrlCLeavesNothingAndSaysHowFarItCame) {
  const TArguments exporting = {"export", "shop.db", "--query", Numbers(2000000), "--progress"};
  for (const int signal : {SIGINT, SIGTERM}) {
    SCOPED_TRACE(signal);
    const TRun run = Interrupt(exporting + TArguments{"-o", "x.csv"}, STDERR_FILENO, signal);
    EXPECT_EQ(run.Code, 130);
    EXPECT_TRUE(std::regex_match(
        LastLine(run.Err), std::regex("norva: Interrupted after [0-9,]+ of 2,000,000 records; "
                                      "\"x.csv\" was not written\n")))
        << run.Err;
    EXPECT_EQ(Files(), "");
  }
  Folder.Write("x.csv", "old");
  const TRun run = Interrupt(exporting + TArguments{"-o", "x.csv"}, STDERR_FILENO, SIGINT);
  EXPECT_NE(run.Err.find("records; \"x.csv\" is as it was before\n"), std::string::npos) << run.Err;
  EXPECT_EQ(Folder.Read("x.csv"), "old");
  EXPECT_EQ(Files(), "x.csv");
}

TEST_F(FailureTest, CtrlCKeepsWhatWasWritten) {
  const TRun run = Interrupt({"export", "shop.db", "--query", Numbers(2000000), "--progress", "-o",
                              "x.dif", "--keep-partial"},
                             STDERR_FILENO, SIGINT);
  EXPECT_EQ(run.Code, 130);
  EXPECT_NE(run.Err.find("; what was written is in \"x.dif.partial\"\n"), std::string::npos);
  EXPECT_TRUE(Folder.Read("x.dif.partial").ends_with("-1,0\r\nEOD\r\n"));  // ended by Abort
  EXPECT_EQ(Files(), "x.dif.partial");
}

// The reader takes no more: the tool hangs in a write.
TEST_F(FailureTest, CtrlCEndsAWriteThatWaits) {
  const TRun run =
      Interrupt({"export", "shop.db", "--query", Numbers(100000), "-o", "-", "--format", "csv"},
                STDOUT_FILENO, SIGINT);
  EXPECT_EQ(run.Code, 130);
  EXPECT_TRUE(std::regex_match(run.Err,
                               std::regex("norva: Interrupted after [0-9,]+ of 100,000 records\n")))
      << run.Err;
  EXPECT_TRUE(run.Out.starts_with("\"i\",\"t\",\r\n\"1\","));
}

TEST_F(FailureTest, CtrlCEndsAQueryThatHasNoRecordYet) {
  const std::string endless =
      "WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT count(*) FROM n";
  const pid_t child = Start({"export", "shop.db", "--query", endless, "-o", "x.csv"});
  ::usleep(300000);
  ::kill(child, SIGINT);
  const TRun run = Wait(child);
  EXPECT_EQ(run.Code, 130);
  EXPECT_EQ(run.Err, "norva: Interrupted before the export began\n");
  EXPECT_EQ(Files(), "");
}

}  // namespace
}  // namespace norva::tests
