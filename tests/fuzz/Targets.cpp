#include "fuzz/Targets.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace wrenfold {

std::span<const TFuzzTarget> FuzzTargets() {
  static constexpr TFuzzTarget targets[] = {
      {"binary", FuzzBinaryForm},     {"reader", FuzzTypedReader},
      {"resource", FuzzResourceForm}, {"text", FuzzTextForm},
      {"header", FuzzDataHeader},     {"settings", FuzzSettingsFile},
      {"ini", FuzzIniStrings},        {"language", FuzzLanguageModule},
      {"values", FuzzPropertyText},   {"project", FuzzProjectSource},
      {"encoding", FuzzTextEncoding}, {"pictures", FuzzPictures}};
  return targets;
}

void Promise(bool kept, std::string_view promise) {
  if (kept) return;
  std::fprintf(stderr, "broken promise: %.*s\n", static_cast<int>(promise.size()), promise.data());
  std::abort();
}

void PromiseMessage(const Exception& error, std::initializer_list<std::string_view> places) {
  const std::string message = error.Message();
  const bool told = std::any_of(places.begin(), places.end(), [&](std::string_view place) {
    // A place that the input itself names is written as messages are.
    return message.find(Exception(std::string(place)).Message()) != message.npos;
  });
  if (!told) std::fprintf(stderr, "%s: %s\n", error.ClassName().c_str(), message.c_str());
  Promise(!message.empty() && told, "an error tells its place");
}

}  // namespace wrenfold
