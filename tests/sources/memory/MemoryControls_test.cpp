#include <norva/sources/memory/MemoryControls.h>

#include <functional>
#include <string>

#include <gtest/gtest.h>

#include <norva/platform/Exceptions.h>
#include <norva/sources/memory/MemoryDataSet.h>
#include <tests/ErrorText.h>

namespace norva {
namespace {

using tests::ErrorText;

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

TEST(TMemoryControls, RefuseIndexesOutOfRange) {
  TMemoryListView list;
  list.AddColumn("Name");
  list.AddItem({"Ann", "Ulm"});
  TMemoryStringGrid grid(2, 3);
  TMemoryDBGrid columns;
  columns.AddColumn("Name");
  struct RangeCase {
    std::function<void()> Call;
    int Index;
  };
  const RangeCase cases[] = {
      {[&] { list.ColumnCaption(1); },  1},
      {[&] { list.ItemCaption(1); },    1},
      {[&] { list.SubItem(0, 1); },     1},
      {[&] { list.Select(1); },         1},
      {[&] { grid.SetRow(3); },         3},
      {[&] { grid.Cells(2, 0); },       2},
      {[&] {
         grid.SetRowCells(0, {"x", "y", "z"});
       },                        2},
      {[&] { columns.ColumnField(1); }, 1},
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
  Grid_.AddColumn("NAME");
  Grid_.AddColumn("Id", "No.", 33);
  Grid_.AddColumn("Id", "");

  EXPECT_EQ(Grid_.ColumnField(0), &Set_.Fields(1));
  EXPECT_EQ(Grid_.ColumnField(1), &Set_.Fields(0));
  EXPECT_EQ(Grid_.ColumnTitle(0), "Full name");
  EXPECT_EQ(Grid_.ColumnTitle(1), "No.");
  EXPECT_EQ(Grid_.ColumnTitle(2), "");
  EXPECT_EQ(Grid_.ColumnWidth(0), 20 * 7);
  EXPECT_EQ(Grid_.ColumnWidth(1), 33);
  EXPECT_EQ(Grid_.ColumnWidth(2), 10 * 7);
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

TEST(TMemoryStringGrid, ResizingKeepsCellsAndTheRowInside) {
  TMemoryStringGrid grid(2, 3);
  grid.SetRowCells(1, {"a", "b"});
  grid.SetRow(2);
  grid.SetRowCount(2);
  EXPECT_EQ(grid.Row(), 1);
  grid.SetColCount(3);
  EXPECT_EQ(grid.Cells(1, 1), "b");
  EXPECT_EQ(grid.Cells(2, 1), "");
  EXPECT_EQ(grid.ColWidths(2), 64);
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
}

}  // namespace
}  // namespace norva
