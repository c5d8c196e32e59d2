// Forms: lifetime, closing, modal runs, enabled states, placement, the list of the screen.
#include <gmock/gmock.h>

#include <QAccessible>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDockWidget>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>
#include <QWindow>

#include "platform/core/system/Exceptions.h"
#include "platform/widgets/Button.h"
#include "platform/widgets/MessageDialogs.h"
#include "platform/widgets/Support.h"

namespace wrenfold::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

// Counts the controls that live.
class TCounted : public TControlOf<QWidget> {
 public:
  explicit TCounted(TComponent* owner, QWidget* parent) : TControlOf(owner, parent) { ++Living; }
  ~TCounted() override { --Living; }
  static inline int Living = 0;
};

TEST(Controls, OwnerAndParentDestroyAControlOnce) {
  const struct {
    const char* Name;
    void (*Destroy)(TComponent* owner, TForm* parent, TCounted* control);
  } rows[] = {
      {"owner first",
       [](TComponent* owner, TForm* parent, TCounted*) {
         delete owner;
         delete parent;
       }},
      {"parent first",
       [](TComponent* owner, TForm* parent, TCounted*) {
         delete parent;
         delete owner;
       }},
      {"control first",
       [](TComponent* owner, TForm* parent, TCounted* control) {
         delete control;
         delete owner;
         delete parent;
       }},
      {"toolkit's deferred deletion",
       [](TComponent* owner, TForm* parent, TCounted* control) {
         control->deleteLater();
         Application().ProcessMessages();
         EXPECT_THAT(owner->Components(), IsEmpty());
         delete parent;
         delete owner;
       }},
  };
  for (const auto& row : rows) {
    auto* owner = new TComponent;
    auto* parent = new TForm;
    auto* control = new TCounted(owner, parent);
    new TCounted(owner, control);
    EXPECT_EQ(TCounted::Living, 2) << row.Name;
    row.Destroy(owner, parent, control);
    EXPECT_EQ(TCounted::Living, 0) << row.Name;
  }
}

TEST(Controls, NamesAndPropertiesAreTheWidgets) {
  TForm form;
  auto* control = new TControlOf<QLineEdit>(&form, &form);
  control->SetName("Filter");
  EXPECT_EQ(control->objectName(), "Filter");
  control->setObjectName("Renamed");
  EXPECT_EQ(form.FindComponent("renamed"), control);
  EXPECT_THROW((new TControlOf<QLineEdit>(&form, &form))->SetName("Renamed"), EComponentError);

  TControl::ClassInfo().FindProperty("Enabled")->Access->SetOrd(*control, false);
  EXPECT_FALSE(control->isEnabled());
  control->Font()->SetStyle({fsBold});
  EXPECT_TRUE(control->font().bold());
  control->SetColor(0x0000FF);
  EXPECT_EQ(control->palette().color(control->backgroundRole()), QColor(255, 0, 0));
  control->SetColor(clDefault);
  EXPECT_EQ(control->palette().color(QPalette::Active, control->backgroundRole()),
            QApplication::palette().color(QPalette::Active, control->backgroundRole()));
}

TEST(Screens, ListFormsInTheOrderOfTheirMakingAndForgetThem) {
  const std::vector<TForm*> before = Screen().Forms();
  TForm host;
  auto* docked = new TForm(nullptr, &host);
  docked->SetName("EditWindow_0");
  EXPECT_EQ(Screen().FormCount(), static_cast<int>(before.size()) + 2);
  EXPECT_EQ(Screen().FindForm("editwindow_0"), docked);
  delete docked;
  EXPECT_FALSE(Screen().HasForm(docked));
  EXPECT_THROW(Screen().Forms(1000), EListError);
}

// A main form as an environment builds it: an inner window with bars and a docked form.
struct TMainWindow {
  TForm Form;
  QMainWindow* Inner = new QMainWindow(&Form);
  QToolBar* Bar = Inner->addToolBar("Bar");
  TForm* Editor = new TForm(nullptr, nullptr);
  TForm* Inspector = new TForm(nullptr, nullptr);
  QDockWidget* Dock = new QDockWidget(Inner);
  QLineEdit* Text = new QLineEdit(Editor);

