#include <norva/dialog/Norvadialog.h>

#include <filesystem>
#include <system_error>
#include <type_traits>

#include <norva/core/Norvaconsts.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Property.h>

namespace norva {
namespace {

/// Calls `Body` with the dialog's exporter of a kind.
template <class TDialog, class TBody>
decltype(auto) WithExporter(TDialog& Dialog, TAllowedExport Kind, TBody Body) {
  switch (Kind) {
    case aeXLS:
      return Body(Dialog.XLS);
    case aeWord:
    case aeRTF:
      return Body(Dialog.RTF);
    case aeHTML:
      return Body(Dialog.HTML);
    case aeXML:
      return Body(Dialog.XML);
    case aeDBF:
      return Body(Dialog.DBF);
    case aeTXT:
    case aeCSV:
    case aeDIFF:
    case aeSylk:
      return Body(Dialog.ASCII);
    case aeLaTeX:
      return Body(Dialog.LaTeX);
    case aeSQL:
      return Body(Dialog.SQL);
    case aeClipboard:
      return Body(Dialog.Clipboard);
  }
  throw Exception(MsgExportNotAllowed, static_cast<int>(Kind));
}

/// aeTXT to aeSylk are in the order of etTXT to etSYLK.
bool IsASCII(TAllowedExport Kind) { return Kind >= aeTXT && Kind <= aeSylk; }

/// The properties by which all exporters are set.
const TPropertyList& SharedProperties() {
  using D = TNorvaDialog;
  static const TPropertyList list{
      Published("ExportSource", &D::ExportSource, esDataSet),
      PublishedReference("DataSet", "TDataSet", &D::DataSet),
      PublishedReference("DBGrid", "TDBGrid", &D::DBGrid),
      PublishedReference("ListView", "TListView", &D::ListView),
      PublishedReference("StringGrid", "TStringGrid", &D::StringGrid),
      PublishedList("ExportedFields", &D::ExportedFields),
      Published("Title", &D::Title, ""),
      PublishedList("Header", &D::Header),
      PublishedList("Captions", &D::Captions),
      Published("AllowCaptions", &D::AllowCaptions, true),
      PublishedList("Footer", &D::Footer),
      PublishedGroup("Formats", &D::Formats),
      PublishedList("UserFormats", &D::UserFormats),
      PublishedList("ColumnsWidth", &D::ColumnsWidth),
      PublishedList("ColumnsAlign", &D::ColumnsAlign),
      PublishedList("ColumnsLength", &D::ColumnsLength),
      Published("CurrentRecordOnly", &D::CurrentRecordOnly, false),
      Published("GoToFirstRecord", &D::GoToFirstRecord, true),
      Published("ExportRecCount", &D::ExportRecCount, 0),
      Published("SkipRecCount", &D::SkipRecCount, 0),
      Published("OnlyVisibleFields", &D::OnlyVisibleFields, false),
      Published("AutoCalcStrType", &D::AutoCalcStrType, false),
      Published("FileName", &D::FileName, ""),
      Published("ShowFile", &D::ShowFile, false),
      Published("PrintFile", &D::PrintFile, false),
  };
  return list;
}

/// The same, copied from the dialog to an exporter or back, but for what depends on the format.
template <class TFrom, class TTo>
void CopyShared(const TFrom& From, TTo& To) {
  To.ExportSource = From.ExportSource;
  To.DataSet = From.DataSet.Get();
  To.DBGrid = From.DBGrid.Get();
  To.ListView = From.ListView.Get();
  To.StringGrid = From.StringGrid.Get();
  To.ExportedFields = From.ExportedFields;
  To.Title = From.Title;
  To.Captions = From.Captions;
  To.AllowCaptions = From.AllowCaptions;
  To.Formats = From.Formats;
  To.Formats.NullString = From.Formats.NullString;  // not part of an assignment
  To.UserFormats = From.UserFormats;
  To.ColumnsWidth = From.ColumnsWidth;
  To.ColumnsAlign = From.ColumnsAlign;
  To.ColumnsLength = From.ColumnsLength;
  To.CurrentRecordOnly = From.CurrentRecordOnly;
  To.GoToFirstRecord = From.GoToFirstRecord;
  To.ExportRecCount = From.ExportRecCount;
  To.SkipRecCount = From.SkipRecCount;
  To.OnlyVisibleFields = From.OnlyVisibleFields;
  To.AutoCalcStrType = From.AutoCalcStrType;
}

template <class TFrom, class TTo>
void CopyFile(const TFrom& From, TTo& To) {
  To.FileName = From.FileName;
  To.ShowFile = From.ShowFile;
  To.PrintFile = From.PrintFile;
}

bool IsOwn(const TProperty& Property) {
  const bool isVersion = Property.Name == "_Version";
  return Property.Kind != pkEvent && !isVersion && !SharedProperties().Find(Property.Name);
}

/// Copies what a format has besides to an exporter from another of its class. Values come first:
/// a template sets colours that stand in the groups behind it.
void CopyOwn(TNorva& From, TNorva& To) {
  for (const TProperty& property : To.Properties()) {
    if (IsOwn(property) && property.Kind == pkValue) property.Set(To, property.Get(From));
  }
  for (const TProperty& property : To.Properties()) {
    if (IsOwn(property) && property.Kind != pkValue) {
      property.Object(To).Assign(property.Object(From));
    }
  }
}

template <class TExporter>
std::unique_ptr<TNorva> NewExporter(const TExporter&) {
  return std::make_unique<TExporter>();
}

/// Adds what the exporter `Member` has besides to the published properties.
template <class TExporter>
void PublishOwn(TPropertyList& List, const std::string& Prefix, TExporter TNorvaDialog::*Member) {
  for (const TProperty& own : TExporter().Properties()) {
    TProperty property = own;
    if (!own.Name.starts_with(Prefix)) property.Name = Prefix + own.Name;
    if (!IsOwn(own) || List.Find(property.Name)) continue;
    property.Get = [get = own.Get, Member](const TPersistent& dialog) {
      return get(static_cast<const TNorvaDialog&>(dialog).*Member);
    };
    property.Set = [set = own.Set, Member](TPersistent& dialog, std::string_view text) {
      set(static_cast<TNorvaDialog&>(dialog).*Member, text);
    };
    property.Object = [object = own.Object, Member](TPersistent& dialog) -> TPersistent& {
      return object(static_cast<TNorvaDialog&>(dialog).*Member);
    };
    List = TPropertyList(List, {property});
  }
}

TPropertyList AllProperties() {
  using D = TNorvaDialog;
  TPropertyList list(SharedProperties(),
                     {
                         Published("ExportType", &D::ExportType, aeXLS),
                         Published("AllowedExports", &D::AllowedExports, AllExports),
                         Published("CommonOptions", &D::CommonOptions, AllPages),
                         Published("OptionsFileName", &D::OptionsFileName, ""),
                         Published("AutoLoadOptions", &D::AutoLoadOptions, false),
                         Published("AutoSaveOptions", &D::AutoSaveOptions, false),
                         Published("SaveLoadButtons", &D::SaveLoadButtons, false),
                         PublishedEvent("OnCreateExporter", "TCreateExporterEvent"),
                     });
  PublishOwn(list, "XLS", &D::XLS);
  PublishOwn(list, "RTF", &D::RTF);
  PublishOwn(list, "HTML", &D::HTML);
  PublishOwn(list, "XML", &D::XML);
  PublishOwn(list, "", &D::ASCII);
  PublishOwn(list, "LaTeX", &D::LaTeX);
  PublishOwn(list, "SQL", &D::SQL);
  PublishOwn(list, "Clipboard", &D::Clipboard);
  return list;
}

}  // namespace

const TPropertyList& TNorvaDialog::Properties() const {
  static const TPropertyList list = AllProperties();
  return list;
}

void TNorvaDialog::Execute() {
  std::error_code none;  // a file that cannot be looked at is no reason not to export
  if (AutoLoadOptions && std::filesystem::exists(OptionsFileName, none)) {
    LoadExportOptions(OptionsFileName);
  }
  CreateExporter()->Execute();
  if (AutoSaveOptions && !OptionsFileName.empty()) SaveExportOptions(OptionsFileName);
}

std::unique_ptr<TNorva> TNorvaDialog::CreateExporter() {
  if (!AllowedExports.Contains(ExportType)) {
    throw Exception(MsgExportNotAllowed, EnumToStr(ExportType));
  }
  const auto create = [](auto& own) {
    std::unique_ptr<TNorva> exporter = NewExporter(own);
    CopyOwn(own, *exporter);
    return exporter;
  };
  std::unique_ptr<TNorva> exporter = WithExporter(*this, ExportType, create);
  if (IsASCII(ExportType)) {
    auto& text = static_cast<TNorvaASCII&>(*exporter);
    text.SetExportType(static_cast<TNorvaASCIIType>(ExportType - aeTXT));
    text.AutoCalcColWidth = ASCII.AutoCalcColWidth;  // a change of type sets it
  }
  CopyShared(*this, *exporter);
  if (!Header.Empty()) exporter->Header = Header;
  if (!Footer.Empty()) exporter->Footer = Footer;
  if (auto* const toFile = dynamic_cast<TNorvaText*>(exporter.get())) CopyFile(*this, *toFile);
  if (OnCreateExporter) OnCreateExporter(*this, *exporter);
  return exporter;
}

void TNorvaDialog::Assign(const TPersistent& Source) {
  const auto* const given = dynamic_cast<const TNorva*>(&Source);
  const auto isOfKind = [&](int kind) {
    return WithExporter(*this, static_cast<TAllowedExport>(kind), [given](const auto& own) {
      return dynamic_cast<const std::decay_t<decltype(own)>*>(given) != nullptr;
    });
  };
  // The chosen kind is kept where it fits, so that aeWord does not become aeRTF.
  int kind = given && isOfKind(ExportType) ? ExportType : aeClipboard;
  while (kind >= 0 && !isOfKind(kind)) --kind;
  if (kind < 0) return TComponent::Assign(Source);
  ExportType = static_cast<TAllowedExport>(kind);

  TNorva& own =
      WithExporter(*this, ExportType, [](TNorva& exporter) -> TNorva& { return exporter; });
  const bool calculates = ASCII.AutoCalcColWidth;
  CopyOwn(const_cast<TNorva&>(*given), own);  // which is only read
  if (IsASCII(ExportType)) {
    ExportType = static_cast<TAllowedExport>(int{aeTXT} + ASCII.ExportType());
    if (ExportType != aeTXT)
      ASCII.AutoCalcColWidth = calculates;  // off in a CSV export that has run
  }
  CopyShared(*given, *this);
  const std::unique_ptr<TNorva> fresh =
      WithExporter(*this, ExportType, [](const auto& exporter) { return NewExporter(exporter); });
  const auto givenLines = [](const TStringList& lines, const TStringList& usual) {
    return lines.Text() == usual.Text() ? TStringList() : lines;
  };
  Header = givenLines(given->Header, fresh->Header);
  Footer = givenLines(given->Footer, fresh->Footer);
  if (const auto* const toFile = dynamic_cast<const TNorvaText*>(given)) CopyFile(*toFile, *this);
}

bool TNorvaDialog::ShowsPage(TCommonOption Page) const {
  if (!CommonOptions.Contains(Page)) return false;
  switch (Page) {
    case coColons:
      return ExportType != aeXML && ExportType != aeDBF;
    case coCaptions:
      return ExportType != aeSQL;
    case coOptions:
      return ExportType != aeDBF && ExportType != aeDIFF && ExportType != aeSylk;
    default:
      return true;
  }
}

void TNorvaDialog::Notification(TComponent& Component, TOperation Operation) {
  DataSet.Notify(Component, Operation);
  DBGrid.Notify(Component, Operation);
  ListView.Notify(Component, Operation);
  StringGrid.Notify(Component, Operation);
  TComponent::Notification(Component, Operation);
}

}  // namespace norva
