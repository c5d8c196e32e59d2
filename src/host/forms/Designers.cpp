// Makes, finds and ends designer windows.
#include "host/forms/Designers.h"

#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "platform/widgets/Guard.h"

namespace wrenfold {

TDesigners::TDesigners(TForm& owner) : FOwner(owner) {}

TDesigners::~TDesigners() {
  Clear();
}

TDesignerForm* TDesigners::Find(const TFormEditor& editor) const {
  const auto found = std::find_if(FWindows.begin(), FWindows.end(),
                                  [&](const auto* window) { return &window->Editor() == &editor; });
  return found != FWindows.end() ? *found : nullptr;
}

bool TDesigners::Shows(const TFormEditor& editor) const {
  const TDesignerForm* window = Find(editor);
  return window != nullptr && window->isVisible();
}

void TDesigners::Show(TFormEditor& editor) {
  TDesignerForm* window = Find(editor);
  if (window == nullptr) {
    window = NewForm<TDesignerForm>(&FOwner, editor);
    FWindows.push_back(window);
    FreeNotification(window);
    Bind<&TDesigners::Closed>(window->OnClose, this);
    window->CenterOnScreen();
  }
  KeepInFront(*window);
  window->Show();
}

// The desktop keeps a window that belongs to another one in front of it.
void TDesigners::KeepInFront(TDesignerForm& window) {
  QWidget* owner = FOwner.window();
  if (!window.isWindow() || window.isVisible() || !owner->isVisible()) return;
  // Of plain windows the desktop is not told whom they belong to.
  window.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                        Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint |
                        Qt::WindowCloseButtonHint);
  window.winId();  // makes the desktop's window
  window.windowHandle()->setTransientParent(owner->windowHandle());
}

TRootWindow* TDesigners::RootWindow(TFormEditor& editor) {
  QPointer<TRootWindow>& window = FRootWindows[&editor];
  if (window == nullptr) window = new TRootWindow(editor);
  return window->HasForm() ? window.data() : nullptr;
}

void TDesigners::Update(TFormEditor& editor) {
  if (TDesignerForm* window = Find(editor)) window->Update();
  const auto root = FRootWindows.find(&editor);
  if (root != FRootWindows.end() && root->second != nullptr) root->second->Update();
}

void TDesigners::UpdateUsersOf(std::string_view className) {
  for (TDesignerForm* window : FWindows)
    if (window->Uses(className)) window->Update();
  for (const auto& [editor, window] : FRootWindows)
    if (window != nullptr && window->Uses(className)) window->Update();
}

void TDesigners::Drop(TFormEditor& editor) {
  if (const auto root = FRootWindows.find(&editor); root != FRootWindows.end()) {
    delete root->second.data();
    FRootWindows.erase(root);
  }
  TDesignerForm* window = Find(editor);
  if (window == nullptr) return;
  window->Hide();
  delete window;
}

void TDesigners::Clear() {
  while (!FWindows.empty()) delete FWindows.back();
  for (const auto& [editor, window] : FRootWindows) delete window.data();
  FRootWindows.clear();
}

void TDesigners::Notification(TComponent* component, TOperation operation) {
  TComponent::Notification(component, operation);
  if (operation == opRemove) std::erase(FWindows, component);
}

void TDesigners::Closed(TObject* sender, TCloseAction& action) {
  action = caHide;
  const QPointer<TDesignerForm> window = dynamic_cast<TDesignerForm*>(sender);
  // When the window is hidden, its module may have no window left.
  QTimer::singleShot(0, window, [this, window] {
    Guarded(nullptr, [&] {
      if (window != nullptr && !window->isVisible() && OnClosed) OnClosed(window->Editor());
    });
  });
}

}  // namespace wrenfold
