// Integer types whose values have names: colours, cursors, character sets.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/core/text/Values.h"

namespace wrenfold {

struct TIdentMapEntry {
  std::int32_t Value;
  std::string_view Name;
};

// The names of one integer type; the first entry of a value gives its name, names are compared
// without regard to letter case. Both ways take constant time.
class TIdentMap {
 public:
  explicit TIdentMap(std::vector<TIdentMapEntry> entries);
  bool IntToIdent(std::int32_t value, std::string& name) const;
  bool IdentToInt(std::string_view name, std::int32_t& value) const;
  const std::vector<TIdentMapEntry>& Entries() const { return FEntries; }

 private:
  std::vector<TIdentMapEntry> FEntries;
  std::unordered_map<std::int32_t, std::string_view> FNames;
  std::unordered_map<std::string, std::int32_t> FValues;  // by folded name
};

// clRed, crHandPoint, ANSI_CHARSET.
const TIdentMap& ColorMap();
const TIdentMap& CursorMap();
const TIdentMap& CharsetMap();

// Colours by their identifiers (clRed, clWindow).
bool ColorToIdent(TColor color, std::string& name);
bool IdentToColor(std::string_view name, TColor& color);

inline constexpr TColor clBlack = 0x000000, clMaroon = 0x000080, clWhite = 0xFFFFFF,
                        clRed = 0x0000FF, clWindow = -0x7FFFFFFB, clWindowText = -0x7FFFFFF8,
                        clBtnFace = -0x7FFFFFF1, clHighlight = -0x7FFFFFF3,
                        clHighlightText = -0x7FFFFFF2, clNone = 0x1FFFFFFF, clDefault = 0x20000000;

}  // namespace wrenfold
