// What the debugged program writes, and what is typed for it to read.
#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>

#include "host/debug/DebugSession.h"
#include "platform/widgets/Forms.h"

namespace wrenfold {

class TProgramPanel : public TForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TProgramPanel(TComponent* owner, QWidget* parent = nullptr);

  // To be called once.
  void Serve(TDebugSession& session);
  void Clear() { FText->clear(); }
  // Appends what the program wrote; the oldest lines go when there are very many.
  void Add(const std::string& text);

 private:
  QPlainTextEdit* FText;
  QLineEdit* FInput;
};

}  // namespace wrenfold
