// The expression of a source line that a place in it is about.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace wrenfold {

// The name at the byte, with what it is a part of in front: "Shape.Points[1].X" at its "X",
// "Shape" at its "Shape". Empty where no name is.
std::string ExpressionAt(std::string_view line, std::size_t column);

}  // namespace wrenfold
