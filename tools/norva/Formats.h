/// The formats of this build. A new one is one row of the table in Formats.cpp.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <norva/core/Norva.h>
#include <norva/dialog/Norvadialog.h>

namespace norva::tool {

/// One format, as `--format` names it.
struct TFormat {
  TAllowedExport Kind;
  std::string_view Name;
  /// With their points, separated by blanks; empty for what is no file.
  std::string_view Extensions;
  std::string_view Description;
  /// Used where `--code-page` is not given.
  int CodePage;
  /// Written from front to back into one stream. Others seek, or name files, and reach standard
  /// output and devices through a temporary file.
  bool Streams;
  /// Gives a new dialog the settings that the tool starts from; null when they are its own. Locale
  /// and code page must be chosen before: a dialog takes its defaults from them.
  void (*Prepare)(TNorvaDialog& Dialog);
  /// Throws EUsage for settings that the exporter takes, but not the programs that read its files;
  /// null when there are none. Its FileName is empty where the output is no file.
  void (*Check)(const TNorva& Exporter);
  /// What is worth saying after an export, a line each; null when there is never anything.
  std::vector<std::string> (*Remarks)(const TNorva& Exporter);
};

std::span<const TFormat> Formats();

/// Throws EUsage naming the formats there are.
const TFormat& FormatByName(std::string_view Name);
/// aeWord is aeRTF.
const TFormat& FormatByKind(TAllowedExport Kind);
/// By the extension of a file name; null when it names none.
const TFormat* FindByExtension(const std::string& FileName);
/// The same. Throws EUsage naming those that are known.
const TFormat& FormatByExtension(const std::string& FileName);

}  // namespace norva::tool
