#include "designer/model/HitTest.h"

#include <algorithm>

namespace wrenfold {

namespace {

int Depth(const TDesignNode& node) {
  if (node.Look() == TLook::Icon) return 2;
  return node.Class.Row->Graphic ? 0 : 1;
}

}  // namespace

std::vector<TDesignNode*> PaintOrder(const TDesignNode& parent) {
  std::vector<TDesignNode*> order;
  order.reserve(parent.Children.size());
  for (TDesignNode* child : parent.Children)
    if (child->Shown) order.push_back(child);
  std::ranges::stable_sort(order, {}, [](const TDesignNode* node) { return Depth(*node); });
  return order;
}

TDesignNode* NodeAt(const TComposedForm& form, TPlace place) {
  TDesignNode* found = &form.Root();
  if (!found->Clip.Contains(place)) return nullptr;
  for (;;) {
    const auto order = PaintOrder(*found);
    const auto top = std::find_if(order.rbegin(), order.rend(), [&](const TDesignNode* node) {
      return node->Clip.Contains(place);
    });
    if (top == order.rend()) return found;
    found = *top;
  }
}

std::vector<TDesignNode*> NodesIn(const TDesignNode& parent, const TBounds& area) {
  std::vector<TDesignNode*> nodes;
  for (TDesignNode* child : parent.Children)
    if (child->Shown && child->Clip.Touches(area)) nodes.push_back(child);
  return nodes;
}

}  // namespace wrenfold
