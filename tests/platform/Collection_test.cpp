#include <norva/platform/Collection.h>

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <norva/platform/Component.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/FormText.h>
#include <norva/platform/Property.h>
#include <tests/ErrorText.h>

namespace norva::tests {
namespace {

class TLabel : public TCollectionItem {
 public:
  using TCollectionItem::TCollectionItem;
  std::string_view ClassName() const override { return "TLabel"; }
  void Assign(const TPersistent& Source) override {
    const auto* label = dynamic_cast<const TLabel*>(&Source);
    if (!label) return TCollectionItem::Assign(Source);
    Text = label->Text;
  }
  const TPropertyList& Properties() const override {
    static const TPropertyList list{IgnoringCase(Published("Text", &TLabel::Text, "none"))};
    return list;
  }
  std::string Text = "none";
};

class TLabels : public TCollectionOf<TLabel> {
 public:
  using TCollectionOf::TCollectionOf;
  std::string_view ClassName() const override { return "TLabels"; }
};

class TSlot : public TPersistent {
 public:
  std::string_view ClassName() const override { return "TSlot"; }
  const TPropertyList& Properties() const override {
    static const TPropertyList list{Published("No", &TSlot::No, 0)};
    return list;
  }
  std::int32_t No = 0;
};

class TCrate : public TCollectionItem {
 public:
  using TCollectionItem::TCollectionItem;
  std::string_view ClassName() const override { return "TCrate"; }
  const TPropertyList& Properties() const override {
    static const TPropertyList list{
        Published("Weight", &TCrate::Weight, 1), PublishedGroup("Slot", &TCrate::Slot),
        PublishedList("Notes", &TCrate::Notes), PublishedCollection("Labels", &TCrate::Labels)};
    return list;
  }
  std::int32_t Weight = 1;
  TSlot Slot;
  TStringList Notes;
  TLabels Labels;
};

/// Its crates start with another weight than their stored default, and with a slot.
class TCrates : public TCollectionOf<TCrate> {
 public:
  using TCollectionOf::TCollectionOf;
  std::string_view ClassName() const override { return "TCrates"; }

