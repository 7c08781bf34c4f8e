#include <tools/norva/Settings.h>

#include <charconv>
#include <cstdint>
#include <limits>

#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Locale.h>
#include <tools/norva/Errors.h>
#include <tools/norva/Messages.h>
#include <tools/norva/Nearest.h>

namespace norva::tool {
namespace {

constexpr int KnownPages[] = {437,  850,  866,  1250, 1251, 1252,        1253,
                              1254, 1255, 1256, 1257, 1258, CodePageUtf8};

/// An argument `name=value`.
struct TEntry {
  std::string Name, Value;
};

TEntry EntryOf(const char* Option, const std::string& Text, const char* Value) {
  const std::size_t equals = Text.find('=');
  if (equals == std::string::npos || equals == 0) {
    throw EUsage(MsgNotANameValue, Option, Text, Value);
  }
  return {Text.substr(0, equals), Text.substr(equals + 1)};
}

/// A text of the arguments in the active code page.
std::string InPage(const char* Option, const std::string& Text) {
  try {
    return FromUtf8(Text);
  } catch (const EConvertError& error) {
    throw EUsage(MsgArgumentText, Option, Text, error.what());
  }
}

std::int32_t CountOf(const char* Option, std::string_view Text) {
  std::int32_t count = -1;
  const char* const end = Text.data() + Text.size();
  const auto [stop, error] = std::from_chars(Text.data(), end, count);
  if (error != std::errc() || stop != end || count < 0) {
    throw EUsage(MsgNotACount, Option, Text, std::numeric_limits<std::int32_t>::max());
  }
  return count;
}

void CheckWidth(const char* Option, const TEntry& Entry) { CountOf(Option, Entry.Value); }

void CheckAlign(const char*, const TEntry& Entry) {
  for (const char* const known : {"left", "center", "right"}) {
    if (Entry.Value == known) return;
  }
  throw EUsage(MsgNotAnAlignment, Entry.Value);
}

/// An option that fills one of the per-column lists.
struct TColumnOption {
  const char* Name;
  const char* Value;  // how a message calls it
  std::vector<std::string> TExportArguments::*Texts;
  TStringList TNorva::*List;
  void (*Check)(const char* Option, const TEntry& Entry);
};

constexpr TColumnOption ColumnOptions[] = {
    {"--caption",     "TEXT",              &TExportArguments::Captions,    &TNorva::Captions,      nullptr   },
    {"--user-format", "PICTURE",           &TExportArguments::UserFormats, &TNorva::UserFormats,   nullptr   },
    {"--width",       "N",                 &TExportArguments::Widths,      &TNorva::ColumnsWidth,  CheckWidth},
    {"--align",       "left|center|right", &TExportArguments::Aligns,      &TNorva::ColumnsAlign,  CheckAlign},
    {"--length",      "N",                 &TExportArguments::Lengths,     &TNorva::ColumnsLength, CheckWidth},
};

void ApplyColumnOption(const TColumnOption& Option, const TExportArguments& Arguments,
                       TNorva& Exporter) {
  TStringList& list = Exporter.*Option.List;
  for (const std::string& text : Arguments.*Option.Texts) {
    const TEntry entry = EntryOf(Option.Name, text, Option.Value);
    if (Option.Check) Option.Check(Option.Name, entry);
    // The first entry of a name counts, but who gives an option again means the last one.
    const std::string name = InPage(Option.Name, entry.Name);
    if (const int old = list.IndexOfName(name); old >= 0) list.Delete(old);
    list.Add(name + "=" + InPage(Option.Name, entry.Value));
  }
}

/// Given lines take the place of those that the exporter has of its own.
void ApplyLines(const char* Option, const std::vector<std::string>& Lines, TStringList& List) {
  if (Lines.empty()) return;
  List.Clear();
  for (const std::string& line : Lines) List.Add(InPage(Option, line));
}

// --set.

/// What `--set` reaches in every format, whether or not its exporter publishes it.
const TPropertyList& CommonProperties() {
  static const TPropertyList list{
      Published("Title", &TNorva::Title, ""),
      Published("AllowCaptions", &TNorva::AllowCaptions, true),
      PublishedGroup("Formats", &TNorva::Formats),
  };
  return list;
}

TPropertyPath FindIn(const TPropertyList& List, TPersistent& Object, std::string_view Path) {
  const std::size_t dot = std::min(Path.find('.'), Path.size());
  const TProperty* property = List.Find(Path.substr(0, dot));
  if (!property || dot == Path.size()) return {&Object, property};
  if (property->Kind != pkGroup) return {};
  return FindProperty(property->Object(Object), Path.substr(dot + 1));
}

TPropertyPath FindSetting(TNorva& Exporter, std::string_view Path) {
  const TPropertyPath own = FindIn(Exporter.Properties(), Exporter, Path);
  return own.Property ? own : FindIn(CommonProperties(), Exporter, Path);
}

std::vector<std::string> SettingNames(TNorva& Exporter) {
  std::vector<std::string> names = PropertyNames(Exporter.Properties(), Exporter, false);
  const std::vector<std::string> common = PropertyNames(CommonProperties(), Exporter, false);
  for (const std::string& name : common) {
    if (!Exporter.Properties().Find(name.substr(0, name.find('.')))) names.push_back(name);
  }
  return names;
}

/// The string lists and the options that fill them.
struct TListOption {
  const char* List;
  const char* Option;
  TStringList TNorva::*Member;
};
constexpr TListOption ListOptions[] = {
    {"ExportedFields", "--field",       &TNorva::ExportedFields},
    {"Captions",       "--caption",     &TNorva::Captions      },
    {"UserFormats",    "--user-format", &TNorva::UserFormats   },
    {"ColumnsWidth",   "--width",       &TNorva::ColumnsWidth  },
    {"ColumnsAlign",   "--align",       &TNorva::ColumnsAlign  },
    {"ColumnsLength",  "--length",      &TNorva::ColumnsLength },
    {"Header",         "--header",      &TNorva::Header        },
    {"Footer",         "--footer",      &TNorva::Footer        },
};

/// The option that fills the string list `Name`; null for a list that --set fills.
const char* ListOption(std::string_view Name) {
  for (const TListOption& option : ListOptions) {
    if (SameText(option.List, Name)) return option.Option;
  }
  return nullptr;
}

TStringList& Lines(const TPropertyPath& Setting) {
  return static_cast<TStringList&>(Setting.Property->Object(*Setting.Object));
}

/// The value as one text, a list's lines too.
std::string TextOf(const TPropertyPath& Setting) {
  return Setting.Property->Kind == pkList ? Lines(Setting).Text()
                                          : Setting.Property->Get(*Setting.Object);
}

void CheckIsValue(const TEntry& Entry, const TPropertyPath& Setting) {
  const TProperty& property = *Setting.Property;
  switch (property.Kind) {
    case pkValue:
      return;
    case pkList:
      if (const char* const option = ListOption(property.Name)) {
        throw EUsage(MsgListSetting, Entry.Name, option);
      }
      return;
    case pkCollection:
      throw EUsage(MsgListSetting, Entry.Name, "an options file");
    case pkGroup: {
      const TPropertyList& members = property.Object(*Setting.Object).Properties();
      throw EUsage(MsgGroupSetting, Entry.Name, property.Name,
                   members.size() > 0 ? members.begin()->Name : "");
    }
    case pkReference:
    case pkEvent:
      throw EUsage(MsgFixedSetting, Entry.Name, property.TypeName);
  }
}

/// A list gains a line.
void SetValue(const TPropertyPath& Setting, const std::string& Value) {
  if (Setting.Property->Kind == pkList) {
    Lines(Setting).Add(Value);
    return;
  }
  try {
    Setting.Property->Set(*Setting.Object, Value);
  } catch (const EConvertError& error) {
    throw EUsage(MsgSettingValue, error.what());
  }
}

void ApplySetting(const std::string& Text, TNorva& Exporter) {
  const TEntry entry = EntryOf("--set", Text, "VALUE");
  if (TOutputSettings().Properties().Find(entry.Name)) return;  // the tool's own affair
  const TPropertyPath setting = FindSetting(Exporter, entry.Name);
  if (!setting.Property) {
    throw EUsage(MsgUnknownSetting, entry.Name, Suggestion(entry.Name, SettingNames(Exporter)));
  }
  CheckIsValue(entry, setting);
  SetValue(setting, InPage("--set", entry.Value));
}

}  // namespace

const TPropertyList& TOutputSettings::Properties() const {
  static const TPropertyList list{
      Published("FileName", &TOutputSettings::FileName, ""),
      Published("ShowFile", &TOutputSettings::ShowFile, false),
      Published("PrintFile", &TOutputSettings::PrintFile, false),
  };
  return list;
}

TOutputSettings OutputSettings(const TExportArguments& Arguments, const TNorvaDialog* Stored) {
  TOutputSettings output;
  if (Stored) {
    output.FileName = Stored->FileName;
    output.ShowFile = Stored->ShowFile;
    output.PrintFile = Stored->PrintFile;
  }
  if (!Arguments.Output.empty()) output.FileName = Arguments.Output;
  if (Arguments.Open) output.ShowFile = true;
  if (Arguments.Print) output.PrintFile = true;
  for (const std::string& text : Arguments.Settings) {
    const TEntry entry = EntryOf("--set", text, "VALUE");
    const TProperty* property = output.Properties().Find(entry.Name);
    if (property) SetValue({&output, property}, entry.Value);
  }
  return output;
}

void ChooseText(const TExportArguments& Arguments, const TFormat& Format) {
  int page = Format.CodePage;
  if (Arguments.CodePage) {
    const std::string& text = *Arguments.CodePage;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, page);
    if (error != std::errc() || stop != end || !IsKnownCodePage(page)) {
      std::vector<std::string> known;
      for (const int number : KnownPages) known.push_back(std::to_string(number));
      throw EUsage(MsgUnknownPage, text, Joined(known));
    }
  }
  SetActiveCodePage(page);
  const std::string policy = Arguments.OnUnmappable.value_or("error");
  if (policy != "error" && policy != "replace") throw EUsage(MsgUnknownPolicy, policy);
  SetUnmappablePolicy(policy == "replace" ? umReplace : umError);
  try {
    FormatSettings() = Arguments.Locale ? TFormatSettings::FromLocale(*Arguments.Locale)
                                        : TFormatSettings::FromEnvironment();
  } catch (const EConvertError& error) {
    throw EUsage(MsgLocale, error.what());
  }
}

