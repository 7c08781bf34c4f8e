/// What the tests of the engine and of the formats share: an exporter and a data set that log what
/// happens to them, the four kinds of source over the same people, and short ways to export.
#pragma once

#include <functional>
#include <initializer_list>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <norva/core/NorvaBases.h>
#include <norva/core/Norvacommon.h>
#include <norva/platform/Clipboard.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Property.h>
#include <norva/sources/memory/MemoryControls.h>
#include <norva/sources/memory/MemoryDataSet.h>
#include <tests/ErrorText.h>

namespace norva::tests {

/// Each text followed by CR LF.
inline std::string Lines(std::initializer_list<std::string_view> Texts) {
  std::string lines;
  for (const std::string_view text : Texts) lines.append(text).append("\r\n");
  return lines;
}

/// The same for a text with `/` behind each line.
inline std::string Lines(std::string_view Text) { return Replace(Text, "/", "\r\n"); }

/// What `Export` writes.
inline std::string Exported(TNorva& Export) {
  TMemoryStream stream;
  Export.ExportToStream(stream);
  return stream.Bytes();
}

/// The same, or `!` and the error.
inline std::string ExportedOrError(TNorva& Export) {
  return TextOrError<Exception>([&] { return Exported(Export); });
}

/// What `Export` leaves on the clipboard; "(untouched)" when it does not get there.
inline std::string Copied(TNorva& Export) {
  std::string text = "(untouched)";
  SetClipboardSink([&text](std::string_view Text) { text = Text; });
  Guarded([&] { Export.Execute(); }, [] { SetClipboardSink(nullptr); });
  return text;
}

/// The published properties from `First` on: "Name: Type" and, if there is one, " = default", with
/// `/` behind each.
inline std::string Published(const TPersistent& Object, std::string_view First) {
  std::string text;
  for (const TProperty& property : Object.Properties()) {
    if (text.empty() && property.Name != First) continue;
    text += property.Name + ": " + property.TypeName;
    text += (property.Default ? " = " + *property.Default : "") + "/";
  }
  return text;
}

/// The properties of `Object` whose value is not the stored default.
inline std::string ChangedProperties(const TPersistent& Object) {
  std::string names;
  for (const TProperty& property : Object.Properties()) {
    if (property.Default && property.Get(Object) != *property.Default) names += property.Name + " ";
  }
  return names;
}

/// Sets properties written `Name=value`, `Group.Name=value`, with blanks between.
inline void Set(TPersistent& Object, const char* Settings) {
  std::istringstream words(Settings);
  for (std::string word; words >> word;) {
    const std::size_t equals = word.find('=');
    const TPropertyPath path = FindProperty(Object, word.substr(0, equals));
    path.Property->Set(*path.Object, word.substr(equals + 1));
  }
}

/// What happened, as words; at the chosen word it acts.
class TLog {
 public:
  std::string Text;
  std::string ActAt;
  std::function<void()> Act;

  void Note(const std::string& Word) {
    Text += (Text.empty() ? "" : " ") + Word;
    if (Word == ActAt) Act();
  }
  void Note(const char* Word, std::int32_t Number) { Note(Word + std::to_string(Number)); }
};

/// Logs its hooks (Row:0) and its events (exported:0). Cells are written as `text|`; with Brackets
/// what went through NormalString stands in `<>`.
class TLogExport : public TNorvaFormatText {
 public:
  explicit TLogExport(TLog& Log) : Log_(Log) {
    OnBeginExport = [this](TObject&) { Log_.Note("begin"); };
    OnEndExport = [this](TObject&) { Log_.Note("end"); };
    OnFetchedRecord = [this](TObject&, std::int32_t n) { Log_.Note("fetched:", n); };
    OnSkippedRecord = [this](TObject&, std::int32_t n) { Log_.Note("skipped:", n); };
    OnExportedRecord = [this](TObject&, std::int32_t n) { Log_.Note("exported:", n); };
  }
  std::string_view ClassName() const override { return "TLogExport"; }
  const TPropertyList& Properties() const override {
    static const TPropertyList list(
        TNorvaFormatText::Properties(),
        {norva::Published("AutoCalcColWidth", &TNorva::AutoCalcColWidth, false)});
    return list;
  }
  using TNorvaFormatText::GetColDataSt;
  using TNorvaFormatText::GetWriter;

  bool Brackets = false;

