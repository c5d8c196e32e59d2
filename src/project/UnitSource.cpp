// What both languages have in common: looking declarations up, types as text.
#include "project/UnitSource.h"

#include <fmt/format.h>

#include "platform/core/text/SysUtils.h"
#include "project/UnitReaders.h"

namespace wrenfold {

namespace {

template <class Declaration>
const Declaration* FindNamed(const std::vector<Declaration>& declarations, std::string_view name) {
  for (const Declaration& declaration : declarations)
    if (EqualText(declaration.Name, name)) return &declaration;
  return nullptr;
}

}  // namespace

const TFieldDeclaration* TClassDeclaration::FindField(std::string_view name) const {
  return FindNamed(Fields, name);
}
const TMethodDeclaration* TClassDeclaration::FindMethod(std::string_view name) const {
  return FindNamed(Methods, name);
}
const TPropertyDeclaration* TClassDeclaration::FindProperty(std::string_view name) const {
  return FindNamed(Properties, name);
}

const TClassDeclaration* TUnitSource::FindClass(std::string_view name) const {
  return FindNamed(Classes, name);
}

const TMethodDeclaration* TUnitSource::FindBody(std::string_view className,
                                                std::string_view name) const {
  for (const TMethodDeclaration& routine : Routines)
    if (EqualText(routine.Class, className) && EqualText(routine.Name, name)) return &routine;
  for (const auto* classes : {&Classes, &HiddenClasses}) {
    const TClassDeclaration* declared = FindNamed(*classes, className);
    if (declared == nullptr) continue;
    for (const TMethodDeclaration& method : declared->Methods)
      if (!method.Body.Empty() && EqualText(method.Name, name)) return &method;
  }
  return nullptr;
}

void AppendToType(std::string& type, std::string_view token) {
  if (!type.empty() && !token.empty() && IsIdentifierPart(type.back()) &&
      IsIdentifierPart(token[0]))
    type += ' ';
  type += token;
}

bool IsCreateForm(const TSourceToken& token) {
  constexpr std::string_view name = "CreateForm";
  return token.Text.size() == name.size() && EqualText(token.Text, name);
}

std::string DescribeToken(const TSourceToken& token) {
  if (token.Kind == TTokenKind::End) return "the end of the file";
  return fmt::format("'{}'", token.Text);
}

TUnitSource ParseUnitSource(std::string_view text, std::string_view fileName,
                            const TDefinedSymbols& symbols, const TIncludeReader& includes) {
  if (LanguageOfFile(fileName) == TSourceLanguage::Cpp) return ReadCppUnit(text, symbols);
  return ReadPascalUnit(text, symbols, includes);
}

}  // namespace wrenfold
