#include <norva/sources/sqlite/internal/SqliteError.h>

#include <sqlite3.h>

namespace norva::internal {
namespace {

const char* Advice(int Code) {
  switch (Code) {
    case SQLITE_NOTADB:
      return "; give an SQLite 3 file that is not encrypted";
    case SQLITE_CORRUPT:
      return "; restore it from a copy or rescue it with .recover of the sqlite3 shell";
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return "; end the program that writes to it, or export a copy";
    case SQLITE_CANTOPEN:
    case SQLITE_READONLY:
      return "; a database in WAL mode, or one whose writer died, needs a folder that can be "
             "written: export a copy";
    case SQLITE_IOERR:
      return "; check the disk, or export a copy";
    case SQLITE_FULL:
      return "; make room in the folder for temporary files";
    default:
      return "";
  }
}

}  // namespace

std::string SqliteReason(sqlite3* Handle) {
  return std::string(sqlite3_errmsg(Handle)) + Advice(sqlite3_errcode(Handle) & 0xFF);
}

}  // namespace norva::internal
