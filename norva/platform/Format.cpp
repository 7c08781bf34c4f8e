#include <norva/platform/Format.h>

#include <algorithm>
#include <charconv>

#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>
#include <norva/platform/Numbers.h>

namespace norva {
namespace {

constexpr int MaxNumber = 9999;  // width and precision; more is a slip of the pen
constexpr int DefaultDecimals = 2;

struct TSpecifier {
  bool Left = false;
  int Width = 0;
  int Precision = -1;  // none
  char Letter = 0;
};

// Takes the number that `Text` begins with; 0 when there is none.
int TakeNumber(std::string_view& Text) {
  int number = 0;
  while (!Text.empty() && Text[0] >= '0' && Text[0] <= '9') {
    number = std::min(number * 10 + (Text[0] - '0'), MaxNumber);
    Text.remove_prefix(1);
  }
  return number;
}

bool TakeChar(std::string_view& Text, char C) {
  if (!Text.starts_with(C)) return false;
  Text.remove_prefix(1);
  return true;
}

// Takes what follows the percent sign.
TSpecifier TakeSpecifier(std::string_view& Text) {
  TSpecifier specifier;
  specifier.Left = TakeChar(Text, '-');
  specifier.Width = TakeNumber(Text);
  if (TakeChar(Text, '.')) specifier.Precision = TakeNumber(Text);
  if (!Text.empty()) {
    specifier.Letter = Text[0];
    Text.remove_prefix(1);
  }
  return specifier;
}

// The digits of `Magnitude` after `Sign`, with leading zeros up to `MinDigits`.
std::string IntegerText(std::string_view Sign, std::uint64_t Magnitude, int Base, int MinDigits) {
  char digits[24];
  const char* const end = std::to_chars(digits, digits + sizeof digits, Magnitude, Base).ptr;
  const auto count = static_cast<int>(end - digits);
  std::string text(Sign);
  text.append(static_cast<std::size_t>(std::max(MinDigits - count, 0)), '0');
  return text.append(digits, static_cast<std::size_t>(count));
}

// The longest prefix of at most `Count` characters.
std::string_view FirstChars(std::string_view Text, int Count) {
  std::size_t end = 0;
  for (int i = 0; i < Count && end < Text.size(); ++i) {
    // The shortest cut that is not empty is one character.
    std::size_t size = 0;
    for (std::size_t bytes = 1; size == 0; ++bytes) {
      size = CutAtCharacter(Text.substr(end), bytes).size();
    }
    end += size;
  }
  return Text.substr(0, end);
}

// Sets `Text` to the argument by the letter; false when they do not go together.
bool ConvertArg(const TSpecifier& Specifier, const TFormatArg& Arg, std::string& Text) {
  const auto* const integer = std::get_if<std::int64_t>(&Arg.Value());
  const auto* const number = std::get_if<double>(&Arg.Value());
  const auto* const string = std::get_if<std::string_view>(&Arg.Value());
  if (Specifier.Letter == 'd' && integer != nullptr) {
    const auto bits = static_cast<std::uint64_t>(*integer);
    Text = *integer < 0 ? IntegerText("-", 0 - bits, 10, Specifier.Precision)
                        : IntegerText("", bits, 10, Specifier.Precision);
  } else if (Specifier.Letter == 'x' && integer != nullptr) {
    Text = IntegerText("", static_cast<std::uint64_t>(*integer), 16, Specifier.Precision);
  } else if (Specifier.Letter == 'f' && number != nullptr) {
    Text = FloatToFixed(*number, Specifier.Precision < 0 ? DefaultDecimals : Specifier.Precision);
  } else if (Specifier.Letter == 's' && string != nullptr) {
    Text = Specifier.Precision < 0 ? *string : FirstChars(*string, Specifier.Precision);
  } else {
    return false;
  }
  return true;
}

void AppendPadded(const TSpecifier& Specifier, std::string_view Text, std::string& Out) {
  const auto width = static_cast<std::size_t>(Specifier.Width);
  // Most specifiers have no width; their text is not counted.
  const std::size_t chars = width > 0 ? CharCount(Text) : 0;
  const std::size_t blanks = width > chars ? width - chars : 0;
  if (!Specifier.Left) Out.append(blanks, ' ');
  Out += Text;
  if (Specifier.Left) Out.append(blanks, ' ');
}

}  // namespace

std::string FormatArgs(std::string_view Picture, std::initializer_list<TFormatArg> Args) {
  std::string out;
  std::string text;
  std::string_view rest = Picture;
  const TFormatArg* arg = Args.begin();
  while (!rest.empty()) {
    const std::size_t percent = std::min(rest.find('%'), rest.size());
    out += rest.substr(0, percent);
    if (percent == rest.size()) break;
    rest.remove_prefix(percent + 1);
    if (TakeChar(rest, '%')) {
      out += '%';
      continue;
    }
    const TSpecifier specifier = TakeSpecifier(rest);
    if (arg == Args.end() || !ConvertArg(specifier, *arg, text)) {
      throw EConvertError(MsgBadFormat, Picture, arg - Args.begin() + 1);
    }
    ++arg;
    AppendPadded(specifier, text, out);
  }
  return out;
}

}  // namespace norva
