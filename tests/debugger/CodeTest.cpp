// Instructions forwards and backwards, over bytes that stand in the tests and over the C library.
#include <elf.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "debugger/Code.h"

namespace wrenfold {
namespace {

using namespace std::string_literals;

struct TBytes final : TCodeSource {
  std::uint64_t Base = 0;
  std::string Content;
  std::vector<TSymbol> Symbols;  // ascending

  std::string ReadMemory(std::uint64_t address, std::size_t size) override {
    if (address < Base || address - Base > Content.size()) return {};
    return Content.substr(address - Base, size);
  }
  std::optional<TSymbol> SymbolAt(std::uint64_t address) override {
    auto next = std::upper_bound(
        Symbols.begin(), Symbols.end(), address,
        [](std::uint64_t value, const TSymbol& symbol) { return value < symbol.Start; });
    if (next == Symbols.begin() || address >= (--next)->End) return std::nullopt;
    return *next;
  }
};

struct TDecodeCase {
  const char* Name;
  const TProcessor* Processor;
  std::string Bytes;
  std::string Text;
  std::uint64_t Target;  // 0: none
  bool Conditional;
};

TEST(Code, InstructionReadsAsItsBytesSay) {
  const TDecodeCase cases[] = {
      {"push", &ProcessorX64, "\x55", "push rbp", 0, false},
      {"short jump back", &ProcessorX64, "\xEB\xFE", "jmp 0x0000000000001000", 0x1000, false},
      {"conditional", &ProcessorX64, "\x74\x02", "jz 0x0000000000001004", 0x1004, true},
      {"call", &ProcessorX64, "\xE8\0\0\0\0"s, "call 0x0000000000001005", 0x1005, false},
      {"indirect call", &ProcessorX64, "\xFF\xD0", "call rax", 0, false},
      {"no instruction", &ProcessorX64, "\x06", "db 0x06", 0, false},
      {"cut off", &ProcessorX64, "\xE8\x01", "db 0xE8", 0, false},
      {"of 32 bits only", &ProcessorX86, "\x06", "push es", 0, false},
      {"inc there, prefix here", &ProcessorX86, "\x40", "inc eax", 0, false},
  };
  for (const TDecodeCase& row : cases) {
    SCOPED_TRACE(row.Name);
    TBytes source;
    source.Base = 0x1000;
    source.Content = row.Bytes;
    const auto lines = Disassemble(source, *row.Processor, 0x1000, 1);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].Text, row.Text);
    EXPECT_EQ(lines[0].Target.value_or(0), row.Target);
    EXPECT_EQ(lines[0].Conditional, row.Conditional);
  }
}

TEST(Code, JumpIsTakenByTheFlagsItReads) {
  constexpr std::uint64_t carry = 1, parity = 4, zero = 0x40, sign = 0x80, overflow = 0x800;
  // The second byte of the opcode counts the conditions up; odd ones are the opposite.
  const std::uint64_t holds[8] = {overflow, carry, zero, carry, sign, parity, sign, zero};
  for (int condition = 0; condition < 16; ++condition) {
    const std::string jump = {static_cast<char>(0x70 + condition), 2};
    const bool opposite = condition % 2 != 0;
    EXPECT_NE(ProcessorX64.Taken(jump, holds[condition / 2], 0), opposite) << condition;
    EXPECT_EQ(ProcessorX64.Taken(jump, 0, 0), opposite) << condition;
  }
  EXPECT_FALSE(ProcessorX64.Taken("\x7C\x02", sign | overflow, 0)) << "less, after an overflow";
  EXPECT_TRUE(ProcessorX64.Taken("\xE3\x02", 0, 0)) << "the counter is zero";
  EXPECT_FALSE(ProcessorX64.Taken("\xE2\x02", 0, 1)) << "the loop counts down to zero";
}

// Four bytes an instruction, of which 0xFF begins none: all that a processor has to be is a row.
const TProcessor MadeUp = {
    .Name = "made up",
    .Architectures = {},
    .PointerSize = 4,
    .LongestInstruction = 4,
    .Registers = {},
    .ProgramCounter = "pc",
    .StackPointer = "sp",
    .FlagsRegister = "cc",
    .Flags = {},
    .Decode =
        [](std::string_view bytes, std::uint64_t address, TInstruction& out) {
          if (bytes.size() < 4 || bytes[0] == '\xFF') return false;
          out = {.Address = address, .Bytes = std::string(bytes.substr(0, 4)), .Text = "word"};
          return true;
        },
    .Length = [](std::string_view bytes) { return bytes.size() < 4 || bytes[0] == '\xFF' ? 0 : 4; },
    .Taken = [](std::string_view, std::uint64_t, std::uint64_t) { return false; },
    .Counter = "r0",
};

