#include <norva/formats/database/Norvasql.h>

#include <algorithm>

#include <norva/platform/CodePages.h>
#include <norva/platform/Locale.h>
#include <norva/platform/Property.h>

namespace norva {
namespace {

bool IsDigit(char C) { return C >= '0' && C <= '9'; }

/// Databases take letters beyond ASCII, whatever their code page, without quotes.
bool IsNameChar(char C) {
  return (C >= 'a' && C <= 'z') || (C >= 'A' && C <= 'Z') || IsDigit(C) || C == '_' ||
         static_cast<unsigned char>(C) > 127;
}

bool IsName(std::string_view S) {
  if (S.size() > 2 && S.front() == '"' && S.back() == '"') {
    return S.find('"', 1) == S.size() - 1;
  }
  return !S.empty() && !IsDigit(S.front()) && std::all_of(S.begin(), S.end(), IsNameChar);
}

/// A name, or several with points between: schema.table.
bool IsTableName(std::string_view S) {
  const std::size_t quoted = S.starts_with('"') ? S.find('"', 1) : 0;
  const std::size_t point = S.find('.', std::min(quoted, S.size()));
  if (point == std::string_view::npos) return IsName(S);
  return IsName(S.substr(0, point)) && IsTableName(S.substr(point + 1));
}

std::string_view Trimmed(std::string_view S) {
  const auto isBlank = [](char c) { return static_cast<unsigned char>(c) <= ' '; };
  while (!S.empty() && isBlank(S.front())) S.remove_prefix(1);
  while (!S.empty() && isBlank(S.back())) S.remove_suffix(1);
  return S;
}

bool IsQuoted(TNorvaColType Type) {
  return Type == ectString || Type == ectDate || Type == ectTime || Type == ectDateTime;
}

/// Doubles the quotes in `Text` from `Start` on; from the back, so that each byte moves once.
void DoubleQuotes(std::size_t Start, std::string& Text) {
  const auto count =
      std::count(Text.begin() + static_cast<std::ptrdiff_t>(Start), Text.end(), '\'');
  std::size_t from = Text.size();
  Text.append(static_cast<std::size_t>(count), '\'');
  for (std::size_t to = Text.size(); from < to;) {
    const char c = Text[--from];
    Text[--to] = c;
    if (c == '\'') Text[--to] = c;
  }
}

/// Makes `Separator` a point while this lives.
class TDecimalPoint {
 public:
  explicit TDecimalPoint(char& Separator) : Separator_(Separator), Saved_(Separator) {
    Separator_ = '.';
  }
  ~TDecimalPoint() { Separator_ = Saved_; }
  TDecimalPoint(const TDecimalPoint&) = delete;
  TDecimalPoint& operator=(const TDecimalPoint&) = delete;

