// Where the key of an action works, and who gets a key first.
#include <gmock/gmock.h>

#include <QLineEdit>

#include "platform/widgets/Actions.h"
#include "platform/widgets/Menus.h"
#include "platform/widgets/ShortCuts.h"
#include "platform/widgets/Support.h"

namespace wrenfold::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A form with an action list and an edit.
struct TCommandForm {
  TForm Form;
  TActionList* List = new TActionList(&Form);
  QLineEdit* Edit = new QLineEdit(&Form);

  TAction* Add(const std::string& name, const std::string& key, TRecorder& recorder) {
    auto* action = new TAction(&Form);
    action->SetName(name);
    action->SetShortCut(TextToShortCut(key));
    action->OnExecute = recorder.Event();
    action->SetActionList(List);
    return action;
  }
};

class Dispatch : public testing::Test {
 protected:
  void SetUp() override {
    Application().SetMainForm(&Main.Form);
    Main.Add("Environment", "Ctrl+Shift+Q", Recorder);
    Main.Add("MainSave", "Ctrl+S", Recorder);
    Tool.Add("ToolSave", "Ctrl+S", Recorder);
    Tool.Add("Delete", "Del", Recorder);
    Tool.Add("Filter", "Alt+F", Recorder);
  }
  void TearDown() override { Application().SetMainForm(nullptr); }
  void Press(TCommandForm& form, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
             QWidget* receiver = nullptr) {
    Activate(form.Form);
    QTest::keyClick(receiver == nullptr ? &form.Form : receiver, static_cast<Qt::Key>(key),
                    modifiers);
  }

  TRecorder Recorder;
  TCommandForm Main, Tool;
};

constexpr auto CtrlShift = Qt::ControlModifier | Qt::ShiftModifier;

TEST_F(Dispatch, TheEnvironmentsKeysWorkInEveryFormAndAFormsOwnGoFirst) {
  Press(Main, Qt::Key_Q, CtrlShift);
  Press(Tool, Qt::Key_Q, CtrlShift);
  Press(Tool, Qt::Key_S, Qt::ControlModifier);
  Press(Main, Qt::Key_S, Qt::ControlModifier);
  Press(Main, Qt::Key_Delete);
  EXPECT_THAT(Recorder.Calls, ElementsAre("Environment", "Environment", "ToolSave", "MainSave"));
}

TEST_F(Dispatch, ADisabledMainFormHoldsItsKeysBack) {
  Main.Form.SetEnabled(false);
  Press(Tool, Qt::Key_Q, CtrlShift);
  EXPECT_THAT(Recorder.Calls, IsEmpty());
  Press(Tool, Qt::Key_S, Qt::ControlModifier);
  EXPECT_THAT(Recorder.Calls, ElementsAre("ToolSave"));
  Main.Form.SetEnabled(true);
}

TEST_F(Dispatch, AModalFormHoldsTheEnvironmentsKeysBack) {
  Tool.Form.setWindowModality(Qt::ApplicationModal);
  Press(Tool, Qt::Key_Q, CtrlShift);
  Press(Tool, Qt::Key_S, Qt::ControlModifier);
  EXPECT_THAT(Recorder.Calls, ElementsAre("ToolSave"));
}

TEST_F(Dispatch, AFormDockedInTheMainFormHasItsOwnKeysAndTheEnvironments) {
  TForm docked(nullptr, &Main.Form);
  auto* edit = new QLineEdit(&docked);
  TActionList list(&docked);
  TAction save(&docked);
  save.SetName("DockedSave");
  save.SetShortCut(TextToShortCut("Ctrl+S"));
  save.OnExecute = Recorder.Event();
  save.SetActionList(&list);
  Press(Main, Qt::Key_S, Qt::ControlModifier, edit);
  Press(Main, Qt::Key_Q, CtrlShift, edit);
  save.SetEnabled(false);
  Press(Main, Qt::Key_S, Qt::ControlModifier, edit);
  EXPECT_THAT(Recorder.Calls, ElementsAre("DockedSave", "Environment", "MainSave"));
}

TEST_F(Dispatch, APlainKeyIsLeftToTheEditThatHasTheFocus) {
  Tool.Edit->setText("ab");
  Tool.Edit->setCursorPosition(0);
  Press(Tool, Qt::Key_Delete, Qt::NoModifier, Tool.Edit);
  EXPECT_EQ(Tool.Edit->text(), "b");
  EXPECT_THAT(Recorder.Calls, IsEmpty());
  Press(Tool, Qt::Key_Delete);
  EXPECT_THAT(Recorder.Calls, ElementsAre("Delete"));
}

TEST_F(Dispatch, AnActionsKeyGoesBeforeTheEditsAndBeforeAccelerators) {
  Tool.Add("All", "Ctrl+A", Recorder);
  TMainMenu menu(&Tool.Form);
  auto* file = new TMenuItem;
  file->SetCaption("&File");
  menu.Items()->Add(file);
  menu.Bar()->setParent(&Tool.Form);
  Press(Tool, Qt::Key_A, Qt::ControlModifier, Tool.Edit);
  Press(Tool, Qt::Key_F, Qt::AltModifier, Tool.Edit);
  EXPECT_THAT(Recorder.Calls, ElementsAre("All", "Filter"));
}

