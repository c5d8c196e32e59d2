// The debugger's library behind the backend's interface.
#pragma once

#include <lldb/API/LLDB.h>

#include <map>
#include <memory>
#include <string>

#include "debugger/Backend.h"

namespace wrenfold {

// Owns one debugger of the library with one target at the most.
class TLldbBackend final : public TDebugBackend {
 public:
  TLldbBackend();
  ~TLldbBackend() override;

  std::string ReadMemory(std::uint64_t address, std::size_t size) override;
  std::optional<TSymbol> SymbolAt(std::uint64_t address) override;

  void Load(const std::string& program) override;
  void Launch(const TLaunch& launch) override;
  void Attach(std::uint64_t processId) override;
  void Detach() override;
  void Kill() override;
  void Continue() override;
  void Step(TStep step) override;
  void RunTo(const TBreakpoint& place) override;
  void Pause() override;
  void SendInput(const std::string& text) override;
  std::optional<TEvent> Wait(int milliseconds) override;
  int SetBreakpoint(const TBreakpoint& breakpoint, int& id) override;
  void RemoveBreakpoint(int id) override;
  int Hit() override;
  const TProcessor* Processor() override { return FProcessor; }
  TSnapshot Look() override;
  void SelectThread(std::uint64_t id) override;
  void SelectFrame(std::size_t index) override;
  TVariable Evaluate(const std::string& expression) override;
  void WriteRegister(const std::string& name, std::uint64_t value) override;
  void WriteMemory(std::uint64_t address, std::string_view bytes) override;
  TCodePlace PlaceOf(std::uint64_t address) override;
  std::optional<std::uint64_t> AddressOf(const std::string& symbol) override;

 private:
  void NeedStopped();
  lldb::SBThread Thread();
  lldb::SBFrame Frame();
  lldb::SBAddress Resolve(std::uint64_t address);
  std::optional<TEvent> TakeOutput();
  std::optional<TEvent> TakeState(const lldb::SBEvent& event);
  lldb::SBBreakpoint Place(const TBreakpoint& breakpoint);
  void AddCondition(lldb::SBBreakpoint placed, const TBreakpoint& breakpoint);
  // Called by the library while the next event is taken: the program stands at the breakpoint.
  static bool PascalConditionHolds(void* condition, lldb::SBProcess& process,
                                   lldb::SBThread& thread, lldb::SBBreakpointLocation& location);
  void LookAtThreads(TSnapshot& snapshot);
  void LookAtFrame(TSnapshot& snapshot);

  lldb::SBDebugger FDebugger;
  lldb::SBListener FListener;
  lldb::SBTarget FTarget;
  lldb::SBProcess FProcess;
  const TProcessor* FProcessor = nullptr;

  // A condition that the library does not understand.
  struct TPascalCondition {
    std::string Text;
    int PassesLeft;
    std::string Error{};  // of the last time
  };
  std::map<int, std::unique_ptr<TPascalCondition>> FConditions;
  // It stands, and its stop was told: until then the library itself is at work with its threads.
  bool FStopped = false;
  bool FPaused = false;  // by us, not by what it ran into
  bool FPausePending = false;
};

}  // namespace wrenfold
