#include <tools/norva/ExportCommand.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include <norva/core/NorvaBases.h>
#include <norva/dialog/Norvadialog.h>
#include <norva/formats/database/Norvasql.h>
#include <norva/formats/spreadsheet/Norvaxls.h>
#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Shell.h>
#include <tools/norva/Errors.h>
#include <tools/norva/Formats.h>
#include <tools/norva/Interrupt.h>
#include <tools/norva/Messages.h>
#include <tools/norva/Nearest.h>
#include <tools/norva/OptionsFile.h>
#include <tools/norva/Progress.h>
#include <tools/norva/Report.h>
#include <tools/norva/Settings.h>
#include <tools/norva/Source.h>
#include <tools/norva/Target.h>
#include <tools/norva/Terminal.h>
#include <tools/norva/Watch.h>

namespace norva::tool {
namespace {

using TClock = std::chrono::steady_clock;

/// By `--format`, the extension of `-o` or the options file, whichever says something first.
const TFormat& FormatOf(const TExportArguments& Arguments, const std::string& FileName,
                        const TNorvaDialog* Stored) {
  if (Arguments.Format) return FormatByName(*Arguments.Format);
  if (!Stored) return FormatByExtension(FileName);
  const bool isGiven = FileName != Stored->FileName;
  const TFormat* const byOutput = isGiven ? FindByExtension(FileName) : nullptr;
  return byOutput ? *byOutput : FormatByKind(Stored->ExportType);
}

const TFormat& ChooseFormat(const TExportArguments& Arguments, const TOutputSettings& Output,
                            const TNorvaDialog* Stored) {
  const TFormat& format = FormatOf(Arguments, Output.FileName, Stored);
  const bool needsFile = !format.Extensions.empty();
  if (needsFile && Output.FileName.empty()) throw EUsage(MsgOutputWanted);
  return format;
}

/// Returns the name of the file to write; empty where it is none.
std::string CheckOutput(const TExportArguments& Arguments, const TOutputSettings& Output) {
  std::error_code none;  // neither need exist
  if (std::filesystem::equivalent(Arguments.Source.Name, Output.FileName, none)) {
    throw EUsage(MsgOutputIsSource, Output.FileName);
  }
  const std::filesystem::file_status status = std::filesystem::status(Output.FileName, none);
  const bool isFile = !Output.FileName.empty() && Output.FileName != "-" &&
                      (!std::filesystem::exists(status) || is_regular_file(status));
  if (isFile) return Output.FileName;
  if (Output.ShowFile) throw EUsage(MsgNothingToShow, "--open");
  if (Output.PrintFile) throw EUsage(MsgNothingToShow, "--print");
  return {};
}

/// Keeps the settings as they are before the tool fits them to the source.
void TakeSettings(const TNorva& Exporter, const TOutputSettings& Output, TNorvaDialog& Dialog) {
  Dialog.Assign(Exporter);
  Dialog.FileName = Output.FileName;
  Dialog.ShowFile = Output.ShowFile;
  Dialog.PrintFile = Output.PrintFile;
}

/// The exporter writes where the tool tells it later, and shows nothing itself.
void DirectOutput(TNorva& Exporter, const std::string& FileName) {
  auto* const toFile = dynamic_cast<TNorvaText*>(&Exporter);
  if (!toFile) return;
  toFile->FileName = FileName;
  toFile->ShowFile = toFile->PrintFile = false;
}

/// The exporter itself would ignore a caption or a width for a column that is not there. Names that
/// no option of the command gives are of the options file.
class TColumnCheck {
 public:
  TColumnCheck(const TExportArguments& Arguments, const TSource& Source)
      : Arguments_(Arguments), Source_(Source) {}

