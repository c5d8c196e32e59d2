// References to components in stored values, by name.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace wrenfold {

// The value (tag first) with another name wherever it refers to the component `name` (letter case
// ignored) or to something inside it, also in items of collections. Nothing when it does not.
std::optional<std::string> ValueWithName(std::string_view value, std::string_view name,
                                         std::string_view newName);

}  // namespace wrenfold
