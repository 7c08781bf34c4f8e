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

}  // namespace norva
