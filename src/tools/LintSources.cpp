// Finds, reads and keeps the forms and units of a check.
#include "tools/LintSources.h"

#include <algorithm>
#include <filesystem>

#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"
#include "project/FileLookup.h"
#include "project/FormFile.h"
#include "project/Project.h"
#include "project/TextFile.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view FormExtensions[] = {".dfm", ".lfm", ".xfm"};
constexpr std::string_view UnitExtensions[] = {".pas", ".pp", ".h", ".hpp"};

// What a form, a frame or a data module descends from in the environment's library.
constexpr std::string_view RootClasses[] = {"TForm", "TFrame", "TDataModule"};

// Units of the environment; their classes are no ancestors of forms but for those above.
constexpr std::string_view EnvironmentUnits[] = {
    "windows",  "messages", "sysutils",   "variants", "classes",  "graphics",  "controls",
    "forms",    "dialogs",  "stdctrls",   "extctrls", "comctrls", "menus",     "buttons",
    "toolwin",  "imglist",  "actnlist",   "stdactns", "grids",    "db",        "dbctrls",
    "dbgrids",  "mask",     "spin",       "math",     "strutils", "dateutils", "inifiles",
    "registry", "clipbrd",  "printers",   "filectrl", "checklst", "shellapi",  "contnrs",
    "types",    "typinfo",  "lresources", "lcltype",  "lclintf",  "fileutil",  "interfaces",
    "system"};

bool IsOneOf(std::string_view word, const auto& words) {
  return std::any_of(std::begin(words), std::end(words),
                     [&](std::string_view known) { return EqualText(known, word); });
}

bool HasExtension(const std::string& fileName, const auto& extensions) {
  return IsOneOf(ExtractFileExt(fileName), extensions);
}

std::string WithoutExtension(const std::string& fileName) {
  return fileName.substr(0, fileName.size() - ExtractFileExt(fileName).size());
}

std::size_t LineAt(std::string_view text, std::size_t offset) {
  return static_cast<std::size_t>(
             std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(offset), '\n')) +
         1;
}

}  // namespace

bool TLintUnit::Mentions(std::string_view word) const {
  const std::string folded = LowerCase(Text);
  const std::string wanted = LowerCase(word);
  for (std::size_t at = 0; (at = folded.find(wanted, at)) != std::string::npos; ++at) {
    const std::size_t end = at + wanted.size();
    const bool begins = at == 0 || !IsIdentifierPart(folded[at - 1]);
    if (begins && (end == folded.size() || !IsIdentifierPart(folded[end]))) return true;
  }
  return false;
}

std::size_t TLintForm::LineOf(const TDesignComponent& component, std::string_view property) const {
  if (Spans == nullptr) return 0;
  const std::size_t wanted = component.StoredIndex(*Root);
  std::size_t count = 0;
  const std::vector<TFormNode>& nodes = Spans->Nodes();
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    if (nodes[i].Kind != TFormNodeKind::Component || count++ != wanted) continue;
    for (std::size_t j = i + 1; j < nodes[i].Next; j = nodes[j].Next) {
      const TFormSpan name = nodes[j].Head;
      if (nodes[j].Kind == TFormNodeKind::Property &&
          Spans->Text().compare(name.Begin, name.End - name.Begin, property) == 0)
        return LineAt(Spans->Text(), name.Begin);
    }
    return LineAt(Spans->Text(), nodes[i].Text.Begin);
  }
  return 0;
}

TLintSources::TLintSources(const std::string& name) {
  if (fs::is_directory(name)) {
    AddFolder(name, true);
    FForms = FKnownForms;
  } else if (IsProjectName(name) || EqualText(ExtractFileExt(name), ".cpp")) {
    const auto project = TProject::Open(name);
    for (const TProjectModule& module : project->Modules()) {
      if (module.State == TModuleState::Missing) continue;
      AddFile(module.FileName);
      const std::string header = FindHeader(module.FileName);
      if (!header.empty()) AddFile(header);
      const std::string form = FindFormFile(module.FileName);
      if (!form.empty()) AddFile(form);
    }
    FForms = FKnownForms;
  } else {
    AddFolder(fs::absolute(name).parent_path().string(), false);
    FForms = {name};
  }
}

void TLintSources::AddFolder(const std::string& folder, bool deep) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error))
    names.push_back(entry->path().string());
  std::sort(names.begin(), names.end());
  for (const std::string& name : names) {
    if (!fs::is_directory(name, error)) AddFile(name);
    else if (deep && !fs::is_symlink(name, error)) AddFolder(name, true);
  }
}

void TLintSources::AddFile(const std::string& fileName) {
  if (HasExtension(fileName, FormExtensions)) FKnownForms.push_back(fileName);
  else if (HasExtension(fileName, UnitExtensions))
    FUnitFiles.emplace(LowerCase(ExtractFileNameEx(fileName)), fileName);
}

