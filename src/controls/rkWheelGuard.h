// Keeps the mouse wheel from changing a field that the user only scrolls past.
#pragma once

#include <QObject>
#include <QWidget>

namespace wrenfold {

// Without the focus, the field hands the wheel to what it stands in.
class TWheelGuard : public QObject {
 public:
  // Owned by the field. The wheel no longer gives it the focus either.
  static void Install(QWidget* field);

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  explicit TWheelGuard(QWidget* field) : QObject(field), FField(field) {}
  QWidget* FField;
};

}  // namespace wrenfold
