#include "tools/ValueMerge.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "platform/core/stream/CollectionItem.h"
#include "platform/core/text/SysUtils.h"
#include "tools/Excerpt.h"
#include "tools/StoredWalk.h"

namespace wrenfold {
namespace {

std::string CarrierOf(std::string_view value) {
  TByteWriter carrier;
  carrier.WriteSignature();
  carrier.WriteShortString("T");
  carrier.WriteShortString("");
  carrier.WriteShortString("V");
  carrier.WriteBytes(value);
  carrier.WriteEndOfList();
  carrier.WriteEndOfList();
  return carrier.ToString();
}

struct TWalkedPart {
  std::size_t Depth;
  TStoredPart Part;
};

// The value and the parts in it, as views into the carrier.
std::vector<TWalkedPart> PartsOf(std::string_view carrier) {
  std::vector<TWalkedPart> parts;
  WalkParts(TByteReader(carrier), [&](const TStoredPart& part, std::size_t, std::size_t depth) {
    if (part.Kind != TPartKind::Component) parts.push_back({depth, part});
  });
  return parts;
}

std::string_view Find(const TStoredItem& item, std::string_view path) {
  for (const TDesignProperty& property : item.Properties)
    if (EqualText(property.Path, path)) return property.Value;
  return {};
}

bool IsCollection(std::string_view value) {
  return !value.empty() && static_cast<TValueType>(value[0]) == TValueType::vaCollection;
}

std::vector<TStoredItem> ItemsOf(std::string_view value) {
  std::vector<TStoredItem> items;
  TByteReader reader(value);
  reader.ReadValueType();
  while (!reader.SkipEndOfList("an item or the end of a collection"))
    items.push_back(ReadStoredItem(reader));
  return items;
}

void WriteProperty(TByteWriter& out, std::string_view path, const std::string& value) {
  if (value.empty()) return;
  out.WriteShortString(path);
  out.WriteBytes(value);
}

void WriteItem(TByteWriter& out, const TStoredItem& base, const TStoredItem& ours,
               const TStoredItem& theirs, const TValueConflict& conflict, const std::string& path) {
  out.WriteBytes(ours.Order);
  out.WriteValueType(TValueType::vaList);
  const auto merged = [&](std::string_view name) {
    return MergeValue({Find(base, name), Find(ours, name), Find(theirs, name)}, conflict,
                      fmt::format("{}.{}", path, name));
  };
  for (const TDesignProperty& property : ours.Properties)
    WriteProperty(out, property.Path, merged(property.Path));
  for (const TDesignProperty& property : theirs.Properties)
    if (Find(ours, property.Path).empty()) WriteProperty(out, property.Path, merged(property.Path));
  out.WriteEndOfList();
}

}  // namespace

bool SameValue(std::string_view left, std::string_view right) {
  if (left == right) return true;
  if (left.empty() || right.empty()) return false;
  const std::string leftCarrier = CarrierOf(left), rightCarrier = CarrierOf(right);
  const std::vector<TWalkedPart> a = PartsOf(leftCarrier), b = PartsOf(rightCarrier);
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const TWalkedPart& x, const TWalkedPart& y) {
                      return x.Depth == y.Depth && EqualText(x.Part.Name, y.Part.Name) &&
                             SameMeaning(x.Part, y.Part);
                    });
}

std::string ShownValue(std::string_view value) {
  if (value.empty()) return "(none)";
  const std::string carrier = CarrierOf(value);
  return Excerpt(MeaningOf(PartsOf(carrier).front().Part));
}

std::string MergeValue(const TValueSides& sides, const TValueConflict& conflict,
                       const std::string& path) {
  const auto& [base, ours, theirs] = sides;
  if (SameValue(theirs, base) || SameValue(ours, theirs)) return std::string(ours);
  if (SameValue(ours, base)) return std::string(theirs);
  if (IsCollection(base) && IsCollection(ours) && IsCollection(theirs)) {
    const std::vector<TStoredItem> b = ItemsOf(base), o = ItemsOf(ours), t = ItemsOf(theirs);
    if (b.size() == o.size() && o.size() == t.size()) {
      TByteWriter out;
      out.WriteValueType(TValueType::vaCollection);
      for (std::size_t i = 0; i < o.size(); ++i)
        WriteItem(out, b[i], o[i], t[i], conflict, fmt::format("{}[{}]", path, i));
      out.WriteEndOfList();
      return out.ToString();
    }
  }
  conflict(path, sides);
  return std::string(ours);
}

}  // namespace wrenfold
