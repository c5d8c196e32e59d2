// The package's own table of texts, in English.
#pragma once

#include <span>
#include <string_view>

namespace wrenfold {

struct TStringEntry {
  int Id;
  std::string_view Text;  // UTF-8; line ends are CR LF
};

// All entries, by ascending number.
std::span<const TStringEntry> PackageStrings();
// The entry of a number, or null.
const TStringEntry* FindPackageString(int id);

}  // namespace wrenfold
