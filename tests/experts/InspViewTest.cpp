// Tests the form list in the inspector: what it shows, follows and does, and what it gives back.
#include <gmock/gmock.h>

#include <QLineEdit>
#include <QTemporaryDir>
#include <QVBoxLayout>
#include <QtTest/QTest>
#include <deque>

#include "FakeEnvironment.h"
#include "experts/rkInspView.h"
#include "manager/rkExpMng.h"

namespace wrenfold {
namespace {

// A component that stands in another one.
struct TPart : TComponent {
  TPart(TComponent* owner, TComponent* parent) : TComponent(owner), Parent(parent) {}
  TComponent* GetParentComponent() const override { return Parent; }
  TComponent* Parent;
};

class InspView : public testing::Test, public TObject {
 public:
  void Record(TObject* sender) {
    ++Recorded;
    auto* action = dynamic_cast<TAction*>(sender);
    if (action != nullptr) Environment.Modules.clear();
  }

 protected:
  InspView() {
    new QVBoxLayout(Inspector.get());
    Inspector->SetName("PropertyInspector");
    Grid = new QLineEdit;
    Inspector->layout()->addWidget(Grid);
    Menu = new TPopupMenu(Inspector.get());
    auto* item = new TMenuItem;
    item->SetCaption("Own item");
    Menu->Items()->Add(item);
    Bind<&InspView::Record>(Menu->OnPopup, static_cast<InspView*>(this));
    Inspector->SetPopupMenu(Menu);
    CloseAll = new TAction(Environment.MainForm);
    CloseAll->SetName("FileCloseAllCommand");
    Bind<&InspView::Record>(CloseAll->OnExecute, static_cast<InspView*>(this));
    Environment.Actions->AddAction(CloseAll);
    Environment.AddProject("Demo");
    InitExpManager(Directory.path().toStdString() + "/");
    RegisterInspectorView();
  }
  ~InspView() override {
    TFakeEnvironment::Wizard = nullptr;
    DoneExpManager();
  }
  void Start() {
    if (Inspector) Inspector->Show();
    RegisterExpManager();
    Settle();
  }
  static void Settle() {
    for (int round = 0; round < 3; ++round) Application().ProcessMessages();
  }
  TInspectorViewMng& Expert() {
    return static_cast<TInspectorViewMng&>(*CurrentManager()->Experts().Get(0).Expert);
  }
  struct TDesigned {
    std::unique_ptr<TForm> Form;
    TIntf<TFakeFormEditor> Editor;
  };
  // An open module whose form is a window.
  TDesigned& Add(const std::string& form, const std::string& unit, bool own = true) {
    TDesigned& added = Forms.emplace_back();
    added.Form.reset(NewForm<TForm>());
    added.Form->SetName(form);
    added.Editor =
        TIntf<TFakeFormEditor>(new TFakeFormEditor("/work/" + unit + ".dfm", added.Form.get()));
    auto* module = new TFakeModule("/work/" + unit + ".pas");
    module->Editors.emplace_back(static_cast<IOTAFormEditor*>(added.Editor.get()));
    if (own) module->Project = Environment.Project.get();
    Environment.Modules.emplace_back(module);
    return added;
  }
  std::string Items() {
    std::string items;
    for (int i = 0; i < Expert().FormCombo()->count(); ++i)
      items += (i > 0 ? ", " : "") + Expert().FormCombo()->itemText(i).toStdString();
    return items;
  }
  std::string Chosen() { return Expert().FormCombo()->currentText().toStdString(); }
  void Choose(int item) {
    Expert().FormCombo()->setCurrentIndex(item);
    emit Expert().FormCombo()->activated(item);
    Settle();
  }
  TMenuItem* Item(const char* caption) { return Menu->Items()->Find(caption); }

