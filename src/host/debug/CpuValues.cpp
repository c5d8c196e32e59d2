#include "host/debug/CpuValues.h"

#include <span>
#include <utility>

namespace wrenfold {

namespace {

// One class for each table: its properties are the table's rows.
struct TRegisters64 {
  static constexpr const char* Name = "TRegisters64";
  static std::span<const TRegisterRow> Rows() { return ProcessorX64.Registers; }
};
struct TRegisters32 {
  static constexpr const char* Name = "TRegisters32";
  static std::span<const TRegisterRow> Rows() { return ProcessorX86.Registers; }
};
struct TFlags {
  static constexpr const char* Name = "TFlags";
  static std::span<const TFlagRow> Rows() { return ProcessorX86.Flags; }
};

template <class Table>
class TValuesOf final : public TCpuValues {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Make(std::make_index_sequence<32>());
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

 private:
  template <std::size_t... Rows>
  static TTypeInfo Make(std::index_sequence<Rows...>) {
    auto publisher = Publish<TValuesOf>(Table::Name, TCpuValues::ClassInfo());
    (Add<Rows>(publisher), ...);
    return publisher;
  }
  template <std::size_t Row>
  static void Add(TPublisher<TValuesOf>& publisher) {
    if (Row < Table::Rows().size())
      std::move(publisher).Prop(Table::Rows()[Row].Published, &TValuesOf::template Value<Row>,
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
    values = std::make_unique<TValuesOf<TRegisters32>>();
  else values = std::make_unique<TValuesOf<TRegisters64>>();
  if (snapshot.Processor != nullptr)
    for (const TRegisterRow& row : snapshot.Processor->Registers)
      values->Values.push_back(static_cast<std::int64_t>(snapshot.Register(row.Name)));
  return values;
}

std::unique_ptr<TCpuValues> PublishFlags(const TSnapshot& snapshot) {
  auto values = std::make_unique<TValuesOf<TFlags>>();
  if (snapshot.Processor != nullptr)
    for (const TFlagRow& row : snapshot.Processor->Flags)
      values->Values.push_back(static_cast<std::int64_t>(FlagValue(row, snapshot.FlagBits())));
  return values;
}

}  // namespace wrenfold
