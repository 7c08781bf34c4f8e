/// Lists of objects that are published, stored and edited as one property.
///
///   class TxlsFieldFormats : public TCollectionOf<TxlsFieldFormat> { ... };
///   Export.FieldFormats.Add().FieldName = "Price";
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <norva/platform/Export.h>
#include <norva/platform/Persistent.h>

namespace norva {

class TCollection;

/// An item of a collection.
class NORVA_EXPORT TCollectionItem : public TPersistent {
 public:
  /// `Collection` is null for an item that stands alone.
  explicit TCollectionItem(TCollection* Collection = nullptr) : Collection_(Collection) {}

  /// A copy stands alone; an item that is assigned to stays where it is.
  TCollectionItem(const TCollectionItem&) : Collection_(nullptr) {}
  // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): nothing is assigned
  TCollectionItem& operator=(const TCollectionItem&) { return *this; }

  TCollection* Collection() const { return Collection_; }
  /// Position in the collection; -1 for an item that stands alone.
  int Index() const;
  /// How a list shows the item; the class name by default.
  virtual std::string GetDisplayName() const;

 private:
  TCollection* Collection_;  // the owner
};

/// An owning list of items of one class.
class NORVA_EXPORT TCollection : public TPersistent {
 public:
  /// `Owner` is the object that publishes the collection; it may be null.
  explicit TCollection(TPersistent* Owner = nullptr) : Owner_(Owner) {}
  TCollection(const TCollection&) = delete;
  TCollection& operator=(const TCollection&) = delete;
  ~TCollection() override;

  TPersistent* Owner() const { return Owner_; }
  int Count() const { return static_cast<int>(Items_.size()); }
  /// Throws EListError when `Index` is out of range, as does Delete.
  TCollectionItem& Item(int Index) const;
  /// Appends a new item and returns it.
  TCollectionItem& AddItem();
  void Delete(int Index);
  void Clear() { Items_.clear(); }
  /// Puts copies of the items of another collection in the place of this one's. Throws
  /// EConvertError, and changes nothing, when `Source` is none or its items are unrelated.
  void Assign(const TPersistent& Source) override;

 protected:
  /// A new item of the collection's class, made with this collection.
  virtual std::unique_ptr<TCollectionItem> NewItem() = 0;

 private:
  TPersistent* Owner_;  // not owned
  std::vector<std::unique_ptr<TCollectionItem>> Items_;
};

/// A collection whose items are of class `TItem`, made from the collection.
template <class TItem>
class TCollectionOf : public TCollection {
 public:
  using TCollection::TCollection;
  TItem& operator[](int Index) const { return static_cast<TItem&>(Item(Index)); }
  TItem& Add() { return static_cast<TItem&>(AddItem()); }

 protected:
  std::unique_ptr<TCollectionItem> NewItem() override { return std::make_unique<TItem>(this); }
};

}  // namespace norva
