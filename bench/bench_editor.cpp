// The settings editor: a tree of ten thousand nodes, a node of 500 rows, keys in the search field,
// the suite's own settings.
#include <benchmark/benchmark.h>

#include <QTemporaryDir>

#include "FakeEnvironment.h"
#include "editor/rkSpcEdPro.h"
#include "editor/rkSpcForm.h"
#include "experts/rkUnitMng.h"
#include "manager/rkExpMng.h"
#include "manager/rkExpertEditor.h"

namespace wrenfold {
namespace {

constexpr int RowsOfANode = 12;
constexpr int GroupCount = 100, ItemsOfAGroup = 99;  // 10,001 nodes with groups, lists and root
constexpr int ManyRows = 500;

// A class with so many properties, of the kinds that settings mostly have.
template <class Class>
TTypeInfo PublishMany(const char* name, const TTypeInfo& parent, int count) {
  TPublisher<Class> publisher(name, &parent);
  for (int i = 0; i < count; ++i) {
    const std::string property = "Property" + std::to_string(i);
    switch (i % 4) {
      case 0:
        std::move(publisher).Prop(property.c_str(), &Class::Text);
        break;
      case 1:
        std::move(publisher).Prop(property.c_str(), &Class::Number);
        break;
      case 2:
        std::move(publisher).Prop(property.c_str(), &Class::Flag);
        break;
      default:
        std::move(publisher).Prop(property.c_str(), &Class::Pitch);
    }
  }
  return publisher;
}

class TLeaf : public TSpcItem {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = PublishMany<TLeaf>("TLeaf", TSpcItem::ClassInfo(), RowsOfANode);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  using TSpcItem::TSpcItem;
  std::string GetNodeName() const override { return "leaf " + std::to_string(Number); }
  std::string Text = "some text";
  std::int32_t Number = 0;
  bool Flag = false;
  TFontPitch Pitch = fpDefault;
};

class TGroup : public TSpcItem {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info =
        Publish<TGroup>("TGroup", TSpcItem::ClassInfo()).Prop("Leaves", &TGroup::Leaves);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TGroup(TCollection* collection = nullptr)
      : TSpcItem(collection), Leaves(std::make_unique<TSpcCollection>(this, TLeaf::ClassInfo())) {}
  std::unique_ptr<TSpcCollection> Leaves;
};

class TForest : public TSpcObject {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info =
        Publish<TForest>("TForest", TSpcObject::ClassInfo()).Prop("Groups", &TForest::Groups);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TForest() : Groups(std::make_unique<TSpcCollection>(this, TGroup::ClassInfo())) {}
  void Fill() {
    for (int g = 0; g < GroupCount; ++g) {
      auto& group = static_cast<TGroup&>(*Groups->Add());
      for (int i = 0; i < ItemsOfAGroup; ++i)
        static_cast<TLeaf&>(*group.Leaves->Add()).Number = g * ItemsOfAGroup + i;
    }
  }
  std::unique_ptr<TSpcCollection> Groups;
};

class TWide : public TSpcObject {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = PublishMany<TWide>("TWide", TSpcObject::ClassInfo(), ManyRows);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  std::string Text = "some text";
  std::int32_t Number = 0;
  bool Flag = false;
  TFontPitch Pitch = fpDefault;
};

class TField : public TSpcObject {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TField>("TField", TSpcObject::ClassInfo())
                                      .Prop("Number", &TField::Number)
                                      .Prop("Wide", &TField::Wide);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TField() : Wide(std::make_unique<TWide>()) {}
  std::int32_t Number = 0;
  std::unique_ptr<TWide> Wide;
};

class TBenchEditor : public TSpcEditorPro {
 public:
  void ReadFormSetting(const std::string&, const std::string&, TStrings&) override {}
  void WriteFormSetting(const std::string&, const std::string&, const TStrings&) override {}
};

void Close(TSpcEditor& editor) {
  if (editor.Form() != nullptr) editor.Form()->Close();
  for (int round = 0; round < 3; ++round) Application().ProcessMessages();
}

void OpenTenThousandNodes(benchmark::State& state) {
  TForest forest;
  forest.Fill();
  TBenchEditor editor;
  for (auto _ : state) {
    editor.ShowTreeEx(&forest);
    Application().processEvents();
    state.PauseTiming();
    Close(editor);
    state.ResumeTiming();
  }
}
BENCHMARK(OpenTenThousandNodes)->Unit(benchmark::kMillisecond);

// From a node with few rows to the one with many.
void ShowFiveHundredRows(benchmark::State& state) {
  TField field;
  TBenchEditor editor;
  editor.ShowTreeEx(&field);
  TTreeNode* few = editor.RootNode();
  TTreeNode* many = editor.FindNode(field.Wide.get());
  Application().processEvents();
  for (auto _ : state) {
    editor.SelectNode(many);
    Application().processEvents();
    state.PauseTiming();
    editor.SelectNode(few);
    Application().processEvents();
    state.ResumeTiming();
  }
  Close(editor);
}
BENCHMARK(ShowFiveHundredRows)->Unit(benchmark::kMillisecond);

// Each key of a word, as it is typed.
void TypeInTheSearch(benchmark::State& state) {
  TForest forest;
  forest.Fill();
  TBenchEditor editor;
  editor.ShowTreeEx(&forest);
  Application().processEvents();
  editor.Search("nowhere");
  const std::string words[] = {"l", "le", "lea", "leaf", "leaf 7", "leaf 77", "leaf 777"};
  std::size_t key = 0;
  for (auto _ : state) {
    editor.Search(words[key]);
    Application().processEvents();
    key = (key + 1) % std::size(words);
  }
  editor.Search({});
  Close(editor);
}
BENCHMARK(TypeInTheSearch)->Unit(benchmark::kMillisecond);

void OpenTheSuitesSettings(benchmark::State& state) {
  const QTemporaryDir folder;
  TFakeEnvironment environment;
  InitExpManager(folder.path().toStdString() + "/");
  RegisterUnitManager();
  RegisterExpManager();
  for (int round = 0; round < 3; ++round) Application().ProcessMessages();
  TExpertEditor& editor = *CurrentManager()->Editor();
  for (auto _ : state) {
    QTimer::singleShot(0, [&editor] { editor.Form()->Close(); });
    editor.Edit();
  }
  TFakeEnvironment::Wizard = nullptr;
  DoneExpManager();
}
BENCHMARK(OpenTheSuitesSettings)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace wrenfold

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  benchmark::Initialize(&argc, argv);
  wrenfold::TApplication application(argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
