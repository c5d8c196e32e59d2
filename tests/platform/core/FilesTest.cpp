// Whole files: what a failed write leaves behind, links, permissions, bytes.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>

#include "platform/core/system/Exceptions.h"
#include "platform/core/system/Files.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

enum TStep { NoStep, AtCreate, AtWrite, AtLaterWrite, AtSync, AtClose, AtRename, AtSyncDirectory };

// The real file system up to the step that fails. Writes are short, as they may be.
class TFailingSystem : public TFileSystem {
 public:
  explicit TFailingSystem(TStep failing) : FFailing(failing), FBefore(SetFileSystem(this)) {}
  ~TFailingSystem() override { SetFileSystem(FBefore); }

  int CreateNew(const std::string& fileName, unsigned permissions, int& handle) override {
    return FFailing == AtCreate ? EACCES : TFileSystem::CreateNew(fileName, permissions, handle);
  }
  int Write(int handle, std::string_view bytes, std::size_t& written) override {
    if (FFailing == (FWrites++ == 0 ? AtWrite : AtLaterWrite)) return ENOSPC;
    return TFileSystem::Write(handle, bytes.substr(0, 3), written);
  }
  int Sync(int handle) override { return FFailing == AtSync ? EIO : TFileSystem::Sync(handle); }
  int Close(int handle) override {
    const int result = TFileSystem::Close(handle);
    return FFailing == AtClose ? EDQUOT : result;
  }
  int Rename(const std::string& from, const std::string& to) override {
    return FFailing == AtRename ? EROFS : TFileSystem::Rename(from, to);
  }
  int SyncDirectory(const std::string& directory) override {
    return FFailing == AtSyncDirectory ? EINVAL : TFileSystem::SyncDirectory(directory);
  }

 private:
  TStep FFailing;
  TFileSystem* FBefore;
  int FWrites = 0;
};

class FilesTest : public testing::Test {
 protected:
  FilesTest() {
    std::string pattern = testing::TempDir() + "files-XXXXXX";
    FDirectory = ::mkdtemp(pattern.data());
    ::chmod(FDirectory.c_str(), 0755);
  }
  ~FilesTest() override { fs::remove_all(FDirectory); }
  std::string Path(const std::string& name) const { return (FDirectory / name).string(); }
  std::ptrdiff_t Entries() const {
    return std::distance(fs::directory_iterator(FDirectory), fs::directory_iterator());
  }
  fs::path FDirectory;
};

TEST_F(FilesTest, FailedWriteLeavesTheOldFileAndNothingElse) {
  struct TRow {
    TStep Step;
    int Error;
    const char* Text;
  };
  const TRow rows[] = {{AtCreate, EACCES, "creating a temporary file beside it failed"},
                       {AtWrite, ENOSPC, "writing the temporary file failed"},
                       {AtLaterWrite, ENOSPC, "writing the temporary file failed"},
                       {AtSync, EIO, "syncing the temporary file failed"},
                       {AtClose, EDQUOT, "closing the temporary file failed"},
                       {AtRename, EROFS, "renaming the temporary file over it failed"}};
  const std::string name = Path("settings");
  SafeWriteFile(name, "old contents");
  for (const TRow& row : rows) {
    const TFailingSystem failing(row.Step);
    try {
      SafeWriteFile(name, "new contents");
      ADD_FAILURE() << "no error from " << row.Text;
    } catch (const EFCreateError& error) {
      EXPECT_EQ(error.Message(),
                "Cannot write " + name + ": " + row.Text + ": " + std::strerror(row.Error));
    }
    EXPECT_EQ(ReadWholeFile(name), "old contents") << row.Text;
    EXPECT_EQ(Entries(), 1) << row.Text << ": the temporary file stayed";
  }
}

TEST_F(FilesTest, WrittenFileStandsThoughItsDirectoryDoesNotSync) {
  for (const TStep step : {NoStep, AtSyncDirectory}) {
    const TFailingSystem failing(step);
    SafeWriteFile(Path("file"), "written in short steps");
    EXPECT_EQ(ReadWholeFile(Path("file")), "written in short steps");
    EXPECT_EQ(Entries(), 1);
  }
}

TEST_F(FilesTest, TemporaryFileOfALivingWriterStaysThatOfAKilledOneGoes) {
  const std::string taken = Path(".wrenfold-") + std::to_string(::getpid()) + "-0.tmp";
  AppendToFile(taken, "half");
  const int writer = ::open(taken.c_str(), O_RDONLY);
  ASSERT_EQ(::flock(writer, LOCK_EX), 0);
  SafeWriteFile(Path("file"), "ours");
  EXPECT_EQ(ReadWholeFile(taken), "half");
  EXPECT_EQ(ReadWholeFile(Path("file")), "ours");
  ::close(writer);
  SafeWriteFile(Path("file"), "again");
  EXPECT_EQ(Entries(), 1) << "what a killed writer left stayed";
}

