// The information window of the suite: name, version and licence.
#pragma once

#include "platform/widgets/Forms.h"

namespace wrenfold {

// Closes on its button, Enter and Escape.
class TInfoForm : public TForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  TInfoForm(TComponent* owner, const std::string& version);

  // Shows the window until the user closes it.
  static void Execute(const std::string& version);
};

}  // namespace wrenfold
