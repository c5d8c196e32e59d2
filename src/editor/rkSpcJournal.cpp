#include "editor/rkSpcJournal.h"

#include <algorithm>

namespace wrenfold {

namespace {

void Walk(TPersistent& object, std::vector<const TPersistent*>& around,
          const std::function<void(TPersistent&)>& visit) {
  if (std::find(around.begin(), around.end(), &object) != around.end()) return;
  visit(object);
  around.push_back(&object);
  if (const auto* collection = dynamic_cast<const TCollection*>(&object))
    for (TCollectionItem* item : collection->Items()) Walk(*item, around, visit);
  for (const TPropInfo* property : object.GetClassInfo().Properties()) {
    if (property->Kind() != tkClass) continue;
    TPersistent* value = property->Access->GetObject(object);
    if (value != nullptr && dynamic_cast<TComponent*>(value) == nullptr)
      Walk(*value, around, visit);
  }
  around.pop_back();
}

}  // namespace

void WalkObjects(TPersistent& object, const std::function<void(TPersistent&)>& visit) {
  std::vector<const TPersistent*> around;
  Walk(object, around, visit);
}

TInstanceRefPtr TSpcJournal::RefOf(TPersistent& instance) {
  TInstanceRefPtr& ref = FRefs[&instance];
  if (ref == nullptr) ref = std::make_shared<TInstanceRef>(TInstanceRef{&instance});
  return ref;
}

void TSpcJournal::AddValue(TPersistent& instance, const TPropInfo& property, TPropImage before,
                           TJournalLine line) {
  FEntries.push_back({.Kind = jkValue,
                      .Ref = RefOf(instance),
                      .Property = &property,
                      .Before = std::move(before),
                      .Gone = {},
                      .Line = std::move(line)});
}

void TSpcJournal::AddAdded(TCollectionItem& item, TJournalLine line) {
  FEntries.push_back(
      {.Kind = jkAdded, .Ref = RefOf(item), .Before = {}, .Gone = {}, .Line = std::move(line)});
}

void TSpcJournal::AddMoved(TCollectionItem& item, int from, TJournalLine line) {
  FEntries.push_back({.Kind = jkMoved,
                      .Ref = RefOf(item),
                      .Before = {},
                      .From = from,
                      .Gone = {},
                      .Line = std::move(line)});
}

void TSpcJournal::AddDeleted(TCollectionItem& item, TJournalLine line) {
  TEntry entry{.Kind = jkDeleted,
               .Ref = RefOf(*item.Collection()),
               .Before = {},
               .Gone = {},
               .Line = std::move(line)};
  entry.Gone.push_back(TakeOut(item));
  FEntries.push_back(std::move(entry));
}

void TSpcJournal::AddCleared(TCollection& collection, TJournalLine line) {
  TEntry entry{.Kind = jkDeleted,
               .Ref = RefOf(collection),
               .Before = {},
               .Gone = {},
               .Line = std::move(line)};
  for (TCollectionItem* item : collection.Items()) entry.Gone.push_back(TakeOut(*item));
  FEntries.push_back(std::move(entry));
}

TSpcJournal::TGoneItem TSpcJournal::TakeOut(TCollectionItem& item) {
  TGoneItem gone{item.Index(), std::make_shared<TObjectImage>(item), {}};
  WalkObjects(item, [&](TPersistent& object) {
    const auto found = FRefs.find(&object);
    gone.Refs.push_back(found != FRefs.end() ? found->second : nullptr);
    if (found == FRefs.end()) return;
    found->second->Instance = nullptr;
    FRefs.erase(found);
  });
  return gone;
}

void TSpcJournal::Clear() {
  FEntries.clear();
  FRefs.clear();
}

bool TSpcJournal::CanUndo(int index) const {
  return FEntries[At(index)].Ref->Instance != nullptr;
}

int TSpcJournal::LastUndoable() const {
  int index = Count() - 1;
  while (index >= 0 && !CanUndo(index)) --index;
  return index;
}

TCollection* TSpcJournal::ChangedCollection(int index) const {
  const TEntry& entry = FEntries[At(index)];
  if (entry.Kind == jkValue || entry.Ref->Instance == nullptr) return nullptr;
  if (entry.Kind == jkDeleted) return static_cast<TCollection*>(entry.Ref->Instance);
  return static_cast<TCollectionItem*>(entry.Ref->Instance)->Collection();
}

TSpcJournal::TUndone TSpcJournal::Undo(int index) {
  if (!CanUndo(index)) return {};
  TEntry entry = FEntries[At(index)];
  TUndone undone;
  if (entry.Kind == jkValue) {
    UndoValue(entry, At(index));
    undone = {entry.Ref->Instance, entry.Property, -1};
  }
  if (entry.Kind == jkMoved) undone.Index = UndoMoved(entry);
  if (entry.Kind == jkDeleted) undone.Index = UndoDeleted(entry);
  FEntries.erase(FEntries.begin() + index);
  if (entry.Kind == jkAdded) UndoAdded(entry);
  return undone;
}

int TSpcJournal::UndoDeleted(const TEntry& entry) {
  for (const TGoneItem& gone : entry.Gone)
    BringBack(gone, static_cast<TCollection&>(*entry.Ref->Instance));
  return entry.Gone.empty() ? -1 : entry.Gone.front().Index;
}

// As if the change had never been made: a later change of the property then started from where this
// one did.
void TSpcJournal::UndoValue(TEntry& entry, std::size_t index) {
  const auto later = std::find_if(FEntries.begin() + static_cast<std::ptrdiff_t>(index) + 1,
                                  FEntries.end(), [&](const TEntry& other) {
                                    return other.Kind == jkValue && other.Ref == entry.Ref &&
                                           other.Property == entry.Property;
                                  });
  if (later == FEntries.end()) return entry.Before.Restore(*entry.Ref->Instance, *entry.Property);
  later->Before = entry.Before;
  later->Line.From = entry.Line.From;
}

// What was changed inside the item goes with it.
void TSpcJournal::UndoAdded(TEntry& entry) {
  auto* item = static_cast<TCollectionItem*>(entry.Ref->Instance);
  ForgetInside(*item);
  delete item;
}

void TSpcJournal::ForgetInside(TPersistent& object) {
  WalkObjects(object, [&](TPersistent& inside) {
    const auto found = FRefs.find(&inside);
    if (found == FRefs.end()) return;
    std::erase_if(FEntries, [&](const TEntry& entry) { return entry.Ref == found->second; });
    FRefs.erase(found);
  });
}

int TSpcJournal::UndoMoved(const TEntry& entry) {
  auto* item = static_cast<TCollectionItem*>(entry.Ref->Instance);
  item->SetIndex(std::min(entry.From, item->Collection()->Count() - 1));
  return item->Index();
}

void TSpcJournal::BringBack(const TGoneItem& gone, TCollection& collection) {
  TCollectionItem* item = gone.Image->Class().MakeItem(&collection);
  if (item == nullptr) return;
  item->SetIndex(std::min(gone.Index, collection.Count() - 1));
  gone.Image->Restore(*item);
  std::size_t place = 0;
  WalkObjects(*item, [&](TPersistent& object) {
    const TInstanceRefPtr ref = place < gone.Refs.size() ? gone.Refs[place] : nullptr;
    ++place;
    if (ref == nullptr) return;
    ref->Instance = &object;
    FRefs[&object] = ref;
  });
}

}  // namespace wrenfold
