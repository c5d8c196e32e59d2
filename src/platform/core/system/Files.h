// Whole files, replaced safely: written beside, synced, renamed over.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace wrenfold {

// The steps of writing a file. Tests put another one in to make a step fail. Every call answers 0
// or the error number of the system.
class TFileSystem {
 public:
  virtual ~TFileSystem() = default;
  // Creates a new file that nobody else has open; the handle is for the calls below. The process's
  // mask takes from the permissions.
  virtual int CreateNew(const std::string& fileName, unsigned permissions, int& handle);
  // Owner and group as far as the process may give them, then the permissions, without the set-id
  // bits of an owner or a group that it may not.
  virtual int SetAccess(int handle, unsigned permissions, unsigned owner, unsigned group);
  virtual int Write(int handle, std::string_view bytes, std::size_t& written);
  virtual int Sync(int handle);
  virtual int Close(int handle);
  virtual int Rename(const std::string& from, const std::string& to);
  virtual int SyncDirectory(const std::string& directory);
  virtual int Remove(const std::string& fileName);
};

TFileSystem& FileSystem();
// Puts another file system in its place (null: the real one) and answers the one before.
TFileSystem* SetFileSystem(TFileSystem* fileSystem);

// Replaces the file by these bytes: a temporary file in the same directory is written, synced and
// renamed over it, links are followed, permissions and owner kept. When a step fails the old file
// is as it was, the temporary one is removed and EFCreateError names the file, the step and the
// reason. A device or a pipe is refused. A signal that ends the process waits until either is done;
// what a killed writer left is removed by the next one that writes into the folder.
void SafeWriteFile(const std::string& fileName, std::string_view bytes);

// All bytes of a file; EFOpenError names the file and the reason, also for a directory.
std::string ReadWholeFile(const std::string& fileName);

// Appends in one write, creating the file when it is not there.
void AppendToFile(const std::string& fileName, std::string_view bytes);

bool FileExists(const std::string& fileName);
bool DirectoryExists(const std::string& name);
// -1 when there is no such file.
std::int64_t FileSize(const std::string& fileName);
// Answers false when the file could not be removed.
bool DeleteFile(const std::string& fileName);

// The path of the module (program or library) that holds this address.
std::string ModuleFileName(const void* address);

}  // namespace wrenfold