 private:
  char& Separator_;
  char Saved_;
};

}  // namespace

const TPropertyList& TNorvaSQL::Properties() const {
  using S = TNorvaSQL;
  static const TPropertyList list(
      TNorvaAdvancedText::Properties(),
      {
          Published("CommitAfterScript", &S::CommitAfterScript, false),
          Published("CreateTable", &S::CreateTable, false),
          Published("StatementTerm", &S::StatementTerm, ';'),
          Published("CommitRecCount", &S::CommitRecCount, 0),
          Published("CommitStatement", &S::CommitStatement, "COMMIT WORK;"),
          Published("TableName", &S::TableName, ""),
      });
  return list;
}

void TNorvaSQL::BeginExport() {
  TNorvaAdvancedText::BeginExport();
  Separator_ = &FormatSettings().DecimalSeparator;
  CheckNames();
  for (const std::string& line : Header) GetWriter().WriteLn(line);
  if (CreateTable && !TableName.empty()) WriteCreateTable();
  ColumnList_.clear();
  for (int i = 0; i < Columns.Count(); ++i) {
    if (i > 0) ColumnList_ += ',';
    ColumnList_ += Columns[i].Name;
  }
  Insert_ = "INSERT INTO " + TableName + "\r\n  (" + ColumnList_ + ")\r\nVALUES(";
}

void TNorvaSQL::CheckNames() {
  if (!IsTableName(TableName)) UnsafeText(TableName);
  for (int i = 0; i < Columns.Count(); ++i) {
    if (!IsName(Columns[i].Name)) UnsafeText(Columns[i].Name);
  }
}

void TNorvaSQL::WriteCreateTable() {
  GetWriter().WriteLn("CREATE TABLE " + TableName + "(");
  std::string text;
  for (int i = 0; i < Columns.Count(); ++i) {
    if (i > 0) text += ",\r\n";
    text += "  " + Columns[i].Name + "  " + Columns[i].SQLType;
  }
  GetWriter().WriteLn(text + ");\r\n");
}

void TNorvaSQL::WriteDataRow() {
  std::string& row = RowBuffer();
  row.clear();
  GetDataRow(false, row);
  row += "\r\n\r\n";
  // On purpose: RecordCounter is 0 for the first record; commits follow records 1, N + 1, 2N + 1.
  if (CommitRecCount > 0 && RecordCounter % CommitRecCount == 0 && !CommitStatement.empty()) {
    row += CommitStatement;
    row += "\r\n\r\n";
  }
  GetWriter().Write(row);
}

void TNorvaSQL::GetDataRow(bool NeedFormat, std::string& Row) {
  Row += Insert_;
  const std::size_t start = Row.size();
  TNorvaAdvancedText::GetDataRow(NeedFormat, Row);
  if (Row.size() > start) Row.pop_back();  // the last value's comma
  Row += ')';
  Row += StatementTerm;
}

void TNorvaSQL::GetColData(int Index, bool NeedFormat, std::string& Text) {
  // Handlers are not called for null; without them the fetch itself finds it.
  if (OnGetExportText && ColIsNull(Index)) {
    Text += Formats.NullString;
  } else {
    const TDecimalPoint point(*Separator_);
    AppendLiteral(Index, NeedFormat, Text);
  }
  Text += ',';
}

void TNorvaSQL::AppendLiteral(int Index, bool NeedFormat, std::string& Text) {
  const TNorvaColType type = Columns[Index].ColType;
  const bool quoted = IsQuoted(type);
  if (quoted) Text += '\'';
  const std::size_t start = Text.size();
  if (!GetColDataSt(Index, NeedFormat, Text)) {
    if (quoted) Text.erase(start - 1, 1);
  } else if (quoted) {
    CloseQuotes(start, Text);
  } else if (type == ectBoolean) {
    ReplaceBoolean(Index, NeedFormat, start, Text);
  } else {
    CheckNumber(std::string_view(Text).substr(start));
  }
}

/// Doubles the quotes in `Text` from `Start` on and adds the closing one.
void TNorvaSQL::CloseQuotes(std::size_t Start, std::string& Text) {
  const std::string_view value = std::string_view(Text).substr(Start);
  if (value.find('\0') != std::string_view::npos) UnsafeText(value);
  const std::size_t quote = Text.find('\'', Start);
  if (quote != std::string::npos) DoubleQuotes(quote, Text);
  Text += '\'';
}

void TNorvaSQL::ReplaceBoolean(int Index, bool NeedFormat, std::size_t Start, std::string& Text) {
  if (NeedFormat || OnGetExportText) {  // else it would be the same text again
    Text.resize(Start);
    GetColDataSt(Index, false, Text);
  }
  const bool isTrue = CompareText(Trimmed(std::string_view(Text).substr(Start)), "true") == 0;
  Text.resize(Start);
  Text += isTrue ? Formats.BooleanTrue() : Formats.BooleanFalse();
}

void TNorvaSQL::CheckNumber(std::string_view Value) {
  if (Value.empty() || !IsDigit(Value.back())) UnsafeText(Value);
}

void TNorvaSQL::EndExport() {
  if (CommitAfterScript && !CommitStatement.empty()) GetWriter().WriteLn(CommitStatement);
  for (const std::string& line : Footer) GetWriter().WriteLn(line);
  TNorvaAdvancedText::EndExport();
}

}  // namespace norva
