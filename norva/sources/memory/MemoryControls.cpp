#include <norva/sources/memory/MemoryControls.h>

#include <algorithm>
#include <utility>

#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>

namespace norva {
namespace {

constexpr int DefaultGridSide = 5;   // columns and rows of a new grid
constexpr int DefaultColWidth = 64;  // pixels

// `List[Index]`, checked.
template <class TList>
auto& At(TList& List, int Index) {
  if (Index < 0 || std::cmp_greater_equal(Index, List.size())) {
    throw EListError(MsgListIndex, Index);
  }
  return List[static_cast<std::size_t>(Index)];
}

std::size_t CheckedCount(const char* Property, int Value) {
  if (Value < 0)
    throw EConvertError(MsgPropertyValue, std::to_string(Value), Property, "0 or more");
  return static_cast<std::size_t>(Value);
}

}  // namespace

int TMemoryListView::AddColumn(std::string Caption, int Width) {
  Columns_.push_back({std::move(Caption), Width});
  return ColumnCount() - 1;
}

int TMemoryListView::AddItem(std::vector<std::string> Texts) {
  if (Texts.empty()) Texts.emplace_back();
  Items_.push_back(std::move(Texts));
  return ItemCount() - 1;
}

void TMemoryListView::Clear() {
  Items_.clear();
  Selected_ = -1;
}

std::string TMemoryListView::ColumnCaption(int Column) const {
  return At(Columns_, Column).Caption;
}

int TMemoryListView::ColumnWidth(int Column) const { return At(Columns_, Column).Width; }

void TMemoryListView::SetColumnWidth(int Column, int Width) { At(Columns_, Column).Width = Width; }

std::string_view TMemoryListView::ItemCaption(int Item) const { return At(Items_, Item)[0]; }

int TMemoryListView::SubItemCount(int Item) const {
  return static_cast<int>(At(Items_, Item).size()) - 1;
}

std::string_view TMemoryListView::SubItem(int Item, int Index) const {
  const std::vector<std::string>& texts = At(Items_, Item);
  if (Index < 0 || Index >= SubItemCount(Item)) throw EListError(MsgListIndex, Index);
  return texts[static_cast<std::size_t>(Index) + 1];
}

void TMemoryListView::Select(int Item) {
  if (Item != -1) At(Items_, Item);
  Selected_ = Item;
}

const TPropertyList& TMemoryDBGrid::Properties() const {
  static const TPropertyList list(
      TDBGrid::Properties(),
      {
          PublishedReference("DataSource", "TDataSource", &TMemoryDBGrid::DataSource),
          PublishedGroup("Font", &TMemoryDBGrid::Font),
      });
  return list;
}

int TMemoryDBGrid::AddColumn(std::string FieldName, std::optional<std::string> Title,
                             std::optional<int> Width) {
  Columns_.push_back({std::move(FieldName), std::move(Title), Width});
  return ColumnCount() - 1;
}

TField* TMemoryDBGrid::ColumnField(int Column) const {
  const TColumn& column = At(Columns_, Column);
  TDataSet* const set = DataSet();
  if (!set || column.FieldName.empty()) return nullptr;
  if (column.FieldIndex >= 0 && column.FieldIndex < set->FieldCount()) {
    TField& guess = set->Fields(column.FieldIndex);
    if (guess.FieldName == column.FieldName || SameText(guess.FieldName, column.FieldName)) {
      return &guess;
    }
  }
  // A typing error in the name shows here, not as a column missing from every export.
  TField* const field =
      set->Active() ? &set->FieldByName(column.FieldName) : set->FindField(column.FieldName);
  column.FieldIndex = field ? field->Index : -1;
  return field;
}

std::string TMemoryDBGrid::ColumnTitle(int Column) const {
  const TColumn& column = At(Columns_, Column);
  if (column.Title) return *column.Title;
  const TField* const field = ColumnField(Column);
  return field ? field->DisplayName : column.FieldName;
}

int TMemoryDBGrid::ColumnWidth(int Column) const {
  const TColumn& column = At(Columns_, Column);
  if (column.Width) return *column.Width;
  const TField* const field = ColumnField(Column);
  return field ? field->DisplayWidth * Canvas_.TextWidth("X") : DefaultColWidth;
}

TMemoryStringGrid::TMemoryStringGrid(TComponent* Owner)
    : TMemoryStringGrid(DefaultGridSide, DefaultGridSide, 1, Owner) {}

TMemoryStringGrid::TMemoryStringGrid(int ColCount, int RowCount, int FixedRows, TComponent* Owner)
    : TStringGrid(Owner) {
  SetColCount(ColCount);
  SetRowCount(RowCount);
  SetFixedRows(FixedRows);
}

const TPropertyList& TMemoryStringGrid::Properties() const {
  using TGrid = TMemoryStringGrid;
  static const TPropertyList list(
      TStringGrid::Properties(),
      {
          Published("ColCount", &TGrid::ColCount, &TGrid::SetColCount, DefaultGridSide),
          Published("RowCount", &TGrid::RowCount, &TGrid::SetRowCount, DefaultGridSide),
          Published("FixedRows", &TGrid::FixedRows, &TGrid::SetFixedRows, 1),
          PublishedGroup("Font", &TGrid::Font),
      });
  return list;
}

void TMemoryStringGrid::SetColCount(int Value) {
  const std::size_t count = CheckedCount("ColCount", Value);
  ColWidths_.resize(count, DefaultColWidth);
  for (std::vector<std::string>& row : Rows_) row.resize(count);
}

void TMemoryStringGrid::SetRowCount(int Value) {
  Rows_.resize(CheckedCount("RowCount", Value), std::vector<std::string>(ColWidths_.size()));
  FixedRows_ = std::min(FixedRows_, RowCount());
  KeepRowInside();
}

void TMemoryStringGrid::SetFixedRows(int Value) {
  if (Value < 0 || Value > RowCount()) {
    const std::string expected = Format("0 to the row count, %d", RowCount());
    throw EConvertError(MsgPropertyValue, std::to_string(Value), "FixedRows", expected);
  }
  FixedRows_ = Value;
  KeepRowInside();
}

// With title rows only, the last of them is as near as it gets.
void TMemoryStringGrid::KeepRowInside() {
  Row_ = std::max(std::min(std::max(Row_, FixedRows_), RowCount() - 1), 0);
}

void TMemoryStringGrid::SetRow(int Value) {
  At(Rows_, Value);
  Row_ = Value;
}

std::string_view TMemoryStringGrid::Cells(int Col, int Row) const {
  return At(At(Rows_, Row), Col);
}

void TMemoryStringGrid::SetCells(int Col, int Row, std::string Text) {
  At(At(Rows_, Row), Col) = std::move(Text);
}

void TMemoryStringGrid::SetRowCells(int Row, const std::vector<std::string>& Texts) {
  std::vector<std::string>& row = At(Rows_, Row);
  if (Texts.size() > row.size()) throw EListError(MsgListIndex, row.size());
  std::copy(Texts.begin(), Texts.end(), row.begin());
}

int TMemoryStringGrid::ColWidths(int Col) const { return At(ColWidths_, Col); }

void TMemoryStringGrid::SetColWidths(int Col, int Width) { At(ColWidths_, Col) = Width; }

}  // namespace norva
