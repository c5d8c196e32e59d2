// The text of a property's value that stands in an image and not in the object.
#pragma once

#include <string>

#include "editor/rkRows.h"
#include "storage/rkObjectImage.h"

namespace wrenfold {

// As PropertyAsShownText would show it if the property had the value.
std::string ImageAsShownText(const TPropImage& image, const TPersistent& instance,
                             const TPropInfo& property, const TRowContext& context);

}  // namespace wrenfold
