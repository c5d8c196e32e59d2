#include "platform/core/stream/FormText.h"

#include <algorithm>

#include "platform/core/stream/TextScan.h"

namespace wrenfold {

TFormFormat TestFormFormat(std::string_view bytes) {
  if (bytes.empty()) return TFormFormat::Unknown;
  if (static_cast<std::uint8_t>(bytes[0]) == ResourceMark) return TFormFormat::Resource;
  if (bytes.substr(0, FilerSignature.size()) == FilerSignature) return TFormFormat::Binary;
  constexpr std::string_view textStart = "\t\v\r IOio";
  return textStart.find(bytes[0]) != std::string_view::npos ? TFormFormat::Text
                                                            : TFormFormat::Unknown;
}

bool AtTextEnd(std::string_view text, std::size_t position) {
  const char* const end = text.data() + text.size();
  const char* next = SkipBlanks(text.data() + position, end);
  while (end - next >= 2 && next[0] == '/' && next[1] == '/') {
    next = std::find_if(next, end, [](char c) { return c == '\r' || c == '\n'; });
    next = SkipBlanks(next, end);
  }
  return next == end;
}

void ObjectTextToResource(std::string_view text, std::size_t& position, TByteWriter& resource,
                          const TFormTextStyle& style) {
  // The class name is known when the object is; the stream is short beside what it came from.
  TByteWriter stream;
  ObjectTextToBinary(text, position, stream, style);
  TByteReader reader(stream.View());
  reader.ReadSignature();
  if ((reader.ReadFilerFlags() & ffChildPos) != 0) reader.ReadIntegerValue();
  const std::size_t size = resource.WriteResourceHeader(reader.ReadShortString("a class name"));
  resource.PatchFixed(size, static_cast<std::uint32_t>(stream.Size()));
  resource.WriteBytes(stream.View());
}

void ObjectResourceToText(TByteReader& resource, TByteWriter& text, const TFormTextStyle& style) {
  std::string_view name;
  std::uint32_t size = 0;
  resource.ReadResourceHeader(name, size);
  const std::size_t start = resource.Position();
  if (size > resource.Left()) resource.FailAt(start - 4, "a resource size within the data");
  const std::size_t textStart = text.Size();
  ObjectBinaryToText(resource, text, style);
  if (resource.Position() - start != size) {
    text.Truncate(textStart);
    resource.FailAt(start - 4, "the size of the stream that follows");
  }
}

}  // namespace wrenfold
