/// The texts of the tool's own messages, in one place. `%s` and `%d` as in Format.
#pragma once

namespace norva::tool {

// Wrong usage.
inline constexpr const char* MsgSeeHelp = "; see `%s --help`";
inline constexpr const char* MsgNoCommand = "\"%s\" is no command; %s";
inline constexpr const char* MsgNoOption = "%s is no option of `%s`; %s";
inline constexpr const char* MsgOneTooMany = "\"%s\" is one argument too many";
inline constexpr const char* MsgValueMissing = "%s needs a value";
inline constexpr const char* MsgNotANameValue = "%s \"%s\": give NAME=%s";
inline constexpr const char* MsgNotACount = "%s \"%s\": give a whole number from 0 to %d";
inline constexpr const char* MsgNotAnAlignment = "--align \"%s\": give left, center or right";
inline constexpr const char* MsgNoFormat = "\"%s\" is no format of this build; it has: %s";
inline constexpr const char* MsgNoExtension =
    "The extension of \"%s\" names no format; give one of %s, or --format";
inline constexpr const char* MsgFormatWanted = "Give a format with --format: %s";
inline constexpr const char* MsgOutputWanted =
    "Give the file to write with -o, or -o - for standard output";
inline constexpr const char* MsgOutputIsSource =
    "\"%s\" is the database itself; give another file to write";
inline constexpr const char* MsgOptionsAreOther = "--save-options \"%s\" is %s; give another file";
inline constexpr const char* MsgNothingToShow =
    "%s needs a file: give -o a name that is neither standard output nor a device";
inline constexpr const char* MsgSeveralFiles =
    "These settings write several files, which standard output and devices cannot hold; give -o a "
    "file name";
inline constexpr const char* MsgIndexName =
    "-o %s: the links of an index lead nowhere when the name has more than the point of its "
    "extension; give another name";
inline constexpr const char* MsgStyleSheet =
    "CSSFileName \"%s\": the style sheet stands beside the page; give a name without a folder that "
    "is not the page's";
inline constexpr const char* MsgUnknownSetting = "--set \"%s\": there is no such property; %s";
inline constexpr const char* MsgListSetting = "--set \"%s\": this is a list of lines; use %s";
inline constexpr const char* MsgGroupSetting =
    "--set \"%s\": this is a group of properties; set one of them, such as %s.%s";
inline constexpr const char* MsgFixedSetting = "--set \"%s\": a %s cannot be given as text";
inline constexpr const char* MsgSettingValue = "--set: %s";
inline constexpr const char* MsgSheetTitle =
    "--set Options.SheetTitle=%s: give at most %d characters, none of them / \\ : * ? [ ]";
inline constexpr const char* MsgTableNameWanted =
    "A query has no name for the table that the script fills; give --set TableName=NAME";
inline constexpr const char* MsgInputEncoding =
    "LaTeX has no input encoding cp%d; give a --code-page of: %s (norva(1) has a way for UTF-8)";
inline constexpr const char* MsgSourceSetting =
    "--set ExportSource=%s: the source here is a data set, esDataSet";
inline constexpr const char* MsgUnknownPage = "--code-page %s is not known; give one of: %s";
inline constexpr const char* MsgUnknownPolicy = "--on-unmappable \"%s\": give error or replace";
inline constexpr const char* MsgLocale = "--locale: %s; `locale -a` lists those that are";
inline constexpr const char* MsgArgumentText =
    "%s \"%s\": %s; change the text or give another --code-page";
inline constexpr const char* MsgTableWanted = "\"%s\" has %d tables; choose one with --table: %s";
inline constexpr const char* MsgNoOdbc =
    "\"%s\": this build has no ODBC; give the path of an SQLite database file";

// Failures.
inline constexpr const char* MsgNoTables = "\"%s\" has no tables";
inline constexpr const char* MsgNoTable = "Table \"%s\" is not in \"%s\"; %s";
inline constexpr const char* MsgNoField = "%s: field \"%s\" is not in %s; %s";
inline constexpr const char* MsgOnlyBlobs =
    "No column of %s can be exported: all are blobs; name those whose bytes are wanted with "
    "--field";
inline constexpr const char* MsgTooMany =
    "%s has %d records, more than an export can count (%d); use --limit or a narrower --query";
inline constexpr const char* MsgHasNoRecords = "%s: %s has no records";
inline constexpr const char* MsgCreateAdvice =
    "%s; give -o a file in a folder that exists and can be written";
inline constexpr const char* MsgWriteAdvice = "%s; make room there, or write elsewhere with -o";
inline constexpr const char* MsgClipboardAdvice = "%s; or write the text to a file with -o";
inline constexpr const char* MsgIsFolder = "it is a folder";
inline constexpr const char* MsgKept = "%s; what was written is in \"%s\"";
inline constexpr const char* MsgInterrupted = "Interrupted after %s of %s%s";
inline constexpr const char* MsgInterruptedEarly = "Interrupted before the export began";
inline constexpr const char* MsgUntouched = "; \"%s\" is as it was before";
inline constexpr const char* MsgNotWritten = "; \"%s\" was not written";
inline constexpr const char* MsgOutOfMemory = "There is not enough memory";

// Notes.
inline constexpr const char* MsgNotHeld =
    "Note: \"%s\" cannot hold these settings; give them again beside it: %s";
inline constexpr const char* MsgLeftOut = "Left out, because blobs are exported only by name: %s";
inline constexpr const char* MsgAllSkipped =
    "Note: --skip leaves none of the %s; only what surrounds them is written";
inline constexpr const char* MsgUnsafeText =
    "Warning: column \"%s\", record %d: \"%s\" is written as it stands, which the %s format does "
    "not bear; see norva(1)";
inline constexpr const char* MsgUnsafeName =
    "Warning: the name or caption \"%s\" is written as it stands, which the %s format does not "
    "bear; "
    "rename it; see norva(1)";
inline constexpr const char* MsgOverflow =
    "Warning: %s value did not fit its N field and is shown as *";
inline constexpr const char* MsgOverflows =
    "Warning: %s values did not fit their N fields and are shown as *";
inline constexpr const char* MsgCutText =
    "Warning: %s text did not fit its C field and is cut; --length NAME=N makes fields of up to "
    "254 bytes";
inline constexpr const char* MsgCutTexts =
    "Warning: %s texts did not fit their C fields and are cut; --length NAME=N makes fields of up "
    "to 254 bytes";
inline constexpr const char* MsgDone = "%s: %s, %s, %s in %s s (%s rows/s)";

}  // namespace norva::tool
