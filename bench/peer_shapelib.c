/* norva-peer-shapelib: the benchmark's rows as a DBF table through shapelib.
 *
 *   norva-peer-shapelib FILE OUT.dbf
 *
 * The fields are those that Norva makes of the table, one call of the library for each value.
 * Numbers go in as numbers; but an article has more digits than an int, and is written as the text
 * that SQLite gives. Texts stay UTF-8.
 */

#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <shapefil.h>
#include <sqlite3.h>

struct Field {
  const char* Name;
  char Type; /* as in the file; I: an N field, filled with ints */
  int Length, Decimals;
};

static const struct Field fields[] = {
    {"ID",       'I', 11, 0},
    {"CUSTOMER", 'C', 40, 0},
    {"CITY",     'C', 30, 0},
    {"PRODUCT",  'C', 60, 0},
    {"ARTICLE",  'C', 13, 0},
    {"QUANTITY", 'I', 11, 0},
    {"PRICE",    'N', 15, 4},
    {"WEIGHT",   'N', 15, 4},
    {"PAID",     'L', 1,  0},
    {"ORDERED",  'D', 8,  0},
    {"SHIPPED",  'D', 8,  0},
    {"NOTE",     'C', 80, 0}
};
enum { FieldCount = sizeof fields / sizeof *fields };

static void Fail(const char* what, const char* why) {
  fprintf(stderr, "norva-peer-shapelib: %s: %s\n", what, why);
  exit(1);
}

/* YYYY-MM-DD, and a time perhaps, as YYYYMMDD. */
static const char* Day(const char* iso) {
  static char day[9];
  memcpy(day, iso, 4);
  memcpy(day + 4, iso + 5, 2);
  memcpy(day + 6, iso + 8, 2);
  return day;
}

static void Put(DBFHandle table, int record, int at, sqlite3_stmt* rows) {
  if (sqlite3_column_type(rows, at) == SQLITE_NULL) {
    DBFWriteNULLAttribute(table, record, at);
    return;
  }
  switch (fields[at].Type) {
    case 'I':
      DBFWriteIntegerAttribute(table, record, at, sqlite3_column_int(rows, at));
      break;
    case 'N':
      DBFWriteDoubleAttribute(table, record, at, sqlite3_column_double(rows, at));
      break;
    case 'L':
      DBFWriteLogicalAttribute(table, record, at, sqlite3_column_int(rows, at) ? 'T' : 'F');
      break;
    case 'D':
      DBFWriteAttributeDirectly(table, record, at,
                                (void*)Day((const char*)sqlite3_column_text(rows, at)));
      break;
    default:
      DBFWriteStringAttribute(table, record, at, (const char*)sqlite3_column_text(rows, at));
  }
}

int main(int argc, char** argv) {
  if (argc != 3) Fail("usage", "norva-peer-shapelib FILE OUT.dbf");
  sqlite3* db;
  sqlite3_stmt* rows;
  if (sqlite3_open_v2(argv[1], &db, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX, NULL) !=
          SQLITE_OK ||
      sqlite3_prepare_v2(db, "SELECT * FROM bench", -1, &rows, NULL) != SQLITE_OK) {
    Fail(argv[1], sqlite3_errmsg(db));
  }
  DBFHandle table = DBFCreate(argv[2]);
  if (!table) Fail(argv[2], "cannot be created");
  for (int i = 0; i < FieldCount; ++i) {
    const char type = fields[i].Type == 'I' ? 'N' : fields[i].Type;
    if (DBFAddNativeFieldType(table, fields[i].Name, type, fields[i].Length, fields[i].Decimals) !=
        i) {
      Fail(fields[i].Name, "is no field");
    }
  }
  int step;
  for (int record = 0; (step = sqlite3_step(rows)) == SQLITE_ROW; ++record) {
    for (int i = 0; i < FieldCount; ++i) Put(table, record, i, rows);
  }
  if (step != SQLITE_DONE) Fail(argv[1], sqlite3_errmsg(db));
  DBFClose(table);
  sqlite3_finalize(rows);
  sqlite3_close(db);
  return 0;
}
