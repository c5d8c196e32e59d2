// A walk over a stored object: its components, properties, list elements and collection items.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/core/stream/Bytes.h"

namespace wrenfold {

enum class TPartKind : std::uint8_t { Component, Property, Element, Item };

// One part of a stored object, without the parts in it. The views point into the stream.
struct TStoredPart {
  TPartKind Kind = TPartKind::Component;
  std::string_view Name;       // of a component or a property
  std::string_view ClassName;  // of a component
  std::uint8_t Flags = 0;      // of a component
  bool HasOrder = false;       // a component or an item may have one
  std::int64_t Order = 0;
  TValueType Type = TValueType::vaNull;  // of the value of a property or an element
  std::string_view Value;                // with its tag; of a list or a collection the tag only
  bool IsEmpty = false;                  // a list or a collection without content

  bool IsContainer() const {
    return Type == TValueType::vaList || Type == TValueType::vaCollection;
  }
};

// Reads the part at the cursor and leaves it behind the part or, when there may be parts in it, in
// front of the first.
TStoredPart ReadStoredPart(TByteReader& reader, TPartKind kind);

// `position` is where the part starts, `depth` how many parts it stands in.
using TPartHandler =
    std::function<void(const TStoredPart& part, std::size_t position, std::size_t depth)>;

// Shows the handler each part of one root, whose signature is next, in stored order.
void WalkParts(TByteReader reader, const TPartHandler& handle);
// The same for property lists behind a signature, as in the extended form.
void WalkPropertyLists(TByteReader reader, const TPartHandler& handle);

// What a part says, as a text: class and prefix words of a component, the value of a property.
std::string MeaningOf(const TStoredPart& part);
// Whether two parts, without the parts in them, say the same, whatever the tags. Floats are
// compared in the narrower of their widths: text has no more digits than the narrower needs.
bool SameMeaning(const TStoredPart& left, const TStoredPart& right);

}  // namespace wrenfold
