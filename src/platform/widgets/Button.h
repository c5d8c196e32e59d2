// A push button as a component, which may end the modal form that it stands in.
#pragma once

#include <QPushButton>
#include <string>

#include "platform/core/model/Event.h"
#include "platform/widgets/Control.h"
#include "platform/widgets/Forms.h"

namespace wrenfold {

class TButton : public TControlOf<QPushButton> {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  explicit TButton(TComponent* owner = nullptr, QWidget* parent = nullptr);

  std::string Caption() const override { return FCaption; }
  void SetCaption(const std::string& caption) override;
  // What the user reads in the place of the caption, which stays as it is.
  void SetShownCaption(const std::string& text);
  // As if the user had clicked: the form takes ModalResult, then OnClick is called. A disabled
  // button does nothing.
  virtual void Click();

  TModalResult ModalResult = mrNone;
  // The sender is the button.
  TNotifyEvent OnClick;

 private:
  std::string FCaption;
};

}  // namespace wrenfold
