// The rules of the check of forms.
#include "tools/LintRules.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <set>
#include <unordered_map>

#include "platform/core/model/Persistent.h"
#include "platform/core/stream/Bytes.h"
#include "platform/core/text/SysUtils.h"
#include "tools/LintTables.h"

namespace wrenfold {
namespace {

// Forms that inherit from each other in a circle end here.
constexpr int MaxBases = 20;

std::uint8_t FlagsOf(const TDesignComponent& component) {
  std::int32_t position = 0;
  return component.FilerFlags(position);
}
bool IsInline(const TDesignComponent& component) {
  return (FlagsOf(component) & ffInline) != 0;
}
bool IsInherited(const TDesignComponent& component) {
  return (FlagsOf(component) & ffInherited) != 0;
}

// The name that a value is, or nothing.
std::string_view IdentOf(std::string_view value) {
  if (value.empty() || static_cast<TValueType>(value[0]) != TValueType::vaIdent) return {};
  TByteReader reader(value.substr(1));
  return reader.ReadShortString("a name");
}

std::optional<std::int64_t> NumberOf(std::string_view value) {
  if (value.empty()) return std::nullopt;
  TByteReader reader(value);
  switch (reader.PeekValueType()) {
    case TValueType::vaInt8:
    case TValueType::vaInt16:
    case TValueType::vaInt32:
      return reader.ReadIntegerValue();
    default:
      return std::nullopt;
  }
}

// The letter behind a single "&" of a text, in lower case; 0 for none.
char AcceleratorOf(std::string_view value) {
  if (value.empty() || static_cast<TValueType>(value[0]) != TValueType::vaString) return 0;
  TByteReader reader(value.substr(1));
  const std::string_view text = reader.ReadShortString("a text");
  for (std::size_t i = 0; i + 1 < text.size(); ++i) {
    if (text[i] != '&') continue;
    if (text[i + 1] != '&') return LowerCase(text.substr(i + 1, 1))[0];
    ++i;
  }
  return 0;
}

// "Forms.TForm" and "class TObject" name the same as without what stands in front.
std::string_view BareType(std::string_view type) {
  return type.substr(type.rfind('.') + 1);
}

// "TObject;var Word" against the parameters of a method. True where they certainly do not fit.
bool ContradictsEvent(const TMethodDeclaration& method, std::string_view parameters) {
  std::size_t count = 0;
  for (std::string_view rest = parameters; !rest.empty(); ++count) {
    const std::size_t end = std::min(rest.find(';'), rest.size());
    std::string_view wanted = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (count >= method.Parameters.size()) return true;
    const TParameter& parameter = method.Parameters[count];
    const bool byReference = wanted.starts_with("var ");
    if (byReference) wanted.remove_prefix(4);
    if (byReference != (parameter.Modifier == "var")) return true;
    const std::string_view type = BareType(parameter.Type);
    if (!EqualText(type, wanted) && IsLibraryType(type)) return true;
  }
  return count != method.Parameters.size();
}

class TFormLint {
 public:
  TFormLint(TLintSources& sources, const TLintForm& form, bool strict, TLintResult& result)
      : FSources(sources),
        FForm(form),
        FUnit(sources.UnitOf(form.FileName)),
        FStrict(strict),
        FResult(result) {
    if (FUnit != nullptr) FClass = sources.ClassOf(*FUnit, form.Root->StoredClassName());
  }

  void Check() {
    ++FResult.Forms;
    CheckAncestor();
    std::set<std::string> names;
    CheckTree(*FForm.Root, nullptr, names);
  }

 private:
  struct TNames {
    std::set<std::string> Names;  // folded
    bool IsKnown = true;          // no base form is missing
    bool Holds(std::string_view name) const { return Names.contains(LowerCase(name)); }
  };

  void Add(const TDesignComponent& component, std::string_view property, const char* rule,
           std::string message) {
    std::string path = FForm.Root->Name();
    if (&component != FForm.Root.get()) path += "." + component.Name();
    if (!property.empty()) path.append(1, '.').append(property);
    FResult.Findings.push_back({FForm.FileName, FForm.LineOf(component, property), std::move(path),
                                rule, std::move(message)});
  }

