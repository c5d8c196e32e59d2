#include "platform/core/system/ByteCursor.h"

#include <fmt/format.h>

#include <algorithm>

namespace wrenfold {

void TByteCursor::FailAt(std::size_t position, const char* expected) const {
  throw EReadError(fmt::format("Stream read error at offset {0} (${0:X}): expected {1}",
                               FOffset + position, expected));
}

void TByteCursor::FailEnd(std::size_t count, const char* expected) const {
  throw EReadError(fmt::format(
      "Stream read error at offset {0} (${0:X}): expected {1}: {2} bytes needed, {3} left",
      FOffset + Position(), expected, count, Left()));
}

void TByteCursor::Seek(std::size_t position) {
  if (position > Size()) FailAt(position, "an offset within the stream");
  FNext = FBegin + position;
}

void TByteBuffer::Grow(std::size_t count) {
  const std::size_t size = Size();
  const auto held = static_cast<std::size_t>(FLimit - FBuffer.get());
  const std::size_t capacity = std::max(size + count, std::max<std::size_t>(256, held * 2));
  auto buffer = std::make_unique_for_overwrite<char[]>(capacity);
  if (size > 0) std::memcpy(buffer.get(), FBuffer.get(), size);
  FBuffer = std::move(buffer);
  FNext = FBuffer.get() + size;
  FLimit = FBuffer.get() + capacity;
}

void TByteBuffer::WriteShortString(std::string_view text) {
  if (text.size() > MaxName)
    throw EWriteError(fmt::format("Stream write error: a name of {} bytes, at most {} fit: {}...",
                                  text.size(), MaxName, text.substr(0, 40)));
  WriteByte(static_cast<std::uint8_t>(text.size()));
  WriteBytes(text);
}

}  // namespace wrenfold
