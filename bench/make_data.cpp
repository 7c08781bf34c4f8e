// norva-make-data: writes the database that the benchmarks export.
//
//   norva-make-data ROWS FILE
//
//   CREATE TABLE bench(
//     id        INTEGER PRIMARY KEY,   1, 2, 3 ...
//     customer  VARCHAR(40),           "Astrid Jørgensen"
//     city      VARCHAR(30),           letters of Latin-1, as UTF-8
//     product   VARCHAR(60),           "Desk lamp, brass", "Monitor 27\" wide"
//     article   BIGINT,                thirteen digits
//     quantity  INT,                   mostly small
//     price     MONEY,                 two decimals; SQLite keeps a whole amount as an integer
//     weight    REAL,                  kilograms, three decimals
//     paid      BOOLEAN,               0 or 1
//     ordered   DATE,                  ISO text
//     shipped   DATETIME,              ISO text; null while the order waits
//     note      VARCHAR(80))           mostly null; some with commas and quotes
//
// The same ROWS give the same rows on every machine, so that runs of different days can be
// compared. The file is an ordinary one with a rollback journal, to be opened read-only.

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

#include <sqlite3.h>

namespace {

constexpr const char* CreateTable =
    "CREATE TABLE bench(id INTEGER PRIMARY KEY, customer VARCHAR(40), city VARCHAR(30), "
    "product VARCHAR(60), article BIGINT, quantity INT, price MONEY, weight REAL, paid BOOLEAN, "
    "ordered DATE, shipped DATETIME, note VARCHAR(80))";
constexpr const char* InsertRow = "INSERT INTO bench VALUES(?,?,?,?,?,?,?,?,?,?,?,?)";

constexpr std::string_view FirstNames[] = {
    "Anna",   "Astrid", "Bernd",  "Björn", "Chloé",  "David",   "Elena",  "Émile",  "Frida",
    "Georg",  "Hélène", "Ingrid", "Iñigo", "Jürgen", "Katrin",  "Lars",   "Léa",    "Martín",
    "Noémie", "Olga",   "Pedro",  "René",  "Søren",  "Thérèse", "Ursula", "Victor", "Zoë"};
constexpr std::string_view LastNames[] = {
    "Andersson", "Becker", "Castañeda", "da Conceição", "Dupont",  "Fernández", "García",
    "Hansen",    "Ibáñez", "Jørgensen", "Köhler",       "Lefèvre", "Lindström", "Müller",
    "Núñez",     "Olsen",  "Pérez",     "Rossi",        "Schäfer", "Smith",     "Sørensen",
    "Taylor",    "Weiß",   "Viçosa",    "Ångström",     "O'Brien"};
constexpr std::string_view Cities[] = {
    "Aarhus",   "Besançon", "Córdoba",   "Düsseldorf", "Göteborg",    "Graz",          "Köln",
    "Lisboa",   "London",   "Lyon",      "Málaga",     "Malmö",       "München",       "Nîmes",
    "Nürnberg", "Orléans",  "Reykjavík", "Roma",       "Saarbrücken", "San Sebastián", "São Paulo",
    "Tromsø",   "Umeå",     "Würzburg",  "Zürich"};
constexpr std::string_view Goods[] = {
    "Bookcase",        "Chair",      "Coffee grinder", "Desk lamp",
    "Electric kettle", "Frying pan", "Garden hose",    "Headphones",
    "Monitor",         "Notebook",   "Office desk",    "Picture frame",
    "Radio",           "Shelf",      "Toolbox",        "Vacuum flask"};
constexpr std::string_view Variants[] = {
    "",        ", brass",     ", oak, oiled", " 10\"",   " 27\" wide",       " \"Classic\"",
    ", black", " (set of 4)", " 2 m",         ", 1.5 l", " \"Nova\", white", ""};
constexpr std::string_view Notes[] = {"gift wrapping",
                                      "call before delivery",
                                      "leave with the neighbours, please",
                                      "customer asked for \"express\" and paid for it",
                                      "second attempt",
                                      "Rückgabe möglich",
                                      "invoice to the head office, not to the shop"};

/// SplitMix64: small, fast, and the same on every machine.
class TRandom {
 public:
  std::uint64_t Next() {
    State_ += 0x9E3779B97F4A7C15;
    std::uint64_t z = State_;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
    return z ^ (z >> 31);
  }
  /// 0 to `Limit` - 1.
  std::uint64_t Below(std::uint64_t Limit) { return Next() % Limit; }
  bool OneIn(std::uint64_t Count) { return Below(Count) == 0; }
  template <std::size_t Count>
  std::string_view Pick(const std::string_view (&List)[Count]) {
    return List[Below(Count)];
  }

