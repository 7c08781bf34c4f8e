#include <tools/norva/CommandLine.h>

#include <algorithm>
#include <sstream>

#include <CLI/CLI.hpp>

#include <tools/norva/Errors.h>
#include <tools/norva/ExportCommand.h>
#include <tools/norva/ListCommands.h>
#include <tools/norva/Messages.h>
#include <tools/norva/Nearest.h>
#include <tools/norva/Terminal.h>

namespace norva::tool {
namespace {

/// What an option was given: once, or each time in turn. The results are read as they were typed;
/// a bound variable would lose empty texts and take some for separators.
CLI::Option* One(CLI::App& App, const char* Names, const char* Value, const char* Help) {
  return App.add_option(Names, CLI::callback_t(), Help)
      ->type_name(Value)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
}

CLI::Option* Many(CLI::App& App, const char* Names, const char* Value, const char* Help) {
  return One(App, Names, Value, Help)
      ->take_all()
      ->expected(1, CLI::detail::expected_max_vector_size)
      ->allow_extra_args(false);
}

CLI::Option* Flag(CLI::App& App, const char* Names, const char* Help) {
  const std::string help = Help;
  return App.add_flag(Names, help)->disable_flag_override();
}

/// A file name stays in the bytes that the shell gave.
std::string FileNameOf(const CLI::Option* Option) {
  return Option->count() == 0 ? std::string() : Option->results().back();
}

std::vector<std::string> TextsOf(const CLI::Option* Option) {
  std::vector<std::string> texts;
  if (Option->count() == 0) return texts;
  for (const std::string& text : Option->results()) texts.push_back(FromShell(text));
  return texts;
}

std::optional<std::string> TextOf(const CLI::Option* Option) {
  if (Option->count() == 0) return std::nullopt;
  return FromShell(Option->results().back());
}

struct TSourceOptions {
  explicit TSourceOptions(CLI::App& App, bool WithTable = true)
      : Name(One(App, "SOURCE", "", "Path of an SQLite database file")->required()) {
    if (!WithTable) return;
    Table = One(App, "--table", "NAME", "The table or view to read");
    Query = One(App, "--query", "SQL", "A SELECT whose records to read")->excludes(Table);
  }
  TSourceArguments Read() const {
    TSourceArguments arguments{FileNameOf(Name), {}, {}};
    if (Table) arguments.Table = TextOf(Table);
    if (Query) arguments.Query = TextOf(Query);
    return arguments;
  }

 private:
  CLI::Option* Name;
  CLI::Option* Table = nullptr;
  CLI::Option* Query = nullptr;
};

struct TExportOptions {
  explicit TExportOptions(CLI::App& App)
      : Source(App),
        Format(One(App, "--format", "FMT", "Format; `norva formats` lists them")),
        Output(One(App, "-o,--output", "FILE", "File to write; - is standard output")),
        Field(Many(App, "--field", "NAME", "Column to export; repeat it in the order wanted")),
        Caption(Many(App, "--caption", "NAME=TEXT", "Title of a column")),
        UserFormat(Many(App, "--user-format", "NAME=PICTURE", "Format of a column's values")),
        Width(Many(App, "--width", "NAME=N", "Width of a column in characters")),
        Align(Many(App, "--align", "NAME=HOW", "left, center or right")),
        Length(Many(App, "--length", "NAME=N", "Length of a column's texts")),
        Title(One(App, "--title", "TEXT", "Title of the document")),
        Header(Many(App, "--header", "LINE", "Line before the records")),
        Footer(Many(App, "--footer", "LINE", "Line behind the records")),
        Null(One(App, "--null", "TEXT", "Text of null values")),
        NoCaptions(Flag(App, "--no-captions", "No row of column titles")),
        Limit(One(App, "--limit", "N", "Greatest number of records; 0 is all")),
        Skip(One(App, "--skip", "N", "Records to step over first")),
        Set(Many(App, "--set", "PATH=VALUE", "Any property of `norva properties FMT`")),
        Options(One(App, "--options", "FILE.ini", "Settings to begin with")),
        SaveOptions(One(App, "--save-options", "FILE.ini", "Keep the settings of this run")),
        Locale(One(App, "--locale", "NAME", "invariant, or a locale of `locale -a`")),
        CodePage(One(App, "--code-page", "N", "65001 (UTF-8) or a Windows code page")),
        OnUnmappable(One(App, "--on-unmappable", "HOW",
                         "error or replace: characters that the code page lacks")),
        Progress(Flag(App, "--progress", "Show a progress bar in any case")),
        NoProgress(Flag(App, "--no-progress", "Show none")->excludes(Progress)),
        Open(Flag(App, "--open", "Open the file afterwards")),
        Print(Flag(App, "--print", "Print it")),
        Quiet(Flag(App, "-q,--quiet", "Nothing on standard error but errors")),
        KeepPartial(
            Flag(App, "--keep-partial", "Keep what a failed export has written as FILE.partial")) {}

  TExportArguments Read() const;

