#include <norva/platform/Numbers.h>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <map>
#include <random>

#include <gtest/gtest.h>

#include <norva/platform/Exceptions.h>
#include <tests/ErrorText.h>
#include <tests/Vectors.h>

namespace norva::tests {
namespace {

using TInt64Limits = std::numeric_limits<std::int64_t>;

// The settings by name, read once.
const TFormatSettings& Locale(const std::string& Name) {
  static std::map<std::string, TFormatSettings> known;
  const auto found = known.find(Name);
  return found != known.end() ? found->second
                              : known.emplace(Name, VectorLocale(Name)).first->second;
}

double Double(const std::string& Text) { return std::strtod(Text.c_str(), nullptr); }
std::int64_t Int64(const std::string& Text) { return std::strtoll(Text.c_str(), nullptr, 10); }

TEST(FormatFloat, Vectors) {
  for (const TVector& row : ReadVectors("formatfloat")) {
    SCOPED_TRACE(row.Place + ": " + row["picture"] + " of " + row["value"]);
    const TLocaleScope scope(Locale(row["locale"]));
    EXPECT_EQ(row["kind"] == "int" ? FormatFloat(row["picture"], Int64(row["value"]))
                                   : FormatFloat(row["picture"], Double(row["value"])),
              row["expected"]);
  }
}

// Shapes at the limits of the quick way, and beyond what the vectors hold.
struct PictureCase {
  const char* Picture;
  double Value;
  const char* Expected;
};
const PictureCase PictureCases[] = {
    {"#,##0.00",                  5629499534213.125,    "5,629,499,534,213.13"     },
    {"#,##0.00",                  999999999999999.8,    "999,999,999,999,999.80"   },
    {"0;;",                       -0.2,                 "0"                        },
    {";0.0",                      -0.01,                "0"                        }, // first is empty
    {"0;0;E+0\"-\"",              0.2,                  "E+0-"                     },
    {"0000000000000000000000000", 7,                    "0000000000000000000000007"},
    {"0.00000000000000000000000", 0.25,                 "0.25000000000000000000000"},
    {"0.00",                      5e-324,               "0.00"                     },
    {"0.0E+0",                    -9.96e99,             "-1.0E+100"                },
    {"0E+0E+0",                   5,                    "5E-1E+0"                  }, // two places
    {"0.00",                      999999999999999872.0, "999999999999999900.00"    },
};

TEST(FormatFloat, EdgesOfShapes) {
  const TLocaleScope scope{TFormatSettings()};
  for (const PictureCase& c : PictureCases) {
    EXPECT_EQ(FormatFloat(c.Picture, c.Value), c.Expected) << c.Picture << " of " << c.Value;
  }
}

TEST(FormatFloat, ThousandSeparatorIsAnyText) {
  struct Case {
    const char* Separator;
    const char* Expected;
  };
  const Case cases[] = {
      {"",          "-1234567.5"                  },
      {"\u00A0",    "-1\u00A0234\u00A0567.5"      },
      {"eight by",  "-1eight by234eight by567.5"  },
      {"nine byte", "-1nine byte234nine byte567.5"}, // too long for the quick way
  };
  for (const Case& c : cases) {
    TFormatSettings settings;
    settings.ThousandSeparator = c.Separator;
    const TLocaleScope scope(settings);
    EXPECT_EQ(FormatFloat("#,##0.0", -1234567.5), c.Expected);
  }
}

TEST(FormatFloat, IntegersAreExact) {
  struct Case {
    const char* Picture;
    std::int64_t Value;
    const char* Expected;
  };
  const Case cases[] = {
      {"#.0#",      0,                   ".0"                   },
      {"0 0",       TInt64Limits::min(), "-922337203685477580 8"},
      {";(0);nil",  TInt64Limits::max(), "9223372036854775807"  },
      {"#,##0;(#)", TInt64Limits::min(), "(9223372036854775808)"},
  };
  const TLocaleScope scope{TFormatSettings()};
  for (const Case& c : cases) EXPECT_EQ(FormatFloat(c.Picture, c.Value), c.Expected) << c.Picture;
}

TEST(TNumberPicture, AppendsByTheSettingsOfTheCall) {
  const TNumberPicture picture("#,##0.00 'x'");
  TFormatSettings german;
  german.DecimalSeparator = ',';
  german.ThousandSeparator = ".";
  std::string text = "a ";
  picture.Append(1234.5, german, text);
  picture.Append(std::int64_t{-6}, TFormatSettings(), text);
  EXPECT_EQ(text, "a 1.234,50 x-6.00 x");
}

// Doubles of all sizes; most with few digits, as in tables, the others with all.
class TRandomDoubles {
 public:
  double Next() {
    const std::uint64_t bits = Random_();
    switch (bits % 4) {
      case 0:
        return std::bit_cast<double>(Random_() & 0x7FEF'FFFF'FFFF'FFFF);
      case 1:
        return static_cast<double>(Random_() >> (11 + bits / 4 % 53)) / 1000;
      case 2:
        return std::ldexp(static_cast<double>(Random_()), -static_cast<int>(bits / 4 % 90));
      default: {
        const auto digits = static_cast<double>(Random_() % 10'000'000'000'000'000U);
        return digits / std::pow(10, static_cast<double>(bits / 4 % 24));
      }
    }
  }

 private:
  std::mt19937_64 Random_{20240229};
};

// Without sign, separator, exponent and outer zeros.
std::string SignificantDigits(std::string Text) {
  Text.resize(std::min(Text.find_first_of("eE"), Text.size()));
  std::erase(Text, '.');
  Text.erase(0, Text.find_first_not_of('0'));
  return Text.substr(0, Text.find_last_not_of('0') + 1);
}

// The quick way to the digits must never give others than the standard library.
TEST(FloatToStr, GivesTheShortestDigits) {
  const TLocaleScope scope{TFormatSettings()};
  TRandomDoubles random;
  for (int i = 0; i < 200'000; ++i) {
    const double value = random.Next();
    std::string shortest(32, ' ');
    std::to_chars(&shortest.front(), &shortest.back(), value, std::chars_format::scientific);
    const std::string text = FloatToStr(value);
    ASSERT_EQ(SignificantDigits(text), SignificantDigits(shortest));
    ASSERT_EQ(Double(text), value) << text;
  }
}

// The quick way to a rounded number must agree with rounding the digits.
TEST(FormatFloat, RoundsAsTheDigitsDo) {
  const TLocaleScope scope{TFormatSettings()};
  TRandomDoubles random;
  for (int i = 0; i < 200'000; ++i) {
    const double value = -random.Next();
    if (value <= -1e18) continue;
    ASSERT_EQ(FormatFloat("0.00", value), FloatToFixed(value, 2)) << FloatToStr(value);
    const double half = std::round(value * 1000) / 1000 + 0.005;  // halves, and next to them
    ASSERT_EQ(FormatFloat("0.00", half), FloatToFixed(half, 2)) << FloatToStr(half);
  }
}

TEST(FloatToStr, Vectors) {
  for (const TVector& row : ReadVectors("floattostr")) {
    SCOPED_TRACE(row.Place);
    const TLocaleScope scope(Locale(row["locale"]));
    EXPECT_EQ(FloatToStr(Double(row["value"])), row["expected"]);
  }
}

TEST(FloatToFixed, WritesAllDecimals) {
  struct Case {
    double Value;
    int Decimals;
    const char* Expected;
  };
  const Case cases[] = {
      {-0.0,      1,  "0,0"                     },
      {-0.004,    2,  "0,00"                    }, // no sign without a digit
      {-0.005,    2,  "-0,01"                   },
      {999.95,    1,  "1000,0"                  },
      {1e21,      1,  "1000000000000000000000,0"},
      {1.5,       -1, "2"                       },
      {-INFINITY, 3,  "-INF"                    },
  };
  const TLocaleScope scope(Locale("de"));
  for (const Case& c : cases) EXPECT_EQ(FloatToFixed(c.Value, c.Decimals), c.Expected);
}

TEST(StrToInt, Vectors) {
  for (const TVector& row : ReadVectors("strtoint")) {
    SCOPED_TRACE(row.Place + ": " + row["text"]);
    const bool wide = row["function"] == "StrToInt64";
    const std::string& text = row["text"];
    EXPECT_EQ(TextOrError<EConvertError>([&] {
                return wide ? std::to_string(StrToInt64(text)) : std::to_string(StrToInt(text));
              }),
              row["expected"]);
  }
}

TEST(StrToInt, DefaultsInPlaceOfErrors) {
  EXPECT_EQ(StrToIntDef("-$80000000", 5), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(StrToIntDef("2147483648", 5), 5);
  EXPECT_EQ(StrToInt64Def("2147483648", 5), 2147483648);
  EXPECT_EQ(StrToInt64Def("9223372036854775808", -6), -6);
  std::int32_t narrow = 7;
  EXPECT_FALSE(TryStrToInt("1 ", narrow));
  EXPECT_EQ(narrow, 7);
  std::int64_t wide = 7;
  EXPECT_FALSE(TryStrToInt64("$10000000000000000", wide));
  EXPECT_EQ(wide, 7);
  double real = 7;
  EXPECT_FALSE(TryStrToFloat("1,5 x", real));
  EXPECT_EQ(real, 7);
}

void ExpectFloat(const std::string& Text, const std::string& Expected) {
  EXPECT_EQ(TextOrError<EConvertError>([&] {
              const double value = StrToFloat(Text);
              if (std::isnan(value)) return std::string("NAN");
              const bool same = value == Double(Expected) &&
                                std::signbit(value) == std::signbit(Double(Expected));
              return same ? Expected : std::to_string(value);
            }),
            Expected);
}

TEST(StrToFloat, Vectors) {
  for (const TVector& row : ReadVectors("strtofloat")) {
    SCOPED_TRACE(row.Place + ": " + row["text"]);
    const TLocaleScope scope(Locale(row["locale"]));
    ExpectFloat(row["text"], row["expected"]);
  }
}

TEST(StrToFloat, RangeAndRounding) {
  const std::string zeros(400, '0');
  const std::pair<std::string, std::string> cases[] = {
      {"1" + zeros,                             "!\"1" + zeros + "\" is not a valid number"        },
      {"1" + zeros + "e-400",                   "1"                                                },
      {"0." + zeros + "1",                      "0"                                                },
      {"0." + zeros + "1e401",                  "1"                                                },
      {"1e99999999999999999999",                "!\"1e99999999999999999999\" is not a valid number"},
      {"0e99999",                               "0"                                                },
      {"9007199254740993.00000000000000000001", "9007199254740994"                                 },
      {"INFINITY",                              "!\"INFINITY\" is not a valid number"              },
  };
  const TLocaleScope scope{TFormatSettings()};
  for (const auto& [text, expected] : cases) ExpectFloat(text, expected);
}

}  // namespace
}  // namespace norva::tests
