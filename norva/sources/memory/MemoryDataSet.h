/// A data set that holds its records itself.
///
///   TMemoryDataSet People({{"Name", ftString, 20}, {"Age", ftInteger}, {"Born", ftDate}});
///   People.Append({"Ann", 31, TMemoryValue::DateTime(33970)});
///   People.Append({"Bob", nullptr, nullptr});
///
/// What each field type takes, beside null:
///
///   ftString ftFixedChar ftWideString   text of at most Size characters; any length if that is 0
///   ftMemo ftFmtMemo ftBlob ftGraphic   text of any length, for the last three any bytes
///   ftBytes
///   ftSmallint ftWord                   integers of 16 bits, signed and unsigned
///   ftInteger ftAutoInc                 integers of 32 bits
///   ftLargeint                          integers of 64 bits
///   ftFloat ftCurrency ftBCD            floating-point numbers and integers
///   ftBoolean                           bool
///   ftDate ftTime ftDateTime            TMemoryValue::DateTime, in the years 1 to 9999
///   ftUnknown                           everything
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include <norva/platform/DataSet.h>
#include <norva/platform/DateTime.h>
#include <norva/platform/Export.h>
#include <norva/sources/memory/RecordDataSet.h>

namespace norva {

/// The value of one field of one record.
class NORVA_EXPORT TMemoryValue {
 public:
  /// Null.
  TMemoryValue() = default;
  TMemoryValue(std::nullptr_t) {}
  TMemoryValue(std::nullopt_t) {}
  template <std::same_as<bool> T>
  TMemoryValue(T Value) : Value_(Value) {}
  /// Throws EConvertError for a number above the 64-bit signed range.
  template <std::integral T>
  requires(!std::same_as<T, bool> && !std::same_as<T, char>) TMemoryValue(T Value)
      : Value_(Checked(Value)) {}
  template <std::floating_point T>
  TMemoryValue(T Value) : Value_(static_cast<double>(Value)) {}
  /// Text, in the active code page.
  TMemoryValue(std::string Value) : Value_(std::move(Value)) {}
  TMemoryValue(std::string_view Value) : Value_(std::string(Value)) {}
  TMemoryValue(const char* Value) : Value_(std::string(Value)) {}
  template <class T>
  TMemoryValue(const std::optional<T>& Value) {
    if (Value) *this = TMemoryValue(*Value);
  }

  /// A date, a time, or both, as a day number.
  static TMemoryValue DateTime(TDateTime Value);

  TValueKind Kind() const;
  /// Texts are valid as long as this value is unchanged.
  TFieldValue Value() const;

 private:
  struct TDay {
    TDateTime Number;
  };
  template <class T>
  static std::int64_t Checked(T Value) {
    if (!std::in_range<std::int64_t>(Value)) TooLarge(static_cast<std::uint64_t>(Value));
    return static_cast<std::int64_t>(Value);
  }
  [[noreturn]] static void TooLarge(std::uint64_t Value);

  std::variant<std::monostate, std::string, std::int64_t, double, bool, TDay> Value_;
};

/// What a field of a TMemoryDataSet is made from.
struct NORVA_EXPORT TMemoryFieldDef {
  std::string Name;
  TFieldType Type = ftString;
  int Size = 0;  ///< greatest length of a text in characters; 0 when none is declared
};

/// A data set that holds its records itself; see RecordDataSet.h for how it moves.
class NORVA_EXPORT TMemoryDataSet : public TRecordDataSet {
 public:
  explicit TMemoryDataSet(TComponent* Owner = nullptr);
  /// Throws EDatabaseError when two fields have the same name.
  explicit TMemoryDataSet(const std::vector<TMemoryFieldDef>& Fields, TComponent* Owner = nullptr);
  std::string_view ClassName() const override { return "TMemoryDataSet"; }

  /// Adds a field behind the others. Throws EDatabaseError when the name is taken, ignoring case,
  /// or there are records already.
  TField& AddField(std::string FieldName, TFieldType Type, int Size = 0);
  /// Adds a record behind the others, one value for each field. Throws EDatabaseError, with the
  /// set unchanged, when the number of values or the value for some field is wrong.
  void Append(std::vector<TMemoryValue> Values);
  /// Removes all records; the fields stay.
  void Clear();
  std::int64_t RecordCount() const { return RecordCount_; }

 protected:
  bool HasRecords() const override { return RecordCount_ > 0; }
  bool Move(std::int64_t From, std::int64_t To) override;

 private:
  class TMemoryField;
  void CheckValue(const TField& Field, const TMemoryValue& Value) const;
  /// The current record's value; null in an empty set.
  const TMemoryValue& Current(int Field) const;

  std::vector<TMemoryValue> Values_;  // record by record
  std::int64_t RecordCount_ = 0;
};

}  // namespace norva
