/// Controls that show rows and can be exported: list view, data-aware grid, string grid.
///
/// The engine uses exactly what is declared here; a host's toolkit derives from these classes, and
/// norva/sources/memory has ready ones without a toolkit.
#pragma once

#include <string>
#include <string_view>

#include <norva/platform/Component.h>
#include <norva/platform/DataSet.h>
#include <norva/platform/Export.h>

namespace norva {

/// Measures text as a control draws it.
class NORVA_EXPORT TCanvas {
 public:
  virtual ~TCanvas();
  /// Width of `Text` in pixels.
  virtual int TextWidth(std::string_view Text) const = 0;
};

class NORVA_EXPORT TControl : public TComponent {
 public:
  using TComponent::TComponent;
  /// The canvas the control draws on; null when it publishes none.
  virtual const TCanvas* Canvas() const { return nullptr; }
};

/// A list of items, each a caption followed by sub-items, under column titles.
class NORVA_EXPORT TListView : public TControl {
 public:
  using TControl::TControl;

  virtual int ColumnCount() const = 0;
  virtual std::string ColumnCaption(int Column) const = 0;
  /// In pixels.
  virtual int ColumnWidth(int Column) const = 0;

  virtual int ItemCount() const = 0;
  virtual std::string_view ItemCaption(int Item) const = 0;
  virtual int SubItemCount(int Item) const = 0;
  virtual std::string_view SubItem(int Item, int Index) const = 0;

  /// Index of the selected item, -1 when none is.
  virtual int Selected() const = 0;
  virtual void Select(int Item) = 0;
  virtual void BeginUpdate() {}
  virtual void EndUpdate() {}
};

/// Binds controls to a data set.
class NORVA_EXPORT TDataSource : public TComponent {
 public:
  using TComponent::TComponent;
  std::string_view ClassName() const override { return "TDataSource"; }
  const TPropertyList& Properties() const override;

  TReference<TDataSet> DataSet{*this};

 protected:
  void Notification(TComponent& Component, TOperation Operation) override;
};

/// A grid whose columns show fields of a data set.
class NORVA_EXPORT TDBGrid : public TControl {
 public:
  using TControl::TControl;

  TReference<TDataSource> DataSource{*this};
  /// The data source's set; null when either is missing.
  TDataSet* DataSet() const { return DataSource ? DataSource->DataSet.Get() : nullptr; }

  virtual int ColumnCount() const = 0;
  /// Null when the column is bound to no field.
  virtual TField* ColumnField(int Column) const = 0;
  virtual std::string ColumnTitle(int Column) const = 0;
  /// In pixels.
  virtual int ColumnWidth(int Column) const = 0;

 protected:
  void Notification(TComponent& Component, TOperation Operation) override;
};

/// A grid of texts, the first rows of which are titles.
class NORVA_EXPORT TStringGrid : public TControl {
 public:
  using TControl::TControl;

  virtual int ColCount() const = 0;
  virtual int RowCount() const = 0;
  /// Number of title rows.
  virtual int FixedRows() const = 0;
  virtual int Row() const = 0;
  virtual void SetRow(int Row) = 0;
  virtual std::string_view Cells(int Col, int Row) const = 0;
  /// In pixels.
  virtual int ColWidths(int Col) const = 0;
};

}  // namespace norva
