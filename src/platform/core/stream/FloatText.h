// Float values as the decimal text that forms carry.
#pragma once

#include <cstddef>

#include "platform/core/stream/FormStyle.h"
#include "platform/core/text/Extended.h"

namespace wrenfold {

// Enough for every value and style.
inline constexpr std::size_t MaxFloatText = 64;

// How much of a value is significant where all digits are asked for.
enum class TFloatWidth { Single, Double, Extended };

// Writes `value`, which came from a float of `width`, at `text` and returns the end of it. Values
// that are not finite become INF, -INF and NAN; exact text has the sign of a NaN too.
char* WriteFloatText(TExtended value, TFloatDigits style, TFloatWidth width, char* text);

}  // namespace wrenfold
