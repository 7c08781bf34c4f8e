#include <norva/core/internal/SourceAdapter.h>

#include <algorithm>

#include <norva/core/Norva.h>
#include <norva/core/Norvacommon.h>
#include <norva/platform/CodePages.h>
#include <norva/platform/Numbers.h>

namespace norva::internal {
namespace {

constexpr int MaxTextLength = 254;  // the longest text of a dBase field, and so of a column

/// Data set and data-aware grid: records come from a data set, columns are fields of it.
class TFieldAdapter : public TSourceAdapter {
 public:
  using TSourceAdapter::TSourceAdapter;

  void First() override { Set().First(); }
  void Next() override { Set().Next(); }
  bool Eof() const override { return Set().Eof(); }
  bool IsEmpty() const override { return Set().IsEmpty(); }
  bool IsActive() const override { return Set().Active(); }
  void DisableControls() override { Set().DisableControls(); }
  void EnableControls() override { Set().EnableControls(); }
  TBookmark GetBookmark() override { return Set().GetBookmark(); }
  void GoToBookmark(TBookmark Bookmark) override { Set().GotoBookmark(Bookmark); }
  void FreeBookmark(TBookmark Bookmark) override { Set().FreeBookmark(Bookmark); }

  int NumberAt(int Position) const override {
    const TField* field = Field(Position);
    return field && !field->IsBlob() && IsExported(*field) ? Position : -1;
  }
  std::string ColumnName(int Number) const override { return Field(Number)->FieldName; }
  TNorvaColType ColumnType(int Number) const override {
    return DataType2NorvaColType(Field(Number));
  }
  std::string ColumnSQLType(int Number) const override { return DataType2SQLType(Field(Number)); }
  int ColumnLength(const TNorvaColumn& Column) const override {
    return std::min(Field(Column.Number)->Size, MaxTextLength);
  }

  bool IsNull(int Number) const override { return Field(Number)->IsNull(); }
  TFieldValue Value(int Number) const override { return Field(Number)->Value(); }
  TFieldType FieldType(int Number) const override { return Field(Number)->DataType; }

 protected:
  virtual TDataSet& Set() const = 0;
  virtual TField* Field(int Number) const = 0;
  bool IsExported(const TField& Field) const {
    return !Exporter().OnlyVisibleFields || Field.Visible;
  }
};

class TDataSetAdapter final : public TFieldAdapter {
 public:
  using TFieldAdapter::TFieldAdapter;

  int ColumnCount() const override { return Set().FieldCount(); }
  int NumberOf(const std::string& Name) const override {
    const TField& field = Set().FieldByName(Name);
    return IsExported(field) ? field.Index : -1;
  }
  std::string ColumnCaption(int Number) const override { return Field(Number)->DisplayName; }
  int ColumnWidth(int Number) const override { return Field(Number)->DisplayWidth; }
  // Asked for every cell: without the calls of the general way.
  TFieldValue Value(int Number) const override {
    return Exporter().DataSet->Fields(Number).Value();
  }

 private:
  TDataSet& Set() const override { return *Exporter().DataSet; }
  TField* Field(int Number) const override { return &Set().Fields(Number); }
};

class TDBGridAdapter final : public TFieldAdapter {
 public:
  using TFieldAdapter::TFieldAdapter;

  int ColumnCount() const override { return Grid().ColumnCount(); }
  int NumberOf(const std::string& Name) const override {
    int number = -1;
    // The last match wins: the grid's own column order decides.
    for (int i = 0; i < Grid().ColumnCount(); ++i) {
      const TField* field = Grid().ColumnField(i);
      if (field && SameText(field->FieldName, Name) && IsExported(*field)) number = i;
    }
    return number;
  }
  std::string ColumnCaption(int Number) const override { return Grid().ColumnTitle(Number); }
  int ColumnWidth(int Number) const override {
    return Grid().ColumnWidth(Number) / std::max(GetTextWidth(&Grid(), "X"), 1);
  }

 private:
  TDBGrid& Grid() const { return *Exporter().DBGrid; }
  TDataSet& Set() const override { return *Grid().DataSet(); }
  TField* Field(int Number) const override { return Grid().ColumnField(Number); }
};

/// List view and string grid: texts, whose end the engine counts itself.
class TTextAdapter : public TSourceAdapter {
 public:
  using TSourceAdapter::TSourceAdapter;

  bool Eof() const override {
    int count = ItemCount() - Exporter().SkipRecCount;
    if (Exporter().ExportRecCount >= 1) count = std::min(Exporter().ExportRecCount, count);
    return Exporter().RecordCounter == std::max(count, 0);
  }
  bool IsEmpty() const override { return ItemCount() == 0; }
  bool IsActive() const override { return true; }

