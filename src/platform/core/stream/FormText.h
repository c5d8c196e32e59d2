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

// Bytes from Begin on up to End.
struct TFormSpan {
  std::size_t Begin = 0;
  std::size_t End = 0;
};

// What a text form is made of. Components hold properties and components, properties a value and,
// where that is a list or a collection, its elements or items; items hold properties.
enum class TFormNodeKind : std::uint8_t { Component, Property, Item, Element };

// Where one of them stands in the text and in the binary stream.
struct TFormNode {
  TFormNodeKind Kind = TFormNodeKind::Component;
  // A component from "object" to behind its "end", an item from "item" to behind its "end", a
  // property from its name to behind its value, an element of a list.
  TFormSpan Text;
  // "object Name: Class [n]", "item [n]", the name of a property; nothing of an element.
  TFormSpan Head;
  // The whole component or item, the value of a property, the element.
  TFormSpan Stored;
  // The number of the first node behind this one and all that is inside it.
  std::size_t Next = 0;
};

// The same in the default style, several times slower; appends the nodes of the object in the order
// of the text, which is that of the stream, what is inside a node behind it.
void ReadFormNodes(std::string_view text, std::size_t& position, TByteWriter& binary,
                   std::vector<TFormNode>& nodes);

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

// True when nothing but blanks, line breaks and comments ("//" to the line's end) is left of
// `text`.
bool AtTextEnd(std::string_view text, std::size_t position);

}  // namespace wrenfold
