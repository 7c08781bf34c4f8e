#include <norva/core/internal/CellFormat.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>

#include <norva/platform/DateTime.h>
#include <norva/platform/Numbers.h>

namespace norva::internal {
namespace {

/// The value's own text; kept in `Buffer` unless it is a text already.
std::string_view OwnText(const TFieldValue& Value, TFieldType Type, const TFormatSettings& Settings,
                         std::string& Buffer) {
  if (Value.Kind == vkText) return Value.Text;
  AppendFieldText(Value, Type, Settings, Buffer);
  return Buffer;
}

/// A decimal separator that no number text contains otherwise.
bool TextKeepsNumbers(const TFormatSettings& Settings) {
  return Settings.DecimalSeparator == '.' || Settings.DecimalSeparator == ',';
}

void AppendInteger(const TNorvaColumn& Column, const TFieldValue& Value,
                   const TFormatSettings& Settings, std::string& Out) {
  std::int64_t number = Value.Integer;
  if (Value.Kind != vkInteger) {
    std::string buffer;
    number = StrToInt64Def(OwnText(Value, Column.FieldType, Settings, buffer), 0);
  }
  Column.NumberPicture().Append(number, Settings, Out);
}

/// Drops what the text would lose: fractions of a second, the time of a date, the day of a time.
TDateTimeParts PartsInText(const TFieldValue& Value, TFieldType Type) {
  TDateTimeParts parts = Value.Parts();
  parts.Millisecond = 0;
  if (Type == ftDate) parts.Hour = parts.Minute = parts.Second = 0;
  if (Type == ftTime) {
    const TDateTimeParts dayZero;
    parts.Year = dayZero.Year;
    parts.Month = dayZero.Month;
    parts.Day = dayZero.Day;
  }
  return parts;
}

std::optional<double> TypedFloat(const TFieldValue& Value, const TFormatSettings& Settings) {
  // The text of a float is the shortest that reads back to the same double, but for -0, whose text
  // is 0. That of an integer reads back as the nearest double.
  if (Value.Kind == vkFloat && TextKeepsNumbers(Settings)) return Value.Float + 0.0;
  if (Value.Kind == vkInteger) return static_cast<double>(Value.Integer);
  return std::nullopt;
}

std::optional<double> TypedMoment(const TFieldValue& Value, TFieldType Type,
                                  const TFormatSettings& Settings) {
  if (Value.Kind != vkDateTime || !TextKeepsDateTime(Type, Settings)) return std::nullopt;
  TDateTime moment = 0;
  TryEncodeDateTime(PartsInText(Value, Type), moment);
  return moment;
}

void AppendFloat(const TNorvaColumn& Column, const TFieldValue& Value,
                 const TFormatSettings& Settings, std::string& Out) {
  std::optional<double> number = TypedFloat(Value, Settings);
  if (!number) {
    std::string buffer;
    number = StrToFloat(OwnText(Value, Column.FieldType, Settings, buffer));
  }
  Column.NumberPicture().Append(*number, Settings, Out);
}

void AppendMoment(const TNorvaColumn& Column, const TFieldValue& Value,
                  const TFormatSettings& Settings, std::string& Out) {
  const TDatePicture& picture = Column.DatePicture();
  if (Value.Kind != vkDateTime || !TextKeepsDateTime(Column.FieldType, Settings)) {
    std::string buffer;
    picture.Append(StrToDateTime(OwnText(Value, Column.FieldType, Settings, buffer)), Settings,
                   Out);
    return;
  }
  picture.Append(PartsInText(Value, Column.FieldType), Settings, Out);
}

/// Reads a picture run by run.
class TRuns {
 public:
  explicit TRuns(std::string_view Picture) : Rest_(Picture) {}
  bool AtEnd() const { return Rest_.empty(); }
  /// Length of the run of `Letter`, in either case, that stands here; it is consumed.
  std::size_t Run(char Letter) {
    std::size_t length = 0;
    while (length < Rest_.size() &&
           std::tolower(static_cast<unsigned char>(Rest_[length])) == Letter)
      ++length;
    Rest_.remove_prefix(length);
    return length;
  }
  bool Take(std::string_view Text) {
    if (Rest_.size() < Text.size()) return false;
    const bool same = std::equal(Text.begin(), Text.end(), Rest_.begin(), [](char a, char b) {
      return a == std::tolower(static_cast<unsigned char>(b));
    });
    if (same) Rest_.remove_prefix(Text.size());
    return same;
  }
  bool TakeChar(char C) {
    if (Rest_.empty() || Rest_.front() != C) return false;
    Rest_.remove_prefix(1);
    return true;
  }
  char Next() const {
    return Rest_.empty() ? '\0'
                         : static_cast<char>(std::tolower(static_cast<unsigned char>(Rest_[0])));
  }

