#include <tools/norva/Formats.h>

#include <vector>

#include <norva/formats/spreadsheet/Norvaxls.h>
#include <norva/formats/text/Norvaascii.h>
#include <norva/formats/text/Norvaclipboard.h>
#include <norva/platform/CodePages.h>
#include <norva/platform/FileNames.h>
#include <tools/norva/Errors.h>
#include <tools/norva/Messages.h>
#include <tools/norva/Nearest.h>

namespace norva::tool {
namespace {

template <TNorvaASCIIType Type>
std::unique_ptr<TNorva> MakeASCII() {
  auto exporter = std::make_unique<TNorvaASCII>();
  exporter->SetExportType(Type);
  return exporter;
}

template <class TExporter>
std::unique_ptr<TNorva> Make() {
  return std::make_unique<TExporter>();
}

/// What spreadsheet programs take as the name of a sheet.
void CheckSheetTitle(const TNorva& Exporter) {
  constexpr std::size_t most = 31;  // UTF-16 units
  const std::string& title = static_cast<const TNorvaXLS&>(Exporter).Options.SheetTitle();
  if (ToUtf16(title).size() > most || title.find_first_of("/\\:*?[]") != std::string::npos) {
    throw EUsage(MsgSheetTitle, ToUtf8(title), most);
  }
}

constexpr TFormat Table[] = {
    {"txt",       ".txt", "Fixed-width text",        CodePageUtf8, true,  MakeASCII<etTXT>,      nullptr        },
    {"csv",       ".csv", "Comma-separated values",  CodePageUtf8, true,  MakeASCII<etCSV>,      nullptr        },
    {"dif",       ".dif", "Data Interchange Format", CodePageUtf8, true,  MakeASCII<etDIF>,      nullptr        },
    {"sylk",      ".slk", "Symbolic Link format",    CodePageUtf8, true,  MakeASCII<etSYLK>,     nullptr        },
    {"xls",       ".xls", "Excel 97 workbook",       CodePageUtf8, false, Make<TNorvaXLS>,       CheckSheetTitle},
    {"clipboard", "",     "Text on the clipboard",   CodePageUtf8, true,  Make<TNorvaClipboard>, nullptr        },
};

/// Whether `Extension` is one of those of `Format`, in any letter case.
bool HasExtension(const TFormat& Format, std::string_view Extension) {
  std::string_view rest = Format.Extensions;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(' '), rest.size());
    if (SameText(rest.substr(0, end), Extension)) return true;
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return false;
}

std::string Listed(std::string_view TFormat::*Column) {
  std::vector<std::string> texts;
  for (const TFormat& format : Table) {
    if (!(format.*Column).empty()) texts.emplace_back(format.*Column);
  }
  return Joined(texts);
}

}  // namespace

std::span<const TFormat> Formats() { return Table; }

const TFormat& FormatByName(std::string_view Name) {
  for (const TFormat& format : Table) {
    if (SameText(format.Name, Name)) return format;
  }
  throw EUsage(MsgNoFormat, Name, Listed(&TFormat::Name));
}

const TFormat& FormatByExtension(const std::string& FileName) {
  const std::string extension = ExtractFileExt(FileName);
  for (const TFormat& format : Table) {
    if (!extension.empty() && HasExtension(format, extension)) return format;
  }
  if (FileName.empty() || FileName == "-") {
    throw EUsage(MsgFormatWanted, Listed(&TFormat::Name));
  }
  throw EUsage(MsgNoExtension, FileName, Listed(&TFormat::Extensions));
}

}  // namespace norva::tool
