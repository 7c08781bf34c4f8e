#include <tools/norva/ListCommands.h>

#include <memory>
#include <vector>

#include <norva/core/Norvacommon.h>
#include <norva/formats/text/Norvaascii.h>
#include <norva/platform/CodePages.h>
#include <norva/platform/Locale.h>
#include <norva/platform/Property.h>
#include <tools/norva/Formats.h>
#include <tools/norva/Nearest.h>
#include <tools/norva/OptionsFile.h>
#include <tools/norva/Settings.h>
#include <tools/norva/Source.h>
#include <tools/norva/Terminal.h>
#include <tools/norva/TextTable.h>

namespace norva::tool {
namespace {

// In UTF-8 like all texts of the tool; Print turns it into what the terminal shows.
void UseUtf8() { SetActiveCodePage(CodePageUtf8); }

std::string AlignText(TNorvaColAlign Align) {
  return Align == ecaRight ? "right" : Align == ecaCenter ? "center" : "left";
}

/// A text as a cell; quotes show where it ends, and that it is there at all.
std::string Quoted(const std::string& Text) { return '"' + Text + '"'; }

/// What an export starts from: the value of a new exporter, which may come from the locale, from
/// another property or from the tool.
std::string DefaultOf(const TPropertyPath& Path) {
  const TProperty& property = *Path.Property;
  if (property.Kind != pkValue) return {};
  const std::string text = property.Get(*Path.Object);
  return property.TypeName == "String" ? Quoted(text) : text;
}

std::string TypeOf(const TProperty& Property) {
  if (Property.Members.empty()) return Property.TypeName;
  const std::vector<std::string> members(Property.Members.begin(), Property.Members.end());
  return Property.TypeName + " (" + Joined(members) + ")";
}

}  // namespace

void ColumnsCommand(const TSourceArguments& Arguments) {
  UseUtf8();
  TSource source(Arguments);
  // Any exporter: the column list is the base's own.
  TNorvaASCII exporter;
  exporter.DataSet = &source.DataSet();
  TStringList exportable;
  for (const std::string& name : source.FieldNames(false)) exportable.Add(name);
  TStringList available, exported;
  GetNorvaColumns(esDataSet, exporter.DataSet, nullptr, nullptr, nullptr, exportable, available,
                  exported);
  // Named, all columns are there; unnamed, the first blob would end the list.
  for (int i = 0; i < source.DataSet().FieldCount(); ++i) {
    exporter.ExportedFields.Add(source.DataSet().Fields(i).FieldName);
  }
  exporter.Columns.Fill();

  TTextTable table(
      {"no", "name", "type", "caption", "width", "align", "format", "SQL type", "length", "state"});
  for (int i = 0; i < exporter.Columns.Count(); ++i) {
    const TNorvaColumn& column = exporter.Columns[i];
    const bool isExported = exported.IndexOf(column.Name) >= 0;
    table.Add({std::to_string(column.Number), column.Name, NorvaColTypeAsString(column.ColType),
               column.Caption, std::to_string(column.Width), AlignText(column.Align),
               column.Format(), column.SQLType, std::to_string(column.Length),
               isExported ? "exported" : "available"});
  }
  Print(table.Text());
}

void TablesCommand(const std::string& FileName) {
  UseUtf8();
  TDatabase database(FileName);
  TTextTable table({"name", "kind"});
  for (const TSqliteTable& item : database.Get().TableNames()) {
    table.Add({item.Name, item.Kind == stkView ? "view" : "table"});
  }
  Print(table.Text());
}

void FormatsCommand() {
  TTextTable table({"format", "extensions", "description"});
  for (const TFormat& format : Formats()) {
    table.Add({std::string(format.Name), std::string(format.Extensions),
               std::string(format.Description)});
  }
  Print(table.Text());
}

void PropertiesCommand(const std::string& FormatName) {
  const TFormat& format = FormatByName(FormatName);
  UseUtf8();
  FormatSettings();  // the locale's texts, in UTF-8 from here on
  // An exporter may have the page as a property, with what `export` would choose as its default.
  SetActiveCodePage(format.CodePage);
  const std::unique_ptr<TNorva> exporter = MakeDialog(format, {})->CreateExporter();
  UseUtf8();
  TTextTable table({"property", "type", "default"});
  for (const std::string& name : PropertyNames(exporter->Properties(), *exporter, true)) {
    const TPropertyPath path = FindProperty(*exporter, name);
    table.Add({name, TypeOf(*path.Property), DefaultOf(path)});
  }
  Print(table.Text());
}

}  // namespace norva::tool
