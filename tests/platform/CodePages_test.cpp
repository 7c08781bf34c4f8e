#include <norva/platform/CodePages.h>

#include <string>
#include <thread>

#include <gtest/gtest.h>

#include <norva/platform/Exceptions.h>
#include <tests/ErrorText.h>
#include <tests/Vectors.h>
#include <tests/platform/TextScopes.h>

namespace norva::tests {
namespace {

// --- Pages --------------------------------------------------------------------------------------

TEST(CodePages, TablesReadAndWriteEveryByte) {
  for (const TVector& row : ReadVectors("codepages")) {
    SCOPED_TRACE(row.Place);
    const TPageScope page(std::stoi(row["page"]));
    const auto byte = static_cast<unsigned char>(std::stoi(row["byte"], nullptr, 16));
    const auto code = static_cast<char32_t>(std::stoi(row["expected"], nullptr, 16));
    const std::string text(1, static_cast<char>(byte));
    EXPECT_EQ(CodePoint(ActiveCodePage(), byte), code);
    EXPECT_EQ(ToUtf32("a" + text), std::u32string(U"a") + code);
    EXPECT_EQ(ToUtf16(text), std::u16string(1, static_cast<char16_t>(code)));
    if (code == 0xFFFD) continue;
    EXPECT_EQ(FromUtf8("a" + ToUtf8(text) + "z"), "a" + text + "z");
  }
}

TEST(CodePages, UnknownPageIsAnErrorAndChangesNothing) {
  const TPageScope page(1251);
  for (int unknown : {0, 1249, 1259, 874, 65000, -1}) {
    const std::string message = "Code page " + std::to_string(unknown) + " is not known";
    EXPECT_FALSE(IsKnownCodePage(unknown));
    EXPECT_EQ(ErrorText<EConvertError>([&] { SetActiveCodePage(unknown); }), message);
    EXPECT_EQ(ErrorText<EConvertError>([&] { CodePoint(unknown, 'a'); }), message);
  }
  EXPECT_EQ(ActiveCodePage(), 1251);
  EXPECT_EQ(CodePoint(65001, 'a'), U'a');
  EXPECT_EQ(CodePoint(65001, 0x80), 0xFFFDU);
}

TEST(CodePages, PageAndPolicyBelongToTheThread) {
  int initial = 0;
  std::thread([&initial] { initial = ActiveCodePage(); }).join();
  const TPageScope page(initial == 866 ? 437 : 866, umReplace);
  std::thread([initial] {
    EXPECT_EQ(ActiveCodePage(), initial);
    EXPECT_EQ(UnmappablePolicy(), umError);
    SetActiveCodePage(1257);
  }).join();
  EXPECT_EQ(ActiveCodePage(), initial == 866 ? 437 : 866);
}

// --- UTF-8 --------------------------------------------------------------------------------------

struct DecodeCase {
  std::string_view Text;
  std::u32string_view Characters;
  std::size_t CharCount;  // bytes of no well-formed sequence count one by one
};

const DecodeCase DecodeCases[] = {
    {"",                                     U"",                                                  0},
    {"\xC2\x80\xDF\xBF",                     U"\u0080\u07FF",                                      2},
    {"\xE0\xA0\x80\xED\x9F\xBF",             U"\u0800\uD7FF",                                      2},
    {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF",     U"\U00010000\U0010FFFF",                              2},
    {"\xC0\xAF\xE0\x80\xBF\xF0\x81\x82\x41", U"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDA",
     9                                                                                              }, // overlong
    {"\xED\xA0\x80\xED\xBF\xBF",             U"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD",              6}, // surrogates
    {"\xF4\x91\x92\x93\xFF\x41\x80\xBF\x42",
     U"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDA\uFFFD\uFFFD"
     "B",                                                                                          9}, // > 10FFFF
    {"\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41", U"\uFFFD\uFFFD\uFFFD\uFFFDA",                         9}, // cut short
    {"\xE2\x82",                             U"\uFFFD",                                            2}, // at the end
    {"\xE2\x82\xC3\xA4",                     U"\uFFFD\u00E4",                                      3}, // then a good one
};

TEST(Utf8, DecodesByMaximalSubparts) {
  const TPageScope page(CodePageUtf8);
  for (const DecodeCase& c : DecodeCases) {
    SCOPED_TRACE(testing::PrintToString(c.Text));
    EXPECT_EQ(ToUtf32(c.Text), c.Characters);
    EXPECT_EQ(CharCount(c.Text), c.CharCount);
    // The repaired text is well-formed, and says the same.
    EXPECT_EQ(ToUtf32(ToUtf8(c.Text)), c.Characters);
    EXPECT_EQ(CharCount(ToUtf8(c.Text)), c.Characters.size());
  }
}

// Words of eight bytes are skipped at a time: every place of the other character within a word.
TEST(Utf8, CountsCharactersWhereverTheyStand) {
  const TPageScope page(CodePageUtf8);
  for (std::size_t before = 0; before <= 17; ++before) {
    for (std::size_t after = 0; after <= 17; ++after) {
      const std::string text = std::string(before, 'x') + "€" + std::string(after, 'y');
      EXPECT_EQ(CharCount(text), before + 1 + after) << text;
      EXPECT_EQ(ToUtf8(text), text);
    }
  }
  const TPageScope single(1252);
  EXPECT_EQ(CharCount("\xE2\x82\xAC"), 3U);
}

TEST(Utf8, Utf16HasSurrogatePairs) {
  const TPageScope page(CodePageUtf8);
  EXPECT_EQ(ToUtf16("a€\U0001F600\U00010000\U0010FFFF\xFF"),
            u"a€\xD83D\xDE00\xD800\xDC00\xDBFF\xDFFF\uFFFD");
}

struct CutCase {
  int Page;
  std::string_view Text;
  std::size_t Bytes;
  std::string_view Expected;
};

const CutCase CutCases[] = {
    {65001, "abc",               0, ""            },
    {65001, "abc",               9, "abc"         },
    {65001, "aäb",              2, "a"           },
    {65001, "aäb",              3, "aä"         },
    {65001, "€€",            4, "€"         },
    {65001, "x\U0001F600z",      5, "x\U0001F600" },
    {65001, "\xE2\x82z",         1, "\xE2"        }, // part of no character
    {65001, "a\x80\x80\x80\x80", 3, "a\x80\x80"   },
    {1252,  "\xC3\xA4\xC3\xA4",  3, "\xC3\xA4\xC3"},
};

TEST(CutAtCharacter, NeverSplitsACharacter) {
  for (const CutCase& c : CutCases) {
    const TPageScope page(c.Page);
    EXPECT_EQ(CutAtCharacter(c.Text, c.Bytes), c.Expected)
        << testing::PrintToString(c.Text) << " to " << c.Bytes;
  }
}

// --- Characters that the page lacks -------------------------------------------------------------

struct UnmappableCase {
  int Page;
  const char* Utf8;
  const char* Message;
  const char* Replaced;
};

const UnmappableCase UnmappableCases[] = {
    {437,  "5 €",            "Character U+20AC cannot be written in code page 437",    "5 ?"      },
    {1252, "\U0010FFFF",       "Character U+10FFFF cannot be written in code page 1252", "?"        },
    {1252, "ä\u0080\u0081",   "Character U+0080 cannot be written in code page 1252",   "\xE4?\x81"},
    {1251, "ё\u0451е\u0308", "Character U+0308 cannot be written in code page 1251",
     "\xB8\xB8\xE5?"                                                                                }, // no composition
    {850,  "\xE2\x82yz",       "Character U+FFFD cannot be written in code page 850",    "?yz"      },
};

TEST(FromUtf8, LackingCharactersFollowThePolicy) {
  for (const UnmappableCase& c : UnmappableCases) {
    SCOPED_TRACE(c.Message);
    TPageScope page(c.Page);
    std::string out = "kept";
    EXPECT_EQ(ErrorText<EConvertError>([&] { AppendFromUtf8(c.Utf8, out); }), c.Message);
    EXPECT_EQ(out, "kept");
    SetUnmappablePolicy(umReplace);
    EXPECT_EQ(FromUtf8(c.Utf8), c.Replaced);
  }
  const TPageScope page(CodePageUtf8);
  EXPECT_EQ(FromUtf8("\xFF€"), "\xFF€");  // nothing is converted, nothing is lacking
}

// --- Case ---------------------------------------------------------------------------------------

struct UpperCaseCase {
  int Page;
  const char* Text;  // in UTF-8, converted to the page and back
  const char* Upper;
};

const UpperCaseCase UpperCaseCases[] = {
    {65001, "az{ AZ[ 09`@",            "AZ{ AZ[ 09`@"           },
    {65001, "ıi",                     "II"                     }, // no language has its own rule
    {65001, "àöøþ÷ÿ",            "ÀÖØÞ÷Ÿ"           },
    {65001, "µμ",                    "ΜΜ"                   },
    {65001, "ſŉĸ",                  "Sŉĸ"                  }, // a shorter capital, and none
    {65001, "ĀĬĲĹŇŊŹŽ",        "ĀĬĲĹŇŊŹŽ"       },
    {65001, "ǆǅǳ",                  "ǄǄǱ"                 }, // not the title case
    {65001, "ɐɫ",                    "ⱯⱢ"                 }, // a longer capital
    {65001, "άςσώϐ",              "ΆΣΣΏΒ"             },
    {65001, "ᾳᾀῃῳ",            "ᾼᾈῌῼ"           }, // one-to-one capitals beside longer ones
    {65001, "ẖὒᾶ",               "ẖὒᾶ"              }, // only longer ones
    {65001, "ａ\U00010428\U0001E943", "Ａ\U00010400\U0001E921"},
    {65001,
     "\xE2\x82"
     "a\xC3",                          "\xE2\x82"
     "A\xC3"                                       }, // stays as it is
    {1252,  "aäÿßœšµƒª",       "AÄŸßŒŠµƒª"      }, // the page has no Greek My
    {1254,  "ıiğş",                 "IIĞŞ"                 },
    {850,   "äÿı",                  "ÄÿI"                  }, // no Y with diaeresis
};

std::string InActivePage(const char* Text) {
  return ActiveCodePage() == CodePageUtf8 ? std::string(Text) : FromUtf8(Text);
}

TEST(UpperCase, MapsOneToOneThroughThePage) {
  for (const UpperCaseCase& c : UpperCaseCases) {
    SCOPED_TRACE(testing::Message() << c.Text << " in " << c.Page);
    const TPageScope page(c.Page);
    const std::string text = InActivePage(c.Text);
    const std::string upper = InActivePage(c.Upper);
    EXPECT_EQ(UpperCase(text), upper);
    EXPECT_EQ(UpperCase("long enough " + text), "LONG ENOUGH " + upper);
    EXPECT_TRUE(SameText(text, upper));
    EXPECT_TRUE(SameText(upper, text));
    EXPECT_FALSE(SameText(text + "x", upper));
    EXPECT_FALSE(SameText(text, upper + "x"));
  }
}

struct SameTextCase {
  int Page;
  const char* A;
  const char* B;
};

const SameTextCase DifferentTexts[] = {
    {65001, "",         "a"      },
    {65001, "[",        "{"      },
    {65001, "straße",  "STRASSE"},
    {65001, "\u212A",   "k"      }, // the Kelvin sign is a capital of its own
    {65001, "ä",       "\xC3"   },
    {65001, "\xE2\x82", "\xE2"   },
    {1252,  "\xB5",     "\xCC"   },
};

TEST(SameText, TellsTextsApart) {
  for (const SameTextCase& c : DifferentTexts) {
    const TPageScope page(c.Page);
    EXPECT_FALSE(SameText(c.A, c.B)) << c.A << " and " << c.B;
    EXPECT_FALSE(SameText(c.B, c.A)) << c.A << " and " << c.B;
    EXPECT_NE(UpperCase(c.A), UpperCase(c.B));
  }
}

TEST(CompareText, Vectors) {
  const auto sign = [](int Value) { return (Value > 0) - (Value < 0); };
  for (const TVector& row : ReadVectors("comparetext")) {
    EXPECT_EQ(sign(CompareText(row["a"], row["b"])), std::stoi(row["expected"])) << row.Place;
    EXPECT_EQ(sign(CompareText(row["b"], row["a"])), -std::stoi(row["expected"])) << row.Place;
  }
}

struct ReplaceCase {
  int Page;
  const char *Text, *Old, *New, *Expected;  // in UTF-8
};

const ReplaceCase ReplaceCases[] = {
    {65001, "abc",            "",       "x",      "abc"           },
    {65001, "abcABC",         "Bc",     "-",      "a-A-"          },
    {65001, "aaa",            "aa",     "b",      "ba"            }, // from the left, without overlap
    {65001, "abab",           "AB",     "abab",   "abababab"      }, // the new text is not searched
    {65001, "Ärger, ärger", "ÄRGER", "x",      "x, x"          },
    {65001, "ıIi straße",   "i",      "",       " straße"      }, // positions stay, lengths differ
    {65001, "a€b",          "\x82",   "x",      "a€b"         }, // no match within a character
    {65001,
     "\xE2\x82"
     "A",                     "a",      "b",
     "\xE2\x82"
     "b"                                                          },
    {1251,  "Мир, МИР", "мир", "дом", "дом, дом"},
};

TEST(ReplaceText, ReplacesWithoutRegardToCase) {
  for (const ReplaceCase& c : ReplaceCases) {
    SCOPED_TRACE(testing::Message() << c.Text << ", " << c.Old << " in " << c.Page);
    const TPageScope page(c.Page);
    const std::string result =
        ReplaceText(InActivePage(c.Text), InActivePage(c.Old), InActivePage(c.New));
    EXPECT_EQ(result, InActivePage(c.Expected));
  }
}

}  // namespace
}  // namespace norva::tests