  void Run(TNorva& Exporter) const {
    const char* const option = Arguments_.Fields.empty() ? FromFile : "--field";
    for (const std::string& name : Exporter.ExportedFields) Source_.CheckField(option, name);
    Check("--caption", Arguments_.Captions, Exporter.Captions);
    Check("--user-format", Arguments_.UserFormats, Exporter.UserFormats);
    Check("--width", Arguments_.Widths, Exporter.ColumnsWidth);
    Check("--align", Arguments_.Aligns, Exporter.ColumnsAlign);
    Check("--length", Arguments_.Lengths, Exporter.ColumnsLength);
    const auto* const workbook = dynamic_cast<const TNorvaXLS*>(&Exporter);
    for (int i = 0; workbook && i < workbook->FieldFormats.Count(); ++i) {
      Source_.CheckField(FromFile, workbook->FieldFormats[i].FieldName);
    }
  }

 private:
  static constexpr const char* FromFile = "--options";

  void Check(const char* Option, const std::vector<std::string>& Given,
             const TStringList& List) const {
    for (int i = 0; i < List.Count(); ++i) {
      const std::string name = List.Names(i);
      const bool isGiven = std::any_of(Given.begin(), Given.end(), [&name](const auto& text) {
        return text.starts_with(ToUtf8(name) + "=");
      });
      Source_.CheckField(isGiven ? Option : FromFile, name);
    }
  }

  const TExportArguments& Arguments_;
  const TSource& Source_;
};

// Unless columns are named, the first blob would end the list of columns.
void LeaveOutBlobs(TNorva& Exporter, const TSource& Source, bool Quiet) {
  const std::vector<std::string> blobs = Source.FieldNames(true);
  if (blobs.empty() || !Exporter.ExportedFields.Empty()) return;
  for (const std::string& name : Source.FieldNames(false)) Exporter.ExportedFields.Add(name);
  if (Exporter.ExportedFields.Empty()) throw EDatabaseError(MsgOnlyBlobs, Source.Description());
  if (!Quiet) Say(Format(MsgLeftOut, ToUtf8(Joined(blobs))));
}

// A script fills a table of the same name unless told otherwise; without one it could not be run.
void NameTable(TNorva& Exporter, const TSource& Source) {
  auto* script = dynamic_cast<TNorvaSQL*>(&Exporter);
  if (!script || !script->TableName.empty()) return;
  if (Source.TableName().empty()) throw EUsage(MsgTableNameWanted);
  script->TableName = FromUtf8(Source.TableName());
}

/// Limits the export to the records there are, which makes it end with the last one whatever the
/// format's own rule is. Returns how many will be written.
std::int64_t LimitRecords(TNorva& Exporter, std::int64_t Count, const TSource& Source, bool Quiet) {
  constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
  // Stepping over more than there are would only take time.
  const std::int64_t skipped = std::min<std::int64_t>(Exporter.SkipRecCount, Count);
  std::int64_t limit = Exporter.ExportRecCount;
  if (limit == 0 || limit > Count - skipped) limit = Count - skipped;
  if (limit > most) throw Exception(MsgTooMany, Source.Description(), Count, most);
  Exporter.SkipRecCount = static_cast<std::int32_t>(skipped);
  // 0 is no limit, and needs none: the source is at its end before the first record.
  Exporter.ExportRecCount = static_cast<std::int32_t>(limit);
  if (limit == 0 && Count > 0 && !Quiet) Say(Format(MsgAllSkipped, Counted(Count, "record")));
  return limit;
}

/// Warns of the first text that the format writes although it breaks the file.
void WarnOfUnsafeText(TNorva& Exporter, const TFormat& Format) {
  Exporter.OnUnsafeText = [&Exporter, &Format](TObject&, std::int32_t column,
                                               std::string_view text) {
    const std::string shown = ToUtf8(text);
    if (column < 0) {
      Say(norva::Format(MsgUnsafeName, shown, Format.Name));
      return;
    }
    const std::string name = ToUtf8(Exporter.Columns[column].Name);
    const std::int32_t record = Exporter.SkipRecCount + Exporter.RecordCounter + 1;
    Say(norva::Format(MsgUnsafeText, name, record, shown, Format.Name));
  };
}

/// The message of a failure, with what can be done about it.
std::string WithAdvice(const std::exception& Error, TSource& Source) {
  const bool fromOutput = dynamic_cast<const EStreamError*>(&Error);
  if (!fromOutput && Source.DataSet().IsEmpty()) {
    return Format(MsgHasNoRecords, Error.what(), Source.Description());
  }
  return Error.what();
}

/// One export, once its source, exporter and target are ready.
class TExportRun {
 public:
  TExportRun(TSource& Source, TNorva& Exporter, TTarget& Target, std::int64_t Expected)
      : Source_(Source), Exporter_(Exporter), Target_(Target), Expected_(Expected) {}

