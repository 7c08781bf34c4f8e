#include <algorithm>
#include <array>
#include <cstring>

#include <norva/platform/DateTime.h>

namespace norva {
namespace internal {

enum TDateItemKind : std::uint8_t {
  diNone,
  diLiteral,
  diDateSeparator,
  diTimeSeparator,
  diDay,
  diDay2,  // a number behind a name: that many digits
  diShortDayName,
  diLongDayName,
  diMonth,
  diMonth2,
  diShortMonthName,
  diLongMonthName,
  diYear2,
  diYear4,
  diHour,
  diHour2,
  diMinute,
  diMinute2,
  diSecond,
  diSecond2,
  diMSec,
  diMSec3,
  diSpelledHalf,  // Start and Length of the first half; the second follows behind a slash
  diLocaleHalf,
  diGeneral,
  diShortDate,
  diLongDate,
  diShortTime,
  diLongTime,
};

/// The value being written, and its text on the way to the caller's string: short pieces gather in
/// a buffer, for one append in place of one each.
class TDateSink {
 public:
  TDateSink(const TDateTimeParts& Parts, const TFormatSettings& Settings, std::string& Out)
      : Parts_(Parts), Settings_(Settings), Out_(Out) {}

  const TDateTimeParts& Parts() const { return Parts_; }
  const TFormatSettings& Settings() const { return Settings_; }
  int Weekday() const {
    std::int32_t day = 0;
    TryEncodeDate(Parts_.Year, Parts_.Month, Parts_.Day, day);
    return WeekdayOf(day);
  }

  void Char(char C) { *Room(1) = C; }

  void Digits2(int Value) {
    char* const to = Room(2);
    to[0] = static_cast<char>('0' + Value / 10);
    to[1] = static_cast<char>('0' + Value % 10);
  }

  void Digits(int Value) {
    if (Value >= 100) Char(static_cast<char>('0' + Value / 100));
    if (Value >= 10) {
      Digits2(Value % 100);
    } else {
      Char(static_cast<char>('0' + Value));
    }
  }

  void Text(std::string_view Text) {
    if (Text.size() > Buffer_.size()) {
      Flush();
      Out_.append(Text);
    } else {
      char* const to = Room(Text.size());  // first: it may flush
      std::memcpy(to, Text.data(), Text.size());
    }
  }

  void Flush() {
    Out_.append(Buffer_.data(), Used_);
    Used_ = 0;
  }

 private:
  char* Room(std::size_t Size) {
    if (Size > Buffer_.size() - Used_) Flush();
    char* const to = Buffer_.data() + Used_;
    Used_ += Size;
    return to;
  }

