/// Components: objects with a name and an owner, told when another one they refer to goes away.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <norva/platform/Export.h>
#include <norva/platform/Persistent.h>

namespace norva {

enum TOperation : std::uint8_t { opInsert, opRemove };

/// Base of exporters and sources.
class NORVA_EXPORT TComponent : public TPersistent {
 public:
  /// `Owner` may be null; otherwise it destroys this component, which is then made with `new`,
  /// together with itself. A component that dies earlier leaves its owner's list.
  explicit TComponent(TComponent* Owner = nullptr);
  TComponent(const TComponent&) = delete;
  TComponent& operator=(const TComponent&) = delete;
  ~TComponent() override;

  /// How stored forms refer to this component; empty by default.
  std::string Name;

  TComponent* Owner() const { return Owner_; }
  int ComponentCount() const { return static_cast<int>(Components_.size()); }
  /// Throws EListError when `Index` is out of range.
  TComponent& Components(int Index) const;
  /// The owned component of that name, case ignored; null when there is none.
  TComponent* FindComponent(std::string_view ComponentName) const;

  /// Asks this component to tell `Observer`, by Notification, when it is destroyed.
  void FreeNotification(TComponent& Observer);

 protected:
  /// Told that `Component` joins the same owner or, with opRemove, that it goes away. Overrides
  /// clear their references to it and call the base.
  virtual void Notification(TComponent& Component, TOperation Operation);

 private:
  TComponent* Owner_;
  std::vector<TComponent*> Components_;    // owned
  std::vector<TComponent*> FreeNotifies_;  // not owned; each also holds this component
};

/// A reference to a component that is not owned. Assigning it registers `Holder` for the
/// component's removal notification; the holder's Notification passes the call on to Notify.
template <class T>
class TReference {
 public:
  explicit TReference(TComponent& Holder) : Holder_(Holder) {}
  TReference(const TReference&) = delete;
  TReference& operator=(const TReference&) = delete;

  TReference& operator=(T* Target) {
    Target_ = Target;
    Component_ = Target;
    if (Target) Component_->FreeNotification(Holder_);
    return *this;
  }
  /// Clears the reference when it is to `Component`, which is being removed.
  void Notify(const TComponent& Component, TOperation Operation) {
    if (Operation == opRemove && Component_ == &Component) *this = nullptr;
  }

  T* Get() const { return Target_; }
  operator T*() const { return Target_; }
  T* operator->() const { return Target_; }

 private:
  TComponent& Holder_;
  T* Target_ = nullptr;
  TComponent* Component_ = nullptr;  // the same object: a dying T can no longer be converted
};

}  // namespace norva
