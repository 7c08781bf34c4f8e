/// What SQLite says about a failure, and what can be done about it.
#pragma once

#include <string>

struct sqlite3;

namespace norva::internal {

/// The message of the last failed call on `Handle`, with advice where there is any:
/// "file is not a database; give an SQLite 3 file that is not encrypted".
std::string SqliteReason(sqlite3* Handle);

}  // namespace norva::internal
