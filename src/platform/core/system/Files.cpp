#include "platform/core/system/Files.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <utility>

#include "platform/core/system/Exceptions.h"

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

[[noreturn]] void FailWrite(const std::string& fileName, const char* step, int error) {
  throw EFCreateError(
      fmt::format("Cannot write {}: {} failed: {}", fileName, step, std::strerror(error)));
}

// The file that a chain of links leads to, whether it is there yet or not, so that replacing it
// keeps the links.
std::string LinkTarget(const std::string& fileName) {
  constexpr int maxLinks = 40;  // as the system has it
  std::filesystem::path target(fileName);
  std::error_code error;
  for (int link = 0; link <= maxLinks; ++link) {
    const auto next = std::filesystem::read_symlink(target, error);
    if (error) return target.string();
    target = target.parent_path() / next;
  }
  FailWrite(fileName, "following its links", ELOOP);
}

// While it lives, signals that end the process wait, so that none leaves a temporary file behind.
// A process without threads ends right behind it.
class TSignalsWait {
 public:
  TSignalsWait() {
    sigset_t signals;
    ::sigemptyset(&signals);
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGXFSZ})
      ::sigaddset(&signals, signal);
    ::pthread_sigmask(SIG_BLOCK, &signals, &FBefore);
  }
  ~TSignalsWait() { ::pthread_sigmask(SIG_SETMASK, &FBefore, nullptr); }
  TSignalsWait(const TSignalsWait&) = delete;
  TSignalsWait& operator=(const TSignalsWait&) = delete;

 private:
  sigset_t FBefore{};
};

constexpr std::string_view TemporaryBegin = ".wrenfold-", TemporaryEnd = ".tmp";

// A lock on an open file that outlives its handle. A temporary file is locked as long as its writer
// lives, so that one without a lock is known to be left behind.
class TWriterLock {
 public:
  TWriterLock() = default;
  ~TWriterLock() { Release(); }
  TWriterLock(const TWriterLock&) = delete;
  TWriterLock& operator=(const TWriterLock&) = delete;

  // False when somebody took the file for left behind and removed it in the meantime. File systems
  // without locks have nobody who does.
  bool Take(int handle) {
    Release();
    FHandle = ::fcntl(handle, F_DUPFD_CLOEXEC, 0);
    struct stat status {};
    if (FHandle < 0 || ::flock(FHandle, LOCK_EX) != 0 || ::fstat(FHandle, &status) != 0)
      return true;
    return status.st_nlink > 0;
  }

 private:
  void Release() {
    if (FHandle >= 0) ::close(std::exchange(FHandle, -1));
  }
  int FHandle = -1;
};

// Removes what writers left in the folder that were killed.
void RemoveAbandoned(const std::string& folder) {
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder.empty() ? "." : folder, error), end;
       !error && entry != end; entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (!name.starts_with(TemporaryBegin) || !name.ends_with(TemporaryEnd)) continue;
    const int handle =
        ::open(entry->path().c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    if (handle < 0) continue;
    struct stat status {};
    if (::fstat(handle, &status) == 0 && S_ISREG(status.st_mode) &&
        ::flock(handle, LOCK_EX | LOCK_NB) == 0)
      ::unlink(entry->path().c_str());
    ::close(handle);
  }
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
    struct stat old {};
    const bool replaces = ::stat(FTarget.c_str(), &old) == 0;
    // Renaming over it would put a file in the place of the device for every program.
    if (replaces && !S_ISREG(old.st_mode) && !S_ISDIR(old.st_mode))
      throw EFCreateError(
          fmt::format("Cannot write {}: it is a device or a pipe, no file", FShown));
    // A name of its own: together with that of the file it might be too long.
    const std::string folder = FTarget.substr(0, FTarget.rfind('/') + 1);
    RemoveAbandoned(folder);
    int error = EEXIST;
    for (int attempt = 0; error == EEXIST && attempt < 100; ++attempt) {
      const std::string name =
          fmt::format("{}{}{}-{}{}", folder, TemporaryBegin, ::getpid(), attempt, TemporaryEnd);
      error = FileSystem().CreateNew(name, replaces ? 0600 : 0666, FHandle);
      if (error != 0) continue;
      FTemporary = name;
      if (FLock.Take(FHandle)) break;
      FileSystem().Close(std::exchange(FHandle, -1));
      error = EEXIST;
    }
    Check(error, "creating a temporary file beside it");
    if (!replaces) return;
    Check(FileSystem().SetAccess(FHandle, old.st_mode & 07777, old.st_uid, old.st_gid),
          "setting the permissions of the temporary file");
  }
  void Check(int error, const char* step) const {
    if (error != 0) FailWrite(FShown, step, error);
  }

  std::string FShown;
  std::string FTarget;
  std::string FTemporary;
  int FHandle = -1;
  TWriterLock FLock;
};

}  // namespace

int TFileSystem::CreateNew(const std::string& fileName, unsigned permissions, int& handle) {
  handle = ::open(fileName.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, permissions);
  return Outcome(handle);
}

int TFileSystem::SetAccess(int handle, unsigned permissions, unsigned owner, unsigned group) {
  constexpr auto unchanged = static_cast<uid_t>(-1);
  const bool sameOwner = ::fchown(handle, owner, group) == 0;
  // Only the administrator gives files away; the group may still be one of ours.
  const bool sameGroup = sameOwner || ::fchown(handle, unchanged, group) == 0;
  if (!sameOwner) permissions &= ~unsigned{S_ISUID};
  if (!sameGroup) permissions &= ~unsigned{S_ISGID};
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
  const TSignalsWait wait;
  TReplacement(fileName).Run(bytes);
}

std::string ReadWholeFile(const std::string& fileName) {
  const int handle = ::open(fileName.c_str(), O_RDONLY | O_CLOEXEC);
  if (handle < 0) throw EFOpenError("Cannot open file " + fileName + ": " + std::strerror(errno));
  // Files that do not know their size (pipes, files of the system) are read until they end.
  struct stat status {};
  std::string bytes(::fstat(handle, &status) == 0 ? std::max<off_t>(status.st_size, 0) + 1 : 1,
                    '\0');
  std::size_t size = 0;
  int error = 0;
  for (ssize_t count = 1; count != 0;) {
    if (size == bytes.size()) bytes.resize(size * 2 + 4096);
    count = ::read(handle, bytes.data() + size, bytes.size() - size);
    if (count > 0) size += static_cast<std::size_t>(count);
    else if (count < 0 && errno != EINTR) count = 0, error = errno;
  }
  ::close(handle);
  if (error != 0) throw EFOpenError("Cannot read file " + fileName + ": " + std::strerror(error));
  bytes.resize(size);
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
  return FileSystem().Remove(fileName) == 0;
}

std::string ModuleFileName(const void* address) {
  Dl_info info{};
  if (::dladdr(address, &info) == 0 || info.dli_fname == nullptr) return {};
  char buffer[PATH_MAX];
  return ::realpath(info.dli_fname, buffer) != nullptr ? buffer : info.dli_fname;
}

}  // namespace wrenfold
