// The component stream behind a resource header.
#include "fuzz/FormRendering.h"

namespace wrenfold {

void FuzzResourceForm(std::string_view bytes) {
  RenderInEachStyle(bytes, ObjectResourceToText, ObjectTextToResource);
}

}  // namespace wrenfold
