// Resolution of file names against folders on disk.
#include "project/FileLookup.h"

#include <algorithm>
#include <filesystem>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

namespace fs = std::filesystem;

bool IsFile(const std::string& fileName) {
  std::error_code error;
  return fs::is_regular_file(fileName, error);
}

}  // namespace

bool IsForeignPath(std::string_view name) {
  return name.starts_with("\\\\") || (name.size() >= 2 && name[1] == ':');
}

std::string ResolveFileName(const std::string& folder, std::string_view name) {
  if (IsForeignPath(name)) return std::string(name);
  std::string local(name);
  std::replace(local.begin(), local.end(), '\\', '/');
  return (fs::path(folder) / local).lexically_normal().string();
}

std::string TFileLookup::Find(const std::string& folder, std::string_view name) {
  if (name.empty() || IsForeignPath(name)) return {};
  const std::string resolved = ResolveFileName(folder, name);
  if (IsFile(resolved)) return resolved;

  std::string found = "/";
  for (const fs::path& part : fs::path(resolved).relative_path()) {
    const TListing& listing = List(found);
    const auto entry = listing.find(UpperCase(part.string()));
    if (entry == listing.end()) return {};
    if (found.size() > 1) found += '/';
    found += entry->second;
  }
  return IsFile(found) ? found : std::string();
}

const TFileLookup::TListing& TFileLookup::List(const std::string& folder) {
  const auto known = FListings.find(folder);
  if (known != FListings.end()) return known->second;
  TListing& listing = FListings[folder];
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    std::string name = entry->path().filename().string();
    listing.emplace(UpperCase(name), std::move(name));
  }
  return listing;
}

}  // namespace wrenfold