  // A component and what is inside it; `frame` is the frame whose names these are, null for the
  // form's own.
  void CheckTree(const TDesignComponent& component, const TDesignComponent* frame,
                 std::set<std::string>& names) {
    const bool isRoot = &component == FForm.Root.get();
    if (!isRoot) {
      CheckName(component, names);
      CheckInherited(component, frame);
      if (frame == nullptr) CheckField(component);
    }
    for (const TDesignProperty& property : component.Properties()) {
      CheckEvent(component, property);
      CheckReference(component, frame, property);
    }
    if (FStrict) CheckKeys(component);
    std::set<std::string> inner;
    const bool opens = !isRoot && IsInline(component);
    for (const TDesignComponent* child : component.Children())
      CheckTree(*child, opens ? &component : frame, opens ? inner : names);
  }

  // Names.

  void CheckName(const TDesignComponent& component, std::set<std::string>& names) {
    if (component.Name().empty() || names.insert(LowerCase(component.Name())).second) return;
    Add(component, {}, "name",
        fmt::format("another component of the form is named {}, too", component.Name()));
  }

  // The names that a form has with those of its bases.
  TNames NamesOf(const TLintForm& form, int depth = 0) {
    TNames result;
    AddNames(*form.Root, result.Names);
    const TLintUnit* unit = FSources.UnitOf(form.FileName);
    const TLintClass chain =
        unit != nullptr ? FSources.ClassOf(*unit, form.Root->StoredClassName()) : TLintClass{};
    result.IsKnown = chain.IsKnown && depth < MaxBases;
    if (!result.IsKnown || chain.Levels.size() < 2) return result;
    const TLintForm* base = FSources.FormOfClass(chain.Levels[1].Class->Name);
    if (base == nullptr) {
      result.IsKnown = !IsInherited(*form.Root);
      return result;
    }
    TNames inner = NamesOf(*base, depth + 1);
    result.IsKnown &= inner.IsKnown;
    result.Names.merge(inner.Names);
    return result;
  }

  static void AddNames(const TDesignComponent& component, std::set<std::string>& names) {
    for (const TDesignComponent* child : component.Children()) {
      if (!child->Name().empty()) names.insert(LowerCase(child->Name()));
      if (!IsInline(*child)) AddNames(*child, names);
    }
  }

  const TNames& OwnNames() {
    if (!FOwnNames) FOwnNames = NamesOf(FForm);
    return *FOwnNames;
  }

  // Those of the form whose root is of that class, with what a frame holds here.
  TNames NamesInFrame(const TDesignComponent& frame) {
    const TLintForm* form = FSources.FormOfClass(frame.StoredClassName());
    if (form == nullptr) return {{}, false};
    return NamesOf(*form);
  }

  // Ancestors.

  void CheckAncestor() {
    const TDesignComponent& root = *FForm.Root;
    if (FUnit == nullptr) {
      ++FResult.NotChecked;
      return;
    }
    const std::string className(root.StoredClassName());
    if (FClass.Levels.empty()) {
      if (!FUnit->IsComplete || FUnit->Mentions(className)) ++FResult.NotChecked;
      else
        Add(root, {}, "ancestor",
            fmt::format("{} does not declare the class {}", ExtractFileName(FUnit->FileName),
                        className));
      return;
    }
    if (!FClass.IsKnown) return CheckUnknownAncestor();
    if (!IsInherited(root) || FClass.Levels.size() > 1) return;
    Add(root, {}, "inherited",
        fmt::format("the form is inherited, but {} descends from {}, which has no form", className,
                    FClass.Last));
  }

  void CheckUnknownAncestor() {
    const TLintClass::TLevel& last = FClass.Levels.back();
    const bool isKnown = IsFormAncestor(FClass.Last) || FindLibraryClass(FClass.Last) != nullptr;
    if (isKnown || FClass.Last.empty() || !FSources.KnowsAllUsed(*last.Unit)) {
      ++FResult.NotChecked;
      return;
    }
    Add(*FForm.Root, {}, "ancestor",
        fmt::format("no unit that {} uses declares {}, the ancestor of {}",
                    ExtractFileName(last.Unit->FileName), FClass.Last, last.Class->Name));
  }

  void CheckInherited(const TDesignComponent& component, const TDesignComponent* frame) {
    if (!IsInherited(component)) return;
    const std::optional<TNames> names =
        frame != nullptr ? std::optional(NamesInFrame(*frame)) : BaseNames();
    if (!names || !names->IsKnown) {
      ++FResult.NotChecked;
      return;
    }
    if (names->Holds(component.Name())) return;
    const std::string base(frame != nullptr ? std::string(frame->StoredClassName())
                                            : FClass.Levels[0].Class->Ancestor);
    Add(component, {}, "inherited",
        fmt::format("{} is inherited, but the form of {} has no such component", component.Name(),
                    base));
  }

