// The package module: what the environment finds in it, and the order in which its units start.
#include <array>
#include <exception>

#include "experts/rkCPUView.h"
#include "experts/rkFormView.h"
#include "experts/rkInspView.h"
#include "experts/rkUnitMng.h"
#include "locale/rkLocale.h"
#include "manager/rkErrorLog.h"
#include "manager/rkExpMng.h"
#include "spec/rkSpcMng.h"
#include "storage/rkPropTypes.h"

namespace wrenfold {

namespace {

void InitStorage() {
  TInitData initData;
  FillInitData(initData);
  SetInitData(std::move(initData));
  InitPropTypes();
}

void DoneStorage() {
  DonePropTypes();
  ClearInitData();
}

// Started from the first row on and ended from the last one back. The end of the manager's unit
// empties the registry, so experts only need to enter it.
struct TUnitRow {
  void (*Start)();
  void (*Finish)();
};
constexpr std::array Units{
    TUnitRow{nullptr, &FreeLocale},
    TUnitRow{&InitStorage, &DoneStorage},
    TUnitRow{[] { InitExpManager(); }, &DoneExpManager},
    TUnitRow{&RegisterFormView, nullptr},
    TUnitRow{&RegisterInspectorView, nullptr},
    TUnitRow{&RegisterCPUView, nullptr},
    TUnitRow{&RegisterUnitManager, nullptr},
};

std::size_t started = 0;

void FinishUnits() {
  while (started > 0)
    if (const auto finish = Units[--started].Finish) finish();
}

void StartUnits() {
  while (started < Units.size())
    if (const auto start = Units[started++].Start) start();
}

}  // namespace

}  // namespace wrenfold

// Called once by the environment that has loaded the package. A failure of the start is written to
// the log and passed on to the environment, which goes on without the suite.
extern "C" void Register() {
  using namespace wrenfold;
  if (started > 0) return;
  try {
    StartUnits();
    SetManagerGoneProc(&FinishUnits);
    RegisterExpManager();
  } catch (...) {
    ErrorLog().Enabled = !ErrorLog().FileName.empty();
    ErrorLog().Add(nullptr, std::current_exception());
    FinishUnits();
    throw;
  }
}
