// Tests the unit manager's window on real tabs: opening, closing, order, filter, holding the rest.
#include <gmock/gmock.h>

#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QTemporaryDir>
#include <QtTest/QTest>

#include "FakeEnvironment.h"
#include "experts/rkUnitForm.h"
#include "experts/rkUnitListBox.h"
#include "locale/rkLocale.h"
#include "manager/rkExpMng.h"
#include "platform/widgets/ShortCuts.h"

namespace wrenfold {
namespace {

using testing::ElementsAre;

// Takes the exceptions that nobody caught.
class TReports : public TObject {
 public:
  TReports() : FBefore(Application().OnException) {
    Bind<&TReports::Report>(Application().OnException, this);
  }
  ~TReports() override { Application().OnException = FBefore; }
  void Report(TObject*, std::exception_ptr exception) {
    Messages.push_back(ExceptionMessage(exception));
  }
  std::vector<std::string> Messages;

 private:
  TExceptionEvent FBefore;
};

class UnitForm : public testing::Test {
 protected:
  UnitForm() {
    InitExpManager(Directory.path().toStdString() + "/");
    RegisterUnitManager();
    RegisterExpManager();
    Settle();
  }
  ~UnitForm() override {
    TFakeEnvironment::Wizard = nullptr;
    DoneExpManager();
  }
  static void Settle() {
    for (int round = 0; round < 3; ++round) Application().ProcessMessages();
  }

