// Three-way merge of forms by meaning.
#pragma once

#include <string>
#include <vector>

#include "platform/core/stream/DesignComponent.h"

namespace wrenfold {

// Something that both sides changed, each in another way; ours stands.
struct TMergeConflict {
  std::string Path;
  std::string Base;
  std::string Ours;
  std::string Theirs;
};

// Brings into `ours` what `theirs` changed since `base` (null: there was none). Components are
// matched by name; one of the same class, place and properties under another name is taken for
// renamed. Properties are compared by what they say; Left, Top, Width and Height are one value.
// Collections of as many items are merged item by item, others as a whole. The order of what is
// there stays; what is new stands where it stands in `theirs`. Values nested deeper than a form has
// them raise EReadError.
std::vector<TMergeConflict> MergeForms(const TDesignComponent* base, TDesignComponent& ours,
                                       const TDesignComponent& theirs);

}  // namespace wrenfold
