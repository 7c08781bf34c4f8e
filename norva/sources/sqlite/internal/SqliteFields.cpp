#include <norva/sources/sqlite/internal/SqliteFields.h>

#include <charconv>
#include <optional>
#include <string_view>

#include <norva/platform/CodePages.h>
#include <norva/platform/DateTime.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Locale.h>
#include <norva/platform/Numbers.h>
#include <norva/sources/sqlite/internal/SqliteMessages.h>
#include <norva/sources/sqlite/internal/SqliteValues.h>

namespace norva::internal {
namespace {

constexpr int UndeclaredSize = 255;  // of texts without a declared length

// What a field is made of.
struct TColumn {
  TSqliteCursor& Cursor;
  int Index;
  std::string Name;
  TFieldType Type;
  int Size;  // 0 when none is declared
};

// What the fields have in common: where their values come from, and the error that names a value.
class TSqliteField : public TField {
 public:
  explicit TSqliteField(const TColumn& From)
      : TField(From.Name, From.Type, From.Size), Cursor_(From.Cursor), Column_(From.Index) {}

  bool IsNull() const final { return sqlite3_value_type(Cell()) == SQLITE_NULL; }

 protected:
  sqlite3_value* Cell() const { return Cursor_.Cell(Column_); }

  // In words, for the message: "whole numbers".
  virtual const char* Takes() const = 0;

  [[noreturn]] void Misfit(sqlite3_value* Cell) const {
    const char* const declared = sqlite3_column_decltype(Cursor_.Statement(), Column_);
    const bool says = declared && FieldTypeOf(declared) != ftUnknown;
    throw EDatabaseError(MsgSqliteMisfit, ColumnName(), Cursor_.Source(), Cursor_.RecNo(),
                         ValueInWords(Cell), says ? declared : "of the first row", Takes());
  }

  // In UTF-8, as all of a message is.
  const char* ColumnName() const { return sqlite3_column_name(Cursor_.Statement(), Column_); }

  TSqliteCursor& Cursor_;
  const int Column_;
};

class TTextField : public TSqliteField {
 public:
  using TSqliteField::TSqliteField;

  TFieldValue Value() const override {
    sqlite3_value* const cell = Cell();
    switch (sqlite3_value_type(cell)) {
      case SQLITE_TEXT:
        return TFieldValue::OfText(Converted(TextOf(cell)));
      case SQLITE_NULL:
        return {};
      case SQLITE_BLOB:
        return Blob(cell);
      default:
        return TFieldValue::OfText(NumberAsText(cell));
    }
  }

 protected:
  const char* Takes() const override { return "texts and numbers"; }
  virtual TFieldValue Blob(sqlite3_value* Cell) const { Misfit(Cell); }

 private:
  // Without a copy in UTF-8, which is how SQLite holds it.
  std::string_view Converted(std::string_view Utf8) const {
    if (Cursor_.Utf8()) return Utf8;
    Buffer_.clear();
    try {
      AppendFromUtf8(Utf8, Buffer_);
    } catch (const EConvertError& error) {
      throw EDatabaseError(MsgSqliteText, ColumnName(), Cursor_.Source(), Cursor_.RecNo(),
                           error.what());
    }
    return Buffer_;
  }

  // As AsString shows a number; SQLite's own text would cut a real to 15 digits.
  std::string_view NumberAsText(sqlite3_value* Cell) const {
    const bool whole = sqlite3_value_type(Cell) == SQLITE_INTEGER;
    Buffer_.clear();
    AppendFieldText(whole ? TFieldValue::OfInteger(sqlite3_value_int64(Cell))
                          : TFieldValue::OfFloat(sqlite3_value_double(Cell)),
                    whole ? ftLargeint : ftFloat, FormatSettings(), Buffer_);
    return Buffer_;
  }

  mutable std::string Buffer_;  // a text that is not as SQLite holds it; keeps its capacity
};

// Gives its bytes as they are stored.
class TBlobField final : public TTextField {
 public:
  using TTextField::TTextField;

