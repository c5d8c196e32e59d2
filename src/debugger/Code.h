// Code of a program as instructions, forwards and backwards.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "debugger/Processor.h"

namespace wrenfold {

// A function, or a label, of the program: from Start up to End.
struct TSymbol {
  std::string Name{};
  std::uint64_t Start = 0;
  std::uint64_t End = 0;
};

// Where code comes from: the memory of a process, or a file.
class TCodeSource {
 public:
  // As much of the bytes from the address on as can be read, at most `size`.
  virtual std::string ReadMemory(std::uint64_t address, std::size_t size) = 0;
  virtual std::optional<TSymbol> SymbolAt(std::uint64_t address) = 0;

 protected:
  ~TCodeSource() = default;
};

// Decodes `count` instructions from the address on; fewer where memory ends. A byte that begins no
// instruction stands as one of its own.
std::vector<TInstruction> Disassemble(TCodeSource& source, const TProcessor& processor,
                                      std::uint64_t address, std::size_t count);

// The starts of up to `count` instructions in front of the address, ascending. Where a symbol
// covers them they are walked to from its start, so that they are those that run; elsewhere the
// start is taken on which most ways of decoding agree.
std::vector<std::uint64_t> InstructionsBefore(TCodeSource& source, const TProcessor& processor,
                                              std::uint64_t address, std::size_t count);

}  // namespace wrenfold
