// The rules of movement are those of both sets: every test here runs over each of them.
#include <norva/sources/memory/RecordDataSet.h>

#include <forward_list>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <norva/platform/Exceptions.h>
#include <norva/sources/memory/MemoryDataSet.h>
#include <norva/sources/memory/RangeDataSet.h>
#include <tests/ErrorText.h>

namespace norva {
namespace {

using tests::ErrorText;

struct TItem {
  int Number;
};

// Makes a set whose field "Number" holds 1, 2 ... Count.
struct TKind {
  const char* ClassName;
  std::function<std::shared_ptr<TRecordDataSet>(int Count)> Make;
};

template <class TContainer>
struct TRangeHolder {
  explicit TRangeHolder(const std::vector<TItem>& From) : Items(From.begin(), From.end()) {}

  TContainer Items;
  TRangeDataSet<std::ranges::ref_view<TContainer>> Set{Items, Column("Number", &TItem::Number)};
};

template <class TContainer>
std::shared_ptr<TRecordDataSet> MakeRangeSet(int Count) {
  std::vector<TItem> items;
  for (int i = 1; i <= Count; ++i) items.push_back({i});
  const auto holder = std::make_shared<TRangeHolder<TContainer>>(items);
  return {holder, &holder->Set};
}

std::shared_ptr<TRecordDataSet> MakeMemorySet(int Count) {
  const auto set = std::make_shared<TMemoryDataSet>(std::vector<TMemoryFieldDef>{
      {"Number", ftInteger}
  });
  for (int i = 1; i <= Count; ++i) set->Append({i});
  return set;
}

const TKind Kinds[] = {
    {"TMemoryDataSet", MakeMemorySet                         },
    {"TRangeDataSet",  MakeRangeSet<std::vector<TItem>>      },
    {"TRangeDataSet",  MakeRangeSet<std::forward_list<TItem>>},
};

class TRecordDataSetTest : public testing::TestWithParam<TKind> {
 protected:
  std::string Place(const TRecordDataSet& Set) {
    return Set.Fields(0).AsString() + (Set.Eof() ? " end" : "");
  }
};
INSTANTIATE_TEST_SUITE_P(, TRecordDataSetTest, testing::ValuesIn(Kinds));

TEST_P(TRecordDataSetTest, StaysOnTheLastRecordAtTheEnd) {
  const auto set = GetParam().Make(3);
  std::vector<std::string> places;
  for (int i = 0; i < 5; ++i) {
    places.push_back(Place(*set));
    set->Next();
  }
  EXPECT_EQ(places, (std::vector<std::string>{"1", "2", "3", "3 end", "3 end"}));
  set->First();
  EXPECT_EQ(Place(*set), "1");
}

TEST_P(TRecordDataSetTest, BookmarksLeadBackAndLeaveTheEnd) {
  const auto set = GetParam().Make(4);
  const TBookmark first = set->GetBookmark();
  set->Next();
  set->Next();
  const TBookmark third = set->GetBookmark();
  for (int i = 0; i < 5; ++i) set->Next();
  const TBookmark last = set->GetBookmark();
  EXPECT_EQ(Place(*set), "4 end");

  set->GotoBookmark(third);
  EXPECT_EQ(Place(*set), "3");
  set->GotoBookmark(first);
  EXPECT_EQ(Place(*set), "1");
  set->Next();
  EXPECT_EQ(Place(*set), "2");
  set->GotoBookmark(last);
  EXPECT_EQ(Place(*set), "4");
  set->FreeBookmark(third);
}

TEST_P(TRecordDataSetTest, RefusesBookmarksOfNoRecord) {
  const auto set = GetParam().Make(2);
  set->Next();
  const std::string name = GetParam().ClassName;
  EXPECT_EQ(ErrorText<EDatabaseError>([&] { set->GotoBookmark(2); }),
            "The " + name + " has no record 3");
  EXPECT_EQ(ErrorText<EDatabaseError>([&] { set->GotoBookmark(-1); }),
            "The " + name + " has no record 0");
  EXPECT_EQ(Place(*set), "2");
}

TEST_P(TRecordDataSetTest, EmptySetIsAtItsEndAndNull) {
  const auto set = GetParam().Make(0);
  EXPECT_TRUE(set->IsEmpty());
  EXPECT_EQ(Place(*set), " end");
  EXPECT_TRUE(set->Fields(0).IsNull());
  set->First();
  set->Next();
  set->GotoBookmark(set->GetBookmark());
  EXPECT_EQ(Place(*set), " end");
}

TEST_P(TRecordDataSetTest, ClosedSetGivesNothing) {
  const auto set = GetParam().Make(2);
  set->Next();
  set->Close();
  EXPECT_FALSE(set->Active());
  EXPECT_TRUE(set->Eof());
  EXPECT_TRUE(set->IsEmpty());
  EXPECT_EQ(set->FieldCount(), 1);
  const std::function<void()> refused[] = {
      [&] { set->First(); },
      [&] { set->Next(); },
      [&] { set->GetBookmark(); },
      [&] { set->GotoBookmark(0); },
      [&] { set->Fields(0).IsNull(); },
      [&] { set->Fields(0).AsString(); },
  };
  for (const auto& call : refused) {
    EXPECT_EQ(ErrorText<EDatabaseError>(call),
              std::string("The ") + GetParam().ClassName + " is closed: open it first");
  }
  set->Open();
  EXPECT_EQ(Place(*set), "1");
  set->Next();
  set->Open();  // already open
  EXPECT_EQ(Place(*set), "2");
}

}  // namespace
}  // namespace norva
