#include <norva/formats/database/Norvadbf.h>

#include <algorithm>
#include <cstring>
#include <typeinfo>
#include <utility>

#include <norva/core/Norvaconsts.h>
#include <norva/platform/Clock.h>
#include <norva/platform/CodePages.h>
#include <norva/platform/DateTime.h>
#include <norva/platform/Format.h>
#include <norva/platform/Locale.h>
#include <norva/platform/Messages.h>
#include <norva/platform/Numbers.h>
#include <norva/platform/Property.h>
#include <norva/platform/Shell.h>

namespace norva {
namespace {

constexpr std::size_t DescriptorSize = 32;
constexpr std::size_t MaxNameLength = 10;
constexpr std::size_t MaxTextLength = 254;  // of a C value; the format has one length byte
constexpr std::int64_t CountOffset = 4;     // of the record count in the header
constexpr char HeaderEnd = '\x0D';
constexpr char FileEnd = '\x1A';

constexpr std::uint8_t NumberLength = 15;
constexpr std::uint8_t NumberDecimals = 4;

// So MaxFields is the only limit that can be passed: the record length has 16 bits.
static_assert(1 + TLumDBFWriter::MaxFields * 255 <= 65535);

// Little-endian, whatever the machine.
template <class T>
void Put(T Value, char* Target) {
  for (std::size_t i = 0; i < sizeof Value; ++i) Target[i] = static_cast<char>(Value >> 8 * i);
}

bool IsDigit(char C) { return C >= '0' && C <= '9'; }

// --- The fields. `Target` is `Length` blanks; false when the value does not fit ----------------

bool EncodeText(std::string_view Value, std::size_t Length, char* Target) {
  const std::size_t most = std::min(Length, MaxTextLength);
  if (Value.size() <= most) {
    Value.copy(Target, Value.size());
    return true;
  }
  CutAtCharacter(Value, most).copy(Target, most);
  return false;
}

bool EncodeNumber(std::string_view Value, std::size_t Length, char* Target) {
  if (Value.size() <= Length) {
    Value.copy(Target + Length - Value.size(), Value.size());
    return true;
  }
  std::fill_n(Target, Length, '*');  // the format's own sign of overflow
  return false;
}

/// A text `yyyy-mm-dd`, alone or before a blank and a time, where this is the locale's own form.
/// There it is read as StrToDateTime would, only sooner.
bool IsIsoDate(std::string_view Text, const TFormatSettings& Settings) {
  TDateTimeParts parts;
  return Settings.DateSeparator == '-' && Settings.ShortDateFormat == "yyyy-mm-dd" &&
         (Text.size() == 10 || (Text.size() > 10 && Text[10] == ' ')) &&
         TryIsoToDateTime(Text, parts);
}

void EncodeDate(std::string_view Value, std::size_t Length, char* Target) {
  static const TDatePicture picture("yyyymmdd");
  if (Value.empty()) return;
  const TFormatSettings& settings = FormatSettings();
  char iso[8];
  std::string_view day(iso, sizeof iso);
  std::string text;
  if (IsIsoDate(Value, settings)) {
    std::memcpy(iso, Value.data(), 4);
    std::memcpy(iso + 4, Value.data() + 5, 2);
    std::memcpy(iso + 6, Value.data() + 8, 2);
  } else {
    picture.Append(StrToDateTime(Value), settings, text);
    day = text;
  }
  day.copy(Target, Length);
}

char BooleanMark(std::string_view Value) {
  if (Value == "True" || Value == "False") return Value[0];  // what nearly all sources give
  const std::string upper = UpperCase(Value);
  if (upper.find("TRUE") != std::string::npos) return 'T';
  return upper.find("FALSE") != std::string::npos ? 'F' : ' ';
}

// --- Float and Currency texts --------------------------------------------------------------------

/// Whether a text is what the way over the number would give, but for missing decimals and blanks:
/// a number as people write it, with a point and up to four decimals, short enough for the field.
/// It has 13 significant digits at most; so many survive the way to a double and back.
bool IsPlainNumber(std::string_view Text, std::size_t& Decimals) {
  if (Text.size() > 1 && Text[0] == '-' && Text[1] != '0') Text.remove_prefix(1);  // not of -0
  const auto digits =
      static_cast<std::size_t>(std::find_if_not(Text.begin(), Text.end(), IsDigit) - Text.begin());
  if (digits == 0 || digits > NumberLength - NumberDecimals - 2 || (digits > 1 && Text[0] == '0')) {
    return false;
  }
  Decimals = 0;
  if (digits == Text.size()) return true;
  const std::string_view decimals = Text.substr(digits + 1);
  Decimals = decimals.size();
  return Text[digits] == '.' && Decimals >= 1 && Decimals <= NumberDecimals &&
         std::all_of(decimals.begin(), decimals.end(), IsDigit);
}

/// What a picture writes beside the digits.
struct TOrnaments {
  bool Grouping = false;
  std::string Literals;  // in one line, a zero between two that do not touch
};

TOrnaments OrnamentsOf(std::string_view Picture) {
  TOrnaments found;
  char quote = 0;
  for (const char c : Picture) {
    if (quote != 0 ? c == quote : c == '"' || c == '\'') {
      quote = quote != 0 ? '\0' : c;
    } else if (quote == 0 && std::strchr("0#.,;", c)) {
      found.Grouping = found.Grouping || c == ',';
      found.Literals += '\0';
    } else {
      found.Literals += c;
    }
  }
  return found;
}

void RemoveAll(std::string_view What, std::string& Text) {
  if (What.empty()) return;
  for (std::size_t at = 0; (at = Text.find(What, at)) != std::string::npos;) {
    Text.erase(at, What.size());
  }
}

/// Takes the symbol out, with the blanks that set it off.
void RemoveSymbol(std::string_view Symbol, std::string& Text) {
  const std::size_t at = Text.find(Symbol);
  if (at == std::string::npos) return;
  std::size_t first = at, last = at + Symbol.size();
  while (first > 0 && Text[first - 1] == ' ') --first;
  while (last < Text.size() && Text[last] == ' ') ++last;
  Text.erase(first, last - first);
}

/// Takes out of `Text` what `Picture` has put in: grouping and the currency symbol.
void RemoveOrnaments(const std::string& Picture, const TFormatSettings& Settings,
                     std::string& Text) {
  const TOrnaments ornaments = OrnamentsOf(Picture);
  // A picture may also hold the symbol unquoted, and then its point is no literal: `0.00kr.`
  std::string bare = Settings.CurrencyString;
  RemoveAll(".", bare);
  for (const std::string& symbol : {Settings.CurrencyString, bare}) {
    if (symbol.empty() || ornaments.Literals.find(symbol) == std::string::npos) continue;
    RemoveSymbol(symbol, Text);
    break;
  }
  if (ornaments.Grouping && Settings.ThousandSeparator != ".") {
    RemoveAll(Settings.ThousandSeparator, Text);
  }
}

/// Makes a number text the fixed-point text of its number.
void FixNumber(const TNorvaColumn& Column, std::string& Text) {
  if (Text.empty()) Text = '0';
  std::size_t decimals = 0;
  if (IsPlainNumber(Text, decimals)) {
    if (decimals == 0) Text += '.';
    Text.append(NumberDecimals - decimals, '0');
    return;
  }
  std::string bare = Text;
  RemoveOrnaments(Column.Format(), FormatSettings(), bare);
  double number = 0;
  if (!TryStrToFloat(bare, number)) throw EConvertError(MsgNotANumber, Text);
  Text = Format("%15.4f", number);
  if (!IsDigit(Text.back())) Text.assign(NumberLength + 1U, '*');  // INF, NAN: no field is enough
}

}  // namespace

// --- TLumDBFWriter ------------------------------------------------------------------------------

void TLumDBFWriter::CreateDBF() {
  const auto count = static_cast<std::uint32_t>(Fields_.size());
  if (count > MaxFields) throw Exception(MsgFieldTooMany, count, MaxFields);
  Start_ = Stream().Position();
  Count_ = 0;
  RecordLength_ = 1;
  for (const TDBFFieldDescriptor& field : Fields_) RecordLength_ += field.Length;
  const TDateTimeParts today = DecodeDateTime(Date());
  Header_ = {};
  Header_[0] = 3;  // dBASE III without memo file
  Header_[1] = static_cast<char>(today.Year - 1900);
  Header_[2] = static_cast<char>(today.Month);
  Header_[3] = static_cast<char>(today.Day);
  Put(Count_, &Header_[CountOffset]);
  Put(static_cast<std::uint16_t>((count + 1) * DescriptorSize + 1), &Header_[8]);
  Put(RecordLength_, &Header_[10]);  // of the 32 bits the upper half is reserved, and zero
  Write(std::string_view(Header_.data(), Header_.size()));

  for (const TDBFFieldDescriptor& field : Fields_) {
    std::array<char, DescriptorSize> bytes{};
    std::copy(field.Name.begin(), field.Name.end(), bytes.begin());
    bytes[11] = field.FieldType;
    Put(field.Displacement, &bytes[12]);
    bytes[16] = static_cast<char>(field.Length);
    bytes[17] = static_cast<char>(field.Decimals);
    std::copy(field.Reserved.begin(), field.Reserved.end(), bytes.begin() + 18);
    Write(std::string_view(bytes.data(), bytes.size()));
  }
  Write({&HeaderEnd, 1});
}

void TLumDBFWriter::WriteData(int FieldIndex, std::string_view Value) {
  std::string field(FieldDef(FieldIndex).Length, ' ');
  EncodeField(FieldIndex, Value, field.data());
  if (FieldIndex == 0) {
    Write(" ");
    CountRecord();
  }
  Write(field);
}

bool TLumDBFWriter::EncodeField(int FieldIndex, std::string_view Value, char* Target) const {
  const TDBFFieldDescriptor& field = FieldDef(FieldIndex);
  if (field.Length == 0) Beep();
  switch (field.FieldType) {
    case 'N':
      return EncodeNumber(Value, field.Length, Target);
    case 'D':
      EncodeDate(Value, field.Length, Target);
      return true;
    case 'L':
      std::fill_n(Target, std::min<int>(field.Length, 1), BooleanMark(Value));
      return true;
    default:
      return EncodeText(Value, field.Length, Target);
  }
}

void TLumDBFWriter::WriteRecord(std::string_view Record) {
  Write(Record);
  CountRecord();
}

// The count is kept and not read back, so that a buffered file need not be sought for a record.
void TLumDBFWriter::CountRecord() {
  char count[sizeof Count_];
  Put(++Count_, count);
  Stream().Overwrite(Start_ + CountOffset, {count, sizeof count});
}

// --- TNorvaDBF ----------------------------------------------------------------------------------

const TPropertyList& TNorvaDBF::Properties() const {
  static const TPropertyList list(TNorvaText::Properties(),
                                  {
                                      PublishedList("ColumnsLength", &TNorva::ColumnsLength),
                                  });
  return list;
}

TNorvaWriterClass TNorvaDBF::GetWriterClass() const { return NewWriter<TLumDBFWriter>; }

TLumDBFWriter& TNorvaDBF::GetWriter() const {
  return static_cast<TLumDBFWriter&>(TNorvaText::GetWriter());
}

void TNorvaDBF::BeginExport() {
  TNorvaText::BeginExport();
  Overflows_ = CutTexts_ = 0;
  std::vector<std::string> names;
  std::uint32_t displacement = 0;
  for (int i = 0; i < Columns.Count(); ++i) {
    TDBFFieldDescriptor field = FieldDef(i);
    field.Displacement = displacement;
    displacement += field.Length;
    GetWriter().AddFieldDef(field);
    CheckName(field.Name.data(), i, names);  // up to its zero
  }
  GetWriter().CreateDBF();
}

TDBFFieldDescriptor TNorvaDBF::FieldDef(int Index) {
  TDBFFieldDescriptor field;
  std::string caption;
  GetColCaption(Index, caption);
  const std::string upper = UpperCase(caption);
  CutAtCharacter(upper, MaxNameLength).copy(field.Name.data(), MaxNameLength);

  TNorvaColumn& column = Columns[Index];
  switch (column.ColType) {
    case ectInteger:
      field.FieldType = 'N', field.Length = 11;
      break;
    case ectFloat:
    case ectCurrency:
      field.FieldType = 'N', field.Length = NumberLength, field.Decimals = NumberDecimals;
      break;
    case ectDate:
    case ectTime:
    case ectDateTime:
      field.FieldType = 'D', field.Length = 8;
      break;
    case ectBoolean:
      field.FieldType = 'L', field.Length = 1;
      break;
    case ectString:
      if (const int given = ColumnsLength.IndexOfName(column.Name); given >= 0) {
        column.Length = StrToIntDef(ColumnsLength.ValueFromIndex(given), column.Length);
      }
      field.FieldType = 'C', field.Length = static_cast<std::uint8_t>(column.Length);
      break;
    case ectUnknown:
      field.FieldType = 'C', field.Length = 10;
      break;
  }
  return field;
}

/// Tells of a field that readers cannot find by its name. `Names` are those of the fields before.
void TNorvaDBF::CheckName(std::string_view FieldName, int Index, std::vector<std::string>& Names) {
  if (FieldName.empty() || std::find(Names.begin(), Names.end(), FieldName) != Names.end()) {
    UnsafeText(Columns[Index].Caption);
  }
  Names.emplace_back(FieldName);
}

bool TNorvaDBF::CopiesTexts() const { return typeid(*this) == typeid(TNorvaDBF); }

void TNorvaDBF::BeforeExport() {
  TNorvaText::BeforeExport();
  DecimalSeparator_ = std::exchange(FormatSettings().DecimalSeparator, '.');
}

void TNorvaDBF::WriteDataRow() {
  TLumDBFWriter& writer = GetWriter();
  std::string& record = RowBuffer();
  record.assign(writer.RecordLength(), ' ');
  char* target = record.data() + 1;  // behind the blank that says: not deleted
  for (int i = 0; i < Columns.Count(); ++i) {
    const TDBFFieldDescriptor& field = writer.FieldDef(i);
    const bool isReal = field.Decimals > 0;
    Text_.clear();
    if (isReal) {
      GetNumberText(i);
    } else {
      GetColData(i, true, Text_);
    }
    try {
      if (isReal) FixNumber(Columns[i], Text_);
      if (!writer.EncodeField(i, Text_, target)) {
        ++(field.FieldType == 'N' ? Overflows_ : CutTexts_);
      }
    } catch (const EConvertError& error) {
      CellError(i, error);
    }
    target += field.Length;
  }
  if (Columns.Count() > 0) writer.WriteRecord(record);
}

void TNorvaDBF::GetNumberText(int Index) {
  std::string& separator = FormatSettings().ThousandSeparator;
  if (separator != ".") return GetColData(Index, true, Text_);
  // Besides the decimal point nobody could tell it: 1.234.50, 1.234.
  const std::string saved = std::exchange(separator, {});
  Guarded([&] { GetColData(Index, true, Text_); }, [&] { separator = saved; });
}

void TNorvaDBF::AfterExport() {
  RestoreSeparator();
  TNorvaText::AfterExport();
}

void TNorvaDBF::EndExport() {
  RestoreSeparator();  // after a failure
  GetWriter().Write({&FileEnd, 1});
  TNorvaText::EndExport();
}

void TNorvaDBF::RestoreSeparator() {
  if (DecimalSeparator_) FormatSettings().DecimalSeparator = *DecimalSeparator_;
  DecimalSeparator_.reset();
}

}  // namespace norva
