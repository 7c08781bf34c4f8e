#include <norva/platform/Format.h>

#include <limits>

#include <gtest/gtest.h>

#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <tests/ErrorText.h>
#include <tests/Vectors.h>

namespace norva::tests {
namespace {

struct FormatCase {
  const char* Picture;
  TFormatArg Arg;
  const char* Expected;
};

TEST(Format, Specifiers) {
  const FormatCase cases[] = {
      {"plain",    0,                                        "plain"                 },
      {"100%%",    0,                                        "100%"                  },
      {"<%d>",     -12,                                      "<-12>"                 },
      {"<%5d>",    -12,                                      "<  -12>"               },
      {"<%7.4d>",  -12,                                      "<  -0012>"             },
      {"<%d>",     std::numeric_limits<std::int64_t>::min(), "<-9223372036854775808>"},
      {"#%.6x",    0xAB12,                                   "#00ab12"               },
      {"%.2x",     0x123,                                    "123"                   },
      {"<%8.3x>",  10,                                       "<     00a>"            },
      {"<%15.4f>", -1234.56785,                              "<     -1234,5679>"     },
      {"<%15.4f>", -0.00001,                                 "<         0,0000>"     },
      {"<%f>",     2.675,                                    "<2,68>"                },
      {"<%s>",     "a%db",                                   "<a%db>"                },
      {"<%4s>",    "ab",                                     "<  ab>"                },
      {"<%-4s>",   "ab",                                     "<ab  >"                },
      {"<%.2s>",   "abc",                                    "<ab>"                  },
      {"<%-3.0s>", "abc",                                    "<   >"                 },
  };
  TFormatSettings settings;
  settings.DecimalSeparator = ',';
  const TLocaleScope scope(settings);
  for (const FormatCase& c : cases) {
    EXPECT_EQ(FormatArgs(c.Picture, {c.Arg}), c.Expected) << c.Picture;
  }
}

TEST(Format, CountsCharacters) {
  const int initial = ActiveCodePage();
  SetActiveCodePage(CodePageUtf8);
  EXPECT_EQ(Format("<%4s>", "äö"), "<  äö>");
  EXPECT_EQ(Format("<%-3s>", "日本"), "<日本 >");
  EXPECT_EQ(Format("<%5.2s>", "ä日b"), "<   ä日>");
  SetActiveCodePage(1252);
  EXPECT_EQ(Format("<%4s>", "\xE4\xF6"), "<  \xE4\xF6>");
  EXPECT_EQ(Format("<%.1s>", "\xE4\xF6"), "<\xE4>");
  SetActiveCodePage(initial);
}

TEST(Format, TakesArgumentsInOrder) {
  EXPECT_EQ(Format("%s=%d, %s=%.1f", "a", 1, std::string("b"), 2.0), "a=1, b=2.0");
  EXPECT_EQ(Format("%d", 1, "not asked for"), "1");
}

TEST(Format, RefusesWhatDoesNotFit) {
  const FormatCase cases[] = {
      {"%d and %d", 1,   "Format \"%d and %d\": specifier 2 is unknown or does not fit its argument"},
      {"%d",        "a", "Format \"%d\": specifier 1 is unknown or does not fit its argument"       },
      {"%f",        1,   "Format \"%f\": specifier 1 is unknown or does not fit its argument"       },
      {"%q",        1,   "Format \"%q\": specifier 1 is unknown or does not fit its argument"       },
      {"50%",       1,   "Format \"50%\": specifier 1 is unknown or does not fit its argument"      },
  };
  for (const FormatCase& c : cases) {
    EXPECT_EQ(ErrorText<EConvertError>([&] { FormatArgs(c.Picture, {c.Arg}); }), c.Expected);
  }
}

}  // namespace
}  // namespace norva::tests
