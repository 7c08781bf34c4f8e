/// `--options` and `--save-options`: the settings of an export in a file.
#pragma once

#include <memory>
#include <string>

#include <norva/core/Norva.h>
#include <norva/dialog/Norvadialog.h>
#include <tools/norva/CommandLine.h>
#include <tools/norva/Formats.h>

namespace norva::tool {

/// A dialog for `Format` with what the tool starts from and, unless its name is empty, with what
/// the options file says. Locale and code page must be chosen before.
std::unique_ptr<TNorvaDialog> MakeDialog(const TFormat& Format, const std::string& OptionsFile);

/// Throws EUsage when `--save-options` names a file of the export, or what is no file.
void CheckOptionsFile(const TExportArguments& Arguments, const std::string& Output);

/// Writes the file of `--save-options`; names on standard error, unless `--quiet`, what it cannot
/// hold. Throws what SaveExportOptions throws.
void SaveOptions(const TExportArguments& Arguments, TNorvaDialog& Dialog);

}  // namespace norva::tool
