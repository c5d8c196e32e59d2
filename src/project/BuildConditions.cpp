// A parser of conditions that evaluates as it reads.
#include "project/BuildConditions.h"

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

// Brackets and negations nest no deeper in files that a tool wrote.
constexpr int DeepestCondition = 64;

class TConditionReader {
 public:
  TConditionReader(std::string_view text, const TBuildVariables& variables)
      : FText(text), FVariables(variables) {}

  bool Value() {
    const bool value = Or(0);
    SkipBlanks();
    return value && !FFailed && FAt == FText.size();
  }

 private:
  bool Or(int depth) {
    bool value = And(depth);
    while (TakeWord("or")) value = And(depth) || value;
    return value;
  }
  bool And(int depth) {
    bool value = Term(depth);
    while (TakeWord("and")) value = Term(depth) && value;
    return value;
  }
  bool Term(int depth) {
    if (depth > DeepestCondition) return Fail();
    if (Take("!")) return !Term(depth + 1);
    if (Take("(")) {
      const bool value = Or(depth + 1);
      return Take(")") ? value : Fail();
    }
    const std::string left = Operand();
    if (Take("==")) return EqualText(left, Operand());
    if (Take("!=")) return !EqualText(left, Operand());
    // A function, as Exists('file'): nothing is looked up here.
    if (Take("(")) {
      Operand();
      return Take(")") ? false : Fail();
    }
    return EqualText(left, "true");
  }
  // A text in quotes, or a bare word; variables replaced.
  std::string Operand() {
    SkipBlanks();
    const std::size_t start = FAt;
    if (FAt < FText.size() && FText[FAt] == '\'') {
      const std::size_t end = FText.find('\'', FAt + 1);
      if (end == std::string_view::npos) return Fail(), std::string();
      FAt = end + 1;
      return FVariables.Expand(FText.substr(start + 1, end - start - 1));
    }
    constexpr std::string_view ends = " \t\r\n=!()'";
    while (FAt < FText.size()) {
      if (FText.substr(FAt).starts_with("$(")) FAt = FText.find(')', FAt);
      else if (ends.find(FText[FAt]) != std::string_view::npos) break;
      if (FAt == std::string_view::npos) FAt = FText.size();
      else ++FAt;
    }
    if (FAt == start) Fail();
    return FVariables.Expand(FText.substr(start, FAt - start));
  }
  bool Take(std::string_view symbol) {
    SkipBlanks();
    if (!FText.substr(FAt).starts_with(symbol)) return false;
    if (symbol == "!" && FText.substr(FAt).starts_with("!=")) return false;
    FAt += symbol.size();
    return true;
  }
  bool TakeWord(std::string_view word) {
    SkipBlanks();
    if (!EqualText(FText.substr(FAt, word.size()), word)) return false;
    FAt += word.size();
    return true;
  }
  void SkipBlanks() {
    while (FAt < FText.size() && static_cast<unsigned char>(FText[FAt]) <= ' ') ++FAt;
  }
  bool Fail() {
    FFailed = true;
    FAt = FText.size();
    return false;
  }

  std::string_view FText;
  const TBuildVariables& FVariables;
  std::size_t FAt = 0;
  bool FFailed = false;
};

}  // namespace

void TBuildVariables::Set(std::string_view name, std::string_view value) {
  FValues[UpperCase(name)] = value;
}

std::string TBuildVariables::Get(std::string_view name) const {
  const auto found = FValues.find(UpperCase(name));
  return found != FValues.end() ? found->second : std::string();
}

std::string TBuildVariables::Expand(std::string_view text) const {
  // A file could double a value from line to line.
  constexpr std::size_t longest = 1 << 16;
  std::string expanded;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t start = text.find("$(", at);
    const std::size_t end = start == text.npos ? text.npos : text.find(')', start);
    if (end == text.npos) return expanded.append(text.substr(at));
    expanded.append(text.substr(at, start - at))
        .append(Get(text.substr(start + 2, end - start - 2)));
    if (expanded.size() > longest) return expanded.substr(0, longest);
    at = end + 1;
  }
  return expanded;
}

bool EvaluateBuildCondition(std::string_view condition, const TBuildVariables& variables) {
  return Trim(condition).empty() || TConditionReader(condition, variables).Value();
}

}  // namespace wrenfold