  std::optional<TNames> BaseNames() {
    if (!FBaseNames && FClass.IsKnown && FClass.Levels.size() > 1) {
      const TLintForm* base = FSources.FormOfClass(FClass.Levels[1].Class->Name);
      if (base != nullptr) FBaseNames = NamesOf(*base);
    }
    return FBaseNames;
  }

  // Fields.

  void CheckField(const TDesignComponent& component) {
    for (const TLintClass::TLevel& level : FClass.Levels) {
      const TFieldDeclaration* field = level.Class->FindField(component.Name());
      if (field == nullptr) continue;
      if (field->Visibility != TVisibility::Published) return;
      return CheckFieldType(component, *field);
    }
  }

  void CheckFieldType(const TDesignComponent& component, const TFieldDeclaration& field) {
    std::string_view type = BareType(field.Type);
    while (type.ends_with('*') || type.ends_with(' ')) type.remove_suffix(1);
    const std::string className(component.StoredClassName());
    if (EqualText(type, className)) return;
    // The classes from that of the component on, as far as units and library tell.
    const TLintClass chain = FSources.ClassOf(*FUnit, className);
    std::string last = chain.Levels.empty() ? className : chain.Last;
    for (const TLintClass::TLevel& level : chain.Levels)
      if (EqualText(level.Class->Name, type)) return;
    const bool typeIsLibrary =
        FindLibraryClass(type) != nullptr && FSources.ClassOf(*FUnit, type).Levels.empty();
    const TLibraryClass* library = FindLibraryClass(last);
    if (!typeIsLibrary || library == nullptr) {
      ++FResult.NotChecked;
      return;
    }
    for (; library != nullptr; library = FindLibraryClass(library->Ancestor))
      if (EqualText(library->Name, type)) return;
    Add(component, {}, "field",
        fmt::format("the field is declared as {}, the component is a {}", type, className));
  }

  // Events.

  void CheckEvent(const TDesignComponent& component, const TDesignProperty& property) {
    const std::string_view method = IdentOf(property.Value);
    if (method.empty() || !property.Path.starts_with("On") || property.Path.size() < 3) return;
    if (property.Path[2] < 'A' || property.Path[2] > 'Z') return;
    if (!IsEventName(property.Path) || method.find('.') != method.npos || FUnit == nullptr) {
      ++FResult.NotChecked;
      return;
    }
    std::vector<const TMethodDeclaration*> declared;
    for (const TLintClass::TLevel& level : FClass.Levels)
      for (const TMethodDeclaration& known : level.Class->Methods)
        if (EqualText(known.Name, method)) declared.push_back(&known);
    if (declared.empty()) return CheckMissing(component, property.Path, method);
    CheckMethod(component, property.Path, declared);
  }

  void CheckMissing(const TDesignComponent& component, std::string_view property,
                    std::string_view method) {
    const bool mentioned =
        std::any_of(FClass.Levels.begin(), FClass.Levels.end(),
                    [&](const auto& level) { return level.Unit->Mentions(method); });
    if (!FClass.IsKnown || mentioned) {
      ++FResult.NotChecked;
      return;
    }
    Add(component, property, "event",
        fmt::format("{} does not declare the method {}", FForm.Root->StoredClassName(), method));
  }

  void CheckMethod(const TDesignComponent& component, std::string_view property,
                   const std::vector<const TMethodDeclaration*>& declared) {
    const bool published =
        std::any_of(declared.begin(), declared.end(), [](const TMethodDeclaration* method) {
          return method->Visibility == TVisibility::Published;
        });
    if (!published)
      return Add(component, property, "event",
                 fmt::format("the method {} is not published", declared[0]->Name));
    const TLibraryEvent* event = EventOf(component, property);
    const bool isPascal = FUnit->Source.Kind != TSourceKind::Cpp;
    if (event == nullptr || !isPascal) {
      ++FResult.NotChecked;
      return;
    }
    const bool fits =
        std::any_of(declared.begin(), declared.end(), [&](const TMethodDeclaration* method) {
          return method->Kind == TMethodKind::Procedure &&
                 !ContradictsEvent(*method, event->Parameters);
        });
    if (fits) return;
    Add(component, property, "event",
        fmt::format("the method {} is declared with other parameters than the event has: {}",
                    declared[0]->Name, event->Parameters));
  }

