// The branches of conditional compilation and the evaluation of their conditions.
#include "project/Conditionals.h"

#include <charconv>

#include "platform/core/text/SysUtils.h"
#include "project/SourceText.h"

namespace wrenfold {

namespace {

// Conditions nest no deeper in earnest; a deeper one is noise and counts as false.
constexpr int MaxConditionDepth = 50;

struct TKnownValue {
  std::string_view Name;
  double Value;
};
constexpr TKnownValue KnownValues[] = {
    {"TRUE", 1}, {"FALSE", 0}, {"COMPILERVERSION", 12}, {"RTLVERSION", 12}};

// Reads a condition by recursive descent: or, and, not, comparison, term.
class TConditionReader {
 public:
  TConditionReader(std::string_view condition, const TDefinedSymbols& symbols)
      : FRest(condition), FSymbols(symbols) {}

  bool Read() {
    const double value = ReadOr(0);
    return !FFailed && Trim(FRest).empty() && value != 0;
  }

 private:
  double ReadOr(int depth) {
    double value = ReadAnd(depth);
    while (TakeWord("or") || TakeSymbol("||")) {
      const double right = ReadAnd(depth);
      value = value != 0 || right != 0;
    }
    return value;
  }

  double ReadAnd(int depth) {
    double value = ReadComparison(depth);
    while (TakeWord("and") || TakeSymbol("&&")) {
      const double right = ReadComparison(depth);
      value = value != 0 && right != 0;
    }
    return value;
  }

  double ReadComparison(int depth) {
    const double left = ReadTerm(depth);
    if (TakeSymbol("<>") || TakeSymbol("!=")) return left != ReadTerm(depth);
    if (TakeSymbol(">=")) return left >= ReadTerm(depth);
    if (TakeSymbol("<=")) return left <= ReadTerm(depth);
    if (TakeSymbol("==") || TakeSymbol("=")) return left == ReadTerm(depth);
    if (TakeSymbol(">")) return left > ReadTerm(depth);
    if (TakeSymbol("<")) return left < ReadTerm(depth);
    return left;
  }

  double ReadTerm(int depth) {
    if (depth > MaxConditionDepth) return Fail();
    if (TakeWord("not") || TakeSymbol("!")) return ReadTerm(depth + 1) == 0;
    if (TakeSymbol("(")) {
      const double value = ReadOr(depth + 1);
      return TakeSymbol(")") ? value : Fail();
    }
    if (TakeWord("defined")) return ReadDefined();
    SkipBlanks();
    if (!FRest.empty() && FRest[0] >= '0' && FRest[0] <= '9') return ReadNumber();
    const std::string_view name = TakeIdentifier();
    if (name.empty()) return Fail();
    if (TakeSymbol("(")) return SkipCall();
    for (const TKnownValue& known : KnownValues)
      if (EqualText(name, known.Name)) return known.Value;
    return 0;
  }

  double ReadDefined() {
    const bool bracket = TakeSymbol("(");
    const std::string_view name = TakeIdentifier();
    if (name.empty() || (bracket && !TakeSymbol(")"))) return Fail();
    return FSymbols.contains(UpperCase(name));
  }

  double ReadNumber() {
    double value = 0;
    const auto result = std::from_chars(FRest.data(), FRest.data() + FRest.size(), value);
    if (result.ec != std::errc()) return Fail();
    FRest.remove_prefix(result.ptr - FRest.data());
    return value;
  }

  // Functions that ask the compiler about declarations cannot be answered here.
  double SkipCall() {
    const size_t end = FRest.find(')');
    if (end == std::string_view::npos) return Fail();
    FRest.remove_prefix(end + 1);
    return 0;
  }

  double Fail() {
    FFailed = true;
    return 0;
  }

  void SkipBlanks() {
    while (!FRest.empty() && IsBlank(FRest[0])) FRest.remove_prefix(1);
  }

  std::string_view PeekIdentifier() {
    SkipBlanks();
    if (FRest.empty() || !IsIdentifierStart(FRest[0])) return {};
    size_t length = 1;
    while (length < FRest.size() && IsIdentifierPart(FRest[length])) ++length;
    return FRest.substr(0, length);
  }

  std::string_view TakeIdentifier() {
    const std::string_view name = PeekIdentifier();
    FRest.remove_prefix(name.size());
    return name;
  }

  bool TakeWord(std::string_view word) {
    if (!EqualText(PeekIdentifier(), word)) return false;
    FRest.remove_prefix(word.size());
    return true;
  }

  bool TakeSymbol(std::string_view symbol) {
    SkipBlanks();
    if (!FRest.starts_with(symbol)) return false;
    FRest.remove_prefix(symbol.size());
    return true;
  }

  std::string_view FRest;
  const TDefinedSymbols& FSymbols;
  bool FFailed = false;
};

std::string FirstWord(std::string_view text) {
  size_t length = 0;
  while (length < text.size() && IsIdentifierPart(text[length])) ++length;
  return UpperCase(text.substr(0, length));
}

}  // namespace

const TDefinedSymbols& DefaultSymbols() {
  static const TDefinedSymbols symbols = {"WIN32",     "MSWINDOWS", "WINDOWS", "_WIN32",
                                          "__WIN32__", "CPU386",    "VER120"};
  return symbols;
}

bool TConditionals::Take(std::string_view directive) {
  const std::string word = FirstWord(directive);
  const std::string_view rest = Trim(directive.substr(word.size()));
  // Conditions of branches that cannot count are not looked at.
  const bool candidate = Active();
  if (word == "IFDEF") {
    Open(candidate && FSymbols.contains(FirstWord(rest)));
  } else if (word == "IFNDEF") {
    Open(candidate && !FSymbols.contains(FirstWord(rest)));
  } else if (word == "IF") {
    Open(candidate && EvaluateCondition(rest, FSymbols));
  } else if (word == "IFOPT") {
    // Options of the compiler count as off.
    Open(candidate && rest.ends_with('-'));
  } else if (word == "ELSE") {
    Continue(true);
  } else if (word == "ELSEIF" || word == "ELIF") {
    Continue(EvaluateCondition(rest, FSymbols));
  } else if (word == "ENDIF" || word == "IFEND") {
    if (!FBranches.empty()) FBranches.pop_back();
  } else if (word == "DEFINE") {
    if (candidate) FSymbols.insert(FirstWord(rest));
  } else if (word == "UNDEF") {
    if (candidate) FSymbols.erase(FirstWord(rest));
  } else {
    return false;
  }
  return true;
}

void TConditionals::Open(bool condition) {
  FBranches.push_back({Active(), condition, condition});
}

void TConditionals::Continue(bool condition) {
  if (FBranches.empty()) return;
  TBranch& branch = FBranches.back();
  branch.Active = branch.Outer && !branch.Taken && condition;
  branch.Taken |= branch.Active;
}

bool EvaluateCondition(std::string_view condition, const TDefinedSymbols& symbols) {
  return TConditionReader(condition, symbols).Read();
}

}  // namespace wrenfold
