/// A component with a property of every kind.
#pragma once

#include <algorithm>
#include <string>

#include <norva/platform/Property.h>

namespace norva::tests {

enum TSampleTint : std::uint8_t { stRed, stGreen, stBlue };
inline constexpr std::string_view TSampleTintNames[] = {"stRed", "stGreen", "stBlue"};
constexpr TEnumInfo EnumInfo(TSampleTint) { return {"TSampleTint", TSampleTintNames}; }

class TSampleGroup : public TPersistent {
 public:
  std::string_view ClassName() const override { return "TSampleGroup"; }
  const TPropertyList& Properties() const override {
    static const TPropertyList list{Published("Size", &TSampleGroup::Size, 8),
                                    PublishedList("Notes", &TSampleGroup::Notes)};
    return list;
  }
  std::int32_t Size = 8;
  TStringList Notes;
};

class TStranger : public TComponent {
 public:
  using TComponent::TComponent;
  std::string_view ClassName() const override { return "TStranger"; }
};

class TSample : public TComponent {
 public:
  using TComponent::TComponent;
  std::string_view ClassName() const override { return "TSample"; }
  const TPropertyList& Properties() const override {
    using S = TSample;
    static const TPropertyList list{
        Published("Count", &S::Count, 3),
        Published("Small", &S::Small, 3),
        Published("Text", &S::Text, "none"),
        Published("Flag", &S::Flag, false),
        Published("Mark", &S::Mark, ','),
        Published("Operation", &S::Tint, stGreen),
        Published("Tints", &S::Tints, TSet<TSampleTint>{stGreen}),
        PublishedColor("Ink", &S::Ink, 0),
        Published("Limit", &S::Limit, &S::SetLimit, 5),
        PublishedList("Lines", &S::Lines),
        PublishedGroup("Group", &S::Group),
        PublishedReference("Partner", "TSample", &S::Partner),
        PublishedEvent("OnChange", "TNotifyEvent"),
    };
    return list;
  }

  std::int32_t Limit() const { return Limit_; }
  void SetLimit(std::int32_t Value) { Limit_ = std::min(Value, 10); }

  std::int32_t Count = 3;
  std::uint8_t Small = 3;
  std::string Text = "none";
  bool Flag = false;
  char Mark = ',';
  TSampleTint Tint = stGreen;
  TSet<TSampleTint> Tints{stGreen};
  std::int32_t Ink = 0;
  TStringList Lines;
  TSampleGroup Group;
  TReference<TSample> Partner{*this};

 protected:
  void Notification(TComponent& Component, TOperation Operation) override {
    TComponent::Notification(Component, Operation);
    Partner.Notify(Component, Operation);
  }

 private:
  std::int32_t Limit_ = 5;
};

}  // namespace norva::tests
