// Keeps the fields of a form's class in step with the components of the form.
#pragma once

#include <cstddef>
#include <unordered_set>
#include <vector>

#include "designer/model/FormHistory.h"

namespace wrenfold {

class TFormEditor;
class TSourceEditor;
class TUnitDocument;

// Components that come into a form are declared in its class, those that leave it are not any more,
// and a field takes the new name of its component. A component that had no field gets none when it
// comes back. What a step of the form changes in the unit is one step there; while the unit is as
// that step left it, it goes back and forth with the form.
class TFieldDeclarations {
 public:
  // The editor of the form outlives this object.
  explicit TFieldDeclarations(TFormEditor& form) : FForm(form) {}

  // A step of the form was done, undone or done again. Troubles are told to the user.
  void Follow(const TFormHistory& history);

 private:
  struct TTextStep {
    std::size_t Before, After;  // hashes of the text
  };

  TSourceEditor* DeclaringSource() const;
  static bool Turn(TUnitDocument& document, bool back, const TTextStep& step);
  bool TurnLast(TUnitDocument& document, bool back);
  std::string Changed(std::string text, const TSourceEditor& source, const TFormHistory& history);

  TFormEditor& FForm;
  std::vector<TTextStep> FDone, FUndone;
  std::unordered_set<const TDesignComponent*> FWithoutField;  // left the form so
};

}  // namespace wrenfold
