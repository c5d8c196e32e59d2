// Posted messages, timers, exceptions on their way to the application, and the desktop's services.
#include <gmock/gmock.h>

#include <QClipboard>
#include <QPushButton>

#include "platform/core/system/Exceptions.h"
#include "platform/widgets/Button.h"
#include "platform/widgets/Desktop.h"
#include "platform/widgets/Keyboard.h"
#include "platform/widgets/Menus.h"
#include "platform/widgets/Messages.h"
#include "platform/widgets/Support.h"
#include "platform/widgets/Text.h"
#include "platform/widgets/Timer.h"

namespace wrenfold::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Takes messages and does what the number says.
class TTaker : public TObject {
 public:
  std::vector<int> Taken;
  TMessageWindow* Window = nullptr;
  void WndProc(TMessage& message) {
    Taken.push_back(static_cast<int>(message.Msg));
    if (message.Msg == 0xC001) {
      Window->PostMessage(0xC002);
      Application().ProcessMessages();
    }
    if (message.Msg == 0xC00D) throw Exception("in the handler");
    if (message.Msg == 0xC00E) delete std::exchange(Window, nullptr);
    message.Result = message.WParam + message.LParam;
  }
};

class Messages : public testing::Test {
 protected:
  void SetUp() override {
    Taker.Window = new TMessageWindow(TWndMethod::Bind<&TTaker::WndProc>(&Taker));
  }
  void TearDown() override { delete Taker.Window; }
  TTaker Taker;
};

TEST_F(Messages, PostedOnesComeLaterInOrderAndSentOnesNow) {
  Taker.Window->PostMessage(1);
  Taker.Window->PostMessage(2);
  EXPECT_EQ(Taker.Window->SendMessage(3, 40, 2), 42);
  EXPECT_THAT(Taker.Taken, ElementsAre(3));
  Application().ProcessMessages();
  EXPECT_THAT(Taker.Taken, ElementsAre(3, 1, 2));
}

TEST_F(Messages, AHandlerThatProcessesMessagesGetsItsOwnPostedOnes) {
  Taker.Window->PostMessage(0xC001);
  Taker.Window->PostMessage(5);
  Application().ProcessMessages();
  EXPECT_THAT(Taker.Taken, ElementsAre(0xC001, 5, 0xC002));
}

TEST_F(Messages, OnesThatWaitVanishWithTheirWindow) {
  Taker.Window->PostMessage(0xC00E);
  Taker.Window->PostMessage(6);
  Application().ProcessMessages();
  EXPECT_THAT(Taker.Taken, ElementsAre(0xC00E));
}

TEST_F(Messages, AnExceptionOfAHandlerDoesNotStopTheNextMessage) {
  TAnswers shown;
  Taker.Window->PostMessage(0xC00D);
  Taker.Window->PostMessage(7);
  Application().ProcessMessages();
  EXPECT_THAT(Taker.Taken, ElementsAre(0xC00D, 7));
  EXPECT_THAT(shown.Texts, ElementsAre("in the handler"));
  EXPECT_THROW(Taker.Window->SendMessage(0xC00D), Exception) << "sent: the caller gets it";
}

// The application's handler, as a log would be.
class TCatcher : public TObject {
 public:
  std::vector<std::string> Caught;
  void Catch(TObject* sender, std::exception_ptr exception) {
    auto* component = dynamic_cast<TComponent*>(sender);
    Caught.push_back((component == nullptr ? "none" : component->Name()) + ": " +
                     ExceptionClassName(exception) + ": " + ExceptionMessage(exception));
    if (RaiseAgain) throw Exception("in the handler of exceptions");
  }
  bool RaiseAgain = false;
};

class Exceptions : public testing::Test {
 protected:
  void SetUp() override {
    Before = Application().OnException;
    Bind<&TCatcher::Catch>(Application().OnException, &Catcher);
    Button->SetName("Button");
    Bind<&TRecorder::Raise>(Button->OnClick, &Recorder);
  }
  void TearDown() override { Application().OnException = Before; }

  TExceptionEvent Before;
  TCatcher Catcher;
  TRecorder Recorder;
  TForm Form;
  TButton* Button = new TButton(&Form, &Form);
};

// A widget of the toolkit whose event raises.
class TRaisingWidget : public TControlOf<QWidget> {
 public:
  using TControlOf::TControlOf;
  void mousePressEvent(QMouseEvent*) override { throw EListError("in an event"); }
};

