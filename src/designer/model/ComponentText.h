// Components of a form as text that is copied and pasted.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/stream/DesignComponent.h"

namespace wrenfold {

// The components one behind the other as form text, each with what is inside it.
std::string ComponentsText(std::span<const TDesignComponent* const> components);

// The streams of the components in a text, ready to be added to the form of that root: names that
// are taken there become the next free ones, and references among the pasted components follow.
// Raises EParserError with the place when the text is no form text; empty for a text without one.
std::vector<std::string> StreamsForPasting(std::string_view text, const TDesignComponent& root);

// The class name without its "T" and the first number that makes a name nobody in `taken`
// (folded) has.
std::string FreeName(std::string_view className, const std::vector<std::string>& taken);

}  // namespace wrenfold
