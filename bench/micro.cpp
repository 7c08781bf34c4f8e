// norva-micro: micro-benchmarks of the steps that every cell and every record takes.
//
//   norva-micro                             times, by Google Benchmark and with its options
//   norva-micro --benchmark_filter=Row
//   norva-micro --list                      names, and the iterations that bench/instructions
//   counts norva-micro --count NAME ITERATIONS     runs one case so often, for tools that count
//
// Each iteration takes the next of a set of prepared values, so that neither the branch predictor
// nor a cache of the last result makes the figures prettier than a real column does.

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include <norva/core/Norva.h>
#include <norva/formats/database/Norvadbf.h>
#include <norva/formats/database/Norvasql.h>
#include <norva/formats/document/Norvahtml.h>
#include <norva/formats/document/Norvalatex.h>
#include <norva/formats/document/Norvartf.h>
#include <norva/formats/document/Norvaxml.h>
#include <norva/formats/spreadsheet/Norvaxls.h>
#include <norva/formats/text/Norvaascii.h>
#include <norva/formats/text/Norvaclipboard.h>
#include <norva/platform/CodePages.h>
#include <norva/platform/CompoundFile.h>
#include <norva/platform/DateTime.h>
#include <norva/platform/Locale.h>
#include <norva/platform/Numbers.h>
#include <norva/sources/memory/MemoryDataSet.h>

namespace {

using namespace norva;

/// Runs a prepared case `Count` times.
using TLoop = std::function<void(std::size_t Count)>;

struct TCase {
  std::string Name;
  std::size_t Counted;  // iterations that make one round of the case's values
  std::function<TLoop()> Prepare;
};

// A power of two, so that "the next value" is a mask.
constexpr std::size_t ValueCount = 4096;

// Values.

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

/// Days of about eleven years up to 2025; with `WithTime` at every second of the day.
std::vector<TDateTime> Moments(bool WithTime) {
  std::vector<TDateTime> values;
  for (std::size_t i = 0; i < ValueCount; ++i) {
    const double day = 41640 + static_cast<double>(i);  // 41640: 1 January 2014
    values.push_back(WithTime ? day + static_cast<double>(i * 7919 % 86400) / 86400 : day);
  }
  return values;
}

// Pictures: one value an iteration.

template <class TValue, class TAppend>
TLoop AppendLoop(std::vector<TValue> Values, TAppend Append) {
  return [values = std::move(Values), append = std::move(Append), next = std::size_t{0},
          out = std::string()](std::size_t count) mutable {
    const TFormatSettings settings;
    for (; count > 0; --count) {
      out.clear();
      append(values[next++ & (ValueCount - 1)], settings, out);
      benchmark::DoNotOptimize(out.data());
    }
  };
}

template <class TPicture, class TValue>
TCase PictureCase(const char* Name, const char* Picture, std::vector<TValue> (*Values)()) {
  return {Name, ValueCount, [=] {
            return AppendLoop(Values(),
                              [picture = TPicture(Picture)](const auto& value, const auto& settings,
                                                            std::string& out) {
                                picture.Append(value, settings, out);
                              });
          }};
}

TLoop ShortestFloats() {
  return AppendLoop(LongReals(), [](double value, const TFormatSettings& settings,
                                    std::string& out) { AppendFloatToStr(value, settings, out); });
}

/// What a picture that is parsed for every cell would cost.
TLoop ParsedPictures() {
  return [](std::size_t count) {
    for (; count > 0; --count) {
      TNumberPicture picture("#,##0.00;(#,##0.00);0");
      benchmark::DoNotOptimize(picture);
    }
  };
}

// Exports: one record an iteration, source and driver included.

/// Takes everything and keeps nothing.
class TNullStream : public TStream {
 public:
  using TStream::Write;
  std::size_t Read(void*, std::size_t) override { return 0; }
  void Write(const void*, std::size_t Count) override {
    Position_ += static_cast<std::int64_t>(Count);
    Size_ = std::max(Size_, Position_);
  }
  std::int64_t Seek(std::int64_t Offset, TSeekOrigin Origin) override {
    const std::int64_t from = Origin == soBeginning ? 0 : Origin == soEnd ? Size_ : Position_;
    return Position_ = from + Offset;
  }
  std::int64_t Size() override { return Size_; }

 private:
  std::int64_t Position_ = 0, Size_ = 0;
};

constexpr std::size_t RecordCount = 512;

/// Exports the records of `Source` again and again.
TLoop ExportLoop(std::unique_ptr<TMemoryDataSet> Source, std::unique_ptr<TNorva> Exporter) {
  struct TExport {
    std::unique_ptr<TMemoryDataSet> Source;
    std::unique_ptr<TNorva> Exporter;  // goes first: it refers to the source
  };
  const auto both = std::make_shared<TExport>();
  both->Source = std::move(Source);
  both->Exporter = std::move(Exporter);
  both->Exporter->DataSet = both->Source.get();
  return [both](std::size_t count) {
    for (; count >= RecordCount; count -= RecordCount) {
      TNullStream stream;
      both->Source->First();
      both->Exporter->ExportToStream(stream);
    }
  };
}

/// Makes the cells of each record and writes nothing.
class TCells : public TNorva {
 public:
  std::string_view ClassName() const override { return "TCells"; }

