/// The common part of data sets over records that lie in memory.
///
/// Such a set is active from construction, so that a host only fills it and exports:
///
///   TMemoryDataSet People({{"Name", ftString, 20}, {"Age", ftInteger}});
///   People.Append({"Ann", 31});
///   Export.DataSet = &People;
///
/// It stands on its first record as soon as there is one. Next on the last record stays there and
/// makes Eof true; First and GotoBookmark make it false again. An empty set is at its end, and its
/// fields are null. While the set is closed it has no records: Eof and IsEmpty are true, and
/// moving it, its bookmarks and the values of its fields are errors.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <norva/platform/DataSet.h>
#include <norva/platform/Export.h>

namespace norva {

/// Walks over numbered records; TMemoryDataSet and TRangeDataSet say where they are.
class NORVA_EXPORT TRecordDataSet : public TDataSet {
 public:
  using TDataSet::TDataSet;
  const TPropertyList& Properties() const override;

  bool Active() const override { return Active_; }
  void SetActive(bool Value);
  /// Stands on the first record afterwards; no effect on a set that is open.
  void Open() override;
  /// Keeps fields and records.
  void Close() override { Active_ = false; }

  /// Throws EDatabaseError when the set is closed, as do Next and the bookmarks.
  void First() override;
  void Next() override;
  bool Eof() const override { return PastEnd_ || IsEmpty(); }
  bool IsEmpty() const override { return !Active_ || !HasRecords(); }

  void DisableControls() override { ++ControlsDisabled_; }
  void EnableControls() override { --ControlsDisabled_; }
  /// Calls of DisableControls that no EnableControls has answered yet; 0 when they are balanced.
  int ControlsDisabled() const { return ControlsDisabled_; }

  /// A bookmark is the number of its record. It needs no freeing.
  TBookmark GetBookmark() override;
  /// Throws EDatabaseError when there is no such record.
  void GotoBookmark(TBookmark Bookmark) override;

  /// Number of the current record, the first being 1; in an empty set 1 as well.
  std::int64_t RecNo() const { return Position_ + 1; }

 protected:
  virtual bool HasRecords() const = 0;
  /// Moves from record `From` to record `To`, both counted from 0. False when there is no record
  /// `To`; the set then stays where it is.
  virtual bool Move(std::int64_t From, std::int64_t To) = 0;

  /// Takes the field over. Throws EDatabaseError when its name is taken, ignoring case.
  TField& AddNewField(std::unique_ptr<TField> Field);
  /// Goes to the first record, of a set whose records are others now.
  void Rewind();
  /// Throws EDatabaseError when the set is closed.
  void CheckActive() const;
  /// Number of the current record, the first being 0.
  std::int64_t Position() const { return Position_; }

 private:
  bool Active_ = true;
  bool PastEnd_ = false;  // a Next was called on the last record
  std::int64_t Position_ = 0;
  int ControlsDisabled_ = 0;
};

}  // namespace norva
