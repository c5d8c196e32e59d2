// Reads what can be read of a form file that is broken.
#pragma once

#include <memory>
#include <string>

#include "platform/core/stream/DesignComponent.h"

namespace wrenfold {

// The components up to about the place where the bytes stop being a form, in text or binary; null
// when not even the root is whole. Takes time in proportion to the size, some twenty times that of
// reading at most.
std::unique_ptr<TDesignComponent> SalvageForm(const std::string& bytes);

}  // namespace wrenfold
