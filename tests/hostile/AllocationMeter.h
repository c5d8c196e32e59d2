// Measures the memory that a piece of code takes from the heap with operator new.
#pragma once

#include <cstddef>

namespace wrenfold {

// Counts from its construction on. One at a time; other threads count as well.
class TAllocationMeter {
 public:
  TAllocationMeter();
  // The most that was held at one time, beyond what was held at the start.
  std::size_t PeakBytes() const;

 private:
  std::size_t FStart;
};

}  // namespace wrenfold
