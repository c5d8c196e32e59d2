#include "storage/rkTextSource.h"

#include <fmt/format.h>

#include <algorithm>

#include "platform/core/system/Exceptions.h"

namespace wrenfold {

TTextSource::TTextSource(TStream& stream)
    : FStream(stream), FPosition(static_cast<std::size_t>(stream.Position())) {
  stream.SetPosition(0);
  if (!stream.ViewRest(FText)) FText = FCopy = stream.ReadRest();
  stream.SetPosition(static_cast<std::int64_t>(FPosition));
}

std::string_view TTextSource::TakeLine(const char* expected) {
  const std::size_t end = FText.find('\r', FPosition);
  if (end == FText.npos)
    throw EReadError(
        fmt::format("Stream read error at offset {}: expected {}", FPosition, expected));
  const std::string_view line = FText.substr(FPosition, end - FPosition);
  FPosition = FText.substr(end, 2) == "\r\n" ? end + 2 : end + 1;
  return line;
}

void TTextSource::ConvertObject() {
  FObjects.push_back(FPosition);
  ObjectTextToBinary(FText, FPosition, FBinary);
}

void TTextSource::Finish() {
  FStream.SetPosition(static_cast<std::int64_t>(FPosition));
}

std::string TTextSource::PlaceOf(std::int64_t offset) const {
  if (FPlaces.empty()) FindPlaces();
  const auto next = std::upper_bound(
      FPlaces.begin(), FPlaces.end(), static_cast<std::size_t>(offset),
      [](std::size_t sought, const TPlace& place) { return sought < place.Offset; });
  if (next == FPlaces.begin()) return "line 1";
  return fmt::format("line {}, column {}", next[-1].Line, next[-1].Column);
}

void TTextSource::FindPlaces() const {
  std::vector<TFormNode> nodes;
  TByteWriter binary;
  for (std::size_t position : FObjects) ReadFormNodes(FText, position, binary, nodes);
  std::size_t line = 1;
  std::size_t lineStart = 0;
  std::size_t lineEnd = FText.find('\n');
  FPlaces.reserve(nodes.size());
  for (const TFormNode& node : nodes) {
    for (; lineEnd < node.Text.Begin; lineEnd = FText.find('\n', lineStart)) {
      ++line;
      lineStart = lineEnd + 1;
    }
    FPlaces.push_back({node.Stored.Begin, line, node.Text.Begin - lineStart + 1});
  }
}

}  // namespace wrenfold
