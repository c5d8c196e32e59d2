// Opening projects and large units: how long a user waits for the workbench's project model.
#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>

#include "platform/core/stream/Bytes.h"
#include "platform/core/stream/FormSpans.h"
#include "project/Project.h"

namespace wrenfold {
namespace {

constexpr int UnitCount = 1000;
constexpr size_t LargeUnitSize = 20u << 20;

// A project of a thousand units, each with a form, in a temporary folder.
class TGeneratedProject {
 public:
  TGeneratedProject() {
    std::string name = (std::filesystem::temp_directory_path() / "wrenfold-XXXXXX").string();
    FFolder = mkdtemp(name.data());
    std::string source = "program Big;\r\n\r\nuses\r\n  Forms";
    for (int number = 1; number <= UnitCount; ++number) {
      source += fmt::format(",\r\n  Unit{0} in 'Unit{0}.pas' {{Form{0}}}", number);
      Write(fmt::format("Unit{}.pas", number), UnitText(number));
      Write(fmt::format("Unit{}.dfm", number),
            fmt::format("object Form{0}: TForm{0}\r\nend\r\n", number));
    }
    Write("Big.dpr", source + ";\r\n\r\n{$R *.res}\r\n\r\nbegin\r\nend.\r\n");
    std::string large;
    while (large.size() < LargeUnitSize)
      large += "  Field := 'A line of an \xE4rgerly long unit';\r\n";
    Write("Large.pas", large);
  }
  ~TGeneratedProject() { std::filesystem::remove_all(FFolder); }

  std::string File(const std::string& name) const { return FFolder + "/" + name; }

 private:
  static std::string UnitText(int number) {
    std::string text = fmt::format(
        "unit Unit{0};\r\n\r\ninterface\r\n\r\nuses\r\n  Forms, Unit{1};\r\n\r\ntype\r\n"
        "  TForm{0} = class({2})\r\n  end;\r\n\r\nimplementation\r\n\r\n",
        number, number % 10 == 1 ? 1 : number - 1,
        number % 10 == 1 ? "TForm" : fmt::format("TForm{}", number - 1));
    for (int line = 0; line < 300; ++line) text += "  Caption := 'some text of this unit';\r\n";
    return text + "end.\r\n";
  }
  void Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(File(name), std::ios::binary) << bytes;
  }

  std::string FFolder;
};

const TGeneratedProject& Generated() {
  static const TGeneratedProject project;
  return project;
}

void OpenThousandUnits(benchmark::State& state) {
  const std::string fileName = Generated().File("Big.dpr");
  for (auto _ : state) {
    const auto project = TProject::Open(fileName);
    if (project->Modules().size() != UnitCount) state.SkipWithError("units are missing");
  }
}
BENCHMARK(OpenThousandUnits)->Unit(benchmark::kMillisecond);

void OpenThousandUnitsAndLoadTheirForms(benchmark::State& state) {
  const std::string fileName = Generated().File("Big.dpr");
  for (auto _ : state) {
    const auto project = TProject::Open(fileName);
    for (const TProjectModule& module : project->Modules())
      if (!IsDesignClass(project->LoadForm(module).Root->GetClassInfo(), "TForm"))
        state.SkipWithError("a root is no form");
  }
}
BENCHMARK(OpenThousandUnitsAndLoadTheirForms)->Unit(benchmark::kMillisecond);

void LoadLargeUnit(benchmark::State& state) {
  const std::string fileName = Generated().File("Large.pas");
  for (auto _ : state) benchmark::DoNotOptimize(TTextFile::Load(fileName, 1252).Text().size());
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * LargeUnitSize));
}
BENCHMARK(LoadLargeUnit)->Unit(benchmark::kMillisecond);

void EncodeLargeUnit(benchmark::State& state) {
  const TTextFile file = TTextFile::Load(Generated().File("Large.pas"), 1252);
  for (auto _ : state)
    benchmark::DoNotOptimize(EncodeText(file.Text(), file.Format(), file.FileName()).size());
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * LargeUnitSize));
}
BENCHMARK(EncodeLargeUnit)->Unit(benchmark::kMillisecond);

// A unit of about forty thousand bytes, as those of forms are: fields, methods and their bodies.
std::string FormUnit() {
  std::string head = "unit Main;\r\ninterface\r\nuses Forms;\r\ntype\r\n  TMain = class(TForm)\r\n";
  std::string bodies;
  for (int number = 1; number <= 200; ++number) {
    head += fmt::format(
        "    Button{0}: TButton;\r\n    procedure Button{0}Click(Sender: TObject);\r\n", number);
    bodies += fmt::format(
        "procedure TMain.Button{0}Click(Sender: TObject);\r\nbegin\r\n  if Button{0}.Enabled then "
        "// by hand\r\n    Caption := 'Button {0}';\r\nend;\r\n\r\n",
        number);
  }
  return head + "  end;\r\nimplementation\r\n" + bodies + "end.\r\n";
}

void ReadDeclarationsOfFourHundredUnits(benchmark::State& state) {
  const std::string text = FormUnit();
  for (auto _ : state)
    for (int number = 0; number < 400; ++number)
      if (ParseUnitSource(text, "Main.pas").Classes[0].Methods.size() != 200)
        state.SkipWithError("methods are missing");
}
BENCHMARK(ReadDeclarationsOfFourHundredUnits)->Unit(benchmark::kMillisecond);

// A form of a megabyte, in which one value changes; the rest keeps its bytes.
void ChangeLargeForm(benchmark::State& state) {
  std::string text = "object Main: TMain\r\n";
  for (int number = 0; text.size() < 1u << 20; ++number)
    text += fmt::format(
        "  object Button{0}: TButton\r\n    Left = {0}\r\n    Caption = 'Button {0}'\r\n"
        "    TabOrder = {0}\r\n    OnClick = ButtonClick\r\n  end\r\n",
        number);
  const TFormSpans spans(text + "end\r\n");
  const auto root = spans.ReadForm();
  std::int64_t left = 0;
  for (auto _ : state) {
    TByteWriter value;
    value.WriteIntegerValue(++left);
    root->Children()[1000]->SetValue("Left", value.View());
    benchmark::DoNotOptimize(spans.Render(*root).size());
  }
}
BENCHMARK(ChangeLargeForm)->Unit(benchmark::kMillisecond);

// The yardstick: a plain copy of the same bytes.
void CopyLargeUnit(benchmark::State& state) {
  const std::string bytes(LargeUnitSize, 'x');
  for (auto _ : state) benchmark::DoNotOptimize(std::string(bytes).data());
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * LargeUnitSize));
}
BENCHMARK(CopyLargeUnit)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace wrenfold

BENCHMARK_MAIN();