  int NumberAt(int Position) const override { return Position; }
  TNorvaColType ColumnType(int Number) const override {
    if (!Exporter().AutoCalcStrType) return ectString;
    const TNorvaFormats& formats = Exporter().Formats;
    return CalcStringType(SampleText(Number), formats.BooleanTrue(), formats.BooleanFalse());
  }
  std::string ColumnSQLType(int) const override { return {}; }
  int ColumnLength(const TNorvaColumn& Column) const override {
    const TStringList& lengths = Exporter().ColumnsLength;
    const int index = lengths.IndexOfName(Column.Name);
    return index < 0 ? MaxTextLength : StrToIntDef(lengths.ValueFromIndex(index), MaxTextLength);
  }

  bool IsNull(int) const override { return false; }
  TFieldValue Value(int Number) const override { return TFieldValue::OfText(Text(Number)); }
  TFieldType FieldType(int) const override { return ftString; }

 protected:
  /// The text of the current record.
  virtual std::string_view Text(int Number) const = 0;
  /// The text from which AutoCalcStrType infers the column's type.
  virtual std::string_view SampleText(int Number) const = 0;
};

class TListViewAdapter final : public TTextAdapter {
 public:
  using TTextAdapter::TTextAdapter;

  int ItemCount() const override { return View().ItemCount(); }
  void First() override { View().Select(0); }
  void Next() override {}  // the item follows from the record counter
  void DisableControls() override { View().BeginUpdate(); }
  void EnableControls() override { View().EndUpdate(); }
  TBookmark GetBookmark() override { return std::max(View().Selected(), 0); }
  void GoToBookmark(TBookmark Bookmark) override { View().Select(static_cast<int>(Bookmark)); }

  int ColumnCount() const override { return View().ColumnCount(); }
  int NumberOf(const std::string& Name) const override {
    int number = -1;
    for (int i = 0; i < View().ColumnCount(); ++i) {
      if (SameText(View().ColumnCaption(i), Name)) number = i;  // the last match wins
    }
    return number;
  }
  std::string ColumnName(int Number) const override { return View().ColumnCaption(Number); }
  std::string ColumnCaption(int Number) const override { return View().ColumnCaption(Number); }
  int ColumnWidth(int Number) const override {
    return View().ColumnWidth(Number) / std::max(GetTextWidth(&View(), "X"), 1);
  }

 private:
  TListView& View() const { return *Exporter().ListView; }
  std::string_view ItemText(int Item, int Number) const {
    if (Number == 0) return View().ItemCaption(Item);
    if (Number > View().SubItemCount(Item)) return {};  // a short item has empty cells
    return View().SubItem(Item, Number - 1);
  }
  std::string_view Text(int Number) const override {
    return ItemText(Exporter().RecordCounter + Exporter().SkipRecCount, Number);
  }
  std::string_view SampleText(int Number) const override { return ItemText(0, Number); }
};

class TStringGridAdapter final : public TTextAdapter {
 public:
  using TTextAdapter::TTextAdapter;

  int ItemCount() const override { return Grid().RowCount() - Grid().FixedRows(); }
  void First() override { Grid().SetRow(Grid().FixedRows()); }
  void Next() override {
    if (Grid().Row() < Grid().RowCount() - 1) Grid().SetRow(Grid().Row() + 1);
  }
  void DisableControls() override {}
  void EnableControls() override {}
  TBookmark GetBookmark() override { return Grid().Row(); }
  void GoToBookmark(TBookmark Bookmark) override { Grid().SetRow(static_cast<int>(Bookmark)); }

  int ColumnCount() const override { return Grid().ColCount(); }
  int NumberOf(const std::string& Name) const override { return StrToIntDef(Name, -1); }
  std::string ColumnName(int Number) const override { return std::to_string(Number); }
  std::string ColumnCaption(int Number) const override { return "ColNo_" + std::to_string(Number); }
  int ColumnWidth(int Number) const override {
    return Grid().ColWidths(Number) / std::max(GetTextWidth(&Grid(), "X"), 1);
  }

 private:
  TStringGrid& Grid() const { return *Exporter().StringGrid; }
  std::string_view Text(int Number) const override { return Grid().Cells(Number, Grid().Row()); }
  std::string_view SampleText(int Number) const override { return Text(Number); }
};

}  // namespace

std::unique_ptr<TSourceAdapter> NewSourceAdapter(TNorva& Exporter) {
  switch (Exporter.ExportSource) {
    case esDataSet:
      return std::make_unique<TDataSetAdapter>(Exporter);
    case esListView:
      return std::make_unique<TListViewAdapter>(Exporter);
    case esDBGrid:
      return std::make_unique<TDBGridAdapter>(Exporter);
    case esStringGrid:
      return std::make_unique<TStringGridAdapter>(Exporter);
  }
  return nullptr;
}

}  // namespace norva::internal
