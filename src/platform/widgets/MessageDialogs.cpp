#include "platform/widgets/MessageDialogs.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLabel>
#include <QStyle>
#include <QVBoxLayout>
#include <memory>

#include "platform/widgets/Application.h"
#include "platform/widgets/Button.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

struct TDialogButton {
  TMsgDlgBtn Button;
  const char* Name;
  const char* Caption;
  TModalResult Result;
};
// In the order in which they stand in a dialog.
constexpr TDialogButton DialogButtons[] = {
    {mbYes, "Yes", "&Yes", mrYes},
    {mbNo, "No", "&No", mrNo},
    {mbOK, "OK", "OK", mrOk},
    {mbAbort, "Abort", "&Abort", mrAbort},
    {mbRetry, "Retry", "&Retry", mrRetry},
    {mbIgnore, "Ignore", "&Ignore", mrIgnore},
    {mbAll, "All", "&All", mrAll},
    {mbCancel, "Cancel", "Cancel", mrCancel},
};

struct TDialogKind {
  TMsgDlgType Type;
  const char* Caption;
  QStyle::StandardPixmap Icon;
};
constexpr TDialogKind DialogKinds[] = {
    {mtWarning, "Warning", QStyle::SP_MessageBoxWarning},
    {mtError, "Error", QStyle::SP_MessageBoxCritical},
    {mtInformation, "Information", QStyle::SP_MessageBoxInformation},
    {mtConfirmation, "Confirm", QStyle::SP_MessageBoxQuestion},
};

constexpr int LongestLine = 480;

TMsgDlgBtn CancelButton(TMsgDlgButtons buttons) {
  for (TMsgDlgBtn button : {mbCancel, mbNo, mbAbort, mbOK})
    if (buttons.Contains(button)) return button;
  for (const TDialogButton& known : DialogButtons)
    if (buttons.Contains(known.Button)) return known.Button;
  return mbOK;
}

std::string ShownText(const TDialogTexts& texts, const std::string& caption) {
  const std::string shown = texts ? texts(caption) : std::string();
  return shown.empty() ? caption : shown;
}

// Takes the letters of its buttons also without Alt: there is nothing to write in.
class TMessageForm : public TForm {
 public:
  TMessageForm() { KeyPreview = true; }

 protected:
  void KeyDown(QKeyEvent& key) override {
    TForm::KeyDown(key);
    if (key.isAccepted() || key.text().isEmpty()) return;
    if (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) return;
    const QKeySequence letter(QStringLiteral("Alt+") + key.text().toUpper());
    for (TButton* button : findChildren<TButton*>()) {
      if (QKeySequence::mnemonic(button->text()) != letter) continue;
      key.accept();
      return button->Click();
    }
  }
};

QHBoxLayout* AddMessage(TForm& form, const std::string& text, TMsgDlgType type,
                        const TDialogTexts& texts) {
  auto* row = new QHBoxLayout;
  form.SetCaption(HasApplication() ? Application().Title() : std::string());
  for (const TDialogKind& kind : DialogKinds) {
    if (kind.Type != type) continue;
    form.SetCaption(kind.Caption);
    const QString shown = ToQString(ShownText(texts, kind.Caption));
    form.setWindowTitle(shown);
    form.setAccessibleName(shown);
    auto* picture = new QLabel;
    const int size = form.style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, &form);
    picture->setPixmap(form.style()->standardIcon(kind.Icon, nullptr, &form).pixmap(size, size));
    picture->setAccessibleName(shown);
    row->addWidget(picture, 0, Qt::AlignTop);
  }
  auto* message = new QLabel(ToQString(text));
  message->setObjectName(QStringLiteral("Message"));
  message->setTextFormat(Qt::PlainText);
  message->setTextInteractionFlags(Qt::TextSelectableByMouse);
  if (message->sizeHint().width() > LongestLine) {
    message->setWordWrap(true);
    message->setMinimumWidth(LongestLine);
  }
  row->addWidget(message, 1);
  return row;
}

QHBoxLayout* AddButtons(TForm& form, TMsgDlgButtons buttons, const TDialogTexts& texts) {
  auto* row = new QHBoxLayout;
  row->addStretch(1);
  TButton* first = nullptr;
  const TMsgDlgBtn cancel = CancelButton(buttons);
  for (const TDialogButton& known : DialogButtons) {
    if (!buttons.Contains(known.Button)) continue;
    auto* button = new TButton(&form, &form);
    button->SetName(known.Name);
    button->SetCaption(known.Caption);
    button->SetShownCaption(ShownText(texts, known.Caption));
    button->ModalResult = known.Result;
    row->addWidget(button);
    if (first == nullptr) first = button;
    if (known.Button == cancel) form.SetCancelButton(button);
  }
  row->addStretch(1);
  form.SetDefaultButton(first);
  if (first != nullptr) first->setFocus();
  return row;
}

TMsgDlgBtn ShowDialog(const std::string& text, TMsgDlgType type, TMsgDlgButtons buttons) {
  if (buttons.Empty()) buttons = {mbOK};
  const QPointer<TForm> form(CreateMessageDialog(text, type, buttons, TakeDialogTexts()));
  const TModalResult result = form->ShowModal();
  delete form.data();
  return ButtonOfModalResult(result, buttons);
}

TMessageDlgProc Before;

}  // namespace

TForm* CreateMessageDialog(const std::string& text, TMsgDlgType type, TMsgDlgButtons buttons,
                           const TDialogTexts& texts) {
  std::unique_ptr<TForm> form = std::make_unique<TMessageForm>();
  form->SetName("MessageForm");
  form->SetBorderStyle(bsDialog);
  auto* layout = new QVBoxLayout(form.get());
  layout->addLayout(AddMessage(*form, text, type, texts));
  layout->addLayout(AddButtons(*form, buttons, texts));
  form->adjustSize();
  form->setFixedSize(form->size());
  form->CenterOverWindow();
  return form.release();
}

TMsgDlgBtn ButtonOfModalResult(TModalResult result, TMsgDlgButtons buttons) {
  for (const TDialogButton& known : DialogButtons)
    if (known.Result == result && buttons.Contains(known.Button)) return known.Button;
  return CancelButton(buttons);
}

void InstallMessageDialogs() {
  Before = SetMessageDlgProc(ShowDialog);
}

void RemoveMessageDialogs() {
  SetMessageDlgProc(std::exchange(Before, {}));
}

}  // namespace wrenfold
