// The window of a designed form: drawn to be changed, as text, and its components as a tree.
#pragma once

#include <QAction>
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

  // The keys of the drawn form, those of its commands too, are its own.
  bool ClaimsKey(const QKeyEvent& key) const override;
  TFormEditor& Editor() const { return FEditor; }
  TDesignSurface& Surface() const { return *FSurface; }
  // Whether the form is composed with the form of that class.
  bool Uses(std::string_view className) const { return FCatalog->AskedFor(className); }
  // Components or properties may be others now.
  void Update();
  // The form is about to be given up and read again: nothing of it is shown until Update.
  void Forget();
  // The designer's selection changed.
  void ShowSelection();

  // The form's own, writable components that are selected; without the root when it is asked so.
  std::vector<TDesignComponent*> Selected(bool withRoot) const;

  // Whether there are components in the clipboard.
  bool CanPaste() const { return FCanPaste; }

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
  void AddItems(QTreeWidgetItem* parent, const TDesignNode& node);
  void UpdateCommands();
  void ClipboardChanged();
  TDesignComponent* TakeOver(const TDesignNode& node);
  void TakeOver(const std::vector<std::string>& names);
  void AddCommands();
  void AddTabs(QSplitter& splitter);
  bool LostSelection() const;
  void ItemSelected();
  void ShowText();
  void MarkLines();
  void ShowState();
  void Select(const TComponentList& selection);
  void StoreChanges(const std::string& step, const std::vector<TBoundsChange>& changes,
                    bool continues);
  void SetDepth(bool front);
  TDesignComponent& PasteTarget() const;
  // Tells everybody who shows the selection.
  void TellSelection();

  TFormEditor& FEditor;
  std::unique_ptr<TModuleForms> FCatalog;
  QTreeWidget* FTree;
  QTabWidget* FTabs;
  QScrollArea* FScroll;
  TDesignSurface* FSurface;
  QPlainTextEdit* FText;
  QLabel* FState;
  struct TCommand {
    QAction* Action;
    bool (*Applies)(const TDesignerForm& form);
  };
  std::vector<TCommand> FCommands;
  const TFormDocument* FShown = nullptr;
  bool FFollowing = false;
  bool FCanPaste = false;
};

}  // namespace wrenfold