TEST(Code, ProcessorOfAnotherFamilyIsARow) {
  TBytes source;
  source.Base = 0x100;
  source.Content = std::string(64, '\1');
  source.Symbols = {{"f", 0x100, 0x140}};
  EXPECT_EQ(Disassemble(source, MadeUp, 0x104, 2)[1].Address, 0x108u);
  EXPECT_EQ(InstructionsBefore(source, MadeUp, 0x110, 3),
            (std::vector<std::uint64_t>{0x104, 0x108, 0x10C}));
}

TEST(Code, GoingBackStopsWhereMemoryBegins) {
  TBytes source;
  source.Base = 0x1000;
  source.Content = "\x55\x55\x55";
  EXPECT_EQ(InstructionsBefore(source, ProcessorX64, 0x1003, 10).back(), 0x1002u);
  EXPECT_TRUE(InstructionsBefore(source, ProcessorX64, 0x1000, 10).empty());
  EXPECT_TRUE(InstructionsBefore(source, ProcessorX64, 0, 10).empty());
}

// The code and the function symbols of an ELF library.
TBytes LoadLibrary(const char* path) {
  std::ifstream file(path, std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(file)), {});
  TBytes library;
  if (bytes.size() < sizeof(Elf64_Ehdr)) return library;
  const auto at = [&bytes]<class T>(T& value, std::size_t offset) {
    std::memcpy(&value, bytes.data() + offset, sizeof value);
  };
  Elf64_Ehdr header;
  at(header, 0);
  std::vector<Elf64_Shdr> sections(header.e_shnum);
  for (std::size_t i = 0; i < sections.size(); ++i)
    at(sections[i], header.e_shoff + i * sizeof(Elf64_Shdr));
  const auto text = [&](const Elf64_Shdr& section) {
    return section.sh_type == SHT_PROGBITS && (section.sh_flags & SHF_EXECINSTR) != 0;
  };
  const auto largest = std::max_element(sections.begin(), sections.end(), [&](auto& a, auto& b) {
    return (text(a) ? a.sh_size : 0) < (text(b) ? b.sh_size : 0);
  });
  library.Base = largest->sh_addr;
  library.Content = bytes.substr(largest->sh_offset, largest->sh_size);
  for (const Elf64_Shdr& section : sections) {
    if (section.sh_type != SHT_DYNSYM) continue;
    for (std::size_t i = 0; i < section.sh_size / sizeof(Elf64_Sym); ++i) {
      Elf64_Sym symbol;
      at(symbol, section.sh_offset + i * sizeof symbol);
      if (ELF64_ST_TYPE(symbol.st_info) == STT_FUNC && symbol.st_size > 0)
        library.Symbols.push_back({"", symbol.st_value, symbol.st_value + symbol.st_size});
    }
  }
  std::sort(library.Symbols.begin(), library.Symbols.end(),
            [](const TSymbol& a, const TSymbol& b) { return a.Start < b.Start; });
  return library;
}

// Of the last ten instructions at random points inside functions: how many are those that a walk
// from the function's start meets.
double ShareFound(TBytes& library, bool symbols) {
  TBytes blind = library;
  blind.Symbols.clear();
  std::minstd_rand random(1);
  double right = 0, all = 0;
  for (int round = 0; round < 500; ++round) {
    const TSymbol& symbol = library.Symbols[random() % library.Symbols.size()];
    std::vector<std::uint64_t> starts;
    for (std::uint64_t at = symbol.Start; at < symbol.End;) {
      starts.push_back(at);
      const int length = ProcessorX64.Length(library.ReadMemory(at, 15));
      at += static_cast<std::uint64_t>(std::max(1, length));
    }
    if (starts.size() < 12) continue;
    const std::size_t point = 11 + random() % (starts.size() - 11);
    const auto found =
        InstructionsBefore(symbols ? library : blind, ProcessorX64, starts[point], 10);
    for (std::size_t i = 0; i < 10; ++i, ++all)
      right += std::find(found.begin(), found.end(), starts[point - 1 - i]) != found.end();
  }
  return all > 0 ? right / all : 0;
}

TEST(Code, GoingBackMeetsTheInstructionsThatRun) {
  TBytes library = LoadLibrary("/lib/x86_64-linux-gnu/libc.so.6");
  if (library.Symbols.empty()) GTEST_SKIP() << "no C library of this processor here";
  EXPECT_GE(ShareFound(library, true), 0.999);
  EXPECT_GE(ShareFound(library, false), 0.97);
}

}  // namespace
}  // namespace wrenfold
