#include "editor/rkSpcTree.h"

#include <algorithm>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

TTreeNode* TTreeNode::AddChild(std::string text) {
  auto child = std::make_unique<TTreeNode>();
  child->Parent = this;
  child->Text = std::move(text);
  Children.push_back(std::move(child));
  return Children.back().get();
}

int TTreeNode::Index() const {
  if (Parent == nullptr) return -1;
  const auto& siblings = Parent->Children;
  const auto found = std::find_if(siblings.begin(), siblings.end(),
                                  [this](const auto& node) { return node.get() == this; });
  return static_cast<int>(found - siblings.begin());
}

std::string TTreeNode::Path() const {
  if (Parent == nullptr || Parent->Instance == nullptr) return Text;
  const bool parentIsRoot = Parent->Parent == nullptr || Parent->Parent->Instance == nullptr;
  return parentIsRoot ? Text : Parent->Path() + " / " + Text;
}

std::string GetFullPropName(const TPersistent& instance, const TPropInfo& property) {
  return instance.ClassName() + '.' + property.Name;
}

std::string ReplaceAll(std::string text, std::string_view wanted, std::string_view replacement) {
  if (wanted.empty()) return text;
  for (auto at = text.find(wanted); at != text.npos;
       at = text.find(wanted, at + replacement.size()))
    text.replace(at, wanted.size(), replacement);
  return text;
}

void TNameSet::Assign(const TStrings& names) {
  FNames.clear();
  for (int i = 0; i < names.Count(); ++i)
    if (!names[i].empty()) FNames.push_back(UpperCase(names[i]));
  std::sort(FNames.begin(), FNames.end());
}

bool TNameSet::Contains(std::string_view name) const {
  return !FNames.empty() && std::binary_search(FNames.begin(), FNames.end(), UpperCase(name));
}

}  // namespace wrenfold
