#include <norva/platform/Colors.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include <norva/platform/Exceptions.h>
#include <norva/platform/Numbers.h>
#include <tests/ErrorText.h>
#include <tests/Vectors.h>

namespace norva {
namespace {

/// `$` and eight digits, by printf rather than by the code under test.
std::string Hex(TColor Color) {
  char text[16];
  std::snprintf(text, sizeof text, "$%08X", static_cast<unsigned>(Color));
  return text;
}

TEST(Colors, ConvertAsTabled) {
  for (const tests::TVector& row : tests::ReadVectors("colors")) {
    SCOPED_TRACE(row.Place);
    const std::string& function = row["function"];
    const std::string& input = row["input"];
    const std::string& expected = row["expected"];
    if (function == "HtmlColor") continue;  // a conversion of the HTML exporter, tested there
    if (function == "ColorToString") {
      EXPECT_EQ(ColorToString(StrToInt(input)), expected);
    } else if (function == "ColorToRGB") {
      EXPECT_EQ(Hex(ColorToRGB(StrToInt(input))), expected);
    } else if (function != "StringToColor") {
      ADD_FAILURE() << function;
    } else if (expected.starts_with('!')) {
      EXPECT_EQ("!" + tests::ErrorText<EConvertError>([&] { StringToColor(input); }), expected);
    } else {
      EXPECT_EQ(Hex(StringToColor(input)), expected);
    }
  }
}

TEST(Colors, EveryTextReadsBack) {
  for (const TColor color : {clRed, clWindow, clMenuBar, clNone, clDefault, clLtGray,
                             TColor{0x123456}, TColor{-1}, SystemColor(25), SystemColor(255)}) {
    EXPECT_EQ(StringToColor(ColorToString(color)), color) << Hex(color);
  }
}

}  // namespace
}  // namespace norva
