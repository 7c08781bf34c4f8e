// norva_bench: micro-benchmarks of the steps that every cell takes.
//
//   norva_bench --benchmark_filter=NumberPicture
//
// Each run takes the next of a set of prepared values, so that neither the branch predictor nor a
// cache of the last result makes the figures prettier than a real column does.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <norva/platform/DateTime.h>
#include <norva/platform/Locale.h>
#include <norva/platform/Numbers.h>

namespace {

using norva::TDatePicture;
using norva::TDateTime;
using norva::TFormatSettings;
using norva::TNumberPicture;

// A power of two, so that "the next value" is a mask.
constexpr std::size_t ValueCount = 4096;

/// Amounts of 0.00 to about 40,000.00; every eighth is negative.
std::vector<double> Amounts() {
  std::vector<double> values;
  for (std::size_t i = 0; i < ValueCount; ++i) {
    const double value = static_cast<double>(i * 2654435761 % 4000000) / 100;
    values.push_back(i % 8 == 7 ? -value : value);
  }
  return values;
}

/// Quotients that need all their 16 or 17 digits.
std::vector<double> LongReals() {
  std::vector<double> values;
  for (std::size_t i = 0; i < ValueCount; ++i) values.push_back(static_cast<double>(i + 1) / 7);
  return values;
}

/// Integers of one to nineteen digits.
std::vector<std::int64_t> Integers() {
  std::vector<std::int64_t> values;
  for (std::size_t i = 0; i < ValueCount; ++i) {
    values.push_back(static_cast<std::int64_t>((i + 1) * 0x9E3779B97F4A7C15 >> (1 + i % 60)));
  }
  return values;
}

/// Days of about eleven years up to 2024; with `WithTime` at every second of the day.
std::vector<TDateTime> Moments(bool WithTime) {
  std::vector<TDateTime> values;
  for (std::size_t i = 0; i < ValueCount; ++i) {
    const double day = 41640 + static_cast<double>(i);  // 41640: 1 January 2014
    values.push_back(WithTime ? day + static_cast<double>(i * 7919 % 86400) / 86400 : day);
  }
  return values;
}

/// Runs `Append(Value, Settings, Out)` over `Values` round and round; counts items and bytes.
template <class TValue, class TAppend>
void RunAppend(benchmark::State& State, const std::vector<TValue>& Values, const TAppend& Append) {
  const TFormatSettings settings;
  std::string out;
  std::size_t next = 0;
  std::int64_t bytes = 0;
  for (auto _ : State) {
    out.clear();
    Append(Values[next++ & (ValueCount - 1)], settings, out);
    benchmark::DoNotOptimize(out.data());
    bytes += static_cast<std::int64_t>(out.size());
  }
  State.SetItemsProcessed(State.iterations());
  State.SetBytesProcessed(bytes);
}

template <class TValue>
void NumberPicture(benchmark::State& State, const char* Picture,
                   const std::vector<TValue>& Values) {
  const TNumberPicture picture(Picture);
  RunAppend(State, Values, [&](TValue Value, const TFormatSettings& Settings, std::string& Out) {
    picture.Append(Value, Settings, Out);
  });
}

void ShortestFloat(benchmark::State& State, const std::vector<double>& Values) {
  RunAppend(State, Values, [](double Value, const TFormatSettings& Settings, std::string& Out) {
    norva::AppendFloatToStr(Value, Settings, Out);
  });
}

void DatePicture(benchmark::State& State, const char* Picture,
                 const std::vector<TDateTime>& Values) {
  const TDatePicture picture(Picture);
  RunAppend(State, Values, [&](TDateTime Value, const TFormatSettings& Settings, std::string& Out) {
    picture.Append(Value, Settings, Out);
  });
}

/// What a picture that is parsed for every cell would cost.
void ParseNumberPicture(benchmark::State& State) {
  for (auto _ : State) {
    TNumberPicture picture("#,##0.00;(#,##0.00);0");
    benchmark::DoNotOptimize(picture);
  }
}

BENCHMARK_CAPTURE(NumberPicture, GeneralReal, "", Amounts());
BENCHMARK_CAPTURE(NumberPicture, GeneralLongReal, "", LongReals());
BENCHMARK_CAPTURE(NumberPicture, TwoDecimals, "0.00", Amounts());
BENCHMARK_CAPTURE(NumberPicture, GroupedMoney, "$#,##0.00;($#,##0.00)", Amounts());
BENCHMARK_CAPTURE(NumberPicture, Exponent, "0.00E+00", Amounts());
BENCHMARK_CAPTURE(NumberPicture, Integer, "0", Integers());
BENCHMARK_CAPTURE(NumberPicture, GroupedInteger, "#,##0", Integers());
BENCHMARK(ParseNumberPicture);
BENCHMARK_CAPTURE(ShortestFloat, Amounts, Amounts());
BENCHMARK_CAPTURE(ShortestFloat, LongReals, LongReals());
BENCHMARK_CAPTURE(DatePicture, IsoDate, "yyyy-mm-dd", Moments(false));
BENCHMARK_CAPTURE(DatePicture, DateAndTime, "c", Moments(true));
BENCHMARK_CAPTURE(DatePicture, LongDate, "dddd, d mmmm yyyy", Moments(false));
BENCHMARK_CAPTURE(DatePicture, TimeOfDay, "hh:nn:ss", Moments(true));

}  // namespace
