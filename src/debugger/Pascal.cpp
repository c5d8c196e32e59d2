#include "debugger/Pascal.h"

#include <fmt/format.h>

#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <functional>
#include <span>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

using TKind = TPascalValue::TKind;

TPascalValue Whole(std::int64_t number) {
  return {.Kind = TKind::Integer, .Number = number};
}
TPascalValue Logical(bool value) {
  return {.Kind = TKind::Boolean, .Number = value};
}
TPascalValue Textual(std::string text) {
  return {.Kind = TKind::Text, .String = std::move(text)};
}
TPascalValue Fraction(double number) {
  return {.Kind = TKind::Real, .Float = number};
}

bool IsTextual(const TPascalValue& value) {
  return value.Kind == TKind::Text || value.Kind == TKind::Character;
}
std::string TextOf(const TPascalValue& value) {
  return value.Kind == TKind::Text ? value.String : std::string(1, static_cast<char>(value.Number));
}
double FloatOf(const TPascalValue& value) {
  return value.Kind == TKind::Real ? value.Float : static_cast<double>(value.Number);
}

// -1, 0 or 1 as in <=>.
int Compared(const TPascalValue& left, const TPascalValue& right) {
  if (IsTextual(left) && IsTextual(right)) return TextOf(left).compare(TextOf(right));
  if (IsTextual(left) != IsTextual(right) || left.Kind == TKind::Other ||
      right.Kind == TKind::Other)
    throw EDebugError("These two values cannot be compared");
  if (left.Kind == TKind::Real || right.Kind == TKind::Real) {
    const double a = FloatOf(left), b = FloatOf(right);
    return a < b ? -1 : a > b ? 1 : 0;
  }
  return left.Number < right.Number ? -1 : left.Number > right.Number ? 1 : 0;
}

std::int64_t WholeOf(const TPascalValue& value) {
  if (value.Kind == TKind::Real || value.Kind == TKind::Text || value.Kind == TKind::Other)
    throw EDebugError("A whole number is expected");
  return value.Number;
}

template <class Operation>
TPascalValue Computed(const TPascalValue& left, const TPascalValue& right, Operation operation) {
  if (left.Kind == TKind::Real || right.Kind == TKind::Real)
    return Fraction(operation(FloatOf(left), FloatOf(right)));
  return Whole(static_cast<std::int64_t>(operation(static_cast<std::uint64_t>(WholeOf(left)),
                                                   static_cast<std::uint64_t>(WholeOf(right)))));
}

TPascalValue Sum(const TPascalValue& left, const TPascalValue& right) {
  if (IsTextual(left) && IsTextual(right)) return Textual(TextOf(left) + TextOf(right));
  return Computed(left, right, std::plus<>());
}
TPascalValue Quotient(const TPascalValue& left, const TPascalValue& right) {
  return Fraction(FloatOf(left) / FloatOf(right));
}
std::int64_t Divisor(const TPascalValue& value) {
  const std::int64_t number = WholeOf(value);
  if (number == 0) throw EDebugError("Division by zero");
  return number;
}
TPascalValue Divided(const TPascalValue& left, const TPascalValue& right) {
  const std::int64_t by = Divisor(right);
  if (by == -1)
    return Computed(Whole(0), left, std::minus<>());  // the lowest number has no negative
  return Whole(WholeOf(left) / by);
}
TPascalValue Rest(const TPascalValue& left, const TPascalValue& right) {
  const std::int64_t by = Divisor(right);
  return Whole(by == -1 ? 0 : WholeOf(left) % by);
}
// Of two conditions a condition, of two numbers their bits.
template <class Operation>
TPascalValue Bits(const TPascalValue& left, const TPascalValue& right, Operation operation) {
  TPascalValue result = Whole(operation(WholeOf(left), WholeOf(right)));
  if (left.Kind == TKind::Boolean && right.Kind == TKind::Boolean) result.Kind = TKind::Boolean;
  return result;
}

