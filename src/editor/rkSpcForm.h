// The window of the settings editor.
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSplitter>
#include <QStatusBar>
#include <QTimer>
#include <QTreeWidget>
#include <vector>

#include "editor/rkControlsArea.h"
#include "editor/rkSpcTreeView.h"
#include "platform/widgets/Actions.h"
#include "platform/widgets/Forms.h"
#include "platform/widgets/ToolBar.h"

namespace wrenfold {

class TSpcEditor;

// Belongs to an editor, which it does not outlive.
class TSpcForm : public TForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TSpcForm(TComponent* owner, TSpcEditor& editor);
  ~TSpcForm() override;

  TTreeView& Tree() const { return *FTree; }
  TControlsArea& Area() const { return *FArea; }
  QLineEdit& SearchField() const { return *FSearch; }
  QTreeWidget& JournalList() const { return *FJournal; }
  TAction* FindAction(std::string_view name) const { return FActions->FindAction(name); }

  // Texts in the language in force.
  void Retranslate();
  // A command of the editor's owner, at the end of the tool bar, by the number of its text.
  void AddCommand(const char* name, int textId, int image, TNotifyEvent run);
  // The number of properties, and what the selected node is.
  void SetPanels(const std::string& properties, const std::string& node);
  std::string Panel(int index) const;
  void JournalChanged();

  // What the actions are enabled by.
  static bool IsValidInsObj(const TTreeNode* node);
  static bool IsValidDelObj(const TTreeNode* node);
  static bool IsValidMoveObj(const TTreeNode* node, TNodeMotion motion);

  // The window's settings: where it stands, widths, folders.
  void LoadSetting();
  void SaveSetting() { WriteSetting(true); }
  bool CloseQuery() override;

 protected:
  void DoShow() override;
  void DoClose(TCloseAction& action) override;
  void changeEvent(QEvent* event) override;

 private:
  struct TActionRow;
  static const TActionRow ActionRows[];

  struct TCommand {
    TAction* Action;
    int TextId;
  };

  void MakeActions();
  void MakeToolBar();
  QWidget* MakeTreePane();
  QWidget* MakeJournalPane();
  void TakeOptions();
  void ActionExecute(TObject* sender);
  void ActionUpdate(TObject* sender);
  void SearchChanged();
  void PrepareSearch();
  void ShowHits(int hits, bool searching);
  void UndoSelectedEntry();
  void OpenRowMenu();
  void ToggleJournal();
  void WriteSetting(bool withPlacement);
  TTreeNode* Selected() const;

  TSpcEditor& FEditor;
  TActionList* FActions = nullptr;
  TImageList* FActionImages = nullptr;
  TToolBar* FToolBar = nullptr;
  TTreeView* FTree = nullptr;
  TControlsArea* FArea = nullptr;
  QLineEdit* FSearch = nullptr;
  QCheckBox* FChangedOnly = nullptr;
  QLabel* FHits = nullptr;
  QSplitter* FSplitter = nullptr;
  QSplitter* FJournalSplitter = nullptr;
  QWidget* FJournalPane = nullptr;
  QLabel* FJournalTitle = nullptr;
  QTreeWidget* FJournal = nullptr;
  QPushButton* FUndoEntry = nullptr;
  QStatusBar* FStatus = nullptr;
  QLabel* FPanels[2] = {};
  std::vector<TCommand> FCommands;
  QTimer FPrepare;
  bool FLoaded = false;
  std::string FPlacement;
};

}  // namespace wrenfold
