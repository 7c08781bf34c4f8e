#include <tools/norva/Report.h>

#include <charconv>

#include <norva/platform/Format.h>
#include <tools/norva/Messages.h>

namespace norva::tool {
namespace {

std::string SecondsText(double Seconds) {
  char text[32];
  const auto end =
      std::to_chars(text, text + sizeof text, Seconds, std::chars_format::fixed, 3).ptr;
  return std::string(text, end);
}

}  // namespace

std::string Grouped(std::int64_t Value) {
  std::string text = std::to_string(Value);
  const std::size_t first = Value < 0 ? 1 : 0;
  for (std::size_t i = text.size(); i > first + 3; i -= 3) text.insert(i - 3, 1, ',');
  return text;
}

std::string Counted(std::int64_t Count, std::string_view Thing) {
  return Grouped(Count) + ' ' + std::string(Thing) + (Count == 1 ? "" : "s");
}

std::string DoneLine(std::string_view Name, std::int64_t Records, int Columns, std::int64_t Bytes,
                     double Seconds) {
  const double rate = Seconds > 0 ? static_cast<double>(Records) / Seconds : 0;
  return Format(MsgDone, Name, Counted(Records, "record"), Counted(Columns, "column"),
                Counted(Bytes, "byte"), SecondsText(Seconds),
                Grouped(static_cast<std::int64_t>(rate)));
}

}  // namespace norva::tool
