#include "platform/core/SysUtils.h"

#include <algorithm>

namespace wrenfold {

bool EqualText(std::string_view left, std::string_view right) {
  return left.size() == right.size() &&
         std::equal(left.begin(), left.end(), right.begin(),
                    [](char a, char b) { return FoldChar(a) == FoldChar(b); });
}

}  // namespace wrenfold
