// The settings editor over a specification of its own: wrenfold-settings-demo [--free] [--language
// MODULE] [FILE].
#include <cstdio>
#include <string>
#include <vector>

#include "Station.h"
#include "StationFile.h"
#include "editor/rkSpcEdPro.h"
#include "editor/rkSpcForm.h"
#include "locale/rkLocale.h"
#include "platform/widgets/Application.h"

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
