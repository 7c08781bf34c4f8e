#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include <norva/platform/Clock.h>
#include <norva/platform/CodePages.h>
#include <norva/platform/DateTime.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>

namespace norva {
namespace {

bool IsDigit(char C) { return C >= '0' && C <= '9'; }

bool IsBlank(char C) { return C == ' ' || C == '\t'; }

bool IsOuterSpace(char C) { return static_cast<unsigned char>(C) <= ' '; }

// A reading position that moves over what it finds and stays where it is otherwise.
class TCursor {
 public:
  explicit TCursor(std::string_view Text) : Rest_(Text) {}

  std::string_view Rest() const { return Rest_; }
  bool AtEnd() const { return Rest_.empty(); }
  bool AtDigit() const { return !AtEnd() && IsDigit(Rest_.front()); }

  bool Skip(char C) {
    if (AtEnd() || Rest_.front() != C) return false;
    Rest_.remove_prefix(1);
    return true;
  }

  bool SkipBlanks() {
    const std::size_t before = Rest_.size();
    while (!AtEnd() && IsBlank(Rest_.front())) Rest_.remove_prefix(1);
    return Rest_.size() != before;
  }

  /// Up to `MaxDigits` digits; their number, 0 for none.
  int Number(int MaxDigits, int& Value) {
    int digits = 0;
    for (Value = 0; digits < MaxDigits && AtDigit(); ++digits) {
      Value = Value * 10 + (Rest_.front() - '0');
      Rest_.remove_prefix(1);
    }
    return digits;
  }

  /// A decimal fraction of 1 to 9 digits, cut to thousandths. A tenth digit is left standing.
  bool Fraction(int& Thousandths) {
    const int digits = Number(3, Thousandths);
    if (digits == 0) return false;
    for (int i = digits; i < 3; ++i) Thousandths *= 10;
    int beyond;
    Number(6, beyond);
    return true;
  }

 private:
  std::string_view Rest_;
};

enum TDatePart { dpDay, dpMonth, dpYear };

// The first d, m and y of `ShortDateFormat` outside quotes; missing ones follow as y, m, d.
std::array<TDatePart, 3> DateOrder(std::string_view ShortDateFormat) {
  std::array<TDatePart, 3> order;
  std::size_t count = 0;
  const auto add = [&](TDatePart Part) {
    const auto end = order.begin() + count;
    if (std::find(order.begin(), end, Part) == end) order[count++] = Part;
  };
  char quote = 0;
  for (const char c : ShortDateFormat) {
    if (quote != 0) {
      if (c == quote) quote = 0;
      continue;
    }
    switch (c) {
      case '"':
      case '\'':
        quote = c;
        break;
      case 'd':
      case 'D':
        add(dpDay);
        break;
      case 'm':
      case 'M':
        add(dpMonth);
        break;
      case 'y':
      case 'Y':
        add(dpYear);
        break;
    }
  }
  for (const TDatePart part : {dpYear, dpMonth, dpDay}) add(part);
  return order;
}

// A year of one or two digits lies in the hundred years that begin 50 before the current one.
int FullYear(int Year, int Digits) {
  if (Digits > 2) return Year;
  const int first = CurrentYear() - 50;
  const int year = first - first % 100 + Year;
  return year < first ? year + 100 : year;
}

enum THalf { hfNone, hfAM, hfPM };

// Equal without regard to case. Plain letters, the usual marks, need no code page.
bool IsMark(std::string_view Text, std::string_view Mark) {
  const auto isPlain = [](char C) { return static_cast<unsigned char>(C) < 0x80; };
  // A character takes one to four bytes: most texts are too long to be looked at.
  if (Mark.empty() || Text.size() > 4 * Mark.size()) return false;
  if (CompareText(Text, Mark) == 0) return true;
  return !(std::all_of(Text.begin(), Text.end(), isPlain) &&
           std::all_of(Mark.begin(), Mark.end(), isPlain)) &&
         SameText(Text, Mark);
}

THalf HalfOf(std::string_view Mark, const TFormatSettings& Settings) {
  if (IsMark(Mark, Settings.TimeAMString)) return hfAM;
  if (IsMark(Mark, Settings.TimePMString)) return hfPM;
  if (IsMark(Mark, "AM") || IsMark(Mark, "A")) return hfAM;
  if (IsMark(Mark, "PM") || IsMark(Mark, "P")) return hfPM;
  return hfNone;
}

// Reads one text by the grammar at StrToDateTime.
class TDateTimeReader {
 public:
  explicit TDateTimeReader(const TFormatSettings& Settings) : Settings_(Settings) {}