void ApplySettings(const TExportArguments& Arguments, TNorva& Exporter) {
  ApplyLines("--field", Arguments.Fields, Exporter.ExportedFields);
  for (const TColumnOption& option : ColumnOptions) ApplyColumnOption(option, Arguments, Exporter);
  if (Arguments.Title) Exporter.Title = InPage("--title", *Arguments.Title);
  ApplyLines("--header", Arguments.Header, Exporter.Header);
  ApplyLines("--footer", Arguments.Footer, Exporter.Footer);
  if (Arguments.Null) Exporter.Formats.NullString = InPage("--null", *Arguments.Null);
  if (Arguments.NoCaptions) Exporter.AllowCaptions = false;
  if (Arguments.Limit) Exporter.ExportRecCount = CountOf("--limit", *Arguments.Limit);
  if (Arguments.Skip) Exporter.SkipRecCount = CountOf("--skip", *Arguments.Skip);
  for (const std::string& text : Arguments.Settings) ApplySetting(text, Exporter);

  if (Exporter.ExportSource != esDataSet) {
    throw EUsage(MsgSourceSetting, EnumToStr(Exporter.ExportSource));
  }
  CountOf("--set ExportRecCount", std::to_string(Exporter.ExportRecCount));
  CountOf("--set SkipRecCount", std::to_string(Exporter.SkipRecCount));
}

std::vector<std::string> DifferentSettings(TNorva& A, TNorva& B) {
  std::vector<std::string> names;
  for (const std::string& name : SettingNames(A)) {
    if (name == "HTMLTemplate") continue;  // no more than colours, each of which is compared
    const TPropertyPath a = FindSetting(A, name), b = FindSetting(B, name);
    if (TextOf(a) != TextOf(b)) names.push_back(name);
  }
  for (const TListOption& option : ListOptions) {
    if ((A.*option.Member).Text() != (B.*option.Member).Text()) names.push_back(option.Option);
  }
  return names;
}

std::vector<std::string> PropertyNames(const TPropertyList& List, TPersistent& Object, bool All) {
  std::vector<std::string> names;
  for (const TProperty& property : List) {
    if (property.Kind == pkGroup) {
      TPersistent& group = property.Object(Object);
      for (const std::string& name : PropertyNames(group.Properties(), group, All)) {
        names.push_back(property.Name + "." + name);
      }
    } else if (All || property.Kind == pkValue ||
               (property.Kind == pkList && !ListOption(property.Name))) {
      names.push_back(property.Name);
    }
  }
  return names;
}

}  // namespace norva::tool
