// Takes collections apart into the bytes of their items and puts them together again.
#include "designer/model/ItemValues.h"

#include <fmt/format.h>

#include <algorithm>

#include "platform/core/stream/Bytes.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

using TItemBytes = std::vector<std::string>;

TItemBytes BytesOf(std::string_view collection) {
  TItemBytes bytes;
  for (const TItemValue& item : ItemsOf(collection)) bytes.emplace_back(item.Bytes);
  return bytes;
}

std::string Composed(const TItemBytes& items) {
  TByteWriter collection;
  collection.WriteValueType(TValueType::vaCollection);
  for (const std::string& item : items) collection.WriteBytes(item);
  collection.WriteEndOfList();
  return collection.ToString();
}

void Require(std::size_t item, std::size_t count) {
  if (item >= count)
    throw EConvertError(fmt::format("There is no item {}: expected one of {}", item, count));
}

// The item's own bytes with the part replaced, appended or left out.
std::string ChangedItem(const TItemValue& item, std::string_view path,
                        const std::optional<std::string>& value) {
  const auto part = std::ranges::find_if(
      item.Parts, [&](const TItemPart& each) { return EqualText(each.Path, path); });
  // In front of a value stands its path, with the byte for its length; at the end, one byte.
  std::size_t begin = item.Bytes.size() - 1, end = begin;
  if (part != item.Parts.end()) {
    begin =
        static_cast<std::size_t>(part->Value.data() - item.Bytes.data()) - part->Path.size() - 1;
    end = begin + part->Path.size() + 1 + part->Value.size();
  }
  TByteWriter changed;
  changed.WriteBytes(item.Bytes.substr(0, begin));
  if (value) {
    changed.WriteShortString(part != item.Parts.end() ? part->Path : path);
    changed.WriteBytes(*value);
  }
  changed.WriteBytes(item.Bytes.substr(end));
  return changed.ToString();
}

}  // namespace

std::string_view TItemValue::Value(std::string_view path) const {
  for (const TItemPart& part : Parts)
    if (EqualText(part.Path, path)) return part.Value;
  return {};
}

std::vector<TItemValue> ItemsOf(std::string_view collection) {
  std::vector<TItemValue> items;
  TByteReader reader(collection);
  if (collection.empty() || reader.ReadValueType() != TValueType::vaCollection) return items;
  while (!reader.SkipEndOfList("the end of the collection")) {
    const std::size_t begin = reader.Position();
    if (reader.PeekValueType() != TValueType::vaList) reader.ReadIntegerValue();
    reader.ReadValueType();
    TItemValue& item = items.emplace_back();
    while (!reader.SkipEndOfList("the end of the item")) {
      const std::string_view path = reader.ReadShortString("a property's name");
      const std::size_t start = reader.Position();
      reader.SkipValue();
      item.Parts.push_back({path, reader.Since(start)});
    }
    item.Bytes = reader.Since(begin);
  }
  return items;
}

std::string WithPart(std::string_view collection, std::size_t item, std::string_view path,
                     const std::optional<std::string>& value) {
  const auto items = ItemsOf(collection);
  Require(item, items.size());
  TItemBytes bytes = BytesOf(collection);
  bytes[item] = ChangedItem(items[item], path, value);
  return Composed(bytes);
}

std::string WithItem(std::string_view collection, std::size_t place) {
  TByteWriter item;
  item.WriteValueType(TValueType::vaList);
  item.WriteEndOfList();
  TItemBytes bytes = BytesOf(collection);
  const std::size_t behind = std::min(place, bytes.size());
  bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(behind), item.ToString());
  return Composed(bytes);
}

std::string WithoutItem(std::string_view collection, std::size_t item) {
  TItemBytes bytes = BytesOf(collection);
  Require(item, bytes.size());
  bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(item));
  return Composed(bytes);
}

std::string WithItemMoved(std::string_view collection, std::size_t item, std::size_t place) {
  TItemBytes bytes = BytesOf(collection);
  Require(std::max(item, place), bytes.size());
  const auto at = [&](std::size_t index) {
    return bytes.begin() + static_cast<std::ptrdiff_t>(index);
  };
  if (item < place) std::rotate(at(item), at(item + 1), at(place + 1));
  else std::rotate(at(place), at(item), at(item + 1));
  return Composed(bytes);
}

}  // namespace wrenfold
