// Finds and writes event methods of Pascal units.
#include "host/documents/EventHandlers.h"

#include "designer/model/ClassProperties.h"
#include "project/EventMethods.h"

namespace wrenfold {

namespace {

// The unit's own source; null when the form has none, or one in another language.
TSourceEditor* PascalSource(TFormEditor& form) {
  TModule* module = form.Module();
  if (module == nullptr) return nullptr;
  TSourceEditor* source = module->FindSource(module->FileName());
  const bool pascal = LanguageOfFile(module->FileName()) == TSourceLanguage::Pascal;
  return pascal && !IsFormFileName(module->FileName()) ? source : nullptr;
}

}  // namespace

std::vector<std::string> TEventHandlers::Fitting(TFormEditor& form,
                                                 const std::string& eventType) const {
  std::vector<std::string> names{""};
  TSourceEditor* source = PascalSource(form);
  if (source == nullptr) return names;
  const std::string wanted(ParametersOfEvent(eventType));
  const std::string className(form.Document()->Root().StoredClassName());
  for (const TEventMethod& method : EventMethods(source->Document().Text(), className))
    if (wanted.empty() || method.Parameters == wanted) names.push_back(method.Name);
  return names;
}

bool TEventHandlers::Open(TFormEditor& form, const std::string& event, const std::string& eventType,
                          const std::string& method) {
  TSourceEditor* source = PascalSource(form);
  if (source == nullptr) {
    FViews.Tell({.Text = form.FileName() + ": the methods of the form stand in no Pascal unit"});
    return false;
  }
  TUnitDocument& document = source->Document();
  const std::string className(form.Document()->Root().StoredClassName());
  auto place = FindMethodBody(document.Text(), className, method);
  if (!place) {
    const std::string_view parameters = ParametersOfEvent(eventType);
    const auto edits = parameters.empty()
                           ? std::vector<TSourceEdit>()
                           : AddMethodEdits(document.Text(), className, method, parameters);
    if (edits.empty()) {
      FViews.Tell(
          {.Text = source->FileName() + ": " + className + "." + method +
                   (parameters.empty()
                        ? " cannot be written: the parameters of " + event + " are unknown"
                        : " cannot be written: expected the class and the end of the unit")});
      return false;
    }
    for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit)
      document.Replace(edit->Offset, edit->Length, edit->Text);
    place = FindMethodBody(document.Text(), className, method);
  }
  FDocuments.ShowSource(*source);
  if (place) FViews.GoTo(place->Line + 1, 1);
  return true;
}

}  // namespace wrenfold
