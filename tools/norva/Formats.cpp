#include <tools/norva/Formats.h>

#include <algorithm>
#include <vector>

#include <norva/formats/database/Norvadbf.h>
#include <norva/formats/database/Norvasql.h>
#include <norva/formats/document/Norvahtml.h>
#include <norva/formats/document/Norvalatex.h>
#include <norva/formats/document/Norvartf.h>
#include <norva/formats/document/Norvaxml.h>
#include <norva/formats/spreadsheet/Norvaxls.h>
#include <norva/formats/text/Norvaascii.h>
#include <norva/formats/text/Norvaclipboard.h>
#include <norva/platform/CodePages.h>
#include <norva/platform/FileNames.h>
#include <tools/norva/Errors.h>
#include <tools/norva/Messages.h>
#include <tools/norva/Nearest.h>
#include <tools/norva/Report.h>

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

/// With what the readers of tables want: plain numbers, and blanks for nulls.
std::unique_ptr<TNorva> MakeDBF() {
  auto exporter = std::make_unique<TNorvaDBF>();
  exporter->Formats.SetIntegerFormat("0");
  exporter->Formats.SetFloatFormat("0.0000");
  exporter->Formats.SetCurrencyFormat("0.0000");
  exporter->Formats.NullString.clear();
  return exporter;
}

/// The values that a table could not hold.
std::vector<std::string> RemarksOnDBF(const TNorva& Exporter) {
  const auto& exporter = static_cast<const TNorvaDBF&>(Exporter);
  std::vector<std::string> lines;
  const auto say = [&lines](std::int64_t count, const char* one, const char* several) {
    if (count > 0) lines.push_back(Format(count == 1 ? one : several, Grouped(count)));
  };
  say(exporter.Overflows(), MsgOverflow, MsgOverflows);
  say(exporter.CutTexts(), MsgCutText, MsgCutTexts);
  return lines;
}

/// What spreadsheet programs take as the name of a sheet.
void CheckSheetTitle(const TNorva& Exporter) {
  constexpr std::size_t most = 31;  // UTF-16 units
  const std::string& title = static_cast<const TNorvaXLS&>(Exporter).Options.SheetTitle();
  if (ToUtf16(title).size() > most || title.find_first_of("/\\:*?[]") != std::string::npos) {
    throw EUsage(MsgSheetTitle, ToUtf8(title), most);
  }
}

/// Parts and an external style sheet stand beside the page, and an index is to link to the parts
/// that there are.
void CheckPages(const TNorva& Exporter) {
  const auto& pages = static_cast<const TNorvaHTML&>(Exporter);
  const bool hasParts = pages.MaxRecords() > 0;
  if (pages.FileName.empty() && (hasParts || pages.UsingCSS == usExternal)) {
    throw EUsage(MsgSeveralFiles);
  }
  const std::string stem = ChangeFileExt(ExtractFileName(pages.FileName), "");
  if (hasParts && pages.GenerateIndex && stem.find('.') != std::string::npos) {
    throw EUsage(MsgIndexName, pages.FileName);
  }
}

/// The document names the page that the text is in.
std::unique_ptr<TNorva> MakeLaTeX() {
  auto exporter = std::make_unique<TNorvaLaTeX>();
  exporter->Options.SetCodePage(ActiveCodePage());
  return exporter;
}

/// The pages that the packages of TeX Live have an input encoding for.
constexpr int InputEncodings[] = {437, 850, 866, 1250, 1251, 1252, 1255, 1256, 1257};

void CheckEncoding(const TNorva& Exporter) {
  const TLaTeXOptions& options = static_cast<const TNorvaLaTeX&>(Exporter).Options;
  if (options.LaTeXVersion == LaTeX209) return;  // names none
  if (std::ranges::find(InputEncodings, options.CodePage()) != std::end(InputEncodings)) return;
  std::vector<std::string> known;
  for (const int page : InputEncodings) known.push_back(std::to_string(page));
  throw EUsage(MsgInputEncoding, options.CodePage(), Joined(known));
}

// One row a format, however wide.
// clang-format off
constexpr TFormat Table[] = {
    {"txt",       ".txt",       "Fixed-width text",        CodePageUtf8, true,  MakeASCII<etTXT>,      nullptr,         nullptr     },
    {"csv",       ".csv",       "Comma-separated values",  CodePageUtf8, true,  MakeASCII<etCSV>,      nullptr,         nullptr     },
    {"dif",       ".dif",       "Data Interchange Format", CodePageUtf8, true,  MakeASCII<etDIF>,      nullptr,         nullptr     },
    {"sylk",      ".slk",       "Symbolic Link format",    CodePageUtf8, true,  MakeASCII<etSYLK>,     nullptr,         nullptr     },
    {"xls",       ".xls",       "Excel 97 workbook",       CodePageUtf8, false, Make<TNorvaXLS>,       CheckSheetTitle, nullptr     },
    {"html",      ".html .htm", "Web pages",               CodePageUtf8, false, Make<TNorvaHTML>,      CheckPages,      nullptr     },
    {"xml",       ".xml",       "XML data packet",         CodePageUtf8, true,  Make<TNorvaXML>,       nullptr,         nullptr     },
    {"rtf",       ".rtf",       "RTF document",            1252,         true,  Make<TNorvaRTF>,       nullptr,         nullptr     },
    {"latex",     ".tex",       "LaTeX document",          1252,         true,  MakeLaTeX,             CheckEncoding,   nullptr     },
    {"dbf",       ".dbf",       "dBASE III table",         1252,         false, MakeDBF,               nullptr,         RemarksOnDBF},
    {"sql",       ".sql",       "SQL script",              CodePageUtf8, true,  Make<TNorvaSQL>,       nullptr,         nullptr     },
    {"clipboard", "",           "Text on the clipboard",   CodePageUtf8, true,  Make<TNorvaClipboard>, nullptr,         nullptr     },
};
// clang-format on

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