  QTemporaryDir Directory;
  TFakeEnvironment Environment;
  std::unique_ptr<TForm> Inspector{NewForm<TForm>()};
  QLineEdit* Grid;
  TPopupMenu* Menu;
  TAction* CloseAll;
  std::deque<TDesigned> Forms;
  int Recorded = 0;
};

TEST_F(InspView, ListsOpenFormsSortedAndTellsEqualNamesApart) {
  Add("Form2", "Two");
  Add("About", "Box");
  Add("Form2", "Other", false);
  Grid->setFocus();
  Start();
  EXPECT_EQ(Items(), "About, Form2 (Other), Form2 (Two)");
  EXPECT_EQ(Inspector->layout()->indexOf(Expert().FormCombo()->parentWidget()), 0);
  EXPECT_EQ(Inspector->focusWidget(), Grid) << "the focus was not given back";
  Expert().SetProjectFormsOnly(true);
  EXPECT_EQ(Items(), "About, Form2");
  Expert().SetDisplayPanel(false);
  Settle();
  EXPECT_FALSE(Expert().FormCombo()->isVisible());
}

TEST_F(InspView, FollowsTheActiveFormAfterABurstOfActivations) {
  Add("A", "UnitA");
  Add("B", "UnitB");
  Start();
  Environment.ActiveModule = 2;
  for (int i : {0, 1, 0, 1})
    Expert().DoSetActiveForm(Forms[static_cast<std::size_t>(i)].Form.get());
  EXPECT_NE(Chosen(), "B") << "followed inside the environment's handling";
  Settle();
  EXPECT_EQ(Chosen(), "B");
  Environment.ActiveModule = 1;
  Expert().DoSetActiveForm(Forms[0].Form.get());
  Settle();
  EXPECT_EQ(Chosen(), "A") << "no message was posted after the burst";
  Environment.ActiveModule = 2;
  Expert().DoSetActiveForm(nullptr);
  Settle();
  EXPECT_EQ(Chosen(), "B");
}

TEST_F(InspView, ChoosingShowsTheFormAndFollowsAgainWhenNothingWasActivated) {
  Add("A", "UnitA");
  TDesigned& second = Add("B", "UnitB");
  Start();
  Environment.ActiveModule = 1;
  Choose(1);
  EXPECT_EQ(second.Editor->Shown, 1);
  EXPECT_EQ(Chosen(), "B");
  Expert().DoSetActiveForm(Forms[0].Form.get());
  Settle();
  EXPECT_EQ(Chosen(), "A") << "following stayed off";
  Environment.Modules.pop_back();
  Choose(1);
  EXPECT_EQ(second.Editor->Shown, 1) << "the editor is closed";
}

TEST_F(InspView, GivesTheFocusBackWhenWanted) {
  TDesigned& form = Add("A", "UnitA");
  form.Editor->OnShow = [&] { form.Form->Show(); };
  Start();
  Choose(0);
  EXPECT_NE(QApplication::focusWidget(), Expert().FormCombo());
  Expert().SetReturnFocus(true);
  Choose(0);
  EXPECT_EQ(QApplication::focusWidget(), Expert().FormCombo());
}

TEST_F(InspView, TheMenuHasNineItemsBeforeTheInspectorsOwnAndActsOnTheDesigner) {
  TDesigned& form = Add("A", "UnitA");
  form.Form->SetName("A");
  TPart panel(form.Form.get(), form.Form.get()), button(form.Form.get(), &panel);
  Start();
  std::string captions;
  for (const TMenuItem* item : Menu->Items()->Items()) captions += item->Caption() + ",";
  EXPECT_EQ(captions,
            "Display panel,Project forms only,Return focus,-,Select parent,Select form,-,Show "
            "form,-,Own item,");
  Environment.ActiveModule = 1;
  Choose(0);
  const int shown = form.Editor->Shown;
  auto& selected = form.Editor->Designer->Selected;
  selected = {&button};
  Item("Select parent")->Click();
  EXPECT_THAT(selected, testing::ElementsAre(&panel));
  Item("Select parent")->Click();
  Item("Select parent")->Click();
  EXPECT_THAT(selected, testing::ElementsAre(form.Form.get())) << "above the root is nothing";
  EXPECT_EQ(form.Editor->Shown, shown);
  Expert().AutoShowForm = true;
  selected = {&button};
  Item("Select form")->Click();
  EXPECT_THAT(selected, testing::ElementsAre(form.Form.get()));
  EXPECT_EQ(form.Editor->Shown, shown + 1);
  Item("Show form")->Click();
  EXPECT_EQ(form.Editor->Shown, shown + 2);
  Item("Return focus")->Click();
  Menu->OnPopup(Menu);
  EXPECT_TRUE(Item("Return focus")->Checked());
  EXPECT_TRUE(Item("Display panel")->Checked());
  EXPECT_EQ(Recorded, 1) << "the menu's own handler";
}

TEST_F(InspView, ForgetsFormsThatAreClosedAndTakesRenamedOnesOver) {
  Add("A", "UnitA");
  TDesigned& second = Add("B", "UnitB");
  Start();
  auto notifier = Supports<IOTAFormNotifier>(second.Editor->Notifier.get());
  ASSERT_TRUE(notifier);
  second.Form->SetName("Renamed");
  notifier->ComponentRenamed(second.Form.get(), "B", "Renamed");
  Settle();
  EXPECT_EQ(Items(), "A, Renamed");
  notifier = Supports<IOTAFormNotifier>(second.Editor->Notifier.get());
  Environment.Modules.pop_back();
  notifier->Destroyed();
  Settle();
  EXPECT_EQ(Items(), "A");
  CloseAll->Execute();
  EXPECT_EQ(Items(), "") << "the list shows what was just closed";
}

TEST_F(InspView, LeavesNothingBehindWhicheverGoesFirst) {
  const TNotifyEvent closeAll = CloseAll->OnExecute, popup = Menu->OnPopup,
                     active = Screen().OnActiveFormChange;
  Add("A", "UnitA");
  Start();
  EXPECT_NE(CloseAll->OnExecute, closeAll);
  TFakeEnvironment::Wizard = nullptr;
  EXPECT_EQ(CloseAll->OnExecute, closeAll);
  EXPECT_EQ(Menu->OnPopup, popup);
  EXPECT_EQ(Screen().OnActiveFormChange, active);
  EXPECT_EQ(Menu->Items()->Count(), 1);
  EXPECT_EQ(Inspector->findChild<QComboBox*>("FormCombo"), nullptr);
  EXPECT_FALSE(Forms[0].Editor->Notifier);
  Start();
  Inspector.reset();
  EXPECT_EQ(Expert().FormCombo(), nullptr);
  CloseAll->Execute();
  Settle();
}

TEST_F(InspView, WorksWithoutInspectorAndCommand) {
  Environment.Actions->RemoveAction(CloseAll);
  Inspector.reset();
  Start();
  Expert().DoSetActiveForm(Environment.MainForm);
  Expert().SetProjectFormsOnly(true);
  Settle();
  EXPECT_EQ(Expert().FormCombo(), nullptr);
}

}  // namespace
}  // namespace wrenfold
