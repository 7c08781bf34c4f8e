#include <norva/sources/memory/MemoryControls.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <norva/platform/Exceptions.h>
#include <norva/sources/memory/MemoryDataSet.h>
#include <tests/ErrorText.h>

namespace norva {
namespace {

using tests::ErrorText;

TEST(TFontCanvas, FollowsItsFont) {
  TFont font;
  const TFontCanvas canvas(font);
  font.Size = 10;
  EXPECT_EQ(canvas.TextWidth("X"), 9);
  font.Name = "Courier New";
  EXPECT_EQ(canvas.TextWidth("iX"), 16);
}

TEST(TMemoryListView, HoldsColumnsAndItems) {
  TMemoryListView list;
  EXPECT_EQ(list.AddColumn("Name", 120), 0);
  EXPECT_EQ(list.AddColumn("Town"), 1);
  EXPECT_EQ(list.AddItem({"Ann", "Ulm", "extra"}), 0);
  EXPECT_EQ(list.AddItem({}), 1);

  EXPECT_EQ(list.ColumnCount(), 2);
  EXPECT_EQ(list.ColumnCaption(1), "Town");
  EXPECT_EQ(list.ColumnWidth(0), 120);
  EXPECT_EQ(list.ColumnWidth(1), 50);
  EXPECT_EQ(list.ItemCount(), 2);
  EXPECT_EQ(list.ItemCaption(0), "Ann");
  EXPECT_EQ(list.SubItemCount(0), 2);
  EXPECT_EQ(list.SubItem(0, 0), "Ulm");
  EXPECT_EQ(list.SubItem(0, 1), "extra");
  EXPECT_EQ(list.ItemCaption(1), "");
  EXPECT_EQ(list.SubItemCount(1), 0);
  EXPECT_EQ(list.Canvas(), nullptr);
}

TEST(TMemoryListView, SelectsOneItemOrNone) {
  TMemoryListView list;
  EXPECT_EQ(list.Selected(), -1);
  list.AddItem({"a"});
  list.AddItem({"b"});
  list.Select(1);
  EXPECT_EQ(list.Selected(), 1);
  list.Select(-1);
  EXPECT_EQ(list.Selected(), -1);
  list.Select(0);
  list.Clear();
  EXPECT_EQ(list.Selected(), -1);
}

class TIndexTest : public testing::Test {
 protected:
  TIndexTest() {
    List_.AddColumn("Name");
    List_.AddItem({"Ann", "Ulm"});
    Columns_.AddColumn("Name");
  }

  TMemoryListView List_;
  TMemoryStringGrid Grid_{2, 3};
  TMemoryDBGrid Columns_;
};

TEST_F(TIndexTest, OutOfRangeIsRefused) {
  struct RangeCase {
    std::function<void()> Call;
    int Index;
  };
  const RangeCase cases[] = {
      {[&] { List_.ColumnCaption(1); },                1 },
      {[&] { List_.ColumnWidth(-1); },                 -1},
      {[&] { List_.ItemCaption(1); },                  1 },
      {[&] { List_.SubItem(0, 1); },                   1 },
      {[&] { List_.SubItem(0, -1); },                  -1},
      {[&] { List_.Select(1); },                       1 },
      {[&] { List_.Select(-2); },                      -2},
      {[&] { Grid_.SetRow(3); },                       3 },
      {[&] { Grid_.SetRow(-1); },                      -1},
      {[&] { Grid_.Cells(2, 0); },                     2 },
      {[&] { Grid_.SetCells(0, 3, "x"); },             3 },
      {[&] { Grid_.SetRowCells(0, {"x", "y", "z"}); }, 2 },
      {[&] { Columns_.ColumnField(1); },               1 },
  };
  for (const RangeCase& c : cases) {
    SCOPED_TRACE(&c - cases);
    EXPECT_EQ(ErrorText<EListError>(c.Call),
              "List index " + std::to_string(c.Index) + " is out of range");
  }
}

class TMemoryDBGridTest : public testing::Test {
 protected:
  TMemoryDataSet Set_{
      {{"Id", ftInteger}, {"Name", ftString, 20}}
  };
  TDataSource Source_;
  TMemoryDBGrid Grid_;

