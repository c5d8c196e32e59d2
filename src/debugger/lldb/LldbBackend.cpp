#include "debugger/lldb/LldbBackend.h"

#include <fmt/format.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

#include "debugger/lldb/PascalValues.h"

namespace wrenfold {

namespace {

using namespace lldb;

// Deeper stacks are those of endless recursion; nobody reads them.
constexpr std::uint32_t MostFrames = 200;
constexpr std::uint32_t MostParts = 100;

std::string Text(const char* text) {
  return text != nullptr ? text : "";
}

void Check(const SBError& error, const char* what) {
  if (error.Fail()) throw EDebugError(fmt::format("{}: {}", what, Text(error.GetCString())));
}

TCodePlace PlaceFrom(SBLineEntry entry) {
  const SBFileSpec file = entry.GetFileSpec();
  if (!entry.IsValid() || !file.IsValid() || entry.GetLine() == 0) return {};
  std::string path(4096, '\0');
  path.resize(std::min<std::size_t>(file.GetPath(path.data(), path.size()), path.size()));
  return {path.c_str(), static_cast<int>(entry.GetLine())};
}

// What the program ran into by itself, not what the library stops it by.
bool IsOwn(SBThread thread) {
  switch (thread.GetStopReason()) {
    case eStopReasonSignal:
      return thread.GetStopReasonDataAtIndex(0) != SIGSTOP;
    case eStopReasonBreakpoint:
      return static_cast<std::int64_t>(thread.GetStopReasonDataAtIndex(0)) > 0;
    case eStopReasonException:
    case eStopReasonWatchpoint:
      return true;
    default:
      return false;
  }
}

std::string ReasonOf(SBThread thread, bool paused) {
  if (thread.GetStopReason() == eStopReasonNone) return {};
  if (paused && !IsOwn(thread)) return "paused";
  if (thread.GetStopReason() == eStopReasonBreakpoint) return "at a breakpoint";
  if (thread.GetStopReason() == eStopReasonPlanComplete) return "after a step";
  std::string text(256, '\0');
  thread.GetStopDescription(text.data(), text.size());
  return text.c_str();
}

// The bytes of a register, the highest first.
std::string DigitsOf(SBValue value) {
  SBData data = value.GetData();
  SBError error;
  std::string bytes(data.GetByteSize(), '\0');
  bytes.resize(data.ReadRawData(error, 0, bytes.data(), bytes.size()));
  std::string text;
  for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte)
    text += fmt::format("{:02X}", static_cast<unsigned char>(*byte));
  return text;
}

TVariable VariableFrom(SBValue value, int depth) {
  TVariable variable{.Name = Text(value.GetName()),
                     .Type = Text(value.GetTypeName()),
                     .Value = Text(value.GetValue())};
  const std::string summary = Text(value.GetSummary());
  if (!summary.empty()) variable.Value = summary;
  if (value.GetError().Fail()) variable.Value = Text(value.GetError().GetCString());
  if (depth == 0) return variable;
  for (std::uint32_t i = 0; i < std::min(value.GetNumChildren(MostParts), MostParts); ++i)
    variable.Parts.push_back(VariableFrom(value.GetChildAtIndex(i), depth - 1));
  return variable;
}

}  // namespace

TLldbBackend::TLldbBackend() : FListener("wrenfold") {
  // The library starts its server by this name; the user's own choice counts.
  setenv("LLDB_DEBUGSERVER_PATH", WRENFOLD_LLDB_SERVER, 0);
  Check(SBDebugger::InitializeWithErrorHandling(), "The debugger cannot start");
  FDebugger = SBDebugger::Create(false);
  FDebugger.SetAsync(true);
}

TLldbBackend::~TLldbBackend() {
  SBDebugger::Destroy(FDebugger);
}

std::string TLldbBackend::ReadMemory(std::uint64_t address, std::size_t size) {
  std::string bytes(size, '\0');
  SBError error;
  if (!FProcess.IsValid()) {
    // Before it runs the program's file has its code.
    bytes.resize(FTarget.ReadMemory(SBAddress(address, FTarget), bytes.data(), size, error));
    return bytes;
  }
  bytes.resize(FProcess.ReadMemory(address, bytes.data(), size, error));
  // A range that ends in unmapped memory is read up to the end of its last page.
  constexpr std::uint64_t page = 4096;
  while (bytes.empty() && size > 1) {
    const std::uint64_t end = (address + size - 1) & ~(page - 1);
    if (end <= address) break;
    size = end - address;
    bytes.resize(size);
    bytes.resize(FProcess.ReadMemory(address, bytes.data(), size, error));
  }
  return bytes;
}

