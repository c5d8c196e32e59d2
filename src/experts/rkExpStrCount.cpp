#include "experts/rkExpStrCount.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "locale/rkLocale.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

const TTypeInfo& TStrCountForm::ClassInfo() {
  static const TTypeInfo info = Publish<TStrCountForm>("TStrCountForm", TForm::ClassInfo());
  return info;
}

TStrCountForm::TStrCountForm(TComponent* owner) : TForm(owner), FCount(new TSpinEdit(this, this)) {
  SetName("StrCountForm");
  SetBorderStyle(bsDialog);
  SetCaption(LocaleStr(sLinesToRead));
  const QString text = ToQString(LocaleStr(sReadingLines));
  auto* label = new QLabel(text, this);
  label->setBuddy(FCount);
  FCount->SetName("seCount");
  FCount->setAccessibleName(ToQString(LocaleStr(sLinesToRead)));
  FCount->setToolTip(ToQString(LocaleStr(sLinesToRead)));
  FCount->setMinimumWidth(100);
  FCount->SetValue(1);
  auto* layout = new QVBoxLayout(this);
  auto* row = new QHBoxLayout;
  row->addWidget(label);
  row->addWidget(FCount, 1);
  layout->addLayout(row);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  TButton* ok = AddButton("btOK", sOK, mrOk);
  TButton* cancel = AddButton("btCancel", sCancel, mrCancel);
  buttons->addWidget(ok);
  buttons->addWidget(cancel);
  layout->addLayout(buttons);
  SetDefaultButton(ok);
  SetCancelButton(cancel);
  SetActiveControl(FCount);
  adjustSize();
  setFixedSize(size());
  CenterOverWindow();
}

TButton* TStrCountForm::AddButton(const char* name, int textId, TModalResult result) {
  auto* button = new TButton(this, this);
  button->SetName(name);
  button->SetCaption(LocaleStr(textId));
  button->ModalResult = result;
  return button;
}

}  // namespace wrenfold