TEST_F(Exceptions, OfEveryKindOfHandlerReachTheApplicationWithTheirSender) {
  Activate(Form);
  QTest::mouseClick(Button, Qt::LeftButton);

  TTimer timer(&Form);
  timer.SetName("Timer");
  Bind<&TRecorder::Raise>(timer.OnTimer, &Recorder);
  timer.SetInterval(1);
  ASSERT_TRUE(QTest::qWaitFor([this] { return Catcher.Caught.size() >= 2; }));
  timer.SetEnabled(false);
  Catcher.Caught.resize(2);

  auto* raising = new TRaisingWidget(&Form, &Form);
  raising->SetName("Raising");
  QTest::mouseClick(raising, Qt::LeftButton);

  TPopupMenu menu(&Form);
  auto* item = new TMenuItem(&Form);
  item->SetName("Item");
  menu.Items()->Add(item);
  Bind<&TRecorder::Raise>(item->OnClick, &Recorder);
  item->ShownAction()->trigger();
  EXPECT_THAT(Catcher.Caught,
              ElementsAre("Button: runtime_error: raised", "Timer: runtime_error: raised",
                          "Raising: EListError: in an event", "Item: runtime_error: raised"));
}

TEST_F(Exceptions, ObjectsOfOtherClassesBypassTheHandlerAndAreShown) {
  TAnswers shown;
  Bind<&TRecorder::RaiseNumber>(Button->OnClick, &Recorder);
  Button->click();
  EXPECT_THAT(Catcher.Caught, IsEmpty());
  EXPECT_THAT(shown.Texts, ElementsAre("An object of class int was thrown"));
}

TEST_F(Exceptions, AnAbortIsSilentAndAHandlerThatRaisesIsNotAskedForThat) {
  TAnswers shown;
  try {
    throw EAbort("quiet");
  } catch (...) {
    Application().HandleException(nullptr);
  }
  EXPECT_THAT(Catcher.Caught, IsEmpty());
  Catcher.RaiseAgain = true;
  Button->click();
  Button->click();
  EXPECT_EQ(Catcher.Caught.size(), 2u);
  EXPECT_THAT(shown.Texts, IsEmpty());
}

TEST_F(Exceptions, TheHandlerBeforeCanBeCalledAndRestored) {
  TCatcher log;
  const TExceptionEvent before = Application().OnException;
  Bind<&TCatcher::Catch>(Application().OnException, &log);
  Button->click();
  EXPECT_THAT(Catcher.Caught, IsEmpty());
  Application().OnException = before;
  Button->click();
  EXPECT_EQ(log.Caught.size(), 1u);
  EXPECT_EQ(Catcher.Caught.size(), 1u);
}

TEST(Timers, RunOnlyWhileEnabledAndWithAnInterval) {
  TRecorder recorder;
  TTimer timer;
  timer.OnTimer = recorder.Event();
  timer.SetInterval(0);
  QTest::qWait(20);
  EXPECT_THAT(recorder.Calls, IsEmpty());
  timer.SetInterval(1);
  EXPECT_TRUE(QTest::qWaitFor([&recorder] { return !recorder.Calls.empty(); }));
  timer.SetEnabled(false);
  recorder.Calls.clear();
  QTest::qWait(20);
  EXPECT_THAT(recorder.Calls, IsEmpty());
}

TEST(Desktop, APostedClickPressesTheButtonUnlessItHasGone) {
  TRecorder recorder;
  TForm form;
  auto* button = new TButton(&form, &form);
  button->SetName("No");
  button->OnClick = recorder.Event();
  Activate(form);
  PostClick(button);
  EXPECT_THAT(recorder.Calls, IsEmpty());
  Application().ProcessMessages();
  EXPECT_THAT(recorder.Calls, ElementsAre("No"));
  PostClick(button);
  delete button;
  Application().ProcessMessages();
  EXPECT_EQ(recorder.Calls.size(), 1u);
}

TEST(Desktop, TextsAndLineEndsSurviveTheClipboard) {
  SetClipboardText("Wörter\r\nдва\r\n");
  EXPECT_EQ(QApplication::clipboard()->text(), ToQString("Wörter\nдва\n"));
  EXPECT_EQ(ClipboardText(), "Wörter\r\nдва\r\n");
}

TEST(Keyboard, TheLayoutBeforeCanBeBroughtBack) {
  struct TBackend : TKeyboardLayoutBackend {
    TKeyboardLayout Layout = 1049;
    TKeyboardLayout Current() override { return Layout; }
    bool Activate(TKeyboardLayout layout) override {
      if (layout != 1049 && layout != LayoutEnglishUS) return false;
      Layout = layout;
      return true;
    }
  } backend;
  TKeyboardLayoutBackend* before = SetKeyboardLayoutBackend(&backend);
  const TKeyboardLayout saved = ActivateKeyboardLayout(LayoutEnglishUS);
  EXPECT_EQ(saved, 1049u);
  EXPECT_EQ(ActivateKeyboardLayout(1), 0u) << "no such layout";
  ActivateKeyboardLayout(saved);
  EXPECT_EQ(GetKeyboardLayout(), 1049u);
  EXPECT_EQ(SetKeyboardLayoutBackend(before), &backend);
}

}  // namespace
}  // namespace wrenfold::test
