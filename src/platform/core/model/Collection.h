// Collections: ordered lists of owned items with published properties.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/core/model/Persistent.h"

namespace wrenfold {

class TCollection;

// One item; it belongs to at most one collection, which owns it.
class TCollectionItem : public TPersistent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  // With a collection, the item is appended to it and owned by it.
  explicit TCollectionItem(TCollection* collection = nullptr);
  ~TCollectionItem() override;

  TCollection* Collection() const { return FCollection; }
  // Moves the item to another collection (or out of any: then the caller owns it).
  void SetCollection(TCollection* collection);
  // A number that no other item of the collection has had.
  int ID() const { return FID; }
  // The position in the collection, -1 without one.
  int Index() const;
  // Moves the item; raises EListError outside 0..Count-1.
  virtual void SetIndex(int index);
  // How lists of items show this one: the class name, unless a descendant knows better.
  virtual std::string GetDisplayName() const { return ClassName(); }

  TPersistent* GetOwner() const override;
  std::string GetNamePath() const override;

 protected:
  // Tells the collection that the item's contents changed; with allItems, that the order did.
  void Changed(bool allItems);

 private:
  friend class TCollection;
  TCollection* FCollection = nullptr;
  int FID = -1;
};

// Owns its items. Changes between BeginUpdate and EndUpdate are reported once, by Update(nullptr).
class TCollection : public TPersistent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  explicit TCollection(const TTypeInfo& itemClass);
  ~TCollection() override;

  const TTypeInfo& ItemClass() const { return *FItemClass; }
  int Count() const { return static_cast<int>(FItems.size()); }
  // Raises EListError outside 0..Count-1.
  TCollectionItem* Item(int index) const;
  const std::vector<TCollectionItem*>& Items() const { return FItems; }

  // A new item of the item class, at the end or at a position.
  TCollectionItem* Add();
  TCollectionItem* Insert(int index);
  void Delete(int index);
  void Clear();
  TCollectionItem* FindItemID(int id) const;
  // Others hold the items: reading must not replace them by stored ones.
  virtual bool ItemsAreHeld() const { return false; }

  // Clears, then adds a copy of every item of a source collection.
  void Assign(const TPersistent* source) override;
  void BeginUpdate() override { ++FUpdateCount; }
  void EndUpdate() override;
  std::string GetNamePath() const override;

 protected:
  // An item changed (null: the list did).
  virtual void Update(TCollectionItem* item);
  virtual void Notify(TCollectionItem* item, TOperation operation);

 private:
  friend class TCollectionItem;
  void InsertItem(TCollectionItem* item);
  void RemoveItem(TCollectionItem* item);
  void MoveItem(int from, int to);
  void Changed(TCollectionItem* item);

  const TTypeInfo* FItemClass;
  std::vector<TCollectionItem*> FItems;
  int FNextID = 0;
  int FUpdateCount = 0;
};

// A collection that knows whom it belongs to.
class TOwnedCollection : public TCollection {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  TOwnedCollection(TPersistent* owner, const TTypeInfo& itemClass)
      : TCollection(itemClass), FOwner(owner) {}
  TPersistent* GetOwner() const override { return FOwner; }

 private:
  TPersistent* FOwner;
};

}  // namespace wrenfold
