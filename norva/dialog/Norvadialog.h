/// Every setting of an export in one component, and the file that keeps them.
///
///   TNorvaDialog Dialog;
///   Dialog.DataSet = &Orders;
///   Dialog.FileName = "orders.html";
///   Dialog.ExportType = aeHTML;
///   Dialog.HTML.SetHTMLTemplate(htGray);
///   Dialog.SaveExportOptions("orders.ini");
///   Dialog.Execute();
///
/// A later run loads them back, and may change them before it exports:
///
///   Dialog.LoadExportOptions("orders.ini");
///   Dialog.FileName = "today.html";
///   Dialog.Execute();
///
/// No window is shown and no toolkit needed; a window over this component shows as pages what
/// ShowsPage says:
///
///   coFields    the exported fields                in every format
///   coFormats   the formats of values and fields   in every format
///   coColons    header and footer lines            not for aeXML, aeDBF
///   coCaptions  captions, widths, alignments       not for aeSQL
///   coOptions   the format's own options           not for aeDBF, aeDIFF, aeSylk
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <norva/core/NorvaBases.h>
#include <norva/formats/database/Norvadbf.h>
#include <norva/formats/database/Norvasql.h>
#include <norva/formats/document/Norvahtml.h>
#include <norva/formats/document/Norvalatex.h>
#include <norva/formats/document/Norvartf.h>
#include <norva/formats/document/Norvaxml.h>
#include <norva/formats/spreadsheet/Norvaxls.h>
#include <norva/formats/text/Norvaascii.h>
#include <norva/formats/text/Norvaclipboard.h>
#include <norva/platform/Component.h>
#include <norva/platform/Enums.h>
#include <norva/platform/Export.h>
#include <norva/platform/Sets.h>
#include <norva/platform/StringList.h>

namespace norva {

/// What an export makes. The numbers stand in options files.
enum TAllowedExport : std::uint8_t {
  aeXLS,
  aeWord,  ///< an RTF document, for hosts that call it after the program that opens it
  aeRTF,
  aeHTML,
  aeXML,
  aeDBF,
  aeTXT,
  aeCSV,
  aeDIFF,
  aeSylk,
  aeLaTeX,
  aeSQL,
  aeClipboard,
};
inline constexpr std::string_view TAllowedExportNames[] = {
    "aeXLS", "aeWord", "aeRTF",  "aeHTML",  "aeXML", "aeDBF",      "aeTXT",
    "aeCSV", "aeDIFF", "aeSylk", "aeLaTeX", "aeSQL", "aeClipboard"};
constexpr TEnumInfo EnumInfo(TAllowedExport) { return {"TAllowedExport", TAllowedExportNames}; }
using TAllowedExports = TSet<TAllowedExport>;
inline constexpr TAllowedExports AllExports = {aeXLS,   aeWord, aeRTF,      aeHTML, aeXML,
                                               aeDBF,   aeTXT,  aeCSV,      aeDIFF, aeSylk,
                                               aeLaTeX, aeSQL,  aeClipboard};

/// A page of settings.
enum TCommonOption : std::uint8_t { coFields, coFormats, coColons, coCaptions, coOptions };
inline constexpr std::string_view TCommonOptionNames[] = {"coFields", "coFormats", "coColons",
                                                          "coCaptions", "coOptions"};
constexpr TEnumInfo EnumInfo(TCommonOption) { return {"TCommonOption", TCommonOptionNames}; }
using TCommonOptions = TSet<TCommonOption>;
inline constexpr TCommonOptions AllPages = {coFields, coFormats, coColons, coCaptions, coOptions};

/// Called with each new exporter before it is handed out.
using TCreateExporterEvent = std::function<void(TObject& Sender, TNorva& Exporter)>;

/// The settings of an export in any of the formats.
class NORVA_EXPORT TNorvaDialog : public TComponent {
 public:
  /// `Owner` may be null; otherwise it destroys this component with itself.
  using TComponent::TComponent;
  std::string_view ClassName() const override { return "TNorvaDialog"; }
  /// What a format has of its own is published under the format's name: "HTMLTemplate",
  /// "XLSStripStyle", "SQLTableName"; that of TNorvaASCII as it is, "CSVComma".
  const TPropertyList& Properties() const override;

