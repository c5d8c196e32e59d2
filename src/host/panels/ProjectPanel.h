// The project tree: the open project's units, forms and files.
#pragma once

#include <QLineEdit>
#include <QTreeWidget>
#include <functional>
#include <string>

#include "platform/widgets/Forms.h"
#include "platform/widgets/Menus.h"
#include "project/Project.h"

namespace wrenfold {

class TProjectPanel : public TForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TProjectPanel(TComponent* owner, QWidget* parent = nullptr);

  // Shows the project, or none. The project is not kept. Other projects of its group stand around
  // it (the group's name is empty when it has none); the units of these are listed when one looks.
  void ShowProject(const TProject* project, const std::string& group = {},
                   const std::vector<std::string>& projects = {});
  // Marks the module of that file, or takes its mark away.
  void ShowModified(const std::string& fileName, bool modified);
  QTreeWidget& Tree() { return *FTree; }
  QLineEdit& Filter() { return *FFilter; }

  // The user opens a file of the tree (forms by their form files).
  std::function<void(const std::string& fileName)> OnOpen;

 private:
  void ListUnits(QTreeWidgetItem* project);
  void FilterChanged(const QString& text);
  void OpenItem(QTreeWidgetItem* item);
  void OpenSelected(TObject* sender);
  void CopyPath(TObject* sender);
  void MenuPopup(TObject* sender);

  QLineEdit* FFilter;
  QTreeWidget* FTree;
  QTreeWidgetItem* FRoot = nullptr;  // of the open project
};

}  // namespace wrenfold
