#include "host/debug/DebugSession.h"

#include <QMetaObject>

namespace wrenfold {

TDebugSession::TDebugSession(TDebugger::TMakeBackend make) {
  FDebugger = std::make_unique<TDebugger>([this] { Wake(); }, std::move(make));
  FDebugger->OnSnapshot = [this] {
    for (const auto& listener : FListeners) listener();
  };
  FDebugger->OnOutput = [this](const std::string& text) {
    if (OnOutput) OnOutput(text);
  };
  FDebugger->OnError = [this](const std::string& message) {
    if (OnError) OnError(message);
  };
}

TDebugSession::~TDebugSession() {
  // What still comes has nobody to reach.
  FListeners.clear();
  OnOutput = nullptr;
  OnError = nullptr;
}

void TDebugSession::Wake() {
  // From the worker's thread into this one.
  QMetaObject::invokeMethod(
      this, [this] { FDebugger->Dispatch(); }, Qt::QueuedConnection);
}

void TDebugSession::Run(const TLaunch& launch) {
  if (Stopped()) return FDebugger->Continue();
  if (!Running()) FDebugger->Launch(launch);
}

void TDebugSession::ToggleBreakpoint(const std::string& fileName, int line) {
  std::set<int>& lines = FLines[fileName];
  if (lines.erase(line) == 0) lines.insert(line);
  SendBreakpoints();
  if (OnBreakpoints) OnBreakpoints(fileName);
}

void TDebugSession::MoveBreakpoints(const std::string& fileName, const std::set<int>& lines) {
  if (Breakpoints(fileName) == lines) return;
  FLines[fileName] = lines;
  SendBreakpoints();
}

const std::set<int>& TDebugSession::Breakpoints(const std::string& fileName) const {
  static const std::set<int> none;
  const auto found = FLines.find(fileName);
  return found == FLines.end() ? none : found->second;
}

void TDebugSession::ToggleAddress(std::uint64_t address) {
  if (FAddresses.erase(address) == 0) FAddresses.insert(address);
  SendBreakpoints();
  for (const auto& listener : FListeners) listener();
}

void TDebugSession::SendBreakpoints() {
  std::vector<TBreakpoint> all;
  for (const auto& [file, lines] : FLines)
    for (const int line : lines) all.push_back({.Place = {file, line}});
  for (const std::uint64_t address : FAddresses) all.push_back({.Address = address});
  FDebugger->SetBreakpoints(std::move(all));
}

}  // namespace wrenfold
