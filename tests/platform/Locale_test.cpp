#include <norva/platform/Locale.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <tests/ErrorText.h>
#include <tests/platform/TextScopes.h>

// newlocale of the C library never frees the copy that it makes of LOCPATH.
extern "C" const char* __lsan_default_suppressions() { return "leak:argz_add_sep"; }

namespace norva::tests {
namespace {

// --- Locales of the tests' own ------------------------------------------------------------------

/// Compiles locales from the sources that the C library brings (Debian package `locales`), so that
/// the tests do not depend on what the machine has installed.
class LocaleTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    std::string pattern = testing::TempDir() + "norva-locales-XXXXXX";
    ASSERT_NE(mkdtemp(pattern.data()), nullptr) << pattern;
    Folder_ = pattern;
  }
  static void TearDownTestSuite() { std::filesystem::remove_all(Folder_); }

  /// Makes the locale `Name` ("de_DE.UTF-8"), once, and returns the name.
  static std::string Compile(const std::string& Name) {
    return Compile(Name, Name.substr(0, Name.find('.')));
  }
  /// The same from `Source`, a name or a file.
  static std::string Compile(const std::string& Name, const std::string& Source) {
    if (Compiled_.insert(Name).second) {
      const std::string command = "localedef -i '" + Source + "' -f " +
                                  Name.substr(Name.find('.') + 1) + " '" + Folder_ + "/" + Name +
                                  "'";
      EXPECT_EQ(std::system(command.c_str()), 0) << command;
    }
    return Name;
  }
  /// An environment in which those locales are found.
  static TEnvironment Environment(TEnvironment Variables = {}) {
    Variables["LOCPATH"] = Folder_;
    return Variables;
  }

  static inline std::string Folder_;

 private:
  static inline std::set<std::string> Compiled_;
};

// --- Records as text, converted to UTF-8 --------------------------------------------------------

std::string Numbers(const TFormatSettings& S) {
  return ToUtf8(std::string(1, S.DecimalSeparator) + "|" + S.ThousandSeparator + "|" +
                S.ListSeparator + "|" + S.CurrencyString);
}

std::string Dates(const TFormatSettings& S) {
  return std::string(1, S.DateSeparator) + "|" + S.ShortDateFormat + "|" + S.LongDateFormat;
}

std::string Times(const TFormatSettings& S) {
  return ToUtf8(std::string(1, S.TimeSeparator) + "|" + S.ShortTimeFormat + "|" + S.LongTimeFormat +
                "|" + S.TimeAMString + "|" + S.TimePMString);
}

std::string Names(const TFormatSettings& S) {
  std::string text;
  const auto add = [&text](const auto& List) {
    for (const std::string& name : List) text += name + "|";
    text += " ";
  };
  add(S.ShortMonthNames), add(S.LongMonthNames), add(S.ShortDayNames), add(S.LongDayNames);
  return ToUtf8(text);
}

std::string Record(const TFormatSettings& S) {
  return Numbers(S) + "\n" + Dates(S) + "\n" + Times(S) + "\n" + Names(S);
}

// --- FromLocale ---------------------------------------------------------------------------------

const char English[] =
    "Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec| "
    "January|February|March|April|May|June|July|August|September|October|November|December| "
    "Sun|Mon|Tue|Wed|Thu|Fri|Sat| Sunday|Monday|Tuesday|Wednesday|Thursday|Friday|Saturday| ";
const char German[] =
    "Jan|Feb|Mär|Apr|Mai|Jun|Jul|Aug|Sep|Okt|Nov|Dez| "
    "Januar|Februar|März|April|Mai|Juni|Juli|August|September|Oktober|November|Dezember| "
    "So|Mo|Di|Mi|Do|Fr|Sa| Sonntag|Montag|Dienstag|Mittwoch|Donnerstag|Freitag|Samstag| ";
const char Japanese[] =
    " 1月| 2月| 3月| 4月| 5月| 6月| 7月| 8月| 9月|10月|11月|12月| "
    "1月|2月|3月|4月|5月|6月|7月|8月|9月|10月|11月|12月| "
    "日|月|火|水|木|金|土| 日曜日|月曜日|火曜日|水曜日|木曜日|金曜日|土曜日| ";
const char Russian[] =  // months as they stand behind a day
    "янв|фев|мар|апр|мая|июн|июл|авг|сен|окт|ноя|дек| "
    "января|февраля|марта|апреля|мая|июня|июля|августа|сентября|октября|ноября|декабря| "
    "Вс|Пн|Вт|Ср|Чт|Пт|Сб| Воскресенье|Понедельник|Вторник|Среда|Четверг|Пятница|Суббота| ";
