// The dialog that asks how many lines are read.
#pragma once

#include "controls/rkComCtrls.h"
#include "platform/widgets/Button.h"
#include "platform/widgets/Forms.h"

namespace wrenfold {

class TStrCountForm : public TForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TStrCountForm(TComponent* owner = nullptr);

  // What the user entered, any number.
  std::int32_t Count() const { return FCount->Value(); }
  void SetCount(std::int32_t count) { FCount->SetValue(count); }

 private:
  TButton* AddButton(const char* name, int textId, TModalResult result);
  TSpinEdit* FCount;
};

}  // namespace wrenfold
