// The tables of views, registers and flags, and how they become text.
#include "experts/rkCPUScan.h"

#include <fmt/format.h>

#include <optional>
#include <span>

#include "ide/rkCrtlUtils.h"
#include "locale/rkLocale.h"
#include "platform/core/text/Format.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Application.h"
#include "storage/rkD4Add.h"

namespace wrenfold {

namespace {

constexpr const char* CpuWindowName = "DisassemblyView";
// An instruction has fewer bytes on every processor whose lines an environment shows one by one.
constexpr int MaxSteps = 10;

struct TRegister {
  const char* Name;
  int Digits;
};
// A register has its wide name where the environment publishes that.
struct TRegisterRow {
  TRegister Narrow, Wide;
};
constexpr TRegisterRow RegisterRows[] = {
    {{"EAX", 8}, {"RAX", 16}}, {{"EBX", 8}, {"RBX", 16}}, {{"ECX", 8}, {"RCX", 16}},
    {{"EDX", 8}, {"RDX", 16}}, {{"ESI", 8}, {"RSI", 16}}, {{"EDI", 8}, {"RDI", 16}},
    {{"EBP", 8}, {"RBP", 16}}, {{"ESP", 8}, {"RSP", 16}}, {{"EIP", 8}, {"RIP", 16}},
    {{"EFL", 8}, {"RFL", 16}}, {{"CS", 4}, {"CS", 4}},    {{"DS", 4}, {"DS", 4}},
    {{"SS", 4}, {"SS", 4}},    {{"ES", 4}, {"ES", 4}},    {{"FS", 4}, {"FS", 4}},
    {{"GS", 4}, {"GS", 4}},
};

struct TFlagRow {
  const char* Name;
  const char* Short;
  const char* Long;
};
constexpr TFlagRow FlagRows[] = {
    {"Carry", "CF", "Carry Flag"},
    {"Parity", "PF", "Parity Flag"},
    {"AuxCarry", "AF", "Auxiliary Carry Flag"},
    {"Zero", "ZF", "Zero Flag"},
    {"Sign", "SF", "Sign Flag"},
    {"Trap", "TF", "Trap Flag"},
    {"Interrupt", "IF", "Interrupt Enable Flag"},
    {"Direction", "DF", "Direction Flag"},
    {"Overflow", "OF", "Overflow Flag"},
    {"IOPL", "IO", "I/O Privilege Level"},
    {"NestedTask", "NF", "Nested Task"},
    {"Resume", "RF", "Resume Flag"},
    {"V86Mode", "VM", "Virtual 8086 Mode"},
    {"Alignment", "AC", "Alignment Check"},
};

// Environments publish numbers in the width that their processors need.
std::int64_t NumberProp(const TPersistent& object, const char* name) {
  const TPropInfo* property = GetPropInfo(object, name);
  if (property == nullptr) return 0;
  return property->Kind() == tkInt64 ? GetInt64Prop(object, *property)
                                     : GetOrdProp(object, *property);
}

void SetNumberProp(TPersistent& object, const char* name, std::int64_t value) {
  const TPropInfo* property = GetPropInfo(object, name);
  if (property == nullptr) return;
  if (property->Kind() == tkInt64) SetInt64Prop(object, *property, value);
  else SetOrdProp(object, *property, static_cast<std::int32_t>(value));
}

// Puts the selection of the disassembly back, whatever happens meanwhile.
class TKeepSelection {
 public:
  explicit TKeepSelection(TComponent& pane)
      : FPane(pane), FAddress(NumberProp(pane, "SelectedAddress")) {}
  ~TKeepSelection() {
    try {
      SetNumberProp(FPane, "SelectedAddress", FAddress);
    } catch (...) {
      // The environment has moved it away: there is nothing to go back to.
    }
  }
  TKeepSelection(const TKeepSelection&) = delete;
  TKeepSelection& operator=(const TKeepSelection&) = delete;

