// Byte streams: in memory, over a string, over a file.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/core/model/Persistent.h"

namespace wrenfold {

enum TSeekOrigin : std::uint8_t { soFromBeginning, soFromCurrent, soFromEnd };

// Positions and sizes are bytes. A seek outside the stream is clamped to it.
class TStream : public TObject {
 public:
  // Up to count bytes; answers how many there were.
  virtual std::size_t Read(void* buffer, std::size_t count) = 0;
  virtual std::size_t Write(const void* buffer, std::size_t count) = 0;
  virtual std::int64_t Seek(std::int64_t offset, TSeekOrigin origin) = 0;

  std::int64_t Position() { return Seek(0, soFromCurrent); }
  void SetPosition(std::int64_t position) { Seek(position, soFromBeginning); }
  virtual std::int64_t Size();

  // All count bytes, or EReadError / EWriteError naming position and counts.
  void ReadBuffer(void* buffer, std::size_t count);
  void WriteBuffer(const void* buffer, std::size_t count);
  void WriteText(std::string_view text) { WriteBuffer(text.data(), text.size()); }
  // From the current position to the end.
  std::string ReadRest();
  // The bytes from the current position to the end without copying them, where the stream has
  // them in memory; they stay valid until the stream is written to or destroyed.
  virtual bool ViewRest(std::string_view& bytes);
  // Count bytes from source's position; a count of 0 copies all of source from its beginning.
  std::int64_t CopyFrom(TStream& source, std::int64_t count);
};

class TMemoryStream : public TStream {
 public:
  TMemoryStream() = default;
  explicit TMemoryStream(std::string bytes) : FBytes(std::move(bytes)) {}

  std::size_t Read(void* buffer, std::size_t count) override;
  std::size_t Write(const void* buffer, std::size_t count) override;
  std::int64_t Seek(std::int64_t offset, TSeekOrigin origin) override;
  std::int64_t Size() override { return static_cast<std::int64_t>(FBytes.size()); }
  bool ViewRest(std::string_view& bytes) override;

  const std::string& Bytes() const { return FBytes; }
  std::string TakeBytes() {
    FPosition = 0;
    return std::move(FBytes);
  }
  void Clear();

 private:
  std::string FBytes;
  std::size_t FPosition = 0;
};

// A string as a stream.
class TStringStream : public TMemoryStream {
 public:
  explicit TStringStream(std::string text = {}) : TMemoryStream(std::move(text)) {}
  const std::string& DataString() const { return Bytes(); }
};

enum TFileMode : std::uint8_t { fmOpenRead, fmOpenReadWrite, fmCreate };

// Opening raises EFOpenError, creating EFCreateError; both name the file and the reason.
class TFileStream : public TStream {
 public:
  TFileStream(const std::string& fileName, TFileMode mode);
  ~TFileStream() override;

  std::size_t Read(void* buffer, std::size_t count) override;
  std::size_t Write(const void* buffer, std::size_t count) override;
  std::int64_t Seek(std::int64_t offset, TSeekOrigin origin) override;
  std::int64_t Size() override;

 private:
  int FHandle = -1;
};

}  // namespace wrenfold