  TMainWindow() {
    Inner->setWindowFlags(Qt::Widget);
    auto* layout = new QVBoxLayout(&Form);
    layout->addWidget(Inner);
    Inner->setCentralWidget(Editor);
    Dock->setWidget(Inspector);
    Inner->addDockWidget(Qt::LeftDockWidgetArea, Dock);
    Inner->statusBar();
    auto* box = new QVBoxLayout(Editor);
    box->addWidget(Text);
  }
};

// Counts what reaches the docked text and the menu of the main form.
struct THeldWindow : TMainWindow {
  int Triggered = 0;
  THeldWindow() {
    auto* menu = new QMenuBar(&Form);
    QObject::connect(menu->addMenu("&File")->addAction("Open", QKeySequence("Ctrl+O")),
                     &QAction::triggered, &Form, [this] { ++Triggered; });
    Bar->addAction("Press", [this] { ++Triggered; });
    Form.layout()->setMenuBar(menu);
    Form.resize(400, 300);
    Activate(Form);
    Text->setFocus();
  }
  void Click() { QTest::mouseClick(Bar->widgetForAction(Bar->actions()[0]), Qt::LeftButton); }
  void Type() { QTest::keyClick(Text, Qt::Key_A); }
};

TEST(HeldForms, TakeNoInputOfAnyKindButWhatCodeDoes) {
  THeldWindow window;
  window.Click();
  window.Type();
  ASSERT_EQ(window.Triggered, 1);
  ASSERT_EQ(window.Text->text(), "a");
  window.Form.SetEnabled(false);
  window.Click();
  window.Type();
  EXPECT_EQ(window.Text->text(), "aa") << "a docked form has a state of its own";
  window.Editor->SetEnabled(false);
  window.Type();
  QTest::keyClick(window.Form.windowHandle(), Qt::Key_O, Qt::ControlModifier);
  QTest::keyClick(window.Form.windowHandle(), Qt::Key_F, Qt::AltModifier);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr) << "a menu opened by its letter";
  QContextMenuEvent menu(QContextMenuEvent::Mouse, QPoint(2, 2), QPoint(2, 2));
  QApplication::sendEvent(window.Text, &menu);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  QMimeData dropped;
  dropped.setText("dropped");
  QDropEvent drop(QPointF(2, 2), Qt::CopyAction, &dropped, Qt::LeftButton, {});
  QApplication::sendEvent(window.Text, &drop);
  EXPECT_FALSE(drop.isAccepted());
  EXPECT_EQ(window.Text->text(), "aa");
  EXPECT_EQ(window.Triggered, 1);
  window.Bar->actions()[0]->trigger();
  window.Text->setText("by code");
  EXPECT_EQ(window.Triggered, 2);
  window.Form.SetEnabled(true);
  window.Click();
  EXPECT_EQ(window.Triggered, 3);
}

// An event that a docked form does not want goes on to what the form stands in.
TEST(HeldForms, ADockedFormThatTakesPartPassesNothingOnToTheHeldOne) {
  TMainWindow window;
  struct TMouse : QObject {
    int Seen = 0;
    bool eventFilter(QObject*, QEvent* event) override {
      if (event->type() == QEvent::MouseButtonPress) ++Seen;
      return false;
    }
  } mouse;
  auto* place = new QWidget(&window.Form);
  TForm inside(nullptr, place);
  place->installEventFilter(&mouse);
  Activate(window.Form);
  QTest::mouseClick(&inside, Qt::LeftButton);
  EXPECT_EQ(mouse.Seen, 1);
  window.Form.SetEnabled(false);
  QTest::mouseClick(&inside, Qt::LeftButton);
  EXPECT_EQ(mouse.Seen, 1);
}

