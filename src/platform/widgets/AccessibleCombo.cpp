#include "platform/widgets/AccessibleCombo.h"

#include <QAccessibleWidget>
#include <QComboBox>

namespace wrenfold {

namespace {

class TAccessibleCombo : public QAccessibleWidget {
 public:
  explicit TAccessibleCombo(QComboBox& combo)
      : QAccessibleWidget(&combo, QAccessible::ComboBox), FCombo(combo) {}

  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Name) return FCombo.accessibleName();
    if (kind == QAccessible::Value) return FCombo.currentText();
    return QAccessibleWidget::text(kind);
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.expandable = true;
    state.hasPopup = true;
    state.editable = FCombo.isEditable();
    return state;
  }
  QStringList actionNames() const override {
    return QStringList{showMenuAction()} + QAccessibleWidget::actionNames();
  }
  void doAction(const QString& name) override {
    if (name == showMenuAction()) FCombo.showPopup();
    else QAccessibleWidget::doAction(name);
  }

 private:
  QComboBox& FCombo;
};

QAccessibleInterface* MakeAccessibleCombo(const QString&, QObject* object) {
  auto* combo = qobject_cast<QComboBox*>(object);
  const bool named = combo != nullptr && !combo->accessibleName().isEmpty();
  return named ? new TAccessibleCombo(*combo) : nullptr;
}

}  // namespace

void InstallComboAccessibility() {
  QAccessible::installFactory(&MakeAccessibleCombo);
}

}  // namespace wrenfold
