#include "designer/model/Arrange.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>

#include "designer/model/Layout.h"

namespace wrenfold {

namespace {

void Follow(TArrangement arrangement, const TBounds& first, TBounds& bounds) {
  switch (arrangement) {
    case TArrangement::Lefts:
      bounds.Left = first.Left;
      break;
    case TArrangement::Centres:
      bounds.Left = first.Left + (first.Width - bounds.Width) / 2;
      break;
    case TArrangement::Rights:
      bounds.Left = first.Right() - bounds.Width;
      break;
    case TArrangement::Tops:
      bounds.Top = first.Top;
      break;
    case TArrangement::Middles:
      bounds.Top = first.Top + (first.Height - bounds.Height) / 2;
      break;
    case TArrangement::Bottoms:
      bounds.Top = first.Bottom() - bounds.Height;
      break;
    case TArrangement::SameWidth:
      bounds.Width = first.Width;
      break;
    case TArrangement::SameHeight:
      bounds.Height = first.Height;
      break;
    case TArrangement::SpaceAcross:
    case TArrangement::SpaceDown:
      break;
  }
}

// Equal gaps along one direction, given by the members for place and size.
void Space(std::vector<TBounds>& bounds, int TBounds::*place, int TBounds::*size) {
  if (bounds.size() < 3) return;
  std::vector<std::size_t> order(bounds.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, {}, [&](std::size_t i) { return bounds[i].*place; });
  const TBounds& last = bounds[order.back()];
  int room = last.*place - bounds[order.front()].*place;
  for (std::size_t i = 0; i + 1 < order.size(); ++i) room -= bounds[order[i]].*size;
  const int gaps = static_cast<int>(order.size()) - 1;
  int at = bounds[order.front()].*place;
  for (int i = 0; i < gaps; ++i) {
    TBounds& each = bounds[order[static_cast<std::size_t>(i)]];
    each.*place = at;
    // What does not divide is spread over the first gaps.
    at += each.*size + room / gaps + (i < room % gaps ? 1 : 0);
  }
}

struct TFit {
  int Distance = 0;
  int Edge = -1;
};

// The nearest fit of one of the own edges to one of the others'.
TFit NearestEdge(std::initializer_list<int> own, std::span<const int> others, int reach) {
  TFit best{reach + 1, -1};
  for (const int edge : own)
    for (const int other : others)
      if (std::abs(other - edge) < std::abs(best.Distance)) best = {other - edge, other};
  return best;
}

int ToGrid(int value, int grid) {
  if (grid <= 1) return value;
  const int rest = ((value % grid) + grid) % grid;
  return rest * 2 >= grid ? value + grid - rest : value - rest;
}

}  // namespace

std::vector<TBounds> Arrange(TArrangement arrangement, std::vector<TBounds> bounds) {
  if (bounds.empty()) return bounds;
  if (arrangement == TArrangement::SpaceAcross) Space(bounds, &TBounds::Left, &TBounds::Width);
  if (arrangement == TArrangement::SpaceDown) Space(bounds, &TBounds::Top, &TBounds::Height);
  const TBounds first = bounds.front();
  for (TBounds& each : std::span(bounds).subspan(1)) Follow(arrangement, first, each);
  return bounds;
}

TSnapped SnapMove(const TBounds& moved, std::span<const TBounds> neighbours, int grid, int reach) {
  std::vector<int> across, down;
  for (const TBounds& each : neighbours) {
    across.insert(across.end(), {each.Left, each.Right()});
    down.insert(down.end(), {each.Top, each.Bottom()});
  }
  const TFit x = NearestEdge({moved.Left, moved.Right()}, across, reach);
  const TFit y = NearestEdge({moved.Top, moved.Bottom()}, down, reach);
  TSnapped snapped{moved, x.Edge, y.Edge};
  snapped.Bounds.Left = x.Edge >= 0 ? moved.Left + x.Distance : ToGrid(moved.Left, grid);
  snapped.Bounds.Top = y.Edge >= 0 ? moved.Top + y.Distance : ToGrid(moved.Top, grid);
  return snapped;
}

std::vector<TBoundsChange> WithFollowers(std::vector<TBoundsChange> changes) {
  for (std::size_t i = 0; i < changes.size(); ++i) {
    const TDesignNode& parent = *changes[i].Node;
    const TExtent growth{changes[i].Bounds.Width - parent.Bounds.Width,
                         changes[i].Bounds.Height - parent.Bounds.Height};
    if (growth == TExtent{}) continue;
    std::vector<const TDesignNode*> nodes;
    std::vector<TAligned> controls;
    for (const TDesignNode* child : parent.Children) {
      if (!child->Visual() || child->Look() == TLook::Page) continue;
      nodes.push_back(child);
      controls.push_back(AlignedOf(*child));
    }
    const TExtent before = parent.Client.Extent();
    AlignControls(controls, before, {before.Width + growth.Width, before.Height + growth.Height});
    for (std::size_t k = 0; k < nodes.size(); ++k)
      if (controls[k].Bounds != nodes[k]->Bounds) changes.push_back({nodes[k], controls[k].Bounds});
  }
  return changes;
}

void StoreBounds(TFormHistory& history, TDesignComponent& component, const TBoundsChange& change) {
  const TDesignNode& node = *change.Node;
  struct TSide {
    std::string_view Outer, Inner;
    int Before, After;
  };
  const TSide sides[] = {{"Left", "", node.Bounds.Left, change.Bounds.Left},
                         {"Top", "", node.Bounds.Top, change.Bounds.Top},
                         {"Width", "ClientWidth", node.Bounds.Width, change.Bounds.Width},
                         {"Height", "ClientHeight", node.Bounds.Height, change.Bounds.Height}};
  for (const TSide& side : sides) {
    const int growth = side.After - side.Before;
    if (growth == 0) continue;
    const bool inner = !side.Inner.empty() && node.Has(side.Inner);
    if (inner) history.SetInteger(component, side.Inner, node.Bound(side.Inner, 0) + growth);
    // The frame of a window is not part of what a form stores for its outer size either.
    if (node.IsRoot() && (inner && !node.Has(side.Outer))) continue;
    const int outer = node.IsRoot() ? node.Bound(side.Outer, side.Before) + growth : side.After;
    history.SetInteger(component, side.Outer, outer);
  }
}

}  // namespace wrenfold
