#include "debugger/Debugger.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include "debugger/Raised.h"

namespace wrenfold {

namespace {

// How long the worker looks at the program before it looks at its commands again.
constexpr int PollMilliseconds = 5;

std::vector<TCodeLine> CodeLines(TDebugBackend& backend, const TProcessor& processor,
                                 std::uint64_t address, std::size_t before, std::size_t count) {
  const auto starts = InstructionsBefore(backend, processor, address, before);
  const std::uint64_t first = starts.empty() ? address : starts.front();
  std::vector<TInstruction> instructions = Disassemble(backend, processor, first, starts.size());
  // What was walked to ends at the address; a decoder that ran over it is cut there.
  std::erase_if(instructions, [address](const auto& i) { return i.End() > address; });
  auto following = Disassemble(backend, processor, address, count);
  std::move(following.begin(), following.end(), std::back_inserter(instructions));
  std::vector<TCodeLine> lines;
  TCodePlace last;
  for (TInstruction& instruction : instructions) {
    TCodeLine line{.Instruction = std::move(instruction), .Label = {}, .Place = {}};
    const auto symbol = backend.SymbolAt(line.Instruction.Address);
    if (symbol && symbol->Start == line.Instruction.Address) line.Label = symbol->Name;
    const TCodePlace place = backend.PlaceOf(line.Instruction.Address);
    if (!(place == last)) line.Place = place;
    last = place;
    lines.push_back(std::move(line));
  }
  return lines;
}

}  // namespace

TDebugger::TDebugger(std::function<void()> wake, TMakeBackend make)
    : FWake(std::move(wake)), FMake(std::move(make)), FWorker([this] { Work(); }) {}

TDebugger::~TDebugger() {
  {
    const std::lock_guard lock(FMutex);
    FEnding = true;
  }
  FChanged.notify_one();
  FWorker.join();
}

void TDebugger::Dispatch() {
  for (;;) {
    TDebugEvent event;
    {
      const std::lock_guard lock(FMutex);
      if (FEvents.empty()) return;
      event = std::move(FEvents.front());
      FEvents.pop_front();
    }
    event();
  }
}

int TDebugger::WaitUntil(const std::function<bool()>& done, int milliseconds) {
  using TClock = std::chrono::steady_clock;
  const auto end = TClock::now() + std::chrono::milliseconds(milliseconds);
  for (;;) {
    Dispatch();
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - TClock::now());
    if (done() || left.count() <= 0) return std::max(0, static_cast<int>(left.count()));
    std::unique_lock lock(FMutex);
    FArrived.wait_for(lock, left, [this] { return !FEvents.empty(); });
  }
}

void TDebugger::Post(TCommand command) {
  {
    const std::lock_guard lock(FMutex);
    FCommands.push_back(std::move(command));
  }
  FChanged.notify_one();
}

void TDebugger::Tell(TDebugEvent event) {
  {
    const std::lock_guard lock(FMutex);
    FEvents.push_back(std::move(event));
  }
  FArrived.notify_one();
  FWake();
}

void TDebugger::TellError(const std::string& message) {
  Tell([this, message] {
    if (OnError) OnError(message);
  });
}

void TDebugger::Launch(const TLaunch& launch) {
  Post([this, launch](TDebugBackend& backend) {
    if (FState == TRunState::Running || FState == TRunState::Stopped) End();
    FPlaced.clear();
    FLoaded = false;
    backend.Load(launch.Program);
    FLoaded = true;
    PlaceBreakpoints();
    backend.Launch(launch);
    FAttached = false;
    FState = TRunState::Running;
    Publish();
  });
}

void TDebugger::Attach(std::uint64_t processId) {
  Post([this, processId](TDebugBackend& backend) {
    if (FState == TRunState::Running || FState == TRunState::Stopped) End();
    FPlaced.clear();
    backend.Attach(processId);
    FLoaded = true;
    PlaceBreakpoints();
    FAttached = true;
    FState = TRunState::Stopped;
    Publish();
  });
}

