#include "designer/model/NameReferences.h"

#include <algorithm>

#include "designer/model/StoredValue.h"
#include "platform/core/stream/Bytes.h"
#include "platform/core/stream/CollectionItem.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

std::optional<std::string> IdentifierWithName(std::string_view value, std::string_view name,
                                              std::string_view newName) {
  const std::string_view stored = StoredIdentifier(value);
  const std::size_t dot = std::min(stored.find('.'), stored.size());
  if (stored.empty() || !EqualText(stored.substr(0, dot), name)) return std::nullopt;
  TByteWriter bytes;
  bytes.WriteIdentValue(std::string(newName).append(stored.substr(dot)));
  return bytes.ToString();
}

std::optional<std::string> CollectionWithName(std::string_view value, std::string_view name,
                                              std::string_view newName) {
  TByteReader reader(value);
  TByteWriter bytes;
  bytes.WriteValueType(reader.ReadValueType());
  bool found = false;
  while (!reader.SkipEndOfList("an item")) {
    const TStoredItem item = ReadStoredItem(reader);
    bytes.WriteBytes(item.Order);
    bytes.WriteValueType(TValueType::vaList);
    for (const TDesignProperty& property : item.Properties) {
      const auto changed = ValueWithName(property.Value, name, newName);
      found = found || changed.has_value();
      bytes.WriteShortString(property.Path);
      bytes.WriteBytes(changed.has_value() ? std::string_view(*changed) : property.Value);
    }
    bytes.WriteEndOfList();
  }
  bytes.WriteEndOfList();
  return found ? std::optional(bytes.ToString()) : std::nullopt;
}

}  // namespace

std::optional<std::string> ValueWithName(std::string_view value, std::string_view name,
                                         std::string_view newName) {
  if (value.empty()) return std::nullopt;
  if (static_cast<TValueType>(value.front()) != TValueType::vaCollection)
    return IdentifierWithName(value, name, newName);
  try {
    return CollectionWithName(value, name, newName);
  } catch (const EReadError&) {
    return std::nullopt;
  }
}

}  // namespace wrenfold
