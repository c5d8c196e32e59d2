// The settings editor over a specification of its own: wrenfold-settings-demo [--free] [--language
// MODULE] [FILE].
#include <cstdio>
#include <string>
#include <vector>

#include "Station.h"
#include "editor/rkSpcEdPro.h"
#include "editor/rkSpcForm.h"
#include "locale/rkLocale.h"
#include "platform/core/system/Files.h"
#include "platform/widgets/Application.h"
#include "spec/rkSpcMng.h"

namespace {

using namespace wrenfold;
using namespace wrenfold::demo;

struct TArguments {
  bool Free = false;
  std::string Language;
  std::string File;
};

TArguments Parse(int argc, char** argv) {
  TArguments arguments;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument == "--free") arguments.Free = true;
    else if (argument == "--language" && i + 1 < argc) arguments.Language = argv[++i];
    else arguments.File = argument;
  }
  return arguments;
}

// Files of the demonstration carry a header with the versions that they were written by.
void SaveStation(TSpcObject& spc, const std::string& fileName, TObjectStorageFormat format) {
  const std::string versions = MakeVerInfo(format == osfText ? osfText : osfBin);
  if (format == osfText) SaveObjectDataText({&spc}, fileName, {"Station"}, versions);
  else SaveObjectDataBinary({&spc}, fileName, versions);
}

TObjectStorageFormat LoadStation(std::unique_ptr<TSpcObject>& spc, const std::string& fileName,
                                 bool, bool) {
  if (!FileExists(fileName)) throw ESpcMngError(LocaleFormat(sSpcFileNotFound, fileName));
  bool cancelled = false;
  const TDataHeaderHandler check = [&](const TObjDataDscr& dscr, const std::string& versions,
                                       bool& cancel) {
    CheckVer(dscr, versions, cancel, {.CheckVersion = true, .FileName = fileName});
    cancelled = cancel;
  };
  TPersistent* const objects[] = {spc.get()};
  const TObjectStorageFormat format = LoadObjectData(objects, fileName, check);
  if (cancelled) throw EAbort("cancelled");
  return format;
}

class TDemo {
 public:
  TDemo() {
    SaveSpcProc = SaveStation;
    LoadSpcProc = LoadStation;
    TInitData initData;
    FillInitData(initData);
    TSpcEditor::Init(std::move(initData));
    InitPropTypes();
    FEditor.TranslatingTable->SetText(StationTexts());
    FEditor.InvisibleProps->Add("TStation.RecorderName");
    FEditor.RedefiedParams->SetText("[TStation.Photo]\nWidth=120\nHeight=90\n");
    FEditor.FormOptions.Include(foTreeExpandOnEnter);
    FEditor.Candidates = [](const TPersistent&, const TPropInfo&) {
      return Recorders().Components();
    };
  }

  // False when there is nothing to show.
  bool Show(const TArguments& arguments) {
    if (arguments.Free) FEditor.ShowTreeEx(FStation.get());
    else if (!arguments.File.empty() && !FEditor.LoadFromFile(FStation, arguments.File))
      return false;
    else FEditor.ShowTree(FStation);
    return FEditor.Form() != nullptr;
  }
  bool IsOpen() const { return FEditor.Form() != nullptr; }

 private:
  std::unique_ptr<TSpcObject> FStation = std::make_unique<TStation>();
  TSpcEditorPro FEditor;
};

}  // namespace

int main(int argc, char** argv) {
  TApplication application(argc, argv);
  application.SetTitle("Station settings");
  const TArguments arguments = Parse(argc, argv);
  LoadNewLanguage(arguments.Language);
  TDemo demo;
  if (!demo.Show(arguments)) return 1;
  while (demo.IsOpen()) application.processEvents(QEventLoop::WaitForMoreEvents);
  return 0;
}
