// Finds files by the names that sources give them, whatever the slashes and the letter case.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

namespace wrenfold {

// Looks up names as they stand in sources written on a system that ignores letter case. Folders are
// listed once, so that an object of this class answers for the moment it is used in.
class TFileLookup {
 public:
  // The absolute name of the file, with the letter case it has on disk. Relative names start at the
  // folder. Empty when there is no such file, or when the name stands on another system's drive.
  std::string Find(const std::string& folder, std::string_view name);

 private:
  using TListing = std::unordered_map<std::string, std::string>;
  const TListing& List(const std::string& folder);

  std::unordered_map<std::string, TListing> FListings;
};

// The absolute name that a source means, without a look at the disk: slashes of this system, "."
// and
// ".." resolved. A name on another system's drive stays as it is.
std::string ResolveFileName(const std::string& folder, std::string_view name);

// "C:\Units\Main.pas" or "\\server\Main.pas": a place that this system does not have.
bool IsForeignPath(std::string_view name);

}  // namespace wrenfold
