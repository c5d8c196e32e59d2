#include "editor/rkRows.h"

namespace wrenfold {

TRowRules BasicRowRules() {
  return {};
}

TRowRules ProRowRules() {
  return {};
}

}  // namespace wrenfold