  void Connect() {
    Source_.DataSet = &Set_;
    Grid_.DataSource = &Source_;
  }
};

TEST_F(TMemoryDBGridTest, ColumnsTakeTitleAndWidthFromTheirFields) {
  Connect();
  Set_.Fields(1).DisplayName = "Full name";
  EXPECT_EQ(Grid_.AddColumn("NAME"), 0);
  Grid_.AddColumn("Id", "No.", 33);
  Grid_.AddColumn("Id", "");

  EXPECT_EQ(Grid_.ColumnField(0), &Set_.Fields(1));
  EXPECT_EQ(Grid_.ColumnField(1), &Set_.Fields(0));
  EXPECT_EQ(Grid_.ColumnTitle(0), "Full name");
  EXPECT_EQ(Grid_.ColumnTitle(1), "No.");
  EXPECT_EQ(Grid_.ColumnTitle(2), "");
  const int x = Grid_.Canvas()->TextWidth("X");
  EXPECT_EQ(x, 7);
  EXPECT_EQ(Grid_.ColumnWidth(0), 20 * x);
  EXPECT_EQ(Grid_.ColumnWidth(1), 33);
  EXPECT_EQ(Grid_.ColumnWidth(2), 10 * x);
  Grid_.Font.Size = 10;
  EXPECT_EQ(Grid_.ColumnWidth(0), 20 * 9);
}

TEST_F(TMemoryDBGridTest, ColumnsWithoutAFieldStandForThemselves) {
  Grid_.AddColumn("Name");
  Grid_.AddColumn("");
  EXPECT_EQ(Grid_.DataSet(), nullptr);
  EXPECT_EQ(Grid_.ColumnField(0), nullptr);
  EXPECT_EQ(Grid_.ColumnTitle(0), "Name");
  EXPECT_EQ(Grid_.ColumnWidth(0), 64);
  Connect();
  EXPECT_EQ(Grid_.ColumnField(0), &Set_.Fields(1));
  EXPECT_EQ(Grid_.ColumnField(1), nullptr);
}

TEST_F(TMemoryDBGridTest, UnknownFieldsShowWhenTheSetIsOpen) {
  Connect();
  Grid_.AddColumn("Nmae");
  EXPECT_EQ(ErrorText<EDatabaseError>([&] { Grid_.ColumnField(0); }), "Field \"Nmae\" not found");
  Set_.Close();
  EXPECT_EQ(Grid_.ColumnField(0), nullptr);
}

TEST_F(TMemoryDBGridTest, FieldsAreThoseOfTheSetThatIsConnectedNow) {
  Connect();
  Grid_.AddColumn("Name");
  EXPECT_EQ(Grid_.ColumnField(0), &Set_.Fields(1));
  {
    TMemoryDataSet other({
        {"Name", ftString },
        {"Id",   ftInteger}
    });
    Source_.DataSet = &other;
    EXPECT_EQ(Grid_.ColumnField(0), &other.Fields(0));
  }
  EXPECT_EQ(Grid_.DataSet(), nullptr);  // the set has gone, and said so
  EXPECT_EQ(Grid_.ColumnField(0), nullptr);
}

TEST(TMemoryStringGrid, HoldsCells) {
  TMemoryStringGrid grid(3, 4, 2);
  EXPECT_EQ(grid.ColCount(), 3);
  EXPECT_EQ(grid.RowCount(), 4);
  EXPECT_EQ(grid.FixedRows(), 2);
  EXPECT_EQ(grid.Row(), 2);
  grid.SetCells(2, 1, "here");
  grid.SetRowCells(3, {"a", "b"});
  grid.SetColWidths(1, 99);
  EXPECT_EQ(grid.Cells(2, 1), "here");
  EXPECT_EQ(grid.Cells(1, 2), "");
  EXPECT_EQ(grid.Cells(1, 3), "b");
  EXPECT_EQ(grid.Cells(2, 3), "");
  EXPECT_EQ(grid.ColWidths(1), 99);
  EXPECT_EQ(grid.ColWidths(2), 64);
  EXPECT_EQ(grid.Canvas()->TextWidth("X"), 7);
}

TEST(TMemoryStringGrid, ResizingKeepsCellsAndTheRowInside) {
  TMemoryStringGrid grid(2, 3);
  grid.SetRowCells(1, {"a", "b"});
  grid.SetRow(2);
  grid.SetRowCount(2);
  EXPECT_EQ(grid.Row(), 1);
  grid.SetColCount(3);
  EXPECT_EQ(grid.Cells(1, 1), "b");
  EXPECT_EQ(grid.Cells(2, 1), "");
  grid.SetRow(0);  // a title row may be the current one
  EXPECT_EQ(grid.Row(), 0);
  grid.SetRowCount(5);
  EXPECT_EQ(grid.Row(), 1);
  grid.SetFixedRows(3);
  EXPECT_EQ(grid.Row(), 3);
  grid.SetRowCount(2);  // title rows only
  EXPECT_EQ(grid.FixedRows(), 2);
  EXPECT_EQ(grid.Row(), 1);
  grid.SetRowCount(0);
  EXPECT_EQ(grid.FixedRows(), 0);
}

TEST(TMemoryStringGrid, RefusesImpossibleCounts) {
  TMemoryStringGrid grid(2, 3);
  EXPECT_EQ(ErrorText<EConvertError>([&] { grid.SetColCount(-1); }),
            "\"-1\" is not a value of ColCount: give 0 or more");
  EXPECT_EQ(ErrorText<EConvertError>([&] { grid.SetRowCount(-2); }),
            "\"-2\" is not a value of RowCount: give 0 or more");
  EXPECT_EQ(ErrorText<EConvertError>([&] { grid.SetFixedRows(4); }),
            "\"4\" is not a value of FixedRows: give 0 to the row count, 3");
  EXPECT_EQ(ErrorText<EConvertError>([&] { grid.SetFixedRows(-1); }),
            "\"-1\" is not a value of FixedRows: give 0 to the row count, 3");
}

TEST(TMemoryControls, PublishTheirProperties) {
  struct ClassCase {
    std::unique_ptr<TControl> Control;
    const char* ClassName;
    std::vector<std::string> Properties;
  };
  ClassCase cases[] = {
      {std::make_unique<TMemoryListView>(),   "TMemoryListView", {}                                           },
      {std::make_unique<TMemoryDBGrid>(),     "TMemoryDBGrid",   {"DataSource", "Font"}                       },
      {std::make_unique<TMemoryStringGrid>(),
       "TMemoryStringGrid",                                      {"ColCount", "RowCount", "FixedRows", "Font"}},
  };
  for (const ClassCase& c : cases) {
    SCOPED_TRACE(c.ClassName);
    EXPECT_EQ(c.Control->ClassName(), c.ClassName);
    std::vector<std::string> names;
    for (const TProperty& property : c.Control->Properties()) {
      names.push_back(property.Name);
      if (property.Default) {
        EXPECT_EQ(property.Get(*c.Control), *property.Default) << property.Name;
      }
    }
    EXPECT_EQ(names, c.Properties);
  }
}

}  // namespace
}  // namespace norva