const TLintForm& TLintSources::Form(const std::string& fileName) {
  std::unique_ptr<TLintForm>& form = FRead[fileName];
  if (form) return *form;
  auto read = std::make_unique<TLintForm>();
  read->FileName = fileName;
  std::string bytes = ReadWholeFile(fileName);
  TFormFile file = ReadFormFile(bytes, fileName);
  if (file.Format == TFormFormat::Text) {
    read->Spans = std::make_unique<TFormSpans>(std::move(bytes));
    file.Root = read->Spans->ReadForm();
  }
  read->Root = std::move(file.Root);
  form = std::move(read);
  return *form;
}

const TLintUnit* TLintSources::UnitOf(const std::string& formFile) {
  TFileLookup lookup;
  const fs::path path(fs::absolute(formFile));
  for (std::string_view extension : UnitExtensions) {
    const std::string found =
        lookup.Find(path.parent_path().string(), path.stem().string() + std::string(extension));
    if (!found.empty()) return Unit(found);
  }
  return nullptr;
}

const TLintUnit* TLintSources::Unit(const std::string& fileName) {
  std::unique_ptr<TLintUnit>& unit = FUnits[fileName];
  if (unit) return unit.get();
  auto read = std::make_unique<TLintUnit>();
  read->FileName = fileName;
  try {
    read->Text = TTextFile::Load(fileName).Text();
  } catch (const Exception&) {
    read->IsComplete = false;
  }
  const auto includes = [&, beside = IncludesBeside(fileName)](std::string_view name) {
    std::optional<std::string> text = beside(name);
    if (!text) read->IsComplete = false;
    return text;
  };
  TDefinedSymbols symbols = DefaultSymbols();
  // A unit with a form file of the free Pascal environment is compiled by its compiler.
  if (fs::exists(WithoutExtension(fileName) + ".lfm")) symbols.insert("FPC");
  read->Source = ParseUnitSource(read->Text, fileName, symbols, includes);
  unit = std::move(read);
  return unit.get();
}

const TLintUnit* TLintSources::UnitNamed(std::string_view name) {
  const auto found = FUnitFiles.find(LowerCase(name));
  return found == FUnitFiles.end() ? nullptr : Unit(found->second);
}

// In the unit itself, if that counts, else in those that it uses, the last one first. Sets the unit
// to the one that declares the class.
const TClassDeclaration* TLintSources::FindClass(std::string_view name, const TLintUnit*& unit,
                                                 bool here) {
  if (here)
    if (const TClassDeclaration* found = unit->Source.FindClass(name)) return found;
  for (auto used = unit->Source.Uses.rbegin(); used != unit->Source.Uses.rend(); ++used) {
    const TLintUnit* other = UnitNamed(used->Name);
    if (other == nullptr || other == unit) continue;
    const TClassDeclaration* found = other->Source.FindClass(name);
    if (found == nullptr) continue;
    unit = other;
    return found;
  }
  return nullptr;
}

TLintClass TLintSources::ClassOf(const TLintUnit& unit, std::string_view className) {
  TLintClass result;
  const TLintUnit* where = &unit;
  result.IsKnown = true;
  std::string name(className);
  for (bool here = true;;) {
    const TClassDeclaration* found = FindClass(name, where, here);
    const bool circle =
        found != nullptr && std::any_of(result.Levels.begin(), result.Levels.end(),
                                        [&](const auto& level) { return level.Class == found; });
    if (found == nullptr || circle) break;
    result.Levels.push_back({found, where});
    result.IsKnown &= where->IsComplete;
    // A class may descend from one of its own name elsewhere.
    here = !EqualText(found->Ancestor, name);
    name = found->Ancestor;
  }
  result.Last = name;
  result.IsKnown &= !result.Levels.empty() && IsOneOf(name, RootClasses);
  return result;
}

const TLintForm* TLintSources::FormOfClass(std::string_view className) {
  return FindForm(className, true);
}
const TLintForm* TLintSources::FormNamed(std::string_view name) {
  return FindForm(name, false);
}

const TLintForm* TLintSources::FindForm(std::string_view wanted, bool byClass) {
  const TLintForm* found = nullptr;
  for (const std::string& fileName : FKnownForms) {
    try {
      const TLintForm& form = Form(fileName);
      const std::string name =
          byClass ? std::string(form.Root->StoredClassName()) : form.Root->Name();
      if (!EqualText(name, wanted)) continue;
      if (found != nullptr) return nullptr;
      found = &form;
    } catch (const Exception&) {
      // One that cannot be read is told when it is checked itself.
    }
  }
  return found;
}

bool TLintSources::KnowsAllUsed(const TLintUnit& unit) {
  return unit.IsComplete &&
         std::all_of(unit.Source.Uses.begin(), unit.Source.Uses.end(), [&](const TUsedUnit& used) {
           const std::string name = used.Name.substr(used.Name.rfind('.') + 1);
           return UnitNamed(used.Name) != nullptr || IsOneOf(name, EnvironmentUnits);
         });
}

}  // namespace wrenfold