SBAddress TLldbBackend::Resolve(std::uint64_t address) {
  return FTarget.ResolveLoadAddress(address);
}

std::optional<TSymbol> TLldbBackend::SymbolAt(std::uint64_t address) {
  SBAddress resolved = Resolve(address);
  SBSymbol symbol = resolved.GetSymbol();
  if (!symbol.IsValid()) return std::nullopt;
  const std::uint64_t start = symbol.GetStartAddress().GetLoadAddress(FTarget);
  std::uint64_t end = symbol.GetEndAddress().GetLoadAddress(FTarget);
  if (start == LLDB_INVALID_ADDRESS || start > address) return std::nullopt;
  if (end == LLDB_INVALID_ADDRESS || end < start) end = address + 1;
  return TSymbol{Text(symbol.GetDisplayName()), start, end};
}

void TLldbBackend::Load(const std::string& program) {
  FProcess = {};
  if (FTarget.IsValid()) FDebugger.DeleteTarget(FTarget);
  FConditions.clear();
  SBError error;
  FTarget = FDebugger.CreateTarget(program.c_str(), nullptr, nullptr, true, error);
  Check(error, fmt::format("{} cannot be debugged", program).c_str());
  FProcessor = FindProcessor(Text(FTarget.GetTriple()));
}

void TLldbBackend::Launch(const TLaunch& launch) {
  if (!FTarget.IsValid()) throw EDebugError("No program is loaded");
  std::vector<const char*> arguments;
  for (const std::string& argument : launch.Arguments) arguments.push_back(argument.c_str());
  arguments.push_back(nullptr);
  SBError error;
  // A container may forbid to switch the randomisation of addresses off.
  for (const bool fixedAddresses : {true, false}) {
    SBLaunchInfo info(arguments.data());
    info.SetListener(FListener);
    if (!launch.Folder.empty()) info.SetWorkingDirectory(launch.Folder.c_str());
    info.SetLaunchFlags(fixedAddresses ? eLaunchFlagDisableASLR : eLaunchFlagNone);
    error.Clear();
    FStopped = FPaused = false;
    FProcess = FTarget.Launch(info, error);
    if (error.Success()) return;
  }
  Check(error, fmt::format("{} cannot be started", launch.Program).c_str());
}

void TLldbBackend::Attach(std::uint64_t processId) {
  SBError error;
  SBTarget target = FDebugger.CreateTarget("", nullptr, nullptr, true, error);
  SBAttachInfo info(processId);
  info.SetListener(FListener);
  SBProcess process = target.Attach(info, error);
  if (error.Fail()) {
    FDebugger.DeleteTarget(target);
    Check(error, fmt::format("Process {} cannot be attached to", processId).c_str());
  }
  if (FTarget.IsValid()) FDebugger.DeleteTarget(FTarget);
  FTarget = target;
  FProcess = process;
  FProcessor = FindProcessor(Text(FTarget.GetTriple()));
  FPaused = true;
  // The stop of attaching may come a little later, or may have been taken by the library itself.
  for (int i = 0; i < 500 && FProcess.GetState() != eStateStopped; ++i) Wait(10);
  FStopped = FProcess.GetState() == eStateStopped;
}

void TLldbBackend::Detach() {
  Check(FProcess.Detach(), "The program cannot be left");
  FProcess = {};
  FStopped = false;
}

void TLldbBackend::Kill() {
  if (FProcess.IsValid()) FProcess.Kill();
  FProcess = {};
  FStopped = false;
}

void TLldbBackend::NeedStopped() {
  if (!FProcess.IsValid()) throw EDebugError("No program runs");
  if (!FStopped) throw EDebugError("The program is not stopped");
}

SBThread TLldbBackend::Thread() {
  NeedStopped();
  return FProcess.GetSelectedThread();
}

SBFrame TLldbBackend::Frame() {
  return Thread().GetSelectedFrame();
}

void TLldbBackend::Continue() {
  NeedStopped();
  FPaused = false;
  Check(FProcess.Continue(), "The program cannot go on");
  FStopped = false;
}

