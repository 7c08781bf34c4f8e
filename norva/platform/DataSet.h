/// Data sets: records of named, typed fields, read one at a time.
///
/// The engine uses exactly what is declared here. A concrete set (norva/sources) derives from
/// TDataSet and TField, and gives each field's value typed; the texts follow from that.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <norva/platform/Component.h>
#include <norva/platform/DateTime.h>
#include <norva/platform/Enums.h>
#include <norva/platform/Export.h>
#include <norva/platform/Locale.h>

namespace norva {

/// The declared type of a field.
enum TFieldType : std::uint8_t {
  ftUnknown,
  ftString,
  ftSmallint,
  ftInteger,
  ftWord,
  ftBoolean,
  ftFloat,
  ftCurrency,
  ftBCD,
  ftDate,
  ftTime,
  ftDateTime,
  ftBytes,
  ftAutoInc,
  ftBlob,
  ftMemo,
  ftGraphic,
  ftFmtMemo,
  ftFixedChar,
  ftWideString,
  ftLargeint,
};
inline constexpr std::string_view TFieldTypeNames[] = {
    "ftUnknown",   "ftString",     "ftSmallint", "ftInteger", "ftWord",    "ftBoolean",
    "ftFloat",     "ftCurrency",   "ftBCD",      "ftDate",    "ftTime",    "ftDateTime",
    "ftBytes",     "ftAutoInc",    "ftBlob",     "ftMemo",    "ftGraphic", "ftFmtMemo",
    "ftFixedChar", "ftWideString", "ftLargeint"};
constexpr TEnumInfo EnumInfo(TFieldType) { return {"TFieldType", TFieldTypeNames}; }

enum TValueKind : std::uint8_t {
  vkNull,
  vkText,
  vkInteger,
  vkFloat,
  vkBoolean,
  vkDateTime,  ///< the field's type says whether date, time or both are shown
};

/// The value of one field of the current record, cheap to copy.
class TFieldValue {
 public:
  TValueKind Kind = vkNull;
  union {
    /// In the active code page; valid until the set moves or closes.
    std::string_view Text;
    std::int64_t Integer;
    double Float;
    bool Boolean;
  };

  TFieldValue() : Integer(0) {}
  static TFieldValue OfText(std::string_view Value) {
    TFieldValue value(vkText);
    value.Text = Value;
    return value;
  }
  static TFieldValue OfInteger(std::int64_t Value) {
    TFieldValue value(vkInteger);
    value.Integer = Value;
    return value;
  }
  static TFieldValue OfFloat(double Value) {
    TFieldValue value(vkFloat);
    value.Float = Value;
    return value;
  }
  static TFieldValue OfBoolean(bool Value) {
    TFieldValue value(vkBoolean);
    value.Boolean = Value;
    return value;
  }
  static TFieldValue OfDateTime(TDateTime Value) {
    TFieldValue value(vkDateTime);
    value.Float = Value;
    return value;
  }
  /// `Parts` must name an existing date and time. A source that has them spares a text format the
  /// way over the day number and back.
  static TFieldValue OfDateTime(const TDateTimeParts& Parts) {
    TFieldValue value(vkDateTime);
    value.Decoded_ = true;
    value.Parts_ = Parts;
    return value;
  }

  // Of vkDateTime.
  /// Whether it comes as parts, which are always valid.
  bool Decoded() const { return Decoded_; }
  NORVA_EXPORT TDateTime DateTime() const;
  /// Throws EConvertError for a day number outside the range.
  TDateTimeParts Parts() const { return Decoded_ ? Parts_ : DecodeDateTime(Float); }

 private:
  explicit TFieldValue(TValueKind Of) : Kind(Of), Integer(0) {}

  bool Decoded_ = false;  // vkDateTime is in Parts_, else in Float
  union {                 // not set for other kinds: this is made for every cell
    TDateTimeParts Parts_;
  };
};

/// Appends the text of `Value`: integers in decimal, floats as FloatToStr, booleans `True` or
/// `False`, dates by ShortDateFormat, times by LongTimeFormat, date-times by both (the time left
/// out at midnight), null as nothing.
NORVA_EXPORT void AppendFieldText(const TFieldValue& Value, TFieldType Type,
                                  const TFormatSettings& Settings, std::string& Out);

/// One field of a data set.
class NORVA_EXPORT TField {
 public:
  TField(std::string Name, TFieldType Type, int Length = 0);
  TField(const TField&) = delete;
  TField& operator=(const TField&) = delete;
  virtual ~TField();

  std::string FieldName;
  /// Title of the column; initially the field name.
  std::string DisplayName;
  /// Width in characters; initially by type, as DefaultDisplayWidth says.
  int DisplayWidth;
  bool Visible = true;
  TFieldType DataType;
  /// For texts: the greatest length in characters, 0 when none is declared.
  int Size;
  /// Position in the set; kept by the set.
  int Index = -1;

  /// True for ftBlob, ftMemo, ftGraphic and ftFmtMemo.
  bool IsBlob() const;
  /// Whether the current record has no value here; the same as a Value of kind vkNull.
  virtual bool IsNull() const = 0;
  /// The current record's value. Throws EDatabaseError or EConvertError when what is stored does
  /// not fit the field's type.
  virtual TFieldValue Value() const = 0;
  /// The value as text; empty when null.
  std::string AsString() const;
};

/// String `Size` (20 without one), ftSmallint 6, ftInteger 10, ftLargeint 15, ftBoolean 5,
/// ftDateTime 18, every other type 10.
NORVA_EXPORT int DefaultDisplayWidth(TFieldType Type, int Size);

/// Stands for a record; what it holds is the set's own affair.
using TBookmark = std::int64_t;

/// A set of records. After Open it stands on its first record.
class NORVA_EXPORT TDataSet : public TComponent {
 public:
  using TComponent::TComponent;

  virtual bool Active() const = 0;
  virtual void Open() = 0;
  virtual void Close() = 0;
  virtual void First() = 0;
  /// On the last record: the set stays there and Eof becomes true.
  virtual void Next() = 0;
  /// Whether a Next went past the last record; true at once for an empty set.
  virtual bool Eof() const = 0;
  virtual bool IsEmpty() const = 0;
  /// Bracket a walk over the records, so that bound controls need not follow it.
  virtual void DisableControls() {}
  virtual void EnableControls() {}
  virtual TBookmark GetBookmark() = 0;
  virtual void GotoBookmark(TBookmark Bookmark) = 0;
  virtual void FreeBookmark(TBookmark) {}

  int FieldCount() const { return static_cast<int>(Fields_.size()); }
  /// Throws EListError when `Index` is out of range.
  TField& Fields(int Index) const {
    if (Index < 0 || Index >= FieldCount()) IndexError(Index);
    return *Fields_[static_cast<std::size_t>(Index)];
  }
  /// The field of that name, case ignored; throws EDatabaseError when there is none.
  TField& FieldByName(std::string_view FieldName) const;
  /// The same, null when there is none.
  TField* FindField(std::string_view FieldName) const;

 protected:
  /// Takes the field over and gives it the next index.
  TField& AddField(std::unique_ptr<TField> Field);
  void ClearFields() { Fields_.clear(); }

 private:
  [[noreturn]] static void IndexError(int Index);

  std::vector<std::unique_ptr<TField>> Fields_;
};

}  // namespace norva
