#include "experts/rkFormPreview.h"

#include "platform/widgets/Forms.h"

namespace wrenfold {

bool TFormPreview::Show(IOTAFormEditor* editor) {
  Release();
  QWidget* window = GetDesignedWindow(editor);
  if (window == nullptr) return false;
  FWindow = window;
  FParent = window->parentWidget();
  FFlags = window->windowFlags();
  FBounds = window->geometry();
  FWasVisible = window->isVisible();
  FHadFocus = window->isActiveWindow();
  window->hide();
  window->setParent(&FHost);
  window->move(0, 0);
  FHost.setFixedSize(FBounds.size());
  // A form that takes no input of the user; other windows are made so by the environment.
  if (auto* form = dynamic_cast<TForm*>(window)) {
    FWasEnabled = form->Enabled();
    form->SetEnabled(false);
  }
  window->show();
  return true;
}

void TFormPreview::Release() {
  QWidget* window = FWindow;
  FWindow = nullptr;
  if (window == nullptr) return;
  window->hide();
  if (auto* form = dynamic_cast<TForm*>(window)) form->SetEnabled(FWasEnabled);
  window->setParent(FParent, FFlags);
  window->setGeometry(FBounds);
  if (!FWasVisible) return;
  window->show();
  if (FHadFocus) window->activateWindow();
}

}  // namespace wrenfold
