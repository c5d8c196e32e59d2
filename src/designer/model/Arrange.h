// Moves and sizes components against each other: aligning, spacing, snapping.
#pragma once

#include <span>
#include <vector>

#include "designer/model/Composition.h"
#include "designer/model/FormHistory.h"

namespace wrenfold {

enum class TArrangement {
  Lefts,
  Centres,
  Rights,
  Tops,
  Middles,
  Bottoms,
  SpaceAcross,
  SpaceDown,
  SameWidth,
  SameHeight,
};

// The bounds after the arrangement: the first component stays, the others follow it; spacing keeps
// the two outermost ones and gives equal gaps between all.
std::vector<TBounds> Arrange(TArrangement arrangement, std::vector<TBounds> bounds);

// What a dragged rectangle was drawn to.
struct TSnapped {
  TBounds Bounds;
  int GuideX = -1;  // the edge of a neighbour that it fits; -1 for none
  int GuideY = -1;
};

// Draws a moved rectangle to edges of its neighbours within `reach` pixels, else to the grid (0 for
// none).
TSnapped SnapMove(const TBounds& moved, std::span<const TBounds> neighbours, int grid, int reach);

struct TBoundsChange {
  const TDesignNode* Node = nullptr;
  TBounds Bounds;
};
// Completes changes by what follows from them: controls inside that are aligned or anchored, the
// parents of which get another size.
std::vector<TBoundsChange> WithFollowers(std::vector<TBoundsChange> changes);

// Stores new bounds in the component of a node, within the open step of the history: the sides that
// changed, and inner sizes where those are stored.
void StoreBounds(TFormHistory& history, TDesignComponent& component, const TBoundsChange& change);

}  // namespace wrenfold
