#include "designer/model/FileForms.h"

#include <algorithm>
#include <filesystem>

#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"
#include "project/Project.h"
#include "project/UnitSource.h"

namespace wrenfold {

namespace {

constexpr std::string_view UnitExtensions[] = {".pas", ".pp", ".h", ".hpp"};

template <class Extensions>
bool HasExtension(std::string_view fileName, const Extensions& extensions) {
  return std::ranges::any_of(extensions, [&](std::string_view extension) {
    return fileName.size() > extension.size() &&
           EqualText(fileName.substr(fileName.size() - extension.size()), extension);
  });
}

// No chain of classes is longer; one that is goes in a circle.
constexpr std::size_t LongestChain = 64;

// The class of the root; of a binary form the whole file is read for it.
std::string RootClassOf(const std::string& fileName) {
  const TFormHeader header = ReadFormHeader(fileName);
  if (!header.ClassName.empty()) return header.ClassName;
  try {
    return std::string(LoadFormFile(fileName).Root->StoredClassName());
  } catch (const Exception&) {
    return {};
  }
}

}  // namespace

TFileForms::TFileForms(const std::vector<std::string>& files) {
  for (const std::string& file : files) {
    if (IsFormFileName(file)) {
      FForms.push_back(file);
    } else if (HasExtension(file, UnitExtensions)) {
      FUnits.push_back(file);
    }
  }
  for (const std::string& unit : FUnits)
    if (const std::string form = FindFormFile(unit);
        !form.empty() && std::ranges::find(FForms, form) == FForms.end())
      FForms.push_back(form);
}

std::unique_ptr<TFileForms> TFileForms::OfFolder(const std::string& folder) {
  std::vector<std::string> files;
  std::error_code error;
  for (std::filesystem::directory_iterator at(folder, error), end; !error && at != end;
       at.increment(error)) {
    std::string name = at->path().string();
    if (IsFormFileName(name) || HasExtension(name, UnitExtensions))
      files.push_back(std::move(name));
  }
  std::ranges::sort(files);
  return std::make_unique<TFileForms>(files);
}

std::unique_ptr<TFileForms> TFileForms::OfProject(const std::string& fileName) {
  return OfProject(*TProject::Open(fileName));
}

std::unique_ptr<TFileForms> TFileForms::OfProject(const TProject& project) {
  std::vector<std::string> files;
  for (const TProjectModule& module : project.Modules()) {
    if (module.State == TModuleState::Missing) continue;
    if (const std::string header = FindHeader(module.FileName); !header.empty())
      files.push_back(header);
    if (const std::string form = FindFormFile(module.FileName); !form.empty())
      files.push_back(form);
    files.push_back(module.FileName);
  }
  return std::make_unique<TFileForms>(files);
}

void TFileForms::ReadUnits() {
  if (std::exchange(FUnitsRead, true)) return;
  for (const std::string& unit : FUnits) {
    try {
      for (const TClassDeclaration& declared : ParseUnitSource(ReadWholeFile(unit), unit).Classes)
        FAncestors.emplace(LowerCase(declared.Name), declared.Ancestor);
    } catch (const Exception&) {
      continue;
    }
  }
}

void TFileForms::ReadFormHeaders() {
  if (std::exchange(FHeadersRead, true)) return;
  for (const std::string& form : FForms)
    if (const std::string name = RootClassOf(form); !name.empty())
      FKnown[LowerCase(name)].FileName = form;
}

std::vector<std::string> TFileForms::Ancestors(std::string_view className) {
  ReadUnits();
  std::vector<std::string> chain;
  std::string name = LowerCase(className);
  while (chain.size() < LongestChain) {
    const auto found = FAncestors.find(name);
    if (found == FAncestors.end()) break;
    chain.push_back(found->second);
    name = LowerCase(found->second);
  }
  return chain;
}

const TDesignComponent* TFileForms::FindForm(std::string_view className) {
  ReadFormHeaders();
  const auto found = FKnown.find(LowerCase(className));
  if (found == FKnown.end()) return nullptr;
  TKnownForm& form = found->second;
  if (!std::exchange(form.Tried, true)) {
    form.Stamp = StampOf(form.FileName);
    try {
      form.File = LoadFormFile(form.FileName);
    } catch (const Exception&) {
      return nullptr;
    }
  }
  return form.File.Root.get();
}

TFileForms::TFileStamp TFileForms::StampOf(const std::string& fileName) {
  std::error_code error;
  return {FileSize(fileName), std::filesystem::last_write_time(fileName, error)};
}

bool TFileForms::Outdated() const {
  return std::ranges::any_of(FKnown, [](const auto& known) {
    const TKnownForm& form = known.second;
    return form.Tried && form.Stamp != StampOf(form.FileName);
  });
}

}  // namespace wrenfold
