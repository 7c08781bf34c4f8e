/// The standard value formats of an exporter.
#pragma once

#include <string>
#include <string_view>

#include <norva/platform/Export.h>
#include <norva/platform/Persistent.h>

namespace norva {

/// Pictures for each type of value, and the texts of booleans and null.
///
/// Defaults come from the thread's locale settings at the moment of ResetFormats. Setting a
/// property to the empty text restores its default; NullString alone may be empty.
class NORVA_EXPORT TNorvaFormats : public TPersistent {
 public:
  TNorvaFormats() { ResetFormats(); }
  TNorvaFormats(const TNorvaFormats&) = default;
  TNorvaFormats& operator=(const TNorvaFormats& Source);

  /// Sets all nine properties to their defaults.
  void ResetFormats();
  /// Copies another TNorvaFormats. On purpose: NullString is not copied.
  void Assign(const TPersistent& Source) override;
  std::string_view ClassName() const override { return "TNorvaFormats"; }
  const TPropertyList& Properties() const override;

  const std::string& IntegerFormat() const { return IntegerFormat_; }
  const std::string& FloatFormat() const { return FloatFormat_; }
  const std::string& DateFormat() const { return DateFormat_; }
  const std::string& TimeFormat() const { return TimeFormat_; }
  const std::string& DateTimeFormat() const { return DateTimeFormat_; }
  const std::string& CurrencyFormat() const { return CurrencyFormat_; }
  const std::string& BooleanTrue() const { return BooleanTrue_; }
  const std::string& BooleanFalse() const { return BooleanFalse_; }

  void SetIntegerFormat(const std::string& Value);
  void SetFloatFormat(const std::string& Value);
  void SetDateFormat(const std::string& Value);
  void SetTimeFormat(const std::string& Value);
  void SetDateTimeFormat(const std::string& Value);
  void SetCurrencyFormat(const std::string& Value);
  void SetBooleanTrue(const std::string& Value);
  void SetBooleanFalse(const std::string& Value);

  /// The text of a null cell, whatever the column's type; "null" by default.
  std::string NullString;

  static std::string DefaultIntegerFormat();   ///< "#,###,##0"
  static std::string DefaultFloatFormat();     ///< "#,###,##0.00"
  static std::string DefaultDateFormat();      ///< ShortDateFormat
  static std::string DefaultTimeFormat();      ///< ShortTimeFormat
  static std::string DefaultDateTimeFormat();  ///< ShortDateFormat, a blank, ShortTimeFormat
  /// "00", decimal separator, "00", currency symbol. On purpose: no blank and no grouping, and
  /// a separator of `,` makes it a picture with grouping and no decimals.
  static std::string DefaultCurrencyFormat();
  static std::string DefaultBooleanTrue();   ///< "true"
  static std::string DefaultBooleanFalse();  ///< "false"
  static std::string DefaultNullString();    ///< "null"

 private:
  std::string IntegerFormat_, FloatFormat_, DateFormat_, TimeFormat_, DateTimeFormat_,
      CurrencyFormat_, BooleanTrue_, BooleanFalse_;
};

}  // namespace norva
