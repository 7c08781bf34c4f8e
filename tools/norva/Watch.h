/// Follows an export by its events.
#pragma once

#include <cstdint>

#include <norva/core/Norva.h>
#include <tools/norva/Progress.h>

namespace norva::tool {

/// Counts the records, shows the progress, and passes a request to end (Interrupted) on as Abort.
class TWatch {
 public:
  /// Takes the exporter's record events; both must live as long as the export.
  TWatch(TNorva& Exporter, TProgress& Progress);

  /// Records written so far.
  std::int64_t Written() const { return Written_; }

 private:
  void AbortIfAsked();

  TNorva& Exporter_;
  std::int64_t Written_ = 0;
};

}  // namespace norva::tool
