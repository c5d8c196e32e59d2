// The unit manager as an expert: settings, menu command, registration.
#include "experts/rkUnitMng.h"

#include "controls/rkIcons.h"
#include "experts/rkUnitForm.h"
#include "locale/rkLocale.h"
#include "manager/rkExpMng.h"

namespace wrenfold {

namespace {

class TOpenUnitForms : public TObject {
 public:
  std::vector<TUnitFormState> States;
};

}  // namespace

const TTypeInfo& TUnitManager::ClassInfo() {
  static const TTypeInfo info =
      Publish<TUnitManager>("TUnitManager", TSharedManager::ClassInfo())
          .Prop("DragModeAllowed", &TUnitManager::DragModeAllowed)
          .Label(sLabelDragModeAllowed)
          .Prop("CloseFormOnShowUnit", &TUnitManager::CloseFormOnShowUnit)
          .Label(sLabelCloseFormOnShowUnit)
          .Prop("FilterPanelVisible", &TUnitManager::FilterPanelVisible)
          .Label(sLabelFilterPanelVisible)
          .Prop("JumpToUnitsOnApllyFilter", &TUnitManager::JumpToUnitsOnApllyFilter)
          .Label(sLabelJumpToUnitsOnApplyFilter)
          .Prop("HistoryList", &TUnitManager::HistoryList)
          .Label(sLabelHistoryList)
          .Prop("HistoryStoredCount", &TUnitManager::HistoryStoredCount)
          .Label(sLabelHistoryStoredCount)
          .Prop("CloseUnitShortCut", &TUnitManager::CloseUnitShortCut)
          .Label(sLabelCloseUnitShortCut)
          .Prop("FilterUnitsShortCut", &TUnitManager::FilterUnitsShortCut)
          .Label(sLabelFilterUnitsShortCut)
          .Prop("MoveDownUnitShortCut", &TUnitManager::MoveDownUnitShortCut)
          .Label(sLabelMoveDownUnitShortCut)
          .Prop("MoveUpUnitShortCut", &TUnitManager::MoveUpUnitShortCut)
          .Label(sLabelMoveUpUnitShortCut)
          .Prop("ShowUnitShortCut", &TUnitManager::ShowUnitShortCut)
          .Label(sLabelShowUnitShortCut)
          .Prop("SortUnitsShortCut", &TUnitManager::SortUnitsShortCut)
          .Label(sLabelSortUnitsShortCut);
  return info;
}

TUnitManager::TUnitManager() : HistoryList(std::make_unique<TStringList>()) {
  AddStoredData(this, "UnitManagerData", LocaleStr(sUnitManagerExpert), MakePropNames(ClassInfo()));
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
  ShowNewForm();
}

TUnitForm* TUnitManager::ShowNewForm() {
  std::erase_if(FForms, [](const QPointer<QWidget>& form) { return form.isNull(); });
  auto* form = NewForm<TUnitForm>(&Application(), this);
  FForms.emplace_back(form);
  form->Show();
  return form;
}

std::unique_ptr<TObject> TUnitManager::CloseWindows() {
  auto windows = std::make_unique<TOpenUnitForms>();
  for (const QPointer<QWidget>& widget : std::vector(FForms)) {
    auto* form = dynamic_cast<TUnitForm*>(widget.data());
    if (form == nullptr || !form->isVisible()) continue;
    windows->States.push_back(form->State());
    if (form->Close()) delete widget.data();
  }
  return windows->States.empty() ? nullptr : std::move(windows);
}

void TUnitManager::ReopenWindows(const TObject& windows) {
  for (const TUnitFormState& state : dynamic_cast<const TOpenUnitForms&>(windows).States)
    ShowNewForm()->Restore(state);
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