void TDebugger::Continue() {
  Post([this](TDebugBackend& backend) {
    backend.Continue();
    FState = TRunState::Running;
    Publish();
  });
}

void TDebugger::Step(TStep step) {
  Post([this, step](TDebugBackend& backend) {
    // Keys come quicker than a slow step ends.
    if (FState == TRunState::Running) return;
    backend.Step(step);
    FState = TRunState::Running;
  });
}

void TDebugger::RunTo(const TBreakpoint& place) {
  Post([this, place](TDebugBackend& backend) {
    backend.RunTo(place);
    FState = TRunState::Running;
    Publish();
  });
}

void TDebugger::Pause() {
  Post([this](TDebugBackend& backend) {
    if (FState == TRunState::Running) backend.Pause();
  });
}

void TDebugger::Reset() {
  Post([this](TDebugBackend&) {
    End();
    Publish();
  });
}

void TDebugger::SendInput(const std::string& text) {
  Post([text](TDebugBackend& backend) { backend.SendInput(text); });
}

void TDebugger::SetBreakpoints(std::vector<TBreakpoint> breakpoints) {
  Post([this, breakpoints = std::move(breakpoints)](TDebugBackend&) {
    FWanted = breakpoints;
    if (FLoaded) PlaceBreakpoints();
  });
}

void TDebugger::SetExceptionStops(bool stops) {
  Post([this, stops](TDebugBackend&) {
    FExceptionStops = stops;
    if (FLoaded) PlaceBreakpoints();
  });
}

void TDebugger::SelectThread(std::uint64_t id) {
  Post([this, id](TDebugBackend& backend) {
    backend.SelectThread(id);
    Publish();
  });
}

void TDebugger::SelectFrame(std::size_t index) {
  Post([this, index](TDebugBackend& backend) {
    backend.SelectFrame(index);
    Publish();
  });
}

void TDebugger::WriteRegister(const std::string& name, std::uint64_t value) {
  Post([this, name, value](TDebugBackend& backend) {
    backend.WriteRegister(name, value);
    Publish();
  });
}

void TDebugger::WriteMemory(std::uint64_t address, const std::string& bytes) {
  Post([this, address, bytes](TDebugBackend& backend) {
    backend.WriteMemory(address, bytes);
    Publish();
  });
}

void TDebugger::Evaluate(const std::string& expression,
                         std::function<void(const TVariable&)> answer) {
  Post([this, expression, answer = std::move(answer)](TDebugBackend& backend) {
    TVariable value{.Name = expression};
    try {
      value = backend.Evaluate(expression);
    } catch (const EDebugError& error) {
      value.Value = error.what();
      value.Failed = true;
    }
    Tell([answer, value] { answer(value); });
  });
}

void TDebugger::ReadMemory(std::uint64_t address, std::size_t size,
                           std::function<void(const std::string&)> answer) {
  Post([this, address, size, answer = std::move(answer)](TDebugBackend& backend) {
    Tell([answer, bytes = backend.ReadMemory(address, size)] { answer(bytes); });
  });
}

void TDebugger::ReadCode(std::uint64_t address, std::size_t before, std::size_t count,
                         std::function<void(const std::vector<TCodeLine>&)> answer) {
  Post([this, address, before, count, answer = std::move(answer)](TDebugBackend& backend) {
    const TProcessor* processor = backend.Processor();
    if (processor == nullptr) throw EDebugError("No instructions of this processor can be read");
    auto lines = CodeLines(backend, *processor, address, before, count);
    Tell([answer, lines = std::move(lines)] { answer(lines); });
  });
}

void TDebugger::FindSymbol(const std::string& name, std::function<void(std::uint64_t)> answer) {
  Post([this, name, answer = std::move(answer)](TDebugBackend& backend) {
    const auto address = backend.AddressOf(name);
    if (!address) throw EDebugError(fmt::format("The program has no symbol {}", name));
    Tell([answer, address] { answer(*address); });
  });
}

