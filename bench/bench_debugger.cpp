// Measures the CPU window on a real program: steps, scrolling, the scan.
#include <benchmark/benchmark.h>

#include <QElapsedTimer>
#include <QScrollBar>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include "experts/rkCPUScan.h"
#include "host/debug/CpuWindow.h"
#include "platform/widgets/Application.h"

namespace wrenfold {
namespace {

constexpr int Patience = 20'000;  // milliseconds
constexpr int ScrolledLines = 1000, ScanLines = 50;

// The sample program, stopped at its beginning, with the CPU window open on it.
class TStopped {
 public:
  TStopped() : FWindow(NewForm<TCpuWindow>(nullptr)) {
    FWindow->resize(900, 600);
    FWindow->Serve(FSession);
    FWindow->Show();
    TBreakpoint beginning;
    beginning.Function = "main";
    FSession.PutBreakpoint(beginning);
    FSession.Run({WRENFOLD_BIN_DIR "/wrenfold-test-steps", {}, {}});
    Stands = QTest::qWaitFor([this] { return Shown(); }, Patience);
  }
  // All panes show where the program is.
  bool Shown() {
    return FSession.Stopped() && Code().SelectedAddress() != 0 &&
           Code().SelectedAddress() == static_cast<std::int64_t>(FSession.Now().Address());
  }
  TDebugSession& Session() { return FSession; }
  TDisassemblyPane& Code() { return FWindow->Code(); }
  TForm& Window() { return *FWindow; }

  bool Stands = false;

 private:
  TDebugSession FSession;
  std::unique_ptr<TCpuWindow> FWindow;
};

bool Ready(benchmark::State& state, TStopped& program) {
  if (!program.Stands) state.SkipWithError("the program cannot be stopped here");
  return program.Stands;
}

void StepInstruction(benchmark::State& state) {
  TStopped program;
  if (!Ready(state, program)) return;
  for (auto _ : state) {
    const std::uint64_t before = program.Session().Now().Number;
    program.Session().Debugger().Step(TStep::InstructionOver);
    QElapsedTimer timer;
    timer.start();
    while ((program.Session().Now().Number == before || !program.Shown()) &&
           program.Session().Active() && timer.elapsed() < Patience)
      Application().ProcessMessages();
    if (!program.Session().Active()) return state.SkipWithError("the program ended");
    program.Window().repaint();
  }
}
// Fewer than the sample has.
BENCHMARK(StepInstruction)->Iterations(40)->Unit(benchmark::kMillisecond)->UseRealTime();

// One frame: the lines of a page on, until it is drawn.
void ScrollCode(benchmark::State& state) {
  TStopped program;
  if (!Ready(state, program)) return;
  QScrollBar& bar = *program.Code().verticalScrollBar();
  int step = bar.pageStep();
  for (auto _ : state) {
    bar.setValue(bar.value() + step);
    Application().ProcessMessages();
    program.Code().viewport()->repaint();
    if (bar.value() > ScrolledLines) step = -std::abs(step);
    if (bar.value() == 0) step = std::abs(step);
  }
}
BENCHMARK(ScrollCode)->Iterations(200)->Unit(benchmark::kMillisecond)->UseRealTime();

void Scan(benchmark::State& state) {
  TStopped program;
  if (!Ready(state, program)) return;
  program.Window().SetName("DisassemblyView");
  for (auto _ : state) {
    TStringList text;
    ReadCpuView(program.Window(), text, rkDisasmView, ScanLines);
    benchmark::DoNotOptimize(text);
  }
}
BENCHMARK(Scan)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace wrenfold

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QTemporaryDir settings;
  for (const auto format : {QSettings::NativeFormat, QSettings::IniFormat})
    QSettings::setPath(format, QSettings::UserScope, settings.path());
  wrenfold::TApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
