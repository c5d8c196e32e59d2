// Watches every form that a test shows: whatever can get the focus in it must have a name.
#pragma once

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <set>
#include <string>

#include "platform/widgets/Forms.h"
#include "platform/widgets/Text.h"

namespace wrenfold::test {

// Whether the keyboard or the mouse leads into the widget itself.
inline bool IsFocusable(const QWidget& widget) {
  return widget.focusPolicy() != Qt::NoFocus && widget.focusProxy() == nullptr &&
         widget.isVisible() && widget.isEnabled();
}

// A name of its own, or a label that is its buddy. What a field holds is no name, though the
// toolkit gives out the text of a combo box as one.
inline bool HasAccessibleName(QWidget& widget) {
  if (!widget.accessibleName().trimmed().isEmpty()) return true;
  QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&widget);
  if (interface == nullptr) return false;
  if (!interface->relations(QAccessible::Label).isEmpty()) return true;
  return qobject_cast<QComboBox*>(&widget) == nullptr &&
         !interface->text(QAccessible::Name).trimmed().isEmpty();
}

// "TUnitForm: QLineEdit edFilter".
inline std::string DescribeControl(const TForm& form, const QWidget& widget) {
  return form.ClassName() + ": " + widget.metaObject()->className() + ' ' +
         FromQString(widget.objectName());
}

// Looks at a form whenever the user comes to it, does something in it, and when it goes. Plain
// forms are those of the tests themselves.
class TAccessibleNames : public QObject, public testing::EmptyTestEventListener {
 public:
  TAccessibleNames() { qApp->installEventFilter(this); }

  // What was found since the last test.
  const std::set<std::string>& Nameless() const { return FNameless; }

  // Notes what has no name in the form that the window is.
  void Look(QWidget* window) {
    const auto* form = dynamic_cast<const TForm*>(window);
    if (form == nullptr || !form->isVisible() || form->GetClassInfo().Name() == "TForm") return;
    for (QWidget* widget : window->findChildren<QWidget*>())
      if (IsFocusable(*widget) && !HasAccessibleName(*widget))
        FNameless.insert(DescribeControl(*form, *widget));
  }

  void OnTestEnd(const testing::TestInfo&) override {
    for (const std::string& control : FNameless)
      ADD_FAILURE() << "A control without an accessible name: " << control;
    FNameless.clear();
  }

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override {
    const QEvent::Type type = event->type();
    const bool looks = type == QEvent::WindowActivate || type == QEvent::KeyPress ||
                       type == QEvent::MouseButtonPress || type == QEvent::Hide;
    if (looks && receiver->isWidgetType()) Look(static_cast<QWidget*>(receiver)->window());
    return false;
  }

 private:
  std::set<std::string> FNameless;
};

}  // namespace wrenfold::test
