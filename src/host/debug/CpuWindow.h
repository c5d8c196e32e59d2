// The CPU window: code, registers, flags, memory and stack of the stopped program.
#pragma once

#include "host/debug/DisassemblyPane.h"
#include "host/debug/MemoryPanes.h"
#include "host/debug/RegisterPanes.h"
#include "platform/widgets/Forms.h"

namespace wrenfold {

class TCpuWindow : public TForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TCpuWindow(TComponent* owner, QWidget* parent = nullptr);
  ~TCpuWindow() override;

  // Shows what that session debugs; to be called once.
  void Serve(TDebugSession& session);
  TDisassemblyPane& Code() { return *FCode; }
  // Whether the keys of the user go into it: steps are then by instruction.
  bool HasFocus() const;

 private:
  void Update();
  void GoTo();
  void GoToAddress(std::uint64_t address, bool code);

  TDebugSession* FSession = nullptr;
  TDisassemblyPane* FCode = nullptr;
  TRegisterPane* FRegisters = nullptr;
  TFlagsPane* FFlags = nullptr;
  TDumpPane* FDump = nullptr;
  TStackPane* FStack = nullptr;
  class QLineEdit* FPlace = nullptr;
  bool FMemoryLast = false;  // the user was in the memory dump last, not in the code
};

}  // namespace wrenfold