// The operators by how tight they bind, the loosest first; longer signs before their beginnings.
struct TOperator {
  const char* Sign;
  TPascalValue (*Apply)(const TPascalValue&, const TPascalValue&);
};
using TV = TPascalValue;
constexpr TOperator Relations[] = {
    {"<>", [](const TV& a, const TV& b) { return Logical(Compared(a, b) != 0); }},
    {"<=", [](const TV& a, const TV& b) { return Logical(Compared(a, b) <= 0); }},
    {">=", [](const TV& a, const TV& b) { return Logical(Compared(a, b) >= 0); }},
    {"<", [](const TV& a, const TV& b) { return Logical(Compared(a, b) < 0); }},
    {">", [](const TV& a, const TV& b) { return Logical(Compared(a, b) > 0); }},
    {"=", [](const TV& a, const TV& b) { return Logical(Compared(a, b) == 0); }},
};
constexpr TOperator Sums[] = {
    {"+", Sum},
    {"-", [](const TV& a, const TV& b) { return Computed(a, b, std::minus<>()); }},
    {"or", [](const TV& a, const TV& b) { return Bits(a, b, std::bit_or<>()); }},
    {"xor", [](const TV& a, const TV& b) { return Bits(a, b, std::bit_xor<>()); }},
};
constexpr TOperator Products[] = {
    {"*", [](const TV& a, const TV& b) { return Computed(a, b, std::multiplies<>()); }},
    {"/", Quotient},
    {"div", Divided},
    {"mod", Rest},
    {"and", [](const TV& a, const TV& b) { return Bits(a, b, std::bit_and<>()); }},
};
constexpr std::array<std::span<const TOperator>, 3> Levels{Relations, Sums, Products};

// Deeper nesting is nobody's expression.
constexpr int MaxDepth = 200;

class TParser {
 public:
  TParser(std::string_view text, IPascalScope& scope) : FText(text), FScope(scope) {}

  TPascalValue Run() {
    TPascalValue value = Level(0);
    Skip();
    if (FAt < FText.size()) Expected("the end");
    return value;
  }

 private:
  [[noreturn]] void Expected(const char* what) const {
    throw EDebugError(fmt::format("\"{}\": {} is expected at character {}", FText, what, FAt + 1));
  }
  static bool IsLetter(char c) { return c == '_' || std::isalpha(static_cast<unsigned char>(c)); }
  static bool IsDigit(char c) { return c >= '0' && c <= '9'; }
  char Peek() const { return FAt < FText.size() ? FText[FAt] : '\0'; }
  void Skip() {
    while (Peek() == ' ' || Peek() == '\t') ++FAt;
  }
  bool Take(std::string_view sign) {
    Skip();
    if (!EqualText(FText.substr(FAt, sign.size()), sign)) return false;
    const std::size_t end = FAt + sign.size();
    // A word ends where the next begins.
    if (IsLetter(sign[0]) && end < FText.size() && (IsLetter(FText[end]) || IsDigit(FText[end])))
      return false;
    FAt = end;
    return true;
  }
  void Need(std::string_view sign, const char* what) {
    if (!Take(sign)) Expected(what);
  }

  TPascalValue Level(std::size_t level) {
    if (level == Levels.size()) return Factor();
    TPascalValue value = Level(level + 1);
    while (const TOperator* found = Operator(Levels[level]))
      value = found->Apply(value, Level(level + 1));
    return value;
  }
  const TOperator* Operator(std::span<const TOperator> level) {
    for (const TOperator& row : level)
      if (Take(row.Sign)) return &row;
    return nullptr;
  }

  TPascalValue Factor() {
    if (++FDepth > MaxDepth) Expected("an expression that is less deep");
    TPascalValue value = PlainFactor();
    --FDepth;
    return value;
  }
  TPascalValue PlainFactor() {
    if (Take("not")) {
      TPascalValue value = Factor();
      const std::int64_t number = WholeOf(value);
      return value.Kind == TKind::Boolean ? Logical(number == 0) : Whole(~number);
    }
    if (Take("-")) return Computed(Whole(0), Factor(), std::minus<>());
    if (Take("+")) return Factor();
    if (Take("@")) return Whole(static_cast<std::int64_t>(ObjectOf(Factor()).Address()));
    if (Take("(")) {
      TPascalValue value = Level(0);
      Need(")", "\")\"");
      return Parts(std::move(value));
    }
    if (Peek() == '\'') return Quoted();
    if (Peek() == '$' || IsDigit(Peek())) return Number();
    return Parts(Named());
  }

