#include <norva/platform/NumberPicture.h>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>

#include <norva/platform/internal/Decimal.h>

namespace norva {
namespace {

using internal::TDecimal;

constexpr int GeneralDigits = 15;  // significant digits that a double always holds
constexpr int MaxPoint = 18;       // doubles with more integer digits get the general form
constexpr std::size_t MaxExponentDigits = 4;

// What AppendPlain writes fits its buffer: 24 integer digits (a 64-bit integer has 20), 7
// separators of 8 bytes, the point and 22 decimals are 103 bytes.
constexpr int MaxPlainInteger = 24;
constexpr std::size_t MaxPlainSeparator = 8;
constexpr int MaxPlainDecimals = static_cast<int>(internal::PowersOf10.size()) - 1;
constexpr std::size_t PlainBuffer = 128;
constexpr double MaxBounded = 1e15;  // for LengthBound: well within 64 bits

// "000" to "999", one after the other.
constexpr std::array<char, 3000> Triples = [] {
  std::array<char, 3000> text{};
  for (std::size_t i = 0; i < 1000; ++i) {
    text[3 * i] = static_cast<char>('0' + i / 100);
    text[3 * i + 1] = static_cast<char>('0' + i / 10 % 10);
    text[3 * i + 2] = static_cast<char>('0' + i % 10);
  }
  return text;
}();

// The least numbers with 1, 2, 3 ... digits; 0 has none.
constexpr std::array<std::uint64_t, 20> Thresholds = [] {
  std::array<std::uint64_t, 20> powers{1};
  for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = 10 * powers[i - 1];
  return powers;
}();

// 0 has none.
std::size_t DigitCount(std::uint64_t Value) {
  // 1233 / 4096 is log10(2): the digits of the next lower power of two, which may be one too few.
  const auto count = static_cast<std::size_t>(std::bit_width(Value)) * 1233 >> 12;
  return count < Thresholds.size() && Value >= Thresholds[count] ? count + 1 : count;
}

// Length of the section that `Text` begins with; a `;` inside quotes does not end it.
std::size_t SectionLength(std::string_view Text) {
  char quote = 0;
  for (std::size_t i = 0; i < Text.size(); ++i) {
    const char c = Text[i];
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == ';') {
      return i;
    }
  }
  return Text.size();
}

std::uint64_t MagnitudeOf(std::int64_t Value) {
  const auto bits = static_cast<std::uint64_t>(Value);
  return Value < 0 ? 0 - bits : bits;
}

}  // namespace

TNumberPicture::TNumberPicture(std::string_view Picture) {
  for (TSection& section : Sections_) {
    const std::size_t length = SectionLength(Picture);
    section.Parse(Picture.substr(0, length));
    if (length == Picture.size()) break;
    Picture.remove_prefix(length + 1);
  }
}

void TNumberPicture::TSection::Parse(std::string_view Text) {
  Empty = Text.empty();
  bool decimal = false;
  for (std::size_t i = 0; i < Text.size();) {
    const char c = Text[i];
    if (c == '"' || c == '\'') {
      const std::size_t close = std::min(Text.find(c, i + 1), Text.size());
      AddLiteral(Text.substr(i + 1, close - i - 1));
      i = close + 1;
    } else if (const std::size_t exponent = AddExponent(Text.substr(i)); exponent > 0) {
      i += exponent;
    } else {
      switch (c) {
        case '0':
        case '#':
          AddPlace(c == '0', decimal);
          break;
        case '.':
          decimal = true;
          break;
        case ',':
          Grouping = true;
          break;
        default:
          AddLiteral(Text.substr(i, 1));
      }
      ++i;
    }
  }
  // With an exponent the first digit of the mantissa always has the leftmost place.
  if (HasExponent) MinInteger = IntegerPlaces;
  FindPlainShape();
}

void TNumberPicture::TSection::AddLiteral(std::string_view Text) {
  if (Text.empty()) return;
  if (Parts.empty() || Parts.back().Kind != pkLiteral) Parts.push_back({pkLiteral, {}});
  Parts.back().Text += Text;
}

void TNumberPicture::TSection::AddPlace(bool Zero, bool Decimal) {
  if (Decimal) {
    ++DecimalPlaces;
    if (Zero) MinDecimals = DecimalPlaces;  // down to the rightmost 0
  } else {
    ++IntegerPlaces;
    if (Zero || MinInteger > 0) ++MinInteger;  // from the leftmost 0 on
  }
  Parts.push_back({Decimal ? pkDecimalPlace : pkIntegerPlace, {}});
}

// Takes the exponent that `Text` begins with and returns its length; 0 when there is none.
std::size_t TNumberPicture::TSection::AddExponent(std::string_view Text) {
  if (HasExponent || Text.size() < 2) return 0;
  if ((Text[0] != 'E' && Text[0] != 'e') || (Text[1] != '+' && Text[1] != '-')) return 0;
  const std::size_t end = std::min(Text.find_first_not_of('0', 2), Text.size());
  HasExponent = true;
  ExponentPlus = Text[1] == '+';
  // On purpose: four zeros count, all of them belong to the exponent.
  ExponentDigits = static_cast<int>(std::min(end - 2, MaxExponentDigits));
  Parts.push_back({pkExponent, std::string(1, Text[0])});
  return end;
}

