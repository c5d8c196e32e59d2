#include "experts/rkHeldForms.h"

#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "platform/widgets/Application.h"
#include "platform/widgets/Desktop.h"

namespace wrenfold {

void THeldForms::Hold() {
  ReleaseCapture();
  FActiveBefore = Screen().ActiveControl();
  for (TForm* form : Screen().Forms()) {
    if (form == &FHolder) continue;
    FForms.push_back({form, form->Enabled()});
    form->SetEnabled(false);
  }
  // The desktop is in the middle of changing the active window: answered when it is done.
  FWatch = QObject::connect(&Application(), &QGuiApplication::focusWindowChanged, &FHolder, [this] {
    QTimer::singleShot(0, &FHolder, [this] { TakeActivationBack(); });
  });
}

void THeldForms::GiveBack() {
  QObject::disconnect(FWatch);
  for (const THeldForm& held : std::exchange(FForms, {}))
    if (held.Form) static_cast<TForm*>(held.Form.data())->SetEnabled(held.Enabled);
}

bool THeldForms::IsHeld(const TForm* form) const {
  return std::ranges::any_of(FForms, [form](const THeldForm& held) { return held.Form == form; });
}

void THeldForms::TakeActivationBack() {
  if (!FHolder.isVisible() || QApplication::activeModalWidget() != nullptr) return;
  const QWidget* active = QApplication::focusWidget();
  if (active == nullptr) active = QApplication::activeWindow();
  const TForm* form = FormOf(active);
  if (form == nullptr || form->Enabled() || !IsHeld(form)) return;
  FHolder.activateWindow();
  (FHolder.focusWidget() != nullptr ? FHolder.focusWidget() : &FHolder)->setFocus();
}

}  // namespace wrenfold
