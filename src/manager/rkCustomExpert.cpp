// The base class of experts and the list of those that live.
#include "manager/rkCustomExpert.h"

#include <algorithm>

namespace wrenfold {

const TTypeInfo& TCustomExpert::ClassInfo() {
  static const TTypeInfo info = Publish<TCustomExpert>("TCustomExpert", TPersistent::ClassInfo());
  return info;
}

int TExpObjectList::Add(TCustomExpert* expert, const std::string& name) {
  FEntries.push_back({expert, name});
  return Count() - 1;
}

const TExpObjectList::TEntry& TExpObjectList::Get(int index) const {
  return FEntries[Checked(index)];
}

void TExpObjectList::Delete(int index) {
  FEntries.erase(FEntries.begin() + static_cast<std::ptrdiff_t>(Checked(index)));
}

int TExpObjectList::IndexOf(const std::string& name) const {
  const auto found = std::ranges::find(FEntries, name, &TEntry::Name);
  return found == FEntries.end() ? -1 : static_cast<int>(found - FEntries.begin());
}

int TExpObjectList::IndexOf(const TCustomExpert* expert) const {
  const auto found = std::ranges::find(FEntries, expert, &TEntry::Expert);
  return found == FEntries.end() ? -1 : static_cast<int>(found - FEntries.begin());
}

std::size_t TExpObjectList::Checked(int index) const {
  if (index < 0 || index >= Count())
    throw EListError("List index out of bounds (" + std::to_string(index) + ")");
  return static_cast<std::size_t>(index);
}

}  // namespace wrenfold
