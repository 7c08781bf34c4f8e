/// SQL script exporter.
///
///   <Header lines>
///   CREATE TABLE T(          if CreateTable and a TableName are set
///     ID  INTEGER,
///     NAME  CHAR(20));
///
///   INSERT INTO T            one for each record
///     (ID,NAME)
///   VALUES(1,'O''Brien');
///
///   COMMIT WORK;             after records 1, N + 1, 2N + 1 ... where N = CommitRecCount
///
///   COMMIT WORK;             if CommitAfterScript
///   <Footer lines>
///
/// Every line ends in CR LF. Captions are not written. The values are the source's own, not put
/// through pictures: numbers with all their digits and a decimal point whatever the locale; dates
/// and times as the locale writes them, which databases read when ShortDateFormat is yyyy-mm-dd;
/// booleans and nulls by the texts in Formats. docs/databases.md has the settings that make a
/// script load.
///
/// Written as they stand although a database refuses them, and so passed to OnUnsafeText:
/// - a table or column name that needs quotes. Names are made of letters, digits, `_` and bytes
///   above 127, or stand in double quotes; that of the table may be dotted. Whether a name is a
///   reserved word differs among databases and is not checked;
/// - a number that is none: INF, -INF and NAN, or no text;
/// - a NUL character, at which programs that read scripts stop.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <norva/core/NorvaBases.h>
#include <norva/platform/Export.h>

namespace norva {

/// Writes the records of a source as an SQL script.
class NORVA_EXPORT TNorvaSQL : public TNorvaAdvancedText {
 public:
  using TNorvaAdvancedText::TNorvaAdvancedText;
  std::string_view ClassName() const override { return "TNorvaSQL"; }
  const TPropertyList& Properties() const override;

  /// Writes CommitStatement once behind all records.
  bool CommitAfterScript = false;
  /// Writes CREATE TABLE first, by the columns' names and SQL types. No effect while TableName is
  /// empty.
  bool CreateTable = false;
  /// Ends every INSERT statement, and no other.
  char StatementTerm = ';';
  /// Records between two commits; 0 or negative never commits inside the script.
  std::int32_t CommitRecCount = 0;
  /// A whole line, its terminator included. Empty: no commits.
  std::string CommitStatement = "COMMIT WORK;";
  /// The table that the statements fill. Not checked: while it is empty they name none.
  std::string TableName;

 protected:
  void BeginExport() override;
  void WriteDataRow() override;
  void GetDataRow(bool NeedFormat, std::string& Row) override;
  /// The value as a literal, and a comma. OnGetExportText is called twice for a boolean, the second
  /// time with the text that decides, and not for null.
  void GetColData(int Index, bool NeedFormat, std::string& Text) override;
  void EndExport() override;

 private:
  void CheckNames();
  void WriteCreateTable();
  void AppendLiteral(int Index, bool NeedFormat, std::string& Text);
  void CloseQuotes(std::size_t Start, std::string& Text);
  void ReplaceBoolean(int Index, bool NeedFormat, std::size_t Start, std::string& Text);
  void CheckNumber(std::string_view Value);

  std::string ColumnList_;  // "ID,NAME"
  std::string Insert_;      // an INSERT statement up to its first value
  // The exporting thread's, not owned; looked up once, as every value needs it.
  char* Separator_ = nullptr;
};

}  // namespace norva
