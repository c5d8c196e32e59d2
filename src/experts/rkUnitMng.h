// The unit manager: the expert that offers a window of the editor's open pages.
#pragma once

#include <QPointer>
#include <cstdint>
#include <vector>

#include "manager/rkExpShrForm.h"

namespace wrenfold {

class TUnitForm;

// The expert is its own settings object. The misspelt name of one property is the key that users'
// settings are stored under.
class TUnitManager : public TSharedManager {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  // Enters itself among the stored settings.
  TUnitManager();
  // Closes its windows.
  ~TUnitManager() override;

  void Init(const TGetMenuItemData& getMenuItemData) override;
  std::unique_ptr<TObject> CloseWindows() override;
  void ReopenWindows(const TObject& windows) override;

  // Shows a new window.
  void ShowUnits(TObject* sender);
  // Enables the menu item or action when there is a code editor.
  void CheckShownState(TObject* sender);

  bool DragModeAllowed = false;
  bool CloseFormOnShowUnit = false;
  bool FilterPanelVisible = false;
  bool JumpToUnitsOnApllyFilter = false;
  std::unique_ptr<TStringList> HistoryList;
  std::int32_t HistoryStoredCount = 10;
  TShortCutString CloseUnitShortCut = "Del";
  TShortCutString FilterUnitsShortCut = "Alt+F";
  TShortCutString MoveDownUnitShortCut = "Alt+Right";
  TShortCutString MoveUpUnitShortCut = "Alt+Left";
  TShortCutString ShowUnitShortCut = "Alt+S";
  TShortCutString SortUnitsShortCut = "Alt+R";

 private:
  TUnitForm* ShowNewForm();
  std::vector<QPointer<QWidget>> FForms;
};

// Enters the expert into the registry, as group 5.
void RegisterUnitManager();

}  // namespace wrenfold