 private:
  std::uint64_t State_ = 20240131;
};

void AppendTwoDigits(std::uint64_t Value, std::string& Out) {
  Out += static_cast<char>('0' + Value / 10);
  Out += static_cast<char>('0' + Value % 10);
}

/// A day of 2015 to 2024. Days beyond the 28th are left out: every month has the others.
void AppendDate(TRandom& Random, std::string& Out) {
  Out += "20";
  AppendTwoDigits(15 + Random.Below(10), Out);
  Out += '-';
  AppendTwoDigits(1 + Random.Below(12), Out);
  Out += '-';
  AppendTwoDigits(1 + Random.Below(28), Out);
}

void AppendTime(TRandom& Random, std::string& Out) {
  AppendTwoDigits(6 + Random.Below(16), Out);
  Out += ':';
  AppendTwoDigits(Random.Below(60), Out);
  Out += ':';
  AppendTwoDigits(Random.Below(60), Out);
}

/// The database being written. Every call that fails throws with SQLite's own message.
class TDatabase {
 public:
  explicit TDatabase(const char* FileName) {
    Check(sqlite3_open(FileName, &Handle_));
    // A benchmark file that a crash spoils is made again: no waiting for the disk.
    Run("PRAGMA journal_mode = DELETE; PRAGMA synchronous = OFF");
  }
  ~TDatabase() { sqlite3_close_v2(Handle_); }
  TDatabase(const TDatabase&) = delete;
  TDatabase& operator=(const TDatabase&) = delete;

  void Check(int Result) const {
    if (Result != SQLITE_OK && Result != SQLITE_DONE) {
      throw std::runtime_error(sqlite3_errmsg(Handle_));
    }
  }
  void Run(const char* Sql) const { Check(sqlite3_exec(Handle_, Sql, nullptr, nullptr, nullptr)); }
  sqlite3* Handle() const { return Handle_; }

 private:
  sqlite3* Handle_ = nullptr;
};

/// The prepared INSERT. Texts are bound without a copy: they must live until Step.
class TInsert {
 public:
  explicit TInsert(const TDatabase& Database) : Database_(Database) {
    Database.Check(sqlite3_prepare_v2(Database.Handle(), InsertRow, -1, &Statement_, nullptr));
  }
  ~TInsert() { sqlite3_finalize(Statement_); }
  TInsert(const TInsert&) = delete;
  TInsert& operator=(const TInsert&) = delete;

  void Integer(int Column, std::uint64_t Value) {
    sqlite3_bind_int64(Statement_, Column, static_cast<sqlite3_int64>(Value));
  }
  void Real(int Column, double Value) { sqlite3_bind_double(Statement_, Column, Value); }
  void Null(int Column) { sqlite3_bind_null(Statement_, Column); }
  void Text(int Column, std::string_view Value) {
    sqlite3_bind_text(Statement_, Column, Value.data(), static_cast<int>(Value.size()),
                      SQLITE_STATIC);
  }
  void Step() {
    Database_.Check(sqlite3_step(Statement_));
    Database_.Check(sqlite3_reset(Statement_));
  }

 private:
  const TDatabase& Database_;
  sqlite3_stmt* Statement_ = nullptr;
};

struct TTexts {
  std::string Customer, Product, Ordered, Shipped;
};

void InsertOrder(std::uint64_t Id, TRandom& Random, TTexts& Texts, TInsert& Insert) {
  Insert.Integer(1, Id);
  Texts.Customer.assign(Random.Pick(FirstNames)).append(" ").append(Random.Pick(LastNames));
  Insert.Text(2, Texts.Customer);
  Insert.Text(3, Random.Pick(Cities));
  Texts.Product.assign(Random.Pick(Goods)).append(Random.Pick(Variants));
  Insert.Text(4, Texts.Product);
  Insert.Integer(5, 4000000000000 + Random.Below(999999999999));
  Insert.Integer(6, Random.OneIn(20) ? 1 + Random.Below(500) : 1 + Random.Below(12));
  Insert.Real(7, static_cast<double>(199 + Random.Below(250000)) / 100);
  Insert.Real(8, static_cast<double>(20 + Random.Below(40000)) / 1000);
  Insert.Integer(9, Random.OneIn(5) ? 0 : 1);
  Texts.Ordered.clear();
  AppendDate(Random, Texts.Ordered);
  Insert.Text(10, Texts.Ordered);
  if (Random.OneIn(6)) {
    Insert.Null(11);
  } else {
    // The day of the order is as good as any: a benchmark counts no days.
    Texts.Shipped.assign(Texts.Ordered).append(" ");
    AppendTime(Random, Texts.Shipped);
    Insert.Text(11, Texts.Shipped);
  }
  if (Random.OneIn(3)) {
    Insert.Text(12, Random.Pick(Notes));
  } else {
    Insert.Null(12);
  }
  Insert.Step();
}

void MakeData(std::uint64_t Rows, const char* FileName) {
  std::filesystem::remove(FileName);
  const TDatabase database(FileName);
  database.Run(CreateTable);
  database.Run("BEGIN");
  {
    TInsert insert(database);
    TRandom random;
    TTexts texts;
    for (std::uint64_t id = 1; id <= Rows; ++id) InsertOrder(id, random, texts, insert);
  }
  database.Run("COMMIT");
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view rowsText = argc == 3 ? argv[1] : "";
  std::uint64_t rows = 0;
  const char* end = rowsText.data() + rowsText.size();
  const auto [stop, error] = std::from_chars(rowsText.data(), end, rows);
  if (rowsText.empty() || error != std::errc() || stop != end) {
    std::fprintf(stderr, "usage: norva-make-data ROWS FILE\n");
    return 2;
  }
  try {
    MakeData(rows, argv[2]);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "norva-make-data: %s: %s\n", argv[2], failure.what());
    return 1;
  }
  return 0;
}
