// The options file of an export: an INI file, its sections and keys in this order.
//
//   [GENERAL]
//   ExportType=1            TAllowedExport; enumerations stand by number
//   FileName=orders.rtf
//   ...
//   [FORMATS]
//   Integer=#,###,##0
//   ...
//   [USER_FORMATS]          by field name, as CAPTIONS, ALIGN and WIDTH
//   Price=0.00
//   [FIELDS]
//   field0=Id
//   field1=Price
//   [HEADER]
//   line0=Orders
//   [FOOTER]
//   [CAPTIONS]
//   Price=Price in EUR
//   [ALIGN]                 for RTF, HTML and text
//   Price=right
//   [WIDTH]                 for workbooks, RTF and text
//   Price=12
//   [RTF]                   what the format has besides: XLS, RTF, HTML, XML, SQL, TXT or CSV
//   DefFontName=Arial
//   ...
//
// A workbook's cell formats stand in sections of their own, XLS_FIELD_PRICE, XLS_OPTION_HEADER and
// XLS_STYLE_ITEM_1.
//
// Saving and loading go over the same lists of keys below, with a TOptionsSaver or a
// TOptionsLoader.

#include <cerrno>
#include <cstring>
#include <filesystem>

#include <norva/dialog/Norvadialog.h>
#include <norva/dialog/internal/OptionsStore.h>
#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/IniFile.h>
#include <norva/platform/Messages.h>
#include <norva/platform/Numbers.h>

