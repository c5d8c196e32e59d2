// The text form of the component stream.
#include "fuzz/Targets.h"
#include "platform/core/stream/FormText.h"

namespace wrenfold {

void FuzzTextForm(std::string_view bytes) {
  const TFormTextStyle& exact = *FindFormTextStyle("exact");
  std::size_t position = 0;
  TByteWriter binary;
  const auto read = [&] { ObjectTextToBinary(bytes, position, binary, exact); };
  if (!Succeeds(read, {"Line "})) {
    Promise(binary.Size() == 0 && position == 0, "a failed conversion takes and leaves nothing");
    return;
  }
  TByteWriter text;
  TByteReader reader(binary.View());
  ObjectBinaryToText(reader, text, exact);
  Promise(reader.AtEnd(), "a stream made from text is written whole");
  TByteWriter again;
  std::size_t end = 0;
  ObjectTextToBinary(text.View(), end, again, exact);
  Promise(end == text.Size() && again.View() == binary.View(), "what text means is kept");
}

}  // namespace wrenfold
