// Finds and writes event methods of Pascal and C++ units.
#include "host/documents/EventHandlers.h"

#include <fmt/format.h>

#include <algorithm>

#include "designer/model/ClassProperties.h"
#include "platform/core/text/SysUtils.h"
#include "project/UnitEdits.h"

namespace wrenfold {

namespace {

bool IsCpp(const TSourceEditor& source) {
  return LanguageOfFile(source.FileName()) == TSourceLanguage::Cpp;
}

TUnitSource Parsed(TSourceEditor& source) {
  return ParseUnitSource(source.Document().Text(), source.FileName());
}

std::string ParametersIn(const TSourceEditor& source, const std::string& eventType) {
  return IsCpp(source) ? CppParametersOfEvent(eventType)
                       : std::string(ParametersOfEvent(eventType));
}

// Parameters as the reader of declarations gives them, so that they can be compared.
std::vector<TParameter> ReadParameters(const TSourceEditor& source, const std::string& parameters) {
  const std::string unit =
      IsCpp(source)
          ? fmt::format("class T {{ __published: void __fastcall M{}; }};", parameters)
          : fmt::format("unit U; interface type T = class procedure M{}; end; implementation end.",
                        parameters);
  const TUnitSource read = ParseUnitSource(unit, IsCpp(source) ? "U.h" : "U.pas");
  const TClassDeclaration* type = read.FindClass("T");
  return type != nullptr && !type->Methods.empty() ? type->Methods[0].Parameters
                                                   : std::vector<TParameter>();
}

// "Controls::TMouseButton" is the same type without its namespace.
std::string_view BareType(std::string_view type) {
  const std::size_t colons = type.rfind("::");
  return colons == std::string_view::npos ? type : type.substr(colons + 2);
}

// The compiler does not mind names.
bool SameTypes(const std::vector<TParameter>& first, const std::vector<TParameter>& second) {
  return std::ranges::equal(first, second, [](const TParameter& a, const TParameter& b) {
    return EqualText(a.Modifier, b.Modifier) && EqualText(BareType(a.Type), BareType(b.Type));
  });
}

}  // namespace

TEventHandlers::TSources TEventHandlers::SourcesOf(TFormEditor& form) {
  TModule* module = form.Module();
  if (module == nullptr || IsFormFileName(module->FileName())) return {};
  TSourceEditor* own = module->FindSource(module->FileName());
  if (own == nullptr || !IsCpp(*own)) return {own, own};
  for (const TIntf<TSourceEditor>& source : module->Sources())
    if (source.get() != own) return {source.get(), own};
  return {};
}

std::vector<std::string> TEventHandlers::Fitting(TFormEditor& form,
                                                 const std::string& eventType) const {
  std::vector<std::string> names{""};
  TSourceEditor* source = SourcesOf(form).Declaring;
  if (source == nullptr) return names;
  const TUnitSource unit = Parsed(*source);
  const TClassDeclaration* type = unit.FindClass(form.Document()->Root().StoredClassName());
  if (type == nullptr) return names;
  const auto wanted = ReadParameters(*source, ParametersIn(*source, eventType));
  for (const TMethodDeclaration& method : type->Methods)
    if (method.Visibility == TVisibility::Published && method.Kind == TMethodKind::Procedure &&
        (wanted.empty() || SameTypes(method.Parameters, wanted)))
      names.push_back(method.Name);
  return names;
}

// Writes what is missing of the method; what is wrong, in words, or nothing.
std::string TEventHandlers::Write(const TSources& sources, const std::string& className,
                                  const std::string& method, const std::string& eventType) {
  const std::string parameters = ParametersIn(*sources.Declaring, eventType);
  if (parameters.empty()) return "the parameters of the event are unknown";
  const TEventMethod wanted{className, method, parameters.substr(1, parameters.size() - 2)};
  TUnitDocument& bodies = sources.Bodies->Document();
  TUnitDocument& declaring = sources.Declaring->Document();
  const TUnitSource unit = Parsed(*sources.Declaring);
  // The body first: in one source it stands behind the declaration, whose place it leaves as it is.
  const auto body = WriteBody(Parsed(*sources.Bodies), bodies.Text(), wanted);
  const auto declaration = DeclareMethod(unit, declaring.Text(), wanted);
  if (!body || unit.FindClass(className) == nullptr)
    return IsCpp(*sources.Bodies) ? fmt::format("expected the class in {}", declaring.FileName())
                                  : "expected the class in the interface and an implementation";
  bodies.Replace(body->Offset, body->Length, body->Text);
  if (declaration) declaring.Replace(declaration->Offset, declaration->Length, declaration->Text);
  return {};
}

// Behind the word or brace that the body begins with, where the user goes on; 0 without a body.
int TEventHandlers::LineOfBody(TSourceEditor& source, const std::string& className,
                               const std::string& method) {
  const std::string text = source.Document().Text();
  const TUnitSource unit = ParseUnitSource(text, source.FileName());
  const TMethodDeclaration* found = unit.FindBody(className, method);
  if (found == nullptr) return 0;
  const std::size_t begin = text.find(IsCpp(source) ? "{" : "begin", found->Body.Begin);
  const bool inside = begin != std::string::npos && begin < found->Body.End;
  return TPlaceFinder(text).At(inside ? begin : found->Body.Begin).Line + 1;
}

bool TEventHandlers::Open(TFormEditor& form, const std::string& eventType,
                          const std::string& method) {
  const TSources sources = SourcesOf(form);
  if (sources.Bodies == nullptr) {
    FViews.Tell({.Text = form.FileName() + ": there is no unit for the methods of the form"});
    return false;
  }
  const std::string className(form.Document()->Root().StoredClassName());
  int line = LineOfBody(*sources.Bodies, className, method);
  if (line == 0) {
    const std::string trouble = Write(sources, className, method, eventType);
    if (!trouble.empty()) {
      FViews.Tell({.Text = fmt::format("{}: {}.{} cannot be written: {}",
                                       sources.Declaring->FileName(), className, method, trouble)});
      return false;
    }
    line = LineOfBody(*sources.Bodies, className, method);
  }
  FDocuments.ShowSource(*sources.Bodies);
  if (line > 0) FViews.GoTo(line, 1);
  return true;
}

}  // namespace wrenfold
