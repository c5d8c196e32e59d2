// The designer windows that are open, each over the editor of one form.
#pragma once

#include <functional>
#include <vector>

#include "host/forms/DesignerForm.h"

namespace wrenfold {

class TDesigners : public TComponent {
 public:
  // The owner of the windows; the windows stay in front of its own.
  explicit TDesigners(TForm& owner);
  ~TDesigners() override;

  // Makes the window where there is none, and brings it to the front.
  void Show(TFormEditor& editor);
  TDesignerForm* Find(const TFormEditor& editor) const;
  bool Shows(const TFormEditor& editor) const;
  // The window goes, quietly.
  void Drop(TFormEditor& editor);
  void Clear();
  const std::vector<TDesignerForm*>& Windows() const { return FWindows; }

  // The user closed a window (which is hidden then) and may want its form's module closed.
  std::function<void(TFormEditor&)> OnClosed;

  // A window that somebody else destroys is forgotten.
  void Notification(TComponent* component, TOperation operation) override;

 private:
  void KeepInFront(TDesignerForm& window);
  void Closed(TObject* sender, TCloseAction& action);

  TForm& FOwner;
  std::vector<TDesignerForm*> FWindows;
};

}  // namespace wrenfold
