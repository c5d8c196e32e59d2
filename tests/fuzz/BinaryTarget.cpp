// The binary component stream: as text, and as a form being designed.
#include "fuzz/FormRendering.h"
#include "platform/core/stream/DesignComponent.h"

namespace wrenfold {

void FuzzBinaryForm(std::string_view bytes) {
  RenderInEachStyle(bytes, ObjectBinaryToText, ObjectTextToBinary);
  std::size_t consumed = 0;
  std::unique_ptr<TDesignComponent> root;
  if (!Succeeds([&] { root = ReadDesignForm(std::string(bytes), &consumed); }, {"offset "})) return;
  Promise(WriteDesignForm(*root) == bytes.substr(0, consumed), "an unchanged form has its bytes");
  TByteReader skipping(bytes);
  skipping.ReadSignature();
  skipping.SkipComponent();
  Promise(skipping.Position() == consumed, "skipping a form ends where reading it ends");
}

}  // namespace wrenfold
