#include "editor/rkRows.h"

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <algorithm>
#include <set>

#include "locale/rkLocale.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

const TRowRule* FindRowRule(TRowRules rules, const TPropInfo& property,
                            const TRowContext& context) {
  const auto rule = std::find_if(rules.begin(), rules.end(), [&](const TRowRule& candidate) {
    return candidate.Matches(property, context);
  });
  return rule != rules.end() ? &*rule : nullptr;
}

std::string LayoutSection(const TRowRule& rule) {
  return rule.Name + LocaleStr(sControlPostfix);
}

void AddLayoutDefaults(TRowRules rules, const std::string& comment, TStrings& lines) {
  std::set<std::string> done;
  lines.Add(comment);
  for (const TRowRule& rule : rules) {
    if (!done.insert(rule.Name).second) continue;
    lines.Add('[' + LayoutSection(rule) + ']');
    TStringList parameters;
    parameters.SetText(rule.Layout);
    lines.AddStrings(parameters);
  }
}

std::string PropertyAsShownText(const TPersistent& instance, const TPropInfo& property,
                                const TRowContext& context) {
  const TRowRule* rule = FindRowRule(ProRowRules(), property, context);
  if (rule == nullptr) rule = FindRowRule(BasicRowRules(), property, context);
  if (rule == nullptr) return {};
  try {
    return rule->Text(instance, property, context);
  } catch (...) {
    return {};
  }
}

// Sees when the user leaves the control or confirms what was entered.
class TPropertyRow::TWatcher : public QObject {
 public:
  explicit TWatcher(TPropertyRow& row) : FRow(row) {}

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override {
    // A widget that is going away is no control any more.
    if (FInside || ControlOf(static_cast<QWidget*>(receiver)) == nullptr) return false;
    if (event->type() == QEvent::FocusOut) return Left(receiver, static_cast<QFocusEvent&>(*event));
    if (event->type() == QEvent::KeyPress)
      return Pressed(receiver, static_cast<QKeyEvent&>(*event));
    return false;
  }

 private:
  // The control itself goes first: it makes a value of what was typed.
  void PassOn(QObject* receiver, QEvent& event) {
    FInside = true;
    QCoreApplication::sendEvent(receiver, &event);
    FInside = false;
  }

  bool Left(QObject* receiver, QFocusEvent& event) {
    const Qt::FocusReason reason = event.reason();
    if (reason == Qt::PopupFocusReason || reason == Qt::ActiveWindowFocusReason ||
        reason == Qt::MenuBarFocusReason)
      return false;
    const QPointer<QObject> life(this);
    PassOn(receiver, event);
    if (life != nullptr) FRow.Commit();
    return true;
  }

  bool Pressed(QObject* receiver, QKeyEvent& event) {
    const bool plain = !(event.modifiers() & ~Qt::KeypadModifier);
    if (!plain || !FRow.Modified()) return false;
    if (event.key() == Qt::Key_Escape) {
      FRow.ShowValue();
      return true;
    }
    if (!FRow.ConfirmedByEnter()) return false;
    if (event.key() != Qt::Key_Return && event.key() != Qt::Key_Enter) return false;
    const QPointer<QObject> life(this);
    PassOn(receiver, event);
    event.accept();
    if (life != nullptr) FRow.Commit();
    return true;
  }

  TPropertyRow& FRow;
  bool FInside = false;
};

TPropertyRow::TPropertyRow(const TRowBinding& binding) : FBinding(binding) {}

TPropertyRow::~TPropertyRow() {
  FWatcher.reset();
  delete FWidget;
}

void TPropertyRow::SetControl(TControl* control, int height) {
  FControl = control;
  FWidget = control->Widget();
  FHeight = height > 0 ? height : FWidget->sizeHint().height();
  control->SetHeight(FHeight);
  if (!Property().Access->CanWrite() && Property().Kind() != tkClass) control->SetEnabled(false);
  FWatcher = std::make_unique<TWatcher>(*this);
  FWidget->installEventFilter(FWatcher.get());
}

int TPropertyRow::MinimumWidth() const {
  return 0;
}

void TPropertyRow::SetLabel(const std::string& label) {
  const QString name = ToQString(label);
  FWidget->setAccessibleName(name);
  for (QWidget* part : FWidget->findChildren<QWidget*>())
    if (part->focusProxy() == FWidget) part->setAccessibleName(name);
}

void TPropertyRow::ShowValue() {
  FShowing = true;
  TRowMessage message;
  try {
    Show();
  } catch (...) {
    message = {rmRemark, ExceptionMessage(std::current_exception())};
  }
  FShowing = FModified = false;
  SetMessage(message.Kind, message.Text);
}

bool TPropertyRow::TakeValue() {
  if (!FModified) return true;
  try {
    Take();
  } catch (...) {
    FTakeRefused = true;
    SetMessage(rmRefusal, ExceptionMessage(std::current_exception()));
    return false;
  }
  FModified = false;
  // What the control itself has put back stays told.
  if (FTakeRefused) SetMessage(rmNone, {});
  FTakeRefused = false;
  return true;
}

void TPropertyRow::ControlChanged() {
  if (FShowing) return;
  FModified = true;
  if (FMessage.Kind != rmNone) SetMessage(rmNone, {});
  OnChange(FControl);
}

void TPropertyRow::ControlCompleted() {
  if (!FShowing) Commit();
}

void TPropertyRow::Picked(TObject*) {
  const QPointer<QWidget> life = FWidget;  // it goes with the row
  ControlChanged();
  if (life != nullptr) ControlCompleted();
}

void TPropertyRow::Commit() {
  if (FModified) OnCommit(this);
}

void TPropertyRow::SetMessage(TRowMessageKind kind, const std::string& text) {
  TRowMessage message{kind, text};
  if (message == FMessage) return;
  FMessage = std::move(message);
  FWidget->setAccessibleDescription(ToQString(FMessage.Text));
  OnMessage(this);
}

}  // namespace wrenfold
