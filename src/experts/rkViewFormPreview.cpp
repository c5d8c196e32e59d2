// The window of the module viewer: its preview.
#include "experts/rkViewForm.h"
#include "locale/rkLocale.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

constexpr std::uint32_t FinishLayout = 0xC01F;

std::string KindText(TFormFileKind kind) {
  switch (kind) {
    case TFormFileKind::Binary:
      return "BIN";
    case TFormFileKind::Text:
      return "TXT";
    case TFormFileKind::Missing:
      return {};
  }
  return {};
}

bool IsOpen(const std::string& fileName) {
  const auto services = Supports<IOTAModuleServices>(BorlandIDEServices);
  return services && services->FindModule(fileName) != nullptr;
}

}  // namespace

void TViewForm::UpdatePreview() {
  FFollow.stop();
  const int current = CurrentIndex();
  const std::string file = current < 0 ? std::string() : FModules[current].FileName;
  if (FPreviewed && file == FPreviewedFile) return;
  ReleaseShownForm();
  FPages->setCurrentIndex(FMode == svmForm ? 0 : 1);
  if (current < 0) return;
  if (FMode == svmForm) PreviewForm(FModules[current]);
  else PreviewUnit(FModules[current]);
}

void TViewForm::PreviewForm(const TListedModule& module) {
  const TDesignedKinds designed = DesignedKinds();
  const TModuleFormFile file = FindFormFile(module.FileName);
  const std::string path = file.FileName.empty() ? module.FileName : file.FileName;
  const auto tell = [&](int warning) {
    SetStatus(KindText(file.Kind), warning == 0 ? std::string() : LocaleStr(warning), path);
  };
  if (module.DesignClass == "TFrame" && !designed.Contains(dkFrames))
    return tell(sFramesNotSupported);
  if (file.Kind == TFormFileKind::Text && !designed.Contains(dkTextForms))
    return tell(sTextFormsNotSupported);
  IOTAModule* opened = OpenForPreview(module);
  if (opened == nullptr) return tell(sModuleNotOpened);
  const bool shown = FPreview->Show(GetFormEditorFromModule(opened).get());
  tell(shown ? 0 : sCLXFormsNotSupported);
  if (shown) FMessages.PostMessage(FinishLayout);
}

void TViewForm::PreviewUnit(const TListedModule& module) {
  IOTAModule* opened = OpenForPreview(module);
  const auto source = GetSourceEditorFromModule(opened);
  SetStatus({}, source ? std::string() : LocaleStr(sModuleNotOpened), module.FileName);
  if (source) FSource->ShowSource(source, FManager->EditorReadOnly);
}

// Remembers whether the module has to be closed again.
IOTAModule* TViewForm::OpenForPreview(const TListedModule& module) {
  FOpenedForPreview = !IsOpen(module.FileName);
  FPreviewed = TIntf<IOTAModule>(module.Info->OpenModule());
  FPreviewedFile = module.FileName;
  return FPreviewed.get();
}

void TViewForm::ReleaseShownForm(bool keepOpen) {
  FPreview->Release();
  const bool edited = FSource->Edited();
  FSource->Clear();
  SetStatus({}, {}, {});
  const TIntf<IOTAModule> module = std::move(FPreviewed);
  FPreviewed = nullptr;
  FPreviewedFile.clear();
  if (!module) return;
  if (edited && FManager->EditorAutoSave) module->Save(false, true);
  if (FOpenedForPreview && !keepOpen) FManager->CloseUnsaved(*module);
}

}  // namespace wrenfold
