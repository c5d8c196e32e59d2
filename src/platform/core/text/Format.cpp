#include "platform/core/text/Format.h"

#include <fmt/printf.h>

#include <charconv>

#include "platform/core/system/Exceptions.h"

namespace wrenfold {

namespace {

// A width or precision beyond this is a damaged text, not a wish.
constexpr int cMaxField = 1024;

struct TPlaceholder {
  std::string_view Text;   // as written, '%' included
  std::string_view Flags;  // between '%' and the letter, without the precision
  int Precision = -1;      // -1: none given
  char Letter = 0;         // '%' for "%%"
};

[[noreturn]] void Raise(std::string_view pattern, std::size_t argNumber, std::string_view what) {
  throw EFormatError(
      fmt::format("Format \"{}\" and its argument {}: {}", pattern, argNumber, what));
}

// Splits a pattern into plain text and placeholders.
class TPatternScanner {
 public:
  explicit TPatternScanner(std::string_view pattern) : FPattern(pattern) {}

  // The plain text up to the next placeholder or the end.
  std::string_view PlainText() {
    const std::size_t start = FPos;
    FPos = std::min(FPattern.find('%', FPos), FPattern.size());
    return FPattern.substr(start, FPos - start);
  }
  bool AtEnd() const { return FPos == FPattern.size(); }

  TPlaceholder Placeholder(std::size_t argNumber) {
    const std::size_t start = FPos++;
    while (Peek() == '-' || Peek() == '0') ++FPos;
    Number(argNumber);
    TPlaceholder result;
    result.Flags = FPattern.substr(start + 1, FPos - start - 1);
    if (Peek() == '.') {
      ++FPos;
      result.Precision = Number(argNumber);
    }
    result.Letter = Peek();
    if (result.Letter == 0 ||
        std::string_view("duxsfeg%").find(result.Letter) == std::string_view::npos)
      Raise(FPattern, argNumber, "expected one of the letters d, u, x, s, f, e, g or '%'");
    if (result.Letter == '%' && FPos != start + 1)
      Raise(FPattern, argNumber, "\"%%\" takes no width");
    ++FPos;
    result.Text = FPattern.substr(start, FPos - start);
    return result;
  }

 private:
  char Peek() const { return AtEnd() ? '\0' : FPattern[FPos]; }

  int Number(std::size_t argNumber) {
    int value = 0;
    const char* begin = FPattern.data() + FPos;
    const auto [end, error] = std::from_chars(begin, FPattern.data() + FPattern.size(), value);
    if (end == begin) return 0;
    if (error != std::errc() || value < 0 || value > cMaxField)
      Raise(FPattern, argNumber, fmt::format("width and precision go up to {}", cMaxField));
    FPos += static_cast<std::size_t>(end - begin);
    return value;
  }

  std::string_view FPattern;
  std::size_t FPos = 0;
};

// Renders one value; an empty error text means success.
class TRenderer {
 public:
  explicit TRenderer(const TPlaceholder& placeholder) : FPlaceholder(placeholder) {}

  std::string_view Error() const { return FError; }

  std::string operator()(int value) { return Integer(value, static_cast<unsigned>(value)); }
  std::string operator()(long long value) {
    return Integer(value, static_cast<unsigned long long>(value));
  }
  std::string operator()(unsigned long long value) { return Integer(value, value); }
  std::string operator()(double value) {
    switch (FPlaceholder.Letter) {
      case 'f':
        return Print(FPlaceholder.Letter, 2, value);
      case 'e':
      case 'g':
        return Print(FPlaceholder.Letter, 15, value);
      default:
        return Fail("the value is a floating-point number");
    }
  }
  std::string operator()(std::string_view value) {
    return FPlaceholder.Letter == 's' ? Print('s', -1, value) : Fail("the value is a text");
  }

 private:
  template <typename TValue, typename TUnsigned>
  std::string Integer(TValue value, TUnsigned asUnsigned) {
    switch (FPlaceholder.Letter) {
      // 'd' would show a large unsigned value as a negative one.
      case 'd':
        return std::is_unsigned_v<TValue> ? Print('u', -1, value) : Print('d', -1, value);
      case 'u':
        return Print('u', -1, asUnsigned);
      case 'x':
        return Print('X', -1, asUnsigned);
      default:
        return Fail("the value is an integer");
    }
  }

  template <typename T>
  std::string Print(char letter, int defaultPrecision, T value) {
    const int precision = FPlaceholder.Precision < 0 ? defaultPrecision : FPlaceholder.Precision;
    std::string pattern = fmt::format("%{}", FPlaceholder.Flags);
    if (precision >= 0) pattern += fmt::format(".{}", precision);
    pattern += letter;
    return fmt::sprintf(pattern, value);
  }

  std::string Fail(std::string_view error) {
    FError = error;
    return {};
  }

  const TPlaceholder& FPlaceholder;
  std::string_view FError;
};

}  // namespace

std::string FormatArgs(std::string_view pattern, std::span<const TFormatArg> args) {
  std::string result;
  std::size_t used = 0;
  TPatternScanner scanner(pattern);
  for (result += scanner.PlainText(); !scanner.AtEnd(); result += scanner.PlainText()) {
    const TPlaceholder placeholder = scanner.Placeholder(used + 1);
    if (placeholder.Letter == '%') {
      result += '%';
      continue;
    }
    if (used == args.size()) Raise(pattern, used + 1, "no value was given");
    TRenderer renderer(placeholder);
    const std::string text = std::visit(renderer, args[used].Get());
    ++used;
    if (!renderer.Error().empty())
      Raise(pattern, used,
            fmt::format("{} does not take it, {}", placeholder.Text, renderer.Error()));
    result += text;
  }
  if (used < args.size()) Raise(pattern, used + 1, "the pattern has no placeholder for it");
  return result;
}

std::string FormatSignature(std::string_view pattern) {
  std::string result;
  std::size_t count = 0;
  TPatternScanner scanner(pattern);
  for (scanner.PlainText(); !scanner.AtEnd(); scanner.PlainText()) {
    const TPlaceholder placeholder = scanner.Placeholder(count + 1);
    if (placeholder.Letter == '%') continue;
    result += placeholder.Text;
    ++count;
  }
  return result;
}

}  // namespace wrenfold
