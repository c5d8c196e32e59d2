// Changes of a form that can be taken back: what each did to which property of which component.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "designer/model/FormHistory.h"
#include "platform/core/stream/DesignComponent.h"

namespace wrenfold {

// One property of one component before and after. A value stands as in the stream, tag first; none
// is stored where there is none. The path "Name" is the component's name, its values are names.
struct TFormChange {
  std::string Component;  // its name when the change is made
  std::string Path;
  std::optional<std::string> Before, After;
  std::size_t Place = 0;  // of the property among the others, where it was stored before
};

inline constexpr char NameOfComponent[] = "Name";

class TFormEdits {
 public:
  // The form, which outlives this object.
  explicit TFormEdits(TDesignComponent& root) : FRoot(root), FHistory(root) {}

  // Makes changes of one stroke, which are taken back together. Raises EComponentError for a name
  // that cannot be; the form then is as it was. What was taken back before is forgotten.
  void Do(const std::vector<TFormChange>& changes);
  bool CanUndo() const { return FHistory.CanUndo(); }
  bool CanRedo() const { return FHistory.CanRedo(); }
  // The changes of names that were taken back or made again. Without any nothing happens.
  const std::vector<TFormChange>& Undo();
  const std::vector<TFormChange>& Redo();

  // What stands now is what was saved.
  void Saved() { FHistory.MarkSaved(); }
  bool IsSaved() const { return FHistory.AtSaved(); }

  // The steps themselves, which the designer adds its own to.
  TFormHistory& History() { return FHistory; }

  // The change that puts this value (none: no stored one) into a property of a component.
  static TFormChange Change(const TDesignComponent& component, std::string_view path,
                            std::optional<std::string> value);
  // The component of that name, or null.
  TDesignComponent* Find(const std::string& name) const;

 private:
  void Apply(const TFormChange& change);
  void Rename(TDesignComponent& component, const std::string& name);
  const std::vector<TFormChange>& Renamed(bool forward);

  TDesignComponent& FRoot;
  TFormHistory FHistory;
  std::vector<TFormChange> FRenamed;
};

}  // namespace wrenfold
