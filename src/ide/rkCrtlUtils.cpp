// Queries on the environment's windows and controls.
#include "ide/rkCrtlUtils.h"

#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/Desktop.h"

namespace wrenfold {

TForm* GetActiveForm() {
  return Screen().ForegroundForm();
}

TForm* GetActiveForm(std::string_view caption) {
  TForm* form = GetActiveForm();
  return form != nullptr && EqualText(form->Caption(), caption) ? form : nullptr;
}

void RepaintControl(TControl* control, TRepaintFlags flags) {
  if (control == nullptr) return;
  RedrawWindow(control->Widget(), flags.Contains(rfAllChildren), flags.Contains(rfUpdateNow));
}

void BeginUpdateControl(TControl* control) {
  if (control != nullptr) SetRedraw(control->Widget(), false);
}

void EndUpdateControl(TControl* control) {
  if (control != nullptr) SetRedraw(control->Widget(), true);
}

TForm* FindFormByClass(const TTypeInfo& formClass) {
  for (TForm* form : Screen().Forms())
    if (&form->GetClassInfo() == &formClass) return form;
  return nullptr;
}

TForm* ShowFormByClass(const TTypeInfo& formClass) {
  TForm* form = FindFormByClass(formClass);
  if (form == nullptr) return nullptr;
  form->Show();
  form->Restore();
  return form;
}

}  // namespace wrenfold