void TLldbBackend::Step(TStep step) {
  SBThread thread = Thread();
  SBError error;
  FPaused = false;
  // Without a line a step is one instruction, else the program would run away.
  const bool lines = static_cast<bool>(PlaceFrom(thread.GetFrameAtIndex(0).GetLineEntry()));
  switch (step) {
    case TStep::Into:
      if (lines) thread.StepInto();
      else thread.StepInstruction(false, error);
      break;
    case TStep::Over:
      if (lines) thread.StepOver(eOnlyDuringStepping, error);
      else thread.StepInstruction(true, error);
      break;
    case TStep::Out:
      thread.StepOut(error);
      break;
    case TStep::InstructionInto:
      thread.StepInstruction(false, error);
      break;
    case TStep::InstructionOver:
      thread.StepInstruction(true, error);
      break;
  }
  Check(error, "The step failed");
  FStopped = false;
}

void TLldbBackend::RunTo(const TBreakpoint& place) {
  NeedStopped();
  SBBreakpoint breakpoint = Place(place);
  if (breakpoint.GetNumLocations() == 0) {
    FTarget.BreakpointDelete(breakpoint.GetID());
    throw EDebugError("There is no code to stop at");
  }
  breakpoint.SetOneShot(true);
  FPaused = false;
  Check(FProcess.Continue(), "The program cannot go on");
  FStopped = false;
}

void TLldbBackend::Pause() {
  if (!FProcess.IsValid()) throw EDebugError("No program runs");
  FPaused = true;
  // One that was just started runs for us before it does for the library.
  FPausePending = FProcess.GetState() != eStateRunning;
  if (!FPausePending) Check(FProcess.Stop(), "The program does not stop");
}

void TLldbBackend::SendInput(const std::string& text) {
  if (FProcess.IsValid()) FProcess.PutSTDIN(text.data(), text.size());
}

std::optional<TDebugBackend::TEvent> TLldbBackend::TakeOutput() {
  if (!FProcess.IsValid()) return std::nullopt;
  std::array<char, 16384> buffer;
  std::size_t count = FProcess.GetSTDOUT(buffer.data(), buffer.size());
  if (count == 0) count = FProcess.GetSTDERR(buffer.data(), buffer.size());
  if (count == 0) return std::nullopt;
  return TEvent{TRunState::None, std::string(buffer.data(), count)};
}

std::optional<TDebugBackend::TEvent> TLldbBackend::TakeState(const SBEvent& event) {
  switch (SBProcess::GetStateFromEvent(event)) {
    case eStateStopped:
      if (SBProcess::GetRestartedFromEvent(event)) return std::nullopt;
      FStopped = true;
      return TEvent{TRunState::Stopped, {}};
    case eStateCrashed:
      FStopped = true;
      return TEvent{TRunState::Stopped, {}};
    case eStateRunning:
      if (std::exchange(FPausePending, false)) FProcess.Stop();
      return std::nullopt;
    case eStateExited:
    case eStateDetached:
      FStopped = false;
      return TEvent{TRunState::Exited, {}};
    default:
      return std::nullopt;
  }
}

std::optional<TDebugBackend::TEvent> TLldbBackend::Wait(int milliseconds) {
  // What was written before a stop is told before it.
  if (auto output = TakeOutput()) return output;
  SBEvent event;
  if (!FListener.PeekAtNextEvent(event)) {
    // The library waits in whole seconds.
    usleep(static_cast<useconds_t>(milliseconds) * 1000);
    if (!FListener.PeekAtNextEvent(event)) return std::nullopt;
    if (auto output = TakeOutput()) return output;
  }
  FListener.GetNextEvent(event);
  if (!SBProcess::EventIsProcessEvent(event) ||
      (event.GetType() & SBProcess::eBroadcastBitStateChanged) == 0)
    return std::nullopt;
  return TakeState(event);
}

SBBreakpoint TLldbBackend::Place(const TBreakpoint& breakpoint) {
  if (!FTarget.IsValid()) throw EDebugError("No program is loaded");
  if (!breakpoint.Place && breakpoint.Address != 0)
    return FTarget.BreakpointCreateByAddress(breakpoint.Address);
  if (!breakpoint.Place) return FTarget.BreakpointCreateByName(breakpoint.Function.c_str());
  const SBFileSpec file(breakpoint.Place.File.c_str());
  const auto line = static_cast<std::uint32_t>(breakpoint.Place.Line);
  SBBreakpoint placed = FTarget.BreakpointCreateByLocation(file, line);
  if (placed.GetNumLocations() > 0) return placed;
  // The program may have been built in another folder.
  FTarget.BreakpointDelete(placed.GetID());
  return FTarget.BreakpointCreateByLocation(file.GetFilename(), line);
}