const char Clock24[] = ":|hh:mm|hh:mm:ss|AM|PM";
const char Kanji24[] = ":|hh:mm|hh:mm:ss|午前|午後";
const char Clock12[] = ":|hh:mm AM/PM|hh:mm:ss AM/PM|AM|PM";

struct LocaleCase {
  const char* Locale;
  int Page;
  const char *Numbers, *Dates, *Times, *Names;
};

// clang-format off
const LocaleCase LocaleCases[] = {
    {"de_DE.UTF-8", 65001, ",|.|;|€", ".|dd.mm.yyyy|d mmmm yyyy", Clock24, German},
    {"de_DE.UTF-8", 437, ",|.|;|EUR", ".|dd.mm.yyyy|d mmmm yyyy", Clock24, German},  // no euro sign
    {"en_US.UTF-8", 65001, ".|,|,|$", "/|mm/dd/yyyy|mmmm d, yyyy", Clock12, English},
    // Its own years have two digits; it has texts for the halves of the day, but 24 hours.
    {"en_GB.UTF-8", 65001, ".|,|,|£", "/|dd/mm/yyyy|d mmmm yyyy", ":|hh:mm|hh:mm:ss|am|pm", English},
    {"fr_FR.UTF-8", 1252, ",|\u00A0|;|€", "/|dd/mm/yyyy|d mmmm yyyy", Clock24, nullptr},
    {"ja_JP.UTF-8", 65001, ".|,|,|￥", "-|yyyy-mm-dd|yyyy mmmm d", Kanji24, Japanese},
    {"ja_JP.UTF-8", 1252, ".|,|,|JPY", "-|yyyy-mm-dd|yyyy mmmm d", Clock24, English},
    // The point of 10.30 is that of dates.
    {"fi_FI.UTF-8", 65001, ",|\u202F|;|€", ".|dd.mm.yyyy|d mmmm yyyy", Clock24, nullptr},
    // KOI8-R has no rouble sign; the compiled locale itself says so in letters.
    {"ru_RU.KOI8-R", 866, ",|\u00A0|;|руб", ".|dd.mm.yyyy|d mmmm yyyy", Clock24, Russian},
    // One day lacks a letter: no mixture of languages.
    {"hu_HU.UTF-8", 1252, ",|.|;|Ft", "-|yyyy-mm-dd|yyyy mmmm d", Clock24, English},
    // %d. %b %Y: a month name; kl. %H.%M %z: a point before the hour, and the dates' behind it
    {"nb_NO.UTF-8", 65001, ",|\u202F|;|kr", ".|dd.mm.yyyy|d mmmm yyyy", Clock24, nullptr},
};
// clang-format on

TEST_F(LocaleTest, ImportsWholeRecords) {
  const TLocaleVariables environment(Environment());
  for (const LocaleCase& c : LocaleCases) {
    SCOPED_TRACE(testing::Message() << c.Locale << " in " << c.Page);
    const TPageScope page(c.Page);
    const TFormatSettings settings = TFormatSettings::FromLocale(Compile(c.Locale));
    EXPECT_EQ(Numbers(settings), c.Numbers);
    EXPECT_EQ(Dates(settings), c.Dates);
    EXPECT_EQ(Times(settings), c.Times);
    if (c.Names) {
      EXPECT_EQ(Names(settings), c.Names);
    }
  }
}

struct PatternCase {
  const char *DateFormat, *TimeFormat, *TwelveHours, *AM, *PM;  // as strftime knows them
  const char *Dates, *Times;
};

// clang-format off
const PatternCase PatternCases[] = {
    {"%d/%m-%y", "%OH:%OM %p", "", "a", "p", "/|dd/mm/yyyy|d mmmm yyyy", ":|hh:mm|hh:mm:ss|a|p"},
    {"%-d.%_m.%Y", "%H:%M:%S", "", "", "", ".|d.m.yyyy|d mmmm yyyy", Clock24},  // no zeros
    {"%e-%m-%Ey", "%l.%M %p", "", "v", "n", "-|d-mm-yyyy|d mmmm yyyy", ".|hh:mm ampm|hh:mm:ss ampm|v|n"},
    // The weekday is no part, a name has no zeros, and only - / . separate.
    {"%A. %-B %d, %Y", "%p%I:%M %Z", "", "AM", "PM", "-|mm-dd-yyyy|mmmm d, yyyy", Clock12},
    {"%D", "%r", "", "AM", "PM", "/|mm/dd/yyyy|mmmm d, yyyy", Clock12},
    {"%F", "%r", "%k.%M", "AM", "PM", "-|yyyy-mm-dd|yyyy mmmm d", ".|hh:mm|hh:mm:ss|AM|PM"},
    // Separators count between the parts, and behind the hour.
    {"a.d. %Y %m/%d.", "at: %H.%M", "", "", "", "/|yyyy/mm/dd|yyyy mmmm d", ".|hh:mm|hh:mm:ss|AM|PM"},
    {"%d.%B", "%R", "", "", "", "-|yyyy-mm-dd|yyyy mmmm d", Clock24},  // no year: as if nothing was said
    {"%d.%m.%Y", "%H.%M.%S", "", "", "", ".|dd.mm.yyyy|d mmmm yyyy", Clock24},  // 10.30 looked like a date
};
// clang-format on

