// wrenfold-spc diff: two stored objects compared by meaning, whatever their forms.
#include <fmt/format.h>

#include <algorithm>
#include <tuple>

#include "tools/Commands.h"
#include "tools/Excerpt.h"
#include "tools/StoredTree.h"

namespace wrenfold {
namespace {

using TNode = TStoredTree::TNode;
constexpr TNode None = TStoredTree::None;

// A component or property under the name that it is matched by.
struct TNamedNode {
  bool HasName = true;  // otherwise it goes by its class
  std::string_view Name;
  TNode Node = None;

  auto Key() const { return std::tie(HasName, Name); }
};

// The n-th of a name on the left belongs to the n-th of that name on the right; what only one side
// has belongs to none.
struct TPair {
  TNode Left = None;
  TNode Right = None;
  std::uint32_t Occurrence = 0;  // of the name
};

std::vector<TNamedNode> NamedNodes(const TStoredTree& tree, TNode parent, TPartKind kind) {
  std::vector<TNamedNode> nodes;
  for (TNode node = tree.First(parent); node != tree.End(parent); node = tree.Next(node)) {
    if (tree.Kind(node) != kind) continue;
    const TStoredPart part = tree.Part(node);
    const bool hasName = kind == TPartKind::Property || !part.Name.empty();
    nodes.push_back({hasName, hasName ? part.Name : part.ClassName, node});
  }
  return nodes;
}

// In the order of the left side; what only the right one has stands behind.
std::vector<TPair> MatchByName(std::vector<TNamedNode> left, std::vector<TNamedNode> right) {
  const auto byKey = [](const TNamedNode& a, const TNamedNode& b) { return a.Key() < b.Key(); };
  std::stable_sort(left.begin(), left.end(), byKey);
  std::stable_sort(right.begin(), right.end(), byKey);
  std::vector<TPair> pairs;
  const TNamedNode* before = nullptr;
  for (auto l = left.begin(), r = right.begin(); l != left.end() || r != right.end();) {
    const bool takesLeft = r == right.end() || (l != left.end() && !byKey(*r, *l));
    const bool takesRight = l == left.end() || (r != right.end() && !byKey(*l, *r));
    const TNamedNode& next = takesLeft ? *l : *r;
    const bool repeated = before != nullptr && before->Key() == next.Key();
    before = &next;
    TPair pair;
    if (repeated) pair.Occurrence = pairs.back().Occurrence + 1;
    if (takesLeft) pair.Left = l++->Node;
    if (takesRight) pair.Right = r++->Node;
    pairs.push_back(pair);
  }
  std::sort(pairs.begin(), pairs.end(), [](const TPair& a, const TPair& b) {
    return std::tie(a.Left, a.Right) < std::tie(b.Left, b.Right);
  });
  return pairs;
}

// Walks two trees side by side. The path is kept as text, so that a node costs nothing until a line
// names it; nesting is bounded by the trees.
class TComparison {
 public:
  TComparison(const TStoredTree& left, const TStoredTree& right, TOutput& output)
      : FLeft(left), FRight(right), FOutput(output) {}

  // True when nothing differs.
  bool Run() {
    const TStoredPart root = FLeft.Part(TStoredTree::Root);
    Compare(TStoredTree::Root, TStoredTree::Root, root.Name.empty() ? root.ClassName : root.Name);
    return FSame;
  }

 private:
  void Compare(TNode left, TNode right, std::string_view label) {
    const std::size_t size = FPath.size();
    FPath += label;
    ComparePart(left, right);
    if (!IsLeaf(FLeft, left) || !IsLeaf(FRight, right)) {
      CompareByName(left, right, TPartKind::Property);
      CompareByName(left, right, TPartKind::Component);
      CompareByIndex(left, right);
    }
    FPath.resize(size);
  }

  void ComparePart(TNode left, TNode right) {
    if (right == None) return ReportOne('-', FLeft.Part(left));
    if (left == None) return ReportOne('+', FRight.Part(right));
    const TStoredPart leftPart = FLeft.Part(left);
    const TStoredPart rightPart = FRight.Part(right);
    if (SameMeaning(leftPart, rightPart)) return;
    const std::string leftText = MeaningOf(leftPart);
    const std::string rightText = MeaningOf(rightPart);
    const std::size_t start = ExcerptStart(leftText, rightText);
    Report(fmt::format("! {} {}: {} -> {}", KindName(leftPart), FPath, Shown(leftText, start),
                       Shown(rightText, start)));
  }

  void CompareByName(TNode left, TNode right, TPartKind kind) {
    const std::vector<TPair> pairs =
        MatchByName(NamedNodes(FLeft, left, kind), NamedNodes(FRight, right, kind));
    for (const TPair& pair : pairs) Compare(pair.Left, pair.Right, Label(pair));
    if (kind == TPartKind::Component) CompareOrder(pairs);
  }

