/// The progress bar of a long export.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>

namespace norva::tool {

/// Draws on standard error, one line that is drawn over and finally cleared.
class TProgress {
 public:
  /// `Wanted` absent: only on a terminal, and not before half a second has passed.
  TProgress(std::int64_t Expected, std::optional<bool> Wanted);
  ~TProgress() { Clear(); }
  TProgress(const TProgress&) = delete;
  TProgress& operator=(const TProgress&) = delete;

  /// `Done` of the expected records are `Doing` ("written"). Cheap: it looks at the clock only
  /// every 1024 records.
  void Advance(std::string_view Doing, std::int64_t Done) {
    if (Enabled_ && Done % RecordsBetweenLooks == 0) Look(Doing, Done);
  }
  /// Takes the bar away, before anything else is written.
  void Clear();

 private:
  using TClock = std::chrono::steady_clock;
  static constexpr std::int64_t RecordsBetweenLooks = 1024;

  void Look(std::string_view Doing, std::int64_t Done);
  void Draw(std::string_view Doing, std::int64_t Done, TClock::time_point Now);

  std::int64_t Expected_;
  bool IsTerminal_;
  bool Enabled_;
  bool Drawn_ = false;
  std::string_view Doing_;
  TClock::time_point Begun_;  // of what is being done
  TClock::time_point Next_;   // not before this it is drawn again
};

}  // namespace norva::tool
