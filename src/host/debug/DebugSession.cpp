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
  FBreakpointListeners.clear();
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

void TDebugSession::SetBreakpoints(TBreakpoints breakpoints) {
  FBreakpoints = std::move(breakpoints);
  BreakpointsChanged();
}

void TDebugSession::PutBreakpoint(const TBreakpoint& breakpoint) {
  FBreakpoints.Put(breakpoint);
  BreakpointsChanged();
}

void TDebugSession::RemoveBreakpoint(const TBreakpoint& place) {
  FBreakpoints.Remove(place);
  BreakpointsChanged();
}

void TDebugSession::ToggleBreakpoint(const TBreakpoint& place) {
  FBreakpoints.Toggle(place);
  BreakpointsChanged();
}

void TDebugSession::MoveBreakpoints(const std::string& fileName, const std::set<int>& lines) {
  if (FBreakpoints.LinesOf(fileName) == lines) return;
  FBreakpoints.Move(fileName, lines);
  BreakpointsChanged();
}

void TDebugSession::BreakpointsChanged() {
  FDebugger->SetBreakpoints(FBreakpoints.All());
  for (const auto& listener : FBreakpointListeners) listener();
}

}  // namespace wrenfold
