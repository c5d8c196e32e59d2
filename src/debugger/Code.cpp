#include "debugger/Code.h"

#include <fmt/format.h>

#include <algorithm>

namespace wrenfold {

namespace {

// Longer functions are entered here, far enough before the address for any decoding to have found
// its step.
constexpr std::uint64_t LongestWalk = 64 * 1024;

TInstruction ByteAt(std::string_view bytes, std::uint64_t address) {
  TInstruction instruction{.Address = address, .Bytes = std::string(bytes.substr(0, 1))};
  instruction.Text = fmt::format("db 0x{:02X}", static_cast<unsigned char>(bytes[0]));
  return instruction;
}

// The starts of the instructions from `start` up to `end`; empty when they do not meet it.
std::vector<std::uint64_t> Walk(const TProcessor& processor, std::string_view bytes,
                                std::uint64_t start) {
  std::vector<std::uint64_t> starts;
  std::size_t at = 0;
  while (at < bytes.size()) {
    starts.push_back(start + at);
    at += static_cast<std::size_t>(std::max(1, processor.Length(bytes.substr(at))));
  }
  if (at != bytes.size()) starts.clear();
  return starts;
}

void KeepLast(std::vector<std::uint64_t>& starts, std::size_t count) {
  if (starts.size() > count) starts.erase(starts.begin(), starts.end() - static_cast<long>(count));
}

// The bytes in front of the address, from no earlier than `from`.
std::string BytesBefore(TCodeSource& source, std::uint64_t from, std::uint64_t address) {
  std::string bytes = source.ReadMemory(from, address - from);
  return bytes.size() == address - from ? bytes : std::string();
}

// Every way of decoding falls into step sooner or later, most within few instructions: of the ways
// from neighbouring bytes that meet the address, the one that most of them end in is right.
std::vector<std::uint64_t> GuessBefore(TCodeSource& source, const TProcessor& processor,
                                       std::uint64_t address, std::size_t count) {
  const auto longest = static_cast<std::uint64_t>(processor.LongestInstruction);
  std::uint64_t reach = std::min(address, (count + 4) * longest);
  std::string bytes;
  // Memory may begin shortly before the address.
  while (reach > 0 && (bytes = BytesBefore(source, address - reach, address)).empty()) reach /= 2;
  std::vector<std::vector<std::uint64_t>> ways;
  for (std::size_t skip = 0; skip < longest && skip < bytes.size(); ++skip) {
    auto way = Walk(processor, std::string_view(bytes).substr(skip), address - reach + skip);
    KeepLast(way, count);
    if (!way.empty()) ways.push_back(std::move(way));
  }
  const auto votes = [&ways](const std::vector<std::uint64_t>& way) {
    return std::count(ways.begin(), ways.end(), way);
  };
  const auto best = std::max_element(ways.begin(), ways.end(), [&votes](auto& left, auto& right) {
    return votes(left) < votes(right);
  });
  return best == ways.end() ? std::vector<std::uint64_t>() : *best;
}

// Walks from the start of the symbol that covers the byte in front of the address; empty without
// such a symbol, or when the walk misses the address.
std::vector<std::uint64_t> WalkSymbol(TCodeSource& source, const TProcessor& processor,
                                      std::uint64_t address) {
  const auto symbol = source.SymbolAt(address - 1);
  if (!symbol || symbol->Start >= address || address - symbol->Start > LongestWalk) return {};
  const std::string bytes = BytesBefore(source, symbol->Start, address);
  return Walk(processor, bytes, symbol->Start);
}

}  // namespace

std::vector<TInstruction> Disassemble(TCodeSource& source, const TProcessor& processor,
                                      std::uint64_t address, std::size_t count) {
  const std::string bytes =
      source.ReadMemory(address, count * static_cast<std::size_t>(processor.LongestInstruction));
  std::string_view rest(bytes);
  std::vector<TInstruction> instructions;
  while (instructions.size() < count && !rest.empty()) {
    TInstruction instruction;
    if (!processor.Decode(rest, address, instruction)) instruction = ByteAt(rest, address);
    rest.remove_prefix(instruction.Bytes.size());
    address = instruction.End();
    instructions.push_back(std::move(instruction));
  }
  return instructions;
}

std::vector<std::uint64_t> InstructionsBefore(TCodeSource& source, const TProcessor& processor,
                                              std::uint64_t address, std::size_t count) {
  std::vector<std::uint64_t> found;
  while (found.size() < count && address > 0) {
    auto part = WalkSymbol(source, processor, address);
    const bool walked = !part.empty();
    if (!walked) part = GuessBefore(source, processor, address, count - found.size());
    if (part.empty()) break;
    KeepLast(part, count - found.size());
    address = part.front();
    found.insert(found.begin(), part.begin(), part.end());
    if (!walked) break;
  }
  return found;
}

}  // namespace wrenfold
