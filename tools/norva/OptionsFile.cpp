#include <tools/norva/OptionsFile.h>

#include <filesystem>
#include <system_error>
#include <vector>

#include <norva/platform/Exceptions.h>
#include <tools/norva/Errors.h>
#include <tools/norva/Messages.h>
#include <tools/norva/Nearest.h>
#include <tools/norva/Settings.h>
#include <tools/norva/Terminal.h>

namespace norva::tool {

std::unique_ptr<TNorvaDialog> MakeDialog(const TFormat& Format, const std::string& OptionsFile) {
  auto dialog = std::make_unique<TNorvaDialog>();
  if (Format.Prepare) Format.Prepare(*dialog);
  if (!OptionsFile.empty()) dialog->LoadExportOptions(OptionsFile);
  // aeWord stays what it is.
  if (FormatByKind(dialog->ExportType).Kind != Format.Kind) dialog->ExportType = Format.Kind;
  return dialog;
}

void CheckOptionsFile(const TExportArguments& Arguments, const std::string& Output) {
  const std::string& name = Arguments.SaveOptions;
  if (name.empty()) return;
  std::error_code none;  // they need not exist
  const std::filesystem::file_status status = std::filesystem::status(name, none);
  if (std::filesystem::exists(status) && !is_regular_file(status)) {
    throw EUsage(MsgOptionsAreOther, name, "no regular file");
  }
  for (const std::string& other : {Arguments.Source.Name, Output}) {
    if (name == other || std::filesystem::equivalent(name, other, none)) {
      throw EUsage(MsgOptionsAreOther, name, other == Output ? "the output" : "the database");
    }
  }
}

void SaveOptions(const TExportArguments& Arguments, TNorvaDialog& Dialog) {
  Dialog.SaveExportOptions(Arguments.SaveOptions);
  if (Arguments.Quiet) return;
  const std::unique_ptr<TNorvaDialog> held =
      MakeDialog(FormatByKind(Dialog.ExportType), Arguments.SaveOptions);
  std::vector<std::string> names =
      DifferentSettings(*Dialog.CreateExporter(), *held->CreateExporter());
  if (Arguments.Locale) names.push_back("--locale");
  if (Arguments.CodePage) names.push_back("--code-page");
  if (Arguments.OnUnmappable) names.push_back("--on-unmappable");
  if (!names.empty()) Say(Format(MsgNotHeld, Arguments.SaveOptions, Joined(names)));
}

}  // namespace norva::tool
