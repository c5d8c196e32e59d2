// The object inspector in the workbench over a form of a thousand components: what a click in the
// designer and a key in the filter cost until everything is painted.
#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <QApplication>
#include <QSettings>
#include <filesystem>

#include "host/shell/Workbench.h"
#include "platform/core/system/Files.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/Text.h"

namespace wrenfold {
namespace {

constexpr int Components = 1000;

std::string FormOfThousand() {
  std::string text =
      "object A: TA\r\n  Caption = 'x'\r\n  ClientWidth = 1000\r\n  ClientHeight = 800\r\n";
  constexpr const char* classes[] = {"TButton", "TEdit", "TLabel", "TCheckBox", "TPanel"};
  for (int i = 0; i < Components; ++i)
    text += fmt::format(
        "  object C{}: {}\r\n    Left = {}\r\n    Top = {}\r\n    Width = 75\r\n    Height = 21\r\n"
        "    Hint = 'Some text'\r\n  end\r\n",
        i, classes[i % 5], i % 12 * 80, i / 12 * 9);
  return text + "end\r\n";
}

// The workbench with that form open in its designer.
class TOpenForm {
 public:
  TOpenForm() : FFolder(std::filesystem::temp_directory_path() / "wrenfold-bench-inspector") {
    std::filesystem::create_directories(FFolder);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, ToQString(FFolder.string()));
    const std::string file = (FFolder / "A.dfm").string();
    SafeWriteFile(file, FormOfThousand());
    FWorkbench.AfterConstruction();
    FWorkbench.Show();
    FWorkbench.Documents().OpenFile(file);
    FForm = FWorkbench.Workspace().Find(file)->FormEditor();
    FForm->Show();
    Application().ProcessMessages();
  }
  ~TOpenForm() { std::filesystem::remove_all(FFolder); }

  TPropertyInspector& Inspector() { return FWorkbench.Inspector(); }
  TFormEditor& Form() { return *FForm; }
  std::vector<TComponent*> All() { return FForm->GetRootComponent()->Components(); }
  void Select(const std::vector<TComponent*>& components) {
    FForm->Designer().SetSelections(components);
    Application().ProcessMessages();
  }

 private:
  std::filesystem::path FFolder;
  TWorkbench FWorkbench;
  TFormEditor* FForm = nullptr;
};

// Made when a benchmark asks for it first; ends before the application does.
std::unique_ptr<TOpenForm> OpenForm;
TOpenForm& Open() {
  if (OpenForm == nullptr) OpenForm = std::make_unique<TOpenForm>();
  return *OpenForm;
}

void SelectAmongThousand(benchmark::State& state) {
  const auto all = Open().All();
  std::size_t next = 0;
  for (auto _ : state) Open().Select({all[next++ % all.size()]});
}

void SelectThousand(benchmark::State& state) {
  const auto all = Open().All();
  for (auto _ : state) {
    state.PauseTiming();
    Open().Select({all[0]});
    state.ResumeTiming();
    Open().Select(all);
  }
}

void FilterKey(benchmark::State& state) {
  constexpr const char* texts[] = {"a", "al", "ali", "al", "a", ""};
  Open().Select({Open().All()[0]});
  std::size_t next = 0;
  for (auto _ : state) {
    Open().Inspector().Filter().setText(texts[next++ % std::size(texts)]);
    Application().ProcessMessages();
  }
  Open().Inspector().Filter().clear();
}

void ChangeThousand(benchmark::State& state) {
  Open().Select(Open().All());
  QTreeWidget& grid = Open().Inspector().Grid();
  int next = 0;
  for (auto _ : state) {
    grid.findItems("Tag", Qt::MatchExactly).value(0)->setText(1, QString::number(++next));
    Application().ProcessMessages();
  }
}

BENCHMARK(SelectAmongThousand)->Unit(benchmark::kMillisecond);
BENCHMARK(SelectThousand)->Unit(benchmark::kMillisecond);
BENCHMARK(FilterKey)->Unit(benchmark::kMillisecond);
BENCHMARK(ChangeThousand)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace wrenfold

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  wrenfold::TApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  wrenfold::OpenForm.reset();
}
