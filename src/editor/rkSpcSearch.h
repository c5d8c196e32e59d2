// Finds nodes by text: names, labels, values and the names of enumerations.
#pragma once

#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "editor/rkSpcTree.h"

namespace wrenfold {

// What is searched of one node. Labels of a class are the same for all its nodes.
struct TNodeTexts {
  std::string Names;   // text of the node, names and labels of its rows
  std::string Values;  // values as they are shown, names that the values could have
};

// Keeps the texts of a tree in a form that is quick to search; it is made when first needed.
class TSpcSearch {
 public:
  using TGetTexts = std::function<TNodeTexts(const TTreeNode& node)>;
  explicit TSpcSearch(TGetTexts getTexts) : FGetTexts(std::move(getTexts)) {}

  // The tree is another one.
  void SetTree(TTreeNode* top);
  // The node, or a value of it, changed; it may be a node that was just made.
  void Forget(const TTreeNode& node);
  // Makes what is missing of the texts of at most `count` nodes; false when nothing is left to do.
  bool Prepare(int count);

  struct TResult {
    int Hits = 0;
    TTreeNode* First = nullptr;  // the first hit in a name or label, else the first hit
  };
  // Marks the nodes whose texts hold the words, letter case ignored; an empty text hits none.
  TResult Run(const std::string& text);

 private:
  const TNodeTexts& TextsOf(TTreeNode& node);

  TGetTexts FGetTexts;
  std::vector<TTreeNode*> FNodes;  // in the order of the tree
  std::size_t FPrepared = 0;
  std::unordered_map<const TTreeNode*, TNodeTexts> FTexts;
};

// Letter case made to not matter, for every language.
std::string FoldCase(std::string_view text);

}  // namespace wrenfold