TEST_F(Dispatch, AFieldKeepsTheKeysThatEditFromTheEnvironmentAlone) {
  Main.Add("EnvironmentAll", "Ctrl+A", Recorder);
  Tool.Edit->setText("ab");
  Press(Tool, Qt::Key_A, Qt::ControlModifier, Tool.Edit);
  EXPECT_THAT(Recorder.Calls, IsEmpty());
  EXPECT_EQ(Tool.Edit->selectedText(), "ab");
  Press(Tool, Qt::Key_A, Qt::ControlModifier);
  EXPECT_THAT(Recorder.Calls, ElementsAre("EnvironmentAll"));
}

// An edit that wants one shortcut for itself.
class TClaimingEdit : public TControlOf<QLineEdit> {
 public:
  using TControlOf::TControlOf;
  bool ClaimsKey(const QKeyEvent& key) const override {
    return ShortCutOf(key) == TextToShortCut("Ctrl+S");
  }
};

TEST_F(Dispatch, AKeyThatTheFocusedControlClaimsRunsNoAction) {
  auto* edit = new TClaimingEdit(&Tool.Form, &Tool.Form);
  Press(Tool, Qt::Key_S, Qt::ControlModifier, edit);
  EXPECT_THAT(Recorder.Calls, IsEmpty());
  Press(Tool, Qt::Key_Q, CtrlShift, edit);
  EXPECT_THAT(Recorder.Calls, ElementsAre("Environment"));
}

TEST_F(Dispatch, AnActionThatIsOffAfterItsUpdateLetsTheNextOneHaveTheKey) {
  struct TOff : TObject {
    void Update(TObject* sender) { dynamic_cast<TAction*>(sender)->SetEnabled(false); }
  } off;
  TAction* first = Tool.List->FindAction("ToolSave");
  Bind<&TOff::Update>(first->OnUpdate, &off);
  Press(Tool, Qt::Key_S, Qt::ControlModifier);
  EXPECT_THAT(Recorder.Calls, ElementsAre("MainSave"));
}

TEST_F(Dispatch, MenuItemsWithoutActionAndListsWithoutFormTakeKeysToo) {
  TMainMenu menu(&Main.Form);
  auto* item = new TMenuItem;
  item->SetName("Item");
  item->SetShortCut(TextToShortCut("F9"));
  item->OnClick = Recorder.Event();
  menu.Items()->Add(item);
  TActionList everywhere;
  TAction action;
  action.SetName("Everywhere");
  action.SetShortCut(TextToShortCut("F8"));
  action.OnExecute = Recorder.Event();
  action.SetActionList(&everywhere);
  Press(Tool, Qt::Key_F9);
  Press(Tool, Qt::Key_F8);
  EXPECT_THAT(Recorder.Calls, ElementsAre("Item", "Everywhere"));
}

TEST_F(Dispatch, AHandlerMayDestroyTheFormThatTheKeyCameTo) {
  auto* doomed = new TForm;
  struct TEnd : TObject {
    TForm* Form = nullptr;
    void Execute(TObject*) { Form->Release(); }
  } end;
  end.Form = doomed;
  auto* list = new TActionList(doomed);
  auto* action = new TAction(doomed);
  action->SetShortCut(TextToShortCut("Esc"));
  Bind<&TEnd::Execute>(action->OnExecute, &end);
  action->SetActionList(list);
  QPointer<TForm> alive(doomed);
  Activate(*doomed);
  QTest::keyClick(doomed, Qt::Key_Escape);
  Application().ProcessMessages();
  EXPECT_EQ(alive, nullptr);
}

TEST_F(Dispatch, KeyPreviewSeesAKeyBeforeTheControlAndMayTakeIt) {
  struct TTaker : TObject {
    int Seen = 0;
    void Key(TObject*, QKeyEvent& key) {
      ++Seen;
      if (key.key() == Qt::Key_X) key.accept();
    }
  } taker;
  Bind<&TTaker::Key>(Tool.Form.OnKeyDown, &taker);
  Press(Tool, Qt::Key_X, Qt::NoModifier, Tool.Edit);
  Tool.Form.KeyPreview = true;
  Press(Tool, Qt::Key_X, Qt::NoModifier, Tool.Edit);
  Press(Tool, Qt::Key_Y, Qt::NoModifier, Tool.Edit);
  EXPECT_EQ(Tool.Edit->text(), "xy");
  EXPECT_EQ(taker.Seen, 2);
}

TEST_F(Dispatch, ActionsOfVisibleFormsUpdateThemselvesWhenIdle) {
  TRecorder updates;
  Tool.List->FindAction("ToolSave")->OnUpdate = updates.Event();
  Tool.Form.Hide();
  Application().Idle();
  EXPECT_THAT(updates.Calls, IsEmpty());
  Tool.Form.Show();
  Application().Idle();
  EXPECT_THAT(updates.Calls, ElementsAre("ToolSave"));
}

}  // namespace
}  // namespace wrenfold::test
