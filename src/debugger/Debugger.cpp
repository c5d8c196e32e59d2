#include "debugger/Debugger.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <utility>

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
    Tell([answer, value = backend.Evaluate(expression)] { answer(value); });
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
    Publish();
  } catch (const std::exception& error) {
    FState = TRunState::Exited;
    TellError(error.what());
    Publish();
  }
}

void TDebugger::Publish() {
  auto snapshot = std::make_shared<TSnapshot>();
  if (FBackend != nullptr) *snapshot = FBackend->Look();
  snapshot->State = FState;
  snapshot->Number = ++FNumber;
  Tell([this, snapshot] {
    FSnapshot = snapshot;
    if (OnSnapshot) OnSnapshot();
  });
}

void TDebugger::PlaceBreakpoints() {
  std::erase_if(FPlaced, [this](const auto& placed) {
    if (std::find(FWanted.begin(), FWanted.end(), placed.first) != FWanted.end()) return false;
    FBackend->RemoveBreakpoint(placed.second);
    return true;
  });
  for (const TBreakpoint& breakpoint : FWanted) {
    const auto known = [&](const auto& placed) { return placed.first == breakpoint; };
    if (std::any_of(FPlaced.begin(), FPlaced.end(), known)) continue;
    int id = 0;
    if (FBackend->SetBreakpoint(breakpoint, id) == 0)
      TellError(fmt::format("There is no code at {}:{} to stop at", breakpoint.Place.File,
                            breakpoint.Place.Line));
    FPlaced.emplace_back(breakpoint, id);
  }
}

void TDebugger::End() {
  if (FState != TRunState::Running && FState != TRunState::Stopped) return;
  if (FAttached) FBackend->Detach();
  else FBackend->Kill();
  FState = TRunState::None;
}

}  // namespace wrenfold
