#include <norva/core/NorvaColumns.h>

#include <algorithm>

#include <norva/core/Norva.h>
#include <norva/core/internal/SourceAdapter.h>
#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Format.h>
#include <norva/platform/Messages.h>

namespace norva {
namespace {

/// The user's value for `Name` in a `name=value` list; null when there is no entry.
std::optional<std::string> UserValue(const TStringList& List, const std::string& Name) {
  const int index = List.IndexOfName(Name);
  return index < 0 ? std::nullopt : std::optional(List.ValueFromIndex(index));
}

std::int32_t CharWidth(std::string_view Text) { return static_cast<std::int32_t>(CharCount(Text)); }

}  // namespace

void TNorvaColumn::SetFormat(std::string Value) {
  Format_ = std::move(Value);
  Number_.reset();
  Date_.reset();
}

TNorvaColumn& TNorvaColumns::Add() {
  Items_.push_back(std::make_unique<TNorvaColumn>());
  return *Items_.back();
}

void TNorvaColumns::Delete(int Index) {
  if (Index < 0 || Index >= Count()) IndexError(Index);
  Items_.erase(Items_.begin() + Index);
}

void TNorvaColumns::IndexError(int Index) { throw EListError(MsgListIndex, Index); }

void TNorvaColumns::Fill() {
  Exporter_.CheckExportSource();
  const int listed = Exporter_.ExportedFields.Count();
  const int count = listed > 0 ? listed : Exporter_.Source().ColumnCount();
  for (int i = 0; i < count; ++i) {
    const int number = SetColumnNumber(i);
    if (number == -1) return;
    Add().Number = number;
    // In this order: all but the type look the column up by its name, and the format, the
    // alignment and the SQL type depend on the type.
    SetColumnName(i);
    SetColumnType(i);
    SetColumnCaption(i);
    SetColumnWidth(i);
    SetColumnFormat(i);
    SetColumnAlign(i);
    SetColumnSQLType(i);
    SetColumnLength(i);
  }
}

int TNorvaColumns::SetColumnNumber(int Index) const {
  const TStringList& fields = Exporter_.ExportedFields;
  return fields.Empty() ? Exporter_.Source().NumberAt(Index)
                        : Exporter_.Source().NumberOf(fields[Index]);
}

void TNorvaColumns::SetColumnName(int Index) {
  TNorvaColumn& column = (*this)[Index];
  column.Name = Exporter_.Source().ColumnName(column.Number);
}

void TNorvaColumns::SetColumnType(int Index) {
  TNorvaColumn& column = (*this)[Index];
  column.ColType = Exporter_.Source().ColumnType(column.Number);
  column.FieldType = Exporter_.Source().FieldType(column.Number);
}

void TNorvaColumns::SetColumnCaption(int Index) {
  TNorvaColumn& column = (*this)[Index];
  const auto user = UserValue(Exporter_.Captions, column.Name);
  column.Caption = user ? *user : Exporter_.Source().ColumnCaption(column.Number);
}

void TNorvaColumns::SetColumnWidth(int Index) {
  TNorvaColumn& column = (*this)[Index];
  const auto user = UserValue(Exporter_.ColumnsWidth, column.Name);
  column.Width = user ? StrToIntDef(*user, 0) : Exporter_.Source().ColumnWidth(column.Number);
}

void TNorvaColumns::SetColumnFormat(int Index) {
  TNorvaColumn& column = (*this)[Index];
  const TNorvaFormats& formats = Exporter_.Formats;
  switch (column.ColType) {
    case ectInteger:
      column.SetFormat(formats.IntegerFormat());
      break;
    case ectFloat:
      column.SetFormat(formats.FloatFormat());
      break;
    case ectCurrency:
      column.SetFormat(formats.CurrencyFormat());
      break;
    case ectDate:
      column.SetFormat(formats.DateFormat());
      break;
    case ectTime:
      column.SetFormat(formats.TimeFormat());
      break;
    case ectDateTime:
      column.SetFormat(formats.DateTimeFormat());
      break;
    case ectString:
    case ectBoolean:
    case ectUnknown:
      column.SetFormat({});
      break;
  }
  if (const auto user = UserValue(Exporter_.UserFormats, column.Name)) column.SetFormat(*user);
}

void TNorvaColumns::SetColumnAlign(int Index) {
  TNorvaColumn& column = (*this)[Index];
  if (const auto user = UserValue(Exporter_.ColumnsAlign, column.Name)) {
    const std::string value = UpperCase(*user);
    const char letter = value.empty() ? '\0' : value.front();
    column.Align = letter == 'C' ? ecaCenter : letter == 'R' ? ecaRight : ecaLeft;
  } else {
    column.Align = column.IsNumeric()             ? ecaRight
                   : column.ColType == ectBoolean ? ecaCenter
                                                  : ecaLeft;
  }
}

void TNorvaColumns::SetColumnSQLType(int Index) {
  TNorvaColumn& column = (*this)[Index];
  column.SQLType = Exporter_.Source().ColumnSQLType(column.Number);
}

void TNorvaColumns::SetColumnLength(int Index) {
  TNorvaColumn& column = (*this)[Index];
  column.Length = column.IsString() ? Exporter_.Source().ColumnLength(column) : 0;
}

void TNorvaColumns::AutoCalcColWidth() {
  for (const auto& column : Items_) {
    column->Width = std::max(column->Width, CharWidth(column->Caption));
  }
  const TBookmark bookmark = Exporter_.GetBookmark();
  Guarded(
      [&] {
        Exporter_.First();
        Exporter_.Skip(Exporter_.SkipRecCount);
        Exporter_.RecordCounter = 0;
        while (Exporter_.MoreRecords()) {
          WidenToRecord();
          Exporter_.Next();
          if (Exporter_.OnFetchedRecord) Exporter_.OnFetchedRecord(*this, Exporter_.RecordCounter);
        }
      },
      [&] {
        Exporter_.GoToBookmark(bookmark);
        Exporter_.FreeBookmark(bookmark);
      });
}

void TNorvaColumns::WidenToRecord() {
  std::string& text = Exporter_.RowBuffer();
  for (int i = 0; i < Count(); ++i) {
    if (Exporter_.SurelyFits(i)) continue;
    text.clear();
    Exporter_.GetColDataSt(i, true, text);
    TNorvaColumn& column = (*this)[i];
    // A text has no more characters than bytes.
    if (text.size() > static_cast<std::size_t>(std::max(column.Width, 0))) {
      column.Width = std::max(column.Width, CharWidth(text));
    }
  }
}

int TNorvaColumns::IndexOfName(std::string_view Name) const {
  const auto found = std::find_if(Items_.begin(), Items_.end(), [Name](const auto& column) {
    return SameText(column->Name, Name);
  });
  return found == Items_.end() ? -1 : static_cast<int>(found - Items_.begin());
}

void TNorvaColumns::EmptyTags() {
  for (const auto& column : Items_) column->Tag = 0;
}

TNorvaColType DataType2NorvaColType(const TField* Field) {
  switch (Field ? Field->DataType : ftUnknown) {
    case ftString:
    case ftBlob:
    case ftMemo:
    case ftWideString:
      return ectString;
    case ftSmallint:
    case ftInteger:
    case ftWord:
    case ftAutoInc:
    case ftLargeint:
      return ectInteger;
    case ftBoolean:
      return ectBoolean;
    case ftFloat:
    case ftBCD:
      return ectFloat;
    case ftCurrency:
      return ectCurrency;
    case ftDate:
      return ectDate;
    case ftTime:
      return ectTime;
    case ftDateTime:
      return ectDateTime;
    default:
      return ectUnknown;
  }
}

std::string DataType2SQLType(const TField* Field) {
  switch (Field ? Field->DataType : ftUnknown) {
    case ftString:
    case ftWideString:
      return Format("CHAR(%d)", Field->Size);
    case ftSmallint:
    case ftInteger:
    case ftWord:
    case ftBoolean:
    case ftLargeint:
      return "INTEGER";
    case ftFloat:
    case ftCurrency:
    case ftBCD:
      return "DOUBLE PRECISION";
    case ftDate:
    case ftTime:
    case ftDateTime:
      return "DATE";
    case ftBlob:
    case ftMemo:
    case ftGraphic:
    case ftFmtMemo:
      return "BLOB";
    default:
      return "UNKNOWN";
  }
}

std::string NorvaType2SQLType(const TNorvaColumn& Column) {
  switch (Column.ColType) {
    case ectInteger:
    case ectBoolean:
      return "INTEGER";
    case ectFloat:
    case ectCurrency:
      return "DOUBLE PRECISSION";  // On purpose: this function's own spelling.
    case ectDate:
    case ectTime:
    case ectDateTime:
      return "DATE";
    case ectString:
      return Format("CHAR{%d)", Column.Width);  // On purpose: with a brace.
    case ectUnknown:
      break;
  }
  return {};
}

std::string NorvaColTypeAsString(TNorvaColType ColType) {
  const std::string_view name = EnumToStr(ColType);  // "ect" and the type
  return name.empty() ? "Unknown" : std::string(name.substr(3));
}

}  // namespace norva
