#include "host/debug/CpuValues.h"

#include <utility>

namespace wrenfold {

namespace {

// One class for each table: its properties are the table's rows.
template <const TProcessor& Processor>
class TRegistersOf final : public TCpuValues {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Make(std::make_index_sequence<32>());
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

 private:
  template <std::size_t... Rows>
  static TTypeInfo Make(std::index_sequence<Rows...>) {
    auto publisher =
        Publish<TRegistersOf>(std::string("TRegisters_") + Processor.Name, TCpuValues::ClassInfo());
    (Add<Rows>(publisher), ...);
    return publisher;
  }
  template <std::size_t Row>
  static void Add(TPublisher<TRegistersOf>& publisher) {
    if (Row < Processor.Registers.size())
      std::move(publisher).Prop(Processor.Registers[Row].Published,
                                &TRegistersOf::template Value<Row>, nullptr);
  }
};

class TFlagValues final : public TCpuValues {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Make(std::make_index_sequence<32>());
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

 private:
  template <std::size_t... Rows>
  static TTypeInfo Make(std::index_sequence<Rows...>) {
    auto publisher = Publish<TFlagValues>("TFlagValues", TCpuValues::ClassInfo());
    (Add<Rows>(publisher), ...);
    return publisher;
  }
  template <std::size_t Row>
  static void Add(TPublisher<TFlagValues>& publisher) {
    if (Row < ProcessorX86.Flags.size())
      std::move(publisher).Prop(ProcessorX86.Flags[Row].Published, &TFlagValues::Value<Row>,
                                nullptr);
  }
};

}  // namespace

const TTypeInfo& TCpuValues::ClassInfo() {
  static const TTypeInfo info = Publish<TCpuValues>("TCpuValues", TPersistent::ClassInfo());
  return info;
}

std::unique_ptr<TCpuValues> PublishRegisters(const TSnapshot& snapshot) {
  std::unique_ptr<TCpuValues> values;
  if (snapshot.Processor == nullptr || snapshot.Processor->PointerSize == 4)
    values = std::make_unique<TRegistersOf<ProcessorX86>>();
  else values = std::make_unique<TRegistersOf<ProcessorX64>>();
  if (snapshot.Processor != nullptr)
    for (const TRegisterRow& row : snapshot.Processor->Registers)
      values->Values.push_back(static_cast<std::int64_t>(snapshot.Register(row.Name)));
  return values;
}

std::unique_ptr<TCpuValues> PublishFlags(const TSnapshot& snapshot) {
  auto values = std::make_unique<TFlagValues>();
  if (snapshot.Processor != nullptr)
    for (const TFlagRow& row : snapshot.Processor->Flags)
      values->Values.push_back(static_cast<std::int64_t>(FlagValue(row, snapshot.FlagBits())));
  return values;
}

}  // namespace wrenfold
