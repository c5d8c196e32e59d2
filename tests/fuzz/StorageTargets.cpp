// The data header, and values of properties as text.
#include "fuzz/Targets.h"
#include "storage/TestObjects.h"
#include "storage/rkDataHeader.h"
#include "storage/rkDataProps.h"

namespace wrenfold {
namespace {

// What a first line, up to the line feed, and the rest say.
struct TTwoParts {
  explicit TTwoParts(std::string_view bytes) {
    const std::size_t end = bytes.find('\n');
    First = bytes.substr(0, end);
    if (end != std::string_view::npos) Second = bytes.substr(end + 1);
  }
  std::string_view First;
  std::string_view Second;
};

}  // namespace

void FuzzDataHeader(std::string_view bytes) {
  TStringStream stream{std::string(bytes)};
  TObjectStorageFormat format = osfBin;
  bool isResource = false;
  std::string description;
  try {
    ReadDataHeader(stream, format, isResource, description);
  } catch (const Exception&) {
    return;
  }
  Promise(format == osfBin || format == osfText);
  Promise(stream.Position() <= static_cast<std::int64_t>(bytes.size()));
  if (format != osfBin) return;
  TStringStream again;
  WriteBinDataHeader(again, isResource, description);
  Promise(bytes.starts_with(again.DataString()));
}

void FuzzPropertyText(std::string_view bytes) {
  const TTwoParts parts(bytes);
  TSample sample;
  try {
    SetPropByText(sample, parts.First, parts.Second);
  } catch (const Exception&) {
    return;
  }
  // A value that was taken has a text.
  GetPropAsText(sample, parts.First);
}

}  // namespace wrenfold
