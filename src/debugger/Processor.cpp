#include "debugger/Processor.h"

#include <algorithm>
#include <array>

namespace wrenfold {

const TRegisterRow* TProcessor::FindRegister(std::string_view name) const {
  for (const TRegisterRow& row : Registers)
    if (name == row.Name || name == row.Published) return &row;
  return nullptr;
}

const TProcessor* FindProcessor(std::string_view triple) {
  static constexpr std::array processors{&ProcessorX64, &ProcessorX86};
  const std::string_view architecture = triple.substr(0, triple.find('-'));
  for (const TProcessor* processor : processors) {
    const auto& known = processor->Architectures;
    if (std::find(known.begin(), known.end(), architecture) != known.end()) return processor;
  }
  return nullptr;
}

}  // namespace wrenfold