/// A locale with the patterns of `Case` that is otherwise the POSIX one in UTF-8.
void WriteSource(const std::string& File, const PatternCase& Case) {
  std::ofstream source(File);
  for (const char* category : {"CTYPE", "COLLATE", "NUMERIC", "MONETARY"}) {
    source << "LC_" << category << "\ncopy \"POSIX\"\nEND LC_" << category << "\n";
  }
  for (const char* category :
       {"IDENTIFICATION", "MESSAGES", "PAPER", "NAME", "ADDRESS", "TELEPHONE", "MEASUREMENT"}) {
    source << "LC_" << category << "\ncopy \"en_US\"\nEND LC_" << category << "\n";
  }
  source << R"(LC_TIME
abday "Sun";"Mon";"Tue";"Wed";"Thu";"Fri";"Sat"
day "1";"2";"3";"4";"5";"6";"7"
abmon "1";"2";"3";"4";"5";"6";"7";"8";"9";"10";"11";"12"
mon "1";"2";"3";"4";"5";"6";"7";"8";"9";"10";"11";"12"
d_t_fmt "%c"
)"
         << "d_fmt \"" << Case.DateFormat << "\"\nt_fmt \"" << Case.TimeFormat
         << "\"\nt_fmt_ampm \"" << Case.TwelveHours << "\"\nam_pm \"" << Case.AM << "\";\""
         << Case.PM << "\"\nEND LC_TIME\n";
}

TEST_F(LocaleTest, RebuildsPictures) {
  const TLocaleVariables environment(Environment());
  const TPageScope page(CodePageUtf8);
  int number = 0;
  for (const PatternCase& c : PatternCases) {
    SCOPED_TRACE(testing::Message() << c.DateFormat << " and " << c.TimeFormat);
    const std::string source = Folder_ + "/pattern" + std::to_string(++number);
    WriteSource(source, c);
    const std::string name = Compile("p" + std::to_string(number) + ".UTF-8", source);
    const TFormatSettings settings = TFormatSettings::FromLocale(name);
    EXPECT_EQ(Dates(settings), c.Dates);
    EXPECT_EQ(Times(settings), c.Times);
    EXPECT_EQ(Numbers(settings), ".||,|$");  // no groups; a dollar where there is no currency
  }
}

const std::string Invariant =
    ".|,|,|$\n-|yyyy-mm-dd|d mmmm yyyy\n:|hh:mm|hh:mm:ss|AM|PM\n" + std::string(English);

TEST_F(LocaleTest, InvariantNames) {
  const TLocaleVariables environment(Environment({
      {"LANG", Compile("de_DE.UTF-8")}
  }));
  for (const char* name : {"invariant", "C", "POSIX", "C.UTF-8"}) {
    EXPECT_EQ(Record(TFormatSettings::FromLocale(name)), Invariant) << name;
  }
}

TEST_F(LocaleTest, MissingLocaleIsAnError) {
  const TLocaleVariables environment(Environment({
      {"LANG", "C"}
  }));
  for (const std::string name : {"xx_YY.UTF-8", "Invariant", "", "../de_DE"}) {
    EXPECT_EQ(ErrorText<EConvertError>([&] { TFormatSettings::FromLocale(name); }),
              "Locale \"" + name + "\" is not installed on this system");
  }
}

// --- The environment ----------------------------------------------------------------------------

