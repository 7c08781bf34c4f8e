#include <norva/sources/memory/RangeValue.h>

#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>
#include <norva/platform/Numbers.h>

namespace norva::internal {
namespace {

using std::chrono::sys_days;

// 1 January 1970, in days since 30 December 1899.
constexpr int UnixEpochDay = 25569;
constexpr double MSecsPerDay = 24 * 60 * 60 * 1000;

[[noreturn]] void Misfit(std::string_view Value, const TRangePlace& Place) {
  throw EDatabaseError(MsgValueMisfit, Place.Set.RecNo(), Place.Field.FieldName, Value,
                       EnumToStr(Place.Field.DataType));
}

bool Exists(sys_days Day) { return RangeFirstDay <= Day && Day <= RangeLastDay; }

}  // namespace

TFieldValue RangeDate(std::chrono::year_month_day Date, const TRangePlace& Place) {
  if (!Date.ok() || !Exists(Date)) {
    Misfit(Format("the date %d-%.2d-%.2d", static_cast<int>(Date.year()),
                  static_cast<unsigned>(Date.month()), static_cast<unsigned>(Date.day())),
           Place);
  }
  return RangeDateTime(Date, {}, Place);
}

TFieldValue RangeDateTime(sys_days Day, std::chrono::milliseconds Time, const TRangePlace& Place) {
  const std::int64_t number = std::int64_t{Day.time_since_epoch().count()} + UnixEpochDay;
  if (!Exists(Day)) Misfit("day number " + std::to_string(number), Place);
  const auto day = static_cast<double>(number);
  const double time = static_cast<double>(Time.count()) / MSecsPerDay;
  // Before day 0 the time of day counts away from it.
  return TFieldValue::OfDateTime(number < 0 ? day - time : day + time);
}

TFieldValue RangeTime(std::chrono::milliseconds Time) {
  return TFieldValue::OfDateTime(static_cast<double>(Time.count()) / MSecsPerDay);
}

void RangeIntegerError(std::uint64_t Value, const TRangePlace& Place) {
  Misfit(std::to_string(Value), Place);
}

void RangeTimeError(double Seconds, const TRangePlace& Place) {
  std::string text;
  AppendFloatToStr(Seconds, TFormatSettings(), text);
  Misfit(text.append(" seconds"), Place);
}

}  // namespace norva::internal
