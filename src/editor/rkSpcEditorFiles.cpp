// Specifications and files, and the settings of the window.
#include <QCoreApplication>

#include "controls/rkFileDialogs.h"
#include "editor/rkSpcEditor.h"
#include "editor/rkSpcForm.h"
#include "foundation/rkAppUtils.h"
#include "locale/rkLocale.h"
#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/Text.h"
#include "spec/rkSpcConst.h"

namespace wrenfold {

namespace {

// The extension that a name without one gets.
std::string ExtensionOf(TObjectStorageFormat format) {
  switch (format) {
    case osfResBin:
      return SResBinExt();
    case osfExtBin:
      return SExBinExt();
    case osfText:
      return STextExt();
    default:
      return SBinExt();
  }
}

constexpr int TextFilterIndex = 2;

}  // namespace

void TSpcEditor::SetFile(const std::string& fileName, TObjectStorageFormat format) {
  FFileName = fileName;
  FFormat = format;
  SetCaption();
}

// For catch blocks: what went wrong with the file, in words.
bool TSpcEditor::ShowError(int textId, const std::string& fileName) {
  const std::string reason = ExceptionMessage(std::current_exception());
  MsgError(LocaleFormat(textId, fileName, std::string("\r\n"), reason));
  return false;
}

// A load that fails leaves what is edited as it was.
bool TSpcEditor::LoadFromFile(const std::string& fileName, bool askOnErrors) {
  try {
    CheckInit();
    if (!CanLoad()) throw ESpcEditorError(LocaleStr(sOperationNotSupported));
    std::unique_ptr<TSpcObject> loaded(
        dynamic_cast<TSpcObject*>(SpcRoot()->GetClassInfo().Make().release()));
    if (loaded == nullptr) return LoadInPlace(fileName, askOnErrors);
    FFormat = GetInitData().LoadSpc(loaded, fileName, askOnErrors, false);
    *FRootVariable = std::move(loaded);
  } catch (const EAbort&) {
    return false;  // the user does not want it
  } catch (...) {
    return ShowError(sSpcLoadError, fileName);
  }
  TakeLoaded(fileName);
  return true;
}

// A specification whose class cannot be made alone is read into; a failure takes it back.
bool TSpcEditor::LoadInPlace(const std::string& fileName, bool askOnErrors) {
  const TObjectImage before(*SpcRoot());
  try {
    FFormat = GetInitData().LoadSpc(*FRootVariable, fileName, askOnErrors, false);
  } catch (...) {
    before.Restore(*SpcRoot());
    throw;
  }
  TakeLoaded(fileName);
  return true;
}

void TSpcEditor::TakeLoaded(const std::string& fileName) {
  FFileName = fileName;
  OnLoadSpc(this, SpcRoot());
  SetCaption();
}

bool TSpcEditor::LoadFromFile(std::unique_ptr<TSpcObject>& spc, const std::string& fileName,
                              bool askOnErrors) {
  SetSpcRoot(spc);
  return LoadFromFile(fileName, askOnErrors);
}

// The objects of the old tree go with loading: the tree goes first.
bool TSpcEditor::Load() {
  TOpenDialog dialog;
  dialog.Title = LocaleStr(sLoadSpcTitle);
  dialog.Filter = SpcFileFilter();
  dialog.InitialDir = FLoadDir.empty() ? ExtractFilePath(FFileName) : FLoadDir;
  if (!dialog.Execute(FForm)) return false;
  FLoadDir = ExtractFilePath(dialog.FileName);
  if (!SaveChanges()) return false;
  DoRelease();
  const bool loaded = LoadFromFile(dialog.FileName, true);
  FClone = MakeClone(*SpcRoot());
  TreeChanged();
  FForm->JournalChanged();
  return loaded;
}

void TSpcEditor::WriteSpc(const std::string& fileName, TObjectStorageFormat format) {
  GetInitData().SaveSpc(*SpcRoot(), fileName, format);
}

bool TSpcEditor::SaveToFile(const std::string& fileName, TObjectStorageFormat format) {
  try {
    CheckInit();
    bool allow = true;
    BeforeSaveSpc(this, SpcRoot(), fileName, allow);
    if (!allow) return false;
    UpdateSpc();
    WriteSpc(fileName, format);
  } catch (...) {
    return ShowError(sSpcSaveError, fileName);
  }
  FSaved = true;
  SetFile(fileName, format);
  SetBaseline();
  RowsChanged();
  AfterSaveSpc(this, SpcRoot(), fileName);
  return true;
}

bool TSpcEditor::DoSave() {
  StoreRows();
  return SaveToFile(FFileName, FFormat);
}

bool TSpcEditor::Save() {
  return DoSaveChanges();
}

bool TSpcEditor::DoSaveChanges() {
  if (FFreeMode) {
    StoreRows();
    SetBaseline();
    RowsChanged();
    return true;
  }
  return FFileName.empty() ? SaveAs() : DoSave();
}

bool TSpcEditor::SaveAs() {
  if (FFreeMode) return false;
  StoreRows();
  TSaveDialog dialog;
  dialog.Title = LocaleStr(sSaveSpcTitle);
  dialog.Filter = SpcFileFilter();
  dialog.FilterIndex = FFormat == osfText ? TextFilterIndex : 1;
  dialog.InitialDir = FSaveDir.empty() ? ExtractFilePath(FFileName) : FSaveDir;
  dialog.FileName = FFileName;
  dialog.OverwritePrompt = false;
  std::string fileName;
  TObjectStorageFormat format = FFormat;
  if (!InternalSaveAs(dialog, fileName, format)) return false;
  FSaveDir = ExtractFilePath(fileName);
  return SaveToFile(fileName, format);
}

bool TSpcEditor::InternalSaveAs(TFileDialog& dialog, std::string& fileName,
                                TObjectStorageFormat& format) {
  if (!dialog.Execute(FForm)) return false;
  format = dialog.FilterIndex == TextFilterIndex ? osfText : osfBin;
  fileName = dialog.FileName;
  if (ExtractFileExt(fileName).empty()) fileName += ExtensionOf(format);
  return !FileExists(fileName) ||
         MsgQuestion(LocaleFormat(sReplaceFileQuestion, fileName)) == mbYes;
}

// A value that was refused is no change: the object has its old one.
bool TSpcEditor::SaveChanges() {
  if (FTop == nullptr || GetUpdatingSpc() == nullptr) return true;
  StoreRows();
  if (!Changed()) return true;
  if (Options.Contains(eoSaveSpcOnExit)) return DoSaveChanges();
  switch (MsgQuestion(LocaleStr(sSaveChangesQuestion), {mbYes, mbNo, mbCancel})) {
    case mbYes:
      return DoSaveChanges();
    case mbNo:
      UndoChanges();
      return true;
    default:
      return false;
  }
}

void TSpcEditor::UndoChanges() {
  const TObjectImage* stored = FBaseline.StoredRoot();
  if (stored == nullptr || GetUpdatingSpc() == nullptr) return;
  ClearRows();
  Guarded(this, [&] { stored->Restore(*GetUpdatingSpc()); });
  FJournal.Clear();
}

std::string TSpcEditor::IniFile() const {
  const std::string program = FromQString(QCoreApplication::applicationFilePath());
  if (IniFileName.empty()) return program + ".ini";
  return IniFileName.find('/') == std::string::npos ? ExtractFilePath(program) + IniFileName
                                                    : IniFileName;
}

void TSpcEditor::ReadFormSetting(const std::string& section, const std::string&, TStrings& list) {
  std::string data;
  bool allow = true;
  OnReadFormSetting(this, IniFile(), section, data, allow);
  if (!allow) return list.SetText(data);
  const TIniStrings ini(IniFile());
  ini.ReadSectionValues(section, list);
}

void TSpcEditor::WriteFormSetting(const std::string& section, const std::string&,
                                  const TStrings& list) {
  bool allow = true;
  OnWriteFormSetting(this, IniFile(), section, list.Text(), allow);
  if (!allow) return;
  TIniStrings ini(IniFile());
  ini.EraseSection(section);
  for (int i = 0; i < list.Count(); ++i) ini.AddString(section, list[i]);
  ini.UpdateFile();
}

}  // namespace wrenfold