 protected:
  void WriteDataRow() override {
    std::string& row = RowBuffer();
    row.clear();
    GetDataRow(true, row);
    benchmark::DoNotOptimize(row.data());
  }
};

TMemoryValue ValueOf(TFieldType Type, std::size_t I) {
  constexpr std::string_view texts[] = {"Ulm", "Anna-Lena Braunschweiger", "",
                                        "100% cotton & silk"};
  switch (Type) {
    case ftString:
      return texts[I % 4];
    case ftBoolean:
      return I % 3 == 0;
    case ftSmallint:
    case ftInteger:
      return static_cast<std::int64_t>(I * 7919 % 30000);
    case ftLargeint:
      return static_cast<std::int64_t>(I * 2654435761);
    case ftDate:
      return TMemoryValue::DateTime(static_cast<double>(41640 + I));
    case ftTime:
    case ftDateTime:
      return TMemoryValue::DateTime(static_cast<double>(41640 + I) +
                                    static_cast<double>(I * 7919 % 86400) / 86400);
    default:
      return static_cast<double>(I * 2654435761 % 4000000) / 100;
  }
}

/// Records of fields of the given types; every seventh value is null, or all are.
std::unique_ptr<TMemoryDataSet> Records(const std::vector<TFieldType>& Types, bool Null = false) {
  auto set = std::make_unique<TMemoryDataSet>();
  for (std::size_t i = 0; i < Types.size(); ++i) {
    set->AddField("field_" + std::to_string(i), Types[i], Types[i] == ftString ? 40 : 0);
  }
  for (std::size_t i = 0; i < RecordCount; ++i) {
    std::vector<TMemoryValue> values;
    for (std::size_t column = 0; column < Types.size(); ++column) {
      const bool null = Null || (i + column) % 7 == 6;
      values.push_back(null ? TMemoryValue() : ValueOf(Types[column], i + column));
    }
    set->Append(std::move(values));
  }
  return set;
}

constexpr std::size_t CellsOfARecord = 16;  // so that the cost of moving on hardly counts

TCase CellCase(const char* Name, TFieldType Type, bool Null = false) {
  return {Name, RecordCount, [=] {
            return ExportLoop(Records(std::vector(CellsOfARecord, Type), Null),
                              std::make_unique<TCells>());
          }};
}

template <class TExporter>
std::unique_ptr<TNorva> Make() {
  return std::make_unique<TExporter>();
}

template <TNorvaASCIIType Type>
std::unique_ptr<TNorva> MakeASCII() {
  auto exporter = std::make_unique<TNorvaASCII>();
  exporter->SetExportType(Type);
  return exporter;
}

/// As tables need it: "null" is no date.
std::unique_ptr<TNorva> MakeDBF() {
  auto exporter = Make<TNorvaDBF>();
  exporter->Formats.NullString.clear();
  return exporter;
}

/// The formats: a record of every type of field. A new one is one row.
constexpr std::pair<const char*, std::unique_ptr<TNorva> (*)()> Formats[] = {
    {"Row/txt",       MakeASCII<etTXT>     },
    {"Row/csv",       MakeASCII<etCSV>     },
    {"Row/dif",       MakeASCII<etDIF>     },
    {"Row/sylk",      MakeASCII<etSYLK>    },
    {"Row/xls",       Make<TNorvaXLS>      },
    {"Row/html",      Make<TNorvaHTML>     },
    {"Row/xml",       Make<TNorvaXML>      },
    {"Row/rtf",       Make<TNorvaRTF>      },
    {"Row/latex",     Make<TNorvaLaTeX>    },
    {"Row/dbf",       MakeDBF              },
    {"Row/sql",       Make<TNorvaSQL>      },
    {"Row/clipboard", Make<TNorvaClipboard>},
};

TLoop FormatLoop(std::unique_ptr<TNorva> (*MakeExporter)()) {
  return ExportLoop(Records({ftInteger, ftString, ftString, ftFloat, ftCurrency, ftLargeint, ftDate,
                             ftDateTime, ftTime, ftBoolean, ftSmallint, ftString}),
                    MakeExporter());
}

// The parts of a workbook.

/// One text an iteration, every second one for the first time.
TLoop SharedStrings() {
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < ValueCount; ++i) {
    texts.push_back("customer " + std::to_string(i % 2 == 0 ? i : i * 7919 % i / 2 * 2));
  }
  return [texts = std::move(texts)](std::size_t count) {
    for (; count >= ValueCount; count -= ValueCount) {
      TxlsStrings strings;
      for (const std::string& text : texts) benchmark::DoNotOptimize(strings.Add(text));
    }
  };
}

