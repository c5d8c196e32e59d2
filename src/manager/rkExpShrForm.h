// Windows whose placement stands in the settings of the expert that shows them.
#pragma once

#include <memory>
#include <string>

#include "manager/rkCustomExpert.h"
#include "controls/rkSmartForm.h"

namespace wrenfold {

// The placement settings of one expert window.
class TFormSetting : public TSpcObject {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  bool AutoSavePlacement = true;
  std::string FormPlacement;  // empty: never placed
  TShortCutString SavePlacementShortCut = TShortCutString("Ctrl+S");
};

// An expert that owns the placement settings of its window.
class TSharedManager : public TCustomExpert {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TSharedManager() : FormSetting(std::make_unique<TFormSetting>()) {}

  std::unique_ptr<TFormSetting> FormSetting;
};

// The window of such an expert. It must not outlive the expert.
class TSharedForm : public TSmartForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TSharedForm(TComponent* owner, TSharedManager* manager) : TSmartForm(owner), FManager(manager) {}

  void SetProperties() override;
  void ReadFormData() override;

 protected:
  // Closing captures the placement when the settings say so at that time.
  void DoClose(TCloseAction& action) override;

 private:
  TSharedManager* FManager;
};

}  // namespace wrenfold
