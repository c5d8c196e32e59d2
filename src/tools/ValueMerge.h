// Three-way merge of the values of one property.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace wrenfold {

// Values as they stand in a stream, tag first; an empty one is a property that is not stored.

// Whether two values say the same, whatever the tags.
bool SameValue(std::string_view left, std::string_view right);
// A value as a message shows it.
std::string ShownValue(std::string_view value);

struct TValueSides {
  std::string_view Base;
  std::string_view Ours;
  std::string_view Theirs;
};
// Is told what is in conflict, by the path behind the property's own ("[2].Title").
using TValueConflict = std::function<void(const std::string& path, const TValueSides& sides)>;

// What the property has after the merge: the value of the side that changed it, that of `Ours` when
// both did.
std::string MergeValue(const TValueSides& sides, const TValueConflict& conflict,
                       const std::string& path = {});

}  // namespace wrenfold
