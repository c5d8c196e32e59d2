// Measures the unit manager's list with ten thousand pages, and the start of the package.
#include <benchmark/benchmark.h>

#include <QSettings>
#include <QTemporaryDir>

#include "FakeEnvironment.h"
#include "experts/rkUnitList.h"
#include "experts/rkUnitMng.h"
#include "manager/rkExpMng.h"
#include "platform/core/system/Files.h"
#include "storage/rkObjectSaver.h"

namespace wrenfold {
namespace {

constexpr int Pages = 10000;

void FillTabs(TStrings& tabs) {
  const TUpdate update(tabs);
  for (int i = 0; i < Pages; ++i)
    tabs.Add("Unit" + std::to_string((i * 7919) % Pages) + (i % 3 == 0 ? "Main" : "Data"));
}

void Fill(benchmark::State& state) {
  TStringList tabs;
  FillTabs(tabs);
  TUnitList units;
  for (auto _ : state) units.PopulateUnitList(tabs);
}
BENCHMARK(Fill)->Unit(benchmark::kMillisecond);

void IndexEditors(benchmark::State& state) {
  std::vector<TEditorIndex::TEditor> editors;
  for (int i = 0; i < Pages; ++i)
    editors.push_back({"/home/user/project/Unit" + std::to_string(i) + ".pas", 1});
  TEditorIndex index;
  for (auto _ : state) index.Assign(editors);
}
BENCHMARK(IndexEditors)->Unit(benchmark::kMillisecond);

// An operation that leaves the list other than it was.
template <class Operation>
void OnFilledList(benchmark::State& state, const Operation& operation) {
  TStringList tabs;
  FillTabs(tabs);
  TUnitList units;
  for (auto _ : state) {
    state.PauseTiming();
    units.PopulateUnitList(tabs);
    state.ResumeTiming();
    operation(units);
  }
}

void Filter(benchmark::State& state) {
  OnFilledList(state, [](TUnitList& units) { units.UpdateUnitList("mAin"); });
}
BENCHMARK(Filter)->Unit(benchmark::kMillisecond);

void Sort(benchmark::State& state) {
  OnFilledList(state, [](TUnitList& units) { units.Sort(); });
}
BENCHMARK(Sort)->Unit(benchmark::kMillisecond);

// A block of half the list, by half of its length, and back.
void MoveBlock(benchmark::State& state) {
  TStringList tabs;
  FillTabs(tabs);
  TUnitList units;
  units.PopulateUnitList(tabs);
  std::vector<int> block;
  for (int i = 0; i < Pages / 2; ++i) block.push_back(i);
  units.SetSelected(block);
  int delta = Pages / 4;
  for (auto _ : state) {
    units.Move(delta);
    delta = -delta;
  }
}
BENCHMARK(MoveBlock)->Unit(benchmark::kMillisecond);

void ArrangeTabs(benchmark::State& state) {
  TStringList tabs, arranged;
  FillTabs(tabs);
  TUnitList units;
  units.PopulateUnitList(tabs);
  for (auto _ : state) benchmark::DoNotOptimize(units.ArrangeTabs(tabs, Pages / 2, arranged));
}
BENCHMARK(ArrangeTabs)->Unit(benchmark::kMillisecond);

// The same into the real row of tabs, with the toolkit's part of the work.
void AssignToTabControl(benchmark::State& state) {
  TTabControl control;
  FillTabs(*control.Tabs());
  TUnitList units;
  units.PopulateUnitList(*control.Tabs());
  TStringList arranged;
  units.SetSelected({0});
  int delta = Pages - 1;
  for (auto _ : state) {
    units.Move(delta);
    delta = -delta;
    control.SetTabIndex(units.ArrangeTabs(*control.Tabs(), 0, arranged));
    control.SetTabs(&arranged);
  }
}
BENCHMARK(AssignToTabControl)->Unit(benchmark::kMillisecond);

// From the registration up to the posted message that builds the menu, and the end with its save.
void StartPackage(benchmark::State& state) {
  const QTemporaryDir directory;
  TFakeEnvironment environment;
  for (auto _ : state) {
    InitExpManager(directory.path().toStdString() + "/");
    RegisterUnitManager();
    RegisterExpManager();
    state.PauseTiming();
    CurrentManager()->ManagerData().AutoSaveSettings = false;
    TFakeEnvironment::Wizard = nullptr;
    DoneExpManager();
    state.ResumeTiming();
  }
}
BENCHMARK(StartPackage)->Unit(benchmark::kMillisecond);

// The settings of the running suite, with the lines of filter history of the argument.
void SaveSettings(benchmark::State& state) {
  const QTemporaryDir directory;
  TFakeEnvironment environment;
  InitExpManager(directory.path().toStdString() + "/");
  RegisterUnitManager();
  RegisterExpManager();
  auto& expert = static_cast<TUnitManager&>(*CurrentManager()->Experts().Get(0).Expert);
  for (int i = 0; i < state.range(0); ++i) expert.HistoryList->Add("filter " + std::to_string(i));
  for (auto _ : state) CurrentManager()->SaveSettings();
  TFakeEnvironment::Wizard = nullptr;
  DoneExpManager();
}
BENCHMARK(SaveSettings)->Arg(0)->Arg(10000)->Unit(benchmark::kMillisecond);

void LoadSettings(benchmark::State& state) {
  const QTemporaryDir directory;
  TFakeEnvironment environment;
  InitExpManager(directory.path().toStdString() + "/");
  RegisterUnitManager();
  RegisterExpManager();
  auto& expert = static_cast<TUnitManager&>(*CurrentManager()->Experts().Get(0).Expert);
  for (int i = 0; i < state.range(0); ++i) expert.HistoryList->Add("filter " + std::to_string(i));
  CurrentManager()->SaveSettings();
  TPersistent* const objects[] = {SettingsRoot()};
  for (auto _ : state) TObjectSaver().SafeLoadObjects(objects, SettingsFileName());
  TFakeEnvironment::Wizard = nullptr;
  DoneExpManager();
}
BENCHMARK(LoadSettings)->Arg(0)->Arg(10000)->Unit(benchmark::kMillisecond);

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