  const TDateTimeParts& Parts_;
  const TFormatSettings& Settings_;
  std::string& Out_;
  std::size_t Used_ = 0;
  std::array<char, 64> Buffer_;
};

}  // namespace internal

using namespace internal;

namespace {

constexpr int MaxDepth = 2;  // of locale pictures reached through locale pictures

// What a run of one letter stands for, by its length; the last entry also for longer runs.
constexpr std::size_t MaxRun = 6;
struct TRun {
  char Letter;
  std::array<TDateItemKind, MaxRun> Kinds;
};
constexpr TRun Runs[] = {
    {'c', {diGeneral}                                                            },
    {'d', {diDay, diDay2, diShortDayName, diLongDayName, diShortDate, diLongDate}},
    {'m', {diMonth, diMonth2, diShortMonthName, diLongMonthName}                 },
    {'y', {diYear2, diYear2, diYear4}                                            },
    {'h', {diHour, diHour2}                                                      },
    {'n', {diMinute, diMinute2}                                                  },
    {'s', {diSecond, diSecond2}                                                  },
    {'z', {diMSec, diMSec3}                                                      },
    {'t', {diShortTime, diLongTime}                                              },
};

char Lower(char C) { return C >= 'A' && C <= 'Z' ? static_cast<char>(C - 'A' + 'a') : C; }

TDateItemKind KindOfRun(char Letter, std::size_t Length) {
  for (const TRun& run : Runs) {
    if (run.Letter != Letter) continue;
    std::size_t last = std::min(Length, MaxRun) - 1;
    while (run.Kinds[last] == diNone) --last;
    return run.Kinds[last];
  }
  return diNone;
}

// The parsed form of one of the locale's pictures. Columns are formatted by the same few pictures
// over and over, so every thread keeps the last one of each setting; a changed setting shows at
// once. One call works with one record, so a picture cannot be replaced while it is being written.
const TDatePicture& ParsedOnce(TDateItemKind Setting, const std::string& Picture) {
  struct TEntry {
    std::string Text;
    TDatePicture Parsed;
  };
  static thread_local std::array<TEntry, diLongTime - diShortDate + 1> entries;
  TEntry& entry = entries[static_cast<std::size_t>(Setting - diShortDate)];
  if (entry.Text != Picture) {
    entry.Text.clear();  // should parsing run out of memory
    entry.Parsed = TDatePicture(Picture);
    entry.Text = Picture;
  }
  return entry.Parsed;
}

const std::string& LocalePicture(TDateItemKind Kind, const TFormatSettings& Settings) {
  switch (Kind) {
    case diLongDate:
      return Settings.LongDateFormat;
    case diShortTime:
      return Settings.ShortTimeFormat;
    case diLongTime:
      return Settings.LongTimeFormat;
    default:
      return Settings.ShortDateFormat;
  }
}

}  // namespace

TDatePicture::TDatePicture(std::string_view Picture) : Picture_(Picture.empty() ? "c" : Picture) {
  Items_.reserve(Picture_.size());  // an item takes one character at least
  for (std::size_t at = 0; at < Picture_.size();) at += ReadItem(at);
}

// Adds the item at `At` and returns the characters it takes, as the two below.
std::size_t TDatePicture::ReadItem(std::size_t At) {
  const char letter = Lower(Picture_[At]);
  std::size_t length = 1;
  switch (letter) {
    case '"':
    case '\'':
      return ReadQuoted(At);
    case '/':
      Add(diDateSeparator);
      return 1;
    case ':':
      Add(diTimeSeparator);
      return 1;
    case 'a':
      if ((length = ReadHalfOfDay(At)) != 0) return length;
      AddLiteral(At, 1);
      return 1;
  }
  while (At + length < Picture_.size() && Lower(Picture_[At + length]) == letter) ++length;
  TDateItemKind kind = KindOfRun(letter, length);
  if (kind == diMonth && FollowsHour()) kind = diMinute;
  if (kind == diMonth2 && FollowsHour()) kind = diMinute2;
  if (kind == diNone) {
    AddLiteral(At, length);
  } else {
    Add(kind);
  }
  return length;
}

// An unclosed quote runs to the end.
std::size_t TDatePicture::ReadQuoted(std::size_t At) {
  const std::size_t close = std::min(Picture_.find(Picture_[At], At + 1), Picture_.size());
  AddLiteral(At + 1, close - At - 1);
  return std::min(close + 1, Picture_.size()) - At;
}

// 0 for an `a` that is a literal.
std::size_t TDatePicture::ReadHalfOfDay(std::size_t At) {
  const auto stands = [&](std::string_view Specifier) {
    return Picture_.size() - At >= Specifier.size() &&
           std::equal(Specifier.begin(), Specifier.end(), Picture_.begin() + std::ptrdiff_t(At),
                      [](char a, char b) { return a == Lower(b); });
  };
  std::size_t length = 0;
  if (stands("am/pm") || stands("a/p")) {
    length = Picture_[At + 1] == '/' ? 3 : 5;
    Add(diSpelledHalf, At, length / 2);
  } else if (stands("ampm")) {
    length = 4;
    Add(diLocaleHalf);
  }
  if (length != 0) TwelveHours_ = true;
  return length;
}

void TDatePicture::Add(TDateItemKind Kind, std::size_t Start, std::size_t Length) {
  Items_.push_back({Kind, static_cast<std::uint32_t>(Start), static_cast<std::uint32_t>(Length)});
}

void TDatePicture::AddLiteral(std::size_t Start, std::size_t Length) {
  if (Length == 0) return;
  if (!Items_.empty() && Items_.back().Kind == diLiteral &&
      Items_.back().Start + Items_.back().Length == Start) {
    Items_.back().Length += static_cast<std::uint32_t>(Length);
  } else {
    Add(diLiteral, Start, Length);
  }
}

// True when the last specifier so far is the hour; literals and separators may stand behind it.
bool TDatePicture::FollowsHour() const {
  const auto last = std::find_if(Items_.rbegin(), Items_.rend(),
                                 [](const TDateItem& Item) { return Item.Kind > diTimeSeparator; });
  return last != Items_.rend() && (last->Kind == diHour || last->Kind == diHour2);
}

void TDatePicture::Append(TDateTime Value, const TFormatSettings& Settings,
                          std::string& Out) const {
  Append(DecodeDateTime(Value), Settings, Out);
}

void TDatePicture::Append(const TDateTimeParts& Parts, const TFormatSettings& Settings,
                          std::string& Out) const {
  TDateSink sink(Parts, Settings, Out);
  Write(sink, 0);
  sink.Flush();
}

std::size_t TDatePicture::LengthBound(const TFormatSettings& Settings) const {
  constexpr std::size_t year = 4;  // the longest number
  std::size_t bound = 0;
  for (const TDateItem& item : Items_) {
    switch (item.Kind) {
      case diShortDayName:
      case diLongDayName:
      case diShortMonthName:
      case diLongMonthName:
      case diGeneral:
      case diShortDate:
      case diLongDate:
      case diShortTime:
      case diLongTime:
        return SIZE_MAX;
      case diLiteral:
      case diSpelledHalf:
        bound += item.Length;
        break;
      case diLocaleHalf:
        bound += std::max(Settings.TimeAMString.size(), Settings.TimePMString.size());
        break;
      case diDateSeparator:
      case diTimeSeparator:
        ++bound;
        break;
      case diYear4:
        bound += year;
        break;
      case diMSec:
      case diMSec3:
        bound += 3;
        break;
      default:
        bound += 2;
    }
  }
  return bound;
}

std::string_view TDatePicture::TextOf(const TDateItem& Item) const {
  return std::string_view(Picture_).substr(Item.Start, Item.Length);
}

// `Depth`: 0 for the caller's picture, 1 for a locale picture it names, and so on.
void TDatePicture::Write(TDateSink& Sink, int Depth) const {
  const TDateTimeParts& parts = Sink.Parts();
  const TFormatSettings& settings = Sink.Settings();
  const int hour = TwelveHours_ ? (parts.Hour + 11) % 12 + 1 : parts.Hour;
  const auto name = [](const auto& Names, int Index) -> const std::string& {
    return Names[static_cast<std::size_t>(Index)];
  };
  const auto writeLocale = [&](TDateItemKind Kind) {
    const std::string& picture = LocalePicture(Kind, settings);
    if (Depth == MaxDepth || picture.empty()) return;
    ParsedOnce(Kind, picture).Write(Sink, Depth + 1);
  };
  for (const TDateItem& item : Items_) {
    switch (item.Kind) {
      case diNone:
        break;
      case diLiteral:
        if (item.Length == 1) {
          Sink.Char(Picture_[item.Start]);
        } else {
          Sink.Text(TextOf(item));
        }
        break;
      case diDateSeparator:
        Sink.Char(settings.DateSeparator);
        break;
      case diTimeSeparator:
        Sink.Char(settings.TimeSeparator);
        break;
      case diDay:
        Sink.Digits(parts.Day);
        break;
      case diDay2:
        Sink.Digits2(parts.Day);
        break;
      case diShortDayName:
        Sink.Text(name(settings.ShortDayNames, Sink.Weekday()));
        break;
      case diLongDayName:
        Sink.Text(name(settings.LongDayNames, Sink.Weekday()));
        break;
      case diMonth:
        Sink.Digits(parts.Month);
        break;
      case diMonth2:
        Sink.Digits2(parts.Month);
        break;
      case diShortMonthName:
        Sink.Text(name(settings.ShortMonthNames, parts.Month - 1));
        break;
      case diLongMonthName:
        Sink.Text(name(settings.LongMonthNames, parts.Month - 1));
        break;
      case diYear4:
        Sink.Digits2(parts.Year / 100);
        [[fallthrough]];
      case diYear2:
        Sink.Digits2(parts.Year % 100);
        break;
      case diHour:
        Sink.Digits(hour);
        break;
      case diHour2:
        Sink.Digits2(hour);
        break;
      case diMinute:
        Sink.Digits(parts.Minute);
        break;
      case diMinute2:
        Sink.Digits2(parts.Minute);
        break;
      case diSecond:
        Sink.Digits(parts.Second);
        break;
      case diSecond2:
        Sink.Digits2(parts.Second);
        break;
      case diMSec:
        Sink.Digits(parts.Millisecond);
        break;
      case diMSec3:
        Sink.Char(static_cast<char>('0' + parts.Millisecond / 100));
        Sink.Digits2(parts.Millisecond % 100);
        break;
      case diSpelledHalf: {
        TDateItem half = item;
        if (parts.Hour >= 12) half.Start += half.Length + 1;
        Sink.Text(TextOf(half));
        break;
      }
      case diLocaleHalf:
        Sink.Text(parts.Hour < 12 ? settings.TimeAMString : settings.TimePMString);
        break;
      case diGeneral:
        writeLocale(diShortDate);
        if (parts.Hour != 0 || parts.Minute != 0 || parts.Second != 0) {
          Sink.Char(' ');
          writeLocale(diLongTime);
        }
        break;
      case diShortDate:
      case diLongDate:
      case diShortTime:
      case diLongTime:
        writeLocale(item.Kind);
        break;
    }
  }
}

}  // namespace norva
