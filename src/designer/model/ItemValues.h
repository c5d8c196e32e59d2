// Stored collections: the items in them, and the same collections with other items.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

// One stored property of an item; views into the collection's value.
struct TItemPart {
  std::string_view Path;
  std::string_view Value;  // tag first
};

struct TItemValue {
  std::string_view Bytes;  // the whole item as it is stored
  std::vector<TItemPart> Parts;

  // Letter case ignored; empty when it is not stored.
  std::string_view Value(std::string_view path) const;
};

// All functions take the stored value of a collection, tag first, or nothing, which counts as a
// collection without items. What they do not change keeps its bytes.
std::vector<TItemValue> ItemsOf(std::string_view collection);

// The collection with another value, or none, for a property of an item. Raises EConvertError when
// there is no such item.
std::string WithPart(std::string_view collection, std::size_t item, std::string_view path,
                     const std::optional<std::string>& value);
// With a new item at that place, at most behind the last one; nothing is stored of it.
std::string WithItem(std::string_view collection, std::size_t place);
// Without the item. Raises EConvertError when there is none.
std::string WithoutItem(std::string_view collection, std::size_t item);
// With the item at another place. Raises EConvertError when either is none.
std::string WithItemMoved(std::string_view collection, std::size_t item, std::size_t place);

}  // namespace wrenfold
