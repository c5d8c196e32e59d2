// Words, directives and include files of Pascal.
#include "project/PascalTokens.h"

#include <array>
#include <unordered_map>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

// Deeper or more files than these are a circle.
constexpr size_t MaxIncludeDepth = 16;
constexpr size_t MaxIncludes = 200;
constexpr size_t LongestWord = 14;

using enum TPascalWord;
const std::unordered_map<std::string_view, TPascalWord> Words = {
    {"abstract", Abstract},
    {"asm", Asm},
    {"automated", Automated},
    {"begin", Begin},
    {"case", Case},
    {"class", Class},
    {"const", Const},
    {"constructor", Constructor},
    {"contains", Contains},
    {"destructor", Destructor},
    {"dispinterface", Dispinterface},
    {"end", End},
    {"except", Except},
    {"exports", Exports},
    {"external", External},
    {"finalization", Finalization},
    {"finally", Finally},
    {"for", For},
    {"forward", Forward},
    {"function", Function},
    {"helper", Helper},
    {"implementation", Implementation},
    {"in", In},
    {"initialization", Initialization},
    {"interface", Interface},
    {"label", Label},
    {"library", Library},
    {"object", Object},
    {"of", Of},
    {"operator", Operator},
    {"out", Out},
    {"package", Package},
    {"packed", Packed},
    {"private", Private},
    {"procedure", Procedure},
    {"program", Program},
    {"property", Property},
    {"protected", Protected},
    {"public", Public},
    {"published", Published},
    {"record", Record},
    {"reference", Reference},
    {"requires", Requires},
    {"resourcestring", Resourcestring},
    {"sealed", Sealed},
    {"strict", Strict},
    {"threadvar", Threadvar},
    {"try", Try},
    {"type", Type},
    {"unit", Unit},
    {"uses", Uses},
    {"var", Var},
};

TPascalWord WordOf(std::string_view name) {
  if (name.size() < 2 || name.size() > LongestWord) return TPascalWord::None;
  std::array<char, LongestWord> lower{};
  for (size_t i = 0; i < name.size(); ++i)
    lower[i] = name[i] >= 'A' && name[i] <= 'Z' ? static_cast<char>(name[i] + 32) : name[i];
  const auto found = Words.find({lower.data(), name.size()});
  return found == Words.end() ? TPascalWord::None : found->second;
}

// The first word of a directive and what stands behind it.
std::pair<std::string_view, std::string_view> SplitDirective(std::string_view directive) {
  size_t length = 0;
  while (length < directive.size() && IsIdentifierPart(directive[length])) ++length;
  return {directive.substr(0, length), Trim(directive.substr(length))};
}

// The first file name: quoted, or up to a blank.
std::string FileNameOf(std::string_view rest) {
  if (rest.starts_with('\'')) return UnquotePascal(rest);
  return std::string(rest.substr(0, rest.find_first_of(" \t\r\n")));
}

}  // namespace

TPascalTokens::TPascalTokens(std::string_view text, const TDefinedSymbols& symbols,
                             const TIncludeReader& includes, std::vector<std::string>& resources)
    : FScanner(text, symbols), FPlaces(text), FIncludes(includes), FResources(resources) {
  Advance();
}

void TPascalTokens::Advance() {
  if (FStack.empty() && FToken.Kind != TTokenKind::End) FEndBefore = FToken.End();
  FToken = NextToken();
  FWord = FToken.Kind == TTokenKind::Identifier ? WordOf(FToken.Text) : TPascalWord::None;
  // "&begin" is a name.
  if (!FToken.IsSymbol('&')) return;
  const size_t offset = FToken.Offset;
  FToken = NextToken();
  FWord = TPascalWord::None;
  if (FToken.Kind == TTokenKind::Identifier && FStack.empty() && FToken.Offset == offset + 1)
    return;
  if (FToken.Kind == TTokenKind::Identifier) FWord = WordOf(FToken.Text);
}

std::string_view TPascalTokens::SkipLeadingBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(text[0])) text.remove_prefix(1);
  return text;
}

TSourceToken TPascalTokens::NextToken() {
  for (;;) {
    const TSourceToken token = FScanner.Next();
    switch (token.Kind) {
      case TTokenKind::Directive:
        TakeDirective(token);
        break;
      case TTokenKind::Note:
        if (FNotes != nullptr) FNotes->emplace_back(token.Text);
        break;
      case TTokenKind::End:
        if (FStack.empty()) return token;
        CloseInclude();
        break;
      default:
        return token;
    }
  }
}

// {$R *.res} links a resource; {$R+} and {$R-} switch range checks, {$I+} and {$I-} those of input.
void TPascalTokens::TakeDirective(const TSourceToken& directive) {
  const auto [word, rest] = SplitDirective(directive.Text);
  const bool resource = EqualText(word, "R") || EqualText(word, "RESOURCE");
  const bool include = EqualText(word, "I") || EqualText(word, "INCLUDE");
  if ((!resource && !include) || rest.empty() || rest[0] == '+' || rest[0] == '-') return;
  if (resource) FResources.push_back(FileNameOf(rest));
  // {$I %DATE%} asks the compiler.
  else if (rest[0] != '%') OpenInclude(FileNameOf(rest), directive.Offset);
}

void TPascalTokens::OpenInclude(std::string_view name, size_t offset) {
  if (!FIncludes || FStack.size() == MaxIncludeDepth || FTexts.size() == MaxIncludes) return;
  std::optional<std::string> text = FIncludes(name);
  if (!text) return;
  if (FStack.empty()) FIncludeOffset = offset;
  FTexts.push_back(std::make_shared<const std::string>(std::move(*text)));
  TPascalScanner inner(*FTexts.back(), FScanner.Symbols());
  FStack.push_back({FTexts.back(), std::move(FScanner)});
  FScanner = std::move(inner);
}

void TPascalTokens::CloseInclude() {
  TDefinedSymbols symbols = FScanner.Symbols();
  FScanner = std::move(FStack.back().Outer);
  FStack.pop_back();
  FScanner.SetSymbols(std::move(symbols));
}

bool TPascalTokens::Take(TPascalWord word) {
  if (FWord != word) return false;
  Advance();
  return true;
}

bool TPascalTokens::Take(char symbol) {
  if (!FToken.IsSymbol(symbol)) return false;
  Advance();
  return true;
}

void TPascalTokens::ReportUnterminated(std::vector<TSourceProblem>& problems) {
  const auto report = [&](const TSourcePlace& place, const char* message) {
    TSourceProblem& problem = problems.emplace_back();
    problem.Place = place;
    problem.Message = message;
  };
  if (FScanner.OpenComment() != std::string_view::npos)
    report(FPlaces.At(FScanner.OpenComment()), "this comment has no end in the file");
  if (FScanner.OpenConditionals() != 0)
    report(Place(), "expected {$ENDIF} before the end of the file");
}

}  // namespace wrenfold
