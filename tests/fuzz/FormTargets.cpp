// The component stream in its three forms.
#include "fuzz/Targets.h"
#include "platform/core/DesignComponent.h"
#include "platform/core/FormText.h"

namespace wrenfold {
namespace {

// Text must not grow without limit from small input.
constexpr std::size_t MaxGrowth = 200;
constexpr std::size_t FreeGrowth = 1 << 20;

void ConvertInEachStyle(std::string_view bytes,
                        void (*convert)(TByteReader&, TByteWriter&, const TFormTextStyle&)) {
  for (const TFormTextStyle& style : FormTextStyles()) {
    TByteReader reader(bytes);
    TByteWriter text;
    try {
      convert(reader, text, style);
      Promise(text.Size() <= bytes.size() * MaxGrowth + FreeGrowth);
    } catch (const EReadError&) {
      Promise(text.Size() == 0);
    }
  }
}

}  // namespace

void FuzzBinaryForm(std::string_view bytes) {
  ConvertInEachStyle(bytes, ObjectBinaryToText);
  try {
    std::size_t consumed = 0;
    const auto root = ReadDesignForm(std::string(bytes), &consumed);
    Promise(WriteDesignForm(*root) == bytes.substr(0, consumed));
  } catch (const Exception&) {
  }
}

void FuzzResourceForm(std::string_view bytes) {
  ConvertInEachStyle(bytes, ObjectResourceToText);
}

void FuzzTextForm(std::string_view bytes) {
  const TFormTextStyle& exact = *FindFormTextStyle("exact");
  std::size_t position = 0;
  TByteWriter binary;
  try {
    ObjectTextToBinary(bytes, position, binary, exact);
  } catch (const EParserError&) {
    Promise(binary.Size() == 0 && position == 0);
    return;
  }
  // What was read can be written, unless it is nested beyond reason, and means the same.
  TByteWriter text;
  try {
    TByteReader reader(binary.View());
    ObjectBinaryToText(reader, text, exact);
    Promise(reader.AtEnd());
  } catch (const EReadError&) {
    return;
  }
  TByteWriter again;
  std::size_t end = 0;
  ObjectTextToBinary(text.View(), end, again, exact);
  Promise(end == text.Size() && again.View() == binary.View());
}

}  // namespace wrenfold
