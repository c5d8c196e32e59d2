// A stored object as a flat list of its components and values, in stored order.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/ValueTypes.h"
#include "tools/StoredFile.h"

namespace wrenfold {

struct TFlatValue {
  std::string Path;   // "Form1.Grid.Columns[2].Width"
  std::string Value;  // equal for equal meaning, whatever the tag
};

struct TFlatObject {
  std::vector<TFlatValue> Components;  // path, and "Class" with its prefix words as value
  std::vector<TFlatValue> Values;
  std::size_t PropertyCount = 0;
  std::array<std::size_t, MaxValueType + 1> TagCounts{};
};

// Flattens one root (a view with its signature). `withValues` false only counts.
TFlatObject FlattenObject(std::string_view stream, bool withValues);
// Property lists behind a signature, as in the extended form; only counts.
TFlatObject CountProperties(std::string_view stream);

}  // namespace wrenfold
