// Finds components by places in the picture of a form.
#pragma once

#include <vector>

#include "designer/model/Composition.h"

namespace wrenfold {

// The component that is seen at the place; null outside of the form.
TDesignNode* NodeAt(const TComposedForm& form, TPlace place);

// The components inside of `parent` that the rectangle touches, those in deeper parents left out.
std::vector<TDesignNode*> NodesIn(const TDesignNode& parent, const TBounds& area);

// Children as they lie on each other, the backmost first: those without a window lie behind all
// that have one, icons lie before all.
std::vector<TDesignNode*> PaintOrder(const TDesignNode& parent);

}  // namespace wrenfold
