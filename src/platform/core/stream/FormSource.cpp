// Forms of files, kept as they were stored.
#include "platform/core/stream/FormSource.h"

#include <fmt/format.h>

#include <algorithm>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {
namespace {

constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";
// Files whose text several styles would give are most likely in that of their environment.
constexpr std::string_view OpenExtension = ".lfm", OpenStyle = "lfm";

// How far two texts are the same, line ends and the mark in front aside.
std::size_t CommonText(std::string_view left, std::string_view right) {
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < left.size() && j < right.size()) {
    if (left[i] == '\r') ++i;
    else if (right[j] == '\r') ++j;
    else if (left[i] == right[j]) ++i, ++j;
    else break;
  }
  // What is left, if it is line ends.
  const bool ended = left.find_first_not_of("\r\n", i) == left.npos &&
                     right.find_first_not_of("\r\n", j) == right.npos;
  return ended ? std::string_view::npos : i;
}

}  // namespace

const TFormTextStyle& FindStyleOfText(std::string_view text, std::string_view stream,
                                      const TFormTextStyle* first) {
  if (text.starts_with(Utf8Mark)) text.remove_prefix(Utf8Mark.size());
  std::vector<const TFormTextStyle*> styles;
  if (first != nullptr) styles.push_back(first);
  for (const TFormTextStyle& style : FormTextStyles())
    if (!style.KeepsBlanks && &style != first) styles.push_back(&style);
  const TFormTextStyle* best = styles.front();
  std::size_t farthest = 0;
  for (const TFormTextStyle* style : styles) {
    TByteReader binary(stream);
    TByteWriter rendered;
    try {
      ObjectBinaryToText(binary, rendered, *style);
    } catch (const EReadError&) {
      continue;
    }
    const std::size_t common = CommonText(text, rendered.View());
    if (common == std::string_view::npos) return *style;
    if (common <= farthest) continue;
    farthest = common;
    best = style;
  }
  return *best;
}

TFormSource::TFormSource(std::string bytes, std::string_view fileName) {
  const bool marked = bytes.starts_with(Utf8Mark);
  FFormat = TestFormFormat(std::string_view(bytes).substr(marked ? Utf8Mark.size() : 0));
  const TFormTextStyle* first =
      EqualText(ExtractFileExt(fileName), OpenExtension) ? FindFormTextStyle(OpenStyle) : nullptr;
  switch (FFormat) {
    case TFormFormat::Unknown:
      throw EParserError(
          fmt::format("expected a form, as text that begins with \"object\" or in binary; found {}",
                      bytes.empty() ? "an empty file" : "something else"));
    case TFormFormat::Text: {
      FSpans = std::make_unique<TFormSpans>(std::move(bytes));
      FStyle = &FindStyleOfText(FSpans->Text(), FSpans->Stream(), first);
      FSpans->SetStyle(*FStyle);
      break;
    }
    case TFormFormat::Binary:
    case TFormFormat::Resource:
      FBytes = std::move(bytes);
      if (first != nullptr) FStyle = first;
      ReadForm();
      break;
  }
}

// Also where the header has the stream's size.
std::string_view TFormSource::StreamOfResource(std::size_t* sizePosition) const {
  TByteReader reader(FBytes);
  std::string_view name;
  std::uint32_t size = 0;
  reader.ReadResourceHeader(name, size);
  if (sizePosition != nullptr) *sizePosition = reader.Position() - sizeof size;
  return reader.ReadView(size, "the form of the resource");
}

std::unique_ptr<TDesignComponent> TFormSource::ReadForm() const {
  if (FSpans) return FSpans->ReadForm();
  return ReadDesignForm(
      std::string(FFormat == TFormFormat::Resource ? StreamOfResource() : FBytes));
}

std::string TFormSource::Render(const TDesignComponent& root) const {
  switch (FFormat) {
    case TFormFormat::Text:
      return RenderText(root);
    case TFormFormat::Resource:
      return RenderResource(root);
    default:
      return WriteDesignForm(root);
  }
}

// The resource is named as the class, which may have another name now; what stands behind it stays.
std::string TFormSource::RenderResource(const TDesignComponent& root) const {
  std::size_t sizePosition = 0;
  const std::string_view before = StreamOfResource(&sizePosition);
  const std::string stream = WriteDesignForm(root);
  const std::string oldClass(ReadForm()->StoredClassName());
  TByteWriter bytes;
  if (oldClass == root.StoredClassName()) {
    bytes.WriteBytes(std::string_view(FBytes).substr(0, sizePosition + 4));
  } else {
    sizePosition = bytes.WriteResourceHeader(root.StoredClassName());
  }
  bytes.PatchFixed(sizePosition, static_cast<std::uint32_t>(stream.size()));
  bytes.WriteBytes(stream);
  bytes.WriteBytes({before.data() + before.size(), FBytes.data() + FBytes.size()});
  return bytes.ToString();
}

std::string TFormSource::RenderText(const TDesignComponent& root,
                                    std::vector<TFormSpans::TPlace>* places) const {
  if (FSpans) return FSpans->Render(root, places);
  const std::string stream = WriteDesignForm(root);
  TByteReader binary(stream);
  TByteWriter text;
  ObjectBinaryToText(binary, text, *FStyle);
  std::string result = text.ToString();
  if (places != nullptr) FindFormPlaces(result, root, *places);
  return result;
}

}  // namespace wrenfold