  // The elements of lists and the items of collections.
  void CompareByIndex(TNode left, TNode right) {
    TNode leftNode = FirstIndexed(FLeft, left);
    TNode rightNode = FirstIndexed(FRight, right);
    for (std::size_t index = 0; leftNode != None || rightNode != None; ++index) {
      Compare(leftNode, rightNode, fmt::format("[{}]", index));
      leftNode = NextOf(FLeft, leftNode, left);
      rightNode = NextOf(FRight, rightNode, right);
    }
  }

  // The components that both sides have must stand in the same order.
  void CompareOrder(const std::vector<TPair>& pairs) {
    std::vector<TPair> common;
    for (const TPair& pair : pairs)
      if (pair.Left != None && pair.Right != None) common.push_back(pair);
    std::vector<TPair> ordered = common;
    const auto byRight = [](const TPair& a, const TPair& b) { return a.Right < b.Right; };
    std::sort(ordered.begin(), ordered.end(), byRight);
    for (std::size_t i = 0; i < common.size(); ++i) {
      if (common[i].Right == ordered[i].Right) continue;
      return Report(fmt::format("! order of components: {0}{1} stands where {0}{2} was", FPath,
                                Label(ordered[i]), Label(common[i])));
    }
  }

  // The last part of the path; the number tells parts of the same name or without a name apart.
  std::string Label(const TPair& pair) const {
    const TStoredPart part = pair.Left != None ? FLeft.Part(pair.Left) : FRight.Part(pair.Right);
    const bool hasName = part.Kind == TPartKind::Property || !part.Name.empty();
    std::string label = fmt::format(".{}", hasName ? part.Name : part.ClassName);
    if (!hasName || pair.Occurrence > 0) label += fmt::format("#{}", pair.Occurrence);
    return label;
  }

  static bool IsLeaf(const TStoredTree& tree, TNode node) {
    return tree.First(node) == tree.End(node);
  }

  static TNode FirstIndexed(const TStoredTree& tree, TNode parent) {
    if (IsLeaf(tree, parent)) return None;
    const TPartKind kind = tree.Kind(tree.First(parent));
    return kind == TPartKind::Element || kind == TPartKind::Item ? tree.First(parent) : None;
  }

  static TNode NextOf(const TStoredTree& tree, TNode node, TNode parent) {
    if (node == None || tree.Next(node) == tree.End(parent)) return None;
    return tree.Next(node);
  }

  static std::string_view KindName(const TStoredPart& part) {
    return part.Kind == TPartKind::Component ? "component" : "property";
  }

  static std::string Shown(std::string_view text, std::size_t start = 0) {
    std::string shown = Excerpt(text, start);
    if (text.size() > MaxExcerpt) shown += fmt::format(" ({} characters)", text.size());
    return shown;
  }

  void ReportOne(char sign, const TStoredPart& part) {
    Report(fmt::format("{} {} {}: {}", sign, KindName(part), FPath, Shown(MeaningOf(part))));
  }

  void Report(const std::string& line) {
    FOutput.Line(line);
    FSame = false;
  }

  const TStoredTree& FLeft;
  const TStoredTree& FRight;
  TOutput& FOutput;
  std::string FPath;
  bool FSame = true;
};

// A file and its roots; trees are views into it.
struct TSide {
  explicit TSide(const std::string& name) try : File(ParseStoredFile(ReadInput(name))) {
    if (File.Form == TStoredForm::Extended)
      throw EReadError("the extended form has no class names and cannot be compared");
    for (const TStoredRoot& root : File.Roots) Trees.emplace_back(File.Reader(root));
  } catch (const Exception& error) {
    throw EReadError(NamedTrouble(name, error));
  }
  TStoredFile File;
  std::vector<TStoredTree> Trees;
};

bool CompareFiles(const TSide& left, const TSide& right, TOutput& output) {
  bool same = true;
  if (left.Trees.size() != right.Trees.size()) {
    output.Line(fmt::format("! objects: {} -> {}", left.Trees.size(), right.Trees.size()));
    same = false;
  }
  const std::size_t count = std::min(left.Trees.size(), right.Trees.size());
  for (std::size_t i = 0; i < count; ++i)
    if (!TComparison(left.Trees[i], right.Trees[i], output).Run()) same = false;
  return same;
}

}  // namespace

int RunDiff(const std::string& left, const std::string& right, TOutput& output) {
  try {
    return CompareFiles(TSide(left), TSide(right), output) ? ecFine : ecFindings;
  } catch (const Exception& error) {
    output.Error(error.what());
    return ecTrouble;
  }
}

}  // namespace wrenfold