int TLldbBackend::SetBreakpoint(const TBreakpoint& breakpoint, int& id) {
  SBBreakpoint placed = Place(breakpoint);
  AddCondition(placed, breakpoint);
  id = placed.GetID();
  return static_cast<int>(placed.GetNumLocations());
}

void TLldbBackend::AddCondition(SBBreakpoint placed, const TBreakpoint& breakpoint) {
  SBCompileUnit unit = placed.GetLocationAtIndex(0).GetAddress().GetCompileUnit();
  const bool pascal = unit.IsValid() && unit.GetLanguage() == eLanguageTypePascal83;
  if (pascal && !breakpoint.Condition.empty()) {
    auto condition = std::make_unique<TPascalCondition>(
        TPascalCondition{breakpoint.Condition, breakpoint.PassCount});
    placed.SetCallback(&PascalConditionHolds, condition.get());
    FConditions[placed.GetID()] = std::move(condition);
    return;
  }
  if (!breakpoint.Condition.empty()) placed.SetCondition(breakpoint.Condition.c_str());
  if (breakpoint.PassCount > 0)
    placed.SetIgnoreCount(static_cast<std::uint32_t>(breakpoint.PassCount));
}

bool TLldbBackend::PascalConditionHolds(void* data, SBProcess&, SBThread& thread,
                                        SBBreakpointLocation&) {
  auto& condition = *static_cast<TPascalCondition*>(data);
  condition.Error.clear();
  try {
    TLldbPascalScope scope(thread.GetFrameAtIndex(0));
    if (EvaluatePascal(condition.Text, scope).Number == 0) return false;
    return condition.PassesLeft-- <= 0;
  } catch (const std::exception& error) {
    // Whoever cannot be asked stops: the user has to see why.
    condition.Error = error.what();
    return true;
  }
}

void TLldbBackend::RemoveBreakpoint(int id) {
  if (FTarget.IsValid()) FTarget.BreakpointDelete(id);
  FConditions.erase(id);
}

int TLldbBackend::Hit() {
  if (!FStopped) return 0;
  SBThread thread = FProcess.GetSelectedThread();
  if (thread.GetStopReason() != eStopReasonBreakpoint) return 0;
  return static_cast<int>(thread.GetStopReasonDataAtIndex(0));
}

void TLldbBackend::LookAtThreads(TSnapshot& snapshot) {
  for (std::uint32_t i = 0; i < FProcess.GetNumThreads(); ++i) {
    SBThread thread = FProcess.GetThreadAtIndex(i);
    snapshot.Threads.push_back(
        {thread.GetThreadID(), Text(thread.GetName()), ReasonOf(thread, FPaused)});
  }
  SBThread thread = FProcess.GetSelectedThread();
  snapshot.ThreadId = thread.GetThreadID();
  snapshot.Reason = ReasonOf(thread, FPaused);
  if (snapshot.Reason.empty() && FPaused) snapshot.Reason = "paused";
  if (const auto condition = FConditions.find(Hit()); condition != FConditions.end()) {
    if (!condition->second->Error.empty())
      snapshot.Reason = "The condition of the breakpoint: " + condition->second->Error;
  }
  for (std::uint32_t i = 0; i < std::min(thread.GetNumFrames(), MostFrames); ++i) {
    SBFrame frame = thread.GetFrameAtIndex(i);
    snapshot.Frames.push_back(
        {frame.GetPC(), Text(frame.GetDisplayFunctionName()), PlaceFrom(frame.GetLineEntry())});
  }
  snapshot.FrameIndex = thread.GetSelectedFrame().GetFrameID();
}

