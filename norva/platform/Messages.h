/// The texts of the platform's errors, in one place. `%s` and `%d` as in Format.
#pragma once

namespace norva {

inline constexpr const char* MsgNotAnInteger = "\"%s\" is not a valid integer value";
inline constexpr const char* MsgNotANumber = "\"%s\" is not a valid number";
inline constexpr const char* MsgNotADateTime = "\"%s\" is not a valid date or time";
inline constexpr const char* MsgNotAColor = "\"%s\" is not a valid colour";
inline constexpr const char* MsgDayOutOfRange = "Day number %s is outside the years 1 to 9999";
inline constexpr const char* MsgBadFormat =
    "Format \"%s\": specifier %d is unknown or does not fit its argument";
inline constexpr const char* MsgFieldNotFound = "Field \"%s\" not found";
inline constexpr const char* MsgDataSetClosed = "The %s is closed: open it first";
inline constexpr const char* MsgNoSuchRecord = "The %s has no record %d";
inline constexpr const char* MsgFieldExists = "There is a field \"%s\" already";
inline constexpr const char* MsgFieldAfterRecords =
    "Field \"%s\" cannot be added: the set has records already";
inline constexpr const char* MsgValueCount = "Record %d has %d values for %d fields";
inline constexpr const char* MsgValueMisfit = "Record %d, field \"%s\": %s does not fit %s";
inline constexpr const char* MsgValueTooLong =
    "Record %d, field \"%s\": \"%s\" is longer than %d characters";
inline constexpr const char* MsgListIndex = "List index %d is out of range";
inline constexpr const char* MsgAssign = "A %s cannot be assigned to a %s";
inline constexpr const char* MsgCannotCreate = "Cannot create \"%s\": %s";
inline constexpr const char* MsgCannotOpen = "Cannot open \"%s\": %s";
inline constexpr const char* MsgCannotRead = "Cannot read \"%s\": %s";
inline constexpr const char* MsgCannotWrite = "Cannot write \"%s\": %s";
inline constexpr const char* MsgCannotSeek = "Cannot seek in \"%s\": %s";
inline constexpr const char* MsgStreamEnds = "The stream ended after %d of %d bytes";
inline constexpr const char* MsgBadPosition = "Cannot seek by %d bytes from position %d";
inline constexpr const char* MsgUnmappable = "Character U+%s cannot be written in code page %d";
inline constexpr const char* MsgUnknownCodePage = "Code page %d is not known";
inline constexpr const char* MsgUnknownLocale = "Locale \"%s\" is not installed on this system";
inline constexpr const char* MsgPropertyValue = "\"%s\" is not a value of %s: give %s";
inline constexpr const char* MsgFormLine = "Form text, line %d: %s";
inline constexpr const char* MsgFormExpected = "\"%s\" is expected";
inline constexpr const char* MsgFormClass = "a %s cannot be loaded from a stored %s";
inline constexpr const char* MsgFormProperty = "%s has no property \"%s\" that can be stored";
inline constexpr const char* MsgFormReference = "%s cannot refer to \"%s\"";
inline constexpr const char* MsgFormText = "a text ends without its closing quote";
inline constexpr const char* MsgIniLineBreak =
    "A line break cannot be stored in an INI file (section \"%s\", key \"%s\")";
inline constexpr const char* MsgIniKey =
    "A key of an INI file cannot be \"%s\" (section \"%s\"): it is empty, begins with ; or [, "
    "holds = or a line end, or has outer blanks";

inline constexpr const char* MsgNoDesktop =
    "The text cannot be put on the clipboard: neither WAYLAND_DISPLAY nor DISPLAY is set. Run the "
    "program in a desktop session, or give it a clipboard of its own with SetClipboardSink";
inline constexpr const char* MsgNoClipboardTool =
    "The text cannot be put on the clipboard: none of the programs that do so (%s) is installed. "
    "Install one of them, or give the program a clipboard of its own with SetClipboardSink";
inline constexpr const char* MsgClipboardToolFailed =
    "The text cannot be put on the clipboard: the program \"%s\" did not take it. Try it in a "
    "terminal of this desktop session";

inline constexpr const char* MsgOleName =
    "\"%s\" cannot name a stream of a compound document: give 1 to 31 characters of UTF-8 without "
    "/ \\ : ! and zero";
inline constexpr const char* MsgOleNameTwice =
    "A compound document cannot hold the streams \"%s\" and \"%s\" together: upper and lower case "
    "are the same in their names";
inline constexpr const char* MsgOleStreamSize =
    "Stream \"%s\" is too long for a compound document: the format ends at %d bytes";
inline constexpr const char* MsgOleFileSize =
    "The compound document would be %d bytes long: the format ends at %d bytes";

}  // namespace norva
