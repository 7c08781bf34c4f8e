/* norva-peer-xlsxwriter: the benchmark's rows as a workbook through libxlsxwriter.
 *
 *   norva-peer-xlsxwriter FILE OUT.xlsx
 *
 * Constant-memory mode, the fastest way that library has. Numbers are written as numbers, texts
 * (dates, too, as they are stored) as texts; no formats.
 */

#include <stdio.h>
#include <stdlib.h>

#include <sqlite3.h>
#include <xlsxwriter.h>

static void Fail(const char* what, const char* why) {
  fprintf(stderr, "norva-peer-xlsxwriter: %s: %s\n", what, why);
  exit(1);
}

int main(int argc, char** argv) {
  if (argc != 3) Fail("usage", "norva-peer-xlsxwriter FILE OUT.xlsx");
  sqlite3* db;
  sqlite3_stmt* rows;
  if (sqlite3_open_v2(argv[1], &db, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX, NULL) !=
          SQLITE_OK ||
      sqlite3_prepare_v2(db, "SELECT * FROM bench LIMIT 65000", -1, &rows, NULL) != SQLITE_OK) {
    Fail(argv[1], sqlite3_errmsg(db));
  }
  lxw_workbook_options options = {.constant_memory = LXW_TRUE};
  lxw_workbook* book = workbook_new_opt(argv[2], &options);
  lxw_worksheet* sheet = workbook_add_worksheet(book, NULL);
  const int columns = sqlite3_column_count(rows);
  for (int i = 0; i < columns; ++i) {
    worksheet_write_string(sheet, 0, (lxw_col_t)i, sqlite3_column_name(rows, i), NULL);
  }
  int step;
  for (lxw_row_t row = 1; (step = sqlite3_step(rows)) == SQLITE_ROW; ++row) {
    for (int i = 0; i < columns; ++i) {
      const lxw_col_t column = (lxw_col_t)i;
      switch (sqlite3_column_type(rows, i)) {
        case SQLITE_INTEGER:
        case SQLITE_FLOAT:
          worksheet_write_number(sheet, row, column, sqlite3_column_double(rows, i), NULL);
          break;
        case SQLITE_TEXT:
          worksheet_write_string(sheet, row, column, (const char*)sqlite3_column_text(rows, i),
                                 NULL);
          break;
        default:
          break;
      }
    }
  }
  if (step != SQLITE_DONE) Fail(argv[1], sqlite3_errmsg(db));
  const lxw_error error = workbook_close(book);
  if (error != LXW_NO_ERROR) Fail(argv[2], lxw_strerror(error));
  sqlite3_finalize(rows);
  sqlite3_close(db);
  return 0;
}