  bool Read(std::string_view Text, TDateTimeParts& Parts) {
    while (!Text.empty() && IsOuterSpace(Text.front())) Text.remove_prefix(1);
    while (!Text.empty() && IsOuterSpace(Text.back())) Text.remove_suffix(1);
    if (Text.empty()) return false;
    // Three numbers before two: "31.1. 10:30" shows only behind its third number that this one is
    // no year.
    for (const int count : {3, 2}) {
      TCursor at(Text);
      if (!ReadNumbers(count, at)) continue;
      TCursor behindSeparator = at;
      if (ReadTimeBehindDate(at, Parts) || (behindSeparator.Skip(Settings_.DateSeparator) &&
                                            ReadTimeBehindDate(behindSeparator, Parts))) {
        return SetDate(count, Parts);
      }
    }
    return ReadTime(TCursor(Text), false, Parts);
  }

 private:
  bool ReadNumbers(int Count, TCursor& At) {
    for (int i = 0; i < Count; ++i) {
      if (i > 0) {
        if (!At.Skip(Settings_.DateSeparator)) return false;
        At.SkipBlanks();
      }
      TNumber& number = Numbers_[static_cast<std::size_t>(i)];
      number.Digits = At.Number(4, number.Value);
      if (number.Digits == 0) return false;
    }
    return !At.AtDigit();
  }

  bool SetDate(int Count, TDateTimeParts& Parts) const {
    if (Count == 2) Parts.Year = CurrentYear();
    std::size_t next = 0;
    for (const TDatePart part : DateOrder(Settings_.ShortDateFormat)) {
      if (part == dpYear && Count == 2) continue;
      const TNumber number = Numbers_[next++];
      if (part == dpYear) {
        Parts.Year = FullYear(number.Value, number.Digits);
      } else {
        if (number.Digits > 2) return false;
        (part == dpMonth ? Parts.Month : Parts.Day) = number.Value;
      }
    }
    return true;
  }

  bool ReadTimeBehindDate(TCursor At, TDateTimeParts& Parts) const {
    return At.AtEnd() || (At.SkipBlanks() && ReadTime(At, true, Parts));
  }

  // A time that takes the whole rest. `Parts` keeps nothing of a time that fails.
  bool ReadTime(TCursor At, bool BehindDate, TDateTimeParts& Parts) const {
    TDateTimeParts parts;
    std::string_view mark = ReadMarkBeforeClock(At);
    const bool markBefore = !mark.empty();
    int minute = -1;
    if (!ReadClock(At, parts, minute)) return false;
    if (!markBefore) {
      At.SkipBlanks();
      mark = At.Rest();
    } else if (!At.AtEnd()) {
      return false;
    }
    if (minute < 0 && !BehindDate && CharCount(mark) < 2) return false;
    if (!mark.empty() && !ApplyMark(HalfOf(mark, Settings_), parts)) return false;
    parts.Minute = std::max(minute, 0);
    Parts = parts;
    return true;
  }

  // What stands before the first digit, without the blanks behind it.
  static std::string_view ReadMarkBeforeClock(TCursor& At) {
    if (At.AtDigit()) return {};
    const std::string_view text = At.Rest();
    const auto length =
        static_cast<std::size_t>(std::find_if(text.begin(), text.end(), IsDigit) - text.begin());
    At = TCursor(text.substr(length));
    std::string_view mark = text.substr(0, length);
    while (!mark.empty() && IsBlank(mark.back())) mark.remove_suffix(1);
    return mark;
  }

