// Threads, the call stack of the selected one, and the local variables of the selected call.
#pragma once

#include <QComboBox>
#include <QTreeWidget>
#include <functional>

#include "host/debug/DebugSession.h"
#include "platform/widgets/Forms.h"

namespace wrenfold {

class TStackPanel : public TForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TStackPanel(TComponent* owner, QWidget* parent = nullptr);

  // To be called once.
  void Serve(TDebugSession& session);

  // A call with a source was chosen.
  std::function<void(const TCodePlace& place)> OnOpen;

 private:
  void Update();
  void FillThreads(const TSnapshot& now);
  void FillFrames(const TSnapshot& now);
  void ChooseFrame(QTreeWidgetItem* item);

  TDebugSession* FSession = nullptr;
  QComboBox* FThreads;
  QTreeWidget* FFrames;
  QTreeWidget* FLocals;
  bool FFilling = false;
};

}  // namespace wrenfold
