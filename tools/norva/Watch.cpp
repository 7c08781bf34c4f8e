#include <tools/norva/Watch.h>

#include <tools/norva/Interrupt.h>

namespace norva::tool {

TWatch::TWatch(TNorva& Exporter, TProgress& Progress) : Exporter_(Exporter) {
  Exporter.OnFetchedRecord = [this, &Progress](TObject&, std::int32_t record) {
    Progress.Advance("read", record);
    AbortIfAsked();
  };
  Exporter.OnSkippedRecord = [this](TObject&, std::int32_t) { AbortIfAsked(); };
  Exporter.OnExportedRecord = [this, &Progress](TObject&, std::int32_t record) {
    Written_ = record + 1;
    Progress.Advance("written", Written_);
    AbortIfAsked();
  };
}

// Once: some formats end their file there.
void TWatch::AbortIfAsked() {
  if (Interrupted() && !Exporter_.Aborted) Exporter_.Abort();
}

}  // namespace norva::tool
