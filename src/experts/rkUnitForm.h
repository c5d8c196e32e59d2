// The unit manager's window.
#pragma once

#include <QComboBox>
#include <QListView>
#include <QPointer>
#include <functional>
#include <vector>

#include "experts/rkUnitList.h"
#include "experts/rkUnitMng.h"
#include "ide/rkOTAUtils.h"
#include "platform/widgets/Menus.h"
#include "platform/widgets/TabControl.h"
#include "platform/widgets/Timer.h"
#include "platform/widgets/ToolBar.h"

namespace wrenfold {

class TUnitListModel;
class TUnitListBox;

// The row of page tabs of the code editor window, or null.
TTabControl* FindEditorTabControl();

// While the window is open, the other forms of the application are disabled, although it is no
// modal window: the list mirrors the editor's tabs, which nobody else may change meanwhile.
class TUnitForm : public TSharedForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  // The manager owns the settings and outlives the window.
  TUnitForm(TComponent* owner, TUnitManager* manager);
  ~TUnitForm() override;

  // Shows the pages as they are now; an empty list without a code editor.
  void FillUnitList();
  // Shows the current page in the editor.
  void OpenUnit();
  // Closes the selected pages: by their modules, or, where the name does not say which page is
  // meant or the project would go with its source, page after page, one every 100 ms.
  void CloseUnits();
  // Shows the pages that have the text of the filter box in their names, all for no text.
  void FilterUnits();
  void SortUnits();
  void MoveItems(int delta);

  const TUnitList& Units() const { return FUnits; }
  QListView* ListBox() const;
  QComboBox* FilterBox() const { return FFilterBox; }
  bool FilterPanelShown() const { return !FFilterPanel->isHidden(); }

  void SetProperties() override;

 protected:
  void DoCreate() override;
  void DoShow() override;
  void DoClose(TCloseAction& action) override;
  void GetFormData() override;
  void SetFormData() override;
  void ExitExecute() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  friend class TUnitListBox;

  // The parts of the window.
  void CreateActions();
  void CreateToolBar();
  void CreateControls();
  void CreateSettingsMenu();
  void UpdateFilterControl(bool visible);
  void SetDragMode(bool automatic);
  bool ListKey(int key);
  bool FilterKey(int key);

  // The editor behind the list.
  bool FindEditWindowControls();
  void RefreshSourceEditors();
  void DoFillUnitList();
  void ShowPage(const std::function<void()>& show);
  void ActivateTab(int index);
  void CloseOpenedUnit();
  void CloseByModules(const std::vector<int>& pending);
  bool HasDublicate(const std::vector<int>& pending) const;
  bool HasProjectModule(const std::vector<int>& pending) const;
  bool ConfirmWindowOpen() const;
  // Pages are being closed: the order of the tabs must stay as it is.
  bool IsClosing() const { return FTicking || FTimer->Enabled(); }
  void AssignItems();
  void SaveHistory(const std::string& text);
  const std::string& TextOf(int index) const;

  // The list and its picture in the list box.
  void TakeSelection();
  void ShowUnitsInList();
  void FocusList();
  void DropUnits(int target);

  // The rest of the environment.
  void HoldForms();
  void GiveFormsBack();
  void FocusEditor();

  void ShowClick(TObject* sender);
  void CloseClick(TObject* sender);
  void MoveUpClick(TObject*) { MoveItems(-1); }
  void MoveDownClick(TObject*) { MoveItems(1); }
  void SortClick(TObject*) { SortUnits(); }
  void FilterClick(TObject* sender);
  void RefreshClick(TObject* sender);
  void UpdateNeedsUnits(TObject* sender);
  void UpdateNeedsAllUnits(TObject* sender);
  void UpdateFilterAction(TObject* sender);
  void ExitMouseDown(TObject* sender, QMouseEvent& event);
  void SettingsPopup(TObject* sender);
  void SettingClick(TObject* sender);
  void TimerTimer(TObject* sender);

  struct THeldForm {
    QPointer<QWidget> Form;
    bool Enabled;
  };

  TUnitManager* FManager;
  TUnitList FUnits;
  TSourceEditors FSourceEditors;
  TEditorIndex FEditorIndex;
  std::vector<int> FPending;  // the tabs that the timer has still to close, ascending
  bool FTicking = false;
  bool FMouseExit = false;

  QPointer<TTabControl> FTabControl;
  QPointer<QWidget> FEditor;
  std::vector<THeldForm> FHeldForms;
  QPointer<QWidget> FActiveBefore;

  TImageList* FImages = nullptr;
  TToolBar* FToolBar = nullptr;
  QWidget* FFilterPanel = nullptr;
  QComboBox* FFilterBox = nullptr;
  TUnitListModel* FListModel = nullptr;
  TUnitListBox* FListBox = nullptr;
  TPopupMenu* FSettingsMenu = nullptr;
  TTimer* FTimer = nullptr;
};

}  // namespace wrenfold
