// Hexadecimal digits to bytes and back, sixteen bytes at a time where the processor can.
#pragma once

#include <cstddef>

namespace wrenfold {

// Decodes pairs of digits (either case) from the front of `text` and stops at the first pair that
// is none, or at the end. Returns the number of bytes written to `bytes`, which has room for `size`
// / 2.
std::size_t DecodeHex(const char* text, std::size_t size, char* bytes);

// Writes 2 * `size` digits in upper case.
void EncodeHex(const char* bytes, std::size_t size, char* text);

}  // namespace wrenfold
