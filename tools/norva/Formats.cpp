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

/// With what the readers of tables want: plain numbers, and blanks for nulls.
void PrepareDBF(TNorvaDialog& Dialog) {
  Dialog.Formats.SetIntegerFormat("0");
  Dialog.Formats.SetFloatFormat("0.0000");
  Dialog.Formats.SetCurrencyFormat("0.0000");
  Dialog.Formats.NullString.clear();
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
  const std::string& sheet = pages.CSSFileName;
  const bool isBeside = sheet == ExtractFileName(sheet) && sheet != ExtractFileName(pages.FileName);
  if (pages.UsingCSS == usExternal && !sheet.empty() && !isBeside) {
    throw EUsage(MsgStyleSheet, ToUtf8(sheet));
  }
}

/// The document names the page that the text is in.
void PrepareLaTeX(TNorvaDialog& Dialog) { Dialog.LaTeX.Options.SetCodePage(ActiveCodePage()); }

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
    {aeTXT,       "txt",       ".txt",       "Fixed-width text",        CodePageUtf8, true,  nullptr,      nullptr,         nullptr     },
    {aeCSV,       "csv",       ".csv",       "Comma-separated values",  CodePageUtf8, true,  nullptr,      nullptr,         nullptr     },
    {aeDIFF,      "dif",       ".dif",       "Data Interchange Format", CodePageUtf8, true,  nullptr,      nullptr,         nullptr     },
    {aeSylk,      "sylk",      ".slk",       "Symbolic Link format",    CodePageUtf8, true,  nullptr,      nullptr,         nullptr     },
    {aeXLS,       "xls",       ".xls",       "Excel 97 workbook",       CodePageUtf8, false, nullptr,      CheckSheetTitle, nullptr     },
    {aeHTML,      "html",      ".html .htm", "Web pages",               CodePageUtf8, false, nullptr,      CheckPages,      nullptr     },
    {aeXML,       "xml",       ".xml",       "XML data packet",         CodePageUtf8, true,  nullptr,      nullptr,         nullptr     },
    {aeRTF,       "rtf",       ".rtf",       "RTF document",            1252,         true,  nullptr,      nullptr,         nullptr     },
    {aeLaTeX,     "latex",     ".tex",       "LaTeX document",          1252,         true,  PrepareLaTeX, CheckEncoding,   nullptr     },
    {aeDBF,       "dbf",       ".dbf",       "dBASE III table",         1252,         false, PrepareDBF,   nullptr,         RemarksOnDBF},
    {aeSQL,       "sql",       ".sql",       "SQL script",              CodePageUtf8, true,  nullptr,      nullptr,         nullptr     },
    {aeClipboard, "clipboard", "",           "Text on the clipboard",   CodePageUtf8, true,  nullptr,      nullptr,         nullptr     },
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

const TFormat& FormatByKind(TAllowedExport Kind) {
  if (Kind == aeWord) Kind = aeRTF;
  return *std::ranges::find(Table, Kind, &TFormat::Kind);
}

const TFormat* FindByExtension(const std::string& FileName) {
  const std::string extension = ExtractFileExt(FileName);
  for (const TFormat& format : Table) {
    if (!extension.empty() && HasExtension(format, extension)) return &format;
  }
  return nullptr;
}

const TFormat& FormatByExtension(const std::string& FileName) {
  if (const TFormat* const format = FindByExtension(FileName)) return *format;
  if (FileName.empty() || FileName == "-") {
    throw EUsage(MsgFormatWanted, Listed(&TFormat::Name));
  }
  throw EUsage(MsgNoExtension, FileName, Listed(&TFormat::Extensions));
}

}  // namespace norva::tool
