// An index over one stored object: its parts as a tree whose nodes are a few bytes each.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "tools/StoredWalk.h"

namespace wrenfold {

class TStoredTree {
 public:
  using TNode = std::uint32_t;
  static constexpr TNode Root = 0;
  static constexpr TNode None = UINT32_MAX;

  // Of the root whose signature is next. The caller keeps the bytes alive, less than four
  // gigabytes.
  explicit TStoredTree(TByteReader reader);

  TStoredPart Part(TNode node) const;
  TPartKind Kind(TNode node) const { return FNodes[node].Kind; }
  // The nodes in `node` are those from First up to End; Next skips what is in one of them. There
  // are none in None.
  TNode First(TNode node) const { return node == None ? None : node + 1; }
  TNode Next(TNode node) const { return FNodes[node].Next; }
  TNode End(TNode node) const { return node == None ? None : FNodes[node].Next; }

 private:
  struct TEntry {
    std::uint32_t Position;
    TNode Next;  // the first behind it and what is in it
    TPartKind Kind;
  };

  TByteReader FReader;
  std::vector<TEntry> FNodes;
};

}  // namespace wrenfold
