#include "host/debug/MemoryUnits.h"

#include <fmt/format.h>

#include <charconv>
#include <cstdint>
#include <cstring>

namespace wrenfold {

namespace {

template <class Number>
Number NumberFrom(std::string_view bytes) {
  Number number{};
  std::memcpy(&number, bytes.data(), sizeof number);
  return number;
}

template <class Number>
std::string BytesOf(Number number) {
  return std::string(reinterpret_cast<const char*>(&number), sizeof number);
}

template <class Number>
std::string FormatWhole(std::string_view bytes) {
  return fmt::format("{:0{}X}", NumberFrom<Number>(bytes), 2 * sizeof(Number));
}

template <class Number>
std::optional<std::string> ParseWhole(std::string_view text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return BytesOf(number);
}

template <class Number>
std::string FormatFraction(std::string_view bytes) {
  return fmt::format("{}", NumberFrom<Number>(bytes));
}

template <class Number>
std::optional<std::string> ParseFraction(std::string_view text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return BytesOf(number);
}

template <class Number>
constexpr TMemoryUnit Whole(const char* name) {
  return {name, sizeof(Number), &FormatWhole<Number>, &ParseWhole<Number>};
}
template <class Number>
constexpr TMemoryUnit Fraction(const char* name) {
  return {name, sizeof(Number), &FormatFraction<Number>, &ParseFraction<Number>};
}

constexpr TMemoryUnit Units[] = {
    Whole<std::uint8_t>("Bytes"),
    Whole<std::uint16_t>("Words of 16 bits"),
    Whole<std::uint32_t>("Words of 32 bits"),
    Whole<std::uint64_t>("Words of 64 bits"),
    Fraction<float>("Floats of 32 bits"),
    Fraction<double>("Floats of 64 bits"),
};

}  // namespace

std::span<const TMemoryUnit> MemoryUnits() {
  return Units;
}

std::string FormatUnits(const TMemoryUnit& unit, std::string_view bytes) {
  std::string text;
  for (std::size_t at = 0; at + unit.Size <= bytes.size(); at += unit.Size) {
    if (!text.empty()) text += ' ';
    text += unit.Format(bytes.substr(at, unit.Size));
  }
  return text;
}

std::optional<std::string> ParseUnits(const TMemoryUnit& unit, std::string_view text,
                                      std::size_t byteCount) {
  std::string bytes;
  for (std::size_t at = 0; (at = text.find_first_not_of(' ', at)) != std::string_view::npos;) {
    const std::size_t end = std::min(text.find(' ', at), text.size());
    const auto number = unit.Parse(text.substr(at, end - at));
    if (!number) return std::nullopt;
    bytes += *number;
    at = end;
  }
  if (bytes.size() != byteCount) return std::nullopt;
  return bytes;
}

}  // namespace wrenfold
