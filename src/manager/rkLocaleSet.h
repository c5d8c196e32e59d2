// The window in which the languages of the suite are added and deleted and their directory is
// chosen.
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <string>

#include "manager/rkLanguages.h"
#include "platform/widgets/Button.h"
#include "platform/widgets/Forms.h"
#include "platform/widgets/ToolBar.h"

namespace wrenfold {

// Changes its own copy of the settings; the active language stays what it is.
class TLocaleForm : public TForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  // Modules without a work directory stand in the directory of the package.
  TLocaleForm(TComponent* owner, const TLanguageSettings& settings, std::string packageDirectory);

  // What the user made of them; a work directory ends in a separator.
  const TLanguageSettings& Settings() const { return FSettings; }
  QTableWidget* Grid() const { return FGrid; }
  TAction* FindAction(std::string_view name) const { return FActions->FindAction(name); }

 private:
  void CreateActions();
  void CreateControls();
  void ShowLanguages(int selected);
  void ShowDirectory();
  std::string Directory() const { return FSettings.FullName({}, FPackageDirectory); }

  void ExitClick(TObject*) { Close(); }
  void AddClick(TObject* sender);
  void DeleteClick(TObject* sender);
  void DirectoryClick(TObject* sender);
  void UpdateDelete(TObject* sender);
  void resizeEvent(QResizeEvent* event) override;

  TLanguageSettings FSettings;
  std::string FPackageDirectory;
  TActionList* FActions = nullptr;
  QTableWidget* FGrid = nullptr;
  QLabel* FDirectory = nullptr;
};

// Asks for the name and the library of a new language. Refuses in words what cannot be added.
class TAddLanguageForm : public TForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  // Offers the libraries of the directory.
  TAddLanguageForm(TComponent* owner, const TLanguageModules& known, const std::string& directory);

  std::string LanguageName() const;
  std::string Library() const;
  bool CloseQuery() override;

 private:
  TButton* AddButton(const char* name, int textId, TModalResult result);

  const TLanguageModules& FKnown;
  std::string FDirectory;
  QLineEdit* FName;
  QComboBox* FLibrary;
};

}  // namespace wrenfold
