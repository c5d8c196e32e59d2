// The object inspector: the components and stored properties of a designed form.
#pragma once

#include <QComboBox>
#include <QTreeWidget>
#include <functional>

#include "host/documents/Modules.h"
#include "platform/widgets/Forms.h"
#include "platform/widgets/Menus.h"

namespace wrenfold {

class TPropertyInspector : public TForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TPropertyInspector(TComponent* owner, QWidget* parent = nullptr);

  // Shows a form (its selected component, else the root), or nothing. Nothing must be shown before
  // the form goes.
  void ShowForm(TFormEditor* editor);
  TFormEditor* Editor() const { return FEditor; }

  QComboBox& Components() { return *FComponents; }
  QTreeWidget& Grid() { return *FGrid; }

 private:
  void FillComponents();
  void FillGrid();
  TDesignComponent* Chosen() const;
  void ComponentChosen(int index);
  void ValueEdited(QTreeWidgetItem* item, int column);
  void MenuPopup(TObject* sender);
  void CopyValue(TObject* sender);
  void ShowDesigner(TObject* sender);

  TFormEditor* FEditor = nullptr;
  QComboBox* FComponents;
  QTreeWidget* FGrid;
  bool FFilling = false;
};

}  // namespace wrenfold
