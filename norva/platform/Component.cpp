#include <norva/platform/Component.h>

#include <algorithm>

#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>

namespace norva {

TComponent::TComponent(TComponent* Owner) : Owner_(Owner) {
  if (!Owner_) return;
  Owner_->Components_.push_back(this);
  Owner_->Notification(*this, opInsert);
}

TComponent::~TComponent() {
  // Each observer forgets this component before it is told: it may die in its own handler.
  while (!FreeNotifies_.empty()) {
    TComponent* observer = FreeNotifies_.back();
    FreeNotifies_.pop_back();
    std::erase(observer->FreeNotifies_, this);
    observer->Notification(*this, opRemove);
  }
  while (!Components_.empty()) {
    TComponent* last = Components_.back();
    Components_.pop_back();
    last->Owner_ = nullptr;
    delete last;
  }
  if (Owner_) {
    std::erase(Owner_->Components_, this);
    Owner_->Notification(*this, opRemove);
  }
}

TComponent& TComponent::Components(int Index) const {
  if (Index < 0 || Index >= ComponentCount()) throw EListError(MsgListIndex, Index);
  return *Components_[static_cast<std::size_t>(Index)];
}

TComponent* TComponent::FindComponent(std::string_view ComponentName) const {
  const auto found =
      std::find_if(Components_.begin(), Components_.end(), [ComponentName](TComponent* c) {
        return !c->Name.empty() && SameText(c->Name, ComponentName);
      });
  return found == Components_.end() ? nullptr : *found;
}

void TComponent::FreeNotification(TComponent& Observer) {
  if (&Observer == this) return;
  const auto add = [](std::vector<TComponent*>& list, TComponent* component) {
    if (std::find(list.begin(), list.end(), component) == list.end()) list.push_back(component);
  };
  add(FreeNotifies_, &Observer);
  add(Observer.FreeNotifies_, this);
}

void TComponent::Notification(TComponent& Component, TOperation Operation) {
  for (TComponent* owned : Components_) {
    if (owned != &Component) owned->Notification(Component, Operation);
  }
}

}  // namespace norva
