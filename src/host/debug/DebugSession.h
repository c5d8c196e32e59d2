// The debugging of the open project: what runs, where it shall stop, who is told of it.
#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "debugger/Debugger.h"
#include "host/debug/Breakpoints.h"

namespace wrenfold {

// One program at a time. Panels listen to it; commands go through it. All calls and all handlers
// are of the main thread.
class TDebugSession final : public QObject {
 public:
  explicit TDebugSession(TDebugger::TMakeBackend make = LoadDebugBackend);
  ~TDebugSession() override;

  TDebugger& Debugger() { return *FDebugger; }
  const TSnapshot& Now() const { return *FDebugger->Snapshot(); }
  bool Stopped() const { return Now().State == TRunState::Stopped; }
  bool Running() const { return Now().State == TRunState::Running; }
  bool Active() const { return Stopped() || Running(); }

  // Called after each new state, in the order of listening.
  void Listen(std::function<void()> listener) { FListeners.push_back(std::move(listener)); }
  std::function<void(const std::string& text)> OnOutput;
  std::function<void(const std::string& message)> OnError;
  // Called after each change of the breakpoints, in the order of listening.
  void ListenToBreakpoints(std::function<void()> listener) {
    FBreakpointListeners.push_back(std::move(listener));
  }

  // Starts the program, or lets the stopped one go on.
  void Run(const TLaunch& launch);

  const TBreakpoints& Breakpoints() const { return FBreakpoints; }
  void SetBreakpoints(TBreakpoints breakpoints);
  void PutBreakpoint(const TBreakpoint& breakpoint);
  void RemoveBreakpoint(const TBreakpoint& place);
  void ToggleBreakpoint(const TBreakpoint& place);
  void MoveBreakpoints(const std::string& fileName, const std::set<int>& lines);

 private:
  void Wake();
  void BreakpointsChanged();

  std::unique_ptr<TDebugger> FDebugger;
  std::vector<std::function<void()>> FListeners, FBreakpointListeners;
  TBreakpoints FBreakpoints;
};

}  // namespace wrenfold
