#include <norva/core/Norvacommon.h>

#include <gtest/gtest.h>

#include <norva/platform/Clock.h>
#include <norva/platform/Exceptions.h>
#include <tests/ErrorText.h>
#include <tests/Exports.h>
#include <tests/Vectors.h>

namespace norva::tests {
namespace {

TEST(CalcStringType, Vectors) {
  SetClock([] { return 46035.0; });  // 13 January 2026
  for (const TVector& row : ReadVectors("calcstringtype")) {
    SCOPED_TRACE(row.Place + ": " + row["text"]);
    const TLocaleScope locale(VectorLocale(row["locale"]));
    EXPECT_EQ(EnumToStr(CalcStringType(row["text"], row["true"], row["false"])), row["expected"]);
  }
  SetClock(nullptr);
}

/// A set that learns its fields when it is opened, or fails to.
class TLateSet : public TMemoryDataSet {
 public:
  TLateSet(bool Opens, bool Closes) : Opens_(Opens), Closes_(Closes) { TMemoryDataSet::Close(); }
  void Open() override {
    if (!Opens_) throw EDatabaseError("no table");
    TMemoryDataSet::Open();
    AddField("A", ftInteger);
    AddField("B", ftInteger);
  }
  void Close() override {
    TMemoryDataSet::Close();
    if (!Closes_) throw EDatabaseError("no connection");
  }

 private:
  bool Opens_, Closes_;
};

struct PickCase {
  TNorvaSource Kind;
  TStringList Fields;
  const char *Available, *Exported;
};
const PickCase PickCases[] = {
    {esStringGrid, {"2", "7"},           "0,1,",          "2,"         },
    {esStringGrid, {},                   "0,1,2,",        ""           },
    {esListView,   {"town", "No", "Id"}, "Name,",         "town,Id,"   },
    {esDataSet,    {"NAME", "Id", "Id"}, "Town,",         "NAME,Id,Id,"},
    {esDBGrid,     {},                   "Id,Name,Town,", ""           }, // as the set has them
};

TEST(GetNorvaColumns, SplitsAvailableAndExported) {
  const auto joined = [](const TStringList& List) { return Replace(List.Text(), "\r\n", ","); };
  for (const PickCase& c : PickCases) {
    SCOPED_TRACE(NorvaSourceAsString(c.Kind));
    TSources s(c.Kind);
    TStringList available{"old"}, exported{"old"};
    GetNorvaColumns(c.Kind, &s.Set, &s.DBGrid, &s.ListView, &s.StringGrid, c.Fields, available,
                    exported);
    EXPECT_EQ(joined(available), c.Available);
    EXPECT_EQ(joined(exported), c.Exported);
  }
  TStringList available{"old"}, exported;
  for (const bool closes : {true, false}) {
    TLateSet late(true, closes);
    GetNorvaColumns(esDataSet, &late, nullptr, nullptr, nullptr, {"b"}, available, exported);
    EXPECT_EQ(joined(available) + "/" + joined(exported), "A,/b,");
    EXPECT_FALSE(late.Active());
  }
  TLateSet failing(false, true);
  GetNorvaColumns(esDataSet, &failing, nullptr, nullptr, nullptr, {"b"}, available, exported);
  EXPECT_EQ(joined(available) + "/" + joined(exported), "/");
  TLateSet open(true, true);
  open.Open();
  GetNorvaColumns(esDataSet, &open, nullptr, nullptr, nullptr, {}, available, exported);
  EXPECT_TRUE(open.Active());
  available.Add("kept");
  EXPECT_EQ(ErrorText<Exception>([&] {
              GetNorvaColumns(esListView, &open, nullptr, nullptr, nullptr, {}, available,
                              exported);
            }),
            "Export source (ListView) is not assigned");
  EXPECT_EQ(joined(available), "A,B,kept,");
}

TEST(CheckNorvaSource, LooksAtTheChosenKindOnly) {
  TMemoryDBGrid bare;
  EXPECT_EQ(
      ErrorText<Exception>([&] { CheckNorvaSource(esDBGrid, nullptr, &bare, nullptr, nullptr); }),
      "Export source (DBGrid) is not assigned");
  TSources s(esDataSet);
  CheckNorvaSource(esDataSet, &s.Set, &bare, nullptr, nullptr);
  CheckNorvaSource(esListView, nullptr, nullptr, &s.ListView, nullptr);
  CheckNorvaSource(esStringGrid, nullptr, nullptr, nullptr, &s.StringGrid);
  EXPECT_EQ(NorvaSourceAsString(static_cast<TNorvaSource>(4)), "");
}

TEST(Norvacommon, SmallHelpers) {
  EXPECT_EQ(Replace("Ärger X", "ä", "ae"), "aerger X");
  EXPECT_EQ(MinimumInt(-2, 1), -2);
  EXPECT_EQ(MaximumInt(-2, 1), 1);
  TFormatSettings settings;
  settings.ListSeparator = ';';
  {
    const TLocaleScope locale(settings);
    EXPECT_EQ(GetListSeparator(), ';');
  }
  settings.ListSeparator = '\0';
  const TLocaleScope locale(settings);
  EXPECT_EQ(GetListSeparator(), ',');

  TMemoryListView list;  // without a canvas
  TMemoryDBGrid grid;    // Arial 8: an X of 7 pixels
  EXPECT_EQ(GetTextWidth(nullptr, "X"), 0);
  EXPECT_EQ(GetTextWidth(&list, "Zoë"), 24);
  EXPECT_EQ(GetTextWidth(&grid, "XX"), 14);
}

}  // namespace
}  // namespace norva::tests
