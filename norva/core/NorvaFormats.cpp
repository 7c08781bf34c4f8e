#include <norva/core/NorvaFormats.h>

#include <norva/platform/Locale.h>
#include <norva/platform/Property.h>

namespace norva {
namespace {

void SetOrDefault(std::string& Target, const std::string& Value, std::string (*Default)()) {
  Target = Value.empty() ? Default() : Value;
}

}  // namespace

std::string TNorvaFormats::DefaultIntegerFormat() { return "#,###,##0"; }
std::string TNorvaFormats::DefaultFloatFormat() { return "#,###,##0.00"; }
std::string TNorvaFormats::DefaultDateFormat() { return FormatSettings().ShortDateFormat; }
std::string TNorvaFormats::DefaultTimeFormat() { return FormatSettings().ShortTimeFormat; }
std::string TNorvaFormats::DefaultDateTimeFormat() {
  return FormatSettings().ShortDateFormat + " " + FormatSettings().ShortTimeFormat;
}
std::string TNorvaFormats::DefaultCurrencyFormat() {
  const TFormatSettings& settings = FormatSettings();
  return std::string("00") + settings.DecimalSeparator + "00" + settings.CurrencyString;
}
std::string TNorvaFormats::DefaultBooleanTrue() { return "true"; }
std::string TNorvaFormats::DefaultBooleanFalse() { return "false"; }
std::string TNorvaFormats::DefaultNullString() { return "null"; }

void TNorvaFormats::ResetFormats() {
  IntegerFormat_ = DefaultIntegerFormat();
  FloatFormat_ = DefaultFloatFormat();
  DateFormat_ = DefaultDateFormat();
  TimeFormat_ = DefaultTimeFormat();
  DateTimeFormat_ = DefaultDateTimeFormat();
  CurrencyFormat_ = DefaultCurrencyFormat();
  BooleanTrue_ = DefaultBooleanTrue();
  BooleanFalse_ = DefaultBooleanFalse();
  NullString = DefaultNullString();
}

TNorvaFormats& TNorvaFormats::operator=(const TNorvaFormats& Source) {
  Assign(Source);
  return *this;
}

void TNorvaFormats::Assign(const TPersistent& Source) {
  const auto* formats = dynamic_cast<const TNorvaFormats*>(&Source);
  if (!formats) AssignError(Source);
  SetIntegerFormat(formats->IntegerFormat_);
  SetFloatFormat(formats->FloatFormat_);
  SetDateFormat(formats->DateFormat_);
  SetTimeFormat(formats->TimeFormat_);
  SetDateTimeFormat(formats->DateTimeFormat_);
  SetCurrencyFormat(formats->CurrencyFormat_);
  SetBooleanTrue(formats->BooleanTrue_);
  SetBooleanFalse(formats->BooleanFalse_);
}

void TNorvaFormats::SetIntegerFormat(const std::string& Value) {
  SetOrDefault(IntegerFormat_, Value, DefaultIntegerFormat);
}
void TNorvaFormats::SetFloatFormat(const std::string& Value) {
  SetOrDefault(FloatFormat_, Value, DefaultFloatFormat);
}
void TNorvaFormats::SetDateFormat(const std::string& Value) {
  SetOrDefault(DateFormat_, Value, DefaultDateFormat);
}
void TNorvaFormats::SetTimeFormat(const std::string& Value) {
  SetOrDefault(TimeFormat_, Value, DefaultTimeFormat);
}
void TNorvaFormats::SetDateTimeFormat(const std::string& Value) {
  SetOrDefault(DateTimeFormat_, Value, DefaultDateTimeFormat);
}
void TNorvaFormats::SetCurrencyFormat(const std::string& Value) {
  SetOrDefault(CurrencyFormat_, Value, DefaultCurrencyFormat);
}
void TNorvaFormats::SetBooleanTrue(const std::string& Value) {
  SetOrDefault(BooleanTrue_, Value, DefaultBooleanTrue);
}
void TNorvaFormats::SetBooleanFalse(const std::string& Value) {
  SetOrDefault(BooleanFalse_, Value, DefaultBooleanFalse);
}

const TPropertyList& TNorvaFormats::Properties() const {
  // No stored defaults: they depend on the locale, so every value is streamed.
  using F = TNorvaFormats;
  static const TPropertyList list{
      Published("IntegerFormat", &F::IntegerFormat, &F::SetIntegerFormat, std::nullopt),
      Published("FloatFormat", &F::FloatFormat, &F::SetFloatFormat, std::nullopt),
      Published("DateFormat", &F::DateFormat, &F::SetDateFormat, std::nullopt),
      Published("TimeFormat", &F::TimeFormat, &F::SetTimeFormat, std::nullopt),
      Published("DateTimeFormat", &F::DateTimeFormat, &F::SetDateTimeFormat, std::nullopt),
      Published("CurrencyFormat", &F::CurrencyFormat, &F::SetCurrencyFormat, std::nullopt),
      Published("BooleanTrue", &F::BooleanTrue, &F::SetBooleanTrue, std::nullopt),
      Published("BooleanFalse", &F::BooleanFalse, &F::SetBooleanFalse, std::nullopt),
      PublishedAlways("NullString", &F::NullString),
  };
  return list;
}

}  // namespace norva
