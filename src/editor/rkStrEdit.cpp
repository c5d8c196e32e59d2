#include "editor/rkStrEdit.h"

#include <QFontDialog>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <memory>

#include "controls/rkTextFile.h"
#include "locale/rkLocale.h"
#include "platform/widgets/DrawnIcon.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

const TTypeInfo& TStrEditDlg::ClassInfo() {
  static const TTypeInfo info = Publish<TStrEditDlg>("TStrEditDlg", TSmartForm::ClassInfo());
  return info;
}

TStrEditDlg::TStrEditDlg(TComponent* owner)
    : TSmartForm(owner),
      FMemo(new TMemo(this, this)),
      FLineCount(new QLabel),
      FFontButton(new QToolButton),
      FOKButton(new TButton(this, this)),
      FCancelButton(new TButton(this, this)),
      FMenu(new TPopupMenu(this)),
      FLoadItem(new TMenuItem(this)),
      FSaveItem(new TMenuItem(this)),
      FOpenDialog(new TOpenDialog(this)),
      FSaveDialog(new TSaveDialog(this)) {
  SetName("StrEditDlg");
  // Nothing to minimise: what it edits waits for it.
  setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                 Qt::WindowSystemMenuHint | Qt::WindowMaximizeButtonHint |
                 Qt::WindowCloseButtonHint);
  MakeControls();
  FormCreate();
  setMinimumSize(180, 150);
  resize(420, 320);
}

void TStrEditDlg::MakeControls() {
  FMemo->SetName("Memo");
  FMemo->SetPopupMenu(FMenu);
  Bind<&TStrEditDlg::MemoChange>(FMemo->OnChange, this);
  FLineCount->setObjectName("LineCount");
  FFontButton->setObjectName("btnFontDlg");
  FFontButton->setAutoRaise(true);
  FFontButton->setFocusPolicy(Qt::TabFocus);
  FFontButton->setIcon(DrawnIcon("sM 3 13 L 8 3 L 13 13 M 5 9 L 11 9"));
  connect(FFontButton, &QToolButton::clicked, this,
          [this] { Guarded(this, [this] { btnFontDlgClick(); }); });

  FOKButton->SetName("OKButton");
  FOKButton->ModalResult = mrOk;
  FCancelButton->SetName("CancelButton");
  FCancelButton->ModalResult = mrCancel;
  // Enter is a line of the text while the focus is in it.
  SetDefaultButton(FOKButton);
  SetCancelButton(FCancelButton);

  FMenu->SetName("StringEditorMenu");
  FLoadItem->SetName("LoadItem");
  FSaveItem->SetName("SaveItem");
  FMenu->Items()->Add(FLoadItem);
  FMenu->Items()->Add(FSaveItem);
  Bind<&TStrEditDlg::LoadItemClick>(FLoadItem->OnClick, this);
  Bind<&TStrEditDlg::SaveItemClick>(FSaveItem->OnClick, this);

  auto* strip = new QHBoxLayout;
  strip->addWidget(FLineCount);
  strip->addStretch();
  strip->addWidget(FFontButton);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(FOKButton);
  buttons->addWidget(FCancelButton);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(strip);
  layout->addWidget(FMemo, 1);
  layout->addLayout(buttons);
  SetActiveControl(FMemo);
}

void TStrEditDlg::FormCreate() {
  SetCaption(LocaleStr(sLineEditor));
  FOKButton->SetCaption(LocaleStr(sLineEditorSave));
  FCancelButton->SetCaption(LocaleStr(sLineEditorCancel));
  FLoadItem->SetCaption(LocaleStr(sLoadFrom));
  FSaveItem->SetCaption(LocaleStr(sSaveTo));
  FLineCount->setText(ToQString(LocaleStr(sNoLines)));
  const QString font = ToQString(LocaleStr(sLineEditorFont));
  FFontButton->setToolTip(font);
  FFontButton->setAccessibleName(font);
  FMemo->setAccessibleName(ToQString(LocaleStr(sLineEditorLines)));
  FOpenDialog->SetName("OpenDialog");
  FSaveDialog->SetName("SaveDialog");
  for (TFileDialog* dialog :
       {static_cast<TFileDialog*>(FOpenDialog), static_cast<TFileDialog*>(FSaveDialog)})
    dialog->Filter = LocaleStr(sLineEditorFilter);
  FOpenDialog->DefaultExt = "TXT";
}

bool TStrEditDlg::Execute(TStrings& lines, const std::string& what) {
  const std::unique_ptr<TStrEditDlg> dialog(NewForm<TStrEditDlg>(nullptr));
  if (!what.empty()) dialog->FMemo->setAccessibleName(ToQString(what));
  dialog->FMemo->SetLines(lines);
  if (dialog->ShowModal() != mrOk) return false;
  dialog->FMemo->GetLines(lines);
  return true;
}

void TStrEditDlg::MemoChange(TObject*) {
  FLineCount->setText(ToQString(LocaleFormat(sLinesCount, FMemo->LineCount())));
}

void TStrEditDlg::btnFontDlgClick() {
  bool chosen = false;
  const QFont font = QFontDialog::getFont(&chosen, FMemo->font(), this);
  if (chosen) FMemo->setFont(font);
}

void TStrEditDlg::LoadItemClick(TObject*) {
  if (!FOpenDialog->Execute(this)) return;
  TStringList lines;
  LoadTextFile(FOpenDialog->FileName, lines);
  FMemo->SetLines(lines);
}

void TStrEditDlg::SaveItemClick(TObject*) {
  FSaveDialog->FileName = FOpenDialog->FileName;
  if (!FSaveDialog->Execute(this)) return;
  TStringList lines;
  FMemo->GetLines(lines);
  lines.SaveToFile(FSaveDialog->FileName);
}

}  // namespace wrenfold
