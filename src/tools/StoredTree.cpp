#include "tools/StoredTree.h"

namespace wrenfold {

TStoredTree::TStoredTree(TByteReader reader) : FReader(reader) {
  if (reader.Size() >= None) reader.FailAt(None, "an object below four gigabytes");
  std::vector<TNode> open;
  const auto close = [&](std::size_t depth) {
    for (; open.size() > depth; open.pop_back())
      FNodes[open.back()].Next = static_cast<TNode>(FNodes.size());
  };
  WalkParts(reader, [&](const TStoredPart& part, std::size_t position, std::size_t depth) {
    close(depth);
    open.push_back(static_cast<TNode>(FNodes.size()));
    FNodes.push_back({static_cast<std::uint32_t>(position), None, part.Kind});
  });
  close(0);
}

TStoredPart TStoredTree::Part(TNode node) const {
  TByteReader reader = FReader;
  reader.Seek(FNodes[node].Position);
  return ReadStoredPart(reader, FNodes[node].Kind);
}

}  // namespace wrenfold
