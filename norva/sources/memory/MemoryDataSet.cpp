#include <norva/sources/memory/MemoryDataSet.h>

#include <iterator>
#include <limits>
#include <memory>

#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>

namespace norva {
namespace {

template <class T>
bool InRange(std::int64_t Value) {
  return std::in_range<T>(Value);
}

bool IntegerFits(std::int64_t Value, TFieldType Type) {
  switch (Type) {
    case ftSmallint:
      return InRange<std::int16_t>(Value);
    case ftWord:
      return InRange<std::uint16_t>(Value);
    case ftInteger:
    case ftAutoInc:
      return InRange<std::int32_t>(Value);
    case ftLargeint:
    case ftFloat:
    case ftCurrency:
    case ftBCD:
      return true;
    default:
      return false;
  }
}

bool IsText(TFieldType Type) {
  switch (Type) {
    case ftString:
    case ftFixedChar:
    case ftWideString:
    case ftMemo:
    case ftFmtMemo:
    case ftBlob:
    case ftGraphic:
    case ftBytes:
      return true;
    default:
      return false;
  }
}

bool HasDeclaredLength(const TField& Field) {
  return Field.Size > 0 && (Field.DataType == ftString || Field.DataType == ftFixedChar ||
                            Field.DataType == ftWideString);
}

bool IsDay(TDateTime Value) {
  try {
    DecodeDateTime(Value);
    return true;
  } catch (const EConvertError&) {
    return false;
  }
}

bool Fits(const TFieldValue& Value, TFieldType Type) {
  if (Type == ftUnknown) return Value.Kind != vkDateTime || IsDay(Value.DateTime());
  switch (Value.Kind) {
    case vkNull:
      return true;
    case vkText:
      return IsText(Type);
    case vkInteger:
      return IntegerFits(Value.Integer, Type);
    case vkFloat:
      return Type == ftFloat || Type == ftCurrency || Type == ftBCD;
    case vkBoolean:
      return Type == ftBoolean;
    case vkDateTime:
      return (Type == ftDate || Type == ftTime || Type == ftDateTime) && IsDay(Value.DateTime());
  }
  return false;
}

// The value as a message shows it: a text in quotes, a day number as a number. An invalid day
// number has no date to show.
std::string Shown(const TFieldValue& Value) {
  std::string text;
  if (Value.Kind == vkText) return text.append("\"").append(Value.Text).append("\"");
  const TFieldValue plain =
      Value.Kind == vkDateTime ? TFieldValue::OfFloat(Value.DateTime()) : Value;
  if (Value.Kind == vkDateTime) text = "day number ";
  AppendFieldText(plain, ftUnknown, TFormatSettings(), text);
  return text;
}

}  // namespace

TMemoryValue TMemoryValue::DateTime(TDateTime Value) {
  TMemoryValue value;
  value.Value_ = TDay{Value};
  return value;
}

TValueKind TMemoryValue::Kind() const { return Value().Kind; }

TFieldValue TMemoryValue::Value() const {
  struct TVisitor {
    TFieldValue operator()(std::monostate) const { return {}; }
    TFieldValue operator()(const std::string& Text) const { return TFieldValue::OfText(Text); }
    TFieldValue operator()(std::int64_t Number) const { return TFieldValue::OfInteger(Number); }
    TFieldValue operator()(double Number) const { return TFieldValue::OfFloat(Number); }
    TFieldValue operator()(bool Truth) const { return TFieldValue::OfBoolean(Truth); }
    TFieldValue operator()(TDay Day) const { return TFieldValue::OfDateTime(Day.Number); }
  };
  return std::visit(TVisitor(), Value_);
}

void TMemoryValue::TooLarge(std::uint64_t Value) {
  throw EConvertError(MsgNotAnInteger, std::to_string(Value));
}

/// A field that reads the current record of its set.
class TMemoryDataSet::TMemoryField : public TField {
 public:
  TMemoryField(const TMemoryDataSet& Set, const TMemoryFieldDef& Def)
      : TField(Def.Name, Def.Type, Def.Size), Set_(Set) {}

  bool IsNull() const override { return Set_.Current(Index).Kind() == vkNull; }
  TFieldValue Value() const override { return Set_.Current(Index).Value(); }

 private:
  const TMemoryDataSet& Set_;
};

TMemoryDataSet::TMemoryDataSet(TComponent* Owner) : TRecordDataSet(Owner) {}

TMemoryDataSet::TMemoryDataSet(const std::vector<TMemoryFieldDef>& Fields, TComponent* Owner)
    : TRecordDataSet(Owner) {
  for (const TMemoryFieldDef& def : Fields) AddField(def.Name, def.Type, def.Size);
}

TField& TMemoryDataSet::AddField(std::string FieldName, TFieldType Type, int Size) {
  if (HasRecords()) throw EDatabaseError(MsgFieldAfterRecords, FieldName);
  const TMemoryFieldDef def{std::move(FieldName), Type, Size};
  return AddNewField(std::make_unique<TMemoryField>(*this, def));
}

void TMemoryDataSet::Append(std::vector<TMemoryValue> Values) {
  if (std::cmp_not_equal(Values.size(), FieldCount())) {
    throw EDatabaseError(MsgValueCount, RecordCount_ + 1, Values.size(), FieldCount());
  }
  for (int i = 0; i < FieldCount(); ++i) {
    TMemoryValue& value = Values[static_cast<std::size_t>(i)];
    CheckValue(Fields(i), value);
    const TFieldType type = Fields(i).DataType;
    const bool isFloat = type == ftFloat || type == ftCurrency || type == ftBCD;
    if (isFloat && value.Kind() == vkInteger) value = static_cast<double>(value.Value().Integer);
  }
  Values_.insert(Values_.end(), std::make_move_iterator(Values.begin()),
                 std::make_move_iterator(Values.end()));
  ++RecordCount_;
}

void TMemoryDataSet::CheckValue(const TField& Field, const TMemoryValue& Value) const {
  const TFieldValue value = Value.Value();
  const std::int64_t record = RecordCount_ + 1;
  if (!Fits(value, Field.DataType)) {
    throw EDatabaseError(MsgValueMisfit, record, Field.FieldName, Shown(value),
                         EnumToStr(Field.DataType));
  }
  if (value.Kind == vkText && HasDeclaredLength(Field) &&
      std::cmp_greater(CharCount(value.Text), Field.Size)) {
    throw EDatabaseError(MsgValueTooLong, record, Field.FieldName, value.Text, Field.Size);
  }
}

void TMemoryDataSet::Clear() {
  Values_.clear();
  RecordCount_ = 0;
  Rewind();
}

bool TMemoryDataSet::Move(std::int64_t, std::int64_t To) { return To < RecordCount_; }

const TMemoryValue& TMemoryDataSet::Current(int Field) const {
  static const TMemoryValue null;
  CheckActive();
  if (!HasRecords()) return null;
  return Values_[static_cast<std::size_t>(Position() * FieldCount() + Field)];
}

}  // namespace norva
