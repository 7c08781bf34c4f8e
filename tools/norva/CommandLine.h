/// The commands and their arguments.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace norva::tool {

/// What is read. All texts of this file but the names of files are UTF-8.
struct TSourceArguments {
  std::string Name;  ///< path of a database file, or `odbc:` and a connection string
  std::optional<std::string> Table;
  std::optional<std::string> Query;
};

/// The arguments of `norva export`, one member an option.
struct TExportArguments {
  TSourceArguments Source;
  std::optional<std::string> Format;  ///< absent: by the extension of the output
  std::string Output;                 ///< `-`: standard output
  std::vector<std::string> Fields;
  std::vector<std::string> Captions, UserFormats, Widths, Aligns, Lengths;  ///< `NAME=VALUE`
  std::optional<std::string> Title;
  std::vector<std::string> Header, Footer;
  std::optional<std::string> Null;
  bool NoCaptions = false;
  std::optional<std::string> Limit, Skip;
  std::vector<std::string> Settings;    ///< `PATH=VALUE`
  std::string Options, SaveOptions;     ///< files; empty: none
  std::optional<std::string> Locale;    ///< absent: the environment's
  std::optional<std::string> CodePage;  ///< absent: the format's
  std::optional<std::string> OnUnmappable;
  std::optional<bool> Progress;  ///< absent: as the tool thinks best
  bool Open = false, Print = false;
  bool Quiet = false;
  bool KeepPartial = false;
};

/// Parses the arguments and runs the command that they name. Throws EUsage for wrong ones, and what
/// the command throws.
void RunCommandLine(int argc, const char* const* argv);

}  // namespace norva::tool
