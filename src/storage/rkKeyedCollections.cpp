#include "storage/rkKeyedCollections.h"

#include <algorithm>

#include "locale/rkLocale.h"
#include "storage/rkD4Add.h"
#include "storage/rkObjectSaver.h"

namespace wrenfold {

namespace {

const TTypeKinds StringKinds = {tkString, tkLString, tkWString};

}  // namespace

std::string ItemKey(const TCollectionItem& item, std::string_view property) {
  const TPropInfo* info = GetPropInfo(item, property, StringKinds);
  return info != nullptr ? GetStrProp(item, *info) : std::string();
}

const TTypeInfo& TFixedCollection::ClassInfo() {
  static const TTypeInfo info =
      Publish<TFixedCollection>("TFixedCollection", TSpcCollection::ClassInfo());
  return info;
}

TSpcItem* TFixedCollection::Find(std::string_view name) const {
  if (name.empty()) return nullptr;
  for (int i = 0; i < Count(); ++i)
    if (KeyOf(*Item(i)) == name) return Item(i);
  return nullptr;
}

TSpcItem* TFixedCollection::Add(const std::string& name) {
  const bool exists = std::any_of(Items().begin(), Items().end(), [&](const TCollectionItem* item) {
    return KeyOf(*item) == name;
  });
  if (exists) throw EFixedCollectionError(LocaleFormat(sCollectionItemExists, name));
  const TPropInfo* property = GetPropInfo(ItemClass(), GetUpdateName(), StringKinds);
  if (property == nullptr)
    throw EFixedCollectionError(ItemClass().Name() + " has no string property " + GetUpdateName());
  const TUpdate update(*this);  // one report, of an item that has its key
  std::unique_ptr<TSpcItem> item(TSpcCollection::Add());
  SetStrProp(*item, *property, name);
  return item.release();
}

const TTypeInfo& TWrapperItem::ClassInfo() {
  static const TTypeInfo info = Publish<TWrapperItem>("TWrapperItem", TSpcItem::ClassInfo())
                                    .Prop("AObjectID", &TWrapperItem::AObjectID)
                                    .Prop("NestedObject", &TWrapperItem::NestedObject, nullptr);
  return info;
}

const TTypeInfo& TFreeCollection::ClassInfo() {
  static const TTypeInfo info =
      Publish<TFreeCollection>("TFreeCollection", TSpcCollection::ClassInfo());
  return info;
}

TWrapperItem* TFreeCollection::Item(int index) const {
  return static_cast<TWrapperItem*>(TSpcCollection::Item(index));
}

TWrapperItem* TFreeCollection::FindItemID(int id) const {
  return static_cast<TWrapperItem*>(TSpcCollection::FindItemID(id));
}

TWrapperItem* TFreeCollection::Find(std::string_view name) const {
  if (name.empty()) return nullptr;
  for (int i = 0; i < Count(); ++i)
    if (Item(i)->AObjectID == name) return Item(i);
  return nullptr;
}

TWrapperItem* TFreeCollection::Add(TNestedObject* object, const std::string& name) {
  for (int i = 0; i < Count(); ++i)
    if (Item(i)->AObjectID == name) throw EFreeCollectionError(LocaleFormat(sObjectExists, name));
  const TUpdate update(*this);
  auto* item = static_cast<TWrapperItem*>(TSpcCollection::Add());
  item->AObjectID = name;
  item->SetNestedObject(object);
  return item;
}

void TFreeCollection::Assign(const TPersistent* source) {
  const auto* other = dynamic_cast<const TFreeCollection*>(source);
  if (other == nullptr) return TSpcCollection::Assign(source);
  if (other == this) return;
  const TUpdate update(*this);
  for (int i = 0; i < other->Count(); ++i) {
    const TWrapperItem* from = other->Item(i);
    const TWrapperItem* into = Find(from->AObjectID);
    if (into == nullptr || into->NestedObject() == nullptr || from->NestedObject() == nullptr)
      continue;
    if (into->NestedObject() != from->NestedObject())
      CopyStoredProps(*into->NestedObject(), *from->NestedObject());
  }
}

}  // namespace wrenfold
