/* norva-floor: the lower bound of what any exporter can reach through SQLite.
 *
 *   norva-floor [--as-text] FILE > OUT.csv
 *
 * It steps through SELECT * FROM bench, touches every column once and writes the values as CSV:
 * texts as SQLite hands them over, integers and reals by their stored type, all through one big
 * buffer. It knows no pictures, no locale, no events and no other format. What it costs is the
 * price of SQLite and of writing the bytes; the distance from there to Norva is what Norva adds.
 *
 * With --as-text SQLite makes the text of the numbers too. That is the obvious short program, and
 * shows what asking for a number as text costs.
 *
 * SQLite is used in the cheapest way found that its documentation allows: without mutexes (values
 * of a connection without them may be read in place), each value fetched once and read by its type,
 * and the page cache as it comes, since a larger one only costs in a single pass and mapped pages
 * count as memory.
 */

#include <errno.h>
#include <math.h>
#include <stdbool.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <sqlite3.h>

enum {
  BufferSize = 256 * 1024,
  /* The longest number: a sign, 17 digits, a point, an exponent of five characters. */
  NumberSize = 32
};

static char buffer[BufferSize];
static size_t used;

static void Fail(const char* what, const char* why) {
  fprintf(stderr, "norva-floor: %s: %s\n", what, why);
  exit(1);
}

static void WriteOut(const char* data, size_t size) {
  while (size > 0) {
    const ssize_t written = write(STDOUT_FILENO, data, size);
    if (written < 0 && errno != EINTR) Fail("cannot write", strerror(errno));
    if (written > 0) {
      data += written;
      size -= (size_t)written;
    }
  }
}

static void Flush(void) {
  WriteOut(buffer, used);
  used = 0;
}

/* A place for `size` more bytes, at most BufferSize of them. */
static char* Reserve(size_t size) {
  if (used + size > BufferSize) Flush();
  return buffer + used;
}

static void PutByte(char byte) {
  *Reserve(1) = byte;
  ++used;
}

static char* PutDigits(char* out, uint64_t value, int atLeast) {
  char digits[NumberSize];
  char* first = digits + NumberSize;
  for (; value > 0 || atLeast > 0; value /= 10, --atLeast) *--first = (char)('0' + value % 10);
  const size_t count = (size_t)(digits + NumberSize - first);
  memcpy(out, first, count);
  return out + count;
}

static void PutInteger(int64_t value) {
  char* out = Reserve(NumberSize);
  uint64_t magnitude = (uint64_t)value;
  if (value < 0) {
    *out++ = '-';
    magnitude = 0 - magnitude;
  }
  used = (size_t)(PutDigits(out, magnitude, 1) - buffer);
}

/* A real that is a whole number of 10ths, 100ths ... is printed as that number. The quotient of two
 * exact values is the double nearest to the decimal text, so the text reads back to `value`. */
static void PutReal(double value) {
  static const double scales[] = {1, 10, 100, 1000, 10000, 100000, 1000000};
  static const double exactLimit = 4503599627370496.0; /* 2^52 */
  char* out = Reserve(NumberSize);
  const double magnitude = fabs(value);
  for (int decimals = 0; decimals < 7; ++decimals) {
    const double scaled = magnitude * scales[decimals];
    if (!(scaled < exactLimit)) break;
    const uint64_t whole = (uint64_t)(scaled + 0.5);
    if ((double)whole / scales[decimals] != magnitude) continue;
    if (value < 0) *out++ = '-';
    const uint64_t scale = (uint64_t)scales[decimals];
    out = PutDigits(out, whole / scale, 1);
    if (decimals > 0) {
      *out++ = '.';
      out = PutDigits(out, whole % scale, decimals);
    }
    used = (size_t)(out - buffer);
    return;
  }
  used += (size_t)snprintf(out, NumberSize, "%.17g", value);
}

/* A text longer than half the buffer, character by character. */
static void PutLongText(const char* text, size_t size) {
  PutByte('"');
  for (size_t i = 0; i < size; ++i) {
    char* out = Reserve(2);
    *out++ = text[i];
    if (text[i] == '"') *out++ = '"';
    used = (size_t)(out - buffer);
  }
  PutByte('"');
}

/* Every text is quoted: copying it and looking for quotes in it is one pass. */
static void PutText(const char* text, size_t size) {
  if (size > BufferSize / 2 - 1) {
    PutLongText(text, size);
    return;
  }
  char* out = Reserve(2 * size + 2);
  *out++ = '"';
  const char* end = text + size;
  const char* quote;
  while ((quote = memchr(text, '"', (size_t)(end - text))) != NULL) {
    const size_t count = (size_t)(quote - text) + 1;
    memcpy(out, text, count);
    out += count;
    *out++ = '"';
    text = quote + 1;
  }
  memcpy(out, text, (size_t)(end - text));
  out += end - text;
  *out++ = '"';
  used = (size_t)(out - buffer);
}

static void PutValue(sqlite3_value* value, bool asText) {
  const int type = sqlite3_value_type(value);
  switch (asText && type != SQLITE_NULL ? SQLITE_TEXT : type) {
    case SQLITE_INTEGER:
      PutInteger(sqlite3_value_int64(value));
      break;
    case SQLITE_FLOAT:
      PutReal(sqlite3_value_double(value));
      break;
    case SQLITE_TEXT: {
      const char* text = (const char*)sqlite3_value_text(value);
      PutText(text, (size_t)sqlite3_value_bytes(value));
      break;
    }
    case SQLITE_BLOB: {
      const char* bytes = sqlite3_value_blob(value);
      PutText(bytes, (size_t)sqlite3_value_bytes(value));
      break;
    }
    default:
      break; /* null: nothing between the commas */
  }
}

int main(int argc, char** argv) {
  const bool asText = argc > 1 && strcmp(argv[1], "--as-text") == 0;
  if (argc != (asText ? 3 : 2)) {
    fprintf(stderr, "usage: norva-floor [--as-text] FILE > OUT.csv\n");
    return 2;
  }
  const char* fileName = argv[argc - 1];
  sqlite3* database;
  sqlite3_stmt* statement;
  sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
  const int flags = SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX;
  if (sqlite3_open_v2(fileName, &database, flags, NULL) != SQLITE_OK ||
      sqlite3_prepare_v2(database, "SELECT * FROM bench", -1, &statement, NULL) != SQLITE_OK) {
    Fail(fileName, sqlite3_errmsg(database));
  }
  const int columns = sqlite3_column_count(statement);
  int state;
  while ((state = sqlite3_step(statement)) == SQLITE_ROW) {
    for (int column = 0; column < columns; ++column) {
      if (column > 0) PutByte(',');
      PutValue(sqlite3_column_value(statement, column), asText);
    }
    PutByte('\n');
  }
  if (state != SQLITE_DONE) Fail(fileName, sqlite3_errmsg(database));
  Flush();
  sqlite3_finalize(statement);
  sqlite3_close(database);
  return 0;
}
