#include <norva/platform/internal/LocaleImport.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include <norva/platform/internal/SingleBytePage.h>

namespace norva::internal {
namespace {

/// `Utf8` in the page; nothing when the page lacks one of its characters.
std::optional<std::string> InPage(const std::optional<std::string>& Utf8,
                                  const TSingleBytePage* Page) {
  if (!Utf8 || Page == nullptr) return Utf8;
  std::string text;
  bool complete = true;
  Page->Encode(*Utf8, text, [&complete](char32_t) {
    complete = false;
    return '?';
  });
  return complete ? std::optional<std::string>(text) : std::nullopt;
}

/// The first of several texts that the page has, else a blank.
std::string FirstInPage(std::initializer_list<std::optional<std::string>> Choices,
                        const TSingleBytePage* Page) {
  for (const std::optional<std::string>& choice : Choices) {
    if (const std::optional<std::string> text = InPage(choice, Page)) return *text;
  }
  return " ";
}

}  // namespace

void ImportNumeric(const TSystemLocale& Locale, const TSingleBytePage* Page,
                   TFormatSettings& Settings) {
  const std::string radix = Locale.Text(RADIXCHAR).value_or("");
  const bool oneAscii = radix.size() == 1 && static_cast<unsigned char>(radix[0]) < 0x80;
  Settings.DecimalSeparator = oneAscii ? radix[0] : '.';
  Settings.ThousandSeparator = FirstInPage({Locale.Text(THOUSEP), "\u00A0"}, Page);
  Settings.ListSeparator = Settings.DecimalSeparator == ',' ? ';' : ',';
}

void ImportMonetary(const TSystemLocale& Locale, const TSingleBytePage* Page,
                    TFormatSettings& Settings) {
  // "EUR ": three letters and what separates them from an amount.
  const std::string code = Locale.Text(INT_CURR_SYMBOL).value_or("").substr(0, 3);
  Settings.CurrencyString = FirstInPage({Locale.Text(CURRENCY_SYMBOL), code}, Page);
  if (Settings.CurrencyString.empty()) Settings.CurrencyString = "$";
}

// --- Dates and times: strftime patterns become pictures -----------------------------------------

namespace {

/// A piece of a strftime pattern: a conversion, or a character that stands for itself.
struct TPatternPart {
  char Conversion;  // d day, m month, y year, H and I hour of 24 and 12, others as they are; 0 none
  bool Padded;      // a conversion with leading zeros
  char Literal;
};
using TPattern = std::vector<TPatternPart>;

/// Spells out the conversions that stand for several.
std::string_view Expansion(char Conversion, std::string_view TwelveHours) {
  switch (Conversion) {
    case 'D':
      return "%m/%d/%y";
    case 'F':
      return "%Y-%m-%d";
    case 'R':
      return "%H:%M";
    case 'T':
      return "%H:%M:%S";
    case 'r':
      return TwelveHours.empty() ? "%I:%M:%S %p" : TwelveHours;
    default:
      return {};
  }
}

/// One letter for all conversions that write the same thing.
char Canonical(char Conversion) {
  constexpr std::string_view Written = "ebBhYkl", Meant = "dmmmyHI";
  const std::size_t at = Written.find(Conversion);
  return at == std::string_view::npos ? Conversion : Meant[at];
}

/// Takes a pattern apart. `TwelveHours` is what %r stands for in the locale.
TPattern ParsePattern(std::string_view Pattern, std::string_view TwelveHours) {
  TPattern parts;
  for (std::size_t i = 0; i < Pattern.size(); ++i) {
    if (Pattern[i] != '%') {
      parts.push_back({0, false, Pattern[i]});
      continue;
    }
    // %[flags][width][E or O]conversion
    const std::size_t conversion = Pattern.find_first_not_of("_-0^#+123456789EO", i + 1);
    if (conversion == std::string_view::npos) break;
    const char letter = Pattern[conversion];
    const std::string_view modifiers = Pattern.substr(i + 1, conversion - i - 1);
    const std::string_view expansion = Expansion(letter, TwelveHours);
    if (expansion.empty()) {
      const bool name = letter == 'b' || letter == 'B' || letter == 'h';
      const bool bare = letter == 'e' || modifiers.find_first_of("-_") != std::string_view::npos;
      parts.push_back({Canonical(letter), name || !bare, 0});
    } else {
      // %r is spelled out once only, should a locale define it by itself.
      const TPattern inner = ParsePattern(expansion, {});
      parts.insert(parts.end(), inner.begin(), inner.end());
    }
    i = conversion;
  }
  return parts;
}

void ImportDatePattern(const TPattern& Pattern, TFormatSettings& Settings) {
  std::string order;  // "dmy"
  std::array<std::string, 3> pictures;
  char separator = 0;
  for (const TPatternPart& part : Pattern) {
    if (order.size() == pictures.size()) break;
    const char c = part.Conversion;
    if (c == 0) {
      const bool joins = part.Literal == '-' || part.Literal == '/' || part.Literal == '.';
      if (joins && separator == 0 && !order.empty()) separator = part.Literal;
    } else if ((c == 'd' || c == 'm' || c == 'y') && order.find(c) == std::string::npos) {
      // The year has four digits whatever the locale writes, so that it survives being read back.
      pictures[order.size()] = std::string(c == 'y' ? 4 : part.Padded ? 2 : 1, c);
      order += c;
    }
  }
  if (order.size() < pictures.size()) {
    order = "ymd";
    pictures = {"yyyy", "mm", "dd"};
    separator = 0;
  }
  Settings.DateSeparator = separator == 0 ? '-' : separator;
  Settings.ShortDateFormat =
      pictures[0] + Settings.DateSeparator + pictures[1] + Settings.DateSeparator + pictures[2];
  const bool monthFirst = order.find('m') < order.find('d');
  Settings.LongDateFormat = order[0] == 'y' ? "yyyy mmmm d"
                            : monthFirst    ? "mmmm d, yyyy"
                                            : "d mmmm yyyy";
}

/// Expects the date separator and the AM and PM texts to be set.
void ImportTimePattern(const TPattern& Pattern, TFormatSettings& Settings) {
  bool hour = false, twelve = false;
  char separator = 0;
  for (const TPatternPart& part : Pattern) {
    hour = hour || part.Conversion == 'H' || part.Conversion == 'I';
    twelve = twelve || part.Conversion == 'I';
    const bool joins = part.Literal == ':' || part.Literal == '.';
    if (joins && separator == 0 && hour) separator = part.Literal;
  }
  // Were both separators the same, 10.30 could be read back as a date.
  const bool usable = separator != 0 && separator != Settings.DateSeparator;
  Settings.TimeSeparator = usable ? separator : ':';

  const bool english = Settings.TimeAMString == "AM" && Settings.TimePMString == "PM";
  const std::string half = !twelve ? "" : english ? " AM/PM" : " ampm";
  // Minutes as mm, not nn: the same picture serves as a cell format in a workbook.
  Settings.ShortTimeFormat = "hh:mm" + half;
  Settings.LongTimeFormat = "hh:mm:ss" + half;
}

constexpr std::array<nl_item, 12> ShortMonths = {ABMON_1, ABMON_2,  ABMON_3,  ABMON_4,
                                                 ABMON_5, ABMON_6,  ABMON_7,  ABMON_8,
                                                 ABMON_9, ABMON_10, ABMON_11, ABMON_12};
constexpr std::array<nl_item, 12> LongMonths = {MON_1, MON_2, MON_3, MON_4,  MON_5,  MON_6,
                                                MON_7, MON_8, MON_9, MON_10, MON_11, MON_12};
constexpr std::array<nl_item, 7> ShortDays = {ABDAY_1, ABDAY_2, ABDAY_3, ABDAY_4,
                                              ABDAY_5, ABDAY_6, ABDAY_7};
constexpr std::array<nl_item, 7> LongDays = {DAY_1, DAY_2, DAY_3, DAY_4, DAY_5, DAY_6, DAY_7};

/// Reads one list of texts. False, and `Names` half written, when the page lacks one of them.
template <std::size_t N>
bool ReadNames(const TSystemLocale& Locale, const TSingleBytePage* Page,
               const std::array<nl_item, N>& Items, std::array<std::string, N>& Names) {
  for (std::size_t i = 0; i < N; ++i) {
    std::optional<std::string> name = InPage(Locale.Text(Items[i]), Page);
    if (!name) return false;
    Names[i] = std::move(*name);
  }
  return true;
}

/// All names or none: no text shall mix two languages.
void ImportNames(const TSystemLocale& Locale, const TSingleBytePage* Page,
                 TFormatSettings& Settings) {
  TFormatSettings named = Settings;
  if (ReadNames(Locale, Page, ShortMonths, named.ShortMonthNames) &&
      ReadNames(Locale, Page, LongMonths, named.LongMonthNames) &&
      ReadNames(Locale, Page, ShortDays, named.ShortDayNames) &&
      ReadNames(Locale, Page, LongDays, named.LongDayNames)) {
    Settings = std::move(named);
  }
}

void ImportHalves(const TSystemLocale& Locale, const TSingleBytePage* Page,
                  TFormatSettings& Settings) {
  std::array<std::string, 2> halves;
  const std::array<nl_item, 2> items = {AM_STR, PM_STR};
  if (!ReadNames(Locale, Page, items, halves)) halves = {};
  Settings.TimeAMString = halves[0].empty() ? "AM" : halves[0];
  Settings.TimePMString = halves[1].empty() ? "PM" : halves[1];
}

}  // namespace

void ImportTime(const TSystemLocale& Locale, const TSingleBytePage* Page,
                TFormatSettings& Settings) {
  const std::string twelveHours = Locale.Text(T_FMT_AMPM).value_or("");
  ImportNames(Locale, Page, Settings);
  ImportHalves(Locale, Page, Settings);
  ImportDatePattern(ParsePattern(Locale.Text(D_FMT).value_or(""), {}), Settings);
  ImportTimePattern(ParsePattern(Locale.Text(T_FMT).value_or(""), twelveHours), Settings);
}

}  // namespace norva::internal
