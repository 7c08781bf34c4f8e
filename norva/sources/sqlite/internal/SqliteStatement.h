/// Owns a prepared statement.
#pragma once

#include <sqlite3.h>

#include <memory>

namespace norva::internal {

struct TFinalize {
  void operator()(sqlite3_stmt* Statement) const { sqlite3_finalize(Statement); }
};
using TSqliteStatement = std::unique_ptr<sqlite3_stmt, TFinalize>;

}  // namespace norva::internal