  // `Minute` stays as it is when there is none.
  bool ReadClock(TCursor& At, TDateTimeParts& Parts, int& Minute) const {
    if (At.Number(2, Parts.Hour) == 0) return false;
    if (!ReadSexagesimal(At, Minute) || !ReadSexagesimal(At, Parts.Second)) return true;
    TCursor fraction = At;
    if ((fraction.Skip('.') || fraction.Skip(Settings_.DecimalSeparator)) &&
        fraction.Fraction(Parts.Millisecond)) {
      At = fraction;
    }
    return true;
  }

  // A separator and a number behind it, or neither.
  bool ReadSexagesimal(TCursor& At, int& Value) const {
    TCursor at = At;
    int value;
    if (!(at.Skip(':') || at.Skip(Settings_.TimeSeparator)) || at.Number(2, value) == 0) {
      return false;
    }
    At = at;
    Value = value;
    return true;
  }

  static bool ApplyMark(THalf Half, TDateTimeParts& Parts) {
    if (Half == hfNone || Parts.Hour < 1 || Parts.Hour > 12) return false;
    Parts.Hour = Parts.Hour % 12 + (Half == hfPM ? 12 : 0);
    return true;
  }

  struct TNumber {
    int Value, Digits;
  };

  const TFormatSettings& Settings_;
  std::array<TNumber, 3> Numbers_ = {};
};

// Exactly two digits at `At`.
bool TwoDigits(const char* At, int& Value) {
  if (!IsDigit(At[0]) || !IsDigit(At[1])) return false;
  Value = (At[0] - '0') * 10 + (At[1] - '0');
  return true;
}

bool IsoToDate(const char* At, TDateTimeParts& Parts) {
  int century;
  std::int32_t day;
  if (!TwoDigits(At, century) || !TwoDigits(At + 2, Parts.Year) || At[4] != '-' ||
      !TwoDigits(At + 5, Parts.Month) || At[7] != '-' || !TwoDigits(At + 8, Parts.Day)) {
    return false;
  }
  Parts.Year += century * 100;
  return TryEncodeDate(Parts.Year, Parts.Month, Parts.Day, day);
}

bool IsoToTime(std::string_view Text, TDateTimeParts& Parts) {
  const char* const at = Text.data();
  if (Text.size() < 5 || !TwoDigits(at, Parts.Hour) || at[2] != ':' ||
      !TwoDigits(at + 3, Parts.Minute) || Parts.Hour > 23 || Parts.Minute > 59) {
    return false;
  }
  if (Text.size() == 5) return true;
  if (Text.size() < 8 || at[5] != ':' || !TwoDigits(at + 6, Parts.Second) || Parts.Second > 59) {
    return false;
  }
  if (Text.size() == 8) return true;
  TCursor fraction(Text.substr(8));
  return fraction.Skip('.') && fraction.Fraction(Parts.Millisecond) && fraction.AtEnd();
}

}  // namespace

bool TryStrToDateTime(std::string_view Text, TDateTime& Value) {
  TDateTimeParts parts;
  return TDateTimeReader(FormatSettings()).Read(Text, parts) && TryEncodeDateTime(parts, Value);
}

TDateTime StrToDateTime(std::string_view Text) {
  TDateTime value;
  if (!TryStrToDateTime(Text, value)) throw EConvertError(MsgNotADateTime, Text);
  return value;
}

bool TryIsoToDateTime(std::string_view Text, TDateTimeParts& Parts) {
  constexpr std::size_t DateLength = 10;  // YYYY-MM-DD
  TDateTimeParts parts;
  if (Text.size() >= DateLength && Text[4] == '-') {
    if (!IsoToDate(Text.data(), parts)) return false;
    Text.remove_prefix(DateLength);
    if (Text.empty()) {
      Parts = parts;
      return true;
    }
    if (Text[0] != ' ' && Text[0] != 'T') return false;
    Text.remove_prefix(1);
  }
  if (!IsoToTime(Text, parts)) return false;
  Parts = parts;
  return true;
}

}  // namespace norva
