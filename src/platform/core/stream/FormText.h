// Conversions between the binary component stream, its resource form and its text form.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/core/stream/Bytes.h"
#include "platform/core/stream/FormStyle.h"

namespace wrenfold {

// Components, lists and collections nested deeper than this are refused: text indents each level.
inline constexpr int MaxFormNesting = 512;

enum class TFormFormat : std::uint8_t { Unknown, Binary, Resource, Text };

// What the first bytes announce: $FF a resource, "TPF0" binary, a tab, vertical tab, CR, blank or
// the first letter of "object", "inherited" and "inline" text.
TFormFormat TestFormFormat(std::string_view bytes);

// Converts the next object of `text` behind `position` into a binary stream with its signature and
// moves `position` behind the line of its "end". Raises EParserError with line and column; `binary`
// then is as it was.
void ObjectTextToBinary(std::string_view text, std::size_t& position, TByteWriter& binary,
                        const TFormTextStyle& style = DefaultFormTextStyle());

// Where a component or the value of a property comes from: its offset in the binary stream, and the
// position of its first word in the text.
struct TFormPlace {
  std::size_t Offset = 0;
  std::size_t Position = 0;
};

// The same in the default style, several times slower; appends the places in ascending order.
void FindFormPlaces(std::string_view text, std::size_t& position, TByteWriter& binary,
                    std::vector<TFormPlace>& places);

// Converts the next object of `binary`, which starts with a signature, and leaves the cursor behind
// it. Raises EReadError with the offset; `text` then is as it was.
void ObjectBinaryToText(TByteReader& binary, TByteWriter& text,
                        const TFormTextStyle& style = DefaultFormTextStyle());

// The same with a resource header in front of the binary stream. The resource is named as the
// object's class.
void ObjectTextToResource(std::string_view text, std::size_t& position, TByteWriter& resource,
                          const TFormTextStyle& style = DefaultFormTextStyle());
void ObjectResourceToText(TByteReader& resource, TByteWriter& text,
                          const TFormTextStyle& style = DefaultFormTextStyle());

// True when nothing but blanks and line breaks is left of `text`.
bool AtTextEnd(std::string_view text, std::size_t position);

}  // namespace wrenfold