 private:
  std::string_view Rest_;
};

/// Day, month and year in numbers, the year in full, each once, with separators between.
bool KeepsDate(const TFormatSettings& Settings) {
  const char separator = Settings.DateSeparator;
  if (separator != '-' && separator != '/' && separator != '.') return false;
  TRuns runs(Settings.ShortDateFormat);
  std::string seen;
  for (int i = 0; i < 3; ++i) {
    if (i > 0 && !runs.TakeChar('/') && !runs.TakeChar(separator)) return false;
    const char letter = runs.Next();
    const std::size_t length = runs.Run(letter);
    const bool plain =
        letter == 'y' ? length >= 3 : (letter == 'd' || letter == 'm') && length <= 2;
    if (!plain || seen.find(letter) != std::string::npos) return false;
    seen += letter;
  }
  return runs.AtEnd();
}

/// Hour, minute and second with separators between, then a half of the day or nothing.
bool KeepsTime(const TFormatSettings& Settings) {
  const char mark = Settings.TimeSeparator;
  if ((mark != ':' && mark != '.') || mark == Settings.DateSeparator) return false;
  TRuns runs(Settings.LongTimeFormat);
  const auto separator = [&] { return runs.TakeChar(':') || runs.TakeChar(mark); };
  if (runs.Run('h') == 0 || !separator()) return false;
  const std::size_t minutes = runs.Run('m');
  if (minutes > 2 || (minutes == 0 && runs.Run('n') == 0)) return false;
  if (!separator() || runs.Run('s') == 0) return false;
  return runs.AtEnd() || (runs.Take(" am/pm") && runs.AtEnd());
}

/// A short text in a form that is compared in a few instructions: its ends as two numbers.
/// Shorter and longer texts have none.
struct TShortText {
  std::uint64_t First = 0, Last = 0;
  std::size_t Size = SIZE_MAX;

  constexpr TShortText() = default;
  explicit TShortText(std::string_view Text) {
    if (Text.size() > 2 * sizeof First || Text.size() < sizeof First) return;
    Size = Text.size();
    std::memcpy(&First, Text.data(), sizeof First);
    std::memcpy(&Last, Text.data() + Size - sizeof Last, sizeof Last);
  }
  bool Equals(std::string_view Text) const {
    const TShortText other(Text);
    return other.Size != SIZE_MAX && Size == other.Size && First == other.First &&
           Last == other.Last;
  }
};

/// Whether the texts of dates and of times are read back, and the settings that this was found for.
struct TKeptAnswer {
  bool Date = false, Time = false;

  /// Asked for every cell, while the settings hardly ever change: the last answer is kept, for
  /// pictures of 8 to 16 bytes, as nearly all are.
  void Find(const TFormatSettings& Settings) {
    if (DateFormat_.Equals(Settings.ShortDateFormat) &&
        TimeFormat_.Equals(Settings.LongTimeFormat) && Marks_[0] == Settings.DateSeparator &&
        Marks_[1] == Settings.TimeSeparator) {
      return;
    }
    Date = KeepsDate(Settings);
    Time = KeepsTime(Settings);
    DateFormat_ = TShortText(Settings.ShortDateFormat);
    TimeFormat_ = TShortText(Settings.LongTimeFormat);
    Marks_[0] = Settings.DateSeparator;
    Marks_[1] = Settings.TimeSeparator;
  }

 private:
  TShortText DateFormat_, TimeFormat_;
  char Marks_[2] = {};
};

}  // namespace

bool TextKeepsDateTime(TFieldType Type, const TFormatSettings& Settings) {
  static thread_local constinit TKeptAnswer last;
  TKeptAnswer& answer = last;
  answer.Find(Settings);
  return (Type == ftTime || answer.Date) && (Type == ftDate || answer.Time);
}

std::optional<double> TypedNumber(const TNorvaColumn& Column, const TFieldValue& Value,
                                  const TFormatSettings& Settings) {
  switch (Column.ColType) {
    case ectInteger:
    case ectFloat:
    case ectCurrency:
      return TypedFloat(Value, Settings);
    case ectDate:
    case ectTime:
    case ectDateTime:
      return TypedMoment(Value, Column.FieldType, Settings);
    default:
      return std::nullopt;
  }
}

std::size_t LengthBound(const TNorvaColumn& Column, const TFieldValue& Value,
                        const TFormatSettings& Settings) {
  switch (Value.Kind) {
    case vkText:
      return Column.IsString() ? Value.Text.size() : SIZE_MAX;
    case vkInteger:
      return Column.ColType == ectInteger
                 ? Column.NumberPicture().LengthBound(Value.Integer, Settings)
                 : SIZE_MAX;
    case vkFloat:
      if (Column.ColType != ectFloat && Column.ColType != ectCurrency) return SIZE_MAX;
      return TextKeepsNumbers(Settings) ? Column.NumberPicture().LengthBound(Value.Float, Settings)
                                        : SIZE_MAX;
    case vkDateTime:
      if (!Column.IsDateTime() || !Value.Decoded()) return SIZE_MAX;
      return TextKeepsDateTime(Column.FieldType, Settings)
                 ? Column.DatePicture().LengthBound(Settings)
                 : SIZE_MAX;
    case vkBoolean:
      return Column.ColType == ectBoolean ? std::string_view("False").size() : SIZE_MAX;
    case vkNull:
      break;
  }
  return SIZE_MAX;
}

void AppendCell(const TNorvaColumn& Column, const TFieldValue& Value,
                const TFormatSettings& Settings, std::string& Out) {
  switch (Column.ColType) {
    case ectInteger:
      return AppendInteger(Column, Value, Settings, Out);
    case ectFloat:
    case ectCurrency:
      return AppendFloat(Column, Value, Settings, Out);
    case ectDate:
    case ectTime:
    case ectDateTime:
      return AppendMoment(Column, Value, Settings, Out);
    case ectString:
    case ectBoolean:
    case ectUnknown:
      return AppendFieldText(Value, Column.FieldType, Settings, Out);
  }
}

}  // namespace norva::internal
