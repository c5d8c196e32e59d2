// What forms are composed with: open forms as they stand, the others from their files.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "designer/model/FileForms.h"

namespace wrenfold {

class TFormEditor;
class TWorkspace;

// The forms of the open project and of folders. What was read is kept as long as it is on disk as
// it was.
class TProjectForms {
 public:
  explicit TProjectForms(TWorkspace& workspace) : FWorkspace(workspace) {}

  // The files that the form can inherit from.
  std::shared_ptr<TFileForms> FilesFor(const TFormEditor& editor);
  // A copy of the form of this class when it is open with changes that no file has; else null.
  std::shared_ptr<const TDesignComponent> ChangedForm(std::string_view className) const;
  // Forgets what was read.
  void Clear() { FKnown.clear(); }

 private:
  struct TKnown {
    std::shared_ptr<TFileForms> Files;
    std::vector<std::string> Modules;  // of the project, as it was listed then
  };

  TWorkspace& FWorkspace;
  std::map<std::string, TKnown> FKnown;  // by project or folder
};

// The catalog of one form. Its answers stay as they are, and alive, until Renew was called twice:
// a form can be composed anew while the one before is still in use.
class TModuleForms final : public TFormCatalog {
 public:
  // Both must outlive the catalog.
  TModuleForms(TFormEditor& editor, TProjectForms& forms);

  // From here on answers are what stands now.
  void Renew();
  // Whether somebody asked for the form of this class.
  bool AskedFor(std::string_view className) const;

  std::vector<std::string> Ancestors(std::string_view className) override;
  const TDesignComponent* FindForm(std::string_view className) override;

 private:
  struct TAnswers {
    std::shared_ptr<TFileForms> Files;
    std::map<std::string, std::shared_ptr<const TDesignComponent>> Changed;  // by folded class
  };

  TFormEditor& FEditor;
  TProjectForms& FForms;
  TAnswers FNow, FBefore;
  std::set<std::string> FAsked;  // folded
};

}  // namespace wrenfold
