#include "platform/core/Files.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "platform/core/Exceptions.h"
#include "platform/core/Streams.h"

namespace wrenfold {

namespace {

int Outcome(int result) {
  return result < 0 ? errno : 0;
}

TFileSystem*& Installed() {
  static TFileSystem* installed = nullptr;
  return installed;
}

std::string DirectoryOf(const std::string& fileName) {
  const auto slash = fileName.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : fileName.substr(0, slash);
}

// The file that a chain of links leads to, so that replacing it keeps the links.
std::string LinkTarget(const std::string& fileName) {
  char buffer[PATH_MAX];
  return ::realpath(fileName.c_str(), buffer) != nullptr ? std::string(buffer) : fileName;
}

unsigned PermissionsOf(const std::string& fileName) {
  struct stat status {};
  if (::stat(fileName.c_str(), &status) == 0) return status.st_mode & 07777;
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

// One replacement under way. Until it is done, the temporary file goes with it.
class TReplacement {
 public:
  explicit TReplacement(const std::string& fileName)
      : FShown(fileName), FTarget(LinkTarget(fileName)) {}
  ~TReplacement() {
    if (FHandle >= 0) FileSystem().Close(FHandle);
    if (!FTemporary.empty()) FileSystem().Remove(FTemporary);
  }
  TReplacement(const TReplacement&) = delete;
  TReplacement& operator=(const TReplacement&) = delete;

  void Run(std::string_view bytes) {
    Create();
    while (!bytes.empty()) {
      std::size_t written = 0;
      Check(FileSystem().Write(FHandle, bytes, written), "writing the temporary file");
      bytes.remove_prefix(written);
    }
    Check(FileSystem().Sync(FHandle), "syncing the temporary file");
    Check(FileSystem().Close(std::exchange(FHandle, -1)), "closing the temporary file");
    Check(FileSystem().Rename(FTemporary, FTarget), "renaming the temporary file over it");
    FTemporary.clear();
    // The new file stands whatever comes of this; it only may not survive a crash of the machine.
    FileSystem().SyncDirectory(DirectoryOf(FTarget));
  }

 private:
  void Create() {
    const unsigned permissions = PermissionsOf(FTarget);
    int error = EEXIST;
    for (int attempt = 0; error == EEXIST && attempt < 100; ++attempt) {
      const std::string name = fmt::format("{}.{}-{}.tmp", FTarget, ::getpid(), attempt);
      error = FileSystem().CreateNew(name, permissions, FHandle);
      if (error == 0) FTemporary = name;
    }
    Check(error, "creating a temporary file beside it");
  }
  void Check(int error, const char* step) const {
    if (error == 0) return;
    throw EFCreateError(
        fmt::format("Cannot write {}: {} failed: {}", FShown, step, std::strerror(error)));
  }

  std::string FShown;
  std::string FTarget;
  std::string FTemporary;
  int FHandle = -1;
};

}  // namespace

int TFileSystem::CreateNew(const std::string& fileName, unsigned permissions, int& handle) {
  handle = ::open(fileName.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (handle < 0) return errno;
  return Outcome(::fchmod(handle, permissions));
}

int TFileSystem::Write(int handle, std::string_view bytes, std::size_t& written) {
  const ssize_t count = ::write(handle, bytes.data(), bytes.size());
  written = count < 0 ? 0 : static_cast<std::size_t>(count);
  return count < 0 && errno != EINTR ? errno : 0;
}

int TFileSystem::Sync(int handle) {
  return Outcome(::fsync(handle));
}

int TFileSystem::Close(int handle) {
  return Outcome(::close(handle));
}

int TFileSystem::Rename(const std::string& from, const std::string& to) {
  return Outcome(::rename(from.c_str(), to.c_str()));
}

int TFileSystem::SyncDirectory(const std::string& directory) {
  const int handle = ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (handle < 0) return errno;
  const int error = Outcome(::fsync(handle));
  ::close(handle);
  return error;
}

int TFileSystem::Remove(const std::string& fileName) {
  return Outcome(::unlink(fileName.c_str()));
}

TFileSystem& FileSystem() {
  static TFileSystem real;
  return Installed() != nullptr ? *Installed() : real;
}

TFileSystem* SetFileSystem(TFileSystem* fileSystem) {
  return std::exchange(Installed(), fileSystem);
}

void SafeWriteFile(const std::string& fileName, std::string_view bytes) {
  TReplacement(fileName).Run(bytes);
}

std::string ReadWholeFile(const std::string& fileName) {
  if (DirectoryExists(fileName))
    throw EFOpenError("Cannot open file " + fileName + ": a directory");
  TFileStream stream(fileName, fmOpenRead);
  std::string bytes(static_cast<std::size_t>(stream.Size()), '\0');
  bytes.resize(stream.Read(bytes.data(), bytes.size()));
  // Files that do not know their size (pipes, files of the system) are read until they end.
  char block[4096];
  while (const std::size_t count = stream.Read(block, sizeof block)) bytes.append(block, count);
  return bytes;
}

void AppendToFile(const std::string& fileName, std::string_view bytes) {
  const int handle = ::open(fileName.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
  if (handle < 0) throw EFCreateError("Cannot open file " + fileName + ": " + std::strerror(errno));
  const ssize_t written = ::write(handle, bytes.data(), bytes.size());
  const int error = errno;
  ::close(handle);
  if (written != static_cast<ssize_t>(bytes.size()))
    throw EWriteError("Cannot append to file " + fileName + ": " +
                      (written < 0 ? std::strerror(error) : "the disk is full"));
}

bool FileExists(const std::string& fileName) {
  struct stat status {};
  return ::stat(fileName.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

bool DirectoryExists(const std::string& name) {
  struct stat status {};
  return ::stat(name.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::int64_t FileSize(const std::string& fileName) {
  struct stat status {};
  return ::stat(fileName.c_str(), &status) == 0 && !S_ISDIR(status.st_mode) ? status.st_size : -1;
}

bool DeleteFile(const std::string& fileName) {
  return ::unlink(fileName.c_str()) == 0;
}

std::string ModuleFileName(const void* address) {
  Dl_info info{};
  if (::dladdr(address, &info) == 0 || info.dli_fname == nullptr) return {};
  return LinkTarget(info.dli_fname);
}

}  // namespace wrenfold