TEST(HeldForms, LookAsTheyDidAndTellAssistivePrograms) {
  TMainWindow window;
  Activate(window.Form);
  const QImage before = window.Form.grab().toImage();
  window.Form.SetEnabled(false);
  window.Editor->SetEnabled(false);
  EXPECT_EQ(window.Form.grab().toImage(), before);
  EXPECT_TRUE(QAccessible::queryAccessibleInterface(window.Editor)->state().disabled);
  window.Editor->SetEnabled(true);
  EXPECT_FALSE(QAccessible::queryAccessibleInterface(window.Editor)->state().disabled);
}

TEST(Accessible, AComboBoxIsToldByItsNameAndNotByWhatItShows) {
  QComboBox named;
  named.setAccessibleName("Kind");
  named.setEditable(true);
  named.addItems({"first", "second"});
  QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&named);
  EXPECT_EQ(told->role(), QAccessible::ComboBox);
  EXPECT_EQ(told->text(QAccessible::Name), "Kind");
  named.setCurrentIndex(1);
  EXPECT_EQ(told->text(QAccessible::Value), "second");
  EXPECT_EQ(told->indexOfChild(QAccessible::queryAccessibleInterface(named.lineEdit())), 0);
}

TEST(HeldForms, CannotBeEnabledByWhatStandsInThem) {
  TMainWindow window;
  window.Editor->SetEnabled(false);
  window.Text->setEnabled(false);
  window.Text->setEnabled(true);
  Activate(window.Form);
  QTest::keyClick(window.Text, Qt::Key_A);
  EXPECT_EQ(window.Text->text(), "");
}

TEST(HeldForms, TakeNoKeysBeforeTheirControls) {
  TForm form;
  form.KeyPreview = true;
  struct TKeys : TObject {
    int Count = 0;
    void Key(TObject*, QKeyEvent&) { ++Count; }
  } keys;
  Bind<&TKeys::Key>(form.OnKeyDown, &keys);
  Activate(form);
  QTest::keyClick(&form, Qt::Key_A);
  form.SetEnabled(false);
  QTest::keyClick(&form, Qt::Key_A);
  EXPECT_EQ(keys.Count, 1);
}

class TCloser : public TObject {
 public:
  TCloseAction Action = caHide;
  bool Allowed = true;
  std::vector<std::string> Calls;
  void Query(TObject*, bool& canClose) {
    Calls.push_back("query");
    canClose = Allowed;
  }
  void Close(TObject*, TCloseAction& action) {
    Calls.push_back("close");
    action = Action;
  }
  void Destroyed(TObject*) { Calls.push_back("destroy"); }
  void Attach(TForm& form) {
    Bind<&TCloser::Query>(form.OnCloseQuery, this);
    Bind<&TCloser::Close>(form.OnClose, this);
    Bind<&TCloser::Destroyed>(form.OnDestroy, this);
  }
};

TEST(Forms, ClosingAsksAndDoesWhatOnCloseSays) {
  const struct {
    const char* Name;
    bool Allowed;
    TCloseAction Action;
    bool Closed, Living;
    std::vector<std::string> Calls;
  } rows[] = {
      {"refused by the query", false, caFree, false, true, {"query"}},
      {"kept by OnClose", true, caNone, false, true, {"query", "close"}},
      {"hidden", true, caHide, true, true, {"query", "close"}},
      {"freed", true, caFree, true, false, {"query", "close", "destroy"}},
  };
  for (const auto& row : rows) {
    TCloser closer;
    closer.Allowed = row.Allowed;
    closer.Action = row.Action;
    QPointer<TForm> form(new TForm);
    closer.Attach(*form);
    form->Show();
    EXPECT_EQ(form->Close(), row.Closed) << row.Name;
    ASSERT_NE(form, nullptr) << row.Name << ": the form goes only after the event";
    EXPECT_EQ(form->isVisible(), !row.Closed) << row.Name;
    Application().ProcessMessages();
    EXPECT_EQ(form != nullptr, row.Living) << row.Name;
    EXPECT_EQ(closer.Calls, row.Calls) << row.Name;
    if (form != nullptr) form->OnDestroy = {};
    delete form;
  }
}

// Closes its form and then works on, letting messages be processed, as a handler of the form.
class TSelfReleasing : public TForm {
 public:
  bool Alive = true;
  ~TSelfReleasing() override { Ended = true; }
  void Click(TObject*) {
    Release();
    Application().ProcessMessages();
    Alive = !Ended;
    Result = Alive;
  }
  static inline bool Ended = false, Result = false;
};

