#include "editor/rkSpcSearch.h"

#include <algorithm>
#include <cstring>

#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

bool Holds(const std::string& text, const std::string& wanted) {
  return memmem(text.data(), text.size(), wanted.data(), wanted.size()) != nullptr;
}

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char letter) { return letter >= 0; });
}

}  // namespace

std::string FoldCase(std::string_view text) {
  if (!IsAscii(text)) return FromQString(ToQString(text).toCaseFolded());
  std::string folded(text);
  for (char& letter : folded)
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  return folded;
}

void TSpcSearch::SetTree(TTreeNode* top) {
  FNodes.clear();
  FTexts.clear();
  FPrepared = 0;
  if (top == nullptr) return;
  ForEachNode(*top, [this](TTreeNode& node) {
    if (node.Instance != nullptr) FNodes.push_back(&node);
  });
}

void TSpcSearch::Forget(const TTreeNode& node) {
  FTexts.erase(&node);
}

const TNodeTexts& TSpcSearch::TextsOf(TTreeNode& node) {
  const auto [place, isNew] = FTexts.try_emplace(&node);
  if (!isNew) return place->second;
  TNodeTexts texts = FGetTexts(node);
  place->second = {FoldCase(texts.Names), FoldCase(texts.Values)};
  return place->second;
}

bool TSpcSearch::Prepare(int count) {
  for (; count > 0 && FPrepared < FNodes.size(); --count) TextsOf(*FNodes[FPrepared++]);
  return FPrepared < FNodes.size();
}

TSpcSearch::TResult TSpcSearch::Run(const std::string& text) {
  const std::string wanted = FoldCase(text);
  TResult result;
  TTreeNode* firstByValue = nullptr;
  for (TTreeNode* node : FNodes) {
    node->IsHit = false;
    if (wanted.empty()) continue;
    const TNodeTexts& texts = TextsOf(*node);
    const bool byName = Holds(texts.Names, wanted);
    node->IsHit = byName || Holds(texts.Values, wanted);
    if (!node->IsHit) continue;
    ++result.Hits;
    if (byName && result.First == nullptr) result.First = node;
    if (!byName && firstByValue == nullptr) firstByValue = node;
  }
  if (result.First == nullptr) result.First = firstByValue;
  return result;
}

}  // namespace wrenfold
