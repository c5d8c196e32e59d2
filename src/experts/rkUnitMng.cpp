// The unit manager as an expert: settings, menu command, registration.
#include "experts/rkUnitMng.h"

#include "controls/rkIcons.h"
#include "experts/rkUnitForm.h"
#include "locale/rkLocale.h"
#include "manager/rkExpMng.h"

namespace wrenfold {

namespace {

std::string SettingLabels() {
  return MakePropNames("TUnitManager",
                       {{"DragModeAllowed", sLabelDragModeAllowed},
                        {"CloseFormOnShowUnit", sLabelCloseFormOnShowUnit},
                        {"FilterPanelVisible", sLabelFilterPanelVisible},
                        {"JumpToUnitsOnApllyFilter", sLabelJumpToUnitsOnApplyFilter},
                        {"HistoryList", sLabelHistoryList},
                        {"HistoryStoredCount", sLabelHistoryStoredCount},
                        {"CloseUnitShortCut", sLabelCloseUnitShortCut},
                        {"FilterUnitsShortCut", sLabelFilterUnitsShortCut},
                        {"MoveDownUnitShortCut", sLabelMoveDownUnitShortCut},
                        {"MoveUpUnitShortCut", sLabelMoveUpUnitShortCut},
                        {"ShowUnitShortCut", sLabelShowUnitShortCut},
                        {"SortUnitsShortCut", sLabelSortUnitsShortCut}});
}

}  // namespace

const TTypeInfo& TUnitManager::ClassInfo() {
  static const TTypeInfo info =
      Publish<TUnitManager>("TUnitManager", TSharedManager::ClassInfo())
          .Prop("DragModeAllowed", &TUnitManager::DragModeAllowed)
          .Prop("CloseFormOnShowUnit", &TUnitManager::CloseFormOnShowUnit)
          .Prop("FilterPanelVisible", &TUnitManager::FilterPanelVisible)
          .Prop("JumpToUnitsOnApllyFilter", &TUnitManager::JumpToUnitsOnApllyFilter)
          .Prop("HistoryList", &TUnitManager::HistoryList)
          .Prop("HistoryStoredCount", &TUnitManager::HistoryStoredCount)
          .Prop("CloseUnitShortCut", &TUnitManager::CloseUnitShortCut)
          .Prop("FilterUnitsShortCut", &TUnitManager::FilterUnitsShortCut)
          .Prop("MoveDownUnitShortCut", &TUnitManager::MoveDownUnitShortCut)
          .Prop("MoveUpUnitShortCut", &TUnitManager::MoveUpUnitShortCut)
          .Prop("ShowUnitShortCut", &TUnitManager::ShowUnitShortCut)
          .Prop("SortUnitsShortCut", &TUnitManager::SortUnitsShortCut);
  return info;
}

TUnitManager::TUnitManager() : HistoryList(std::make_unique<TStringList>()) {
  AddStoredData(this, "UnitManagerData", LocaleStr(sUnitManagerExpert), SettingLabels());
}

TUnitManager::~TUnitManager() {
  for (const QPointer<QWidget>& form : FForms) delete form.data();
}

void TUnitManager::Init(const TGetMenuItemData& getMenuItemData) {
  TExpMenuItemData& item = getMenuItemData("UnitManagerItem");
  item.Caption = LocaleStr(sUnitManager);
  item.ImageIndex = siUnitManager;
  item.HaveLineBefore = true;
  item.ShortCutText = "Ctrl+Shift+Q";
  Bind<&TUnitManager::ShowUnits>(item.OnExecute, this);
  Bind<&TUnitManager::CheckShownState>(item.OnUpdate, this);
}

void TUnitManager::ShowUnits(TObject*) {
  std::erase_if(FForms, [](const QPointer<QWidget>& form) { return form.isNull(); });
  auto* form = NewForm<TUnitForm>(&Application(), this);
  FForms.emplace_back(form);
  form->Show();
}

void TUnitManager::CheckShownState(TObject* sender) {
  const bool canShow = FindEditorTabControl() != nullptr;
  if (auto* item = dynamic_cast<TMenuItem*>(sender)) item->SetEnabled(canShow);
  if (auto* action = dynamic_cast<TAction*>(sender)) action->SetEnabled(canShow);
}

void RegisterUnitManager() {
  RegisterExpClass(TUnitManager::ClassInfo(), 5, "UnitManager", sUnitManagerExpert);
}

}  // namespace wrenfold
