#include <norva/platform/Component.h>

#include <gtest/gtest.h>

#include <norva/platform/Exceptions.h>
#include <tests/ErrorText.h>

namespace norva::tests {
namespace {

/// Notes what it is told, as `Observer+Name` and `Observer-Name`, and its own end as `~Name`.
class TPart : public TComponent {
 public:
  TPart(std::string& Log, const char* PartName, TComponent* Owner = nullptr)
      : TComponent(Owner), Log_(Log) {
    Name = PartName;
  }
  ~TPart() override { Log_ += "~" + Name + " "; }
  std::string_view ClassName() const override { return "TPart"; }

  TReference<TPart> First{*this}, Second{*this};
  std::unique_ptr<TPart> Victim;  // dies with the first removal heard of

 protected:
  void Notification(TComponent& Component, TOperation Operation) override {
    TComponent::Notification(Component, Operation);
    Log_ += Name + (Operation == opInsert ? "+" : "-") + Component.Name + " ";
    First.Notify(Component, Operation);
    Second.Notify(Component, Operation);
    if (Operation == opRemove) Victim.reset();
  }

 private:
  std::string& Log_;
};

TEST(Component, OwnerDestroysItsComponentsLastFirst) {
  std::string log;
  {
    TPart owner(log, "Owner");
    new TPart(log, "A", &owner);
    new TPart(log, "B", new TPart(log, "Inner", &owner));
    auto* early = new TPart(log, "C", &owner);
    ASSERT_EQ(owner.ComponentCount(), 3);
    EXPECT_EQ(early->Owner(), &owner);
    log.clear();
    delete early;
    EXPECT_EQ(log, "~C A-C B-C Inner-C Owner-C ");  // owned ones hear of it first
    EXPECT_EQ(owner.ComponentCount(), 2);
    log.clear();
  }
  EXPECT_EQ(log, "~Owner ~Inner ~B ~A ");
}

TEST(Component, FindsComponentsByNameAndIndex) {
  std::string log;
  TPart owner(log, "Owner");
  new TPart(log, "", &owner);
  auto* a = new TPart(log, "Export1", &owner);
  EXPECT_EQ(owner.FindComponent("EXPORT1"), a);
  EXPECT_EQ(owner.FindComponent("Export"), nullptr);
  EXPECT_EQ(owner.FindComponent(""), nullptr);  // a component without a name is not found
  EXPECT_EQ(&owner.Components(1), a);
  for (const int index : {-1, 2}) {
    EXPECT_EQ(ErrorText<EListError>([&] { owner.Components(index); }),
              Format("List index %d is out of range", index));
  }
}

TEST(Component, ReferencesAreClearedWhenTheirTargetGoes) {
  std::string log;
  TPart holder(log, "Holder");
  {
    TPart target(log, "Target"), other(log, "Other");
    holder.First = &target;
    holder.Second = &target;
    holder.First = &target;  // registered once
    log.clear();
    holder.Second = &other;
    EXPECT_EQ(holder.First, &target);
  }
  EXPECT_EQ(log, "~Other Holder-Other ~Target Holder-Target ");
  EXPECT_EQ(holder.First, nullptr);
  EXPECT_EQ(holder.Second, nullptr);
  TPart target(log, "Target");
  {
    TPart shortLived(log, "Short");
    shortLived.First = &target;
  }
  log.clear();  // the target's end reaches nobody
  holder.First = &holder;
  EXPECT_EQ(holder.First, &holder);
}

TEST(Component, ObserversMayDieInANotification) {
  std::string log;
  TPart first(log, "First");
  first.Victim = std::make_unique<TPart>(log, "Victim");
  {
    TPart target(log, "Target");
    first.Victim->First = &target;
    first.First = &target;
  }
  EXPECT_EQ(first.First, nullptr);
  EXPECT_EQ(first.Victim, nullptr);
}

}  // namespace
}  // namespace norva::tests
