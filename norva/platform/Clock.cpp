#include <norva/platform/Clock.h>

#include <algorithm>
#include <ctime>
#include <utility>

namespace norva {
namespace {

TDateTime SystemClock() {
  timespec now = {};
  clock_gettime(CLOCK_REALTIME, &now);
  tm local = {};
  localtime_r(&now.tv_sec, &local);
  TDateTimeParts parts;
  parts.Year = local.tm_year + 1900;
  parts.Month = local.tm_mon + 1;
  parts.Day = local.tm_mday;
  parts.Hour = local.tm_hour;
  parts.Minute = local.tm_min;
  parts.Second = std::min(local.tm_sec, 59);  // 60 in a leap second
  parts.Millisecond = static_cast<int>(now.tv_nsec / 1'000'000);
  TDateTime value = 0;
  TryEncodeDateTime(parts, value);
  return value;
}

std::function<TDateTime()>& ActiveClock() {
  static std::function<TDateTime()> clock = SystemClock;
  return clock;
}

}  // namespace

TDateTime Now() { return ActiveClock()(); }

TDateTime Date() {
  std::int32_t day;
  DecodeDateTime(Now(), day);
  return day;
}

int CurrentYear() { return DecodeDateTime(Now()).Year; }

void SetClock(std::function<TDateTime()> Clock) {
  if (!Clock) Clock = SystemClock;
  ActiveClock() = std::move(Clock);
}

}  // namespace norva