void TNumberPicture::TSection::FindPlainShape() {
  const auto isPlace = [](const TPart& part) {
    return part.Kind == pkIntegerPlace || part.Kind == pkDecimalPlace;
  };
  auto first = Parts.begin();
  if (first != Parts.end() && first->Kind == pkLiteral) ++first;
  const auto last = std::find_if_not(first, Parts.end(), isPlace);
  // Neighbouring literals are one part, so at most one may follow the places.
  const bool literalEnd =
      last == Parts.end() || (last->Kind == pkLiteral && last + 1 == Parts.end());
  Plain = first != last && literalEnd && MinInteger <= MaxPlainInteger &&
          DecimalPlaces <= MaxPlainDecimals;
  if (!Plain) return;
  if (first != Parts.begin()) Prefix = Parts.front().Text;
  if (last != Parts.end()) Suffix = last->Text;
}

const TNumberPicture::TSection& TNumberPicture::SectionFor(bool Negative, bool Zero) const {
  const TSection& section = Sections_[Negative ? 1 : Zero ? 2 : 0];
  return section.Empty ? Sections_[0] : section;
}

void TNumberPicture::Append(double Value, const TFormatSettings& Settings, std::string& Out) const {
  if (!std::isfinite(Value)) {
    Out += internal::NonNumberText(Value);
    return;
  }
  const TSection& section = SectionFor(Value < 0, Value == 0);
  std::uint64_t scaled = 0;
  if (section.CanWritePlain(Settings) &&
      internal::ScaleRounded(std::fabs(Value), section.DecimalPlaces, scaled)) {
    if (scaled == 0) return AppendZero(Settings, Out);
    const bool minus = Value < 0 && &section == &Sections_[0];
    return section.AppendPlain(minus, scaled, section.DecimalPlaces, Settings, Out);
  }
  TDecimal decimal = internal::DecimalOf(Value);
  if (section.Empty || (decimal.Point > MaxPoint && !section.HasExponent)) {
    internal::Round(decimal, GeneralDigits);
    return internal::AppendGeneral(decimal, Settings.DecimalSeparator, Out);
  }
  AppendDecimal(decimal, section, Settings, Out);
}

void TNumberPicture::Append(std::int64_t Value, const TFormatSettings& Settings,
                            std::string& Out) const {
  const TSection& section = SectionFor(Value < 0, Value == 0);
  if (section.CanWritePlain(Settings)) {
    const bool minus = Value < 0 && &section == &Sections_[0];
    section.AppendPlain(minus, MagnitudeOf(Value), 0, Settings, Out);
  } else if (section.Empty) {
    internal::AppendInteger(Value, Out);
  } else {
    AppendDecimal(internal::DecimalOf(Value), section, Settings, Out);
  }
}

void TNumberPicture::AppendZero(const TFormatSettings& Settings, std::string& Out) const {
  const TSection& section = SectionFor(false, true);
  if (section.Empty) {
    Out += '0';
  } else if (section.CanWritePlain(Settings)) {
    section.AppendPlain(false, 0, 0, Settings, Out);
  } else {
    section.AppendParts(TDecimal(), Settings, Out);
  }
}

// The way for all sections and values; `Section` is not empty.
void TNumberPicture::AppendDecimal(TDecimal Value, const TSection& Section,
                                   const TFormatSettings& Settings, std::string& Out) const {
  const bool minus = Value.Negative && &Section == &Sections_[0];
  const int places = Section.IntegerPlaces + Section.DecimalPlaces;
  if (places > 0) {
    internal::Round(Value, Section.HasExponent ? places : Value.Point + Section.DecimalPlaces);
    if (Value.IsZero() && !Section.HasExponent) return AppendZero(Settings, Out);
  }
  if (minus) Out += '-';
  Section.AppendParts(Value, Settings, Out);
}

bool TNumberPicture::TSection::CanWritePlain(const TFormatSettings& Settings) const {
  return Plain && (!Grouping || Settings.ThousandSeparator.size() <= MaxPlainSeparator);
}

// What AppendPlain writes for the integer digits of `Whole` and `Decimals` decimals.
std::size_t TNumberPicture::TSection::PlainLength(bool Negative, std::uint64_t Whole, int Decimals,
                                                  const TFormatSettings& Settings) const {
  const std::size_t digits = std::max(static_cast<std::size_t>(MinInteger), DigitCount(Whole));
  std::size_t length = digits + Prefix.size() + Suffix.size() + (Negative ? 1 : 0);
  if (Decimals > 0) length += static_cast<std::size_t>(Decimals) + 1;
  if (Grouping && digits > 3) length += (digits - 1) / 3 * Settings.ThousandSeparator.size();
  return length;
}

