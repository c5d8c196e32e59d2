// The nodes of the settings editor's tree: what each stands for and which properties it shows.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "editor/rkSpcTypes.h"
#include "platform/core/model/StringList.h"

namespace wrenfold {

// A property that is shown as a row, and the object that has it.
struct TInstRow {
  const TPropInfo* Property;
  TPersistent* Instance;
};

// What the controls area shows of an instance.
struct TInstDscr {
  TPersistent* Instance = nullptr;
  std::vector<TInstRow> Rows;
};

// Owns its children. The instance belongs to what is edited.
class TTreeNode : public TObject {
 public:
  TTreeNode* Parent = nullptr;
  std::vector<std::unique_ptr<TTreeNode>> Children;
  TPersistent* Instance = nullptr;
  const TPropInfo* Property = nullptr;  // of the parent's object, where the node is its value
  TBaseClassIdent Ident = ciUnknown;
  std::string Text;
  TInstDscr Dscr;
  std::array<int, 4> Images{-1, -1, -1, -1};  // by TNodeImageIndex
  int OwnChanges = 0;                         // rows whose values differ from their defaults
  int Changes = 0;                            // those of this node and of all below

  // Kept by the view's model: the children that the filter lets through, and the place among them.
  std::vector<TTreeNode*> Shown;
  int ShownRow = 0;
  bool IsHit = false;

  TTreeNode* AddChild(std::string text);
  // The position among the parent's children.
  int Index() const;
  // Texts from the root down, for lists that name a node out of its place.
  std::string Path() const;
};

// Calls visit for the node and all below it, parents first.
template <class Visit>
void ForEachNode(TTreeNode& node, const Visit& visit) {
  visit(node);
  for (const auto& child : node.Children) ForEachNode(*child, visit);
}

// "Class.Property", by the class of the instance.
std::string GetFullPropName(const TPersistent& instance, const TPropInfo& property);

// Every occurrence of a text in another one replaced.
std::string ReplaceAll(std::string text, std::string_view wanted, std::string_view replacement);

// Sorted names to look full property names up in, letter case ignored.
class TNameSet {
 public:
  void Assign(const TStrings& names);
  bool Contains(std::string_view name) const;
  bool Empty() const { return FNames.empty(); }

 private:
  std::vector<std::string> FNames;  // upper case
};

}  // namespace wrenfold
