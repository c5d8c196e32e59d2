// Values of the debugger's library as Pascal sees them: the library itself reads them as C's.
#pragma once

#include <lldb/API/LLDB.h>

#include "debugger/Pascal.h"

namespace wrenfold {

bool IsPascal(lldb::SBFrame frame);

// The names that are known where the frame stands: its variables, those of the program, and the
// fields of "Self".
class TLldbPascalScope final : public IPascalScope {
 public:
  explicit TLldbPascalScope(lldb::SBFrame frame) : FFrame(frame) {}
  std::optional<TPascalValue> Find(const std::string& name) override;

 private:
  lldb::SBFrame FFrame;
};

TVariable ShowPascalVariable(lldb::SBValue value);

}  // namespace wrenfold
