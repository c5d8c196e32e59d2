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

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

// libFuzzer repeats single bytes only: without the repeated values and lines from here it would
// take hours to learn that a list can be long. Short parts and small numbers are as likely as
// large ones.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned seed) {
  std::minstd_rand random(seed);
  if (random() % 4 != 0 || size == 0 || size >= maxSize)
    return LLVMFuzzerMutate(data, size, maxSize);
  const auto upTo = [&random](std::size_t largest) {
    return std::min<std::size_t>(1 + random() % (1u << random() % 8), largest);
  };
  const std::size_t start = random() % size;
  std::uint8_t* part = data + start;
  const std::size_t longest = std::min(size - start, maxSize - size);
  std::size_t length = upTo(longest);
  // Values that follow one another begin alike: up to the next such byte is often a whole one.
  if (random() % 2 == 0) {
    const void* next = std::memchr(part + length, *part, longest - length);
    if (next != nullptr) length = static_cast<const std::uint8_t*>(next) - part;
  }
  const std::size_t times = upTo((maxSize - size) / length);
  std::uint8_t* rest = part + length;
  std::memmove(rest + times * length, rest, size - start - length);
  for (std::size_t i = 0; i < times; ++i) std::memcpy(rest + i * length, part, length);
  return size + times * length;
}