 protected:
  std::unique_ptr<TCollectionItem> NewItem() override {
    auto crate = std::make_unique<TCrate>(this);
    crate->Weight = 500;
    crate->Slot.No = 7;
    return crate;
  }
};

class TShip : public TComponent {
 public:
  using TComponent::TComponent;
  std::string_view ClassName() const override { return "TShip"; }
  const TPropertyList& Properties() const override {
    static const TPropertyList list{PublishedCollection("Crates", &TShip::Crates),
                                    Published("Speed", &TShip::Speed, 0)};
    return list;
  }
  TCrates Crates;
  std::int32_t Speed = 0;
};

/// The texts of `Labels`, with a blank behind each.
std::string Texts(const TLabels& Labels) {
  std::string texts;
  for (int i = 0; i < Labels.Count(); ++i) texts += Labels[i].Text + " ";
  return texts;
}

void Add(TLabels& Labels, std::initializer_list<const char*> Items) {
  for (const char* text : Items) Labels.Add().Text = text;
}

TEST(Collection, ItemsKnowTheirPlace) {
  TLabels labels;
  Add(labels, {"a", "b", "c"});
  TLabel& last = labels[2];
  EXPECT_EQ(last.Collection(), &labels);
  EXPECT_EQ(last.Index(), 2);
  labels.Delete(0);
  EXPECT_EQ(Texts(labels), "b c ");
  EXPECT_EQ(last.Index(), 1);
  EXPECT_EQ(TLabel().Index(), -1);
  for (const int index : {-1, 2}) {
    const std::string expected = "List index " + std::to_string(index) + " is out of range";
    EXPECT_EQ(ErrorText<EListError>([&] { labels.Item(index); }), expected);
    EXPECT_EQ(ErrorText<EListError>([&] { labels.Delete(index); }), expected);
  }
  EXPECT_EQ(labels.Count(), 2);
}

TEST(Collection, CopiedItemsKeepTheirOwnPlace) {
  TLabels labels;
  Add(labels, {"a", "b"});
  TLabel copy = labels[1];
  EXPECT_EQ(copy.Text, "b");
  EXPECT_EQ(copy.Collection(), nullptr);
  copy.Text = "c";
  labels[0] = copy;
  EXPECT_EQ(Texts(labels), "c b ");
  EXPECT_EQ(labels[0].Index(), 0);
}

TEST(Collection, AssignCopiesItems) {
  TLabels source, target;
  Add(source, {"a", "b"});
  Add(target, {"old"});
  target.Assign(source);
  source[0].Text = "changed";
  EXPECT_EQ(Texts(target), "a b ");
  EXPECT_EQ(target[1].Collection(), &target);
  target.Assign(target);
  EXPECT_EQ(Texts(target), "a b ");

  TCrates crates;
  crates.Add();
  EXPECT_EQ(ErrorText<EConvertError>([&] { target.Assign(crates); }),
            "A TCrate cannot be assigned to a TLabel");
  EXPECT_EQ(ErrorText<EConvertError>([&] { target.Assign(source[0]); }),
            "A TLabel cannot be assigned to a TLabels");
  EXPECT_EQ(Texts(target), "a b ");  // an error leaves the items alone
}

const char StoredShip[] =
    "object : TShip\n"
    "  Crates = <\n"
    "    item\n"
    "      Weight = 20\n"
    "      Slot.No = 3\n"
    "      Notes = (\n"
    "        'end>')\n"
    "      Labels = <\n"
    "        item\n"
    "          Text = 'item'\n"
    "        end\n"
    "        item\n"
    "        end>\n"
    "    end\n"
    "    item\n"
    "      Notes = ()\n"
    "      Labels = <>\n"
    "    end>\n"
    "  Speed = 9\n"
    "end\n";

TEST(CollectionForm, StoresItemsAndLoadsThemBack) {
  TShip ship;
  ship.Speed = 9;
  TCrate& full = ship.Crates.Add();
  full.Weight = 20;
  full.Slot.No = 3;
  full.Notes.Add("end>");
  Add(full.Labels, {"item", "NONE"});  // the second is the default but for its case
  TCrate& plain = ship.Crates.Add();
  plain.Weight = 1;
  plain.Slot.No = 0;
  EXPECT_EQ(SaveComponent(ship), StoredShip);

  TShip loaded;
  loaded.Crates.Add();
  LoadComponent(StoredShip, loaded);
  ASSERT_EQ(loaded.Crates.Count(), 2);
  EXPECT_EQ(Texts(loaded.Crates[0].Labels), "item none ");
  // What was left out is the stored default, not what the collection gives a new item.
  EXPECT_EQ(loaded.Crates[1].Weight, 1);
  EXPECT_EQ(loaded.Crates[1].Slot.No, 0);
  EXPECT_EQ(SaveComponent(loaded), StoredShip);
}

TEST(CollectionForm, EmptyCollectionsStand) {
  TShip ship, loaded;
  loaded.Crates.Add();
  const std::string stored = SaveComponent(ship);
  EXPECT_EQ(stored, "object : TShip\n  Crates = <>\nend\n");
  LoadComponent(stored, loaded);
  EXPECT_EQ(loaded.Crates.Count(), 0);
  LoadComponent("object : TShip\nCrates = <\nitem\nend\n>\nend", loaded);  // by hand
  EXPECT_EQ(loaded.Crates.Count(), 1);
}

struct ErrorCase {
  const char *Body, *Error;  // lines behind "object S: TShip"
};
const ErrorCase ErrorCases[] = {
    {"Crates = 1",                                             "line 2: \"<\" is expected"                                         },
    {"Crates = <\nWeight = 2\nend>",                           "line 3: \"item\" is expected"                                      },
    {"Crates = <\nitem\nWeight = x\nend>",
     "line 4: \"x\" is not a value of Weight: give a whole number from -2147483648 to 2147483647"                                  },
    {"Crates = <\nitem\nitem\nend>",                           "line 4: \"Property = value\" is expected"                          },
    {"Crates = <\nitem\nLabels = <\nitem\nNo = 1\nend>\nend>",
     "line 6: TLabel has no property \"No\" that can be stored"                                                                    },
    {"Crates.Weight = 1",                                      "line 2: TShip has no property \"Crates.Weight\" that can be stored"},
    {"Crates = <\nitem",                                       "line 4: \"end\" is expected"                                       }, // the line `end` closed the item
};

TEST(CollectionForm, ErrorsNameTheLine) {
  for (const ErrorCase& c : ErrorCases) {
    TShip ship;
    const std::string text = "object S: TShip\n" + std::string(c.Body) + "\nend\n";
    EXPECT_EQ(ErrorText<EConvertError>([&] { LoadComponent(text, ship); }),
              std::string("Form text, ") + c.Error);
  }
}

}  // namespace
}  // namespace norva::tests
