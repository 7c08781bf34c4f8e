/// The texts of the SQLite sources' errors. `%s` and `%d` as in Format.
#pragma once

namespace norva::internal {

inline constexpr const char* MsgSqliteOpen = "Cannot open database \"%s\": %s";
inline constexpr const char* MsgSqliteCheckPath = "; check the path and the right to read it";
inline constexpr const char* MsgSqliteFolder = "it is a folder; give the database file in it";
inline constexpr const char* MsgSqliteNoFile = "it is a device or pipe; give a database file";
inline constexpr const char* MsgSqliteTables = "Cannot list the tables of \"%s\": %s";

inline constexpr const char* MsgSqliteQuery =
    "Cannot run the query on \"%s\": %s; the query is: %s";
inline constexpr const char* MsgSqliteNoTable = "Table \"%s\" is not in \"%s\"; it has %s";
inline constexpr const char* MsgSqliteEmptyQuery = "it is empty; give one SELECT";
inline constexpr const char* MsgSqliteNul = "it holds a NUL character";
inline constexpr const char* MsgSqliteSecond = "it holds more than one statement; give one SELECT";
inline constexpr const char* MsgSqliteNoColumns = "it returns no columns; give one SELECT";
inline constexpr const char* MsgSqliteWrites = "it would change the database; give one SELECT";

inline constexpr const char* MsgSqliteRead = "Cannot read row %d of %s in \"%s\": %s";
inline constexpr const char* MsgSqliteCount = "Cannot count the rows of %s in \"%s\": %s";
inline constexpr const char* MsgSqliteNoRow = "Row %d of %s in \"%s\" is not there";

inline constexpr const char* MsgSqliteClosed = "The data set over \"%s\" is closed; open it first";

inline constexpr const char* MsgSqliteMisfit =
    "Column \"%s\" of %s, row %d: %s does not fit the type %s, which takes %s; correct it or query "
    "CAST(... AS TEXT)";
inline constexpr const char* MsgSqliteText =
    "Column \"%s\" of %s, row %d: %s; choose another code page or have such characters replaced";
inline constexpr const char* MsgSqliteName =
    "Column \"%s\" of %s: %s; choose another code page or give it another name with AS";

}  // namespace norva::internal
