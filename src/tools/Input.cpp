// Reading and writing of whole inputs and outputs, and the files of a folder.
#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>

#include "platform/core/Files.h"
#include "tools/Commands.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view StandardStream = "-";

// Files of forms and of specifications.
constexpr std::array<std::string_view, 7> Extensions = {".dfm", ".xfm", ".nfm", ".sbn",
                                                        ".sbr", ".sbe", ".stx"};

bool IsStoredFile(const fs::path& path) {
  std::string extension = path.extension().string();
  for (char& character : extension)
    if (character >= 'A' && character <= 'Z') character = static_cast<char>(character | 0x20);
  return std::find(Extensions.begin(), Extensions.end(), extension) != Extensions.end();
}

void ListFolder(const fs::path& folder, std::vector<std::string>& files) {
  const std::size_t start = files.size();
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder))
    if (entry.is_regular_file() && IsStoredFile(entry.path()))
      files.push_back(entry.path().string());
  std::sort(files.begin() + static_cast<std::ptrdiff_t>(start), files.end());
}

std::string ReadStandardInput() {
  std::string bytes;
  std::array<char, 65536> buffer;
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), stdin))
    bytes.append(buffer.data(), count);
  if (std::ferror(stdin) != 0) throw EReadError("Standard input cannot be read");
  return bytes;
}

}  // namespace

std::string ReadInput(const std::string& name) {
  return name == StandardStream ? ReadStandardInput() : ReadWholeFile(name);
}

void WriteOutput(const std::string& name, std::string_view bytes) {
  if (name != StandardStream) return SafeWriteFile(name, bytes);
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size();
  if (!written || std::fflush(stdout) != 0) throw EWriteError("Standard output cannot be written");
}

std::vector<std::string> ListFiles(const std::vector<std::string>& names) {
  std::vector<std::string> files;
  for (const std::string& name : names) {
    if (DirectoryExists(name)) ListFolder(name, files);
    else files.push_back(name);
  }
  return files;
}

}  // namespace wrenfold
