// The information window of the suite.
#include "controls/rkInfoForm.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "locale/rkLocale.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr int CaptionButtons = 160;

QLabel* AddLabel(QVBoxLayout& layout, const char* name, const std::string& text) {
  auto* label = new QLabel(ToQString(text));
  label->setObjectName(name);
  label->setAccessibleName(ToQString(text));
  label->setTextFormat(Qt::PlainText);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  label->setFocusPolicy(Qt::NoFocus);
  label->setWordWrap(true);
  layout.addWidget(label);
  return label;
}

}  // namespace

const TTypeInfo& TInfoForm::ClassInfo() {
  static const TTypeInfo info = Publish<TInfoForm>("TInfoForm", TForm::ClassInfo());
  return info;
}

TInfoForm::TInfoForm(TComponent* owner, const std::string& version) : TForm(owner) {
  SetName("InfoForm");
  SetBorderStyle(bsDialog);
  SetCaption(LocaleStr(sAboutCaption));

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(20, 16, 20, 16);
  // Room for the caption beside the buttons of the title bar.
  setMinimumWidth(fontMetrics().horizontalAdvance(windowTitle()) + CaptionButtons);
  QLabel* title = AddLabel(*layout, "lbName", "Wrenfold");
  QFont font = title->font();
  font.setPointSizeF(font.pointSizeF() * 1.6);
  font.setBold(true);
  title->setFont(font);
  AddLabel(*layout, "lbVersion", LocaleFormat(sAboutVersion, version));
  AddLabel(*layout, "lbLicence", LocaleStr(sAboutLicence));

  auto* buttons = new QDialogButtonBox;
  QPushButton* close = buttons->addButton(ToQString(LocaleStr(sOK)), QDialogButtonBox::AcceptRole);
  close->setObjectName("btOK");
  close->setToolTip(close->text() + " (Enter, Esc)");
  close->setDefault(true);
  layout->addSpacing(8);
  layout->addWidget(buttons);
  SetActiveControl(close);

  const auto closeForm = [this] { Guarded(this, [this] { Close(); }); };
  connect(close, &QPushButton::clicked, this, closeForm);
  for (const int key : {int{Qt::Key_Escape}, int{Qt::Key_Return}, int{Qt::Key_Enter}})
    connect(new QShortcut(QKeySequence(key), this), &QShortcut::activated, this, closeForm);
}

void TInfoForm::Execute(const std::string& version) {
  const std::unique_ptr<TInfoForm> form(NewForm<TInfoForm>(nullptr, version));
  form->ShowModal();
}

}  // namespace wrenfold
