// The settings editor of the manager: over the settings root, in place, saving to the settings
// file.
#pragma once

#include <memory>
#include <string>

#include "editor/rkSpcEdPro.h"
#include "manager/rkExpData.h"

namespace wrenfold {

class TExpManager;

class TExpertEditor : public TSpcEditorPro {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TExpertEditor(TExpManager& manager);

  // Makes the table of labels anew from those of all settings, in the language in force.
  void LocalizeEditor();
  // Sets options, file name, buttons, invisible and disabled properties.
  void PrepareEditor();
  // Takes the values that the settings have now for their defaults: experts have set what they
  // want, nothing is loaded yet.
  void TakeDefaults();

  // Shows the editor over the settings root until the user closes it. The manager may end
  // meanwhile, and the editor with it.
  void Edit();
  // The file that the user chose to import while the editor was open; empty: none.
  const std::string& ImportFile() const { return FImportFile; }

  // In the language in force.
  void SetCaption() override;
  bool SaveToFile(const std::string& fileName, TObjectStorageFormat format) override;
  void ReadFormSetting(const std::string& section, const std::string& name,
                       TStrings& list) override;
  void WriteFormSetting(const std::string& section, const std::string& name,
                        const TStrings& list) override;

 protected:
  TSpcForm* MakeForm() override;
  // The root cannot be cloned while experts hold what is in it.
  std::unique_ptr<TPersistent> MakeClone(const TSpcObject&) override { return nullptr; }
  void WriteSpc(const std::string& fileName, TObjectStorageFormat format) override;
  std::shared_ptr<const TObjectImage> RootDefaults() const override { return FDefaults; }
  void PrepareBaseline(TSpcBaseline& baseline) override;
  bool AutoSaveParams() const override;
  std::string HotKeyConflict(TShortCut shortCut, const TPersistent& instance,
                             const TPropInfo& property) const override;

 private:
  void ExportClick(TObject* sender);
  void ImportClick(TObject* sender);

  TExpManager& FManager;
  std::shared_ptr<const TObjectImage> FDefaults;
  std::string FImportFile;
};

}  // namespace wrenfold
