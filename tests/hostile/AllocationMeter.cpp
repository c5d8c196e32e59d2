#include "hostile/AllocationMeter.h"

#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> held = 0;
std::atomic<std::size_t> peak = 0;

void* Take(std::size_t size) {
  void* memory = std::malloc(std::max<std::size_t>(size, 1));
  if (memory == nullptr) throw std::bad_alloc();
  const std::size_t now = held += malloc_usable_size(memory);
  for (std::size_t seen = peak; seen < now && !peak.compare_exchange_weak(seen, now);) {
  }
  return memory;
}

void Give(void* memory) {
  if (memory == nullptr) return;
  held -= malloc_usable_size(memory);
  std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) {
  return Take(size);
}
void* operator new[](std::size_t size) {
  return Take(size);
}
void operator delete(void* memory) noexcept {
  Give(memory);
}
void operator delete[](void* memory) noexcept {
  Give(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  Give(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  Give(memory);
}

namespace wrenfold {

TAllocationMeter::TAllocationMeter() : FStart(held) {
  peak = FStart;
}

std::size_t TAllocationMeter::PeakBytes() const {
  return peak - FStart;
}

}  // namespace wrenfold
