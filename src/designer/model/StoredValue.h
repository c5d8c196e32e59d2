// Reads stored property values as what they mean to somebody who draws a form.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/stream/DesignComponent.h"

namespace wrenfold {

// Each function takes one value, tag first, or nothing. A missing value, and one of another type
// than asked for, give the answer for "not stored": a form is drawn from what it can tell.

std::int64_t StoredInteger(std::string_view value, std::int64_t otherwise);
double StoredNumber(std::string_view value, double otherwise);
bool StoredBoolean(std::string_view value, bool otherwise);
// The name of an enumeration value, colour, component; empty for others. A view into the value.
std::string_view StoredIdentifier(std::string_view value);
// UTF-8. Bytes that are no UTF-8 are of the code page.
std::string StoredText(std::string_view value, int codePage);
bool StoredSetHas(std::string_view value, std::string_view element, bool otherwise = false);
std::string_view StoredBinary(std::string_view value);

// At most this many items of a list are taken.
inline constexpr std::size_t MaxStoredItems = 10'000;
// The values of a list; views into the list's value.
std::vector<std::string_view> StoredList(std::string_view value);
std::vector<std::string> StoredStrings(std::string_view value, int codePage);

// The properties of one item of a collection.
struct TCollectionEntry {
  std::vector<TDesignProperty> Properties;

  std::string_view Value(std::string_view path) const;
};
std::vector<TCollectionEntry> StoredItems(std::string_view value);

}  // namespace wrenfold
