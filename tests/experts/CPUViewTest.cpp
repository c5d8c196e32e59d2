// Tests the CPU window scan against a made-up CPU window: what is read, what is left as it was.
#include <gmock/gmock.h>

#include <QTemporaryDir>
#include <QTimer>
#include <QtTest/QTest>

#include "FakeEnvironment.h"
#include "experts/rkCPUForm.h"
#include "experts/rkExpStrCount.h"
#include "locale/rkLocale.h"
#include "manager/rkExpMng.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr int LineLength = 3;

// Code of instructions of three bytes; an address inside one shows the instruction that it is in.
class TFakeCode : public TControlOf<QWidget> {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info =
        Publish<TFakeCode>("TFakeCode", TControl::ClassInfo())
            .Prop("SelectedAddress", &TFakeCode::Address, &TFakeCode::SetAddress)
            .Prop("SelectedLabel", &TFakeCode::Label, nullptr)
            .Prop("SelectedSource", &TFakeCode::Source, nullptr)
            .Prop("SelectedDisassembly", &TFakeCode::Text, nullptr);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  using TControlOf::TControlOf;

  std::int32_t Address() const { return FAddress; }
  void SetAddress(std::int32_t address) {
    FAddress = address;
    if (!updatesEnabled()) ++ChangesWhileFrozen;
    else ++ChangesWhileShown;
  }
  std::string Label() const { return Line() == 2 ? "Sum:" : ""; }
  std::string Source() const { return Line() == 2 || Line() == 4 ? "s := 0;" : ""; }
  std::string Text() const {
    if (Line() == FailingLine) throw EDebugFailed("the program is gone");
    return IntToHex(static_cast<std::uint64_t>(Line() * LineLength), 8) + " nop";
  }
  struct EDebugFailed : Exception {
    using Exception::Exception;
  };
  int LastLine = 1000, FailingLine = -1;
  int ChangesWhileFrozen = 0, ChangesWhileShown = 0;

 private:
  int Line() const { return std::min(FAddress / LineLength, LastLine); }
  std::int32_t FAddress = 3;
};

// Registers or flags: some numbers, of 32 bits or of 64.
class TFakeRegs : public TPersistent {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TFakeRegs>("TFakeRegs", TPersistent::ClassInfo())
                                      .Prop("EAX", &TFakeRegs::First)
                                      .Prop("CS", &TFakeRegs::Second)
                                      .Prop("Zero", &TFakeRegs::Second);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  std::int32_t First = -2;
  std::int32_t Second = 1;
};
class TFakeWideRegs : public TPersistent {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TFakeWideRegs>("TFakeWideRegs", TPersistent::ClassInfo())
                                      .Prop("RAX", &TFakeWideRegs::Value)
                                      .Prop("CS", &TFakeWideRegs::Value);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  std::int64_t Value = -2;
};

class TFakeValues : public TControlOf<QWidget> {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TFakeValues>("TFakeValues", TControl::ClassInfo())
                                      .Prop("CurrentRegs", &TFakeValues::Values, nullptr)
                                      .Prop("CurrentFlags", &TFakeValues::Values, nullptr);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  using TControlOf::TControlOf;
  TPersistent* Values() const { return Shown; }
  TPersistent* Shown = nullptr;
};