 protected:
  TFieldValue Blob(sqlite3_value* Cell) const override {
    const auto* bytes = static_cast<const char*>(sqlite3_value_blob(Cell));
    return TFieldValue::OfText({bytes, static_cast<std::size_t>(sqlite3_value_bytes(Cell))});
  }
};

// On purpose: no check for 16 or 32 bits. SQLite stores 64 whatever is declared, and none is lost.
class TIntegerField final : public TSqliteField {
 public:
  using TSqliteField::TSqliteField;

  TFieldValue Value() const override {
    sqlite3_value* const cell = Cell();
    switch (sqlite3_value_type(cell)) {
      case SQLITE_INTEGER:
        return TFieldValue::OfInteger(sqlite3_value_int64(cell));
      case SQLITE_NULL:
        return {};
      case SQLITE_FLOAT:
        if (const auto value = WholeNumber(sqlite3_value_double(cell))) {
          return TFieldValue::OfInteger(*value);
        }
        break;
      case SQLITE_TEXT:
        if (const auto value = TextToInteger(TextOf(cell))) return TFieldValue::OfInteger(*value);
        break;
    }
    Misfit(cell);
  }

 protected:
  const char* Takes() const override { return "whole numbers"; }
};

// Reals; with `KeepsWhole` decimals and money, whose whole numbers stay whole, as a double would
// lose digits of large ones.
template <bool KeepsWhole>
class TNumberField final : public TSqliteField {
 public:
  using TSqliteField::TSqliteField;

  TFieldValue Value() const override {
    sqlite3_value* const cell = Cell();
    switch (sqlite3_value_type(cell)) {
      case SQLITE_INTEGER:
        if (KeepsWhole) return TFieldValue::OfInteger(sqlite3_value_int64(cell));
        [[fallthrough]];
      case SQLITE_FLOAT:
        return TFieldValue::OfFloat(sqlite3_value_double(cell));
      case SQLITE_NULL:
        return {};
      case SQLITE_TEXT:
        if (KeepsWhole) {
          if (const auto value = TextToInteger(TextOf(cell))) return TFieldValue::OfInteger(*value);
        }
        if (const auto value = TextToFloat(TextOf(cell))) return TFieldValue::OfFloat(*value);
        break;
    }
    Misfit(cell);
  }

 protected:
  const char* Takes() const override { return "numbers"; }
};
using TFloatField = TNumberField<false>;
using TDecimalField = TNumberField<true>;

class TBooleanField final : public TSqliteField {
 public:
  using TSqliteField::TSqliteField;

  TFieldValue Value() const override {
    sqlite3_value* const cell = Cell();
    switch (sqlite3_value_type(cell)) {
      case SQLITE_INTEGER:
        if (const std::int64_t value = sqlite3_value_int64(cell); value == 0 || value == 1) {
          return TFieldValue::OfBoolean(value == 1);
        }
        break;
      case SQLITE_NULL:
        return {};
      case SQLITE_TEXT:
        if (const auto value = TextToBoolean(TextOf(cell))) return TFieldValue::OfBoolean(*value);
        break;
    }
    Misfit(cell);
  }

 protected:
  const char* Takes() const override { return "0 and 1, true and false, t and f, yes and no"; }
};

class TDateTimeField final : public TSqliteField {
 public:
  using TSqliteField::TSqliteField;

  TFieldValue Value() const override {
    sqlite3_value* const cell = Cell();
    std::optional<TDateTime> value;
    switch (sqlite3_value_type(cell)) {
      case SQLITE_NULL:
        return {};
      case SQLITE_TEXT:
        if (const auto parts = TextToDateTime(TextOf(cell))) return TFieldValue::OfDateTime(*parts);
        break;
      case SQLITE_INTEGER:
        value = UnixToDateTime(sqlite3_value_int64(cell));
        break;
      case SQLITE_FLOAT:
        value = JulianToDateTime(sqlite3_value_double(cell));
        break;
    }
    if (!value) Misfit(cell);
    return TFieldValue::OfDateTime(*value);
  }

