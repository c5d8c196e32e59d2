// The readers that take bytes from outside, one function for each, for the fuzzer and for replaying
// what it once found.
#pragma once

#include <span>
#include <string_view>

namespace wrenfold {

// A function takes any bytes: it lets the exceptions of bad input pass by and aborts when a promise
// is broken.
struct TFuzzTarget {
  std::string_view Name;
  void (*Run)(std::string_view bytes);
};

std::span<const TFuzzTarget> FuzzTargets();

void FuzzBinaryForm(std::string_view bytes);
void FuzzResourceForm(std::string_view bytes);
void FuzzTextForm(std::string_view bytes);
void FuzzDataHeader(std::string_view bytes);
void FuzzIniStrings(std::string_view bytes);
void FuzzLanguageModule(std::string_view bytes);
void FuzzPropertyText(std::string_view bytes);
void FuzzProjectSource(std::string_view bytes);

// Aborts, so that fuzzer and test both notice.
void Promise(bool kept);

}  // namespace wrenfold
