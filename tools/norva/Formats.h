/// The formats of this build. A new one is one row of the table in Formats.cpp.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <norva/core/Norva.h>

namespace norva::tool {

/// One format, as `--format` names it.
struct TFormat {
  std::string_view Name;
  /// With their points, separated by blanks; empty for what is no file.
  std::string_view Extensions;
  std::string_view Description;
  /// Used where `--code-page` is not given.
  int CodePage;
  /// Written from front to back into one stream. Others seek, or name files, and reach standard
  /// output and devices through a temporary file.
  bool Streams;
  /// Makes the exporter with the settings that the tool starts from. Locale and code page must be
  /// chosen before: an exporter takes its defaults from them.
  std::unique_ptr<TNorva> (*Make)();
  /// Throws EUsage for settings that the exporter takes, but not the programs that read its files;
  /// null when there are none. Its FileName is empty where the output is no file.
  void (*Check)(const TNorva& Exporter);
  /// What is worth saying after an export, a line each; null when there is never anything.
  std::vector<std::string> (*Remarks)(const TNorva& Exporter);
};

std::span<const TFormat> Formats();

/// Throws EUsage naming the formats there are.
const TFormat& FormatByName(std::string_view Name);
/// By the extension of a file name. Throws EUsage naming those that are known.
const TFormat& FormatByExtension(const std::string& FileName);

}  // namespace norva::tool
