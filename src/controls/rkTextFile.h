// Text files that the user loads into a list of lines.
#pragma once

#include <string>

#include "platform/core/model/StringList.h"

namespace wrenfold {

inline constexpr int MaxTextMegabytes = 8;

// Replaces the lines by those of the file. UTF-8, UTF-16 and UTF-32 are told by their marks; a text
// that is no UTF-8 is taken as Latin-1. Raises EFOpenError, or EConvertError for a file that is too
// large, naming the file; the lines then stay.
void LoadTextFile(const std::string& fileName, TStrings& lines);

}  // namespace wrenfold