  const TLibraryEvent* EventOf(const TDesignComponent& component, std::string_view property) {
    const std::string className(component.StoredClassName());
    if (&component == FForm.Root.get())
      return FClass.IsKnown ? FindLibraryEvent(property, FClass.Last) : nullptr;
    const bool isLibrary = FindLibraryClass(className) != nullptr &&
                           FSources.ClassOf(*FUnit, className).Levels.empty();
    return isLibrary ? FindLibraryEvent(property, className) : nullptr;
  }

  // References.

  void CheckReference(const TDesignComponent& component, const TDesignComponent* frame,
                      const TDesignProperty& property) {
    const std::string_view name = IdentOf(property.Value);
    if (name.empty() || !IsReference(property.Path)) return;
    const bool isRoot = &component == FForm.Root.get();
    if (!isRoot && FindLibraryClass(component.StoredClassName()) == nullptr) {
      ++FResult.NotChecked;
      return;
    }
    const std::size_t dot = name.find('.');
    const std::optional<bool> exists =
        dot == name.npos ? HasComponent(name, frame)
                         : HasElsewhere(name.substr(0, dot), name.substr(dot + 1));
    if (!exists) ++FResult.NotChecked;
    else if (!*exists)
      Add(component, property.Path, "reference", fmt::format("there is no component {}", name));
  }

  // Nothing when it cannot be told.
  std::optional<bool> HasComponent(std::string_view name, const TDesignComponent* frame) {
    if (EqualText(name, FForm.Root->Name())) return true;
    const TNames& own = OwnNames();
    if (own.Holds(name)) return true;
    if (frame != nullptr) {
      const TNames inner = NamesInFrame(*frame);
      if (inner.Holds(name)) return true;
      if (!inner.IsKnown) return std::nullopt;
    }
    return own.IsKnown ? std::optional(false) : std::nullopt;
  }

  std::optional<bool> HasElsewhere(std::string_view owner, std::string_view name) {
    if (const auto* inside =
            dynamic_cast<const TDesignComponent*>(FForm.Root->FindComponent(owner))) {
      if (!IsInline(*inside)) return std::nullopt;
      return Found(NamesInFrame(*inside), name);
    }
    const TLintForm* form = FSources.FormNamed(owner);
    return form != nullptr ? Found(NamesOf(*form), name) : std::nullopt;
  }

  static std::optional<bool> Found(const TNames& names, std::string_view name) {
    if (name.find('.') != name.npos) return std::nullopt;
    if (names.Holds(name)) return true;
    return names.IsKnown ? std::optional(false) : std::nullopt;
  }

  // Keys and tab orders of what stands in one parent.

  void CheckKeys(const TDesignComponent& parent) {
    std::unordered_map<char, const TDesignComponent*> keys;
    std::unordered_map<std::int64_t, const TDesignComponent*> orders;
    for (const TDesignComponent* child : parent.Children()) {
      const char key = HasAccelerator(child->StoredClassName()) && IsShown(*child)
                           ? AcceleratorOf(child->FindValue("Caption"))
                           : 0;
      if (key != 0) {
        const auto [first, added] = keys.emplace(key, child);
        if (!added)
          Add(*child, "Caption", "accelerator",
              fmt::format("the key {} is that of {}, too", key, first->second->Name()));
      }
      const std::optional<std::int64_t> order = NumberOf(child->FindValue("TabOrder"));
      if (!order || *order < 0) continue;
      const auto [first, added] = orders.emplace(*order, child);
      if (!added)
        Add(*child, "TabOrder", "taborder",
            fmt::format("{} has the same place in the tab order", first->second->Name()));
    }
  }

  static bool IsShown(const TDesignComponent& component) {
    const std::string_view visible = component.FindValue("Visible");
    return visible.empty() || static_cast<TValueType>(visible[0]) != TValueType::vaFalse;
  }

  TLintSources& FSources;
  const TLintForm& FForm;
  const TLintUnit* FUnit;
  TLintClass FClass;
  bool FStrict;
  TLintResult& FResult;
  std::optional<TNames> FOwnNames;
  std::optional<TNames> FBaseNames;
};

}  // namespace

void LintForm(TLintSources& sources, const TLintForm& form, bool strict, TLintResult& result) {
  TFormLint(sources, form, strict, result).Check();
}

}  // namespace wrenfold
