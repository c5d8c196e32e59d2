// Memory as numbers of several kinds, shown and entered.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace wrenfold {

// A kind of number that memory is shown as. The bytes of a number stand lowest first.
struct TMemoryUnit {
  const char* Name;
  std::size_t Size;  // bytes of one
  std::string (*Format)(std::string_view bytes);
  // The bytes of a number that the user entered, or nothing when the text is none that fits.
  std::optional<std::string> (*Parse)(std::string_view text);
};
std::span<const TMemoryUnit> MemoryUnits();

// All whole numbers of the bytes, parted by blanks.
std::string FormatUnits(const TMemoryUnit& unit, std::string_view bytes);
// The way back: nothing unless the text holds exactly that many bytes.
std::optional<std::string> ParseUnits(const TMemoryUnit& unit, std::string_view text,
                                      std::size_t byteCount);

}  // namespace wrenfold