  TPascalValue Quoted() {
    std::string text;
    for (++FAt;; ++FAt) {
      if (FAt >= FText.size()) Expected("the closing quote");
      if (Peek() == '\'' && (++FAt >= FText.size() || Peek() != '\'')) return Textual(text);
      text += Peek();
    }
  }
  TPascalValue Number() {
    const bool hexadecimal = Peek() == '$';
    if (hexadecimal) ++FAt;
    const char* first = FText.data() + FAt;
    const char* last = FText.data() + FText.size();
    std::uint64_t number = 0;
    auto [end, error] = std::from_chars(first, last, number, hexadecimal ? 16 : 10);
    if (error != std::errc()) Expected("a number");
    double fraction = 0;
    const bool dot = !hexadecimal && last - end > 1 && *end == '.' && IsDigit(end[1]);
    if (dot) end = std::from_chars(first, last, fraction).ptr;
    FAt = static_cast<std::size_t>(end - FText.data());
    return dot ? Fraction(fraction) : Whole(static_cast<std::int64_t>(number));
  }
  std::string Name() {
    Skip();
    const std::size_t start = FAt;
    if (!IsLetter(Peek())) Expected("a name");
    while (IsLetter(Peek()) || IsDigit(Peek())) ++FAt;
    return std::string(FText.substr(start, FAt - start));
  }
  TPascalValue Named() {
    const std::string name = Name();
    if (EqualText(name, "nil")) return {.Kind = TKind::Pointer};
    if (EqualText(name, "true")) return Logical(true);
    if (EqualText(name, "false")) return Logical(false);
    if (auto found = FScope.Find(name)) return *found;
    throw EDebugError(fmt::format("There is no {} here", name));
  }
  IPascalObject& ObjectOf(const TPascalValue& value) {
    if (value.Object == nullptr) Expected("a variable in front");
    return *value.Object;
  }
  TPascalValue Parts(TPascalValue value) {
    for (;;) {
      if (Take("^")) {
        value = ObjectOf(value).Target();
      } else if (Take(".")) {
        value = ObjectOf(value).Field(Name());
      } else if (Take("[")) {
        do value = ElementOf(value, WholeOf(Level(0)));
        while (Take(","));
        Need("]", "\"]\"");
      } else {
        return value;
      }
    }
  }
  TPascalValue ElementOf(const TPascalValue& value, std::int64_t index) {
    if (value.Kind != TKind::Text) return ObjectOf(value).Element(index);
    if (index < 1 || index > static_cast<std::int64_t>(value.String.size()))
      throw EDebugError(fmt::format("The text has no character {}", index));
    return {
        .Kind = TKind::Character,
        .Number = static_cast<unsigned char>(value.String[static_cast<std::size_t>(index) - 1])};
  }

  std::string_view FText;
  IPascalScope& FScope;
  std::size_t FAt = 0;
  int FDepth = 0;
};

}  // namespace

TPascalValue EvaluatePascal(std::string_view expression, IPascalScope& scope) {
  return TParser(expression, scope).Run();
}

std::string PascalQuoted(std::string_view text) {
  std::string quoted;
  bool open = false;
  for (const char c : text) {
    const bool prints = static_cast<unsigned char>(c) >= ' ' && c != '\x7F';
    if (prints != open) quoted += '\'';
    open = prints;
    if (!prints) quoted += fmt::format("#{}", static_cast<unsigned char>(c));
    else if (c == '\'') quoted += "''";
    else quoted += c;
  }
  if (open) quoted += '\'';
  return quoted.empty() ? "''" : quoted;
}

TVariable ShowPascal(const TPascalValue& value, const std::string& expression) {
  TVariable shown;
  if (value.Object != nullptr) shown = value.Object->Show();
  else if (value.Kind == TKind::Integer) shown.Value = std::to_string(value.Number);
  else if (value.Kind == TKind::Real) shown.Value = fmt::format("{}", value.Float);
  else if (value.Kind == TKind::Boolean) shown.Value = value.Number != 0 ? "True" : "False";
  else if (value.Kind == TKind::Pointer) shown.Value = value.Number == 0 ? "nil" : "";
  else shown.Value = PascalQuoted(TextOf(value));
  shown.Name = expression;
  return shown;
}

}  // namespace wrenfold
