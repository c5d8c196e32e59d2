// The window of a designed form: its components as a tree and its form file as text.
#pragma once

#include <QPlainTextEdit>
#include <QTreeWidget>
#include <functional>

#include "host/documents/Modules.h"
#include "platform/widgets/Forms.h"

namespace wrenfold {

class TDesignerForm : public TForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  // The form must have been read.
  TDesignerForm(TComponent* owner, TFormEditor& editor);

  TFormEditor& Editor() const { return FEditor; }
  // Components or properties may be others now.
  void Update();
  // The designer's selection changed.
  void ShowSelection();

 private:
  void AddItems(QTreeWidgetItem* parent, const TDesignComponent& component);
  void ItemSelected();

  TFormEditor& FEditor;
  QTreeWidget* FTree;
  QPlainTextEdit* FText;
  bool FFollowing = false;
};

}  // namespace wrenfold
