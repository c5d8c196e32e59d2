// The object inspector: properties and events of the selected components of a designed form.
#pragma once

#include <QComboBox>
#include <QLineEdit>
#include <QTabBar>
#include <QToolButton>
#include <QTreeWidget>
#include <functional>
#include <set>

#include "designer/model/PropertyRows.h"
#include "host/documents/Modules.h"
#include "platform/widgets/Forms.h"
#include "platform/widgets/Menus.h"

namespace wrenfold {

class TPropertyInspector : public TForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TPropertyInspector(TComponent* owner, QWidget* parent = nullptr);

  // Shows a form (its selected components, else the root), or nothing. Nothing must be shown before
  // the form goes.
  void ShowForm(TFormEditor* editor);
  // The same form; its components, properties or selection may be others.
  void Refresh();
  TFormEditor* Editor() const { return FEditor; }

  QComboBox& Components() { return *FComponents; }
  QLineEdit& Filter() { return *FFilter; }
  QToolButton& ChangedOnly() { return *FChangedOnly; }
  QTabBar& Pages() { return *FPages; }
  QTreeWidget& Grid() { return *FGrid; }

  // The methods that fit an event of the form shown, by name.
  std::function<std::vector<std::string>(TFormEditor&, const TInspectedRow& event)> MethodsFor;
  // Goes to the method, which is written where it is not there yet. False, the user told, when it
  // cannot be.
  std::function<bool(TFormEditor&, const TInspectedRow& event, const std::string& method)>
      OpenMethod;

 private:
  void LayOut();
  void MakeMenu();
  void FillComponents();
  void FillGrid();
  bool UpdateGrid(const std::vector<TInspectedRow>& rows);
  void ShowRow(QTreeWidgetItem& item, const TInspectedRow& row);
  void ApplyFilter();
  std::vector<TDesignComponent*> Chosen() const;
  const TInspectedRow* RowOf(const QTreeWidgetItem* item) const;
  std::vector<std::string> ChoicesOf(const TInspectedRow& row) const;

  void ComponentChosen(int index);
  void ValueEdited(QTreeWidgetItem* item, int column);
  void ItemDoubleClicked(QTreeWidgetItem* item);
  void Put(QTreeWidgetItem* item, const std::string& text);
  void PutFont(const TInspectedRow& row);
  void OpenEvent(QTreeWidgetItem* item);
  void Tell(QTreeWidgetItem* item, const std::string& trouble);
  void Change(const std::function<std::optional<std::string>(const TDesignComponent&)>& value,
              const std::string& path);

  void MenuPopup(TObject* sender);
  void EditValue(TObject* sender);
  void ResetValue(TObject* sender);
  void CopyValue(TObject* sender);
  void ShowDesigner(TObject* sender);

  TFormEditor* FEditor = nullptr;
  QComboBox* FComponents;
  QLineEdit* FFilter;
  QToolButton* FChangedOnly;
  QTabBar* FPages;
  QTreeWidget* FGrid;
  std::vector<TInspectedRow> FRows;
  std::vector<QTreeWidgetItem*> FItems;  // one for each row
  std::set<std::string> FUnfolded;       // captions of rows that the user unfolded
  bool FFilling = false;
  bool FEditing = false;  // the grid must keep its items
};

}  // namespace wrenfold
