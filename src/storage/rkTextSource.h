// The objects of a text stream, as the binary ones that readers take.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/model/Streams.h"
#include "platform/core/stream/FormText.h"

namespace wrenfold {

// Converts a text stream from its position on. Errors count the lines of the whole stream. The
// stream must stay as it is; its position follows with Finish.
class TTextSource {
 public:
  explicit TTextSource(TStream& stream);
  TTextSource(const TTextSource&) = delete;
  TTextSource& operator=(const TTextSource&) = delete;

  // Reads on to the next CR, which goes with the LF behind it, and answers what stood before.
  // EReadError when there is no CR; `expected` names the line.
  std::string_view TakeLine(const char* expected);
  // Appends the next object to Binary(). Raises EParserError with line and column.
  void ConvertObject();
  std::string_view Binary() const { return FBinary.View(); }
  // Leaves the stream behind what was taken from it.
  void Finish();

  // "line N, column N" of the component or value that stands at this offset of Binary().
  std::string PlaceOf(std::int64_t offset) const;

 private:
  struct TPlace {
    std::size_t Offset;
    std::size_t Line;
    std::size_t Column;
  };
  void FindPlaces() const;

  TStream& FStream;
  std::string FCopy;  // when the stream has no bytes to show
  std::string_view FText;
  std::size_t FPosition;
  TByteWriter FBinary;
  std::vector<std::size_t> FObjects;    // where each starts in the text
  mutable std::vector<TPlace> FPlaces;  // found for the first error
};

}  // namespace wrenfold
