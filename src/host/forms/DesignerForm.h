// The window of a designed form: drawn to be changed, as text, and its components as a tree.
#pragma once

#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QSplitter>
#include <QTabWidget>
#include <QTreeWidget>
#include <functional>
#include <memory>

#include "designer/paint/DesignSurface.h"
#include "host/documents/Modules.h"
#include "platform/widgets/Forms.h"

namespace wrenfold {

class TDesignerForm : public TForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  // The form must have been read.
  TDesignerForm(TComponent* owner, TFormEditor& editor);
  ~TDesignerForm() override;

  TFormEditor& Editor() const { return FEditor; }
  TDesignSurface& Surface() const { return *FSurface; }
  // Components or properties may be others now.
  void Update();
  // The designer's selection changed.
  void ShowSelection();

  // The commands of the local menu, over the selection.
  void Undo();
  void Redo();
  void CutComponents();
  void CopyComponents();
  // Into the selected component if it can hold others, else beside it.
  void PasteComponents();
  void DeleteComponents();
  void SelectAllComponents();
  void ArrangeComponents(TArrangement arrangement);
  void BringComponentsToFront() { SetDepth(true); }
  void SendComponentsToBack() { SetDepth(false); }
  void FitIntoWindow();
  void ShowOwnSize();

 private:
  void AddItems(QTreeWidgetItem* parent, const TDesignComponent& component);
  void AddCommands();
  void AddTabs(QSplitter& splitter);
  bool LostSelection() const;
  void ItemSelected();
  void ShowText();
  void MarkLines();
  void ShowState();
  void Select(const TComponentList& selection);
  void StoreChanges(const std::string& step, const std::vector<TBoundsChange>& changes);
  void SetDepth(bool front);
  // The form's own, writable components that are selected; without the root when it is asked so.
  std::vector<TDesignComponent*> Selected(bool withRoot) const;
  TDesignComponent& PasteTarget() const;
  // Tells everybody who shows the selection.
  void TellSelection();

  TFormEditor& FEditor;
  std::unique_ptr<TFormCatalog> FCatalog;
  QTreeWidget* FTree;
  QTabWidget* FTabs;
  QScrollArea* FScroll;
  TDesignSurface* FSurface;
  QPlainTextEdit* FText;
  QLabel* FState;
  const TFormDocument* FShown = nullptr;
  bool FFollowing = false;
};

}  // namespace wrenfold
