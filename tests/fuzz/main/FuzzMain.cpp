// The entry point of libFuzzer for the target that the build names.
#include <cstdint>
#include <cstdlib>

#include "fuzz/Targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  for (const wrenfold::TFuzzTarget& target : wrenfold::FuzzTargets()) {
    if (target.Name != WRENFOLD_FUZZ_TARGET) continue;
    target.Run({reinterpret_cast<const char*>(data), size});
    return 0;
  }
  std::abort();
}
