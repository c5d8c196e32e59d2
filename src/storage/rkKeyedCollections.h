// Collections whose items are unique by a key, and which stored items are read into by that key.
#pragma once

#include <string>
#include <string_view>

#include "platform/core/system/Exceptions.h"
#include "storage/rkSpcBase.h"

namespace wrenfold {

class EFixedCollectionError : public Exception {
 public:
  using Exception::Exception;
};
class EFreeCollectionError : public Exception {
 public:
  using Exception::Exception;
};

// The value of an item's string property of that name; empty when it publishes none.
std::string ItemKey(const TCollectionItem& item, std::string_view property);

// Items keyed by a string property. Keys are compared exactly; an empty key matches nothing.
class TFixedCollection : public TSpcCollection {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  using TSpcCollection::TSpcCollection;

  // The name of the property that holds an item's key.
  virtual std::string GetUpdateName() const = 0;

  // A new item with that key; EFixedCollectionError when there is one already.
  TSpcItem* Add(const std::string& name);
  // The first item with that key, or null. Takes time in proportion to the number of items.
  TSpcItem* Find(std::string_view name) const;
  std::string KeyOf(const TCollectionItem& item) const { return ItemKey(item, GetUpdateName()); }
};

// What a free collection holds: any persistent object.
using TNestedObject = TPersistent;

// Holds an object of somebody else under a key. The object is stored with the item but never
// replaced by reading.
class TWrapperItem : public TSpcItem {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  using TSpcItem::TSpcItem;

  TNestedObject* NestedObject() const { return FNestedObject; }
  // Not owned: whoever owns the object clears it here, or removes the item, before it goes.
  void SetNestedObject(TNestedObject* object) { FNestedObject = object; }

  std::string AObjectID;

 private:
  TNestedObject* FNestedObject = nullptr;
};

// Objects under keys. The item class is TWrapperItem or a descendant.
class TFreeCollection : public TSpcCollection {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  explicit TFreeCollection(TPersistent* owner,
                           const TTypeInfo& itemClass = TWrapperItem::ClassInfo())
      : TSpcCollection(owner, itemClass) {}

  // A new item that holds the object; EFreeCollectionError when the key exists.
  TWrapperItem* Add(TNestedObject* object, const std::string& name);
  // The first item with that key, or null.
  TWrapperItem* Find(std::string_view name) const;
  TWrapperItem* FindItemID(int id) const;
  TWrapperItem* Item(int index) const;

  // Copies the stored properties of each object of another free collection into the object that is
  // held here under the same key; nothing is added, removed or exchanged.
  void Assign(const TPersistent* source) override;
};

}  // namespace wrenfold
