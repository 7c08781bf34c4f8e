#include <norva/platform/IniFile.h>

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>
#include <tests/ErrorText.h>
#include <tests/TempFolder.h>
#include <tests/Vectors.h>

namespace norva {
namespace {

using tests::ErrorText;
using tests::TTempFolder;

TEST(TIniFile, WritesValuesThatReadBack) {
  const TTempFolder folder;
  SetActiveCodePage(CodePageUtf8);
  for (const tests::TVector& row : tests::ReadVectors("inivalues")) {
    SCOPED_TRACE(row.Place);
    const std::string name = folder.Write("a.ini", "");
    TIniFile ini(name);
    ini.WriteString("s", "k", row["value"]);
    ini.UpdateFile();
    EXPECT_EQ(folder.Read("a.ini"), "[s]\r\n" + row["expected"] + "\r\n");
    EXPECT_EQ(TIniFile(name).ReadString("s", "k", "(none)"), row["value"]);
  }
}

TEST(TIniFile, ReadsLines) {
  const TTempFolder folder;
  for (const tests::TVector& row : tests::ReadVectors("iniread")) {
    SCOPED_TRACE(row.Place);
    const TIniFile ini(folder.Write("a.ini", "[s]\n" + row["lines"] + "\n"));
    EXPECT_EQ(ini.ReadString("s", "k", "!missing"), row["expected"]);
    EXPECT_EQ(ini.ValueExists("s", "k"), row["expected"] != "!missing");
  }
}

TEST(TIniFile, ReadsTypedValues) {
  const TTempFolder folder;
  for (const tests::TVector& row : tests::ReadVectors("initypes")) {
    SCOPED_TRACE(row.Place);
    const TIniFile ini(folder.Write("a.ini", "[s]\nk=" + row["value"] + "\n"));
    const bool isDefault = row["expected"] == "default";
    if (row["function"] == "ReadInteger") {
      EXPECT_EQ(ini.ReadInteger("s", "k", 4711), isDefault ? 4711 : std::stoi(row["expected"]));
    } else {
      ASSERT_EQ(row["function"], "ReadBool");
      for (const bool other : {false, true}) {
        EXPECT_EQ(ini.ReadBool("s", "k", other), isDefault ? other : row["expected"] == "true");
      }
    }
  }
}

TEST(TIniFile, AMissingFileIsEmptyAndGivesTheDefaults) {
  const TTempFolder folder;
  const TIniFile ini(folder.Path("a.ini"));
  EXPECT_EQ(ini.ReadString("s", "k", "d"), "d");
  EXPECT_EQ(ini.ReadInteger("s", "k", -7), -7);
  EXPECT_TRUE(ini.ReadBool("s", "k", true));
  EXPECT_EQ(ini.ReadSections().Count(), 0);
}

TEST(TIniFile, ReadsSections) {
  const TTempFolder folder;
  const TIniFile ini(folder.Write("a.ini",
                                  "\xEF\xBB\xBFtop=0\r\n"
                                  " [ One ] x\rk=1\r"
                                  "[T[w]o]\nk=2\n"
                                  "[none\n"
                                  "[ONE]\nK=3\nmore=4\n;no=5\n"
                                  "[Empty]"));
  EXPECT_EQ(ini.ReadSections().Text(), "\r\nOne\r\nT[w]o\r\nEmpty\r\n");
  EXPECT_EQ(ini.ReadSectionKeys("one").Text(), "k\r\nmore\r\n");
  EXPECT_EQ(ini.ReadString("oNe", "K", ""), "1");  // the first of equal keys
  EXPECT_EQ(ini.ReadString(" one ", "MORE", ""), "4");
  EXPECT_EQ(ini.ReadString("t[W]o", "k", ""), "2");
  EXPECT_EQ(ini.ReadString("", "top", ""), "0");
  EXPECT_TRUE(ini.SectionExists("empty"));
  EXPECT_FALSE(ini.SectionExists("none"));
  EXPECT_FALSE(ini.ValueExists("one", "no"));
}

const char* const Original =
    "; about the file\n"
    "[A]\n  x = 1 \n; about y\ny='2'\nnonsense\n\n\n"
    "; about B\n[B]\nx=3\nx=4\n; end of B\n"
    "[a]\nz=5\n\n";

// Original as the library writes it, part by part.
#define TOP "; about the file\r\n"
#define PART_A "[A]\r\nx=1\r\n; about y\r\ny=2\r\nnonsense\r\n"
#define PART_B "; about B\r\n[B]\r\nx=3\r\nx=4\r\n; end of B\r\n"
#define REST_OF_A "[a]\r\nz=5\r\n"

struct EditCase {
  void (*Edit)(TIniFile& Ini);
  const char* Expected;
};
// clang-format off
const EditCase EditCases[] = {
    {[](TIniFile&) {},  // blanks and needless quotes go, one empty line stands between sections
     TOP PART_A "\r\n" PART_B "\r\n" REST_OF_A},
    {[](TIniFile& ini) {  // new keys: at the end of the last part of A, and in a new section
       ini.WriteString("a", "new", "6");
       ini.WriteBool(" C ", "yes", true);
       ini.WriteBool("C", "no", false);
     },
     TOP PART_A "\r\n" PART_B "\r\n" REST_OF_A "new=6\r\n" "\r\n[C]\r\nyes=1\r\nno=0\r\n"},
    {[](TIniFile& ini) {  // changed keys keep their place and spelling
       ini.WriteString("A", "Y", " 7");
       ini.WriteInteger("b", "X", -2147483647 - 1);
     },
     TOP "[A]\r\nx=1\r\n; about y\r\ny=\" 7\"\r\nnonsense\r\n"
     "\r\n; about B\r\n[B]\r\nx=-2147483648\r\nx=4\r\n; end of B\r\n\r\n" REST_OF_A},
    {[](TIniFile& ini) { ini.EraseSection("A"); },  // all parts, but not the comment about B
     TOP PART_B},
    {[](TIniFile& ini) { ini.DeleteKey("B", "X"); },  // its double must not come to light
     TOP PART_A "\r\n; about B\r\n[B]\r\n; end of B\r\n\r\n" REST_OF_A},
    {[](TIniFile& ini) {
       for (const std::string& name : ini.ReadSections()) ini.EraseSection(name);
     },
     TOP},
    {[](TIniFile& ini) {  // above all headers, which makes a section of what stands there
       ini.WriteString("", "top", "0");
       ini.EraseSection("A");
     },
     TOP "top=0\r\n\r\n" PART_B},
};
// clang-format on

TEST(TIniFile, EditsKeepTheRestOfTheFile) {
  const TTempFolder folder;
  for (const EditCase& c : EditCases) {
    SCOPED_TRACE(c.Expected);
    const std::string name = folder.Write("a.ini", Original);
    TIniFile ini(name);
    c.Edit(ini);
    ini.UpdateFile();
    EXPECT_EQ(folder.Read("a.ini"), c.Expected);
    TIniFile(name).UpdateFile();
    EXPECT_EQ(folder.Read("a.ini"), c.Expected) << "read and written once more";
  }
}

TEST(TIniFile, RefusesWhatItCannotHold) {
  struct RefusedCase {
    const char *Section, *Key, *Value;
    bool IsLineBreak;  // or else a bad key
  };
  const RefusedCase cases[] = {
      {"s", "k",   "a\nb", true },
      {"s", "k\n", "v",    true },
      {"s", "",    "v",    false},
      {"s", "a=b", "v",    false},
      {"s", " a",  "v",    false},
      {"s", ";a",  "v",    false},
  };
  const TTempFolder folder;
  for (const RefusedCase& c : cases) {
    const std::string section = c.Section, key = c.Key;
    const std::string expected =
        c.IsLineBreak ? "A line break cannot be stored in an INI file (section \"" + section +
                            "\", key \"" + key + "\")"
                      : "A key of an INI file cannot be \"" + key + "\" (section \"" + section +
                            "\"): it is empty, begins with ; or [, holds = or a line end, or has "
                            "outer blanks";
    TIniFile ini(folder.Path("a.ini"));
    EXPECT_EQ(ErrorText<EIniError>([&] { ini.WriteString(section, key, c.Value); }), expected);
    EXPECT_FALSE(ini.SectionExists(section));
  }
  EXPECT_TRUE(folder.Names().empty());  // nothing changed, so nothing was written
}

TEST(TIniFile, TheDestructorWritesChangesOnly) {
  const TTempFolder folder;
  const std::string name = folder.Write("a.ini", "[s]\nk=1\n");
  { TIniFile(name).WriteString("S", "K", "1"); }
  EXPECT_EQ(folder.Read("a.ini"), "[s]\nk=1\n");
  { TIniFile(name).WriteString("S", "K", "2"); }
  EXPECT_EQ(folder.Read("a.ini"), "[s]\r\nk=2\r\n");
  EXPECT_EQ(ErrorText<EIniError>([&] {
              TIniFile ini(name);
              ini.EraseSection("s");
              ini.WriteString("s", "a=b", "");
            }),
            Format(MsgIniKey, "a=b", "s"));
  EXPECT_EQ(folder.Read("a.ini"), "[s]\r\nk=2\r\n");  // not half of the changes
}

TEST(TIniFile, ReplacesTheFileBehindALinkAndKeepsItsPermissions) {
  const TTempFolder folder;
  const std::string name = folder.Write("a.ini", "[s]\nk=1\n");
  ASSERT_EQ(::chmod(name.c_str(), 0666), 0);
  ASSERT_EQ(::symlink("a.ini", folder.Path("link.ini").c_str()), 0);
  TIniFile ini(folder.Path("link.ini"));
  ini.WriteInteger("s", "k", 2);
  ini.UpdateFile();
  EXPECT_EQ(folder.Read("a.ini"), "[s]\r\nk=2\r\n");
  EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("link.ini")));
  struct stat status;
  ASSERT_EQ(::stat(name.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0666U);  // more than a new file gets
  EXPECT_EQ(folder.Names().size(), 2U);
}

/// In a process that may write files of 100 bytes only.
[[noreturn]] void UpdateOnFullDisk(const std::string& FileName) {
  ::signal(SIGXFSZ, SIG_IGN);
  const rlimit limit = {100, 100};
  ::setrlimit(RLIMIT_FSIZE, &limit);
  TIniFile ini(FileName);
  ini.WriteString("s", "k", std::string(200, 'x'));
  const std::string error = ErrorText<EWriteError>([&] { ini.UpdateFile(); });
  ::_exit(error == "Cannot write \"" + FileName + "\": File too large" ? 0 : 1);
}

TEST(TIniFile, AFullDiskLeavesTheOldFile) {
  const TTempFolder folder;
  const std::string name = folder.Write("a.ini", "[s]\nk=1\n");
  EXPECT_EXIT(UpdateOnFullDisk(name), testing::ExitedWithCode(0), "");
  EXPECT_EQ(folder.Read("a.ini"), "[s]\nk=1\n");
  EXPECT_EQ(folder.Names().size(), 1U);  // no part of the new file
}

TEST(TIniFile, UpdateErrorsNameTheFile) {
  const TTempFolder folder;
  const std::string lost = folder.Path("no/a.ini");
  EXPECT_EQ(ErrorText<EFCreateError>([&] { TIniFile(lost).UpdateFile(); }),
            "Cannot create \"" + lost + "\": No such file or directory");
  EXPECT_EQ(ErrorText<EWriteError>([] { TIniFile("/dev/null").UpdateFile(); }),
            "Cannot write \"/dev/null\": not a regular file");
  EXPECT_EQ(ErrorText<EReadError>([&] { TIniFile ini(folder.Path()); }),
            "Cannot read \"" + folder.Path() + "\": Is a directory");
}

}  // namespace
}  // namespace norva
