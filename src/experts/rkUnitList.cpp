// The list of open units.
#include "experts/rkUnitList.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

void TUnitList::PopulateUnitList(const TStrings& tabs) {
  Clear();
  FItems.reserve(static_cast<std::size_t>(tabs.Count()));
  for (int i = 0; i < tabs.Count(); ++i) FItems.push_back({tabs[i], i, tabs.GetObject(i)});
  FSortDescending = false;
}

void TUnitList::Clear() {
  FItems.clear();
  FSelected.clear();
  FCurrent = -1;
}

void TUnitList::SetCurrent(int index) {
  FCurrent = index >= 0 && index < Count() ? index : -1;
}

void TUnitList::SetSelected(TSelUnits indices) {
  std::erase_if(indices, [this](int index) { return index < 0 || index >= Count(); });
  std::ranges::sort(indices);
  indices.erase(std::ranges::unique(indices).begin(), indices.end());
  FSelected = std::move(indices);
}

int TUnitList::FindTab(const TItem& item, const TStrings& tabs) {
  const auto shows = [&](int tab) {
    return tab >= 0 && tab < tabs.Count() && tabs[tab] == item.Text &&
           tabs.GetObject(tab) == item.Page;
  };
  if (shows(item.TabPosition)) return item.TabPosition;
  const int moved = item.Page == nullptr ? -1 : tabs.IndexOfObject(item.Page);
  return shows(moved) ? moved : -1;
}

void TUnitList::UpdateUnitList(std::string_view filter) {
  const std::string wanted = LowerCase(filter);
  std::vector<int> newIndex(FItems.size(), -1);
  int kept = 0;
  for (int i = 0; i < Count(); ++i) {
    TItem& item = FItems[static_cast<std::size_t>(i)];
    if (LowerCase(item.Text).find(wanted) == std::string::npos) continue;
    newIndex[static_cast<std::size_t>(i)] = kept;
    if (kept != i) FItems[static_cast<std::size_t>(kept)] = std::move(item);
    ++kept;
  }
  FItems.resize(static_cast<std::size_t>(kept));
  for (int& index : FSelected) index = newIndex[static_cast<std::size_t>(index)];
  std::erase(FSelected, -1);
  if (FCurrent >= 0) FCurrent = newIndex[static_cast<std::size_t>(FCurrent)];
}

bool TUnitList::Sort() {
  if (Filtered) return false;
  std::vector<std::pair<std::string, std::size_t>> order;
  order.reserve(FItems.size());
  for (std::size_t i = 0; i < FItems.size(); ++i)
    order.emplace_back(AnsiSortKey(FItems[i].Text), i);
  std::ranges::sort(order);
  if (FSortDescending) std::ranges::reverse(order);
  FSortDescending = !FSortDescending;

  std::vector<TItem> sorted;
  sorted.reserve(FItems.size());
  for (const auto& [key, index] : order) sorted.push_back(std::move(FItems[index]));
  FItems = std::move(sorted);
  FSelected.clear();
  FCurrent = -1;
  return true;
}

bool TUnitList::IsMovable(int delta) const {
  if (Filtered || delta == 0 || FSelected.empty()) return false;
  return delta > 0 ? GetLastSelected() < Count() - delta : GetFirstSelected() >= -delta;
}

// The selected items stand at their new places, the others fill the places that are left in the
// order that they had: what moving one item after the other past its neighbours comes to.
bool TUnitList::Move(int delta) {
  if (!IsMovable(delta)) return false;
  std::vector<TItem> moved(FItems.size());
  std::vector<bool> isTaken(FItems.size()), isSelected(FItems.size());
  const bool currentMoves = std::ranges::binary_search(FSelected, FCurrent);
  for (int& index : FSelected) {
    isSelected[static_cast<std::size_t>(index)] = true;
    const auto target = static_cast<std::size_t>(index + delta);
    moved[target] = std::move(FItems[static_cast<std::size_t>(index)]);
    isTaken[target] = true;
    index += delta;
  }
  std::size_t free = 0;
  for (std::size_t i = 0; i < FItems.size(); ++i) {
    if (isSelected[i]) continue;
    while (isTaken[free]) ++free;
    moved[free++] = std::move(FItems[i]);
  }
  FItems = std::move(moved);
  if (currentMoves) FCurrent += delta;
  return true;
}

bool TUnitList::AcceptsDrop(int target) const {
  return !FSelected.empty() && target >= 0 &&
         (target < GetFirstSelected() || target > GetLastSelected());
}

int TUnitList::DropDelta(int dragStart, int target) const {
  const int delta = target - dragStart;
  return delta > 0 ? delta - static_cast<int>(FSelected.size()) + 1 : delta;
}

int TUnitList::ArrangeTabs(const TStrings& tabs, int activeTab, TStrings& arranged) {
  const auto active = std::ranges::find(FItems, activeTab, &TItem::TabPosition);
  const TUpdate update(arranged);
  arranged.Clear();
  for (int i = 0; i < Count(); ++i) {
    TItem& item = FItems[static_cast<std::size_t>(i)];
    item.Page = tabs.GetObject(item.TabPosition);
    arranged.AddObject(item.Text, item.Page);
    item.TabPosition = i;
  }
  return static_cast<int>(active - FItems.begin());
}

void SaveHistory(std::vector<std::string>& history, const std::string& text, int limit) {
  if (std::ranges::find(history, text) == history.end()) history.insert(history.begin(), text);
  if (static_cast<int>(history.size()) > limit) history.pop_back();
}

void TEditorIndex::Assign(const std::vector<TEditor>& editors) {
  FEntries.clear();
  FEntries.reserve(editors.size());
  for (std::size_t i = 0; i < editors.size(); ++i) {
    const auto [entry, isNew] =
        FEntries.try_emplace(LowerCase(ExtractFileNameEx(editors[i].FileName)));
    if (isNew) entry->second.First = static_cast<int>(i);
    if (!isNew || editors[i].ViewCount > 1) entry->second.Ambiguous = true;
    if (editors[i].Modified) entry->second.Modified = true;
  }
}

const TEditorIndex::TEntry& TEditorIndex::Find(std::string_view name) const {
  static const TEntry none;
  const auto found = FEntries.find(LowerCase(ExtractFileNameEx(name)));
  return found == FEntries.end() ? none : found->second;
}

int TEditorIndex::FindSourceEditor(std::string_view name) const {
  return Find(name).First;
}

bool TEditorIndex::HasDublicate(std::string_view name) const {
  return Find(name).Ambiguous;
}

bool TEditorIndex::IsModified(std::string_view name) const {
  return Find(name).Modified;
}

void TEditorIndex::Remove(std::string_view name) {
  FEntries.erase(LowerCase(ExtractFileNameEx(name)));
}

}  // namespace wrenfold
