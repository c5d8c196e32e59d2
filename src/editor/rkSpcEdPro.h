// The settings editor with the special controls: spins, colours, dates, fonts, pictures, lists, hot
// keys.
#pragma once

#include "editor/rkSpcEditor.h"

namespace wrenfold {

class TLinesMenu;
class TPictureMenu;

class TSpcEditorPro : public TSpcEditor {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TSpcEditorPro(TComponent* owner = nullptr);
  ~TSpcEditorPro() override;

  // Every integer that no other kind claims gets a spin edit.
  bool SpinOveruse = false;

  // The local menus of lists and of pictures; made once.
  TPopupMenu* StringsMenu() const;
  TPopupMenu* PictureMenu() const;

 protected:
  const TRowRule* RowRule(const TPropInfo& property) const override;
  TRowContext RowContext(QWidget* parent) const override;
  void DoBeforeCreateControl(TPersistent& instance, const TPropInfo& property, QWidget* parent,
                             TNotifyEvent changeAction, TNewControlData& data,
                             bool& handled) override;
  void UpdateControlParams() override;

 private:
  TLinesMenu* CreateStringsEditorMenu();
  TPictureMenu* CreatePicEditorMenu();

  TLinesMenu* FStringsMenu;
  TPictureMenu* FPictureMenu;
};

}  // namespace wrenfold
