#include <norva/platform/Collection.h>

#include <utility>

#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>

namespace norva {

int TCollectionItem::Index() const {
  for (int i = 0; Collection_ && i < Collection_->Count(); ++i) {
    if (&Collection_->Item(i) == this) return i;
  }
  return -1;
}

std::string TCollectionItem::GetDisplayName() const { return std::string(ClassName()); }

TCollection::~TCollection() = default;

TCollectionItem& TCollection::Item(int Index) const {
  if (Index < 0 || Index >= Count()) throw EListError(MsgListIndex, Index);
  return *Items_[static_cast<std::size_t>(Index)];
}

TCollectionItem& TCollection::AddItem() {
  Items_.push_back(NewItem());
  return *Items_.back();
}

void TCollection::Delete(int Index) {
  Item(Index);
  Items_.erase(Items_.begin() + Index);
}

void TCollection::Assign(const TPersistent& Source) {
  const auto* collection = dynamic_cast<const TCollection*>(&Source);
  if (!collection) AssignError(Source);
  if (collection == this) return;
  std::vector<std::unique_ptr<TCollectionItem>> items;
  for (const auto& item : collection->Items_) {
    items.push_back(NewItem());
    items.back()->Assign(*item);
  }
  Items_ = std::move(items);
}

}  // namespace norva