namespace norva {
namespace {

using internal::Numbered;
using internal::TOptionsLoader;
using internal::TOptionsSaver;

// The keys of each section, behind ExportType.

template <class TFile>
void GeneralKeys(TFile& File, TNorvaDialog& Dialog) {
  File.Text("FileName", Dialog.FileName);
  File.Boolean("ShowFile", Dialog.ShowFile);
  File.Boolean("PrintFile", Dialog.PrintFile);
  File.Boolean("GoToFirstRecord", Dialog.GoToFirstRecord);
  File.Boolean("CurrentRecordOnly", Dialog.CurrentRecordOnly);
  File.Count("ExportRecCount", Dialog.ExportRecCount);
  File.Count("SkipRecCount", Dialog.SkipRecCount);
  File.Boolean("AllowCaptions", Dialog.AllowCaptions);
}

template <class TFile>
void FormatsKeys(TFile& File, TNorvaFormats& Formats) {
  using F = TNorvaFormats;
  struct TKey {
    const char* Name;
    const std::string& (F::*Get)() const;
    void (F::*Set)(const std::string&);
  };
  static constexpr TKey keys[] = {
      {"Integer",      &F::IntegerFormat,  &F::SetIntegerFormat },
      {"Float",        &F::FloatFormat,    &F::SetFloatFormat   },
      {"Date",         &F::DateFormat,     &F::SetDateFormat    },
      {"Time",         &F::TimeFormat,     &F::SetTimeFormat    },
      {"DateTime",     &F::DateTimeFormat, &F::SetDateTimeFormat},
      {"Currency",     &F::CurrencyFormat, &F::SetCurrencyFormat},
      {"BooleanTrue",  &F::BooleanTrue,    &F::SetBooleanTrue   },
      {"BooleanFalse", &F::BooleanFalse,   &F::SetBooleanFalse  },
  };
  File.Section("FORMATS");
  for (const TKey& key : keys) {
    File.Text(key.Name, (Formats.*key.Get)(),
              [&](const std::string& value) { (Formats.*key.Set)(value); });
  }
  File.Text("NullString", Formats.NullString);
}

template <class TFile>
void XLSKeys(TFile& File, TNorvaXLS& XLS) {
  File.Section("XLS");
  File.Text("PageHeader", XLS.Options.PageHeader);
  File.Text("PageFooter", XLS.Options.PageFooter);
  File.Text("SheetTitle", XLS.Options.SheetTitle(),
            [&](const std::string& value) { XLS.Options.SetSheetTitle(value); });
  File.Member("StripStyle", XLS.StripStyle);
}

template <class TFile>
void FontKeys(TFile& File, const std::string& Prefix, TFont& Font) {
  const auto key = [&Prefix](const char* name) { return Prefix + name; };
  File.Text(key("Name").c_str(), Font.Name);
  File.Element(key("Bold").c_str(), fsBold, Font.Style);
  File.Element(key("Italic").c_str(), fsItalic, Font.Style);
  File.Element(key("Underline").c_str(), fsUnderline, Font.Style);
  File.Element(key("StrikeOut").c_str(), fsStrikeOut, Font.Style);
  File.Integer(key("Size").c_str(), Font.Size);
  File.Color(key("Color").c_str(), Font.Color);
  File.Integer(key("Charset").c_str(), Font.Charset);
}

template <class TFile>
void RTFKeys(TFile& File, TRTFOptions& Options) {
  File.Section("RTF");
  FontKeys(File, "DefFont", Options.DefaultFont);
  FontKeys(File, "HeaderFont", Options.HeaderFont);
  File.Member("PageOrientation", Options.PageOrientation);
}

template <class TFile>
void HTMLKeys(TFile& File, TNorvaDialog& Dialog) {
  THTMLOptions& page = Dialog.HTML.HTMLOptions;
  TTableOptions& table = Dialog.HTML.TableOptions;
  std::int32_t maxRecords = Dialog.HTML.MaxRecords();
  File.Section("HTML");
  File.Text("Title", Dialog.Title);
  File.Member("CSS", Dialog.HTML.UsingCSS);
  File.Text("CSSFile", Dialog.HTML.CSSFileName);
  File.Count("FileRecCount", maxRecords);
  Dialog.HTML.SetMaxRecords(maxRecords);
  File.Boolean("GenerateIndex", Dialog.HTML.GenerateIndex);
  File.Text("FontName", page.TextFont.Name);
  File.Text("BackgroundFile", page.BackgroundFileName);
  File.Attributes("BodyAdvanced", page.AdvancedAttributes);
  File.Integer("CellPadding", table.CellPadding);
  File.Integer("CellSpacing", table.CellSpacing);
  File.Integer("BorderWidth", table.Border);
  File.Attributes("TableAdvanced", table.AdvancedAttributes);
  File.Color("BackgroundColor", page.BackgroundColor);
  File.Color("FontColor", page.TextFont.Color);
  File.Color("HeadBackgroundColor", table.HeadersRowBgColor);
  File.Color("HeadFontColor", table.HeadersRowFontColor);
  File.Color("OddRowBackgroundColor", table.OddRowBgColor);
  File.Color("EvenRowBackgroundColor", table.TableBgColor);
  File.Color("DataFontColor", table.TableFontColor);
  File.Color("LinkColor", page.LinkColor);
  File.Color("VLinkColor", page.VLinkColor);
  File.Color("ALinkColor", page.ALinkColor);
}

template <class TFile>
void XMLKeys(TFile& File, TXMLOptions& Options) {
  File.Section("XML");
  File.Boolean("Standalone", Options.StandAlone);
  File.Text("Encoding", Options.Encoding);
}

template <class TFile>
void SQLKeys(TFile& File, TNorvaSQL& SQL) {
  File.Section("SQL");
  File.Text("TableName", SQL.TableName);
  File.Boolean("CreateTable", SQL.CreateTable);
  File.Integer("CommitRecCount", SQL.CommitRecCount);
  File.Boolean("CommitAfterScript", SQL.CommitAfterScript);
  File.Text("CommitStatement", SQL.CommitStatement);
  File.Character("StatementTerm", SQL.StatementTerm);
}

template <class TFile>
void TXTKeys(TFile& File, TNorvaASCII& ASCII) {
  File.Section("TXT");
  File.Boolean("AutoCalcColWidth", ASCII.AutoCalcColWidth);
  File.Integer("Spacing", ASCII.TXTSpacing);
}

template <class TFile>
void CSVKeys(TFile& File, TNorvaASCII& ASCII) {
  File.Section("CSV");
  File.Boolean("QuoteStrings", ASCII.CSVQuoteStrings);
  File.Character("Comma", ASCII.CSVComma);
}

/// The section of the chosen format.
template <class TFile>
void FormatKeys(TFile& File, TNorvaDialog& Dialog) {
  switch (Dialog.ExportType) {
    case aeXLS:
      return XLSKeys(File, Dialog.XLS);
    case aeWord:
    case aeRTF:
      return RTFKeys(File, Dialog.RTF.Options);
    case aeHTML:
      return HTMLKeys(File, Dialog);
    case aeXML:
      return XMLKeys(File, Dialog.XML.Options);
    case aeSQL:
      return SQLKeys(File, Dialog.SQL);
    case aeTXT:
      return TXTKeys(File, Dialog.ASCII);
    case aeCSV:
      return CSVKeys(File, Dialog.ASCII);
    default:
      return;  // the others have none
  }
}

// The cell formats of a workbook.

constexpr const char* FieldPrefix = "XLS_FIELD_";
constexpr const char* StylePrefix = "XLS_STYLE_ITEM_";

/// Calls `Body` with the section and the format of each stage that an options file holds.
template <class TBody>
void ForEachStage(TXLSOptions& Options, TBody Body) {
  Body("XLS_OPTION_HEADER", Options.HeaderFormat);
  Body("XLS_OPTION_CAPTION", Options.CaptionsFormat);
  Body("XLS_OPTION_AGGREGATE", Options.AggregateFormat);
  Body("XLS_OPTION_FOOTER", Options.FooterFormat);
}

/// The one of the two style lists that is in use.
TxlsFormats& StripStyles(TNorvaXLS& XLS) {
  return XLS.StripStyle == ssCol ? XLS.ColStyles : XLS.RowStyles;
}

void SaveCellFormats(TIniFile& File, TNorvaXLS& XLS) {
  for (int i = 0; i < XLS.FieldFormats.Count(); ++i) {
    const TxlsFieldFormat& format = XLS.FieldFormats[i];
    format.SaveToIniFile(File, FieldPrefix + UpperCase(format.FieldName));
  }
  ForEachStage(XLS.Options, [&File](const char* section, const TxlsFormat& format) {
    format.SaveToIniFile(File, section);
  });
  const TxlsFormats& styles = StripStyles(XLS);
  for (int i = 0; i < styles.Count(); ++i)
    styles[i].SaveToIniFile(File, Numbered(StylePrefix, i + 1));
}

void LoadCellFormats(const TIniFile& File, TNorvaXLS& XLS) {
  for (const std::string& section : File.ReadSections()) {
    if (!UpperCase(section).starts_with(FieldPrefix)) continue;
    const std::string name = section.substr(std::strlen(FieldPrefix));
    const int found = XLS.FieldFormats.IndexByName(name);
    TxlsFieldFormat& format = found < 0 ? XLS.FieldFormats.Add() : XLS.FieldFormats[found];
    format.LoadFromIniFile(File, section);
    if (found < 0) format.FieldName = name;
  }
  ForEachStage(XLS.Options, [&File](const char* section, TxlsFormat& format) {
    if (File.SectionExists(section)) format.LoadFromIniFile(File, section);
  });
  TxlsFormats& styles = StripStyles(XLS);
  int count = 0;
  for (; File.SectionExists(Numbered(StylePrefix, count + 1)); ++count) {
    TxlsFormat& format = count < styles.Count() ? styles[count] : styles.Add();
    format.LoadFromIniFile(File, Numbered(StylePrefix, count + 1));
  }
  while (count > 0 && styles.Count() > count) styles.Delete(count);
}

// The whole file.

bool HasAlign(TAllowedExport Kind) {
  return Kind == aeWord || Kind == aeRTF || Kind == aeHTML || Kind == aeTXT;
}

bool HasWidth(TAllowedExport Kind) {
  return Kind == aeXLS || Kind == aeWord || Kind == aeRTF || Kind == aeTXT;
}

void SaveOptions(TIniFile& File, TNorvaDialog& Dialog) {
  TOptionsSaver save(File);
  save.Section("GENERAL");
  save.Member("ExportType", Dialog.ExportType);
  GeneralKeys(save, Dialog);
  if (Dialog.ShowsPage(coFormats)) {
    FormatsKeys(save, Dialog.Formats);
    save.Entries("USER_FORMATS", Dialog.UserFormats);
  }
  save.Lines("FIELDS", "field", Dialog.ExportedFields);
  if (Dialog.ShowsPage(coColons)) {
    save.Lines("HEADER", "line", Dialog.Header);
    save.Lines("FOOTER", "line", Dialog.Footer);
  }
  if (Dialog.ShowsPage(coCaptions)) {
    save.Entries("CAPTIONS", Dialog.Captions);
    if (HasAlign(Dialog.ExportType)) save.Entries("ALIGN", Dialog.ColumnsAlign);
    if (HasWidth(Dialog.ExportType)) save.Integers("WIDTH", Dialog.ColumnsWidth);
  }
  FormatKeys(save, Dialog);
  if (Dialog.ExportType == aeXLS) SaveCellFormats(File, Dialog.XLS);
}

TAllowedExport LoadExportType(const TOptionsLoader& Load, const TAllowedExports& Allowed) {
  if (!Load.Has("ExportType")) return aeXLS;
  std::string numbers;
  for (int i = aeXLS; i <= aeClipboard; ++i) {
    const auto kind = static_cast<TAllowedExport>(i);
    if (!Allowed.Contains(kind)) continue;
    if (StrToIntDef(Load.Read("ExportType"), -1) == i) return kind;
    numbers += (numbers.empty() ? "" : ", ") + std::to_string(i);
  }
  Load.Fail("ExportType", "one of " + numbers);
}

void LoadOptions(const TIniFile& File, TNorvaDialog& Dialog) {
  TOptionsLoader load(File);
  load.Section("GENERAL");
  Dialog.ExportType = LoadExportType(load, Dialog.AllowedExports);
  GeneralKeys(load, Dialog);
  FormatsKeys(load, Dialog.Formats);
  load.Entries("USER_FORMATS", Dialog.UserFormats);
  load.Lines("FIELDS", "field", Dialog.ExportedFields);
  load.Lines("HEADER", "line", Dialog.Header);
  load.Lines("FOOTER", "line", Dialog.Footer);
  load.Entries("CAPTIONS", Dialog.Captions);
  load.Entries("ALIGN", Dialog.ColumnsAlign);
  load.Integers("WIDTH", Dialog.ColumnsWidth);
  FormatKeys(load, Dialog);
  if (Dialog.ExportType == aeXLS) LoadCellFormats(File, Dialog.XLS);
  // Colours of the file are no template's, even if one is set: setting it again brings its own
  // back.
  if (Dialog.ExportType == aeHTML && load.ColorsChanged()) Dialog.HTML.SetHTMLTemplate(htCustom);
}

}  // namespace

void TNorvaDialog::SaveExportOptions(const std::string& OptionsFile) {
  TIniFile file(OptionsFile);
  for (const std::string& section : file.ReadSections()) file.EraseSection(section);
  SaveOptions(file, *this);
  file.UpdateFile();
}

void TNorvaDialog::LoadExportOptions(const std::string& OptionsFile) {
  // An INI file need not exist, but who asks for this one means it.
  if (!std::filesystem::exists(OptionsFile)) {
    throw EFOpenError(MsgCannotOpen, OptionsFile, std::strerror(ENOENT));
  }
  LoadOptions(TIniFile(OptionsFile), *this);
}

}  // namespace norva
