/* norva-peer-xmlwriter: the benchmark's rows as XML through libxml2's xmlTextWriter.
 *
 *   norva-peer-xmlwriter FILE OUT.xml
 *
 * The same document as Norva's: one empty ROW element a record, its values as attributes. The
 * values are those stored, as SQLite's own text, which costs less here than numbers through printf.
 * The writer goes straight to the file and keeps nothing. It is told that the text is UTF-8, or it
 * would write references for all letters outside ASCII.
 */

#include <stdio.h>
#include <stdlib.h>

#include <libxml/xmlwriter.h>
#include <sqlite3.h>

enum { MostColumns = 64 };

static void Fail(const char* what, const char* why) {
  fprintf(stderr, "norva-peer-xmlwriter: %s: %s\n", what, why);
  exit(1);
}

/* The writer's functions return bytes written, or -1. */
static void Check(int written) {
  if (written < 0) Fail("xmlTextWriter", "cannot write");
}

static const xmlChar* X(const char* text) { return (const xmlChar*)text; }

static void EndLine(xmlTextWriterPtr out) { Check(xmlTextWriterWriteRaw(out, X("\r\n"))); }

static void Start(xmlTextWriterPtr out, const char* tag) {
  Check(xmlTextWriterStartElement(out, X(tag)));
  EndLine(out);
}

static void End(xmlTextWriterPtr out) {
  Check(xmlTextWriterEndElement(out));
  EndLine(out);
}

static void Attribute(xmlTextWriterPtr out, const char* name, const char* value) {
  Check(xmlTextWriterWriteAttribute(out, X(name), X(value)));
}

static void WriteFields(xmlTextWriterPtr out, sqlite3_stmt* rows) {
  Start(out, "METADATA");
  Start(out, "FIELDS");
  for (int i = 0; i < sqlite3_column_count(rows); ++i) {
    Check(xmlTextWriterStartElement(out, X("FIELD")));
    Attribute(out, "FieldName", sqlite3_column_name(rows, i));
    Attribute(out, "DisplayLabel", sqlite3_column_name(rows, i));
    Attribute(out, "FieldType", sqlite3_column_decltype(rows, i));
    Attribute(out, "FieldClass", "TField");
    End(out);
  }
  End(out);
  End(out);
}

static void WriteRow(xmlTextWriterPtr out, sqlite3_stmt* rows, const char* const* names) {
  Check(xmlTextWriterStartElement(out, X("ROW")));
  for (int i = 0; i < sqlite3_data_count(rows); ++i) {
    const char* value = (const char*)sqlite3_column_text(rows, i);
    Attribute(out, names[i], value == NULL ? "null" : value);
  }
  End(out);
}

int main(int argc, char** argv) {
  if (argc != 3) Fail("usage", "norva-peer-xmlwriter FILE OUT.xml");
  sqlite3* db;
  sqlite3_stmt* rows;
  if (sqlite3_open_v2(argv[1], &db, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX, NULL) !=
          SQLITE_OK ||
      sqlite3_prepare_v2(db, "SELECT * FROM bench", -1, &rows, NULL) != SQLITE_OK) {
    Fail(argv[1], sqlite3_errmsg(db));
  }
  xmlTextWriterPtr out = xmlNewTextWriterFilename(argv[2], 0);
  if (out == NULL) Fail(argv[2], "cannot create");
  Check(xmlTextWriterStartDocument(out, "1.0", "UTF-8", "yes"));
  Check(xmlTextWriterStartElement(out, X("DATAPACKET")));
  Attribute(out, "Version", "2.0");
  EndLine(out);
  WriteFields(out, rows);
  Start(out, "ROWDATA");
  const char* names[MostColumns];
  const int columns = sqlite3_column_count(rows);
  if (columns > MostColumns) Fail(argv[1], "too many columns");
  for (int i = 0; i < columns; ++i) names[i] = sqlite3_column_name(rows, i);
  int step;
  while ((step = sqlite3_step(rows)) == SQLITE_ROW) WriteRow(out, rows, names);
  if (step != SQLITE_DONE) Fail(argv[1], sqlite3_errmsg(db));
  End(out);
  End(out);
  Check(xmlTextWriterEndDocument(out));
  xmlFreeTextWriter(out);
  sqlite3_finalize(rows);
  sqlite3_close(db);
  return 0;
}