void TDebugger::Work() {
  for (;;) {
    TCommand command;
    {
      std::unique_lock lock(FMutex);
      const auto ready = [this] { return FEnding || !FCommands.empty(); };
      // A running program is looked at in turn; a stopped one does nothing by itself.
      if (FState != TRunState::Running) FChanged.wait(lock, ready);
      if (FEnding) break;
      if (!FCommands.empty()) {
        command = std::move(FCommands.front());
        FCommands.pop_front();
      }
    }
    if (command) RunCommand(command);
    else TakeEvents();
  }
  if (FBackend != nullptr) End();
}

void TDebugger::RunCommand(const TCommand& command) {
  try {
    if (FBackend == nullptr) FBackend = FMake();
    command(*FBackend);
  } catch (const std::exception& error) {
    TellError(error.what());
  }
}

void TDebugger::TakeEvents() {
  try {
    const auto event = FBackend->Wait(PollMilliseconds);
    if (!event) return;
    if (!event->Output.empty())
      return Tell([this, text = event->Output] {
        if (OnOutput) OnOutput(text);
      });
    FState = event->State;
    FRaised = FState == TRunState::Stopped ? Raised() : std::string();
    Publish();
  } catch (const std::exception& error) {
    FState = TRunState::Exited;
    TellError(error.what());
    Publish();
  }
}

void TDebugger::Publish() {
  auto snapshot = std::make_shared<TSnapshot>();
  if (FBackend != nullptr) {
    *snapshot = FBackend->Look();
    if (FState == TRunState::Stopped && !FRaised.empty()) snapshot->Reason = FRaised;
  }
  snapshot->State = FState;
  snapshot->Number = ++FNumber;
  Tell([this, snapshot] {
    FSnapshot = snapshot;
    if (OnSnapshot) OnSnapshot();
  });
}

std::vector<TBreakpoint> TDebugger::Wanted() const {
  std::vector<TBreakpoint> wanted = FWanted;
  if (FExceptionStops)
    for (const TRaiseFunction& row : RaiseFunctions()) wanted.emplace_back().Function = row.Name;
  return wanted;
}

void TDebugger::PlaceBreakpoints() {
  const std::vector<TBreakpoint> wanted = Wanted();
  std::erase_if(FPlaced, [&](const auto& placed) {
    if (std::find(wanted.begin(), wanted.end(), placed.first) != wanted.end()) return false;
    FBackend->RemoveBreakpoint(placed.second);
    return true;
  });
  for (const TBreakpoint& breakpoint : wanted) {
    const auto known = [&](const auto& placed) { return placed.first == breakpoint; };
    if (std::any_of(FPlaced.begin(), FPlaced.end(), known)) continue;
    int id = 0;
    if (FBackend->SetBreakpoint(breakpoint, id) == 0 && breakpoint.Place)
      TellError(fmt::format("There is no code at {}:{} to stop at", breakpoint.Place.File,
                            breakpoint.Place.Line));
    FPlaced.emplace_back(breakpoint, id);
  }
}

std::string TDebugger::Raised() {
  const int hit = FBackend->Hit();
  const auto placed = std::find_if(FPlaced.begin(), FPlaced.end(),
                                   [hit](const auto& each) { return each.second == hit; });
  if (hit == 0 || placed == FPlaced.end()) return {};
  const TRaiseFunction* function = FindRaiseFunction(placed->first.Function);
  const TProcessor* processor = FBackend->Processor();
  if (function == nullptr || processor == nullptr) return {};
  FBackend->SelectFrame(0);
  const TSnapshot snapshot = FBackend->Look();
  const auto raising = std::find_if(snapshot.Frames.begin(), snapshot.Frames.end(),
                                    [](const TCall& call) { return bool(call.Place); });
  if (raising != snapshot.Frames.end())
    FBackend->SelectFrame(static_cast<std::size_t>(raising - snapshot.Frames.begin()));
  return function->Describe(*FBackend, *processor, snapshot.Registers);
}

void TDebugger::End() {
  if (FState != TRunState::Running && FState != TRunState::Stopped) return;
  if (FAttached) FBackend->Detach();
  else FBackend->Kill();
  FState = TRunState::None;
}

}  // namespace wrenfold
