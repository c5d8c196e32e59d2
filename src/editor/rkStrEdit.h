// The dialog in which the lines of a list are edited as one text.
#pragma once

#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <string>

#include "controls/rkFileDialogs.h"
#include "controls/rkSmartForm.h"
#include "controls/rkStdCtrls.h"
#include "platform/widgets/Button.h"
#include "platform/widgets/Menus.h"

namespace wrenfold {

class TStrEditDlg : public TSmartForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TStrEditDlg(TComponent* owner = nullptr);

  // Lets the user edit the lines; false, and the lines as they were, when he cancels. `what` names
  // them for assistive programs.
  static bool Execute(TStrings& lines, const std::string& what);

  TMemo* Memo() const { return FMemo; }
  QLabel* LineCount() const { return FLineCount; }
  TButton* OKButton() const { return FOKButton; }
  TButton* CancelButton() const { return FCancelButton; }
  TPopupMenu* StringEditorMenu() const { return FMenu; }
  TMenuItem* LoadItem() const { return FLoadItem; }
  TMenuItem* SaveItem() const { return FSaveItem; }
  TOpenDialog* OpenDialog() const { return FOpenDialog; }
  TSaveDialog* SaveDialog() const { return FSaveDialog; }

 private:
  void MakeControls();
  void FormCreate();
  void MemoChange(TObject*);
  void LoadItemClick(TObject*);
  void SaveItemClick(TObject*);
  void btnFontDlgClick();

  TMemo* FMemo;
  QLabel* FLineCount;
  QToolButton* FFontButton;
  TButton *FOKButton, *FCancelButton;
  TPopupMenu* FMenu;
  TMenuItem *FLoadItem, *FSaveItem;
  TOpenDialog* FOpenDialog;
  TSaveDialog* FSaveDialog;
};

}  // namespace wrenfold
