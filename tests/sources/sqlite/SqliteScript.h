/// Databases for tests, written by a script.
#pragma once

#include <sqlite3.h>

#include <string>

#include <gtest/gtest.h>

namespace norva::tests {

/// A connection that may write, beside those under test.
class TSqliteWriter {
 public:
  explicit TSqliteWriter(const std::string& FileName, const std::string& Script = "") {
    EXPECT_EQ(sqlite3_open(FileName.c_str(), &Handle_), SQLITE_OK) << FileName;
    Run("PRAGMA synchronous = OFF;" + Script);
  }
  ~TSqliteWriter() { sqlite3_close(Handle_); }
  TSqliteWriter(const TSqliteWriter&) = delete;
  TSqliteWriter& operator=(const TSqliteWriter&) = delete;

  void Run(const std::string& Script) {
    EXPECT_EQ(sqlite3_exec(Handle_, Script.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << Script << ": " << sqlite3_errmsg(Handle_);
  }

 private:
  sqlite3* Handle_ = nullptr;
};

/// Runs `Script` in the database `FileName`, which is created when it is missing.
inline void RunScript(const std::string& FileName, const std::string& Script) {
  TSqliteWriter(FileName, Script);
}

}  // namespace norva::tests
