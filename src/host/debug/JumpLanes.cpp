#include "host/debug/JumpLanes.h"

#include <algorithm>
#include <cstdlib>

namespace wrenfold {

void AssignLanes(std::vector<TJump>& jumps, int laneCount) {
  std::stable_sort(jumps.begin(), jumps.end(), [](const TJump& a, const TJump& b) {
    return std::abs(a.To - a.From) < std::abs(b.To - b.From);
  });
  for (std::size_t i = 0; i < jumps.size(); ++i) {
    const auto [first, last] = std::minmax(jumps[i].From, jumps[i].To);
    std::vector<bool> taken(static_cast<std::size_t>(laneCount), false);
    for (std::size_t other = 0; other < i; ++other) {
      const auto [begin, end] = std::minmax(jumps[other].From, jumps[other].To);
      if (first <= end && begin <= last) taken[static_cast<std::size_t>(jumps[other].Lane)] = true;
    }
    const auto free = std::find(taken.begin(), taken.end(), false);
    jumps[i].Lane = std::min(static_cast<int>(free - taken.begin()), laneCount - 1);
  }
}

}  // namespace wrenfold
