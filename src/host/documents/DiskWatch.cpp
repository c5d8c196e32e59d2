// Compares open files with the disk and reads them again where the user agrees.
#include "host/documents/DiskWatch.h"

#include <QApplication>

#include "platform/core/model/Dialogs.h"
#include "platform/widgets/Application.h"

namespace wrenfold {

namespace {

constexpr int Interval = 1500;  // milliseconds

}  // namespace

TDiskWatch::TDiskWatch(TDocuments& documents, TDocumentViews& views)
    : FDocuments(documents), FViews(views) {
  QObject::connect(&FTimer, &QTimer::timeout, &FTimer, [this] {
    if (QApplication::applicationState() == Qt::ApplicationActive)
      Guarded(nullptr, [this] { Check(); });
  });
  FTimer.start(Interval);
}

void TDiskWatch::Check() {
  const TForm* window = HasApplication() ? Application().MainForm() : nullptr;
  const bool disabled = window != nullptr && !window->Enabled();
  if (FChecking || disabled || QApplication::activeModalWidget() != nullptr) return;
  FChecking = true;
  // A question lets other events in: what is closed meanwhile has no documents any more.
  std::vector<std::pair<TIntf<IOTAModule>, TModule*>> modules;
  for (TModule* module : FDocuments.Workspace().Modules())
    modules.emplace_back(module->Interface(), module);
  for (const auto& [held, module] : modules) {
    for (const TIntf<TSourceEditor>& source : module->Sources())
      if (source->LoadedDocument() != nullptr) CheckSource(*source);
    TFormEditor* form = module->FormEditor();
    if (form != nullptr && form->LoadedDocument() != nullptr) CheckForm(*form);
  }
  FChecking = false;
}

void TDiskWatch::CheckSource(TSourceEditor& source) {
  TUnitDocument& document = *source.LoadedDocument();
  const TDiskState state = document.DiskState();
  if (state == TDiskState::Same) return;
  const std::string name = document.FileName();
  document.AcceptDiskState();
  if (state == TDiskState::Missing) {
    document.SetModified(true);
    FViews.Tell({TMessageKind::Warning,
                 name + " is no longer on disk. Saving the unit writes it again.", name, 0});
    return;
  }
  std::string question = name + " was changed by another program. Read it again?";
  if (document.Modified())
    question += "\r\n\r\nYour own changes would be replaced; Undo brings them back.";
  if (MessageDlg(question, mtConfirmation, {mbYes, mbNo}) == mbYes) FDocuments.ReloadFile(name);
  else document.SetModified(true);
}

void TDiskWatch::CheckForm(TFormEditor& form) {
  if (!form.LoadedDocument()->ChangedOnDisk()) return;
  form.LoadedDocument()->AcceptDiskState();
  const std::string name = form.FileName();
  // A form that was not edited loses nothing; broken halves of a write are read again later.
  if (!form.Modified() ||
      MessageDlg(name + " was changed by another program. Read it again? Your own changes to the "
                        "form would be lost.",
                 mtConfirmation, {mbYes, mbNo}) == mbYes)
    FDocuments.ReloadFile(name);
}

}  // namespace wrenfold
