// The processors of the x86 family. Registers, flags and their bits: the manufacturer's manual,
// volume 1, chapter 3.4; conditions of jumps: volume 2, "Jcc".
#include <Zydis/Zydis.h>

#include <array>

#include "debugger/Processor.h"
#include "platform/core/text/Format.h"

namespace wrenfold {

namespace {

constexpr TRegisterRow Registers64[] = {
    {"rax", "RAX", 64}, {"rbx", "RBX", 64}, {"rcx", "RCX", 64}, {"rdx", "RDX", 64},
    {"rsi", "RSI", 64}, {"rdi", "RDI", 64}, {"rbp", "RBP", 64}, {"rsp", "RSP", 64},
    {"rip", "RIP", 64}, {"r8", "R8", 64},   {"r9", "R9", 64},   {"r10", "R10", 64},
    {"r11", "R11", 64}, {"r12", "R12", 64}, {"r13", "R13", 64}, {"r14", "R14", 64},
    {"r15", "R15", 64}, {"cs", "CS", 16},   {"ds", "DS", 16},   {"ss", "SS", 16},
    {"es", "ES", 16},   {"fs", "FS", 16},   {"gs", "GS", 16},   {"rflags", "RFL", 64},
};
constexpr TRegisterRow Registers32[] = {
    {"eax", "EAX", 32}, {"ebx", "EBX", 32}, {"ecx", "ECX", 32}, {"edx", "EDX", 32},
    {"esi", "ESI", 32}, {"edi", "EDI", 32}, {"ebp", "EBP", 32}, {"esp", "ESP", 32},
    {"eip", "EIP", 32}, {"cs", "CS", 16},   {"ds", "DS", 16},   {"ss", "SS", 16},
    {"es", "ES", 16},   {"fs", "FS", 16},   {"gs", "GS", 16},   {"eflags", "EFL", 32},
};

constexpr bool Fixed = false, Free = true;
constexpr TFlagRow Flags[] = {
    {"Carry", "CF", "Carry Flag", 0, 1, Free},
    {"Parity", "PF", "Parity Flag", 2, 1, Free},
    {"AuxCarry", "AF", "Auxiliary Carry Flag", 4, 1, Free},
    {"Zero", "ZF", "Zero Flag", 6, 1, Free},
    {"Sign", "SF", "Sign Flag", 7, 1, Free},
    {"Trap", "TF", "Trap Flag", 8, 1, Fixed},
    {"Interrupt", "IF", "Interrupt Enable Flag", 9, 1, Fixed},
    {"Direction", "DF", "Direction Flag", 10, 1, Free},
    {"Overflow", "OF", "Overflow Flag", 11, 1, Free},
    {"IOPL", "IO", "I/O Privilege Level", 12, 2, Fixed},
    {"NestedTask", "NF", "Nested Task", 14, 1, Free},
    {"Resume", "RF", "Resume Flag", 16, 1, Fixed},
    {"V86Mode", "VM", "Virtual 8086 Mode", 17, 1, Fixed},
    {"Alignment", "AC", "Alignment Check", 18, 1, Free},
};

constexpr std::string_view Architectures64[] = {"x86_64", "amd64"};
constexpr std::string_view Architectures32[] = {"i386", "i486", "i586", "i686"};

// The decoders are made once; they are read only afterwards.
template <ZydisMachineMode Mode, ZydisStackWidth Width>
const ZydisDecoder& Decoder() {
  static const ZydisDecoder decoder = [] {
    ZydisDecoder made;
    ZydisDecoderInit(&made, Mode, Width);
    return made;
  }();
  return decoder;
}
const ZydisDecoder& Decoder64() {
  return Decoder<ZYDIS_MACHINE_MODE_LONG_64, ZYDIS_STACK_WIDTH_64>();
}
const ZydisDecoder& Decoder32() {
  return Decoder<ZYDIS_MACHINE_MODE_LEGACY_32, ZYDIS_STACK_WIDTH_32>();
}

const ZydisFormatter& Formatter() {
  static const ZydisFormatter formatter = [] {
    ZydisFormatter made;
    ZydisFormatterInit(&made, ZYDIS_FORMATTER_STYLE_INTEL);
    ZydisFormatterSetProperty(&made, ZYDIS_FORMATTER_PROP_FORCE_SIZE, ZYAN_FALSE);
    ZydisFormatterSetProperty(&made, ZYDIS_FORMATTER_PROP_HEX_UPPERCASE, ZYAN_TRUE);
    return made;
  }();
  return formatter;
}

bool IsConditional(const ZydisDecodedInstruction& decoded) {
  return decoded.meta.category == ZYDIS_CATEGORY_COND_BR;
}

void TakeTarget(const ZydisDecodedInstruction& decoded, const ZydisDecodedOperand& operand,
                TInstruction& instruction) {
  const bool call = decoded.meta.category == ZYDIS_CATEGORY_CALL;
  instruction.Conditional = IsConditional(decoded);
  instruction.Jump = instruction.Conditional || decoded.meta.category == ZYDIS_CATEGORY_UNCOND_BR;
  if (!instruction.Jump && !call) return;
  ZyanU64 target = 0;
  if (operand.type == ZYDIS_OPERAND_TYPE_IMMEDIATE &&
      ZYAN_SUCCESS(ZydisCalcAbsoluteAddress(&decoded, &operand, instruction.Address, &target)))
    instruction.Target = target;
}

bool Decode(const ZydisDecoder& decoder, std::string_view bytes, std::uint64_t address,
            TInstruction& instruction) {
  ZydisDecodedInstruction decoded;
  std::array<ZydisDecodedOperand, ZYDIS_MAX_OPERAND_COUNT> operands;
  instruction = {.Address = address};
  if (!ZYAN_SUCCESS(
          ZydisDecoderDecodeFull(&decoder, bytes.data(), bytes.size(), &decoded, operands.data())))
    return false;
  instruction.Bytes = bytes.substr(0, decoded.length);
  std::array<char, 128> text{};
  ZydisFormatterFormatInstruction(&Formatter(), &decoded, operands.data(),
                                  decoded.operand_count_visible, text.data(), text.size(), address,
                                  ZYAN_NULL);
  instruction.Text = text.data();
  TakeTarget(decoded, operands[0], instruction);
  return true;
}

int Length(const ZydisDecoder& decoder, std::string_view bytes) {
  ZydisDecodedInstruction decoded;
  const auto status = ZydisDecoderDecodeInstruction(
      &decoder, static_cast<ZydisDecoderContext*>(nullptr), bytes.data(), bytes.size(), &decoded);
  return ZYAN_SUCCESS(status) ? decoded.length : 0;
}

struct TFlags {
  bool Carry, Parity, Zero, Sign, Overflow;
};

bool Holds(ZydisMnemonic mnemonic, const TFlags& f, std::uint64_t counter) {
  switch (mnemonic) {
    case ZYDIS_MNEMONIC_JO:
      return f.Overflow;
    case ZYDIS_MNEMONIC_JNO:
      return !f.Overflow;
    case ZYDIS_MNEMONIC_JB:
      return f.Carry;
    case ZYDIS_MNEMONIC_JNB:
      return !f.Carry;
    case ZYDIS_MNEMONIC_JZ:
      return f.Zero;
    case ZYDIS_MNEMONIC_JNZ:
      return !f.Zero;
    case ZYDIS_MNEMONIC_JBE:
      return f.Carry || f.Zero;
    case ZYDIS_MNEMONIC_JNBE:
      return !f.Carry && !f.Zero;
    case ZYDIS_MNEMONIC_JS:
      return f.Sign;
    case ZYDIS_MNEMONIC_JNS:
      return !f.Sign;
    case ZYDIS_MNEMONIC_JP:
      return f.Parity;
    case ZYDIS_MNEMONIC_JNP:
      return !f.Parity;
    case ZYDIS_MNEMONIC_JL:
      return f.Sign != f.Overflow;
    case ZYDIS_MNEMONIC_JNL:
      return f.Sign == f.Overflow;
    case ZYDIS_MNEMONIC_JLE:
      return f.Zero || f.Sign != f.Overflow;
    case ZYDIS_MNEMONIC_JNLE:
      return !f.Zero && f.Sign == f.Overflow;
    case ZYDIS_MNEMONIC_JCXZ:
      return (counter & 0xFFFF) == 0;
    case ZYDIS_MNEMONIC_JECXZ:
      return (counter & 0xFFFFFFFF) == 0;
    case ZYDIS_MNEMONIC_JRCXZ:
      return counter == 0;
    // These count down first.
    case ZYDIS_MNEMONIC_LOOP:
      return counter != 1;
    case ZYDIS_MNEMONIC_LOOPE:
      return counter != 1 && f.Zero;
    case ZYDIS_MNEMONIC_LOOPNE:
      return counter != 1 && !f.Zero;
    default:
      return false;
  }
}

bool Taken(const ZydisDecoder& decoder, std::string_view bytes, std::uint64_t flags,
           std::uint64_t counter) {
  ZydisDecodedInstruction decoded;
  const auto status = ZydisDecoderDecodeInstruction(
      &decoder, static_cast<ZydisDecoderContext*>(nullptr), bytes.data(), bytes.size(), &decoded);
  if (!ZYAN_SUCCESS(status)) return false;
  const auto bit = [flags](int number) { return (flags >> number & 1) != 0; };
  return Holds(decoded.mnemonic, {bit(0), bit(2), bit(6), bit(7), bit(11)}, counter);
}

}  // namespace

const TProcessor ProcessorX64{
    .Name = "x86-64",
    .Architectures = Architectures64,
    .PointerSize = 8,
    .LongestInstruction = 15,
    .Registers = Registers64,
    .ProgramCounter = "rip",
    .StackPointer = "rsp",
    .FlagsRegister = "rflags",
    .Flags = Flags,
    .Decode = [](std::string_view bytes, std::uint64_t address,
                 TInstruction& out) { return Decode(Decoder64(), bytes, address, out); },
    .Length = [](std::string_view bytes) { return Length(Decoder64(), bytes); },
    .Taken = [](std::string_view bytes, std::uint64_t flags,
                std::uint64_t counter) { return Taken(Decoder64(), bytes, flags, counter); },
    .Counter = "rcx",
};

const TProcessor ProcessorX86{
    .Name = "i386",
    .Architectures = Architectures32,
    .PointerSize = 4,
    .LongestInstruction = 15,
    .Registers = Registers32,
    .ProgramCounter = "eip",
    .StackPointer = "esp",
    .FlagsRegister = "eflags",
    .Flags = Flags,
    .Decode = [](std::string_view bytes, std::uint64_t address,
                 TInstruction& out) { return Decode(Decoder32(), bytes, address, out); },
    .Length = [](std::string_view bytes) { return Length(Decoder32(), bytes); },
    .Taken = [](std::string_view bytes, std::uint64_t flags,
                std::uint64_t counter) { return Taken(Decoder32(), bytes, flags, counter); },
    .Counter = "ecx",
};

}  // namespace wrenfold
