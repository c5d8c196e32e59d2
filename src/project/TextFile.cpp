// Loading, saving and watching of one source file.
#include "project/TextFile.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>

#include "platform/core/system/Files.h"

namespace wrenfold {

namespace {

std::size_t HashOf(std::string_view bytes) {
  return std::hash<std::string_view>()(bytes);
}

}  // namespace

bool IsReadOnlyFile(const std::string& fileName) {
  struct stat status;
  if (stat(fileName.c_str(), &status) != 0) return false;
  // A file that nobody may write is meant to stay as it is, whatever rights this user has.
  constexpr mode_t anybody = S_IWUSR | S_IWGRP | S_IWOTH;
  return (status.st_mode & anybody) == 0 || access(fileName.c_str(), W_OK) != 0;
}

TTextFile TTextFile::Load(const std::string& fileName, int codePage) {
  // Devices and pipes have no end.
  std::error_code error;
  const auto status = std::filesystem::status(fileName, error);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
    throw EFOpenError(fmt::format("{}: expected a file, found a folder or device", fileName));
  TTextFile file(fileName);
  // The stamp is taken first: a write in between shows as a change, never goes unseen.
  file.FStamp = StampOf(fileName);
  if (file.FStamp.Size > MaxSize)
    throw EFOpenError(fmt::format("{}: the file has {} bytes, expected a source of at most {}",
                                  fileName, file.FStamp.Size, MaxSize));
  const std::string bytes = ReadWholeFile(fileName);
  file.FStamp.Hash = HashOf(bytes);
  file.FText = DecodeText(bytes, codePage, file.FFormat);
  file.FLineEnds = CountLineEnds(file.FText);
  return file;
}

void TTextFile::SetText(std::string text) {
  if (text == FText) return;
  FText = std::move(text);
  FLineEnds = CountLineEnds(FText);
  FModified = true;
}

void TTextFile::SetFormat(const TTextFormat& format) {
  FFormat = format;
  FModified = true;
}

TTextFile::TStamp TTextFile::StampOf(const std::string& fileName) {
  std::error_code error;
  TStamp stamp;
  stamp.Time = std::filesystem::last_write_time(fileName, error);
  stamp.Size = FileSize(fileName);
  return stamp;
}

TDiskState TTextFile::DiskState() const {
  const TStamp now = StampOf(FFileName);
  if (now.Size < 0) return TDiskState::Missing;
  if (now.Size != FStamp.Size) return TDiskState::Changed;
  if (now.Time == FStamp.Time) return TDiskState::Same;
  try {
    return HashOf(ReadWholeFile(FFileName)) == FStamp.Hash ? TDiskState::Same : TDiskState::Changed;
  } catch (const EFOpenError&) {
    return TDiskState::Changed;
  }
}

bool TTextFile::ReadOnly() const {
  return IsReadOnlyFile(FFileName);
}

void TTextFile::Save() {
  SaveAs(FFileName);
}

void TTextFile::SaveAs(const std::string& fileName) {
  // The file would be replaced, which its own permissions do not prevent.
  if (IsReadOnlyFile(fileName))
    throw EFCreateError(
        fmt::format("{}: the file is read-only; save the text under another name", fileName));
  const std::string bytes = EncodeText(FText, FFormat, fileName);
  SafeWriteFile(fileName, bytes);
  FFileName = fileName;
  FStamp = StampOf(fileName);
  FStamp.Hash = HashOf(bytes);
  FModified = false;
}

}  // namespace wrenfold
