// Reader of the string tables of a resource-only library (a PE file, 32 or 64 bits).
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/system/Exceptions.h"

namespace wrenfold {

// A file is no resource library; the message names the file, the offset and what was expected.
class EResourceLibraryError : public Exception {
 public:
  using Exception::Exception;
};

// The file is read, never executed. It is checked whole when it is opened: every directory entry
// and every text lies inside the file, so that asking for a text cannot fail.
class TResourceLibrary {
 public:
  // Texts are handed out in a buffer of 1024 UTF-16 units, the last one for the terminator.
  static constexpr std::size_t MaxTextLength = 1023;
  static constexpr std::uintmax_t MaxFileSize = 64 << 20;

  // Raises EResourceLibraryError.
  explicit TResourceLibrary(const std::string& fileName);
  // The same for bytes in memory; `name` stands in error messages.
  TResourceLibrary(const std::string& name, std::string bytes);
  TResourceLibrary(const TResourceLibrary&) = delete;
  TResourceLibrary& operator=(const TResourceLibrary&) = delete;

  // The text of a number in UTF-8, cut to MaxTextLength units of UTF-16; empty when the library
  // has none. Of several languages the neutral one counts, else the first.
  std::string FindString(int id) const;

 private:
  friend class TStringTableReader;
  static constexpr int cTextsInBlock = 16;
  // Texts number 16 * (Number - 1) and on, as UTF-16 in little-endian bytes.
  struct TBlock {
    std::uint32_t Number;
    std::array<std::string_view, cTextsInBlock> Texts;
  };

  std::string FBytes;
  std::vector<TBlock> FBlocks;  // by ascending number
};

}  // namespace wrenfold
