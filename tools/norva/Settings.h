/// From the arguments to the exporter's properties.
///
/// The order: ChooseText, then a dialog and its exporter, then ApplySettings. Code page first,
/// locale next, because its texts are in that page; an exporter takes its defaults from both.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <norva/core/Norva.h>
#include <norva/dialog/Norvadialog.h>
#include <norva/platform/Property.h>
#include <tools/norva/CommandLine.h>
#include <tools/norva/Formats.h>

namespace norva::tool {

/// What every file exporter publishes, but the tool does itself: the exporter writes elsewhere, and
/// the file is shown when it is in its place.
class TOutputSettings : public TPersistent {
 public:
  std::string_view ClassName() const override { return "TOutputSettings"; }
  const TPropertyList& Properties() const override;

  std::string FileName;  ///< `-`: standard output; empty: none
  bool ShowFile = false;
  bool PrintFile = false;
};

/// `-o`, `--open` and `--print`, or what `--set` or, without them, the options file `Stored` says
/// of them; `Stored` may be null. Throws EUsage for bad values.
TOutputSettings OutputSettings(const TExportArguments& Arguments, const TNorvaDialog* Stored);

/// Sets the thread's code page, policy and locale. Throws EUsage for what is not known.
void ChooseText(const TExportArguments& Arguments, const TFormat& Format);

/// Gives the exporter all settings of the arguments, those of `--set` last. Throws EUsage for bad
/// ones.
void ApplySettings(const TExportArguments& Arguments, TNorva& Exporter);

/// The settings, by option or property, that differ between two exporters of one class.
std::vector<std::string> DifferentSettings(TNorva& A, TNorva& B);

/// The names of the properties below `Object`, dotted ones for those of groups. Those that --set
/// cannot reach only where `All`.
std::vector<std::string> PropertyNames(const TPropertyList& List, TPersistent& Object, bool All);

}  // namespace norva::tool
