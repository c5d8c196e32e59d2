// A language module.
#include "fuzz/Targets.h"
#include "locale/ResourceLibrary.h"

namespace wrenfold {

void FuzzLanguageModule(std::string_view bytes) {
  const auto read = [&] {
    const TResourceLibrary library("fuzzed.dll", std::string(bytes));
    // Texts stand in blocks of sixteen: every block is met.
    for (int id = 0; id <= 0xFFFF; id += 15) {
      constexpr std::size_t maxBytesOfUnit = 3;
      Promise(library.FindString(id).size() <= maxBytesOfUnit * TResourceLibrary::MaxTextLength,
              "a text is no longer than the buffer that it is handed out in");
    }
  };
  Succeeds(read, {"offset "});
}

}  // namespace wrenfold
