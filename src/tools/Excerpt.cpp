#include "tools/Excerpt.h"

#include <algorithm>

namespace wrenfold {

std::size_t CommonPrefix(std::string_view left, std::string_view right) {
  const auto [end, other] = std::mismatch(left.begin(), left.end(), right.begin(), right.end());
  return static_cast<std::size_t>(end - left.begin());
}

std::string Excerpt(std::string_view text, std::size_t start) {
  const std::string_view shown = text.substr(std::min(start, text.size()), MaxExcerpt);
  std::string excerpt(start > 0 ? "..." : "");
  excerpt += shown;
  if (start + shown.size() < text.size()) excerpt += "...";
  return excerpt;
}

std::size_t ExcerptStart(std::string_view left, std::string_view right) {
  if (std::max(left.size(), right.size()) <= MaxExcerpt) return 0;
  const std::size_t common = CommonPrefix(left, right);
  return common < MaxExcerpt / 2 ? 0 : common - MaxExcerpt / 4;
}

std::string Printable(std::string_view text) {
  std::string printable;
  printable.reserve(text.size());
  for (const char character : text) {
    const auto code = static_cast<unsigned char>(character);
    if (code >= ' ' && code != 0x7F) printable += character;
    else printable.append("#").append(std::to_string(code));
  }
  return printable;
}

}  // namespace wrenfold
