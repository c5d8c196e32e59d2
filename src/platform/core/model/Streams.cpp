#include "platform/core/model/Streams.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include "platform/core/system/Exceptions.h"

namespace wrenfold {

namespace {

// How much is copied at a time between streams that are not in memory.
constexpr std::size_t CopyBlock = 64 * 1024;

std::int64_t SeekTarget(std::int64_t offset, TSeekOrigin origin, std::int64_t position,
                        std::int64_t size) {
  const std::int64_t base = origin == soFromBeginning ? 0
                            : origin == soFromCurrent ? position
                                                      : size;
  return base + std::clamp(offset, -base, size - base);
}

}  // namespace

std::int64_t TStream::Size() {
  const std::int64_t position = Position();
  const std::int64_t size = Seek(0, soFromEnd);
  SetPosition(position);
  return size;
}

void TStream::ReadBuffer(void* buffer, std::size_t count) {
  const std::size_t read = Read(buffer, count);
  if (read < count)
    throw EReadError(fmt::format("Stream read error at offset {}: {} bytes expected, {} left",
                                 Position() - static_cast<std::int64_t>(read), count, read));
}

void TStream::WriteBuffer(const void* buffer, std::size_t count) {
  const std::size_t written = Write(buffer, count);
  if (written < count)
    throw EWriteError(fmt::format("Stream write error at offset {}: {} of {} bytes written",
                                  Position() - static_cast<std::int64_t>(written), written, count));
}

std::string TStream::ReadRest() {
  std::string bytes(static_cast<std::size_t>(Size() - Position()), '\0');
  ReadBuffer(bytes.data(), bytes.size());
  return bytes;
}

bool TStream::ViewRest(std::string_view&) {
  return false;
}

std::int64_t TStream::CopyFrom(TStream& source, std::int64_t count) {
  if (count == 0) {
    source.SetPosition(0);
    count = source.Size();
  }
  std::vector<char> block(std::min<std::size_t>(CopyBlock, static_cast<std::size_t>(count)));
  for (std::int64_t left = count; left > 0;) {
    const auto step = std::min<std::size_t>(block.size(), static_cast<std::size_t>(left));
    source.ReadBuffer(block.data(), step);
    WriteBuffer(block.data(), step);
    left -= static_cast<std::int64_t>(step);
  }
  return count;
}

std::size_t TMemoryStream::Read(void* buffer, std::size_t count) {
  const std::size_t step = std::min(count, FBytes.size() - FPosition);
  if (step > 0) std::memcpy(buffer, FBytes.data() + FPosition, step);
  FPosition += step;
  return step;
}

std::size_t TMemoryStream::Write(const void* buffer, std::size_t count) {
  if (count > 0) FBytes.replace(FPosition, count, static_cast<const char*>(buffer), count);
  FPosition += count;
  return count;
}

std::int64_t TMemoryStream::Seek(std::int64_t offset, TSeekOrigin origin) {
  const std::int64_t target =
      SeekTarget(offset, origin, static_cast<std::int64_t>(FPosition), Size());
  FPosition = static_cast<std::size_t>(target);
  return target;
}

bool TMemoryStream::ViewRest(std::string_view& bytes) {
  bytes = std::string_view(FBytes).substr(FPosition);
  return true;
}

void TMemoryStream::Clear() {
  FBytes.clear();
  FPosition = 0;
}

TFileStream::TFileStream(const std::string& fileName, TFileMode mode) {
  const int flags = mode == fmOpenRead        ? O_RDONLY
                    : mode == fmOpenReadWrite ? O_RDWR
                                              : O_RDWR | O_CREAT | O_TRUNC;
  FHandle = ::open(fileName.c_str(), flags | O_CLOEXEC, 0666);
  if (FHandle >= 0) return;
  const std::string reason = std::strerror(errno);
  if (mode == fmCreate) throw EFCreateError("Cannot create file " + fileName + ": " + reason);
  throw EFOpenError("Cannot open file " + fileName + ": " + reason);
}

TFileStream::~TFileStream() {
  ::close(FHandle);
}

std::size_t TFileStream::Read(void* buffer, std::size_t count) {
  std::size_t done = 0;
  while (done < count) {
    const ssize_t step = ::read(FHandle, static_cast<char*>(buffer) + done, count - done);
    if (step < 0 && errno == EINTR) continue;
    if (step <= 0) break;
    done += static_cast<std::size_t>(step);
  }
  return done;
}

std::size_t TFileStream::Write(const void* buffer, std::size_t count) {
  std::size_t done = 0;
  while (done < count) {
    const ssize_t step = ::write(FHandle, static_cast<const char*>(buffer) + done, count - done);
    if (step < 0 && errno == EINTR) continue;
    if (step <= 0) break;
    done += static_cast<std::size_t>(step);
  }
  return done;
}

std::int64_t TFileStream::Seek(std::int64_t offset, TSeekOrigin origin) {
  const std::int64_t position = ::lseek(FHandle, 0, SEEK_CUR);
  return ::lseek(FHandle, SeekTarget(offset, origin, position, Size()), SEEK_SET);
}

std::int64_t TFileStream::Size() {
  const off_t position = ::lseek(FHandle, 0, SEEK_CUR);
  const off_t size = ::lseek(FHandle, 0, SEEK_END);
  ::lseek(FHandle, position, SEEK_SET);
  return size;
}

}  // namespace wrenfold
