#include "designer/model/StoredItems.h"

#include <algorithm>

#include "designer/model/StoredValue.h"
#include "platform/core/stream/Bytes.h"

namespace wrenfold {

namespace {

TListItem ReadListItem(TByteReader& reader, bool longTexts) {
  TListItem item;
  item.Image = reader.ReadFixed<std::int32_t>("a picture");
  reader.ReadView(8, "state and overlay");
  const auto columns = reader.ReadFixed<std::uint32_t>("the count of columns");
  if (!longTexts) reader.ReadView(4, "data");
  for (std::uint32_t i = 0; i <= columns && item.Texts.size() < MaxStoredItems; ++i)
    item.Texts.emplace_back(longTexts ? reader.ReadLongString("a text")
                                      : reader.ReadShortString("a text"));
  return item;
}

// The count of children follows from the answer.
TListItem ReadTreeItem(TByteReader& reader, std::uint32_t& children) {
  TListItem item;
  reader.ReadView(4, "the size of the item");
  item.Image = reader.ReadFixed<std::int32_t>("a picture");
  reader.ReadView(16, "further pictures and data");
  children = reader.ReadFixed<std::uint32_t>("the count of children");
  item.Texts.emplace_back(reader.ReadShortString("a text"));
  return item;
}

// The same of the free environment: a mark and a version stand before the count of its items.
constexpr std::int32_t FreeTreeMark = -7;

TListItem ReadFreeTreeItem(TByteReader& reader, std::uint32_t& children) {
  TListItem item;
  item.Image = reader.ReadFixed<std::int32_t>("a picture");
  reader.ReadView(12, "further pictures");
  children = reader.ReadFixed<std::uint32_t>("the count of children");
  reader.ReadView(4, "data");
  item.Open = reader.ReadFixed<std::uint8_t>("whether it is open") != 0;
  item.Texts.emplace_back(reader.ReadLongString("a text"));
  return item;
}

bool SkipFreeMark(TByteReader& reader, std::string_view bytes) {
  TByteReader mark(bytes);
  if (mark.ReadFixed<std::int32_t>("the count of items") != FreeTreeMark) return false;
  reader.ReadView(6, "the mark and the version");
  return true;
}

constexpr std::size_t DeepestTree = 256;

}  // namespace

std::vector<TListItem> DecodeListItems(std::string_view bytes, bool longTexts) {
  std::vector<TListItem> items;
  try {
    TByteReader reader(bytes);
    reader.ReadView(4, "the size of the items");
    const auto count = reader.ReadFixed<std::uint32_t>("the count of items");
    while (items.size() < std::min<std::size_t>(count, MaxStoredItems))
      items.push_back(ReadListItem(reader, longTexts));
  } catch (const EReadError&) {
    return items;
  }
  return items;
}

std::vector<TListItem> DecodeTreeItems(std::string_view bytes) {
  std::vector<TListItem> items;
  try {
    TByteReader reader(bytes);
    const bool free = SkipFreeMark(reader, bytes);
    std::vector<std::uint32_t> open{reader.ReadFixed<std::uint32_t>("the count of items")};
    while (!open.empty() && items.size() < MaxStoredItems) {
      if (open.back() == 0) {
        open.pop_back();
        continue;
      }
      --open.back();
      std::uint32_t children = 0;
      TListItem item = free ? ReadFreeTreeItem(reader, children) : ReadTreeItem(reader, children);
      item.Depth = static_cast<int>(open.size()) - 1;
      items.push_back(std::move(item));
      if (open.size() < DeepestTree) open.push_back(children);
    }
  } catch (const EReadError&) {
    return items;
  }
  return items;
}

}  // namespace wrenfold