class CPUView : public testing::Test {
 protected:
  CPUView() {
    InitExpManager(Directory.path().toStdString() + "/");
    RegisterCPUView();
    RegisterExpManager();
    for (int round = 0; round < 3; ++round) Application().ProcessMessages();
    Window = std::unique_ptr<TForm>(NewForm<TForm>());
    Window->SetName("DisassemblyView");
    Code = Pane<TFakeCode>("DisassemblerView1");
    Registers = Pane<TFakeValues>("RegisterView");
    Flags = Pane<TFakeValues>("FlagsView");
    Registers->Shown = &Narrow;
    Flags->Shown = &Narrow;
  }
  ~CPUView() override {
    Window.reset();
    TFakeEnvironment::Wizard = nullptr;
    DoneExpManager();
  }
  template <class Control>
  Control* Pane(const char* name) {
    auto* pane = new Control(Window.get(), Window.get());
    pane->SetName(name);
    return pane;
  }
  TCPUFormMng& Expert() {
    return static_cast<TCPUFormMng&>(*CurrentManager()->Experts().Get(0).Expert);
  }
  TCPUForm& Form() {
    Expert().ShowCPU(nullptr);
    for (TForm* form : Screen().Forms())
      if (auto* found = dynamic_cast<TCPUForm*>(form)) return *found;
    throw std::logic_error("no window");
  }
  std::vector<std::string> Read(TCPUViewType view, int count) {
    TStringList strings;
    Form().GetViewText(strings, view, count);
    std::vector<std::string> lines;
    for (int i = 0; i < strings.Count(); ++i) lines.push_back(strings[i]);
    return lines;
  }

  QTemporaryDir Directory;
  TFakeEnvironment Environment;
  TFakeRegs Narrow;
  TFakeWideRegs Wide;
  std::unique_ptr<TForm> Window;
  TFakeCode* Code;
  TFakeValues *Registers, *Flags;
};

TEST_F(CPUView, LinesAreTakenOnceEachAndTheSelectionPutBack) {
  Window->Show();
  EXPECT_THAT(Read(rkDisasmView, 4), ElementsAre("00000003 nop", "Sum:\r\ns := 0;\r\n00000006 nop",
                                                 "00000009 nop", "s := 0;\r\n0000000C nop"));
  EXPECT_EQ(Code->Address(), 3);
  EXPECT_EQ(Code->ChangesWhileShown, 0) << "the pane was not frozen";
  EXPECT_GT(Code->ChangesWhileFrozen, 0);
  EXPECT_TRUE(Code->updatesEnabled());
}

TEST_F(CPUView, CodeThatEndsEndsTheTextAfterTenSteps) {
  Window->Show();
  Code->LastLine = 2;
  EXPECT_THAT(Read(rkDisasmView, 10), SizeIs(2));
  EXPECT_EQ(Code->Address(), 3);
  EXPECT_EQ(Code->ChangesWhileFrozen, 3 + 10 + 1);
}

TEST_F(CPUView, APaneThatFailsGetsItsSelectionBack) {
  Window->Show();
  Code->FailingLine = 3;
  EXPECT_THROW(Read(rkAllViews, 10), TFakeCode::EDebugFailed);
  EXPECT_EQ(Code->Address(), 3);
  EXPECT_TRUE(Code->updatesEnabled());
}

TEST_F(CPUView, RegistersAndFlagsAreAllThereWhateverTheWindowPublishes) {
  Window->Show();
  const struct {
    TPersistent* Shown;
    const char *First, *Eleventh;
  } rows[] = {
      {&Narrow, "EAX FFFFFFFE", "CS  0001"},
      {&Wide, "RAX FFFFFFFFFFFFFFFE", "CS  FFFE"},
      {nullptr, "EAX 00000000", "CS  0000"},
  };
  for (const auto& row : rows) {
    Registers->Shown = row.Shown;
    const auto lines = Read(rkRegView, 3);
    ASSERT_THAT(lines, SizeIs(16));
    EXPECT_EQ(lines[0], row.First);
    EXPECT_EQ(lines[10], row.Eleventh);
  }
  const auto flags = Read(rkFlagsView, 3);
  ASSERT_THAT(flags, SizeIs(14));
  EXPECT_EQ(flags[0], "CF 0 [Carry Flag]");
  EXPECT_EQ(flags[3], "ZF 1 [Zero Flag]");
}

TEST_F(CPUView, AllViewsStandInSections) {
  Window->Show();
  const auto lines = Read(rkAllViews, 2);
  ASSERT_THAT(lines, SizeIs(4 + 18 + 16));
  EXPECT_EQ(lines[0], "[Assembler code]");
  EXPECT_EQ(lines[3], "");
  EXPECT_EQ(lines[4], "[Processor’s registers]");
  EXPECT_EQ(lines[21], "");
  EXPECT_EQ(lines[22], "[Processor’s flags]");
  EXPECT_EQ(lines[37], "");
}

