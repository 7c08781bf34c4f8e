/// A data set over a range of C++ structs.
///
///   std::vector<TPerson> people = ...;
///   TRangeDataSet Source(people,
///                        Column("Name", &TPerson::Name),
///                        Column("Age", &TPerson::Age),
///                        Column("Seniority", [](const TPerson& P) { return Years(P.Hired); }));
///   Export.DataSet = &Source;
///
/// The type of a field follows from what its column gives:
///
///   bool                                          ftBoolean
///   integers of 8 and 16 bits                     ftSmallint; 16 bits unsigned ftWord
///   integers of 32 bits                           ftInteger; unsigned ftLargeint
///   integers of 64 bits                           ftLargeint; above its range EDatabaseError
///   float, double, long double                    ftFloat
///   std::string, std::string_view, const char*    ftString, Size 255; a null pointer is null
///   char[n]                                       ftString, Size n; ends at the first NUL, if any
///   char                                          ftString, Size 1
///   year_month_day, sys_days, local_days          ftDate
///   sys_time, local_time, finer than days         ftDateTime, as it stands, without a time zone
///   hh_mm_ss, durations (00:00 to below 24:00)    ftTime
///   std::optional<T>                              as T; null without a value
///
/// Times are cut to milliseconds. Texts are in the active code page; Size is what a format is told
/// and limits no text. Dates and times outside the years 1 to 9999, or that do not exist, throw
/// EDatabaseError when they are read.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <ranges>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <norva/platform/DataSet.h>
#include <norva/sources/memory/RangeValue.h>
#include <norva/sources/memory/RecordDataSet.h>

namespace norva {

/// A field of a TRangeDataSet: its name, and how to read it from a record. Made by Column.
template <class TGetter>
struct TRangeColumn {
  std::string Name;
  TGetter Getter;
};

/// `Getter` is a pointer to a data member or to a const member function, or a callable that takes
/// a const record.
template <class TGetter>
TRangeColumn<TGetter> Column(std::string Name, TGetter Getter) {
  return {std::move(Name), std::move(Getter)};
}

namespace internal {

/// Where the fields of a set find its current record.
template <class TRecord>
class TRangeCursor {
 public:
  /// Null in an empty set. Throws EDatabaseError when the set is closed.
  virtual const TRecord* Record() const = 0;

 protected:
  ~TRangeCursor() = default;
};

template <class TRecord, class TGetter>
class TRangeField : public TField {
  using TResult = std::invoke_result_t<const TGetter&, const TRecord&>;
  using TPlain = std::remove_cvref_t<TResult>;
  static_assert(RangeReadable<TPlain>,
                "no field can hold what this column gives: see the types in RangeDataSet.h");

 public:
  TRangeField(TRangeColumn<TGetter> Column, const TRecordDataSet& Set,
              const TRangeCursor<TRecord>& Cursor)
      : TField(std::move(Column.Name), TRangeValue<TPlain>::Type, TRangeValue<TPlain>::Size),
        Getter_(std::move(Column.Getter)),
        Place_{Set, *this},
        Cursor_(Cursor) {}

  bool IsNull() const override {
    if constexpr (RangeNullable<TPlain>) {
      return Value().Kind == vkNull;
    } else {
      return !Cursor_.Record();
    }
  }

  TFieldValue Value() const override {
    const TRecord* record = Cursor_.Record();
    if (!record) return {};
    if constexpr (std::is_lvalue_reference_v<TResult>) {
      return TRangeValue<TPlain>::Read(std::invoke(Getter_, *record), Place_);
    } else {
      // The text of a temporary is kept here. While it is the same it stays in place, so that
      // values read before remain valid.
      const TPlain result = std::invoke(Getter_, *record);
      TFieldValue value = TRangeValue<TPlain>::Read(result, Place_);
      if (value.Kind != vkText) return value;
      if (Text_ != value.Text) Text_ = value.Text;
      value.Text = Text_;
      return value;
    }
  }

 private:
  TGetter Getter_;
  TRangePlace Place_;
  const TRangeCursor<TRecord>& Cursor_;
  mutable std::string Text_;
};

}  // namespace internal

/// A data set over a forward range of structs, read through its iterators, one record at a time.
/// See RecordDataSet.h for how it moves.
///
/// A container is referenced, not copied: it must outlive the set. A view is copied, as views are,
/// and a temporary container is moved into the set. The first record is looked up when it is asked
/// for, not by the constructor; after a change to the range, First starts anew with what it holds.
template <std::ranges::forward_range TView>
requires std::ranges::view<TView>
class TRangeDataSet : public TRecordDataSet,
                      private internal::TRangeCursor<std::ranges::range_value_t<TView>> {
 public:
  using TRecord = std::ranges::range_value_t<TView>;

  /// Throws EDatabaseError when two columns have the same name, ignoring case.
  template <std::ranges::viewable_range TRange, class... TGetters>
  explicit TRangeDataSet(TRange&& Range, TRangeColumn<TGetters>... Columns)
      : View_(std::views::all(std::forward<TRange>(Range))) {
    (AddColumn(std::move(Columns)), ...);
  }
  std::string_view ClassName() const override { return "TRangeDataSet"; }

 protected:
  bool HasRecords() const override { return !std::ranges::empty(View_); }

  bool Move(std::int64_t From, std::int64_t To) override {
    if (To == 0) {
      Leave();
      return HasRecords();
    }
    const bool isStep = Found_ && To == From + 1;
    TIterator target = isStep ? Current_ : std::ranges::begin(View_);
    std::ranges::advance(target, static_cast<TDifference>(isStep ? 1 : To),
                         std::ranges::end(View_));
    if (target == std::ranges::end(View_)) return false;
    Leave();
    Current_ = std::move(target);
    Found_ = true;
    return true;
  }

 private:
  using TIterator = std::ranges::iterator_t<TView>;
  using TDifference = std::ranges::range_difference_t<TView>;
  struct TNothing {};
  // Records that a view makes on the fly are kept while they are the current one.
  static constexpr bool InPlace = std::is_lvalue_reference_v<std::ranges::range_reference_t<TView>>;
  using THeld = std::conditional_t<InPlace, TNothing, std::optional<TRecord>>;

  template <class TGetter>
  void AddColumn(TRangeColumn<TGetter> Column) {
    using TRangeField = internal::TRangeField<TRecord, TGetter>;
    const internal::TRangeCursor<TRecord>& cursor = *this;
    AddNewField(std::make_unique<TRangeField>(std::move(Column), *this, cursor));
  }

  // Forgets the current record.
  void Leave() {
    Found_ = false;
    if constexpr (!InPlace) Held_.reset();
  }

  const TRecord* Record() const override {
    CheckActive();
    if (!Found_) {
      if (!HasRecords()) return nullptr;
      Current_ = std::ranges::begin(View_);
      Found_ = true;
    }
    if constexpr (InPlace) {
      return std::addressof(*Current_);
    } else {
      if (!Held_) Held_.emplace(*Current_);
      return std::addressof(*Held_);
    }
  }

  mutable TView View_;  // some views can be iterated only while they are not const
  mutable TIterator Current_{};
  mutable bool Found_ = false;  // no: the current record is the first, not looked up yet
  [[no_unique_address]] mutable THeld Held_;
};

template <class TRange, class... TGetters>
TRangeDataSet(TRange&&, TRangeColumn<TGetters>...) -> TRangeDataSet<std::views::all_t<TRange>>;

}  // namespace norva