 private:
  TComponent& FPane;
  std::int64_t FAddress;
};

// A pane does not show what is done in it to read it.
class TFrozen {
 public:
  explicit TFrozen(TComponent* pane) : FControl(dynamic_cast<TControl*>(pane)) {
    BeginUpdateControl(FControl);
  }
  ~TFrozen() {
    EndUpdateControl(FControl);
    RepaintControl(FControl, {rfUpdateNow});
  }
  TFrozen(const TFrozen&) = delete;
  TFrozen& operator=(const TFrozen&) = delete;

 private:
  TControl* FControl;
};

std::string LineText(const TComponent& pane) {
  std::string text;
  for (const char* part : {"SelectedLabel", "SelectedSource"}) {
    const std::string above = GetStrProp(pane, part);
    if (!above.empty()) text += above + "\r\n";
  }
  return text + GetStrProp(pane, "SelectedDisassembly");
}

// The text of the line behind the one whose text is given, or nothing when there is none.
std::optional<std::string> NextLine(TComponent& pane, const std::string& previous) {
  std::int64_t address = NumberProp(pane, "SelectedAddress");
  std::string text = LineText(pane);
  for (int step = 0; text == previous; ++step) {
    if (step == MaxSteps) return std::nullopt;
    SetNumberProp(pane, "SelectedAddress", ++address);
    text = LineText(pane);
  }
  return text;
}

void ReadDisassembly(TComponent& pane, TStrings& strings, int lineCount) {
  const TKeepSelection kept(pane);
  std::string previous;
  for (int i = 0; i < lineCount; ++i) {
    const std::optional<std::string> line = NextLine(pane, previous);
    if (!line) return;
    strings.Add(*line);
    previous = *line;
  }
}

void ReadRegisters(TComponent& pane, TStrings& strings, int) {
  const TPersistent* values = GetObjectProp(pane, "CurrentRegs");
  const bool wide = values != nullptr && GetPropInfo(*values, "RAX") != nullptr;
  for (const TRegisterRow& row : RegisterRows) {
    const auto& [name, digits] = wide ? row.Wide : row.Narrow;
    auto value = static_cast<std::uint64_t>(values != nullptr ? NumberProp(*values, name) : 0);
    if (digits < 16) value &= (std::uint64_t{1} << (4 * digits)) - 1;
    strings.Add(Format("%-4s", name) + IntToHex(value, digits));
  }
}

void ReadFlags(TComponent& pane, TStrings& strings, int) {
  const TPersistent* values = GetObjectProp(pane, "CurrentFlags");
  for (const TFlagRow& row : FlagRows) {
    const std::int64_t value = values != nullptr ? NumberProp(*values, row.Name) : 0;
    strings.Add(Format("%s %d [%s]", row.Short, value, row.Long));
  }
}

// By the view; that of all views has no pane.
struct TViewRow {
  int NameId;
  const char* Pane;
  void (*Read)(TComponent& pane, TStrings& strings, int lineCount);
};
constexpr TViewRow ViewRows[] = {
    {sAssemblerView, "DisassemblerView1", &ReadDisassembly},
    {sRegistersView, "RegisterView", &ReadRegisters},
    {sFlagsView, "FlagsView", &ReadFlags},
    {sAllViews, nullptr, nullptr},
};

}  // namespace

TForm* FindCpuWindow() {
  for (TForm* form : Screen().Forms())
    if (form->isVisible() && form->Name() == CpuWindowName) return form;
  return nullptr;
}

std::string ViewName(TCPUViewType view) {
  return LocaleStr(ViewRows[view].NameId);
}

void ReadCpuView(TForm& cpuWindow, TStrings& strings, TCPUViewType view, int lineCount) {
  const TViewRow& row = ViewRows[view];
  if (row.Pane != nullptr) {
    TComponent* pane = cpuWindow.FindComponent(row.Pane);
    const TFrozen frozen(pane);
    if (pane != nullptr) row.Read(*pane, strings, lineCount);
    return;
  }
  for (const TCPUViewType each : {rkDisasmView, rkRegView, rkFlagsView}) {
    strings.Add(fmt::format("[{}]", ViewName(each)));
    ReadCpuView(cpuWindow, strings, each, lineCount);
    strings.Add("");
  }
}

}  // namespace wrenfold
