#include "platform/widgets/HeldInput.h"

#include <QAccessibleWidget>
#include <QEvent>
#include <QWidget>

#include "platform/widgets/Forms.h"

namespace wrenfold {

namespace {

enum class TRefusal { Quiet, Ignored };

struct TInput {
  QEvent::Type Type;
  TRefusal Refusal = TRefusal::Quiet;
};
// Offers that are refused say so to who made them; a shortcut that is taken here reaches no menu.
constexpr TInput Inputs[] = {
    {QEvent::MouseButtonPress},
    {QEvent::MouseButtonRelease},
    {QEvent::MouseButtonDblClick},
    {QEvent::MouseMove},
    {QEvent::Wheel},
    {QEvent::KeyPress},
    {QEvent::KeyRelease},
    {QEvent::ShortcutOverride},
    {QEvent::Shortcut},
    {QEvent::ContextMenu},
    {QEvent::InputMethod},
    {QEvent::Enter},
    {QEvent::HoverEnter},
    {QEvent::HoverMove},
    {QEvent::DragEnter, TRefusal::Ignored},
    {QEvent::DragMove, TRefusal::Ignored},
    {QEvent::Drop, TRefusal::Ignored},
    {QEvent::TabletPress},
    {QEvent::TabletMove},
    {QEvent::TabletRelease},
    {QEvent::TouchBegin, TRefusal::Ignored},
    {QEvent::TouchUpdate},
    {QEvent::TouchEnd},
    {QEvent::NativeGesture},
};

const TInput* InputOf(QEvent::Type type) {
  for (const TInput& input : Inputs)
    if (input.Type == type) return &input;
  return nullptr;
}

// A shortcut is no widget; it belongs to the one that it was made in.
const QWidget* WidgetBehind(const QObject* object) {
  while (object != nullptr && !object->isWidgetType()) object = object->parent();
  return static_cast<const QWidget*>(object);
}

class TAccessibleForm : public QAccessibleWidget {
 public:
  explicit TAccessibleForm(TForm& form)
      : QAccessibleWidget(&form, form.isWindow() ? QAccessible::Window : QAccessible::Pane),
        FForm(form) {}
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    if (!FForm.Enabled()) state.disabled = true;
    return state;
  }

 private:
  TForm& FForm;
};

QAccessibleInterface* MakeAccessibleForm(const QString&, QObject* object) {
  auto* form = dynamic_cast<TForm*>(object);
  return form == nullptr ? nullptr : new TAccessibleForm(*form);
}

}  // namespace

bool DropsHeldInput(QObject* receiver, QEvent* event) {
  const TInput* input = InputOf(event->type());
  if (input == nullptr) return false;
  const TForm* form = FormOf(WidgetBehind(receiver));
  if (form == nullptr || form->Enabled()) return false;
  event->setAccepted(input->Refusal == TRefusal::Quiet);
  return true;
}

void InstallFormAccessibility() {
  QAccessible::installFactory(&MakeAccessibleForm);
}

}  // namespace wrenfold
