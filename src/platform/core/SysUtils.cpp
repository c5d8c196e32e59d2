#include "platform/core/SysUtils.h"

#include <algorithm>

namespace wrenfold {

std::string LowerCase(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), FoldChar);
  return result;
}

bool EqualText(std::string_view left, std::string_view right) {
  return left.size() == right.size() &&
         std::equal(left.begin(), left.end(), right.begin(),
                    [](char a, char b) { return FoldChar(a) == FoldChar(b); });
}

int CompareText(std::string_view left, std::string_view right) {
  const std::size_t common = std::min(left.size(), right.size());
  for (std::size_t i = 0; i < common; ++i) {
    const int difference = static_cast<unsigned char>(FoldChar(left[i])) -
                           static_cast<unsigned char>(FoldChar(right[i]));
    if (difference != 0) return difference;
  }
  return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
}

}  // namespace wrenfold