 private:
  TSourceOptions Source;
  CLI::Option *Format, *Output, *Field, *Caption, *UserFormat, *Width, *Align, *Length, *Title,
      *Header, *Footer, *Null, *NoCaptions, *Limit, *Skip, *Set, *Options, *SaveOptions, *Locale,
      *CodePage, *OnUnmappable, *Progress, *NoProgress, *Open, *Print, *Quiet, *KeepPartial;
};

TExportArguments TExportOptions::Read() const {
  TExportArguments to;
  to.Source = Source.Read();
  to.Format = TextOf(Format);
  to.Output = FileNameOf(Output);
  to.Fields = TextsOf(Field);
  to.Captions = TextsOf(Caption);
  to.UserFormats = TextsOf(UserFormat);
  to.Widths = TextsOf(Width);
  to.Aligns = TextsOf(Align);
  to.Lengths = TextsOf(Length);
  to.Title = TextOf(Title);
  to.Header = TextsOf(Header);
  to.Footer = TextsOf(Footer);
  to.Null = TextOf(Null);
  to.NoCaptions = NoCaptions->count() > 0;
  to.Limit = TextOf(Limit);
  to.Skip = TextOf(Skip);
  to.Settings = TextsOf(Set);
  to.Options = FileNameOf(Options);
  to.SaveOptions = FileNameOf(SaveOptions);
  to.Locale = TextOf(Locale);
  to.CodePage = TextOf(CodePage);
  to.OnUnmappable = TextOf(OnUnmappable);
  if (Progress->count() > 0) to.Progress = true;
  if (NoProgress->count() > 0) to.Progress = false;
  to.Open = Open->count() > 0;
  to.Print = Print->count() > 0;
  to.Quiet = Quiet->count() > 0;
  to.KeepPartial = KeepPartial->count() > 0;
  return to;
}

/// The arguments behind the program's name, last one first, as CLI11 takes them. `--null=` becomes
/// two, `--null` and the empty text: CLI11 would take the next argument for the value.
std::vector<std::string> Arguments(int argc, const char* const* argv) {
  std::vector<std::string> arguments;
  for (int i = 1; i < argc; ++i) {
    std::string text = argv[i];
    const bool emptyValue = text.starts_with("--") && text.find('=') == text.size() - 1;
    if (emptyValue) text.pop_back();
    arguments.push_back(text);
    if (emptyValue) arguments.emplace_back();
  }
  std::reverse(arguments.begin(), arguments.end());
  return arguments;
}

std::vector<std::string> CommandNames(const CLI::App& App) {
  std::vector<std::string> names;
  for (const CLI::App* command : App.get_subcommands(nullptr)) names.push_back(command->get_name());
  return names;
}

std::vector<std::string> OptionNames(const CLI::App& App) {
  std::vector<std::string> names;
  for (const CLI::Option* option : App.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

/// What is wrong with the arguments, in the command's words where CLI11 has none of its own.
std::string Explanation(const CLI::App& App, const CLI::ParseError& Error) {
  const std::vector<CLI::App*> commands = App.get_subcommands();
  const CLI::App& command = commands.empty() ? App : *commands.front();
  const std::string name = commands.empty() ? "norva" : "norva " + command.get_name();
  const std::string seeHelp = Format(MsgSeeHelp, name);
  const std::vector<std::string> extra = command.remaining();
  if (!extra.empty() && commands.empty()) {
    return Format(MsgNoCommand, extra.front(), Suggestion(extra.front(), CommandNames(App)));
  }
  if (!extra.empty() && extra.front().starts_with('-')) {
    return Format(MsgNoOption, extra.front(), name,
                  Suggestion(extra.front(), OptionNames(command))) +
           seeHelp;
  }
  if (!extra.empty()) return Format(MsgOneTooMany, extra.front()) + seeHelp;
  const std::string text = Error.what();
  const bool valueMissing = dynamic_cast<const CLI::ArgumentMismatch*>(&Error) &&
                            text.find(" missing") != std::string::npos;
  if (valueMissing) return Format(MsgValueMissing, text.substr(0, text.find(':'))) + seeHelp;
  return text + seeHelp;
}

}  // namespace

void RunCommandLine(int argc, const char* const* argv) {
  CLI::App app("Exports tables of databases to files.", "norva");
  app.require_subcommand(1);
  app.set_version_flag("--version", "norva " NORVA_VERSION);
  CLI::App* exporting = app.add_subcommand("export", "Export a table or query");
  CLI::App* columns = app.add_subcommand("columns", "List the columns of a table or query");
  CLI::App* tables = app.add_subcommand("tables", "List the tables and views of a source");
  CLI::App* formats = app.add_subcommand("formats", "List the formats");
  CLI::App* properties = app.add_subcommand("properties", "List the properties of a format");
  const TExportOptions exportOptions(*exporting);
  const TSourceOptions columnOptions(*columns);
  const TSourceOptions tableOptions(*tables, false);
  const CLI::Option* format =
      One(*properties, "FMT", "", "Format; `norva formats` lists them")->required();

  try {
    app.parse(Arguments(argc, argv));
  } catch (const CLI::Success& request) {  // --help, --version
    std::ostringstream text;
    app.exit(request, text, text);
    return Print(text.str());
  } catch (const CLI::ParseError& error) {
    throw EUsage("%s", Explanation(app, error));
  }
  if (*exporting) ExportCommand(exportOptions.Read());
  if (*columns) ColumnsCommand(columnOptions.Read());
  if (*tables) TablesCommand(tableOptions.Read().Name);
  if (*formats) FormatsCommand();
  if (*properties) PropertiesCommand(TextOf(format).value_or(""));
}

}  // namespace norva::tool
