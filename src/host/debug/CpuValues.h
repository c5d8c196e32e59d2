// Registers and flags as published properties, which packages read by name.
#pragma once

#include <memory>

#include "debugger/Snapshot.h"
#include "platform/core/model/Persistent.h"

namespace wrenfold {

// A state of registers or flags; which properties it publishes depends on the processor. Never
// null; without a program all is 0.
class TCpuValues : public TPersistent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  // In the order of the processor's table.
  std::vector<std::int64_t> Values;

 protected:
  // The value of a row; 0 where there is none.
  template <std::size_t Row>
  std::int64_t Value() const {
    return Row < Values.size() ? Values[Row] : 0;
  }
};

std::unique_ptr<TCpuValues> PublishRegisters(const TSnapshot& snapshot);
std::unique_ptr<TCpuValues> PublishFlags(const TSnapshot& snapshot);

}  // namespace wrenfold