  TUnitManager& Expert() {
    return static_cast<TUnitManager&>(*CurrentManager()->Experts().Get(0).Expert);
  }
  void AddPages(std::initializer_list<const char*> units) {
    for (const char* unit : units) Environment.AddPage(unit);
    Environment.Tabs->SetTabIndex(0);
  }
  // By the hot key, from the editor.
  TUnitForm& Open() {
    QTest::keyClick(Environment.Editor, Qt::Key_Q, Qt::ControlModifier | Qt::ShiftModifier);
    Settle();
    Form = static_cast<TUnitForm*>(FindForm());
    if (!Form) throw Exception("the window did not open");
    Form->activateWindow();
    Settle();
    Environment.TakeLog();
    return *Form;
  }
  static TForm* FindForm() {
    for (TForm* form : Screen().Forms())
      if (dynamic_cast<TUnitForm*>(form) != nullptr) return form;
    return nullptr;
  }
  void Press(int key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(Form->focusWidget(), static_cast<Qt::Key>(key), modifiers);
    Settle();
  }
  void Select(std::initializer_list<int> rows) {
    QItemSelectionModel* selection = Form->ListBox()->selectionModel();
    selection->clear();
    for (const int row : rows)
      selection->setCurrentIndex(Form->ListBox()->model()->index(row, 0),
                                 QItemSelectionModel::Select);
  }
  std::string ListTexts() const {
    std::string texts;
    for (int i = 0; i < Form->ListBox()->model()->rowCount(); ++i) {
      if (i > 0) texts += ' ';
      texts += Form->ListBox()->model()->index(i, 0).data().toString().toStdString();
    }
    return texts;
  }
  std::vector<int> SelectedRows() const {
    std::vector<int> rows;
    for (const QModelIndex& index : Form->ListBox()->selectionModel()->selectedIndexes())
      rows.push_back(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
  }
  void Type(const char* text) {
    Form->FilterBox()->setEditText(text);
    Form->FilterBox()->setFocus();
    Press(Qt::Key_Return);
  }
  TAction* Action(const char* name) { return Form->FormActions()->FindAction(name); }

  QTemporaryDir Directory;
  TFakeEnvironment Environment;
  QPointer<TUnitForm> Form;
};

TEST_F(UnitForm, ShowsThePagesWithTheActiveOneSelected) {
  AddPages({"Alpha", "Beta", "Gamma"});
  Environment.Tabs->SetTabIndex(1);
  Open();
  EXPECT_EQ(ListTexts(), "Alpha Beta Gamma");
  EXPECT_THAT(SelectedRows(), ElementsAre(1));
  EXPECT_EQ(Form->Caption(), "Unit manager");
  EXPECT_EQ(Form->focusWidget(), Form->ListBox());
}

TEST_F(UnitForm, TheCommandIsDisabledWithoutACodeEditor) {
  Environment.EditWindow->Hide();
  QTest::keyClick(Environment.MainForm, Qt::Key_Q, Qt::ControlModifier | Qt::ShiftModifier);
  Settle();
  EXPECT_EQ(FindForm(), nullptr);
  Environment.TopItem()->OnClick(Environment.TopItem());
  EXPECT_FALSE(Environment.TopItem()->Items(1)->Enabled());
  Environment.EditWindow->Show();
  Environment.TopItem()->OnClick(Environment.TopItem());
  EXPECT_TRUE(Environment.TopItem()->Items(1)->Enabled());
}

TEST_F(UnitForm, OpensAUnitByItsEditorAndAnAmbiguousOneByItsTab) {
  AddPages({"Alpha", "Beta"});
  Open();
  Select({1});
  Press(Qt::Key_Return);
  EXPECT_EQ(Environment.TakeLog(), "show Beta");
  Environment.AddPage("Beta");
  Press(Qt::Key_F5);
  Select({2});
  Press(Qt::Key_S, Qt::AltModifier);
  EXPECT_EQ(Environment.TakeLog(), "change to Beta");
  EXPECT_EQ(Environment.Tabs->TabIndex(), 2);
  EXPECT_FALSE(Environment.EditWindow->Enabled()) << "the editor stays held";
  EXPECT_TRUE(Form->isVisible());
  Expert().CloseFormOnShowUnit = true;
  Press(Qt::Key_Return);
  EXPECT_EQ(FindForm(), nullptr);
}

TEST_F(UnitForm, ClosesUnitsByTheirModulesFromTheLastOne) {
  AddPages({"Alpha", "Beta", "Gamma", "Delta"});
  Open();
  Select({0, 2, 3});
  Press(Qt::Key_Delete);
  EXPECT_EQ(Environment.TakeLog(), "close module Delta, close module Gamma, close module Alpha");
  EXPECT_EQ(ListTexts(), "Beta");
}

TEST_F(UnitForm, ClosesAmbiguousPagesOneByOneAndWaitsForTheQuestion) {
  AddPages({"Alpha", "Beta", "Beta", "Gamma"});
  Open();
  bool asked = false;
  std::string closedWhileAsking;
  Environment.OnClosePage = [&](const std::string& unit) {
    if (asked || unit != "Beta") return true;
    asked = true;
    const std::unique_ptr<TForm> question(NewForm<TForm>());
    question->SetCaption("Confirm");
    Environment.TakeLog();
    QTimer::singleShot(450, question.get(), [&] { question->SetModalResult(mrYes); });
    question->ShowModal();
    closedWhileAsking = Environment.TakeLog();
    return true;
  };
  Select({0, 2});
  Press(Qt::Key_Delete);
  EXPECT_EQ(Environment.TabTexts(), "Alpha Beta Beta Gamma") << "nothing before the first tick";
  Press(Qt::Key_Right, Qt::AltModifier);
  EXPECT_EQ(Environment.TabTexts(), "Alpha Beta Beta Gamma") << "moved under the timer's feet";
  QTest::qWait(900);
  EXPECT_TRUE(asked);
  EXPECT_EQ(closedWhileAsking, "") << "a second page was closed behind the question";
  EXPECT_EQ(Environment.TabTexts(), "Beta Gamma");
  EXPECT_EQ(ListTexts(), "Beta Gamma");
}

TEST_F(UnitForm, TheProjectSourceIsClosedAsAPage) {
  Environment.AddProject("Alpha");
  AddPages({"Alpha", "Beta"});
  Open();
  Select({0, 1});
  Press(Qt::Key_Delete);
  QTest::qWait(400);
  EXPECT_EQ(Environment.TakeLog(),
            "change to Beta, close page Beta, change to Alpha, close page Alpha");
  EXPECT_EQ(ListTexts(), "");
}

// The question stands over the environment's window, which is the active one when it is gone.
TEST_F(UnitForm, AfterAQuestionTheKeyboardIsItsOwnAgainWhateverTheAnswer) {
  const auto ask = [&](TModalResult answer) {
    const std::unique_ptr<TForm> question(NewForm<TForm>());
    question->SetCaption("Confirm");
    QTimer::singleShot(50, question.get(), [&] { question->SetModalResult(answer); });
    question->ShowModal();
    QApplication::setActiveWindow(Environment.MainForm);
    Environment.Editor->setFocus();
    return answer == mrYes;
  };
  TModalResult answer = mrNone;
  AddPages({"Alpha", "Beta", "Beta"});
  Environment.AddPage("Gamma")->OnClose = [&] { return ask(answer); };
  Environment.OnClosePage = [&](const std::string&) { return ask(answer); };
  Open();
  for (const TModalResult each : {mrNo, mrCancel, mrYes}) {
    for (const int row : {2, 3}) {  // by the page's menu, and by its module
      answer = row == 3 && each == mrYes ? mrNo : each;
      Select({std::min(row, Form->ListBox()->model()->rowCount() - 1)});
      Press(Qt::Key_Delete);
      QTest::qWait(500);
      EXPECT_EQ(QApplication::activeWindow(), Form) << each << ' ' << row;
      EXPECT_TRUE(Form->ListBox()->hasFocus()) << each << ' ' << row;
    }
  }
}

TEST_F(UnitForm, ClosingTheWindowStopsTheTimer) {
  AddPages({"Alpha", "Alpha"});
  Open();
  Select({0, 1});
  Press(Qt::Key_Delete);
  Press(Qt::Key_Escape);
  QTest::qWait(300);
  EXPECT_EQ(FindForm(), nullptr);
  EXPECT_EQ(Environment.TabTexts(), "Alpha Alpha");
}

TEST_F(UnitForm, MovesSelectedPagesWithTheirDataAndKeepsTheActivePage) {
  AddPages({"a", "b", "c", "d", "e"});
  Environment.Tabs->SetTabIndex(1);
  TObject* data = Environment.Tabs->Tabs()->GetObject(1);
  Open();
  Select({1, 3});
  Press(Qt::Key_Right, Qt::AltModifier);
  EXPECT_EQ(Environment.TabTexts(), "a c b e d");
  EXPECT_EQ(Environment.Tabs->TabIndex(), 2);
  EXPECT_EQ(Environment.Tabs->Tabs()->GetObject(2), data);
  EXPECT_THAT(SelectedRows(), ElementsAre(2, 4));
  Press(Qt::Key_Right, Qt::AltModifier);
  EXPECT_EQ(Environment.TabTexts(), "a c b e d") << "refused whole";
  Press(Qt::Key_Left, Qt::AltModifier);
  EXPECT_EQ(Environment.TabTexts(), "a b c d e");
  EXPECT_EQ(Environment.TakeLog(), "") << "the page that is shown does not change";
}

TEST_F(UnitForm, AStaleListIsNotWrittenOverTheTabs) {
  AddPages({"a", "b", "c"});
  Open();
  Environment.Tabs->Tabs()->Delete(2);
  Select({0});
  Press(Qt::Key_Right, Qt::AltModifier);
  EXPECT_EQ(Environment.TabTexts(), "a b");
  EXPECT_EQ(ListTexts(), "a b");
}

TEST_F(UnitForm, SortsListAndTabsAlternately) {
  AddPages({"Gamma", "Alpha", "beta"});
  Open();
  Press(Qt::Key_R, Qt::AltModifier);
  EXPECT_EQ(Environment.TabTexts(), "Alpha beta Gamma");
  EXPECT_EQ(Environment.Tabs->TabIndex(), 2);
  EXPECT_THAT(SelectedRows(), ElementsAre(2));
  Press(Qt::Key_R, Qt::AltModifier);
  EXPECT_EQ(Environment.TabTexts(), "Gamma beta Alpha");
}

TEST_F(UnitForm, FiltersWithAHistoryAndStopsMovingMeanwhile) {
  AddPages({"MainUnit", "Unit2", "DataMain"});
  Open();
  Press(Qt::Key_F, Qt::AltModifier);
  EXPECT_TRUE(Form->FilterPanelShown());
  Type("  mAin ");
  EXPECT_EQ(ListTexts(), "MainUnit DataMain");
  Type("mAin");
  EXPECT_EQ(Form->FilterBox()->count(), 1);
  EXPECT_EQ(Form->FilterBox()->itemText(0), "mAin");
  Type("unit");
  EXPECT_EQ(ListTexts(), "MainUnit Unit2") << "a new filter on top of the old one";
  EXPECT_EQ(Form->FilterBox()->currentText(), "unit");
  for (const char* name : {"acMoveUp", "acMoveDown", "acSort"})
    EXPECT_FALSE(Action(name)->Enabled()) << name;
  EXPECT_TRUE(Action("acFilter")->Enabled());
  Form->SortUnits();
  Form->MoveItems(1);
  EXPECT_EQ(Environment.TabTexts(), "MainUnit Unit2 DataMain");
  Type("nothing like it");
  EXPECT_TRUE(Action("acFilter")->Enabled());
  EXPECT_FALSE(Action("acShow")->Enabled());
  Expert().JumpToUnitsOnApllyFilter = true;
  Type("");
  EXPECT_EQ(ListTexts(), "MainUnit Unit2 DataMain");
  EXPECT_EQ(Form->focusWidget(), Form->ListBox());
  EXPECT_TRUE(Action("acSort")->Enabled());
  Form->Close();
  Settle();
  EXPECT_EQ(Expert().HistoryList->CommaText(), "\"nothing like it\",unit,mAin");
}

TEST_F(UnitForm, NarrowsWhileOneTypesAndKeepsTheFilterInSight) {
  AddPages({"MainUnit", "Unit2", "DataMain"});
  Open();
  Press(Qt::Key_F, Qt::AltModifier);
  QTest::keyClicks(Form->focusWidget(), "mai");
  EXPECT_EQ(ListTexts(), "MainUnit DataMain");
  EXPECT_EQ(Form->FilterBox()->count(), 0) << "half a word in the history";
  EXPECT_TRUE(Form->FilterBox()->hasFocus() || Form->FilterBox()->lineEdit()->hasFocus());
  EXPECT_EQ(Form->Caption(), "Filter: mai - Unit manager");
  Press(Qt::Key_Backspace);
  EXPECT_EQ(Form->Caption(), "Filter: ma - Unit manager");
  Press(Qt::Key_Escape);
  EXPECT_FALSE(Form->FilterPanelShown());
  EXPECT_EQ(ListTexts(), "MainUnit DataMain");
  Press(Qt::Key_F, Qt::AltModifier);
  EXPECT_TRUE(Form->FilterPanelShown()) << "not at the first press";
  EXPECT_EQ(Form->FilterBox()->currentText(), "ma");
  Form->FilterBox()->setEditText("by code");
  EXPECT_EQ(ListTexts(), "MainUnit DataMain");
  Press(Qt::Key_A, Qt::ControlModifier);
  Press(Qt::Key_Delete);
  EXPECT_EQ(ListTexts(), "MainUnit Unit2 DataMain");
  EXPECT_EQ(Form->Caption(), "Unit manager");
}

TEST_F(UnitForm, ARefreshedListIsNotCalledFiltered) {
  AddPages({"MainUnit", "Unit2"});
  Open();
  Press(Qt::Key_F, Qt::AltModifier);
  QTest::keyClicks(Form->focusWidget(), "mai");
  Press(Qt::Key_F5);
  EXPECT_EQ(ListTexts(), "MainUnit Unit2");
  EXPECT_EQ(Form->Caption(), "Unit manager");
  EXPECT_FALSE(Action("acSort")->Enabled()) << "until an empty filter is applied";
}

TEST_F(UnitForm, TypingInTheListJumps) {
  AddPages({"Alpha", "Beta", "Gamma"});
  Open();
  QTest::keyClicks(Form->ListBox(), "ga");
  EXPECT_EQ(Form->ListBox()->currentIndex().row(), 2);
}

TEST_F(UnitForm, TellsViewsUnsavedAndActivePagesApart) {
  AddPages({"Alpha", "Beta"});
  Environment.AddPage("Alpha")->Source->Modified = true;
  Environment.Tabs->SetTabIndex(1);
  Open();
  const auto words = [this](int row) {
    return Form->ListBox()
        ->model()
        ->index(row, 0)
        .data(Qt::AccessibleDescriptionRole)
        .toString()
        .toStdString();
  };
  EXPECT_EQ(words(0), "not saved, view 1");
  EXPECT_EQ(words(1), "active page");
  EXPECT_EQ(words(2), "not saved, view 2");
  Select({2});
  Press(Qt::Key_Return);
  EXPECT_EQ(words(2), "active page, not saved, view 2");
  EXPECT_EQ(ListTexts(), "Alpha Beta Alpha") << "the text is the caption of the tab";
}

TEST_F(UnitForm, APageThatIsNoLongerWhereItWasIsNotTakenForAnother) {
  AddPages({"Alpha", "Alpha", "Beta"});
  Open();
  Environment.Tabs->Tabs()->Delete(0);
  Select({1});
  Press(Qt::Key_Delete);
  QTest::qWait(300);
  EXPECT_EQ(Environment.TabTexts(), "Beta") << "another page was closed";
  Environment.Tabs->Tabs()->Clear();
  Select({0});
  Press(Qt::Key_Return);
  EXPECT_EQ(ListTexts(), "") << "a page that has gone is shown no more";
}

TEST_F(UnitForm, AFailureWhileClosingOrShowingLeavesNothingHeldOrDead) {
  AddPages({"Alpha", "Beta", "Gamma"});
  auto* module = static_cast<TFakeModule*>(Environment.Modules[2].get());
  module->OnClose = []() -> bool { throw std::runtime_error("cannot close"); };
  static_cast<TFakeModule*>(Environment.Modules[1].get())->Source->OnShow = [] {
    throw std::runtime_error("cannot show");
  };
  const TReports reports;
  Open();
  Select({1});
  Press(Qt::Key_Return);
  EXPECT_FALSE(Environment.EditWindow->Enabled()) << "the editor was left enabled";
  Select({0, 2});
  Press(Qt::Key_Delete);
  EXPECT_THAT(reports.Messages, ElementsAre("cannot show", "cannot close"));
  EXPECT_EQ(Environment.TabTexts(), "Beta Gamma") << "the others are closed";
  Press(Qt::Key_R, Qt::AltModifier);
  Press(Qt::Key_R, Qt::AltModifier);
  EXPECT_EQ(Environment.TabTexts(), "Gamma Beta") << "the commands are dead";
}

TEST_F(UnitForm, TakesActivationAndFocusBack) {
  AddPages({"Alpha", "Beta"});
  static_cast<TFakeModule*>(Environment.Modules[1].get())->Source->OnShow = [this] {
    Environment.EditWindow->activateWindow();
  };
  Open();
  Select({1});
  Press(Qt::Key_Return);
  EXPECT_EQ(QApplication::focusWidget(), Form->ListBox());
  Environment.MainForm->activateWindow();
  Settle();
  EXPECT_EQ(QApplication::focusWidget(), Form->ListBox()) << "after a click on a held window";
  const std::unique_ptr<TForm> newcomer(NewForm<TForm>());
  newcomer->Show();
  Settle();
  EXPECT_EQ(QApplication::activeWindow(), newcomer.get()) << "it is not held";
}

TEST_F(UnitForm, DeleteInTheFilterBoxEditsTheText) {
  AddPages({"Alpha"});
  Open();
  Press(Qt::Key_F, Qt::AltModifier);
  Form->FilterBox()->setEditText("xyz");
  Press(Qt::Key_Home);
  Press(Qt::Key_Delete);
  EXPECT_EQ(Form->FilterBox()->currentText(), "yz");
  EXPECT_EQ(Environment.TakeLog(), "");
}

TEST_F(UnitForm, TheExitKeyHidesTheFilterFirstAndTheMouseClosesAtOnce) {
  AddPages({"Alpha"});
  Expert().FilterPanelVisible = true;
  Open();
  EXPECT_TRUE(Form->FilterPanelShown());
  Press(Qt::Key_Escape);
  EXPECT_FALSE(Form->FilterPanelShown());
  ASSERT_TRUE(Form->isVisible());
  Press(Qt::Key_Escape);
  EXPECT_EQ(FindForm(), nullptr);
  Expert().FilterPanelVisible = true;
  Open();
  auto* exit = dynamic_cast<TToolButton*>(Form->FindComponent("tbExit"));
  ASSERT_NE(exit, nullptr);
  QTest::mousePress(exit, Qt::LeftButton);
  QTest::mouseRelease(exit, Qt::LeftButton, {}, QPoint(-50, -50));
  Press(Qt::Key_Escape);
  EXPECT_TRUE(Form && Form->isVisible()) << "the key closed, as the mouse would have";
  Press(Qt::Key_F, Qt::AltModifier);
  QTest::mouseClick(exit, Qt::LeftButton);
  Settle();
  EXPECT_EQ(FindForm(), nullptr);
}

TEST_F(UnitForm, HoldsTheOtherFormsAndGivesThemBackAsTheyWere) {
  AddPages({"Alpha"});
  const std::unique_ptr<TForm> disabled(NewForm<TForm>());
  disabled->SetEnabled(false);
  std::unique_ptr<TForm> closedMeanwhile(NewForm<TForm>());
  Open();
  EXPECT_FALSE(Environment.MainForm->Enabled());
  EXPECT_FALSE(Environment.EditWindow->Enabled());
  closedMeanwhile.reset();
  const std::unique_ptr<TForm> newcomer(NewForm<TForm>());
  newcomer->SetEnabled(false);
  Form->Close();
  Settle();
  EXPECT_TRUE(Environment.MainForm->Enabled());
  EXPECT_TRUE(Environment.EditWindow->Enabled());
  EXPECT_FALSE(disabled->Enabled());
  EXPECT_FALSE(newcomer->Enabled()) << "a form that was not held was touched";
  EXPECT_EQ(Environment.TakeLog(), "change to Alpha");
  EXPECT_EQ(Environment.EditWindow->focusWidget(), Environment.Editor);
}

TEST_F(UnitForm, GoesWithItsExpertAndGivesTheFormsBack) {
  AddPages({"Alpha"});
  Open();
  TFakeEnvironment::Wizard = nullptr;
  EXPECT_EQ(FindForm(), nullptr);
  EXPECT_TRUE(Environment.MainForm->Enabled());
}

TEST_F(UnitForm, SurvivesTheEndOfTheEditorWindow) {
  AddPages({"Alpha", "Beta"});
  Open();
  delete std::exchange(Environment.EditWindow, nullptr);
  Press(Qt::Key_Return);
  Press(Qt::Key_R, Qt::AltModifier);
  Press(Qt::Key_F5);
  EXPECT_EQ(ListTexts(), "");
  Form->Close();
  Settle();
}

TEST_F(UnitForm, DropsOnlyWhatComesFromTheListAndOnlyOutsideTheSelection) {
  AddPages({"a", "b", "c", "d"});
  Expert().DragModeAllowed = true;
  Open();
  EXPECT_TRUE(Form->ListBox()->dragEnabled());
  Select({0, 1});
  const auto drop = [this](int row) {
    QListView* list = Form->ListBox();
    const QRect rect = list->visualRect(list->model()->index(row, 0));
    const QMimeData data;
    QDropEvent event(rect.center(), Qt::MoveAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(list->viewport(), &event);
    Settle();
  };
  drop(3);
  EXPECT_EQ(Environment.TabTexts(), "a b c d") << "a drop from elsewhere";
  auto* list = static_cast<TUnitListBox*>(Form->ListBox());
  EXPECT_FALSE(list->OnDragOver(1)) << "inside the selection";
  EXPECT_TRUE(list->OnDragOver(3));
  EXPECT_EQ(list->currentIndex().row(), 3);
  list->OnDrop(3);
  EXPECT_EQ(Environment.TabTexts(), "c d a b");
  EXPECT_TRUE(list->OnDragOver(0));
  list->OnDrop(0);
  EXPECT_EQ(Environment.TabTexts(), "a b c d");
  list->OnDragOver(4);
  EXPECT_TRUE(list->currentIndex().isValid()) << "no current item below the list";
  EXPECT_EQ(list->BlockPicture().height(), 2 * list->visualRect(list->currentIndex()).height());
  list->OnDrop(4);
  EXPECT_EQ(Environment.TabTexts(), "a b c d") << "below the last item";
}

TEST_F(UnitForm, TheSettingsMenuSwitchesAndShowsItsState) {
  AddPages({"Alpha"});
  Open();
  auto* menu = dynamic_cast<TPopupMenu*>(Form->FindComponent("SettingsMenu"));
  ASSERT_NE(menu, nullptr);
  ASSERT_EQ(menu->Items()->Count(), 4);
  for (int i = 0; i < 4; ++i) menu->Items()->Items(i)->Click();
  EXPECT_TRUE(Expert().DragModeAllowed && Expert().CloseFormOnShowUnit);
  EXPECT_TRUE(Expert().FilterPanelVisible && Expert().JumpToUnitsOnApllyFilter);
  EXPECT_TRUE(Form->ListBox()->dragEnabled());
  EXPECT_TRUE(Form->FilterPanelShown());
  menu->OnPopup(menu);
  for (int i = 0; i < 4; ++i) EXPECT_TRUE(menu->Items()->Items(i)->Checked()) << i;
}

TEST_F(UnitForm, EverySettingComesBackAtTheNextStart) {
  Expert().CloseUnitShortCut = "Ctrl+F4";
  Expert().HistoryList->SetCommaText("one,two");
  Expert().FormSetting->FormPlacement = "0,1,-1,-1,-1,-1,40,50,300,400";
  TFakeEnvironment::Wizard = nullptr;
  RegisterExpManager();
  Settle();
  AddPages({"Alpha"});
  Open();
  EXPECT_EQ(Action("acClose")->ShortCut(), TextToShortCut("Ctrl+F4"));
  EXPECT_EQ(Form->FilterBox()->count(), 2);
  EXPECT_EQ(Form->geometry(), QRect(40, 50, 260, 350));
}

TEST_F(UnitForm, AllButtonsFitIntoTheNarrowestWindow) {
  AddPages({"Alpha"});
  Open();
  Form->resize(Form->minimumSize());
  Settle();
  for (const char* name :
       {"tbExit", "tbShow", "tbClose", "tbMoveUp", "tbMoveDown", "tbSort", "tbFilter"}) {
    auto* button = dynamic_cast<TToolButton*>(Form->FindComponent(name));
    ASSERT_NE(button, nullptr) << name;
    EXPECT_TRUE(button->isVisible()) << name;
    EXPECT_FALSE(button->icon().isNull()) << name;
    EXPECT_FALSE(button->toolTip().isEmpty()) << name;
  }
}

}  // namespace
}  // namespace wrenfold
