// Stored property values as text and back, one at a time.
#pragma once

#include <string>
#include <string_view>

namespace wrenfold {

// The value (as it stands in a component stream, tag first) as the text form of a form file writes
// it behind "Name = ". Lists, collections and binaries have several lines.
std::string FormValueText(std::string_view value);

// The value that a text stands for, to take the place of another one: of its kind (a number for a
// number, a text for a text), of any kind where none is replaced. Raises EConvertError saying what
// is wrong and what was expected.
std::string FormValueFromText(const std::string& text, std::string_view replaced);

}  // namespace wrenfold
