// The list of breakpoints, with their conditions and counts to edit.
#pragma once

#include <QTreeWidget>
#include <functional>

#include "host/debug/DebugSession.h"
#include "platform/widgets/Forms.h"

namespace wrenfold {

class TBreakpointPanel : public TForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TBreakpointPanel(TComponent* owner, QWidget* parent = nullptr);

  // To be called once.
  void Serve(TDebugSession& session);
  // A breakpoint of a source was chosen.
  std::function<void(const TCodePlace& place)> OnOpen;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Update();
  void Edited(QTreeWidgetItem* item, int column);
  const TBreakpoint* Chosen() const;

  TDebugSession* FSession = nullptr;
  QTreeWidget* FList;
  bool FFilling = false;
};

// Asks for condition and count. False when the user gave up.
bool AskBreakpoint(QWidget* parent, TBreakpoint& breakpoint);

}  // namespace wrenfold
