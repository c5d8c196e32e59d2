// Reading and writing of whole inputs and outputs, and the files of a folder.
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "platform/core/system/Files.h"
#include "tools/Commands.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view StandardStream = "-";

// Files of forms and of specifications.
constexpr std::array<std::string_view, 9> Extensions = {".dfm", ".xfm", ".nfm", ".lfm", ".fmx",
                                                        ".sbn", ".sbr", ".sbe", ".stx"};

bool IsStoredFile(const fs::path& path) {
  std::string extension = path.extension().string();
  for (char& character : extension)
    if (character >= 'A' && character <= 'Z') character = static_cast<char>(character | 0x20);
  return std::find(Extensions.begin(), Extensions.end(), extension) != Extensions.end();
}

void ListFolder(const fs::path& top, std::vector<std::string>& files) {
  const auto start = static_cast<std::ptrdiff_t>(files.size());
  std::vector<fs::path> folders = {top};
  while (!folders.empty()) {
    const fs::path folder = std::move(folders.back());
    folders.pop_back();
    std::error_code error;
    std::error_code none;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
      if (entry->is_directory(none) && !entry->is_symlink(none)) folders.push_back(entry->path());
      else if (entry->is_regular_file(none) && IsStoredFile(entry->path()))
        files.push_back(entry->path().string());
    }
    if (error) files.push_back(folder.string());
  }
  std::sort(files.begin() + start, files.end());
}

std::string ReadStandardInput() {
  std::string bytes;
  std::array<char, 65536> buffer;
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), stdin))
    bytes.append(buffer.data(), count);
  if (std::ferror(stdin) != 0) throw EReadError("Standard input cannot be read");
  return bytes;
}

// -1 for what is no number.
int NumberOf(const std::string& text) {
  int number = -1;
  const char* end = text.data() + text.size();
  return std::from_chars(text.data(), end, number).ptr == end ? number : -1;
}

// The open descriptor that a name such as /dev/stdout or /dev/fd/3 leads to; -1 for other names.
int DescriptorOf(const std::string& name) {
  constexpr int maxLinks = 40;  // as the system has it
  std::error_code error;
  const fs::path descriptors = fs::canonical("/proc/self/fd", error);
  fs::path path = fs::absolute(name, error);
  for (int link = 0; link < maxLinks && !error; ++link) {
    const fs::path folder = fs::canonical(path.parent_path(), error);
    if (!error && folder == descriptors) return NumberOf(path.filename().string());
    path = folder / fs::read_symlink(path, error);
  }
  return -1;
}

[[noreturn]] void FailWrite(const std::string& name, int error) {
  throw EFCreateError(fmt::format("Cannot write {}: {}", name, std::strerror(error)));
}

void WriteAll(const std::string& name, int handle, std::string_view bytes) {
  while (!bytes.empty()) {
    std::size_t written = 0;
    if (const int error = FileSystem().Write(handle, bytes, written)) FailWrite(name, error);
    bytes.remove_prefix(written);
  }
}

// There, but no regular file.
bool IsSpecial(const std::string& name) {
  struct stat status {};
  return ::stat(name.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

void WriteThrough(const std::string& name, std::string_view bytes) {
  const int handle = ::open(name.c_str(), O_WRONLY | O_CLOEXEC);
  if (handle < 0) FailWrite(name, errno);
  WriteAll(name, handle, bytes);
  if (::close(handle) != 0) FailWrite(name, errno);
}

}  // namespace

std::string ReadInput(const std::string& name) {
  return name == StandardStream ? ReadStandardInput() : ReadWholeFile(name);
}

void WriteOutput(const std::string& name, std::string_view bytes) {
  if (name == StandardStream) return WriteAll("standard output", STDOUT_FILENO, bytes);
  const int descriptor = DescriptorOf(name);
  if (descriptor >= 0) return WriteAll(name, descriptor, bytes);
  if (IsSpecial(name)) return WriteThrough(name, bytes);
  SafeWriteFile(name, bytes);
}

void RequireReplaceable(const std::string& name) {
  if (name == StandardStream) throw EFCreateError("Standard input cannot be replaced");
  if (DescriptorOf(name) >= 0 || (IsSpecial(name) && !DirectoryExists(name)))
    throw EFCreateError(fmt::format("Cannot replace {}: it is no regular file", name));
}

std::vector<std::string> ListFiles(const std::vector<std::string>& names) {
  std::vector<std::string> files;
  for (const std::string& name : names) {
    if (DirectoryExists(name)) ListFolder(name, files);
    else files.push_back(name);
  }
  return files;
}

std::string NamedTrouble(const std::string& name, const Exception& error) {
  const bool isNamed = dynamic_cast<const EFOpenError*>(&error) != nullptr ||
                       dynamic_cast<const EFCreateError*>(&error) != nullptr ||
                       error.Message().starts_with(name + ": ");
  return isNamed ? error.Message() : fmt::format("{}: {}", name, error.Message());
}

}  // namespace wrenfold
