#include "controls/rkWheelGuard.h"

#include <QAbstractScrollArea>
#include <QEvent>

namespace wrenfold {

void TWheelGuard::Install(QWidget* field) {
  if (field->focusPolicy() == Qt::WheelFocus) field->setFocusPolicy(Qt::StrongFocus);
  auto* guard = new TWheelGuard(field);
  field->installEventFilter(guard);
  if (auto* area = qobject_cast<QAbstractScrollArea*>(field))
    area->viewport()->installEventFilter(guard);
}

bool TWheelGuard::eventFilter(QObject*, QEvent* event) {
  if (event->type() != QEvent::Wheel || FField->hasFocus()) return false;
  event->ignore();
  return true;
}

}  // namespace wrenfold
