#include "platform/widgets/Button.h"

#include "platform/widgets/Guard.h"
#include "platform/widgets/Menus.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

const TTypeInfo& TButton::ClassInfo() {
  static const TTypeInfo info = Publish<TButton>("TButton", TControl::ClassInfo())
                                    .Prop("Caption", &TButton::Caption, &TButton::SetCaption)
                                    .Prop("ModalResult", &TButton::ModalResult)
                                    .Default(mrNone)
                                    .Prop("OnClick", &TButton::OnClick);
  return info;
}

TButton::TButton(TComponent* owner, QWidget* parent) : TControlOf(owner, parent) {
  connect(this, &QPushButton::clicked, this, [this] { Guarded(this, [this] { Click(); }); });
}

void TButton::SetCaption(const std::string& caption) {
  FCaption = caption;
  SetShownCaption(caption);
}

void TButton::SetShownCaption(const std::string& text) {
  setText(ToQString(text));
  setAccessibleName(ToQString(StripHotkey(text)));
}

void TButton::Click() {
  if (!Enabled()) return;
  const QPointer<TButton> alive(this);
  TForm* form = FormOf(this);
  if (form != nullptr && ModalResult != mrNone) form->SetModalResult(ModalResult);
  if (alive != nullptr) OnClick(this);
}

}  // namespace wrenfold