TEST_F(CPUView, OnlyTheVisibleWindowOfThatVeryNameCounts) {
  TMenuItem& item = *Environment.TopItem()->Find(LocaleStr(sViewCPUData));
  const auto enabled = [&] {
    Expert().UpdateMenuState(&item);
    return item.Enabled();
  };
  EXPECT_FALSE(enabled());
  EXPECT_THAT(Read(rkAllViews, 2), IsEmpty());
  Window->Show();
  EXPECT_TRUE(enabled());
  Window->SetName("disassemblyview");
  EXPECT_FALSE(enabled());
}

TEST_F(CPUView, TheKeyOpensOneWindowAndGettingReplacesItsText) {
  Window->Show();
  TCPUForm& form = Form();
  EXPECT_EQ(&form, &Form());
  form.TextBox()->setPlainText("mine");
  form.FormActions()->FindAction("acGetData")->Execute();
  EXPECT_EQ(form.TextBox()->LineCount(), 10 + 1 + 2) << "label and source have lines of their own";
  EXPECT_FALSE(form.TextBox()->ReadOnly());
}

TEST_F(CPUView, MenusFollowTheSettingsAndACustomCountIsAnyPositiveNumber) {
  TCPUForm& form = Form();
  const auto checked = [](TPopupMenu& menu) {
    std::string captions;
    for (TMenuItem* item : menu.Items()->Items())
      if (item->Checked()) captions += item->Caption();
    return captions;
  };
  const std::vector<TMenuItem*>& counts = form.CountMenu()->Items()->Items();
  EXPECT_EQ(checked(*form.TargetMenu()), "Assembler code");
  EXPECT_EQ(checked(*form.CountMenu()), "10 strings");
  form.TargetMenu()->Items()->Items(2)->Click();
  EXPECT_EQ(Expert().ViewObject, rkFlagsView);
  EXPECT_EQ(checked(*form.TargetMenu()), "Processor’s flags");
  counts[2]->Click();
  EXPECT_EQ(Expert().ReadLineCount, 30);
  EXPECT_EQ(checked(*form.CountMenu()), "30 strings");
  const struct {
    int Entered;
    const char* Button;
    int Count;
    const char* Checked;
  } rows[] = {{17, "btOK", 17, "Custom..."},
              {5, "btCancel", 17, "Custom..."},
              {0, "btOK", 10, "10 strings"},
              {20, "btOK", 20, "20 strings"}};
  for (const auto& row : rows) {
    const int before = Expert().ReadLineCount;
    QTimer::singleShot(0, [&] {
      auto* dialog = dynamic_cast<TStrCountForm*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      EXPECT_EQ(dialog->Count(), before);
      dialog->SetCount(row.Entered);
      static_cast<TButton*>(dialog->FindComponent(row.Button))->Click();
    });
    counts.back()->Click();
    EXPECT_EQ(Expert().ReadLineCount, row.Count);
    EXPECT_EQ(counts.back()->Tag, row.Count);
    EXPECT_EQ(checked(*form.CountMenu()), row.Checked);
  }
}

TEST_F(CPUView, ValuesOfTheSettingsHaveTheirNames) {
  const std::string& names = SettingsRoot()->PropNames;
  EXPECT_THAT(names,
              testing::HasSubstr("[TCPUFormMng]\r\n"
                                 "ReadLineCount=Lines count##grabbed from CPU debug window\r\n"
                                 "ViewObject=Last selected##data type\r\n"
                                 "[TCPUViewType]\r\n"
                                 "rkDisasmView=Assembler code\r\nrkRegView=Processor registry\r\n"
                                 "rkFlagsView=Processor flags\r\nrkDumpView=Memory dump\r\n"
                                 "rkStackView=Program stack\r\nrkAllViews=All types"));
}

}  // namespace
}  // namespace wrenfold