  /// The kind of export chosen.
  TAllowedExport ExportType = aeXLS;
  /// The kinds there are to choose from.
  TAllowedExports AllowedExports = AllExports;
  /// The pages to show, as far as the format has them.
  TCommonOptions CommonOptions = AllPages;

  /// The file for AutoLoadOptions and AutoSaveOptions; empty: none.
  std::string OptionsFileName;
  /// Execute begins with loading OptionsFileName, if there is such a file.
  bool AutoLoadOptions = false;
  /// Execute ends, unless it fails, with saving it.
  bool AutoSaveOptions = false;
  /// A window offers buttons for both: MsgSaveOptions and MsgLoadOptions.
  bool SaveLoadButtons = false;

  // What all exporters share; see TNorva and TNorvaText.
  TNorvaSource ExportSource = esDataSet;
  TReference<TDataSet> DataSet{*this};
  TReference<TDBGrid> DBGrid{*this};
  TReference<TListView> ListView{*this};
  TReference<TStringGrid> StringGrid{*this};
  TStringList ExportedFields;
  std::string Title;
  /// Empty: what the exporter has of its own, as is Footer.
  TStringList Header;
  TStringList Captions;
  bool AllowCaptions = true;
  TStringList Footer;
  TNorvaFormats Formats;
  TStringList UserFormats;
  TStringList ColumnsWidth;
  TStringList ColumnsAlign;
  TStringList ColumnsLength;
  bool CurrentRecordOnly = false;
  bool GoToFirstRecord = true;
  std::int32_t ExportRecCount = 0;
  std::int32_t SkipRecCount = 0;
  bool OnlyVisibleFields = false;
  bool AutoCalcStrType = false;
  std::string FileName;
  bool ShowFile = false;
  bool PrintFile = false;

  // What each format has besides. Of what they share with the dialog, and of events, the exporters
  // get nothing from here.
  TNorvaXLS XLS;
  TNorvaRTF RTF;  ///< of aeWord too
  TNorvaHTML HTML;
  TNorvaXML XML;
  TNorvaDBF DBF;
  TNorvaASCII ASCII;  ///< of aeTXT, aeCSV, aeDIFF and aeSylk; its ExportType does not count
  TNorvaLaTeX LaTeX;
  TNorvaSQL SQL;
  TNorvaClipboard Clipboard;

  /// For what has to be done with an exporter before it runs: set its events, keep it for Abort.
  TCreateExporterEvent OnCreateExporter;

  /// Exports in the chosen format. Throws what CreateExporter and the exporter's Execute throw, and
  /// for the options file what LoadExportOptions and SaveExportOptions do.
  void Execute();
  /// A new exporter of the chosen kind with these settings. Throws Exception when AllowedExports
  /// lacks that kind.
  std::unique_ptr<TNorva> CreateExporter();
  /// Takes the kind and all settings over from an exporter, or throws EConvertError when `Source`
  /// is none of this library's.
  void Assign(const TPersistent& Source) override;

  /// Whether the options have the page and the format has something on it.
  bool ShowsPage(TCommonOption Page) const;

  /// Writes the settings of the chosen format, and nothing else, into an INI file. What does not
  /// stand on a page that is shown is left out. Throws EFCreateError, EWriteError, EIniError for a
  /// text that such a file cannot hold and EConvertError for a width that is no number; an old file
  /// is as it was then.
  void SaveExportOptions(const std::string& OptionsFile);
  /// Reads them back, whatever pages are shown. A setting that the file does not hold stays as it
  /// is; only ExportType becomes aeXLS. Lists by field name gain entries, lists of lines become
  /// those of the file. Other sections and keys are passed over. Throws EFOpenError or EReadError,
  /// and EIniError naming section, key and value for a value that cannot be; the settings before it
  /// are changed then.
  void LoadExportOptions(const std::string& OptionsFile);

 protected:
  void Notification(TComponent& Component, TOperation Operation) override;
};

}  // namespace norva
