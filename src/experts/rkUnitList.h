// The list of open units: order, selection, filter and history, apart from any window.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/core/model/StringList.h"

namespace wrenfold {

// Indices of items, ascending.
using TSelUnits = std::vector<int>;

// A mirror of a row of page tabs. The order of the list is applied to the tabs by ArrangeTabs; the
// list never changes them itself.
class TUnitList {
 public:
  struct TItem {
    std::string Text;         // the caption of the tab
    int TabPosition = 0;      // the tab that the item came from
    TObject* Page = nullptr;  // what that tab kept; compared, never used
  };

  const std::vector<TItem>& Items() const { return FItems; }
  int Count() const { return static_cast<int>(FItems.size()); }

  // Replaces the list by the captions of the tabs; nothing is current or selected, and the next
  // sort is ascending.
  void PopulateUnitList(const TStrings& tabs);
  void Clear();

  // The current item; -1 without one.
  int GetSelectedUnit() const { return FCurrent; }
  void SetCurrent(int index);
  // Setting drops what is outside the list and brings the rest in order.
  const TSelUnits& GetSelectedUnits() const { return FSelected; }
  void SetSelected(TSelUnits indices);
  // -1 when nothing is selected.
  int GetFirstSelected() const { return FSelected.empty() ? -1 : FSelected.front(); }
  int GetLastSelected() const { return FSelected.empty() ? -1 : FSelected.back(); }

  // The tab that shows the item's page now, -1 when none does: the tabs may have changed since the
  // list was filled.
  static int FindTab(const TItem& item, const TStrings& tabs);

  // While set, the list shows a part of the tabs, and neither sorts nor moves.
  bool Filtered = false;
  // Drops the items without the text in their caption, ASCII letter case ignored.
  void UpdateUnitList(std::string_view filter);

  // Sorts in the order of the user's language, letter case ignored: ascending at first, then
  // alternating. Nothing is current or selected then. Answers whether it did.
  bool Sort();
  // Moves the selected items by delta positions, which keep their order among themselves. Refused
  // whole, with the answer false, when any of them would leave the list.
  bool Move(int delta);

  // Where a dragged selection may be dropped: in front of it or behind it. The target may be the
  // count of items.
  bool AcceptsDrop(int target) const;
  // How far the selection moves: a block lands on the target, behind it with its last item.
  int DropDelta(int dragStart, int target) const;

  // The tabs in the order of the list, each with the object that it had, into arranged; answers
  // where the active tab stands then (the count of items when it is not in the list). From here on
  // the items came from these tabs.
  int ArrangeTabs(const TStrings& tabs, int activeTab, TStrings& arranged);

 private:
  bool IsMovable(int delta) const;

  std::vector<TItem> FItems;
  TSelUnits FSelected;
  int FCurrent = -1;
  bool FSortDescending = false;
};

// Puts a filter text on top of the history unless it is in it (letter case counts), and drops one
// entry at the end when there are more than the limit.
void SaveHistory(std::vector<std::string>& history, const std::string& text, int limit);

// Finds the open source editors by bare file name, letter case ignored.
class TEditorIndex {
 public:
  struct TEditor {
    std::string FileName;
    int ViewCount = 1;
    bool Modified = false;
  };

  void Assign(const std::vector<TEditor>& editors);
  // The first editor of that bare name, or -1.
  int FindSourceEditor(std::string_view name) const;
  // Whether the name alone does not say which page is meant: several editors, or several views.
  bool HasDublicate(std::string_view name) const;
  // Whether an editor of that name holds what is not saved yet.
  bool IsModified(std::string_view name) const;
  // Forgets the name.
  void Remove(std::string_view name);

 private:
  struct TEntry {
    int First = -1;
    bool Ambiguous = false, Modified = false;
  };
  const TEntry& Find(std::string_view name) const;
  std::unordered_map<std::string, TEntry> FEntries;
};

}  // namespace wrenfold
