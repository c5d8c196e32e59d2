#include "editor/rkRowMenus.h"

#include <QClipboard>
#include <QGuiApplication>

#include "controls/rkFileDialogs.h"
#include "controls/rkInputDlgs.h"
#include "controls/rkLines.h"
#include "controls/rkPictures.h"
#include "controls/rkTextFile.h"
#include "editor/rkSpcImage.h"
#include "foundation/rkAppUtils.h"
#include "locale/rkLocale.h"

namespace wrenfold {

struct TLinesMenu::TItem {
  int Caption;
  TCommand Command;
  bool NeedsSelected;  // a line must be selected
};
const TLinesMenu::TItem TLinesMenu::Commands[] = {
    {sMenuAddLine, &TLinesMenu::AddLine, false},
    {sMenuInsertLine, &TLinesMenu::InsertLine, true},
    {sMenuDeleteLine, &TLinesMenu::DeleteLine, true},
    {sMenuClearLines, &TLinesMenu::ClearLines, false},
    {sMenuEditText, &TLinesMenu::EditLine, true},
    {sMenuLoadLines, &TLinesMenu::LoadLines, false},
    {sMenuSaveLines, &TLinesMenu::SaveLines, false},
};

TLinesMenu::TLinesMenu(TComponent* owner) : TPopupMenu(owner) {
  for (const TItem& row : Commands) {
    auto* item = new TMenuItem(this);
    item->SetCaption(LocaleStr(row.Caption));  // again whenever it opens: the language may change
    Bind<&TLinesMenu::ItemClick>(item->OnClick, this);
    Items()->Add(item);
  }
  Bind<&TLinesMenu::Opening>(OnPopup, this);
}

ILines* TLinesMenu::Lines() const {
  return dynamic_cast<ILines*>(PopupComponent());
}

void TLinesMenu::UpdateItems() {
  const ILines* lines = Lines();
  TStringList texts;
  if (lines != nullptr) lines->GetLines(texts);
  const bool selected = lines != nullptr && lines->SelectedLine() >= 0;
  for (int i = 0; i < Items()->Count(); ++i) {
    const TItem& row = Commands[i];
    Items()->Items(i)->SetCaption(LocaleStr(row.Caption));
    const bool usable = !row.NeedsSelected || selected;
    const bool needsText = row.Command == &TLinesMenu::ClearLines;
    Items()->Items(i)->SetEnabled(lines != nullptr && usable && (!needsText || texts.Count() > 0));
  }
}

void TLinesMenu::ItemClick(TObject* sender) {
  auto* item = dynamic_cast<TMenuItem*>(sender);
  ILines* lines = Lines();
  if (item == nullptr || lines == nullptr) return;
  const TItem& row = Commands[item->MenuIndex()];
  if (row.NeedsSelected && lines->SelectedLine() < 0) return;
  (this->*row.Command)(*lines, WidgetOf(PopupComponent()));
}

void TLinesMenu::AddLine(ILines& lines, QWidget* widget) {
  std::string text;
  if (!InputSingleStrQuery(widget, LocaleStr(sMenuAddLine), LocaleStr(sEnterNewLine), text)) return;
  TStringList texts;
  lines.GetLines(texts);
  lines.InsertLine(texts.Count(), text);
}

void TLinesMenu::InsertLine(ILines& lines, QWidget* widget) {
  std::string text;
  const std::string caption = LocaleStr(sMenuInsertLine);
  if (!InputSingleStrQuery(widget, caption, LocaleStr(sEnterNewLine), text)) return;
  lines.InsertLine(lines.SelectedLine(), text);
}

void TLinesMenu::DeleteLine(ILines& lines, QWidget*) {
  lines.DeleteLine(lines.SelectedLine());
}

void TLinesMenu::ClearLines(ILines& lines, QWidget*) {
  if (MsgQuestion(LocaleStr(sDeleteAllLinesQuestion)) == mbYes) lines.SetLines(TStringList());
}

void TLinesMenu::EditLine(ILines& lines, QWidget* widget) {
  TStringList texts;
  lines.GetLines(texts);
  const int selected = lines.SelectedLine();
  std::string text = texts[selected];
  const std::string caption = LocaleStr(sEditLineCaption);
  if (InputSingleStrQuery(widget, caption, LocaleStr(sTextForEditing), text))
    lines.PutLine(selected, text);
}

void TLinesMenu::LoadLines(ILines& lines, QWidget* widget) {
  TOpenDialog dialog;
  dialog.Filter = LocaleStr(sLinesFilter);
  if (!dialog.Execute(widget)) return;
  TStringList texts;
  LoadTextFile(dialog.FileName, texts);
  lines.SetLines(texts);
}

void TLinesMenu::SaveLines(ILines& lines, QWidget* widget) {
  TSaveDialog dialog;
  dialog.Filter = LocaleStr(sLinesFilter);
  dialog.DefaultExt = "txt";
  if (!dialog.Execute(widget)) return;
  TStringList texts;
  lines.GetLines(texts);
  texts.SaveToFile(dialog.FileName);
}

// What a command of the picture menu needs before it can be chosen.
enum TPictureNeed : std::uint8_t { pnNothing, pnPicture, pnClipboardPicture, pnClipboard };

namespace {

bool Offered(TPictureNeed need, const TSpcImage& image) {
  switch (need) {
    case pnNothing:
      return true;
    case pnPicture:
      return !image.Empty();
    case pnClipboardPicture:
    case pnClipboard:
      return ClipboardHasPicture();
  }
  return false;
}

}  // namespace

struct TPictureMenu::TItem {
  int Caption;
  TSpcImage::TCommand Command;  // null: what concerns the clipboard alone
  TPictureNeed Need;
  bool Changes;
};
const TPictureMenu::TItem TPictureMenu::Commands[] = {
    {sMenuLoadPicture, &TSpcImage::LoadPicture, pnNothing, true},
    {sMenuPastePicture, &TSpcImage::PastePicture, pnClipboardPicture, true},
    {sMenuSavePicture, &TSpcImage::SavePicture, pnPicture, false},
    {sMenuCopyPicture, &TSpcImage::CopyPicture, pnPicture, false},
    {sMenuClearPicture, &TSpcImage::ClearPicture, pnPicture, true},
    {sMenuClearClipboard, nullptr, pnClipboard, false},
};

TPictureMenu::TPictureMenu(TComponent* owner) : TPopupMenu(owner) {
  for (const TItem& row : Commands) {
    auto* item = new TMenuItem(this);
    item->SetCaption(LocaleStr(row.Caption));  // again whenever it opens: the language may change
    Bind<&TPictureMenu::ItemClick>(item->OnClick, this);
    Items()->Add(item);
  }
  Bind<&TPictureMenu::Opening>(OnPopup, this);
}

TSpcImage* TPictureMenu::Image() const {
  return dynamic_cast<TSpcImage*>(PopupComponent());
}

void TPictureMenu::UpdateItems() {
  const TSpcImage* image = Image();
  for (int i = 0; i < Items()->Count(); ++i) {
    const TItem& row = Commands[i];
    Items()->Items(i)->SetCaption(LocaleStr(row.Caption));
    const bool allowed = image != nullptr && (image->Enabled() || !row.Changes);
    Items()->Items(i)->SetEnabled(allowed && Offered(row.Need, *image));
  }
}

void TPictureMenu::ItemClick(TObject* sender) {
  auto* item = dynamic_cast<TMenuItem*>(sender);
  TSpcImage* image = Image();
  if (item == nullptr || image == nullptr) return;
  const TItem& row = Commands[item->MenuIndex()];
  if (row.Command != nullptr) image->Run(row.Command);
  else QGuiApplication::clipboard()->clear();
}

}  // namespace wrenfold