void TLldbBackend::LookAtFrame(TSnapshot& snapshot) {
  SBFrame frame = FProcess.GetSelectedThread().GetSelectedFrame();
  if (FProcessor != nullptr)
    for (const TRegisterRow& row : FProcessor->Registers) {
      SBValue value = frame.FindRegister(row.Name);
      // Of a call further out not all of them are known: they are what the processor has.
      if (!value.IsValid() || value.GetError().Fail())
        value = FProcess.GetSelectedThread().GetFrameAtIndex(0).FindRegister(row.Name);
      snapshot.Registers[row.Name] = value.GetValueAsUnsigned();
    }
  // The first set is that of the table.
  SBValueList sets = frame.GetRegisters();
  for (std::uint32_t set = 1; set < sets.GetSize(); ++set)
    for (std::uint32_t i = 0; i < sets.GetValueAtIndex(set).GetNumChildren(); ++i) {
      SBValue value = sets.GetValueAtIndex(set).GetChildAtIndex(i);
      snapshot.MoreRegisters.emplace_back(Text(value.GetName()), DigitsOf(value));
    }
  SBValueList values = frame.GetVariables(true, true, false, true);
  const bool pascal = IsPascal(frame);
  for (std::uint32_t i = 0; i < values.GetSize(); ++i) {
    SBValue value = values.GetValueAtIndex(i);
    snapshot.Locals.push_back(pascal ? ShowPascalVariable(value) : VariableFrom(value, 1));
  }
}

TSnapshot TLldbBackend::Look() {
  TSnapshot snapshot;
  snapshot.Processor = FProcessor;
  if (!FProcess.IsValid()) return snapshot;
  snapshot.ProcessId = FProcess.GetProcessID();
  const StateType state = FProcess.GetState();
  if (state == eStateExited) {
    snapshot.ExitCode = FProcess.GetExitStatus();
    snapshot.Reason = Text(FProcess.GetExitDescription());
  }
  if (!FStopped) return snapshot;
  LookAtThreads(snapshot);
  LookAtFrame(snapshot);
  return snapshot;
}

void TLldbBackend::SelectThread(std::uint64_t id) {
  NeedStopped();
  if (!FProcess.SetSelectedThreadByID(id)) throw EDebugError("There is no such thread any more");
}

void TLldbBackend::SelectFrame(std::size_t index) {
  Thread().SetSelectedFrame(static_cast<std::uint32_t>(index));
}

TVariable TLldbBackend::Evaluate(const std::string& expression) {
  SBFrame frame = Frame();
  if (IsPascal(frame)) {
    TLldbPascalScope scope(frame);
    return ShowPascal(EvaluatePascal(expression, scope), expression);
  }
  SBValue value = frame.GetValueForVariablePath(expression.c_str());
  if (!value.IsValid() || value.GetError().Fail()) {
    SBExpressionOptions options;
    options.SetTimeoutInMicroSeconds(500'000);
    options.SetIgnoreBreakpoints(true);
    value = frame.EvaluateExpression(expression.c_str(), options);
  }
  Check(value.GetError(), fmt::format("{} has no value", expression).c_str());
  TVariable variable = VariableFrom(value, 2);
  variable.Name = expression;
  return variable;
}

void TLldbBackend::WriteRegister(const std::string& name, std::uint64_t value) {
  SBError error;
  Frame()
      .FindRegister(name.c_str())
      .SetValueFromCString(fmt::format("0x{:x}", value).c_str(), error);
  Check(error, fmt::format("Register {} cannot be set", name).c_str());
}

void TLldbBackend::WriteMemory(std::uint64_t address, std::string_view bytes) {
  NeedStopped();
  SBError error;
  if (FProcess.WriteMemory(address, bytes.data(), bytes.size(), error) != bytes.size())
    throw EDebugError(
        fmt::format("Memory at ${:X} cannot be written: {}", address, Text(error.GetCString())));
}

TCodePlace TLldbBackend::PlaceOf(std::uint64_t address) {
  return PlaceFrom(Resolve(address).GetLineEntry());
}

std::optional<std::uint64_t> TLldbBackend::AddressOf(const std::string& symbol) {
  SBSymbolContextList found = FTarget.FindSymbols(symbol.c_str());
  for (std::uint32_t i = 0; i < found.GetSize(); ++i) {
    const std::uint64_t address =
        found.GetContextAtIndex(i).GetSymbol().GetStartAddress().GetLoadAddress(FTarget);
    if (address != LLDB_INVALID_ADDRESS) return address;
  }
  return std::nullopt;
}

}  // namespace wrenfold

extern "C" wrenfold::TDebugBackend* WrenfoldMakeDebugBackend() {
  return new wrenfold::TLldbBackend();
}
