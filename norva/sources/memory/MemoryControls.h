/// List view and grids without a toolkit: a host fills them and points an exporter at them.
///
///   TMemoryListView List;
///   List.AddColumn("Name", 120);
///   List.AddColumn("Town");
///   List.AddItem({"Ann", "Ulm"});
///
///   TMemoryStringGrid Grid(3, 4);         3 columns; 4 rows, the first of them titles
///   Grid.SetCells(0, 1, "Ann");
///
///   TMemoryDBGrid View;
///   View.DataSource = &Source;            whose DataSet is, say, a TMemoryDataSet
///   View.AddColumn("Name", "Full name", 120);
///   View.AddColumn("Age");                title and width are the field's
///
/// Indexes count from 0; one out of range throws EListError.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <norva/platform/Controls.h>
#include <norva/platform/Export.h>
#include <norva/platform/Fonts.h>
#include <norva/platform/Property.h>

namespace norva {

/// Measures text by the width tables of a font.
class NORVA_EXPORT TFontCanvas : public TCanvas {
 public:
  /// `Font` is not owned and must outlive the canvas; changes to it take effect at once.
  explicit TFontCanvas(const TFont& Font) : Font_(Font) {}
  int TextWidth(std::string_view Text) const override { return norva::TextWidth(Text, Font_); }

 private:
  const TFont& Font_;
};

/// A list view that holds its columns and items. It publishes no canvas.
class NORVA_EXPORT TMemoryListView : public TListView {
 public:
  using TListView::TListView;
  std::string_view ClassName() const override { return "TMemoryListView"; }

  /// `Width` is in pixels. Returns the index of the new column.
  int AddColumn(std::string Caption, int Width = 50);
  /// The caption and the sub-items; no text at all is an item with an empty caption. Returns the
  /// index of the new item.
  int AddItem(std::vector<std::string> Texts);
  /// Removes all items; the columns stay.
  void Clear();

  int ColumnCount() const override { return static_cast<int>(Columns_.size()); }
  std::string ColumnCaption(int Column) const override;
  int ColumnWidth(int Column) const override;
  void SetColumnWidth(int Column, int Width);

  int ItemCount() const override { return static_cast<int>(Items_.size()); }
  std::string_view ItemCaption(int Item) const override;
  int SubItemCount(int Item) const override;
  std::string_view SubItem(int Item, int Index) const override;

  int Selected() const override { return Selected_; }
  /// -1 selects none.
  void Select(int Item) override;
  void BeginUpdate() override { ++UpdateCount_; }
  void EndUpdate() override { --UpdateCount_; }
  /// Calls of BeginUpdate that no EndUpdate has answered yet.
  int UpdateCount() const { return UpdateCount_; }

 private:
  struct TColumn {
    std::string Caption;
    int Width;
  };
  std::vector<TColumn> Columns_;
  std::vector<std::vector<std::string>> Items_;  // never empty: the caption, then the sub-items
  int Selected_ = -1;
  int UpdateCount_ = 0;
};

/// A data-aware grid that holds its columns; rows are those of its data source's set.
class NORVA_EXPORT TMemoryDBGrid : public TDBGrid {
 public:
  using TDBGrid::TDBGrid;
  std::string_view ClassName() const override { return "TMemoryDBGrid"; }
  const TPropertyList& Properties() const override;

  /// What Canvas measures with.
  TFont Font;

  /// A column that shows the field `FieldName` of whatever set the grid has then; none while that
  /// name is empty. Without a title it shows the field's DisplayName; without a width, in pixels,
  /// it has room for DisplayWidth times an X. Returns the index of the new column.
  int AddColumn(std::string FieldName, std::optional<std::string> Title = std::nullopt,
                std::optional<int> Width = std::nullopt);
  /// Removes all columns.
  void Clear() { Columns_.clear(); }

  int ColumnCount() const override { return static_cast<int>(Columns_.size()); }
  /// Null without a field name, without a set, and while a closed set has no such field. Throws
  /// EDatabaseError when an open set has none.
  TField* ColumnField(int Column) const override;
  /// The field name where title and field are both missing.
  std::string ColumnTitle(int Column) const override;
  /// 64 where width and field are both missing.
  int ColumnWidth(int Column) const override;
  const TCanvas* Canvas() const override { return &Canvas_; }

 private:
  struct TColumn {
    std::string FieldName;
    std::optional<std::string> Title;
    std::optional<int> Width;
    mutable int FieldIndex = -1;  // where the field was last found; a guess only, sets may change
  };
  std::vector<TColumn> Columns_;
  TFontCanvas Canvas_{Font};
};

/// A grid that holds its texts. Its row is the first below the titles until it is set.
class NORVA_EXPORT TMemoryStringGrid : public TStringGrid {
 public:
  /// 5 columns and 5 rows, the first of them titles.
  explicit TMemoryStringGrid(TComponent* Owner = nullptr);
  TMemoryStringGrid(int ColCount, int RowCount, int FixedRows = 1, TComponent* Owner = nullptr);
  std::string_view ClassName() const override { return "TMemoryStringGrid"; }
  const TPropertyList& Properties() const override;

  /// What Canvas measures with.
  TFont Font;

  int ColCount() const override { return static_cast<int>(ColWidths_.size()); }
  int RowCount() const override { return static_cast<int>(Rows_.size()); }
  int FixedRows() const override { return FixedRows_; }
  /// These keep the cells that remain, and move the row to the nearest one that exists and is no
  /// title. New columns are 64 pixels wide. There are at most as many title rows as rows.
  /// Throw EConvertError for numbers out of range.
  void SetColCount(int Value);
  void SetRowCount(int Value);
  void SetFixedRows(int Value);

  int Row() const override { return Row_; }
  /// Any row that exists, titles included.
  void SetRow(int Value) override;

  std::string_view Cells(int Col, int Row) const override;
  void SetCells(int Col, int Row, std::string Text);
  /// Sets the cells of a row from its first column on. Throws EListError when there are more texts
  /// than columns.
  void SetRowCells(int Row, const std::vector<std::string>& Texts);
  int ColWidths(int Col) const override;
  void SetColWidths(int Col, int Width);
  const TCanvas* Canvas() const override { return &Canvas_; }

 private:
  void KeepRowInside();

  std::vector<int> ColWidths_;
  std::vector<std::vector<std::string>> Rows_;  // each as long as ColWidths_
  int FixedRows_ = 0;
  int Row_ = 0;
  TFontCanvas Canvas_{Font};
};

}  // namespace norva
