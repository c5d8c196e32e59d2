// Writes modules under their own or another name; nothing is overwritten without a question.
#include "host/documents/Saving.h"

#include <algorithm>

#include "host/documents/DocumentViews.h"
#include "host/documents/Settings.h"
#include "platform/core/model/Dialogs.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

constexpr char PascalFilter[] = "Pascal units (*.pas);;All files (*)";
constexpr char CppFilter[] = "C++ sources (*.cpp *.h);;All files (*)";

// A file that saving its module would write over.
struct TSavedFile {
  std::string FileName;
  bool ReadOnly = false;
  bool Changed = false;  // by another program
};

std::vector<TSavedFile> ModifiedFiles(const TModule& module) {
  std::vector<TSavedFile> files;
  for (const TIntf<TSourceEditor>& source : module.Sources()) {
    TUnitDocument* document = source->LoadedDocument();
    if (document == nullptr || !document->Modified()) continue;
    // Looking at the disk finds out what is read-only, too.
    const bool changed = document->DiskState() == TDiskState::Changed;
    files.push_back({document->FileName(), document->ReadOnly(), changed});
  }
  const TFormEditor* form = module.FormEditor();
  const TFormDocument* document = form != nullptr ? form->LoadedDocument() : nullptr;
  if (document != nullptr && document->Modified())
    files.push_back({document->FileName(), document->ReadOnly(), document->ChangedOnDisk()});
  return files;
}

// What the status says about the files that were written.
std::string SavedText(const std::vector<TSavedFile>& written, const TModule& module) {
  std::string names;
  for (const TSavedFile& file : written) names += (names.empty() ? "" : ", ") + file.FileName;
  if (names.empty()) names = module.FileName();
  return names + (written.size() > 1 ? " are saved" : " is saved");
}

}  // namespace

bool TSaving::Save(TModule& module, bool changeName, bool ask) {
  if (module.Sources().empty() && module.FormEditor() == nullptr) return true;
  std::string fileName = module.FileName();
  const bool rename = changeName || (module.Untitled() && ask);
  if (rename) fileName = AskFileName(module);
  if (fileName.empty()) return false;
  if (!rename && !MaySaveOver(module, ask, fileName)) return false;
  const bool renamed = fileName != module.FileName();
  return Write(module, fileName, !renamed && !module.Untitled());
}

std::string TSaving::AskFileName(const TModule& module) {
  const bool cpp = LanguageOfFile(module.FileName()) == TSourceLanguage::Cpp;
  std::string name = Dialogs.Save("Save " + ExtractFileName(module.FileName()) + " as",
                                  module.FileName(), cpp ? CppFilter : PascalFilter);
  if (name.empty()) return name;
  if (ExtractFileExt(name).empty()) name += ExtractFileExt(module.FileName());
  name = AbsoluteFileName(name);
  const TModule* other = FWorkspace.Find(name);
  if (other == nullptr || other == &module) return name;
  MessageDlg(name + " is open in the workbench. Choose another name.", mtError, {mbOK});
  return {};
}

// A file that is read-only or was changed by another program is not written without a question.
bool TSaving::MaySaveOver(TModule& module, bool ask, std::string& fileName) {
  for (const TSavedFile& file : ModifiedFiles(module)) {
    if (file.ReadOnly) {
      const std::string question =
          file.FileName + " is a read-only file. Save the unit under another name?";
      if (!ask || MessageDlg(question, mtConfirmation, {mbYes, mbNo}) != mbYes) {
        FViews.Tell({.Text = file.FileName + ": the file is read-only and was not saved"});
        return false;
      }
      fileName = AskFileName(module);
      return !fileName.empty();
    }
    if (!file.Changed || !ask) continue;
    const std::string question =
        file.FileName +
        " was changed by another program since it was read. Write over that change?";
    if (MessageDlg(question, mtWarning, {mbYes, mbNo}) != mbYes) return false;
  }
  return true;
}

bool TSaving::Write(TModule& module, const std::string& fileName, bool onlyModified) {
  const std::string before = module.FileName();
  const bool renamed = before != fileName;
  const auto written = renamed ? std::vector<TSavedFile>() : ModifiedFiles(module);
  try {
    if (renamed) RenameInSource(module, before, fileName);
    module.SaveAs(fileName, onlyModified);
  } catch (const ETextEncodingError& e) {
    return OfferUnicode(module, e.Message()) && Write(module, fileName, onlyModified);
  } catch (const Exception& e) {
    if (renamed) RenameInSource(module, fileName, before);
    FViews.Tell({.Text = e.Message()});
    MessageDlg(e.Message(), mtError, {mbOK});
    return false;
  }
  if (renamed) {
    FSettings.RememberFiles({fileName});
    FProjectEditing.Renamed(module, before);
    FWorkspace.UpdateOwners();
  }
  if (&module == FWorkspace.Project()) FProjectEditing.Refresh();
  // A form that was mended as text can be read again.
  TFormEditor* form = module.FormEditor();
  if (form != nullptr && form->LoadedDocument() == nullptr) form->Forget();
  FViews.Status(SavedText(written, module));
  return true;
}

// The name of a Pascal unit is that of its file; a C++ unit includes its header by its name.
void TSaving::RenameInSource(TModule& module, const std::string& from, const std::string& to) {
  if (module.Sources().empty()) return;
  TUnitDocument& document = module.Sources()[0]->Document();
  const bool isCpp = LanguageOfFile(to) == TSourceLanguage::Cpp;
  if (isCpp && module.Sources().size() == 1) return;  // no header moves along
  const std::string name = ExtractFileNameEx(to);
  const auto edit = isCpp ? RenameOwnIncludeEdit(document.Text(), ExtractFileNameEx(from), name)
                          : RenameUnitEdit(document.Text(), name);
  if (edit) document.Replace(edit->Offset, edit->Length, edit->Text);
}

// The text has characters that its file's encoding lacks.
bool TSaving::OfferUnicode(TModule& module, const std::string& trouble) {
  const std::string question = trouble + "\r\n\r\nSave the unit as UTF-8 instead?";
  if (MessageDlg(question, mtWarning, {mbYes, mbNo}) != mbYes) return false;
  for (const TIntf<TSourceEditor>& source : module.Sources()) {
    TUnitDocument* document = source->LoadedDocument();
    if (document == nullptr || !document->Modified()) continue;
    TTextFormat format = document->File().Format();
    format.Encoding = TTextEncoding::Utf8WithMark;
    format.CodePage = 0;
    document->SetFormat(format);
  }
  return true;
}

bool TSaving::SaveAll() {
  bool all = true;
  for (TModule* module : FWorkspace.Modules())
    if (module->Modified()) all = Save(*module, false, true) && all;
  return all;
}

bool TSaving::Settle(TModule& module) {
  if (!module.Modified()) return true;
  const TMsgDlgBtn answer = MessageDlg("Save changes to " + module.FileName() + "?", mtConfirmation,
                                       {mbYes, mbNo, mbCancel});
  if (answer == mbYes) return Save(module, false, true);
  return answer == mbNo;
}

bool TSaving::SettleAll() {
  const std::vector<TModule*> modules = FWorkspace.Modules();
  return std::all_of(modules.begin(), modules.end(),
                     [this](TModule* module) { return Settle(*module); });
}

}  // namespace wrenfold
