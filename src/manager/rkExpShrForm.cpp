// Windows that keep their placement in their expert's settings.
#include "manager/rkExpShrForm.h"

#include "locale/rkLocale.h"
#include "platform/widgets/ShortCuts.h"

namespace wrenfold {

const TTypeInfo& TFormSetting::ClassInfo() {
  static const TTypeInfo info =
      Publish<TFormSetting>("TFormSetting", TSpcObject::ClassInfo())
          .Prop("AutoSavePlacement", &TFormSetting::AutoSavePlacement)
          .Label(sLabelAutoSavePlacement)
          .Prop("FormPlacement", &TFormSetting::FormPlacement)
          .Label(sLabelFormPlacement)
          .Prop("SavePlacementShortCut", &TFormSetting::SavePlacementShortCut)
          .Label(sLabelSavePlacementShortCut);
  return info;
}

const TTypeInfo& TSharedManager::ClassInfo() {
  static const TTypeInfo info =
      Publish<TSharedManager>("TSharedManager", TCustomExpert::ClassInfo())
          .Prop("FormSetting", &TSharedManager::FormSetting)
          .Label(sLabelFormSetting);
  return info;
}

const TTypeInfo& TSharedForm::ClassInfo() {
  static const TTypeInfo info = Publish<TSharedForm>("TSharedForm", TSmartForm::ClassInfo());
  return info;
}

void TSharedForm::SetProperties() {
  TSmartForm::SetProperties();
  const TFormSetting& setting = *FManager->FormSetting;
  scSavePlacement()->SetShortCut(TextToShortCut(setting.SavePlacementShortCut));
  SetPlacementText(setting.FormPlacement);
}

void TSharedForm::ReadFormData() {
  TSmartForm::ReadFormData();
  FManager->FormSetting->FormPlacement = Placement();
}

void TSharedForm::DoClose(TCloseAction& action) {
  AutoSave = FManager->FormSetting->AutoSavePlacement;
  TSmartForm::DoClose(action);
}

}  // namespace wrenfold
