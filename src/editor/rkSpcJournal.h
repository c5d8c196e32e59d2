// The journal of the settings editor: every committed change since its window opened, each undone
// on its own.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "storage/rkObjectImage.h"

namespace wrenfold {

// Stands for an object in the journal. While the object is deleted it stands for none; when the
// deletion is undone, for the object that took its place.
struct TInstanceRef {
  TPersistent* Instance = nullptr;
};
using TInstanceRefPtr = std::shared_ptr<TInstanceRef>;

// One change, as the user reads it.
struct TJournalLine {
  std::string Where, From, To;
};

class TSpcJournal {
 public:
  // The property had another value before; it has its new one now.
  void AddValue(TPersistent& instance, const TPropInfo& property, TPropImage before,
                TJournalLine line);
  // To be called after the item was added or moved.
  void AddAdded(TCollectionItem& item, TJournalLine line);
  void AddMoved(TCollectionItem& item, int from, TJournalLine line);
  // To be called before the item, or all items of the collection, are deleted.
  void AddDeleted(TCollectionItem& item, TJournalLine line);
  void AddCleared(TCollection& collection, TJournalLine line);
  // For when the objects were exchanged for others: nothing can be undone any more.
  void Clear();

  int Count() const { return static_cast<int>(FEntries.size()); }
  const TJournalLine& Line(int index) const { return FEntries[At(index)].Line; }
  // False for a change inside an object that is deleted now.
  bool CanUndo(int index) const;
  // The collection whose items the change is of; null for one of a value, and while it is deleted.
  TCollection* ChangedCollection(int index) const;
  // The last change that can be undone; -1: none.
  int LastUndoable() const;

  struct TUndone {
    TPersistent* Instance = nullptr;  // what has the property; null: items changed
    const TPropInfo* Property = nullptr;
    int Index = -1;  // the place of an item that is back
  };
  // Takes a change back and its entry out. Later changes of the same property stay: then the value
  // stays too, and the later change now starts from the older value. Raises what the object raises;
  // the entry then stays.
  TUndone Undo(int index);

 private:
  enum TKind : std::uint8_t { jkValue, jkAdded, jkMoved, jkDeleted };
  // An item that is gone: where it was, what it held, who stood for it and for what was in it.
  struct TGoneItem {
    int Index = 0;
    std::shared_ptr<const TObjectImage> Image;
    std::vector<TInstanceRefPtr> Refs;  // in the order of WalkObjects; null where nobody stood
  };
  struct TEntry {
    TKind Kind;
    TInstanceRefPtr Ref;  // the object, the item, or the collection of deleted items
    const TPropInfo* Property = nullptr;
    TPropImage Before;
    int From = 0;
    std::vector<TGoneItem> Gone;
    TJournalLine Line;
  };

  static std::size_t At(int index) { return static_cast<std::size_t>(index); }
  TInstanceRefPtr RefOf(TPersistent& instance);
  TGoneItem TakeOut(TCollectionItem& item);
  void BringBack(const TGoneItem& gone, TCollection& collection);
  void UndoValue(TEntry& entry, std::size_t index);
  void UndoAdded(TEntry& entry);
  int UndoDeleted(const TEntry& entry);
  static int UndoMoved(const TEntry& entry);
  void ForgetInside(TPersistent& object);

  std::vector<TEntry> FEntries;
  std::unordered_map<const TPersistent*, TInstanceRefPtr> FRefs;
};

// Visits the object and every object below it that belongs to it (no components), in an order that
// depends on its shape alone.
void WalkObjects(TPersistent& object, const std::function<void(TPersistent&)>& visit);

}  // namespace wrenfold
