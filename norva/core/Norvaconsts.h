/// The message table of the engine and the formats. `%s` and `%d` as in Format.
#pragma once

namespace norva {

inline constexpr const char* MsgSourceNotAssigned = "Export source (%s) is not assigned";
inline constexpr const char* MsgSourceClosed = "Export source (%s) is closed";
inline constexpr const char* MsgSourceEmpty = "Export source (%s) is empty";
inline constexpr const char* MsgNoWriter = "The writer exists only while an export runs";
inline constexpr const char* MsgColumnValue = "Column \"%s\", record %d: %s";
inline constexpr const char* MsgIniValue =
    "Section \"%s\", key \"%s\": \"%s\" cannot be used: give %s";

// When an RTF document has no memory to make room for a font or a colour.
inline constexpr const char* MsgNoScratch = "VirtualAlloc failed! :-(";

// The dialog.
inline constexpr const char* MsgSaveOptions = "Save Export Options...";
inline constexpr const char* MsgLoadOptions = "Load Export Options...";
inline constexpr const char* MsgExportNotAllowed =
    "%s is not among the AllowedExports of this dialog: choose another ExportType";

// Workbooks. Rows and columns are counted from 0 in the first, as the sheet's records do.
inline constexpr const char* MsgCellTooLong = "Cell R%d,C%d: String length more than 32767 bytes";
inline constexpr const char* MsgRecordTooMany =
    "Record %d does not fit: a sheet has %d rows; write fewer with ExportRecCount and SkipRecCount";
inline constexpr const char* MsgRowTooMany =
    "The %s does not fit: a sheet has %d rows; write fewer records with ExportRecCount";
inline constexpr const char* MsgColumnTooMany =
    "Column \"%s\" does not fit: a sheet has %d columns; choose them with ExportedFields";
inline constexpr const char* MsgCellFormatTooMany =
    "The workbook cannot hold more than %d cell formats, %d fonts and %d number formats";
inline constexpr const char* MsgWorkbookText =
    "The %s \"%s\" is too long for a workbook: give at most %d characters";
inline constexpr const char* MsgWorkbookFontSize =
    "The size %d of the font \"%s\" does not fit a workbook: give 1 to %d points";

// Tables.
inline constexpr const char* MsgFieldTooMany =
    "%d columns do not fit: a DBF table has %d fields at most; choose them with ExportedFields";

}  // namespace norva
