#include "tools/FormDocument.h"

#include <fmt/format.h>

namespace wrenfold {
namespace {

constexpr std::string_view CarrierBegin = "object T\r\n  V = ";
constexpr std::string_view CarrierEnd = "\r\nend\r\n";

// The style that writes the text as it stands.
const TFormTextStyle* StyleOf(std::string_view bytes) {
  const std::string text = WithCrLf(bytes);
  for (const TFormTextStyle& style : FormTextStyles()) {
    if (style.KeepsBlanks) continue;
    TByteWriter again;
    RenderStoredFile(ParseStoredFile(bytes, style), TStoredForm::Text, style, again);
    if (again.View() == text) return &style;
  }
  return &DefaultFormTextStyle();
}

}  // namespace

TFormDocument::TFormDocument(std::string bytes)
    : FBytes(std::move(bytes)), FFile(ParseStoredFile(FBytes)) {
  const bool isText = FFile.Form == TStoredForm::Text;
  if (FFile.Form == TStoredForm::Extended)
    throw EReadError("expected a form, found the extended form, which has no class names");
  if (FFile.Roots.size() != 1)
    throw EReadError(fmt::format("expected one object, found {}", FFile.Roots.size()));
  if (isText && (FFile.Header.Present || !FFile.Roots[0].Label.empty()))
    throw EReadError("expected a form, found a data header or a label in front of it");
  if (isText) {
    FStyle = StyleOf(FBytes);
    FSpans.emplace(FBytes, *FStyle);
  }
  FRoot = FSpans ? FSpans->ReadForm() : ReadDesignForm(std::string(FFile.Stream(FFile.Roots[0])));
}

std::string TFormDocument::Bytes() const {
  if (FSpans) return FSpans->Render(*FRoot);
  const std::string stream = WriteDesignForm(*FRoot);
  if (stream == FFile.Stream(FFile.Roots[0])) return FBytes;
  TStoredFile changed;
  changed.Form = FFile.Form;
  changed.Header = FFile.Header;
  changed.Streams.WriteBytes(stream);
  changed.Roots.push_back({{}, 0, stream.size()});
  TByteWriter bytes;
  RenderStoredFile(changed, FFile.Form, *FStyle, bytes);
  return bytes.ToString();
}

std::string TFormDocument::TextOf(std::string_view value) const {
  TByteWriter carrier;
  carrier.WriteSignature();
  carrier.WriteShortString("T");
  carrier.WriteShortString("");
  carrier.WriteShortString("V");
  carrier.WriteBytes(value);
  carrier.WriteEndOfList();
  carrier.WriteEndOfList();
  TByteReader reader(carrier.View());
  TByteWriter text;
  ObjectBinaryToText(reader, text, *FStyle);
  return std::string(text.View().substr(CarrierBegin.size(),
                                        text.Size() - CarrierBegin.size() - CarrierEnd.size()));
}

std::string ValueOfText(std::string_view text) {
  std::string carrier(CarrierBegin);
  carrier.append(text).append(CarrierEnd);
  std::size_t position = 0;
  TByteWriter stream;
  ObjectTextToBinary(carrier, position, stream);
  const auto root = ReadDesignForm(stream.ToString());
  if (root->Properties().size() != 1 || !root->Children().empty() || !AtTextEnd(carrier, position))
    throw EParserError(fmt::format("expected one value, found {}", text));
  return std::string(root->Properties()[0].Value);
}

}  // namespace wrenfold