std::size_t TNumberPicture::LengthBound(double Value, const TFormatSettings& Settings) const {
  const TSection& section = SectionFor(Value < 0, Value == 0);
  // Written so that NaN fails it. Rounding may carry into one digit more than Value has.
  if (!(std::fabs(Value) < MaxBounded) || !section.CanWritePlain(Settings)) return SIZE_MAX;
  const TSection& zero = SectionFor(false, true);
  if (&zero != &section && std::fabs(Value) < 1) return SIZE_MAX;  // it may be shown as zero
  const auto whole = static_cast<std::uint64_t>(std::fabs(Value)) + 1;
  return section.PlainLength(Value < 0 && &section == &Sections_[0], whole, section.DecimalPlaces,
                             Settings);
}

std::size_t TNumberPicture::LengthBound(std::int64_t Value, const TFormatSettings& Settings) const {
  const TSection& section = SectionFor(Value < 0, Value == 0);
  if (!section.CanWritePlain(Settings)) return SIZE_MAX;
  return section.PlainLength(Value < 0 && &section == &Sections_[0], MagnitudeOf(Value),
                             section.DecimalPlaces, Settings);
}

// Writes `Scaled` / 10^`Decimals`, which has at most DecimalPlaces decimals, from its last digit
// to its first. This runs once for every number cell of an export.
void TNumberPicture::TSection::AppendPlain(bool Negative, std::uint64_t Scaled, int Decimals,
                                           const TFormatSettings& Settings,
                                           std::string& Out) const {
  char buffer[PlainBuffer];
  char* const end = buffer + sizeof buffer;
  char* c = end;
  for (; Decimals > MinDecimals && Scaled % 10 == 0; --Decimals) Scaled /= 10;
  for (int i = Decimals; i < MinDecimals; ++i) *--c = '0';
  for (; Decimals > 0; --Decimals, Scaled /= 10) *--c = static_cast<char>('0' + Scaled % 10);
  if (c != end) *--c = Settings.DecimalSeparator;

  const char* const separator = Settings.ThousandSeparator.data();
  const std::size_t separatorSize = Grouping ? Settings.ThousandSeparator.size() : 0;
  const auto putSeparator = [&] {
    if (separatorSize == 1) {
      *--c = *separator;
    } else if (separatorSize > 1) {
      c -= separatorSize;
      std::memcpy(c, separator, separatorSize);
    }
  };
  int digits = 0;
  for (; Scaled >= 1000; Scaled /= 1000, digits += 3) {
    c -= 3;
    std::memcpy(c, &Triples[3 * static_cast<std::size_t>(Scaled % 1000)], 3);
    putSeparator();
  }
  for (int inGroup = 0; Scaled > 0 || digits < MinInteger; ++inGroup, ++digits, Scaled /= 10) {
    if (inGroup == 3) {
      putSeparator();
      inGroup = 0;
    }
    *--c = static_cast<char>('0' + Scaled % 10);
  }

  if (Negative) Out += '-';
  if (!Prefix.empty()) Out += Prefix;
  Out.append(c, static_cast<std::size_t>(end - c));
  if (!Suffix.empty()) Out += Suffix;
}

// Writes all parts in their order, the digits of `Value` in the places. Rounding is done.
void TNumberPicture::TSection::AppendParts(TDecimal Value, const TFormatSettings& Settings,
                                           std::string& Out) const {
  int exponent = 0;
  if (HasExponent && !Value.IsZero()) {
    exponent = Value.Point - IntegerPlaces;
    Value.Point = IntegerPlaces;
  }
  const int decimals = std::max(MinDecimals, std::min(DecimalPlaces, Value.Count - Value.Point));
  int placesLeft = IntegerPlaces;
  int digitsLeft = std::max(MinInteger, Value.Point);
  int decimalsWritten = 0;
  // Integer digits until `stop` of them are left.
  const auto putInteger = [&](int stop) {
    while (digitsLeft > stop) {
      Out += Value.DigitAt(Value.Point - digitsLeft);
      --digitsLeft;
      if (Grouping && digitsLeft > 0 && digitsLeft % 3 == 0) Out += Settings.ThousandSeparator;
    }
  };
  for (const TPart& part : Parts) {
    switch (part.Kind) {
      case pkLiteral:
        Out += part.Text;
        break;
      case pkIntegerPlace:
        putInteger(--placesLeft);
        break;
      case pkDecimalPlace:
        putInteger(0);  // there are some left when the picture has no integer places
        if (decimalsWritten == decimals) break;
        if (decimalsWritten == 0) Out += Settings.DecimalSeparator;
        Out += Value.DigitAt(Value.Point + decimalsWritten++);
        break;
      case pkExponent:
        AppendExponent(part.Text[0], exponent, Out);
        break;
    }
  }
}

void TNumberPicture::TSection::AppendExponent(char Letter, int Exponent, std::string& Out) const {
  Out += Letter;
  if (Exponent < 0) {
    Out += '-';
  } else if (ExponentPlus) {
    Out += '+';
  }
  char text[8];
  const char* const end = std::to_chars(text, text + sizeof text, std::abs(Exponent)).ptr;
  for (auto length = static_cast<int>(end - text); length < ExponentDigits; ++length) Out += '0';
  Out.append(text, static_cast<std::size_t>(end - text));
}

}  // namespace norva
