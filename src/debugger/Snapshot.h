// What a stopped or running program looks like: values that are never changed once made.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "debugger/Processor.h"

namespace wrenfold {

enum class TRunState { None, Running, Stopped, Exited };

// A line of a source file, from 1; 0 where the program tells none.
struct TCodePlace {
  std::string File{};
  int Line = 0;
  explicit operator bool() const { return Line > 0; }
  friend bool operator==(const TCodePlace&, const TCodePlace&) = default;
};

struct TCall {
  std::uint64_t Address = 0;
  std::string Function{};
  TCodePlace Place{};
};

struct TThread {
  std::uint64_t Id = 0;
  std::string Name{};
  std::string Reason{};
};

struct TVariable {
  std::string Name{};
  std::string Type{};
  std::string Value{};
  std::vector<TVariable> Parts{};
  // It has none: Value tells why.
  bool Failed = false;
};

// Registers by the debugger's names.
using TRegisterValues = std::map<std::string, std::uint64_t>;

// One state of the program. Frames, locals and registers are those of the selected thread, locals
// those of the selected frame; while it runs there are none.
struct TSnapshot {
  // Counts up with each state, so that an answer to an older one is told apart.
  std::uint64_t Number = 0;
  TRunState State = TRunState::None;
  // Why it stopped, in words; how it ended.
  std::string Reason{};
  int ExitCode = 0;
  std::uint64_t ProcessId = 0;
  // Null while no program is loaded, or its processor is unknown.
  const TProcessor* Processor = nullptr;
  std::vector<TThread> Threads;
  std::uint64_t ThreadId = 0;
  std::vector<TCall> Frames;
  std::size_t FrameIndex = 0;
  std::vector<TVariable> Locals;
  TRegisterValues Registers;
  // Those that are no whole numbers of the table (floating point, vectors), as text to be shown.
  std::vector<std::pair<std::string, std::string>> MoreRegisters;

  std::uint64_t Register(const char* name) const {
    const auto found = Registers.find(name);
    return found == Registers.end() ? 0 : found->second;
  }
  std::uint64_t Address() const { return Processor ? Register(Processor->ProgramCounter) : 0; }
  std::uint64_t FlagBits() const { return Processor ? Register(Processor->FlagsRegister) : 0; }
};

using TSnapshotPtr = std::shared_ptr<const TSnapshot>;

}  // namespace wrenfold
