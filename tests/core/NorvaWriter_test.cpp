#include <norva/core/NorvaWriter.h>

#include <gtest/gtest.h>

#include <norva/platform/CodePages.h>

namespace norva::tests {
namespace {

struct PadCase {
  const char* Text;
  int Len;
  const char *Left, *Right, *Center;
};
const PadCase PadCases[] = {
    {"abc",  5,  "**abc",  "abc**",  "*abc*" },
    {"abc",  6,  "***abc", "abc***", "*abc**"}, // odd padding: the extra one goes right
    {"",     2,  "**",     "**",     "**"    },
    {"abc",  -1, "abc",    "abc",    "abc"   },
    {"Zoë", 4,  "*Zoë",  "Zoë*",  "Zoë*" }, // characters, not bytes
    {"\xFF", 2,  "*\xFF",  "\xFF*",  "\xFF*" }, // a stray byte counts as one
};

TEST(TNorvaWriter, PadsToLengthInCharacters) {
  SetActiveCodePage(CodePageUtf8);
  for (const PadCase& c : PadCases) {
    SCOPED_TRACE(testing::Message() << c.Text << " to " << c.Len);
    EXPECT_EQ(TNorvaWriter::PadL(c.Text, '*', c.Len), c.Left);
    EXPECT_EQ(TNorvaWriter::PadR(c.Text, '*', c.Len), c.Right);
    EXPECT_EQ(TNorvaWriter::PadC(c.Text, '*', c.Len), c.Center);
    std::string row = "ä|" + std::string(c.Text);
    TNorvaWriter::PadTail(row, 3, '*', c.Len, ecaRight);
    EXPECT_EQ(row, "ä|" + std::string(c.Left));
  }
}

TEST(TNorvaWriter, CountsBytesInASingleBytePage) {
  SetActiveCodePage(1252);
  EXPECT_EQ(TNorvaWriter::PadL("Zo\xEB", '*', 4), "*Zo\xEB");
  EXPECT_EQ(TNorvaWriter::PadL("Zoë", '*', 5), "*Zoë");
  SetActiveCodePage(CodePageUtf8);
}

TEST(TNorvaWriter, WritesBytesAndLines) {
  TMemoryStream stream;
  TNorvaWriter writer(stream);
  writer.Write(std::string_view("a\0\xFF", 3));
  writer.WriteLn("b");
  writer.EmptyLine();
  writer.CharLine('-', 3);
  writer.CharLine('-', 0);
  writer.CharLine('-', -1);
  EXPECT_EQ(stream.Bytes(), std::string("a\0\xFF", 3) + "b\r\n\r\n---\r\n\r\n\r\n");
}

TEST(TNorvaWriter, NamesAlignments) {
  TMemoryStream stream;
  const TNorvaWriter writer(stream);
  EXPECT_EQ(writer.AlignToStr(ecaCenter), "Center alignment");
  EXPECT_EQ(writer.AlignToStr(static_cast<TNorvaColAlign>(3)), "Unknown alignment");
}

}  // namespace
}  // namespace norva::tests
