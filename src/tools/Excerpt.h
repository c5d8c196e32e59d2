// How texts from files are shown in a line of output.
#pragma once

#include <string>
#include <string_view>

namespace wrenfold {

inline constexpr std::size_t MaxExcerpt = 120;

// How many bytes at the front of both are equal.
std::size_t CommonPrefix(std::string_view left, std::string_view right);

// At most MaxExcerpt bytes of the text from `start`, with dots where something is left out.
std::string Excerpt(std::string_view text, std::size_t start = 0);

// Where the excerpts of two texts start so that both show the first difference.
std::size_t ExcerptStart(std::string_view left, std::string_view right);

// Control codes, which a terminal would obey, as #n.
std::string Printable(std::string_view text);

}  // namespace wrenfold
