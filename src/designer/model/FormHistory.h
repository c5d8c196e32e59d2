// Changes of a form in steps that can be undone and done again.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/stream/DesignComponent.h"

namespace wrenfold {

// All changes of a form that is designed go through its history. Components that a step takes out
// stay alive with it, so that pointers to them hold while the history does; who deletes a component
// of the form by other means must Clear() first.
class TFormHistory {
 public:
  explicit TFormHistory(TDesignComponent& root) : FRoot(root) {}
  TFormHistory(const TFormHistory&) = delete;
  ~TFormHistory() { Clear(); }

  // What changes between Begin and Commit is one step; a step without a change is none. The name is
  // for the user ("Move"). Steps do not nest.
  // A step that continues the one before becomes part of it, when that has the same name and was
  // neither undone nor saved since.
  void Begin(std::string name, bool continues = false);
  void Commit();
  // Takes back what changed since Begin and forgets it.
  void Cancel();

  // Sets a stored value (the bytes of one value, tag first), or takes the property out when the
  // value is empty.
  void SetValue(TDesignComponent& component, std::string_view path, std::string_view value);
  void SetInteger(TDesignComponent& component, std::string_view path, std::int64_t value);
  // Reads a component with all that is inside it behind the other children of `parent`. Raises
  // EReadError and changes nothing. The caller sees to it that the names are free.
  TDesignComponent& Add(std::string stream, TDesignComponent& parent);
  // Raises EComponentError and changes nothing when the name cannot be.
  void Rename(TDesignComponent& component, const std::string& name);
  // Takes a component with all that is inside it out of the form; not the root.
  void Remove(TDesignComponent& component);
  // Gives it another place among its parent's children; the last one is in front.
  void SetChildIndex(TDesignComponent& component, std::size_t index);

  bool CanUndo() const { return FDone > 0; }
  bool CanRedo() const { return FDone < FSteps.size(); }
  // The name of the step that comes next; empty when there is none.
  std::string UndoName() const { return CanUndo() ? FSteps[FDone - 1].Name : std::string(); }
  std::string RedoName() const { return CanRedo() ? FSteps[FDone].Name : std::string(); }
  void Undo();
  void Redo();
  // Forgets all steps.
  void Clear();

  // The components that the step done or undone last gave another name, with the one before.
  struct TRenamed {
    TDesignComponent* Component;
    std::string Before;
  };
  const std::vector<TRenamed>& Renamed() const { return FRenamed; }
  // Those that it put into the form and took out of it, each with what is inside, in that order.
  const std::vector<const TDesignComponent*>& Added() const { return FAdded; }
  const std::vector<const TDesignComponent*>& Removed() const { return FRemoved; }
  enum class TMove { Done, Undone, Redone };
  TMove Move() const { return FMove; }

  // The form is on disk as it is now.
  void MarkSaved() { FSaved = FDone; }
  bool AtSaved() const { return FSaved == FDone; }

  // Steps were done, undone or forgotten.
  std::function<void()> OnChange;

 private:
  enum class TKind { Value, Name, Add, Remove, Index };
  struct TChange {
    TKind Kind;
    TDesignComponent* Component;
    std::string Path;
    std::optional<std::string> Before, After;  // of a value
    std::size_t IndexBefore = 0;               // of the property, or among the children
    std::size_t IndexAfter = 0;
    TDesignComponent* Parent = nullptr;
  };
  struct TStep {
    std::string Name;
    std::vector<TChange> Changes;
    bool Continues = false;
  };

  void StartMove(TMove move);
  bool Joins(const TStep& step) const;
  void Record(TChange change);
  void Apply(const TChange& change, bool forward);
  void PutName(const TChange& change, const std::string& name);
  static void PutValue(const TChange& change, const std::optional<std::string>& value);
  void Attach(TDesignComponent& component, TDesignComponent& parent, std::size_t index);
  void Detach(TDesignComponent& component);
  void DropRedo();
  // Ends components that are in no step's reach and not in the form.
  void End(const TChange& change);
  void Changed() const {
    if (OnChange) OnChange();
  }

  TDesignComponent& FRoot;
  std::vector<TStep> FSteps;
  std::optional<TStep> FOpen;
  std::vector<TRenamed> FRenamed;
  std::vector<const TDesignComponent*> FAdded, FRemoved;
  TMove FMove = TMove::Done;
  std::size_t FDone = 0;
  std::size_t FSaved = 0;
};

// The place of a component among the children of its parent; 0 for a root.
std::size_t ChildIndexOf(const TDesignComponent& component);

}  // namespace wrenfold
