// What a debugger's library must offer; the one that owns it is loaded when it is first needed.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "debugger/Code.h"
#include "debugger/Snapshot.h"
#include "platform/core/system/Exceptions.h"

namespace wrenfold {

// What the debugger refused, in its words.
class EDebugError : public Exception {
 public:
  using Exception::Exception;
};

struct TLaunch {
  std::string Program{};
  std::vector<std::string> Arguments{};
  std::string Folder{};
};

// Where to stop: a line of a source, an address, or the beginning of a function, of which the
// first that is given counts.
struct TBreakpoint {
  TCodePlace Place{};
  std::uint64_t Address = 0;
  std::string Function{};
  // In the language of the place; empty: always.
  std::string Condition{};
  int PassCount = 0;  // how many times, the condition holding, it is passed over first
  friend bool operator==(const TBreakpoint&, const TBreakpoint&) = default;
};

enum class TStep { Into, Over, Out, InstructionInto, InstructionOver };

// One debugged program. Every call comes from the one thread that made it; those that fail raise
// EDebugError and leave the program as it was.
class TDebugBackend : public TCodeSource {
 public:
  virtual ~TDebugBackend() = default;

  // What the program did by itself.
  struct TEvent {
    TRunState State = TRunState::None;
    // What it wrote; State does not count then.
    std::string Output{};
  };

  // Loads the program's file, so that breakpoints can be placed before it runs.
  virtual void Load(const std::string& program) = 0;
  // Starts what was loaded; it runs until a breakpoint.
  virtual void Launch(const TLaunch& launch) = 0;
  // Takes a running program over and stops it.
  virtual void Attach(std::uint64_t processId) = 0;
  virtual void Detach() = 0;
  // Ends the program, also one that does not answer.
  virtual void Kill() = 0;
  virtual void Continue() = 0;
  virtual void Step(TStep step) = 0;
  virtual void RunTo(const TBreakpoint& place) = 0;
  virtual void Pause() = 0;
  virtual void SendInput(const std::string& text) = 0;

  // The next thing that the program did, or nothing after the time.
  virtual std::optional<TEvent> Wait(int milliseconds) = 0;

  // Answers the number of places where it stands; 0 when there is no such line yet.
  virtual int SetBreakpoint(const TBreakpoint& breakpoint, int& id) = 0;
  virtual void RemoveBreakpoint(int id) = 0;
  // The breakpoint that the selected thread stopped at; 0: none.
  virtual int Hit() = 0;

  // Of the loaded program; null for one without a row.
  virtual const TProcessor* Processor() = 0;
  // The state as it is now, for the thread and frame that are selected.
  virtual TSnapshot Look() = 0;
  virtual void SelectThread(std::uint64_t id) = 0;
  virtual void SelectFrame(std::size_t index) = 0;
  virtual TVariable Evaluate(const std::string& expression) = 0;
  virtual void WriteRegister(const std::string& name, std::uint64_t value) = 0;
  virtual void WriteMemory(std::uint64_t address, std::string_view bytes) = 0;
  virtual TCodePlace PlaceOf(std::uint64_t address) = 0;
  virtual std::optional<std::uint64_t> AddressOf(const std::string& symbol) = 0;
};

// Loads the module beside the running program that owns the debugger's library and makes a backend.
// Raises EDebugError with what is missing. The module is never unloaded.
std::unique_ptr<TDebugBackend> LoadDebugBackend();

// The module's one entry, and its name.
inline constexpr const char* DebugBackendEntry = "WrenfoldMakeDebugBackend";
using TMakeDebugBackend = TDebugBackend* (*)();

}  // namespace wrenfold