TEST(Forms, AReleasedFormLivesUntilItsHandlerReturns) {
  auto* form = new TSelfReleasing;
  auto* button = new TButton(form, form);
  Bind<&TSelfReleasing::Click>(button->OnClick, form);
  Activate(*form);
  QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_TRUE(TSelfReleasing::Result);
  Application().ProcessMessages();
  EXPECT_TRUE(TSelfReleasing::Ended);
}

TEST(Forms, EventsComeOnceAndInOrder) {
  TRecorder recorder;
  struct THandlers : TObject {
    std::vector<std::string> Calls;
    void Create(TObject*) { Calls.push_back("create"); }
    void Show(TObject*) { Calls.push_back("show"); }
    void Hide(TObject*) { Calls.push_back("hide"); }
    void Destroy(TObject* sender) {
      Calls.push_back("destroy with " +
                      std::to_string(dynamic_cast<TForm*>(sender)->Components().size()));
    }
  } handlers;
  auto form = std::make_unique<TForm>();
  Bind<&THandlers::Create>(form->OnCreate, &handlers);
  Bind<&THandlers::Show>(form->OnShow, &handlers);
  Bind<&THandlers::Hide>(form->OnHide, &handlers);
  Bind<&THandlers::Destroy>(form->OnDestroy, &handlers);
  new TButton(form.get(), form.get());
  form->AfterConstruction();
  form->AfterConstruction();
  form->Show();
  form->Show();
  form->Hide();
  form.reset();
  EXPECT_THAT(handlers.Calls, ElementsAre("create", "show", "hide", "destroy with 1"));
}

TEST(Forms, PlacementComesBackAndStaysOnTheScreen) {
  TForm form;
  form.setGeometry(40, 50, 210, 320);
  const TWindowPlacement placement = form.GetPlacement();
  EXPECT_EQ(placement.Right - placement.Left, 210);
  TForm other;
  other.SetPlacement(placement);
  other.Show();
  EXPECT_EQ(other.geometry(), QRect(40, 50, 210, 320));
  EXPECT_EQ(other.GetPlacement(), placement);

  const struct {
    const char* Name;
    TWindowPlacement Placement;
  } hostile[] = {
      {"far away", {0, 1, -1, -1, -1, -1, 90000, 90000, 90200, 90300}},
      {"above the screen", {0, 1, -1, -1, -1, -1, 10, -5000, 300, -4800}},
      {"larger than all", {0, 1, -1, -1, -1, -1, 0, 0, 100000, 100000}},
      {"inside out", {0, 1, -1, -1, -1, -1, 300, 300, 10, 10}},
      {"numbers at their ends", {0, 1, -1, -1, -1, -1, INT_MIN, INT_MIN, INT_MAX, INT_MAX}},
  };
  const QRect room = QGuiApplication::primaryScreen()->geometry();
  for (const auto& row : hostile) {
    other.SetPlacement(row.Placement);
    EXPECT_TRUE(room.contains(other.geometry().topLeft())) << row.Name;
  }
}

TEST(Forms, AMaximisedWindowKeepsItsNormalRectangle) {
  TForm form;
  TWindowPlacement placement{0, SW_SHOWMAXIMIZED, -1, -1, -1, -1, 60, 70, 360, 270};
  form.SetPlacement(placement);
  form.Show();
  EXPECT_TRUE(form.isMaximized());
  EXPECT_EQ(form.GetPlacement().ShowCmd, SW_SHOWMAXIMIZED);
}

TEST(Forms, TheActiveFormIsTheInnermostWithTheFocus) {
  TRecorder changes;
  TMainWindow window;
  window.Editor->SetName("Editor");
  Activate(window.Form);
  window.Text->setFocus();
  EXPECT_EQ(Screen().ActiveForm(), window.Editor);
  const TNotifyEvent before = std::exchange(Screen().OnActiveFormChange, changes.Event());
  {
    TForm tool;
    Activate(tool);
    EXPECT_EQ(Screen().ActiveForm(), &tool);
  }
  EXPECT_EQ(Screen().ActiveForm(), nullptr) << "a form that is gone is not active";
  Activate(window.Form);
  EXPECT_EQ(Screen().ActiveForm(), window.Editor);
  EXPECT_EQ(changes.Calls.size(), 2u);
  Screen().OnActiveFormChange = before;
}