  void Run(const TExportArguments& Arguments) {
    TProgress progress(Expected_, Arguments.Quiet ? false : Arguments.Progress);
    TWatch watch(Exporter_, progress);
    try {
      Target_.Write(Exporter_);
      if (!Exporter_.Aborted) Target_.Commit();
    } catch (const EUsage&) {
      throw;
    } catch (const std::exception& error) {
      if (!Interrupted()) {
        const std::string kept = Arguments.KeepPartial ? Target_.KeepPartial() : "";
        const std::string message = WithAdvice(error, Source_);
        throw Exception("%s", kept.empty() ? message : Format(MsgKept, message, kept));
      }
      Exporter_.Aborted = true;
    }
    Written_ = watch.Written();
    if (Exporter_.Aborted) ThrowInterrupted(Arguments.KeepPartial);
  }

  std::int64_t Written() const { return Written_; }

 private:
  [[noreturn]] void ThrowInterrupted(bool KeepPartial) {
    const std::string kept = KeepPartial ? Target_.KeepPartial() : "";
    const std::string message = Format(MsgInterrupted, Grouped(Written_),
                                       Counted(Expected_, "record"), Target_.Aftermath());
    throw EInterrupted("%s", kept.empty() ? message : Format(MsgKept, message, kept));
  }

  TSource& Source_;
  TNorva& Exporter_;
  TTarget& Target_;
  std::int64_t Expected_;
  std::int64_t Written_ = 0;
};

}  // namespace

void ExportCommand(const TExportArguments& Arguments) {
  const TClock::time_point begun = TClock::now();
  // Read once for what the next steps ask of it, and again when text and format are chosen.
  std::optional<TNorvaDialog> stored;
  if (!Arguments.Options.empty()) stored.emplace().LoadExportOptions(Arguments.Options);
  const TNorvaDialog* const options = stored ? &*stored : nullptr;
  const TOutputSettings output = OutputSettings(Arguments, options);
  const TFormat& format = ChooseFormat(Arguments, output, options);
  const std::string fileName = CheckOutput(Arguments, output);
  CheckOptionsFile(Arguments, output.FileName);
  ChooseText(Arguments, format);
  const std::unique_ptr<TNorvaDialog> dialog = MakeDialog(format, Arguments.Options);
  const std::unique_ptr<TNorva> exporter = dialog->CreateExporter();
  ApplySettings(Arguments, *exporter);
  TakeSettings(*exporter, output, *dialog);
  DirectOutput(*exporter, fileName);
  if (format.Check) format.Check(*exporter);

  TSource source(Arguments.Source);
  exporter->DataSet = &source.DataSet();
  TColumnCheck(Arguments, source).Run(*exporter);
  NameTable(*exporter, source);
  LeaveOutBlobs(*exporter, source, Arguments.Quiet);
  const std::unique_ptr<TTarget> target = MakeTarget(output.FileName, format);
  const std::int64_t count = source.DataSet().RecordCount();
  const std::int64_t expected = LimitRecords(*exporter, count, source, Arguments.Quiet);

  if (!Arguments.Quiet) WarnOfUnsafeText(*exporter, format);

  TExportRun run(source, *exporter, *target, expected);
  run.Run(Arguments);
  if (!Arguments.Quiet) {
    if (format.Remarks) {
      for (const std::string& remark : format.Remarks(*exporter)) Say(remark);
    }
    const std::chrono::duration<double> elapsed = TClock::now() - begun;
    Say(DoneLine(target->Name(), run.Written(), exporter->Columns.Count(), target->Bytes(),
                 elapsed.count()));
  }
  if (!Arguments.SaveOptions.empty()) SaveOptions(Arguments, *dialog);
  if (output.ShowFile) ShellOpen(target->FileName());
  if (output.PrintFile) ShellPrint(target->FileName());
}

}  // namespace norva::tool
