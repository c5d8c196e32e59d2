#include "platform/core/model/Collection.h"

#include <algorithm>

#include "platform/core/system/Exceptions.h"

namespace wrenfold {

namespace {

[[noreturn]] void RaiseIndex(int index) {
  throw EListError("List index out of bounds (" + std::to_string(index) + ")");
}

}  // namespace

const TTypeInfo& TCollectionItem::ClassInfo() {
  static const TTypeInfo info =
      Publish<TCollectionItem>("TCollectionItem", TPersistent::ClassInfo());
  return info;
}

TCollectionItem::TCollectionItem(TCollection* collection) {
  SetCollection(collection);
}

// Nobody can be told from here what a listener raises; Delete and Clear tell it.
TCollectionItem::~TCollectionItem() {
  try {
    SetCollection(nullptr);
  } catch (...) {
  }
}

void TCollectionItem::SetCollection(TCollection* collection) {
  if (collection == FCollection) return;
  if (FCollection != nullptr) FCollection->RemoveItem(this);
  if (collection != nullptr) collection->InsertItem(this);
}

int TCollectionItem::Index() const {
  if (FCollection == nullptr) return -1;
  const auto& items = FCollection->FItems;
  return static_cast<int>(std::find(items.begin(), items.end(), this) - items.begin());
}

void TCollectionItem::SetIndex(int index) {
  const int current = Index();
  if (current >= 0 && current != index) FCollection->MoveItem(current, index);
}

TPersistent* TCollectionItem::GetOwner() const {
  return FCollection;
}

std::string TCollectionItem::GetNamePath() const {
  if (FCollection == nullptr) return ClassName();
  return FCollection->GetNamePath() + '[' + std::to_string(Index()) + ']';
}

void TCollectionItem::Changed(bool allItems) {
  if (FCollection != nullptr) FCollection->Changed(allItems ? nullptr : this);
}

const TTypeInfo& TCollection::ClassInfo() {
  static const TTypeInfo info = Publish<TCollection>("TCollection", TPersistent::ClassInfo());
  return info;
}

TCollection::TCollection(const TTypeInfo& itemClass) : FItemClass(&itemClass) {}

TCollection::~TCollection() {
  ++FUpdateCount;  // nobody is told of items that go with their collection
  Clear();
}

TCollectionItem* TCollection::Item(int index) const {
  if (index < 0 || index >= Count()) RaiseIndex(index);
  return FItems[static_cast<std::size_t>(index)];
}

TCollectionItem* TCollection::Add() {
  return FItemClass->MakeItem(this);
}

TCollectionItem* TCollection::Insert(int index) {
  if (index < 0 || index > Count()) RaiseIndex(index);
  TCollectionItem* item = Add();
  item->SetIndex(index);
  return item;
}

void TCollection::Delete(int index) {
  const std::unique_ptr<TCollectionItem> item(Item(index));
  item->SetCollection(nullptr);
}

void TCollection::Clear() {
  if (FItems.empty()) return;
  const TUpdate update(*this);
  while (!FItems.empty()) Delete(Count() - 1);
}

TCollectionItem* TCollection::FindItemID(int id) const {
  const auto found = std::find_if(FItems.begin(), FItems.end(),
                                  [id](const auto* item) { return item->FID == id; });
  return found == FItems.end() ? nullptr : *found;
}

void TCollection::Assign(const TPersistent* source) {
  const auto* other = dynamic_cast<const TCollection*>(source);
  if (other == nullptr) return TPersistent::Assign(source);
  if (other == this) return;
  // The copies are complete before an item goes.
  std::vector<std::unique_ptr<TCollectionItem>> copies;
  for (const TCollectionItem* item : other->FItems) {
    copies.emplace_back(FItemClass->MakeItem(nullptr));
    if (copies.back() == nullptr)
      throw EListError("Items of class " + FItemClass->Name() + " cannot be made");
    copies.back()->Assign(item);
  }
  const TUpdate update(*this);
  Clear();
  for (std::unique_ptr<TCollectionItem>& copy : copies) {
    copy->SetCollection(this);
    static_cast<void>(copy.release());
  }
}

void TCollection::EndUpdate() {
  if (--FUpdateCount == 0) Update(nullptr);
}

std::string TCollection::GetNamePath() const {
  const TPersistent* owner = GetOwner();
  if (owner == nullptr) return ClassName();
  for (const TPropInfo* property : owner->GetClassInfo().Properties()) {
    if (property->Kind() != tkClass || property->Access->GetObject(*owner) != this) continue;
    const std::string path = owner->GetNamePath();
    return path.empty() ? property->Name : path + '.' + property->Name;
  }
  return TPersistent::GetNamePath();
}

void TCollection::Update(TCollectionItem*) {}

void TCollection::Notify(TCollectionItem*, TOperation) {}

void TCollection::InsertItem(TCollectionItem* item) {
  FItems.push_back(item);
  item->FCollection = this;
  item->FID = FNextID++;
  try {
    Notify(item, opInsert);
    Changed(nullptr);
  } catch (...) {
    // It may be under construction, and is nobody's then.
    std::erase(FItems, item);
    item->FCollection = nullptr;
    throw;
  }
}

void TCollection::RemoveItem(TCollectionItem* item) {
  // The item is out, whatever a listener raises.
  struct TRemoval {
    TCollection& Collection;
    TCollectionItem* Item;
    ~TRemoval() {
      auto& items = Collection.FItems;
      items.erase(std::next(std::find(items.rbegin(), items.rend(), Item)).base());
      Item->FCollection = nullptr;
    }
  };
  {
    const TRemoval removal{*this, item};
    Notify(item, opRemove);
  }
  Changed(nullptr);
}

void TCollection::MoveItem(int from, int to) {
  if (to < 0 || to >= Count()) RaiseIndex(to);
  const auto first = FItems.begin() + std::min(from, to);
  const auto last = FItems.begin() + std::max(from, to) + 1;
  if (from < to) std::rotate(first, first + 1, last);
  else std::rotate(first, last - 1, last);
  Changed(nullptr);
}

void TCollection::Changed(TCollectionItem* item) {
  if (FUpdateCount == 0) Update(item);
}

const TTypeInfo& TOwnedCollection::ClassInfo() {
  static const TTypeInfo info =
      Publish<TOwnedCollection>("TOwnedCollection", TCollection::ClassInfo());
  return info;
}

}  // namespace wrenfold
