// The versions that are written with specifications.
#pragma once

#include <cstdint>

namespace wrenfold {

// Ten-thousandths: a decimal number with four exact fractional digits.
using TVersionNumber = std::int64_t;

inline constexpr TVersionNumber cEditorVersion = 10100;  // 1.01, of the specification format
inline constexpr TVersionNumber cDelphiVersion = 40000;  // 4.00, of the property layout
// The only foreign version of the property layout that is asked about: 99.99.
inline constexpr TVersionNumber cQuestionableDelphiVersion = 999900;

}  // namespace wrenfold
