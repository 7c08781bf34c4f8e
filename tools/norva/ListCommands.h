/// The commands that only show something, as tables on standard output.
#pragma once

#include <string>

#include <tools/norva/CommandLine.h>

namespace norva::tool {

/// The columns of a table or query: what the exporters know of each, and whether it is exported
/// unless columns are named.
void ColumnsCommand(const TSourceArguments& Arguments);
/// The tables and views of a database file.
void TablesCommand(const std::string& FileName);
void FormatsCommand();
/// The published properties of a format's exporter, those of its groups by dotted names.
void PropertiesCommand(const std::string& FormatName);

}  // namespace norva::tool
