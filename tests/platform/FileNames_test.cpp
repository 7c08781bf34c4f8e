#include <norva/platform/FileNames.h>

#include <gtest/gtest.h>

#include <tests/Vectors.h>

namespace norva {
namespace {

TEST(FileNames, Extensions) {
  for (const tests::TVector& row : tests::ReadVectors("filenames")) {
    SCOPED_TRACE(row.Place);
    if (row["function"] == "ExtractFileExt") {
      EXPECT_EQ(ExtractFileExt(row["name"]), row["expected"]);
    } else {
      ASSERT_EQ(row["function"], "ChangeFileExt");
      EXPECT_EQ(ChangeFileExt(row["name"], row["ext"]), row["expected"]);
    }
  }
}

TEST(FileNames, NameAndPath) {
  struct PathCase {
    const char *FileName, *Path, *Name;
  };
  const PathCase cases[] = {
      {"a.txt",     "",     "a.txt"},
      {"dir/a.txt", "dir/", "a.txt"},
      {"/a",        "/",    "a"    },
      {"x/y/",      "x/y/", ""     },
      {"",          "",     ""     },
  };
  for (const PathCase& c : cases) {
    EXPECT_EQ(ExtractFilePath(c.FileName), c.Path) << c.FileName;
    EXPECT_EQ(ExtractFileName(c.FileName), c.Name) << c.FileName;
  }
}

}  // namespace
}  // namespace norva