TEST_F(FilesTest, SignalWaitsUntilNoTemporaryFileIsLeft) {
  class TSignalling : public TFileSystem {
    int Sync(int handle) override {
      std::raise(SIGTERM);
      return TFileSystem::Sync(handle);
    }
  } signalling;
  const auto write = [&] {
    SetFileSystem(&signalling);
    SafeWriteFile(Path("file"), "whole");
  };
  EXPECT_EXIT(write(), testing::KilledBySignal(SIGTERM), "");
  EXPECT_EQ(ReadWholeFile(Path("file")), "whole");
  EXPECT_EQ(Entries(), 1);
}

TEST_F(FilesTest, LinkToItselfIsAnErrorAndStays) {
  fs::create_symlink("self", Path("self"));
  EXPECT_THROW(SafeWriteFile(Path("self"), "new"), EFCreateError);
  EXPECT_TRUE(fs::is_symlink(Path("self")));
}

TEST_F(FilesTest, APipeIsNoFileAndStays) {
  ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
  fs::create_symlink("pipe", Path("link"));
  for (const char* name : {"pipe", "link"})
    EXPECT_THROW(SafeWriteFile(Path(name), "new"), EFCreateError) << name;
  EXPECT_TRUE(fs::is_fifo(Path("pipe")));
  EXPECT_EQ(Entries(), 2);
}

TEST_F(FilesTest, LongestNameIsReplaced) {
  const std::string name = Path(std::string(255, 'n'));
  SafeWriteFile(name, "new");
  EXPECT_EQ(ReadWholeFile(name), "new");
}

TEST_F(FilesTest, OwnerAndSetIdBitsStay) {
  if (::geteuid() != 0) GTEST_SKIP() << "only the administrator gives files away";
  AppendToFile(Path("file"), "old");
  ASSERT_EQ(::chown(Path("file").c_str(), 65534, 65533), 0);
  ASSERT_EQ(::chmod(Path("file").c_str(), 06750), 0);
  SafeWriteFile(Path("file"), "new");
  struct stat status {};
  ASSERT_EQ(::stat(Path("file").c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, 65534u);
  EXPECT_EQ(status.st_gid, 65533u);
  EXPECT_EQ(status.st_mode & 07777, 06750u);
}

TEST_F(FilesTest, LinksAndPermissionsStay) {
  fs::create_directory(Path("real"));
  AppendToFile(Path("real/target"), "old");
  ::chmod(Path("real/target").c_str(), 0640);
  fs::create_symlink("real/target", Path("link"));
  fs::create_symlink("link", Path("link to link"));
  fs::create_symlink("real/not yet", Path("dangling"));
  SafeWriteFile(Path("link to link"), "new");
  SafeWriteFile(Path("dangling"), "made");
  EXPECT_EQ(ReadWholeFile(Path("real/target")), "new");
  EXPECT_EQ(ReadWholeFile(Path("real/not yet")), "made");
  for (const char* link : {"link", "link to link", "dangling"})
    EXPECT_TRUE(fs::is_symlink(Path(link))) << link;
  EXPECT_EQ(fs::status(Path("real/target")).permissions(), fs::perms(0640));
}

TEST_F(FilesTest, UnreadableFilesAreErrorsNotEmptyTexts) {
  // The last one opens but does not read.
  for (const std::string& name :
       {Path("missing"), FDirectory.string(), std::string("/proc/self/mem")})
    try {
      ReadWholeFile(name);
      ADD_FAILURE() << name << " was read";
    } catch (const EFOpenError& error) {
      EXPECT_THAT(error.Message(), testing::HasSubstr(name + ": "));
    }
  EXPECT_FALSE(ReadWholeFile("/proc/self/maps").empty()) << "a file that does not know its size";
  EXPECT_EQ(FileSize(Path("missing")), -1);
}

TEST_F(FilesTest, EveryByteComesBack) {
  const std::string bytes("\0\r\n\xFF\x1A text", 10);
  SafeWriteFile(Path("file"), bytes);
  AppendToFile(Path("file"), bytes);
  EXPECT_EQ(ReadWholeFile(Path("file")), bytes + bytes);
  SafeWriteFile(Path("file"), "");
  EXPECT_EQ(FileSize(Path("file")), 0);
}

}  // namespace
}  // namespace wrenfold
