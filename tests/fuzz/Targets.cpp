#include "fuzz/Targets.h"

#include <cstdlib>

namespace wrenfold {

std::span<const TFuzzTarget> FuzzTargets() {
  static constexpr TFuzzTarget targets[] = {
      {"binary", FuzzBinaryForm},   {"resource", FuzzResourceForm},
      {"text", FuzzTextForm},       {"header", FuzzDataHeader},
      {"ini", FuzzIniStrings},      {"language", FuzzLanguageModule},
      {"values", FuzzPropertyText}, {"project", FuzzProjectSource}};
  return targets;
}

void Promise(bool kept) {
  if (!kept) std::abort();
}

}  // namespace wrenfold