// Does something while a modal form runs.
class TWhileModal : public TObject {
 public:
  template <class Call>
  explicit TWhileModal(Call call) {
    QTimer::singleShot(0, [call] { Guarded(nullptr, call); });
  }
};

TForm* ModalForm() {
  return dynamic_cast<TForm*>(QApplication::activeModalWidget());
}

TEST(Modal, EveryWayOutGivesItsResult) {
  const struct {
    const char* Name;
    void (*Leave)();
    TModalResult Result;
  } rows[] = {
      {"button", [] { dynamic_cast<TButton*>(ModalForm()->FindComponent("No"))->click(); }, mrNo},
      {"enter on the default button",
       [] { QTest::keyClick(ModalForm()->focusWidget(), Qt::Key_Return); }, mrYes},
      {"escape", [] { QTest::keyClick(ModalForm()->focusWidget(), Qt::Key_Escape); }, mrCancel},
      {"closed", [] { ModalForm()->close(); }, mrCancel},
      {"hidden", [] { ModalForm()->Hide(); }, mrCancel},
      {"destroyed", [] { delete ModalForm(); }, mrNone},
  };
  for (const auto& row : rows) {
    QPointer<TForm> form(CreateMessageDialog("Save?", mtConfirmation, {mbYes, mbNo, mbCancel}));
    EXPECT_EQ(form->Caption(), "Confirm");
    const TWhileModal during(row.Leave);
    EXPECT_EQ(form->ShowModal(), row.Result) << row.Name;
    EXPECT_FALSE(form != nullptr && form->isVisible()) << row.Name;
    delete form;
  }
}

TEST(Modal, ARefusedCloseRunsOn) {
  TCloser closer;
  closer.Allowed = false;
  TForm form;
  closer.Attach(form);
  const TWhileModal refuse([&form] {
    form.SetModalResult(mrOk);
    EXPECT_TRUE(form.IsModal());
    EXPECT_EQ(form.ModalResult(), mrNone);
  });
  QTimer::singleShot(20, [&] {
    closer.Allowed = true;
    form.SetModalResult(mrYes);
  });
  EXPECT_EQ(form.ShowModal(), mrYes);
  form.OnDestroy = {};
}

TEST(Modal, QuestionsOfCoreShowTheDialogAndAnswerItsButton) {
  const struct {
    const char* Name;
    TMsgDlgButtons Buttons;
    TMsgDlgBtn Answer;
  } rows[] = {
      {"no for a question", {mbYes, mbNo}, mbNo},
      {"the only button of a message", {mbOK}, mbOK},
      {"cancel where there is one", {mbYes, mbNo, mbCancel}, mbCancel},
  };
  for (const auto& row : rows) {
    const TWhileModal during([] { ModalForm()->Close(); });
    EXPECT_EQ(MessageDlg("Really?", mtConfirmation, row.Buttons), row.Answer) << row.Name;
  }
}

TEST(DesignedClasses, AreKnownByTheNamesInTheirChain) {
  const auto userForm = TTypeInfo::MakeClass("TMainForm", TForm::ClassInfo());
  const auto inherited = TTypeInfo::MakeClass("TInheritedForm", *userForm);
  const auto data = TTypeInfo::MakeClass("TData", TDataModule::ClassInfo());
  const auto report = TTypeInfo::MakeClass("TReport", TComponent::ClassInfo());
  EXPECT_TRUE(IsFormClass(*inherited));
  EXPECT_FALSE(IsDataModuleClass(*inherited));
  EXPECT_TRUE(IsDataModuleClass(*data));
  EXPECT_FALSE(IsFormClass(*report) || IsFrameClass(*report));
}

}  // namespace
}  // namespace wrenfold::test
