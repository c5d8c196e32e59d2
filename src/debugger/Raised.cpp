// What stands where: the layout of classes in the free Pascal manual ("Class instances"), that of
// type records in the C++ ABI for Itanium, which all systems of today use, chapter 2.9.5.
#include "debugger/Raised.h"

#include <cxxabi.h>
#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

constexpr std::size_t MostText = 512;
// A chain of ancestors that is longer leads nowhere.
constexpr int MostAncestors = 64;

class TReader {
 public:
  TReader(TCodeSource& memory, const TProcessor& processor)
      : FMemory(memory), FSize(static_cast<std::size_t>(processor.PointerSize)) {}

  std::size_t PointerSize() const { return FSize; }
  // 0 where nothing can be read.
  std::uint64_t Pointer(std::uint64_t address) {
    const std::string bytes = FMemory.ReadMemory(address, FSize);
    std::uint64_t value = 0;
    if (bytes.size() == FSize) std::memcpy(&value, bytes.data(), FSize);
    return value;
  }
  std::string Bytes(std::uint64_t address, std::size_t size) {
    return address == 0 ? std::string() : FMemory.ReadMemory(address, std::min(size, MostText));
  }
  std::string ZeroEnded(std::uint64_t address) {
    const std::string bytes = Bytes(address, MostText);
    return bytes.substr(0, bytes.find('\0'));
  }

 private:
  TCodeSource& FMemory;
  std::size_t FSize;
};

std::uint64_t Value(const TRegisterValues& registers, const char* name) {
  const auto found = registers.find(name);
  return found == registers.end() ? 0 : found->second;
}

std::string Described(const std::string& name, const std::string& message) {
  if (name.empty()) return "An exception was raised";
  return message.empty() ? name : name + ": " + message;
}

// --- free Pascal: the record of a class has its parent behind two sizes, then its name

std::string ShortText(TReader& reader, std::uint64_t address) {
  const std::string length = reader.Bytes(address, 1);
  return length.empty() ? "" : reader.Bytes(address + 1, static_cast<unsigned char>(length[0]));
}

std::string DescribePascal(TCodeSource& memory, const TProcessor& processor,
                           const TRegisterValues& registers) {
  TReader reader(memory, processor);
  const std::size_t size = reader.PointerSize();
  const std::uint64_t object = Value(registers, size == 8 ? "rdi" : "eax");
  const std::uint64_t record = reader.Pointer(object);
  const auto nameOf = [&](std::uint64_t of) {
    return ShortText(reader, reader.Pointer(of + 3 * size));
  };
  std::uint64_t ancestor = record;
  for (int i = 0; i < MostAncestors && ancestor != 0 && !EqualText(nameOf(ancestor), "Exception");
       ++i)
    ancestor = reader.Pointer(reader.Pointer(ancestor + 2 * size));
  std::string message;
  if (ancestor != 0) {
    // The first field; the length stands in front of the text.
    const std::uint64_t text = reader.Pointer(object + size);
    if (text != 0)
      message = reader.Bytes(text, static_cast<std::size_t>(reader.Pointer(text - size)));
  }
  return Described(nameOf(record), message);
}

// --- C++: a type record has its name second, its only base third

std::string Demangled(const std::string& name) {
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> text(
      abi::__cxa_demangle(name.c_str(), nullptr, nullptr, &status), &std::free);
  return status == 0 ? text.get() : name;
}

std::string DescribeCpp(TCodeSource& memory, const TProcessor& processor,
                        const TRegisterValues& registers) {
  TReader reader(memory, processor);
  const std::size_t size = reader.PointerSize();
  const std::uint64_t stack = Value(registers, processor.StackPointer);
  const std::uint64_t object = size == 8 ? Value(registers, "rdi") : reader.Pointer(stack + size);
  const std::uint64_t type = size == 8 ? Value(registers, "rsi") : reader.Pointer(stack + 2 * size);
  const auto nameOf = [&](std::uint64_t of) { return reader.ZeroEnded(reader.Pointer(of + size)); };
  const std::string name = nameOf(type);
  std::string message;
  std::uint64_t ancestor = type;
  for (int i = 0; i < MostAncestors && ancestor != 0; ++i) {
    const std::string known = nameOf(ancestor);
    if (known == "St13runtime_error" || known == "St11logic_error") {
      message = reader.ZeroEnded(reader.Pointer(object + size));
      break;
    }
    // Names of types that have just one base are followed; others have no such pointer.
    if (known.empty()) break;
    ancestor = reader.Pointer(ancestor + 2 * size);
  }
  return Described(name.empty() ? name : Demangled(name), message);
}

constexpr TRaiseFunction Functions[] = {
    {"fpc_raiseexception", &DescribePascal},
    {"__cxa_throw", &DescribeCpp},
};

}  // namespace

std::span<const TRaiseFunction> RaiseFunctions() {
  return Functions;
}

const TRaiseFunction* FindRaiseFunction(const std::string& name) {
  for (const TRaiseFunction& row : Functions)
    if (row.Name == name) return &row;
  return nullptr;
}

}  // namespace wrenfold
