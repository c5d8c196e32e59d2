// The unit manager's window.
#pragma once

#include <QComboBox>
#include <QListView>
#include <QPointer>
#include <string>
#include <vector>

#include "experts/rkHeldForms.h"
#include "experts/rkPageClosing.h"
#include "experts/rkUnitList.h"
#include "experts/rkUnitMng.h"
#include "ide/rkOTAUtils.h"
#include "platform/widgets/Menus.h"
#include "platform/widgets/TabControl.h"
#include "platform/widgets/ToolBar.h"

namespace wrenfold {

class TUnitListModel;
class TUnitListBox;
struct TUnitMarks;

// The row of page tabs of the code editor window, or null.
TTabControl* FindEditorTabControl();

// How a window stands, to open another one like it.
struct TUnitFormState {
  std::string Placement, Filter, Typed;
  bool FilterPanelShown = false;
  TSelUnits Selected;
  int Current = -1;
};

// While the window is open, the other forms of the application are disabled, although it is no
// modal window: the list mirrors the editor's tabs, which nobody else may change meanwhile.
class TUnitForm : public TSharedForm, private TPageClosing::ISteps {
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

  TUnitFormState State();
  // Selection and current unit count as long as the list has them.
  void Restore(const TUnitFormState& state);

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
  bool ControlEvent(QObject* watched, const QEvent& event);
  bool ListKey(int key);
  bool FilterKey(int key);

  // The editor behind the list.
  bool FindEditWindowControls();
  void RefreshSourceEditors();
  void DoFillUnitList();
  // Shows the page of an item, by its source editor or by its tab; an item whose page has gone
  // shows nothing.
  void OpenSelectedUnit(int index, bool byEditor);
  void ActivateTab(int tab);
  void CloseOpenedUnit();
  void CloseByModule(const TUnitList::TItem& page) override;
  void CloseByEditor(const TUnitList::TItem& page) override;
  bool ConfirmWindowOpen() const override;
  void PagesClosed() override;
  bool HasDublicate(const TSelUnits& pending) const;
  bool HasProjectModule(const TSelUnits& pending) const;
  int FindTab(const TUnitList::TItem& item) const;
  bool IsStale(const TSelUnits& indices) const;
  void AssignItems();
  void SaveHistory(const std::string& text);
  // Shows the pages with the filter text; the user may still be typing it.
  void NarrowUnits(const std::string& filter);
  const TUnitList::TItem& Item(int index) const;
  const std::string& TextOf(int index) const { return Item(index).Text; }
  TUnitMarks MarksOf(int index) const;

  // The list and its picture in the list box.
  void TakeSelection();
  void ShowUnitsInList();
  void UpdateCaption();
  void FocusList();
  bool DragOver(int target);
  void DropUnits(int target);

  // The rest of the environment.
  void FocusEditor();

  void FilterTyped(const QString& text);
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

  TUnitManager* FManager;
  TUnitList FUnits;
  std::string FFilter;     // what the list was narrowed to last
  bool FNarrowed = false;  // a refreshed list shows all, although sorting waits for an empty filter
  TSourceEditors FSourceEditors;
  TEditorIndex FEditorIndex;
  TPageClosing FClosing;
  THeldForms FHeldForms;
  bool FMouseExit = false;

  QPointer<TTabControl> FTabControl;
  QPointer<QWidget> FEditor;

  TImageList* FImages = nullptr;
  TToolBar* FToolBar = nullptr;
  QWidget* FFilterPanel = nullptr;
  QComboBox* FFilterBox = nullptr;
  TUnitListModel* FListModel = nullptr;
  TUnitListBox* FListBox = nullptr;
  TPopupMenu* FSettingsMenu = nullptr;
};

}  // namespace wrenfold
