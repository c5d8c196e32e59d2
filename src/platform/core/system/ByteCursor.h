// Cursors over contiguous memory: numbers, strings and views, checked against what is left.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "platform/core/system/Exceptions.h"

namespace wrenfold {

// The longest name or short string, which a stream stores behind a length byte.
constexpr std::size_t MaxName = 255;

static_assert(std::endian::native == std::endian::little, "the stream's integers are copied as is");

// A bounds-checked cursor over bytes that the caller keeps alive. Views that it returns point into
// those bytes. Reading past the end and malformed content raise EReadError, which names the offset
// and what was expected there.
class TByteCursor {
 public:
  // The data stands at `offset` of what errors are to name a place in.
  explicit TByteCursor(std::string_view data, std::size_t offset = 0)
      : FBegin(data.data()), FNext(data.data()), FEnd(data.data() + data.size()), FOffset(offset) {}

  std::size_t Position() const { return static_cast<std::size_t>(FNext - FBegin); }
  std::size_t Size() const { return static_cast<std::size_t>(FEnd - FBegin); }
  std::size_t Left() const { return static_cast<std::size_t>(FEnd - FNext); }
  bool AtEnd() const { return FNext == FEnd; }
  // What is left, not copied.
  std::string_view Rest() const { return {FNext, Left()}; }
  // `position` must not be beyond Size().
  void Seek(std::size_t position);

  std::uint8_t PeekByte(const char* expected) {
    Need(1, expected);
    return static_cast<std::uint8_t>(*FNext);
  }
  std::uint8_t ReadByte(const char* expected) { return ReadFixed<std::uint8_t>(expected); }
  // A little-endian number of the width of `T`, without a tag.
  template <typename T>
  T ReadFixed(const char* expected) {
    Need(sizeof(T), expected);
    T value;
    std::memcpy(&value, FNext, sizeof(T));
    FNext += sizeof(T);
    return value;
  }
  // `count` bytes, not copied.
  std::string_view ReadView(std::size_t count, const char* expected) {
    Need(count, expected);
    const std::string_view view(FNext, count);
    FNext += count;
    return view;
  }
  // The bytes from `position`, which was read before, up to here.
  std::string_view Since(std::size_t position) const {
    return {FBegin + position, static_cast<std::size_t>(FNext - FBegin) - position};
  }
  // A length byte and as many bytes.
  std::string_view ReadShortString(const char* expected) {
    const std::size_t count = ReadByte(expected);
    return ReadView(count, expected);
  }
  // A 32-bit length and as many bytes.
  std::string_view ReadLongString(const char* expected) {
    const std::size_t count = ReadFixed<std::uint32_t>(expected);
    return ReadView(count, expected);
  }

  // Raises EReadError "... at offset N (hex): expected ...".
  [[noreturn]] void Fail(const char* expected) const { FailAt(Position(), expected); }
  [[noreturn]] void FailAt(std::size_t position, const char* expected) const;

 protected:
  void Need(std::size_t count, const char* expected) const {
    if (Left() < count) [[unlikely]]
      FailEnd(count, expected);
  }
  [[noreturn]] void FailEnd(std::size_t count, const char* expected) const;

  const char* FBegin;
  const char* FNext;
  const char* FEnd;
  std::size_t FOffset;
};

// Appends to one growing buffer that it owns. Lengths that the format cannot hold raise
// EWriteError.
class TByteBuffer {
 public:
  TByteBuffer() = default;
  explicit TByteBuffer(std::size_t capacity) { Reserve(capacity); }

  std::size_t Size() const { return static_cast<std::size_t>(FNext - FBuffer.get()); }
  // Valid until the next write.
  std::string_view View() const { return {FBuffer.get(), Size()}; }
  std::string ToString() const { return std::string(View()); }
  // Empties the buffer and keeps its memory.
  void Clear() { FNext = FBuffer.get(); }
  // Drops what was written behind `size`.
  void Truncate(std::size_t size) {
    if (size < Size()) FNext = FBuffer.get() + size;
  }
  // Room for `count` more bytes.
  void Reserve(std::size_t count) {
    if (static_cast<std::size_t>(FLimit - FNext) < count) [[unlikely]]
      Grow(count);
  }
  // Direct access for code that writes more than one item after one Reserve: write at End(), at
  // most the reserved count, then SetEnd() behind the last byte.
  char* End() { return FNext; }
  void SetEnd(char* end) { FNext = end; }

  void WriteByte(std::uint8_t value) { WriteFixed(value); }
  void WriteBytes(std::string_view bytes) {
    Reserve(bytes.size());
    if (!bytes.empty()) std::memcpy(End(), bytes.data(), bytes.size());
    FNext += bytes.size();
  }
  // A little-endian number of the width of `T`, without a tag.
  template <typename T>
  void WriteFixed(T value) {
    Reserve(sizeof(T));
    std::memcpy(End(), &value, sizeof(T));
    FNext += sizeof(T);
  }
  // Overwrites a number written earlier, for lengths that are known late.
  template <typename T>
  void PatchFixed(std::size_t position, T value) {
    std::memcpy(FBuffer.get() + position, &value, sizeof(T));
  }
  // A length byte and as many bytes; more than MaxName are an error.
  void WriteShortString(std::string_view text);

 protected:
  char* FNext = nullptr;

 private:
  void Grow(std::size_t count);

  std::unique_ptr<char[]> FBuffer;
  char* FLimit = nullptr;
};

}  // namespace wrenfold
