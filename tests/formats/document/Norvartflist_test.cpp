#include <norva/formats/document/Norvartflist.h>

#include <gtest/gtest.h>

#include <tests/ErrorText.h>
#include <tests/Exports.h>

namespace norva::tests {
namespace {

TFont Named(const char* Name, std::int32_t Size = 10) {
  TFont font;
  font.Name = Name;
  font.Size = Size;
  return font;
}

/// A document up to its body, then "body".
struct TDocument : TLumRTFWriter {
  TMemoryStream Stream;
  bool NoMemory = false;
  std::size_t MostScratch = 0;

  explicit TDocument(bool WithFont = true) : TLumRTFWriter(Stream) {
    SetHeader({12, "ansi\\ansicpg1250", 34, 5678});
    if (WithFont) AddFont({0, "Arial", "nil"});
    WriteBOF();
    WriteHeader();
    WriteFontTable();
    WriteColorTable();
    Write("body");
  }
  std::unique_ptr<char[]> AllocateScratch(std::size_t Count) override {
    MostScratch = std::max(MostScratch, Count);
    return NoMemory ? nullptr : TLumRTFWriter::AllocateScratch(Count);
  }
  std::string Text() const { return Replace(Stream.Bytes(), "\r\n", "/"); }
};

const std::string Start = "{\\rtf12\\ansi\\ansicpg1250\\deff34\\deftab5678/{\\fonttbl";

TEST(RTFWriter, EntersFontsAndColoursIntoTheWrittenTables) {
  TDocument document;
  EXPECT_EQ(document.SetFont(Named("ARIAL", 12), false), "\\f0\\fs24");
  EXPECT_EQ(document.Text(), Start + "{\\f0\\fnil Arial;}}/{\\colortbl}/body");
  EXPECT_EQ(document.GetColorText(clRed, false), "\\cf0");
  EXPECT_EQ(document.SetFont(Named("Times"), true), "\\f1\\fs20");
  EXPECT_EQ(document.GetColorText(0x563412, true), "\\cbpat1");
  EXPECT_EQ(document.GetColorText(clRed, false), "\\cf0");
  EXPECT_EQ(document.SetFont(Named("times"), false), "\\f1\\fs20");
  document.WritePara();
  document.WriteEOF();
  EXPECT_EQ(document.Text(), Start +
                                 "{\\f0\\fnil Arial;}{\\f1\\fnil Times;}}/"
                                 "{\\colortbl\\red255\\green0\\blue0;\\red18\\green52\\blue86;}/"
                                 "body\\f1\\fs20/\\par/}");
}

TEST(RTFWriter, KeepsItsOddities) {
  TDocument document;
  EXPECT_EQ(document.GetFontText(Named("arial"), true), "");
  EXPECT_EQ(document.GetFontText(Named("Times"), true), "\\f-1");
  EXPECT_EQ(document.GetColorText(clWindow, false), "\\cf0");
  EXPECT_EQ(document.GetColorText(clWindow, false), "\\cf1");  // added anew
  const std::string white = "\\red255\\green255\\blue255;";
  EXPECT_EQ(document.Text(), Start +
                                 "{\\f0\\fnil Arial;}}{\\f1\\fnil Times;}/"
                                 "{\\colortbl" +
                                 white + white + "}/body");
  TDocument empty(false);
  EXPECT_EQ(empty.SetFont(Named("Arial"), false), "\\f-1\\fs20");
  EXPECT_EQ(empty.SetFont(Named("Times"), false), "\\f0\\fs20");
  EXPECT_EQ(empty.SetFont(Named("Times"), false), "\\f1\\fs20");  // its position
}

TEST(RTFWriter, InsertsInFrontOfATailOfAnyLength) {
  constexpr std::size_t block = 1024 * 1024;
  std::string bytes;
  for (std::size_t i = 0; bytes.size() < 3 * block; ++i) bytes += std::to_string(i) + ' ';
  for (const std::size_t tail : {std::size_t{0}, std::size_t{1}, block, block + 1, 2 * block + 7}) {
    for (const std::size_t count : {std::size_t{3}, block + 5}) {
      SCOPED_TRACE(testing::Message() << count << " bytes in front of " << tail);
      TDocument document;
      document.Stream.SetPosition(0);
      document.Write(std::string_view(bytes).substr(0, 99 + tail));
      const std::string before = document.Stream.Bytes();
      document.Insert(99, std::string(count, '#'));
      document.Write("!");
      EXPECT_TRUE(document.Stream.Bytes() ==
                  std::string(before).insert(99, std::string(count, '#')) + "!");
      EXPECT_LE(document.MostScratch, std::max(block, count));
    }
  }
}

TEST(RTFWriter, ReportsThatItCannotMoveTheDocument) {
  TDocument document;
  const std::string before = document.Text();
  EXPECT_EQ(ErrorText<Exception>([&] { document.Insert(10'000, "x"); }),
            "VirtualAlloc failed! :-(");
  document.NoMemory = true;
  const auto error = [&] { document.SetFont(Named("Times"), false); };
  EXPECT_EQ(ErrorText<Exception>(error), "VirtualAlloc failed! :-(");
  EXPECT_EQ(document.Text(), before);
  document.NoMemory = false;
  EXPECT_EQ(document.SetFont(Named("Times"), false), "\\f1\\fs20");  // not taken for written
  EXPECT_NE(document.Text().find("{\\f1\\fnil Times;}}"), std::string::npos);
  EXPECT_EQ(ErrorText<EListError>([&] { document.FontTable()[2].GetAsText(); }),
            "List index 2 is out of range");
}

}  // namespace
}  // namespace norva::tests
