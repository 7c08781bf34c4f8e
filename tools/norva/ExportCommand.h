/// `norva export`.
#pragma once

#include <tools/norva/CommandLine.h>

namespace norva::tool {

/// Exports; says on standard error what it has done. Throws EUsage for wrong arguments,
/// EInterrupted after Ctrl-C, and an Exception, with what to do, for what fails.
void ExportCommand(const TExportArguments& Arguments);

}  // namespace norva::tool