 protected:
  const char* Takes() const override {
    return "ISO 8601 texts such as 2024-01-31 13:45:00, Unix seconds and Julian days";
  }
};

// What a column without a telling declared type is taken for, by its first value.
TFieldType FieldTypeOf(sqlite3_value* Cell) {
  switch (sqlite3_value_type(Cell)) {
    case SQLITE_INTEGER:
      return ftLargeint;
    case SQLITE_FLOAT:
      return ftFloat;
    case SQLITE_BLOB:
      return ftBlob;
    default:
      return ftString;
  }
}

struct TTypeRule {
  const char* Part;  // of the declared type, in capitals
  TFieldType Type;
};
constexpr TTypeRule TypeRules[] = {
  // A column that may hold texts beside numbers, as public databases declare them: only a text
  // holds every value of it.
    {"_OR_TEXT",  ftString  },
    {"BOOL",      ftBoolean },
    {"DATETIME",  ftDateTime},
    {"TIMESTAMP", ftDateTime},
    {"DATE",      ftDate    },
    {"TIME",      ftTime    },
    {"MONEY",     ftCurrency},
    {"CURRENCY",  ftCurrency},
    {"DEC",       ftBCD     },
    {"NUMERIC",   ftBCD     },
    {"TINYINT",   ftSmallint},
    {"SMALLINT",  ftSmallint},
    {"INT2",      ftSmallint},
    {"BIGINT",    ftLargeint},
    {"INT8",      ftLargeint},
    {"INT",       ftInteger },
    {"CHAR",      ftString  },
    {"CLOB",      ftString  },
    {"TEXT",      ftString  },
    {"BLOB",      ftBlob    },
    {"REAL",      ftFloat   },
    {"FLOA",      ftFloat   },
    {"DOUB",      ftFloat   },
};

}  // namespace

TFieldType FieldTypeOf(const std::string& DeclaredType) {
  std::string type = DeclaredType;
  for (char& c : type) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  // The row key is declared so, and has 64 bits.
  if (type == "INTEGER") return ftLargeint;
  for (const TTypeRule& rule : TypeRules) {
    if (type.find(rule.Part) != std::string::npos) return rule.Type;
  }
  return ftUnknown;
}

int DeclaredSize(const std::string& DeclaredType) {
  int size = 0;
  const std::size_t bracket = DeclaredType.find('(');
  if (bracket == std::string::npos) return 0;
  const std::size_t digits = DeclaredType.find_first_not_of(' ', bracket + 1);
  if (digits == std::string::npos) return 0;
  std::from_chars(DeclaredType.data() + digits, DeclaredType.data() + DeclaredType.size(), size);
  return size > 0 ? size : 0;
}

std::unique_ptr<TField> MakeSqliteField(TSqliteCursor& Cursor, int Column, std::string FieldName) {
  const char* const declared = sqlite3_column_decltype(Cursor.Statement(), Column);
  const std::string declaredType = declared ? declared : "";
  TFieldType type = FieldTypeOf(declaredType);
  if (type == ftUnknown) type = FieldTypeOf(Cursor.Cell(Column));
  const int size = type == ftString ? DeclaredSize(declaredType) : 0;

  const TColumn column{Cursor, Column, std::move(FieldName), type, size};
  switch (type) {
    case ftSmallint:
    case ftInteger:
    case ftLargeint:
      return std::make_unique<TIntegerField>(column);
    case ftFloat:
      return std::make_unique<TFloatField>(column);
    case ftBCD:
    case ftCurrency:
      return std::make_unique<TDecimalField>(column);
    case ftBoolean:
      return std::make_unique<TBooleanField>(column);
    case ftDate:
    case ftTime:
    case ftDateTime:
      return std::make_unique<TDateTimeField>(column);
    case ftBlob:
      return std::make_unique<TBlobField>(column);
    default: {
      auto field = std::make_unique<TTextField>(column);
      // Only now: the width, which the constructor takes from the size, is that of no size.
      if (size == 0) field->Size = UndeclaredSize;
      return field;
    }
  }
}

}  // namespace norva::internal
