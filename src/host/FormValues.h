// Stored property values as text and back, one at a time.
#pragma once

#include <string>
#include <string_view>

namespace wrenfold {

// The value (as it stands in a component stream, tag first) as the text form of a form file writes
// it behind "Name = ". Lists, collections and binaries have several lines.
std::string FormValueText(std::string_view value);

// The value that a text stands for. Raises EConvertError saying what is wrong with it.
std::string FormValueFromText(const std::string& text);

}  // namespace wrenfold
