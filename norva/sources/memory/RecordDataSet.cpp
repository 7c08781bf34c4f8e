#include <norva/sources/memory/RecordDataSet.h>

#include <utility>

#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>
#include <norva/platform/Property.h>

namespace norva {

const TPropertyList& TRecordDataSet::Properties() const {
  static const TPropertyList list(
      TDataSet::Properties(),
      {
          Published("Active", &TRecordDataSet::Active, &TRecordDataSet::SetActive, true),
      });
  return list;
}

void TRecordDataSet::SetActive(bool Value) {
  if (Value) {
    Open();
  } else {
    Close();
  }
}

void TRecordDataSet::Open() {
  if (Active_) return;
  Active_ = true;
  Rewind();
}

void TRecordDataSet::First() {
  CheckActive();
  Rewind();
}

void TRecordDataSet::Next() {
  CheckActive();
  if (Eof()) return;
  if (Move(Position_, Position_ + 1)) {
    ++Position_;
  } else {
    PastEnd_ = true;
  }
}

TBookmark TRecordDataSet::GetBookmark() {
  CheckActive();
  return Position_;
}

void TRecordDataSet::GotoBookmark(TBookmark Bookmark) {
  CheckActive();
  // The bookmark of an empty set leads back to its only place.
  const bool found = Bookmark >= 0 && (Move(Position_, Bookmark) || Bookmark == 0);
  if (!found) throw EDatabaseError(MsgNoSuchRecord, ClassName(), Bookmark + 1);
  Position_ = Bookmark;
  PastEnd_ = false;
}

TField& TRecordDataSet::AddNewField(std::unique_ptr<TField> Field) {
  if (FindField(Field->FieldName)) throw EDatabaseError(MsgFieldExists, Field->FieldName);
  return AddField(std::move(Field));
}

void TRecordDataSet::Rewind() {
  Move(Position_, 0);
  Position_ = 0;
  PastEnd_ = false;
}

void TRecordDataSet::CheckActive() const {
  if (!Active_) throw EDatabaseError(MsgDataSetClosed, ClassName());
}

}  // namespace norva
