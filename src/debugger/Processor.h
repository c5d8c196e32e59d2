// What is known of a processor: its registers, its flags, and how its instructions are read.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

// A register as the debugger names it, and as the registers' pane publishes it.
struct TRegisterRow {
  const char* Name;
  const char* Published;
  int Bits;
};

// A flag: its lowest bit and width in the flags register. One that the system does not let a
// program change is shown only.
struct TFlagRow {
  const char* Published;
  const char* Short;
  const char* Long;
  int Bit;
  int Width;
  bool Changeable;
};

// One decoded instruction. Without a valid encoding it is one byte long and reads "db N".
struct TInstruction {
  std::uint64_t Address = 0;
  std::string Bytes{};
  std::string Text{};
  // Where a jump or call with a fixed target goes.
  std::optional<std::uint64_t> Target{};
  bool Jump = false;
  // A jump that is taken or not by the flags.
  bool Conditional = false;

  std::uint64_t End() const { return Address + Bytes.size(); }
};

// A processor is one row: everything else asks it by these members.
struct TProcessor {
  const char* Name;
  // What the architecture of a program's triple is called.
  std::span<const std::string_view> Architectures;
  int PointerSize;
  // The longest instruction in bytes.
  int LongestInstruction;
  std::span<const TRegisterRow> Registers;
  const char* ProgramCounter;
  const char* StackPointer;
  const char* FlagsRegister;
  std::span<const TFlagRow> Flags;
  // Decodes the instruction at the front of `bytes`; false when there is no valid one.
  bool (*Decode)(std::string_view bytes, std::uint64_t address, TInstruction& instruction);
  // The length alone, 0 when there is no valid instruction; much quicker.
  int (*Length)(std::string_view bytes);
  // Whether a conditional jump would be taken. `counter` is the register that some of them count
  // with.
  bool (*Taken)(std::string_view bytes, std::uint64_t flags, std::uint64_t counter);
  const char* Counter;

  const TRegisterRow* FindRegister(std::string_view name) const;
};

extern const TProcessor ProcessorX64;
extern const TProcessor ProcessorX86;

// The processor of a program by its triple, such as "x86_64--linux"; null for one without a row.
const TProcessor* FindProcessor(std::string_view triple);

inline std::uint64_t FlagValue(const TFlagRow& flag, std::uint64_t flags) {
  return flags >> flag.Bit & ((1u << flag.Width) - 1);
}

}  // namespace wrenfold
