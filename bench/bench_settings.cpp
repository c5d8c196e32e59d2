// Times of property access by name and path, and of reading settings into keyed collections.
#include <benchmark/benchmark.h>

#include "storage/rkDataProps.h"
#include "storage/rkStorage.h"

namespace wrenfold {
namespace {

// A class with as many properties as asked for, all on one value.
class TMany : public TPersistent {
 public:
  explicit TMany(int count) {
    TPublisher<TMany> publisher("TMany", &TPersistent::ClassInfo());
    for (int i = 0; i < count; ++i)
      std::move(publisher).Prop(("Property" + std::to_string(i)).c_str(), &TMany::Value);
    std::move(publisher).Prop("Self", &TMany::Self);
    FInfo = std::unique_ptr<TTypeInfo>(new TTypeInfo(std::move(publisher)));
  }
  const TTypeInfo& GetClassInfo() const override { return *FInfo; }
  std::int32_t Value = 0;
  TPersistent* Self = this;

 private:
  std::unique_ptr<TTypeInfo> FInfo;
};

void PropertyByPath(benchmark::State& state) {
  const auto count = static_cast<int>(state.range(0));
  TMany many(count);
  std::vector<std::string> paths;
  for (int i = 0; i < count; ++i) paths.push_back("Self.Property" + std::to_string(i));
  for (auto _ : state) {
    for (const std::string& path : paths) {
      SetPropByText(many, path, "1");
      benchmark::DoNotOptimize(GetPropAsText(many, path));
    }
  }
  state.SetItemsProcessed(state.iterations() * count * 2);
}
BENCHMARK(PropertyByPath)->Arg(100)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

class TEntry : public TSpcItem {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TEntry>("TEntry", TSpcItem::ClassInfo())
                                      .Prop("Key", &TEntry::Key)
                                      .Prop("Active", &TEntry::Active);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  using TSpcItem::TSpcItem;
  std::string Key;
  bool Active = false;
};

class TEntries : public TFixedCollection {
 public:
  explicit TEntries(int count) : TFixedCollection(nullptr, TEntry::ClassInfo()) {
    for (int i = 0; i < count; ++i)
      static_cast<TEntry*>(TSpcCollection::Add())->Key = "Entry" + std::to_string(i);
  }
  std::string GetUpdateName() const override { return "Key"; }
};

void ReadFixedCollection(benchmark::State& state) {
  TEntries entries(static_cast<int>(state.range(0)));
  TMemoryStream stream;
  TFitWriter writer(stream);
  writer.WriteCollectionEx(entries);
  writer.FlushBuffer();
  for (auto _ : state) {
    stream.SetPosition(0);
    TFitReader(stream).ReadFixedCollection(entries, false);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(ReadFixedCollection)->Arg(100)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace wrenfold

BENCHMARK_MAIN();
