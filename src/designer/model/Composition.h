// Composes a form from its file and the files of the forms and frames that it inherits.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "designer/model/DesignNode.h"

namespace wrenfold {

// Deeper components are left out.
inline constexpr int MaxDrawnNesting = 512;
// Frames in frames multiply; a form of more components is cut here.
inline constexpr std::size_t MaxDrawnComponents = 200'000;

// What is known of classes and forms beside the form at hand. The answers must stay as they are
// while a composed form is in use.
class TFormCatalog {
 public:
  virtual ~TFormCatalog() = default;
  // The ancestors of a class, nearest first, the class itself left out; empty when unknown.
  virtual std::vector<std::string> Ancestors(std::string_view className) = 0;
  // The root of the form file of a class, or null. The source owns it.
  virtual const TDesignComponent* FindForm(std::string_view className) = 0;
};

// Knows nothing.
class TNoForms final : public TFormCatalog {
 public:
  std::vector<std::string> Ancestors(std::string_view) override { return {}; }
  const TDesignComponent* FindForm(std::string_view) override { return nullptr; }
};

// A form ready to be laid out. It looks at the components that it was composed of and must not
// outlive them.
class TComposedForm {
 public:
  TDesignNode& Root() const { return *FNodes.front(); }
  // All nodes, parents before children.
  const std::vector<TDesignNode*>& Nodes() const { return FNodes; }
  // By name, or by a path of names through frames, from a frame on or from the form; letter case
  // ignored. Null when there is none.
  TDesignNode* Find(std::string_view path, const TDesignNode* scope = nullptr) const;
  // The node of a component of the form itself, or null.
  TDesignNode* NodeOf(const TDesignComponent& component) const;

  // What could not be done as stored, in words: a base that is missing, a cycle.
  const std::vector<std::string>& Notes() const { return FNotes; }
  void AddNote(std::string note);

  // Written by the free environment, whose bounds mean something else in places.
  bool FromFreeEnvironment() const { return FFree; }
  // Of bytes that are no UTF-8.
  int CodePage() const { return FCodePage; }

 private:
  friend class TComposer;
  std::deque<TDesignNode> FStore;
  std::vector<TDesignNode*> FNodes;
  using TNames = std::unordered_map<std::string, TDesignNode*>;  // folded
  std::unordered_map<const TDesignNode*, TNames> FScopes;        // null: the form's own
  std::unordered_map<const TDesignComponent*, TDesignNode*> FByComponent;
  std::vector<std::string> FNotes;
  bool FFree = false;
  int FCodePage = 1252;
};

// Never fails: what is missing is told in the notes and the rest is composed. Nodes are not laid
// out.
std::unique_ptr<TComposedForm> ComposeForm(const TDesignComponent& root, TFormCatalog& source);

}  // namespace wrenfold