 protected:
  void BeginExport() override { Log_.Note("Begin"), TNorvaFormatText::BeginExport(); }
  void WriteCaptionRow() override {
    Log_.Note("Captions");
    std::string row;
    GetCaptionRow(row);
    GetWriter().WriteLn(row);
  }
  void BeforeExport() override { Log_.Note("Before"); }
  void WriteDataRow() override {
    Log_.Note("Row:", RecordCounter);
    std::string row;
    GetDataRow(true, row);
    GetWriter().WriteLn(row);
  }
  void AfterExport() override { Log_.Note("After"); }
  void EndExport() override { Log_.Note("End"), TNorvaFormatText::EndExport(); }
  void ShowResult() override { Log_.Note("ShowResult"), TNorvaFormatText::ShowResult(); }
  void GetColCaption(int Index, std::string& Text) override {
    TNorvaFormatText::GetColCaption(Index, Text);
    Text += '|';
  }
  void GetColData(int Index, bool NeedFormat, std::string& Text) override {
    TNorvaFormatText::GetColData(Index, NeedFormat, Text);
    Text += '|';
  }
  void NormalString(std::string_view S, std::string& Text) override {
    Text.append(Brackets ? "<" : "").append(S).append(Brackets ? ">" : "");
  }

 private:
  TLog& Log_;
};

/// The records 1, 2, 3 of a field N; logs how it is walked.
class TLogSet : public TMemoryDataSet {
 public:
  explicit TLogSet(TLog& Log) : Log_(Log) {
    AddField("N", ftInteger);
    for (int n = 1; n <= 3; ++n) Append({n});
  }
  void First() override { Log_.Note("first"), TMemoryDataSet::First(); }
  void Next() override { Log_.Note("next"), TMemoryDataSet::Next(); }
  void DisableControls() override { Log_.Note("disable"), TMemoryDataSet::DisableControls(); }
  void EnableControls() override { Log_.Note("enable"), TMemoryDataSet::EnableControls(); }
  TBookmark GetBookmark() override { return Log_.Note("mark"), TMemoryDataSet::GetBookmark(); }
  void GotoBookmark(TBookmark Bookmark) override {
    Log_.Note("goto"), TMemoryDataSet::GotoBookmark(Bookmark);
  }
  void FreeBookmark(TBookmark) override { Log_.Note("free"); }

 private:
  TLog& Log_;
};

/// All three together.
struct TLogged {
  TLog Log;
  TLogSet Set{Log};
  TLogExport Export{Log};
  TLogged() { Export.DataSet = &Set; }
};

/// Three people, as each of the four kinds of source. The string grid has one row of titles; the
/// data-aware grid shows the town before the name. Export reads from the kind given.
struct TSources {
  TMemoryDataSet Set{
      {{"Id", ftInteger}, {"Name", ftString, 20}, {"Town", ftString, 300}}
  };
  TDataSource Source;
  TMemoryDBGrid DBGrid;
  TMemoryListView ListView;
  TMemoryStringGrid StringGrid{3, 4, 1};

  TLog Log;
  TLogExport Export{Log};

  explicit TSources(TNorvaSource Kind) {
    Set.Fields(1).DisplayName = "Full name";
    Source.DataSet = &Set;
    DBGrid.DataSource = &Source;
    DBGrid.AddColumn("Id", "No", 70);
    DBGrid.AddColumn("Town", std::nullopt, 90);
    DBGrid.AddColumn("Name");
    ListView.AddColumn("Id", 81);
    ListView.AddColumn("Name", 160);
    ListView.AddColumn("Town");
    StringGrid.SetColWidths(1, 100);
    const std::vector<std::string> people[] = {
        {"1", "Ann",  "Ulm"  },
        {"2", "Bob",  "Bath" },
        {"3", "Zoë", "Köln"}
    };
    for (int i = 0; i < 3; ++i) {
      Set.Append({i + 1, people[i][1], people[i][2]});
      ListView.AddItem(people[i]);
      StringGrid.SetRowCells(i + 1, people[i]);
    }
    Attach(Export, Kind);
  }

  void Attach(TNorva& Exporter, TNorvaSource Kind) {
    Exporter.ExportSource = Kind;
    Exporter.DataSet = &Set;
    Exporter.DBGrid = &DBGrid;
    Exporter.ListView = &ListView;
    Exporter.StringGrid = &StringGrid;
  }
};

}  // namespace norva::tests
