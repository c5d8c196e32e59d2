// The message area: what the workbench and its packages have to say.
#pragma once

#include <QTreeWidget>
#include <functional>

#include "host/documents/DocumentViews.h"
#include "platform/widgets/Forms.h"
#include "platform/widgets/Menus.h"

namespace wrenfold {

class TMessagePanel : public TForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TMessagePanel(TComponent* owner, QWidget* parent = nullptr);

  // With a file and a line (from 1; 0: none) the message leads there.
  void Add(TMessageKind kind, const std::string& text, const std::string& fileName = {},
           int line = 0);
  // A message that places of files stand under, as a tree. Answers its index, which holds until
  // Clear.
  int AddGroup(const std::string& text);
  void AddToGroup(int group, const std::string& fileName, int line, const std::string& text);
  void NameGroup(int group, const std::string& text);
  void Clear();
  QTreeWidget& List() { return *FList; }
  int Count() const { return FList->topLevelItemCount(); }
  std::string Text(int index) const;

  // A warning or an error came.
  std::function<void()> OnTrouble;
  std::function<void(const std::string& fileName, int line)> OnOpen;

 private:
  void MenuPopup(TObject* sender);
  void CopyAll(TObject* sender);
  void ClearAll(TObject* sender) { (void)sender, Clear(); }
  void Open(QTreeWidgetItem* item);

  QTreeWidget* FList;
};

}  // namespace wrenfold