TEST_F(LocaleTest, EveryCategoryHasItsOwnVariable) {
  const std::string de = Compile("de_DE.UTF-8"), us = Compile("en_US.UTF-8");
  struct EnvironmentCase {
    TEnvironment Variables;
    const char *Numbers, *Dates;
  };
  const char *isoDate = "-|yyyy-mm-dd|d mmmm yyyy", *deDate = ".|dd.mm.yyyy|d mmmm yyyy",
             *usDate = "/|mm/dd/yyyy|mmmm d, yyyy";
  const EnvironmentCase cases[] = {
      {{},                                              ".|,|,|$",   isoDate},
      {{{"LANG", "C"}},                                 ".|,|,|$",   isoDate},
      {{{"LANG", "xx_YY.UTF-8"}},                       ".|,|,|$",   isoDate},
      {{{"LANG", de}},                                  ",|.|;|€", deDate },
      {{{"LC_ALL", ""}, {"LC_TIME", ""}, {"LANG", de}}, ",|.|;|€", deDate },
      {{{"LC_ALL", us}, {"LC_TIME", de}, {"LANG", de}}, ".|,|,|$",   usDate },
      {{{"LC_TIME", us}, {"LANG", de}},                 ",|.|;|€", usDate },
      {{{"LC_NUMERIC", de}},                            ",|.|;|$",   isoDate},
      {{{"LC_MONETARY", de}},                           ".|,|,|€", isoDate},
 // A category that the system lacks says nothing; the others do.
      {{{"LC_NUMERIC", "xx_YY"}, {"LANG", de}},         ".|,|,|€", deDate },
  };
  const TPageScope page(CodePageUtf8);
  for (const EnvironmentCase& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.Variables));
    const TLocaleVariables environment(Environment(c.Variables));
    const TFormatSettings settings = TFormatSettings::FromEnvironment();
    EXPECT_EQ(Numbers(settings), c.Numbers);
    EXPECT_EQ(Dates(settings), c.Dates);
  }
}

TEST_F(LocaleTest, CodePageIsThatOfTheCharacterSet) {
  struct CharsetCase {
    const char* Locale;
    int Page;
  };
  const CharsetCase cases[] = {
      {"de_DE.ISO-8859-15", 1252 },
      {"hu_HU.ISO-8859-2",  1250 },
      {"ru_RU.KOI8-R",      1251 },
      {"ja_JP.EUC-JP",      65001},
  };
  for (const CharsetCase& c : cases) {
    const TLocaleVariables environment(Environment({
        {"LC_CTYPE", Compile(c.Locale)},
        {"LANG",     "xx_YY"          }
    }));
    EXPECT_EQ(EnvironmentCodePage(), c.Page) << c.Locale;
  }
  for (const char* name : {"", "C", "POSIX", "xx_YY.ISO-8859-1"}) {
    const TLocaleVariables environment(Environment({
        {"LANG", name}
    }));
    EXPECT_EQ(EnvironmentCodePage(), CodePageUtf8) << name;
  }
}

struct AnsiCase {
  const char* Name;
  int Page;
};

const AnsiCase AnsiCases[] =
    {
        {"",            1252},
        {"de_DE.UTF-8", 1252},
        {"ru",          1251},
        {"sr@latin",    1251},
        {"cs_CZ",       1250},
        {"el_GR",       1253},
        {"tr_TR",       1254},
        {"he_IL",       1255},
        {"rup_MK",      1252}, // a language of three letters
};

TEST(SystemAnsiCodePage, FollowsPageThenLanguage) {
  for (const AnsiCase& c : AnsiCases) {
    const TLocaleVariables environment({
        {"LC_CTYPE", c.Name},
        {"LANG",     "C"   }
    });
    for (int page : {65001, 850}) {
      const TPageScope active(page);
      EXPECT_EQ(SystemAnsiCodePage(), c.Page) << c.Name;
    }
    const TPageScope active(1257);
    EXPECT_EQ(SystemAnsiCodePage(), 1257) << c.Name;
  }
}

// --- Threads and the process --------------------------------------------------------------------

TEST(FormatSettings, EveryThreadHasItsOwn) {
  std::string initial, changed;
  const auto read = [](std::string& Text) { Text = Record(FormatSettings()); };
  std::thread(read, std::ref(initial)).join();
  const TFormatSettings saved = FormatSettings();
  FormatSettings().DecimalSeparator = '#';
  std::thread([&] {
    read(changed);
    FormatSettings().DecimalSeparator = '!';
  }).join();
  EXPECT_EQ(changed, initial);
  EXPECT_EQ(FormatSettings().DecimalSeparator, '#');
  FormatSettings() = saved;

  const TPageScope page(EnvironmentCodePage());
  EXPECT_EQ(initial, Record(TFormatSettings::FromEnvironment()));
}

TEST_F(LocaleTest, TheProcessKeepsItsLocale) {
  const TLocaleVariables environment(Environment({
      {"LC_ALL", Compile("de_DE.UTF-8")}
  }));
  const std::string before = std::setlocale(LC_ALL, nullptr);
  TFormatSettings::FromEnvironment();
  TFormatSettings::FromLocale("de_DE.UTF-8");
  EnvironmentCodePage();
  EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
  EXPECT_EQ(std::localeconv()->decimal_point, std::string("."));
}

}  // namespace
}  // namespace norva::tests
