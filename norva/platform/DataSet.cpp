#include <norva/platform/DataSet.h>

#include <charconv>

#include <norva/platform/CodePages.h>
#include <norva/platform/DateTime.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>
#include <norva/platform/Numbers.h>

namespace norva {

TDateTime TFieldValue::DateTime() const {
  TDateTime value = Float;
  if (Decoded_) TryEncodeDateTime(Parts_, value);
  return value;
}

void AppendFieldText(const TFieldValue& Value, TFieldType Type, const TFormatSettings& Settings,
                     std::string& Out) {
  static const TDatePicture datePicture("ddddd");
  static const TDatePicture timePicture("tt");
  static const TDatePicture dateTimePicture("c");
  switch (Value.Kind) {
    case vkNull:
      return;
    case vkText:
      Out += Value.Text;
      return;
    case vkInteger: {
      char digits[20];
      const auto end = std::to_chars(digits, digits + sizeof digits, Value.Integer).ptr;
      Out.append(digits, end);
      return;
    }
    case vkFloat:
      AppendFloatToStr(Value.Float, Settings, Out);
      return;
    case vkBoolean:
      Out += Value.Boolean ? "True" : "False";
      return;
    case vkDateTime:
      (Type == ftDate   ? datePicture
       : Type == ftTime ? timePicture
                        : dateTimePicture)
          .Append(Value.Parts(), Settings, Out);
      return;
  }
}

int DefaultDisplayWidth(TFieldType Type, int Size) {
  switch (Type) {
    case ftString:
    case ftFixedChar:
    case ftWideString:
      return Size > 0 ? Size : 20;
    case ftSmallint:
      return 6;
    case ftLargeint:
      return 15;
    case ftBoolean:
      return 5;
    case ftDateTime:
      return 18;
    default:
      return 10;
  }
}

TField::TField(std::string Name, TFieldType Type, int Length)
    : FieldName(std::move(Name)),
      DisplayName(FieldName),
      DisplayWidth(DefaultDisplayWidth(Type, Length)),
      DataType(Type),
      Size(Length) {}

TField::~TField() = default;

bool TField::IsBlob() const {
  return DataType == ftBlob || DataType == ftMemo || DataType == ftGraphic || DataType == ftFmtMemo;
}

std::string TField::AsString() const {
  std::string text;
  AppendFieldText(Value(), DataType, FormatSettings(), text);
  return text;
}

void TDataSet::IndexError(int Index) { throw EListError(MsgListIndex, Index); }

TField* TDataSet::FindField(std::string_view FieldName) const {
  for (const auto& field : Fields_) {
    if (SameText(field->FieldName, FieldName)) return field.get();
  }
  return nullptr;
}

TField& TDataSet::FieldByName(std::string_view FieldName) const {
  if (TField* field = FindField(FieldName)) return *field;
  throw EDatabaseError(MsgFieldNotFound, FieldName);
}

TField& TDataSet::AddField(std::unique_ptr<TField> Field) {
  Field->Index = FieldCount();
  Fields_.push_back(std::move(Field));
  return *Fields_.back();
}

}  // namespace norva
