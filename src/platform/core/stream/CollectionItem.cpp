#include "platform/core/stream/CollectionItem.h"

namespace wrenfold {

TStoredItem ReadStoredItem(TByteReader& reader) {
  TStoredItem item;
  const std::size_t start = reader.Position();
  if (reader.PeekValueType() != TValueType::vaList) reader.ReadIntegerValue();
  item.Order = reader.Since(start);
  reader.ReadValueType();
  while (!reader.SkipEndOfList("a property or the end of an item")) {
    const std::string_view path = reader.ReadShortString("a property name");
    const std::size_t value = reader.Position();
    reader.SkipValue();
    item.Properties.push_back({path, reader.Since(value)});
  }
  return item;
}

}  // namespace wrenfold
