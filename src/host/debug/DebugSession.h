// The debugging of the open project: what runs, where it shall stop, who is told of it.
#pragma once

#include <QObject>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "debugger/Debugger.h"

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
  // The breakpoints of a file are others than before.
  std::function<void(const std::string& fileName)> OnBreakpoints;

  // Starts the program, or lets the stopped one go on.
  void Run(const TLaunch& launch);

  // Lines count from 1.
  void ToggleBreakpoint(const std::string& fileName, int line);
  void MoveBreakpoints(const std::string& fileName, const std::set<int>& lines);
  const std::set<int>& Breakpoints(const std::string& fileName) const;
  void ToggleAddress(std::uint64_t address);
  const std::set<std::uint64_t>& Addresses() const { return FAddresses; }

 private:
  void Wake();
  void SendBreakpoints();

  std::unique_ptr<TDebugger> FDebugger;
  std::vector<std::function<void()>> FListeners;
  std::map<std::string, std::set<int>> FLines;
  std::set<std::uint64_t> FAddresses;
};

}  // namespace wrenfold
