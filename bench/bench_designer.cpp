// Drawing forms: composing, laying out and painting, pictures decoded; on average and at worst.
// WRENFOLD_FORMS names a folder with form files of one's own; without it the samples are drawn.
#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <QApplication>
#include <QStyleFactory>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>

#include "designer/paint/Colours.h"
#include "designer/paint/FormPicture.h"
#include "project/FormFile.h"

namespace wrenfold {
namespace {

std::vector<TFormFile> LoadForms(const std::string& folder) {
  std::vector<TFormFile> forms;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (!IsFormFileName(entry.path().string())) continue;
    try {
      forms.push_back(LoadFormFile(entry.path().string()));
    } catch (const Exception&) {
      continue;  // samples hold broken forms too
    }
  }
  return forms;
}

std::string ThousandComponents() {
  std::string text =
      "object A: TA\r\n  Caption = 'x'\r\n  ClientWidth = 1000\r\n  ClientHeight = 800\r\n";
  constexpr const char* classes[] = {"TButton", "TEdit", "TLabel", "TCheckBox", "TPanel"};
  for (int i = 0; i < 1000; ++i)
    text += fmt::format(
        "  object C{}: {}\r\n    Left = {}\r\n    Top = {}\r\n    Width = 75\r\n    Height = 21\r\n"
        "    Caption = 'Some text'\r\n  end\r\n",
        i, classes[i % 5], i % 12 * 80, i / 12 * 9);
  return text + "end\r\n";
}

double DrawOne(const TFormFile& file, const TTheme& theme, TFontBook& fonts) {
  TNoForms none;
  const auto start = std::chrono::steady_clock::now();
  const auto form = ComposeForm(*file.Root, none);
  LayoutForm(*form);
  benchmark::DoNotOptimize(DrawFormPicture(*form, theme, fonts));
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
}

void Draw(benchmark::State& state, const std::vector<TFormFile>& forms) {
  const std::unique_ptr<QStyle> style(QStyleFactory::create("Fusion"));
  const TTheme theme{LightPalette(), style.get()};
  TFontBook fonts;
  if (forms.empty()) return state.SkipWithError("there are no forms");
  for (const TFormFile& file : forms) DrawOne(file, theme, fonts);  // loads the fonts
  double sum = 0, worst = 0;
  std::size_t count = 0;
  for (auto _ : state) {
    for (const TFormFile& file : forms) {
      const double time = DrawOne(file, theme, fonts);
      sum += time;
      worst = std::max(worst, time);
      ++count;
    }
  }
  state.counters["ms_a_form"] = sum / static_cast<double>(count);
  state.counters["ms_worst"] = worst;
  state.counters["forms"] = static_cast<double>(forms.size());
}

void DrawForms(benchmark::State& state) {
  const char* folder = std::getenv("WRENFOLD_FORMS");
  Draw(state, LoadForms(folder != nullptr ? folder : WRENFOLD_SOURCE_DIR "/samples"));
}

void DrawThousandComponents(benchmark::State& state) {
  std::vector<TFormFile> forms;
  forms.push_back(ReadFormFile(ThousandComponents(), "made"));
  Draw(state, forms);
}

BENCHMARK(DrawForms)->Unit(benchmark::kMillisecond);
BENCHMARK(DrawThousandComponents)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace wrenfold

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
