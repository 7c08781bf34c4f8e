#include <norva/platform/StringList.h>

#include <gtest/gtest.h>

#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Fonts.h>
#include <tests/ErrorText.h>
#include <tests/Vectors.h>

namespace norva {
namespace {

using tests::ErrorText;

std::vector<std::string> Lines(const TStringList& List) { return {List.begin(), List.end()}; }

TEST(TStringList, FindsEntriesByName) {
  SetActiveCodePage(CodePageUtf8);
  for (const tests::TVector& row : tests::ReadVectors("namevalue")) {
    SCOPED_TRACE(row.Place);
    TStringList list;
    list.SetText(row["lines"]);
    const std::string& name = row["name"];
    EXPECT_EQ(std::to_string(list.IndexOfName(name)) + "|" + list.Values(name), row["expected"]);
  }
}

TEST(TStringList, NamesAndValuesByIndex) {
  const TStringList list = {" a = b=c", "plain", "=x", "y="};
  const char* const names[] = {" a ", "", "", "y"};
  const char* const values[] = {" b=c", "", "x", ""};
  for (int i = 0; i < list.Count(); ++i) {
    EXPECT_EQ(list.Names(i), names[i]) << i;
    EXPECT_EQ(list.ValueFromIndex(i), values[i]) << i;
  }
}

TEST(TStringList, SetValueReplacesAddsOrDeletes) {
  struct SetValueCase {
    const char *Name, *Value;
    std::vector<std::string> Expected;
  };
  const SetValueCase cases[] = {
      {"a",     "9", {"A=9", "plain", "a=2"}           }, // the first match; its spelling stays
      {"b",     "9", {"A=1", "plain", "a=2", "b=9"}    },
      {"a",     "",  {"plain", "a=2"}                  },
      {"plain", "9", {"A=1", "plain", "a=2", "plain=9"}}, // a line without = has no name
  };
  for (const SetValueCase& c : cases) {
    TStringList list = {"A=1", "plain", "a=2"};
    list.SetValue(c.Name, c.Value);
    EXPECT_EQ(Lines(list), c.Expected) << c.Name << " to " << c.Value;
  }
}

TEST(TStringList, SplitsAndJoinsText) {
  struct TextCase {
    const char* Text;
    std::vector<std::string> Lines;
  };
  const TextCase cases[] = {
      {"a",            {"a"}               },
      {"a\r\nb\nc\rd", {"a", "b", "c", "d"}},
      {"\r\n",         {""}                },
      {"a\r\n\r\n",    {"a", ""}           },
      {"\n\ra",        {"", "", "a"}       },
  };
  for (const TextCase& c : cases) {
    TStringList list = {"old"};
    list.SetText(c.Text);
    EXPECT_EQ(Lines(list), c.Lines) << testing::PrintToString(c.Text);
  }
  EXPECT_EQ(TStringList({"a", "", "b"}).Text(), "a\r\n\r\nb\r\n");
}

TEST(TStringList, IndexOfComparesWholeLinesWithoutCase) {
  const TStringList list = {"ab", "Äb", "AB"};
  EXPECT_EQ(list.IndexOf("AB"), 0);
  EXPECT_EQ(list.IndexOf("äB"), 1);
  EXPECT_EQ(list.IndexOf("a"), -1);
}

TEST(TStringList, IndexErrorsNameTheIndex) {
  TStringList list = {"a", "b"};
  const TStringList& fixed = list;
  list.Insert(2, "c");  // right behind the end
  list.Insert(0, list[2]);
  EXPECT_EQ(Lines(list), (std::vector<std::string>{"c", "a", "b", "c"}));
  list.Delete(1);
  EXPECT_EQ(ErrorText<EListError>([&] { fixed[-1].size(); }), "List index -1 is out of range");
  EXPECT_EQ(ErrorText<EListError>([&] { list[3] = "x"; }), "List index 3 is out of range");
  EXPECT_EQ(ErrorText<EListError>([&] { list.Delete(3); }), "List index 3 is out of range");
  EXPECT_EQ(ErrorText<EListError>([&] { list.Insert(4, "x"); }), "List index 4 is out of range");
  EXPECT_EQ(ErrorText<EListError>([&] { list.Names(7); }), "List index 7 is out of range");
}

TEST(TStringList, AssignCopiesListsOnly) {
  TStringList list = {"old"};
  list.Assign(TStringList({"a", "b"}));
  EXPECT_EQ(list.Text(), "a\r\nb\r\n");
  list.Assign(list);
  EXPECT_EQ(list.Count(), 2);
  EXPECT_EQ(ErrorText<EConvertError>([&] { list.Assign(TFont()); }),
            "A TFont cannot be assigned to a TStringList");
}

}  // namespace
}  // namespace norva
