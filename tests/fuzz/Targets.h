// The readers that take bytes from outside, one function for each, for the fuzzer and for replaying
// what it once found.
#pragma once

#include <initializer_list>
#include <span>
#include <string_view>

#include "platform/core/system/Exceptions.h"

namespace wrenfold {

// A function takes any bytes and aborts when a promise of the reader is broken.
struct TFuzzTarget {
  std::string_view Name;
  void (*Run)(std::string_view bytes);
};

std::span<const TFuzzTarget> FuzzTargets();

void FuzzBinaryForm(std::string_view bytes);
void FuzzTypedReader(std::string_view bytes);
void FuzzResourceForm(std::string_view bytes);
void FuzzTextForm(std::string_view bytes);
void FuzzDataHeader(std::string_view bytes);
void FuzzSettingsFile(std::string_view bytes);
void FuzzIniStrings(std::string_view bytes);
void FuzzLanguageModule(std::string_view bytes);
void FuzzPropertyText(std::string_view bytes);
void FuzzProjectSource(std::string_view bytes);
void FuzzTextEncoding(std::string_view bytes);
void FuzzPictures(std::string_view bytes);

// Says what is broken and aborts, so that fuzzer and test both notice.
void Promise(bool kept, std::string_view promise);
// An error has a message, which holds at least one of the texts.
void PromiseMessage(const Exception& error, std::initializer_list<std::string_view> places);

// Whether the call raises nothing. What it raises is an Exception that tells a place.
template <class Call>
bool Succeeds(const Call& call, std::initializer_list<std::string_view> places) {
  try {
    call();
    return true;
  } catch (const Exception& error) {
    PromiseMessage(error, places);
    return false;
  }
}

}  // namespace wrenfold
