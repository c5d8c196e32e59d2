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
#include "host/documents/Saving.h"
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
  // Asks for files of pictures; must be set before one is edited.
  const TFileDialogs* FileDialogs = nullptr;

  // The commands of the local menu, over the current row.
  void EditValue();
  void ResetValue();
  void CopyValue();
  void AddItem();
  void DeleteItem();
  void MoveItemUp() { MoveItem(-1); }
  void MoveItemDown() { MoveItem(1); }
  void ShowDesigner();

 protected:
  // Return in the list of properties edits.
  bool eventFilter(QObject* receiver, QEvent* event) override;
  // The desktop turned light or dark: the rows have colours of their own.
  void changeEvent(QEvent* event) override;

 private:
  void LayOut();
  void LayOutGrid();
  void MakeMenu();
  void FillComponents();
  void FillGrid();
  bool UpdateGrid(const std::vector<TInspectedRow>& rows);
  void ChooseRow(const TInspectedRow& place);
  void ShowRow(QTreeWidgetItem& item, const TInspectedRow& row);
  void ApplyFilter();
  std::vector<TDesignComponent*> Chosen() const;
  const TInspectedRow* RowOf(const QTreeWidgetItem* item) const;
  const TInspectedRow* CurrentRow() const { return RowOf(FGrid->currentItem()); }
  std::vector<std::string> ChoicesOf(const TInspectedRow& row) const;

  void ComponentChosen(int index);
  void ValueEdited(QTreeWidgetItem* item, int column);
  void ItemDoubleClicked(QTreeWidgetItem* item);
  void EnterPressed();
  void Put(QTreeWidgetItem* item, const std::string& text);
  // Raises EConvertError when the form has no such component.
  void RequireComponent(const TInspectedRow& row, const std::string& name) const;
  void PutFont(const TInspectedRow& row);
  void PutPicture(const TInspectedRow& row);
  void OpenEvent(QTreeWidgetItem* item);
  void Tell(QTreeWidgetItem* item, const std::string& trouble);
  void Change(const std::function<std::optional<std::string>(const TDesignComponent&)>& value,
              const std::string& path);
  // Changes the collection that the current row is or stands in, and goes to one of its items, or
  // to the row of the whole when that is negative.
  void ChangeItems(const std::function<std::string(std::string_view collection)>& change, int item);
  void MoveItem(int distance);
  int ItemCount(const TInspectedRow& row) const;

  void MenuPopup(TObject* sender);
  void MenuClick(TObject* sender);
  void UpdateMenu();

  TFormEditor* FEditor = nullptr;
  QComboBox* FComponents;
  QLineEdit* FFilter;
  QToolButton* FChangedOnly;
  QTabBar* FPages;
  QTreeWidget* FGrid;
  std::vector<TInspectedRow> FRows;
  std::optional<TInspectedRow> FKept;    // the current row, while others are made
  std::vector<QTreeWidgetItem*> FItems;  // one for each row
  std::set<std::string> FUnfolded;       // captions of rows that the user unfolded
  bool FFilling = false;
  bool FFillLater = false;
  bool FEditing = false;  // the grid must keep its items
};

}  // namespace wrenfold
