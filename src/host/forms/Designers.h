// The designer windows that are open, each over the editor of one form.
#pragma once

#include <QPointer>
#include <functional>
#include <map>
#include <string_view>
#include <vector>

#include "host/forms/DesignerForm.h"
#include "host/forms/RootWindow.h"

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
  // The designed window itself, made hidden at the first call; null for a form without one.
  TRootWindow* RootWindow(TFormEditor& editor);
  // The form is another one.
  void Update(TFormEditor& editor);
  // The form of that class is another one: those that are composed with it follow.
  void UpdateUsersOf(std::string_view className);
  // The windows go, quietly.
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
  std::map<const TFormEditor*, QPointer<TRootWindow>> FRootWindows;
};

}  // namespace wrenfold
