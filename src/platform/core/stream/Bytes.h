// Cursors over the component stream: tags, values, names, whole properties and components.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/core/stream/ValueTypes.h"
#include "platform/core/system/ByteCursor.h"
#include "platform/core/text/Extended.h"

namespace wrenfold {

// Reads the stream's own forms of values.
class TByteReader : public TByteCursor {
 public:
  using TByteCursor::TByteCursor;

  TExtended ReadExtended();
  void ReadSignature();
  // The tag of the next value; a byte above MaxValueType is an error.
  TValueType ReadValueType() {
    const TValueType type = PeekValueType();
    ++FNext;
    return type;
  }
  TValueType PeekValueType() {
    const std::uint8_t tag = PeekByte("a value tag");
    if (tag > MaxValueType) [[unlikely]]
      Fail("a value tag (0 to 21)");
    return static_cast<TValueType>(tag);
  }
  // True, and the cursor behind it, when the next byte is zero.
  bool SkipEndOfList(const char* expected) {
    if (PeekByte(expected) != 0) return false;
    ++FNext;
    return true;
  }
  // An integer value with its tag: vaInt8, vaInt16, vaInt32 or vaInt64.
  std::int64_t ReadIntegerValue();
  // A prefix byte of $F0 and above, or 0 when a class name comes next.
  std::uint8_t ReadFilerFlags();

  // Skips one value with its tag, however deeply nested; memory grows by one byte a level.
  void SkipValue();
  // Skips a property list up to and with its zero byte.
  void SkipProperties();
  // Skips one component (prefix, names, properties, children) without a signature.
  void SkipComponent();

  // Reads the header of a resource; the stream follows. `name` is a view.
  void ReadResourceHeader(std::string_view& name, std::uint32_t& size);

 private:
  void SkipContent(TValueType type, std::string& nesting);
  void SkipNested(std::string& nesting);
};

// Writes the stream's own forms of values.
class TByteWriter : public TByteBuffer {
 public:
  using TByteBuffer::TByteBuffer;

  void WriteExtended(TExtended value);
  void WriteSignature() { WriteBytes(FilerSignature); }
  void WriteValueType(TValueType type) { WriteByte(static_cast<std::uint8_t>(type)); }
  void WriteEndOfList() { WriteByte(0); }

  // Values with their tags. An integer takes the smallest tag that holds it, a string vaString up
  // to 255 bytes and vaLString above, an identifier its own tag for False, True, nil and Null.
  void WriteIntegerValue(std::int64_t value) {
    Reserve(1 + sizeof value);
    FNext = PutIntegerValue(FNext, value);
  }
  // The same to `out`, which has room for nine bytes; returns the end.
  static char* PutIntegerValue(char* out, std::int64_t value) {
    // By the bits that the magnitude needs, so that no branch has to be guessed.
    static constexpr TIntegerForm forms[] = {{TValueType::vaInt8, 1},
                                             {TValueType::vaInt16, 2},
                                             {TValueType::vaInt32, 4},
                                             {TValueType::vaInt64, 8}};
    const auto bits = std::bit_width(static_cast<std::uint64_t>(value ^ (value >> 63)) | 1);
    const TIntegerForm form = forms[(bits > 7) + (bits > 15) + (bits > 31)];
    *out = static_cast<char>(form.Tag);
    std::memcpy(out + 1, &value, sizeof value);
    return out + 1 + form.Size;
  }
  void WriteStringValue(std::string_view text);
  void WriteIdentValue(std::string_view name);
  void WriteExtendedValue(TExtended value);
  void WriteBinaryValue(std::string_view bytes);

  // A resource header of a stream whose size comes later; returns the position for PatchFixed of
  // the 32-bit size. The name is written in upper case.
  std::size_t WriteResourceHeader(std::string_view name);

 private:
  struct TIntegerForm {
    TValueType Tag;
    std::uint8_t Size;
  };
};

}  // namespace wrenfold
