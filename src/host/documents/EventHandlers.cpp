// Finds and writes event methods of Pascal units.
#include "host/documents/EventHandlers.h"

#include <fmt/format.h>

#include "designer/model/ClassProperties.h"
#include "project/UnitEdits.h"

namespace wrenfold {

namespace {

// The unit's own source; null when the form has none, or one in another language.
TSourceEditor* PascalSource(TFormEditor& form) {
  TModule* module = form.Module();
  if (module == nullptr || IsFormFileName(module->FileName()) ||
      LanguageOfFile(module->FileName()) != TSourceLanguage::Pascal)
    return nullptr;
  return module->FindSource(module->FileName());
}

// Parameters as the reader of declarations gives them, so that they can be compared.
std::vector<TParameter> ParametersOf(std::string_view eventType) {
  const std::string unit =
      fmt::format("unit U; interface type T = class procedure M{}; end; implementation end.",
                  ParametersOfEvent(eventType));
  const TUnitSource source = ParseUnitSource(unit, "U.pas");
  const TClassDeclaration* type = source.FindClass("T");
  return type != nullptr && !type->Methods.empty() ? type->Methods[0].Parameters
                                                   : std::vector<TParameter>();
}

}  // namespace

std::vector<std::string> TEventHandlers::Fitting(TFormEditor& form,
                                                 const std::string& eventType) const {
  std::vector<std::string> names{""};
  TSourceEditor* source = PascalSource(form);
  if (source == nullptr) return names;
  const TUnitSource unit = ParseUnitSource(source->Document().Text(), source->FileName());
  const TClassDeclaration* type = unit.FindClass(form.Document()->Root().StoredClassName());
  if (type == nullptr) return names;
  const std::vector<TParameter> wanted = ParametersOf(eventType);
  for (const TMethodDeclaration& method : type->Methods)
    if (method.Visibility == TVisibility::Published && method.Kind == TMethodKind::Procedure &&
        (wanted.empty() || method.Parameters == wanted))
      names.push_back(method.Name);
  return names;
}

// Writes what is missing of the method; what is wrong, in words, or nothing.
std::string TEventHandlers::Write(TUnitDocument& document, const std::string& className,
                                  const std::string& method, const std::string& eventType) {
  const std::string_view parameters = ParametersOfEvent(eventType);
  if (parameters.empty()) return "the parameters of the event are unknown";
  const TEventMethod wanted{className, method,
                            std::string(parameters.substr(1, parameters.size() - 2))};
  // The body first: it stands behind the declaration, whose place it leaves as it is.
  const std::string text = document.Text();
  const TUnitSource unit = ParseUnitSource(text, document.FileName());
  const auto body = WriteBody(unit, text, wanted);
  const auto declaration = DeclareMethod(unit, text, wanted);
  if (!body || unit.FindClass(className) == nullptr)
    return "expected the class in the interface and an implementation";
  document.Replace(body->Offset, body->Length, body->Text);
  if (declaration) document.Replace(declaration->Offset, declaration->Length, declaration->Text);
  return {};
}

bool TEventHandlers::Open(TFormEditor& form, const std::string& eventType,
                          const std::string& method) {
  TSourceEditor* source = PascalSource(form);
  if (source == nullptr) {
    FViews.Tell({.Text = form.FileName() + ": the methods of the form stand in no Pascal unit"});
    return false;
  }
  TUnitDocument& document = source->Document();
  const std::string className(form.Document()->Root().StoredClassName());
  const auto bodyLine = [&] {
    const std::string text = document.Text();
    const TUnitSource unit = ParseUnitSource(text, source->FileName());
    const TMethodDeclaration* found = unit.FindBody(className, method);
    if (found == nullptr) return 0;
    // Behind the "begin" of the body, where the user goes on.
    const std::size_t begin = text.find("begin", found->Body.Begin);
    const bool inside = begin != std::string::npos && begin < found->Body.End;
    return TPlaceFinder(text).At(inside ? begin : found->Body.Begin).Line + 1;
  };
  int line = bodyLine();
  if (line == 0) {
    const std::string trouble = Write(document, className, method, eventType);
    if (!trouble.empty()) {
      FViews.Tell({.Text = fmt::format("{}: {}.{} cannot be written: {}", source->FileName(),
                                       className, method, trouble)});
      return false;
    }
    line = bodyLine();
  }
  FDocuments.ShowSource(*source);
  if (line > 0) FViews.GoTo(line, 1);
  return true;
}

}  // namespace wrenfold
