// The encodings and line ends of source files, read and written without losing a byte.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/core/system/Exceptions.h"
#include "project/SourceText.h"

namespace wrenfold {

// A character that the file's encoding does not have. The message names file, line and character.
class ETextEncodingError : public Exception {
 public:
  ETextEncodingError(const std::string& message, TSourcePlace place)
      : Exception(message), Place(place) {}
  const TSourcePlace Place;
};

enum class TTextEncoding { Utf8, Utf8WithMark, Utf16LittleEndian, Utf16BigEndian, CodePage };

// How a text is stored: its encoding, with the number of the Windows code page where that is one.
struct TTextFormat {
  TTextEncoding Encoding = TTextEncoding::Utf8;
  int CodePage = 0;
  // Some bytes are no text of the encoding; they stand in the text as private characters.
  bool HasInvalidBytes = false;
};
// Such as "UTF-8 with byte order mark" or "Windows-1252".
std::string EncodingName(const TTextFormat& format);

// The Windows code page (1250 to 1258) of the system's language settings (LC_ALL, LC_CTYPE, LANG).
int SystemCodePage();

// Turns the bytes of a file into UTF-8 and tells what they were. Text without a byte order mark is
// UTF-8 where it is valid UTF-8, else of the code page. No byte is lost: bytes that are no text of
// the encoding become the private characters U+EE00 + byte, which EncodeText turns back.
std::string DecodeText(std::string_view bytes, int codePage, TTextFormat& format);
// Turns UTF-8 back into bytes of the format. Raises ETextEncodingError for a character that the
// encoding does not have.
std::string EncodeText(std::string_view text, const TTextFormat& format,
                       const std::string& fileName);

enum class TLineEnd { CrLf, Lf, Cr };

// The line ends found in a text.
struct TLineEnds {
  size_t CrLf = 0;
  size_t Lf = 0;
  size_t Cr = 0;

  bool Mixed() const { return (CrLf != 0) + (Lf != 0) + (Cr != 0) > 1; }
  // The one that new lines get; CR LF in a text without any.
  TLineEnd Majority() const;
};
TLineEnds CountLineEnds(std::string_view text);
// Such as "CR LF" or "mixed, mostly LF".
std::string LineEndsName(const TLineEnds& ends);

}  // namespace wrenfold