/// One document of some 200 sectors an iteration.
TLoop CompoundFiles() {
  return [text = std::string(100000, 'x')](std::size_t count) {
    for (; count > 0; --count) {
      const TCompoundStream streams[] = {
          {"Workbook", {text, std::string_view(text).substr(0, 777)}},
          {"Small",    {std::string_view(text).substr(0, 100)}      },
      };
      TNullStream file;
      WriteCompoundFile(file, streams);
    }
  };
}

// The list.

std::vector<TCase> Cases() {
  const auto days = [] { return Moments(false); };
  const auto moments = [] { return Moments(true); };
  std::vector<TCase> cases = {
      PictureCase<TNumberPicture>("NumberPicture/GeneralReal", "", Amounts),
      PictureCase<TNumberPicture>("NumberPicture/GeneralLongReal", "", LongReals),
      PictureCase<TNumberPicture>("NumberPicture/TwoDecimals", "0.00", Amounts),
      PictureCase<TNumberPicture>("NumberPicture/GroupedMoney", "$#,##0.00;($#,##0.00)", Amounts),
      PictureCase<TNumberPicture>("NumberPicture/Exponent", "0.00E+00", Amounts),
      PictureCase<TNumberPicture>("NumberPicture/Integer", "0", Integers),
      PictureCase<TNumberPicture>("NumberPicture/GroupedInteger", "#,##0", Integers),
      PictureCase<TDatePicture, TDateTime>("DatePicture/IsoDate", "yyyy-mm-dd", days),
      PictureCase<TDatePicture, TDateTime>("DatePicture/DateAndTime", "c", moments),
      PictureCase<TDatePicture, TDateTime>("DatePicture/LongDate", "dddd, d mmmm yyyy", days),
      PictureCase<TDatePicture, TDateTime>("DatePicture/TimeOfDay", "hh:nn:ss", moments),
      {"ParseNumberPicture", ValueCount, ParsedPictures},
      {"ShortestFloat",      ValueCount, ShortestFloats},
      CellCase("Cells16/String", ftString),
      CellCase("Cells16/Integer", ftInteger),
      CellCase("Cells16/Largeint", ftLargeint),
      CellCase("Cells16/Float", ftFloat),
      CellCase("Cells16/Currency", ftCurrency),
      CellCase("Cells16/Date", ftDate),
      CellCase("Cells16/Time", ftTime),
      CellCase("Cells16/DateTime", ftDateTime),
      CellCase("Cells16/Boolean", ftBoolean),
      CellCase("Cells16/Null", ftFloat, true),
  };
  for (const auto& [name, make] : Formats) {
    cases.push_back({name, RecordCount, [make = make] { return FormatLoop(make); }});
  }
  cases.push_back({"SharedStrings", ValueCount, SharedStrings});
  cases.push_back({"CompoundFile", 64, CompoundFiles});
  return cases;
}

int RunCounted(const std::vector<TCase>& Cases, std::string_view Name, std::string_view Text) {
  std::size_t count = 0;
  const auto [end, error] = std::from_chars(Text.data(), Text.data() + Text.size(), count);
  for (const TCase& c : Cases) {
    if (c.Name != Name || error != std::errc() || end != Text.data() + Text.size()) continue;
    c.Prepare()(count);
    return 0;
  }
  std::fprintf(stderr, "norva-micro: --count NAME ITERATIONS, with a name of --list\n");
  return 2;
}

/// Under Google Benchmark the iterations come in rounds, too, and the times are those of one.
void RunTimed(benchmark::State& State, const TCase& Case) {
  const TLoop loop = Case.Prepare();
  const auto round = static_cast<benchmark::IterationCount>(Case.Counted);
  while (State.KeepRunningBatch(round)) loop(Case.Counted);
  State.SetItemsProcessed(State.iterations());
}

}  // namespace

int main(int argc, char** argv) {
  // The same work wherever it runs.
  FormatSettings() = TFormatSettings();
  SetActiveCodePage(CodePageUtf8);
  const std::vector<TCase> cases = Cases();
  const std::string_view option = argc > 1 ? argv[1] : "";
  if (option == "--list") {
    for (const TCase& c : cases) std::printf("%s\t%zu\n", c.Name.c_str(), c.Counted);
    return 0;
  }
  if (option == "--count") return RunCounted(cases, argc == 4 ? argv[2] : "", argv[argc - 1]);
  for (const TCase& c : cases) {
    benchmark::RegisterBenchmark(c.Name.c_str(),
                                 [&c](benchmark::State& State) { RunTimed(State, c); });
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
