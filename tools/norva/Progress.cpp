#include <tools/norva/Progress.h>

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <string>

#include <tools/norva/Report.h>

namespace norva::tool {
namespace {

constexpr std::chrono::milliseconds LongExport(500);
constexpr std::chrono::milliseconds BetweenDrawings(100);
constexpr std::int64_t BarLength = 24;

void ToStandardError(std::string_view Text) {
  [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, Text.data(), Text.size());
}

}  // namespace

TProgress::TProgress(std::int64_t Expected, std::optional<bool> Wanted)
    : Expected_(std::max<std::int64_t>(Expected, 1)),
      IsTerminal_(::isatty(STDERR_FILENO) == 1),
      Enabled_(Wanted.value_or(IsTerminal_)),
      Begun_(TClock::now()),
      Next_(Wanted ? Begun_ : Begun_ + LongExport) {}

void TProgress::Look(std::string_view Doing, std::int64_t Done) {
  const TClock::time_point now = TClock::now();
  if (Doing != Doing_) {
    Doing_ = Doing;
    Begun_ = now;
  }
  if (now >= Next_) Draw(Doing, Done, now);
}

void TProgress::Draw(std::string_view Doing, std::int64_t Done, TClock::time_point Now) {
  const std::int64_t part = std::min(Done, Expected_);
  const auto filled = static_cast<std::size_t>(part * BarLength / Expected_);
  std::string bar(static_cast<std::size_t>(BarLength), '-');
  bar.replace(0, filled, filled, '#');
  const double seconds = std::chrono::duration<double>(Now - Begun_).count();
  const double left = seconds / static_cast<double>(std::max<std::int64_t>(part, 1)) *
                      static_cast<double>(Expected_ - part);

  std::string line = "\r[" + bar + "] " + std::to_string(part * 100 / Expected_) + "%  ";
  line += Grouped(part) + " of " + Grouped(Expected_) + ' ' + std::string(Doing) + ", ";
  line += Grouped(std::llround(left)) + " s left";
  ToStandardError(line + (IsTerminal_ ? "\x1B[K" : "   "));  // what is left of a longer line
  Drawn_ = true;
  Next_ = Now + BetweenDrawings;
}

void TProgress::Clear() {
  if (Drawn_) ToStandardError(IsTerminal_ ? "\r\x1B[K" : "\n");
  Drawn_ = false;
}

}  // namespace norva::tool
