// The entry points of libFuzzer for the target that the build names.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>

#include "fuzz/Targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  for (const wrenfold::TFuzzTarget& target : wrenfold::FuzzTargets()) {
    if (target.Name != WRENFOLD_FUZZ_TARGET) continue;
    target.Run({reinterpret_cast<const char*>(data), size});
    return 0;
  }
  std::abort();
}

namespace {

using TRandom = std::minstd_rand;

// Small numbers are as likely as large ones.
std::size_t UpTo(std::size_t largest, TRandom& random) {
  return std::min<std::size_t>(1 + random() % (1u << random() % 8), largest);
}

// The length of a part that starts there. Values that follow one another begin alike, thus what
// ends before the next such byte is often a whole one.
std::size_t PartLength(const std::uint8_t* start, std::size_t longest, TRandom& random) {
  const std::size_t length = UpTo(longest, random);
  if (random() % 2 == 0) return length;
  const void* next = std::memchr(start + length, *start, longest - length);
  return next == nullptr ? length : static_cast<const std::uint8_t*>(next) - start;
}

}  // namespace

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

// libFuzzer repeats single bytes only: without the repeated values and lines from here it would
// take hours to learn that a list can be long.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned seed) {
  TRandom random(seed);
  if (random() % 4 != 0 || size == 0 || size >= maxSize)
    return LLVMFuzzerMutate(data, size, maxSize);
  const std::size_t start = random() % size;
  std::uint8_t* part = data + start;
  const std::size_t length = PartLength(part, std::min(size - start, maxSize - size), random);
  const std::size_t times = UpTo((maxSize - size) / length, random);
  std::uint8_t* rest = part + length;
  std::memmove(rest + times * length, rest, size - start - length);
  for (std::size_t i = 0; i < times; ++i) std::memcpy(rest + i * length, part, length);
  return size + times * length;
}

// Puts a value of one input before or in the place of such a value of another.
extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* data, std::size_t size,
                                                 const std::uint8_t* other, std::size_t otherSize,
                                                 std::uint8_t* out, std::size_t maxSize,
                                                 unsigned seed) {
  TRandom random(seed);
  const std::size_t start = random() % otherSize;
  std::size_t at = random() % size;
  if (const void* next = std::memchr(data + at, other[start], size - at))
    at = static_cast<const std::uint8_t*>(next) - data;
  const std::size_t replaced = random() % 2 == 0 ? 0 : PartLength(data + at, size - at, random);
  const std::size_t longest = std::min(otherSize - start, maxSize - size + replaced);
  if (longest == 0) return 0;
  const std::size_t length = PartLength(other + start, longest, random);
  std::memcpy(out, data, at);
  std::memcpy(out + at, other + start, length);
  std::memcpy(out + at + length, data + at + replaced, size - at - replaced);
  return size - replaced + length;
}
