#include <norva/platform/Fonts.h>

#include <gtest/gtest.h>

#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Property.h>
#include <norva/platform/StringList.h>
#include <tests/ErrorText.h>
#include <tests/Vectors.h>

namespace norva {
namespace {

TFont MakeFont(const std::string& Name, int Size, TFontStyles Style = {}) {
  TFont font;
  font.Name = Name;
  font.Size = Size;
  font.Style = Style;
  return font;
}

TEST(TFont, HeightIsMinusTheEmInPixels) {
  struct HeightCase {
    int Size, Height;
  };
  const HeightCase cases[] = {
      {8,  -11}, // 10.67
      {10, -13}, // 13.33
      {0,  0  },
  };
  for (const HeightCase& c : cases) EXPECT_EQ(MakeFont("x", c.Size).Height(), c.Height) << c.Size;
  for (int size = -200; size <= 200; ++size) {
    TFont font;
    font.SetHeight(MakeFont("x", size).Height());
    EXPECT_EQ(font.Size, size);
  }
}

TEST(TFont, AssignCopiesAllProperties) {
  TFont source = MakeFont("Courier", 14, {fsItalic, fsStrikeOut});
  source.Color = clRed;
  source.Charset = 204;
  TFont font;
  font.Assign(source);
  EXPECT_EQ(font.Name, "Courier");
  EXPECT_EQ(font.Size, 14);
  EXPECT_EQ(font.Style, (TFontStyles{fsStrikeOut, fsItalic}));
  EXPECT_EQ(font.Color, clRed);
  EXPECT_EQ(font.Charset, 204);
  EXPECT_EQ(tests::ErrorText<EConvertError>([&] { font.Assign(TStringList()); }),
            "A TStringList cannot be assigned to a TFont");
}

TEST(TSet, KeepsItsValuesApart) {
  TFontStyles style = {fsBold, fsUnderline};
  EXPECT_EQ(style.Bits(), 0b101U);
  style.Exclude(fsBold);
  style.Include(fsStrikeOut);
  style.Include(fsStrikeOut);
  EXPECT_EQ(style, (TFontStyles{fsUnderline, fsStrikeOut}));
  EXPECT_FALSE(style.Contains(fsBold));
  EXPECT_FALSE(style.Contains(fsItalic));
  EXPECT_TRUE(style.Contains(fsStrikeOut));
}

TEST(TextWidth, Vectors) {
  SetActiveCodePage(CodePageUtf8);
  for (const tests::TVector& row : tests::ReadVectors("textwidth")) {
    SCOPED_TRACE(row.Place);
    TFont font = MakeFont(row["font"], std::stoi(row["size"]));
    if (row["bold"] == "1") font.Style.Include(fsBold);
    EXPECT_EQ(std::to_string(TextWidth(row["text"], font)), row["expected"]);
  }
}

TEST(TextWidth, CountsCharactersOfTheActivePage) {
  const std::string bytes = "\xC3\xA9";  // one letter in UTF-8, two in 1252
  EXPECT_EQ(TextWidth(bytes, MakeFont("Arial", 10)), 7);
  SetActiveCodePage(1252);
  EXPECT_EQ(TextWidth(bytes, MakeFont("Arial", 10)), 14);
  SetActiveCodePage(CodePageUtf8);
}

TEST(TextWidth, EdgesOfTheTable) {
  const TFont font = MakeFont("Arial", 750);  // em 1000: widths are the advances themselves
  const TFont bold = MakeFont("Arial", 750, {fsBold, fsItalic});
  struct EdgeCase {
    const char* Text;
    int Regular, Bold;
  };
  const EdgeCase cases[] = {
      {" ",        278, 278},
      {"~",        584, 584},
      {"\x1F\x7F", 0,   0  },
      {"\xC2\x80", 0,   0  }, // U+0080, an upper control character
      {"\xC2\xA0", 556, 611},
      {"\xFF",     556, 611}, // no character, but it counts as one
  };
  for (const EdgeCase& c : cases) {
    EXPECT_EQ(TextWidth(c.Text, font), c.Regular) << c.Text;
    EXPECT_EQ(TextWidth(c.Text, bold), c.Bold) << c.Text;
  }
}

TEST(TFont, PublishesItsDefaults) {
  const TFont font;
  std::string text;
  for (const TProperty& property : font.Properties()) {
    text += property.Name + "=" + property.Default.value_or("(none)") + " ";
    EXPECT_EQ(property.Get(font), property.Default) << property.Name;
  }
  EXPECT_EQ(text, "Name=Arial Size=8 Style=[] Color=clWindowText Charset=1 ");
}

}  // namespace
}  // namespace norva
