// The form list of the built package in the inspector of the real workbench.
#include <QComboBox>
#include <QTest>

#include "host/HostTest.h"
#include "platform/core/system/Files.h"

namespace wrenfold {
namespace {

class FormList : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    ASSERT_TRUE(Workbench->Documents().OpenProject(WriteProject()));
    PlainMenu = Menu().Count();
    CloseAll = Workbench->Commands().Find("FileCloseAllCommand")->OnExecute;
    Active = Screen().OnActiveFormChange;
    LoadPackage();
    OpenPage(FileOf("Child"));
    OpenPage(FileOf("Main"));
    Settle();
  }
  // A package of its own, with its settings beside it.
  void LoadPackage() {
    const std::string file = Folder.Path() + "/Wrenfold4.so";
    for (const char* name : {"Wrenfold4.so", "wren_ger.dll"})
      if (!FileExists(Folder.Path() + "/" + name))
        Folder.Write(name, ReadWholeFile(std::string(WRENFOLD_BIN_DIR "/") + name));
    ASSERT_TRUE(Workbench->Packages().Load(file));
    Settle();
  }
  static void Settle() {
    for (int round = 0; round < 5; ++round) Application().ProcessMessages();
  }
  TMenuItem& Menu() { return *Workbench->Inspector().PopupMenu()->Items(); }
  QComboBox* Combo() { return Workbench->Inspector().findChild<QComboBox*>("FormCombo"); }
  std::string Items() {
    std::string items;
    for (int i = 0; i < Combo()->count(); ++i)
      items += (i > 0 ? ", " : "") + Combo()->itemText(i).toStdString();
    return items;
  }
  std::string Chosen() { return Combo()->currentText().toStdString(); }
  void Choose(const char* form) {
    Combo()->setCurrentIndex(Combo()->findText(form));
    emit Combo()->activated(Combo()->currentIndex());
    Settle();
  }
  TFormEditor& Form(const char* unit) {
    return *Workbench->Workspace().Find(FileOf(unit))->FormEditor();
  }
  static TForm* DesignerOf(TFormEditor& form) { return form.Designer().GetDesignerForm(); }
  void Show(const char* unit) {
    Form(unit).Show();
    Settle();
  }
  static TMenuItem* FindItem(TMenuItem& menu, const char* caption) {
    TMenuItem* found = menu.Find(caption);
    for (TMenuItem* item : menu.Items())
      if (found == nullptr) found = FindItem(*item, caption);
    return found;
  }
  void Click(const char* caption) {
    ASSERT_NE(Menu().Find(caption), nullptr) << caption;
    Menu().Find(caption)->Click();
    Settle();
  }

  int PlainMenu = 0;
  TNotifyEvent CloseAll, Active;
};

TEST_F(FormList, FollowsTheFormThatIsActivatedWhicheverWay) {
  EXPECT_EQ(Items(), "ChildForm, MainForm");
  EXPECT_EQ(Chosen(), "MainForm") << "the page that is open";
  OpenPage(FileOf("Child"));
  Settle();
  EXPECT_EQ(Chosen(), "ChildForm") << "another page";
  Show("Main");
  EXPECT_EQ(Chosen(), "MainForm") << "shown by code";
  Show("Child");
  DesignerOf(Form("Main"))->activateWindow();
  Settle();
  EXPECT_EQ(Chosen(), "MainForm") << "a click on the designer";
  OpenPage(FileOf("Tools"));
  Settle();
  EXPECT_EQ(Chosen(), "MainForm") << "a unit without a form";
  Run("FileCloseAllCommand");
  Settle();
  EXPECT_EQ(Items(), "");
}

TEST_F(FormList, ChosenFormComesToTheFrontAndTheFocusBackWhereWanted) {
  Show("Main");
  Choose("ChildForm");
  EXPECT_EQ(Screen().ActiveForm(), DesignerOf(Form("Child")));
  EXPECT_EQ(Workbench->Inspector().Editor(), &Form("Child"));
  EXPECT_EQ(Chosen(), "ChildForm");
  Click("Return focus");
  Choose("MainForm");
  EXPECT_TRUE(DesignerOf(Form("Main"))->isVisible());
  EXPECT_EQ(QApplication::focusWidget(), Combo());
  EXPECT_EQ(Chosen(), "MainForm") << "the focus in the inspector is no other form";
}

TEST_F(FormList, MenuShowsItsSettingsAndActsOnTheDesigner) {
  std::string captions;
  for (int i = 0; i < 9; ++i) captions += Menu()[i]->Caption() + "|";
  EXPECT_EQ(captions,
            "Display panel|Project forms only|Return focus|-|Select parent|Select form|-|Show "
            "form|-|");
  EXPECT_EQ(Menu().Count(), PlainMenu + 9);
  Click("Display panel");
  EXPECT_FALSE(Combo()->isVisible());
  Click("Project forms only");
  TPopupMenu& menu = *Workbench->Inspector().PopupMenu();
  menu.OnPopup(&menu);
  EXPECT_FALSE(Menu()[0]->Checked());
  EXPECT_TRUE(Menu()[1]->Checked());
  EXPECT_TRUE(Menu().Find("View form")->Enabled()) << "the inspector's own handler";
  Click("Display panel");
  TFormEditor& main = Form("Main");
  TComponent* panel = main.FindComponent("Panel");
  main.Designer().SelectComponent(panel);
  Click("Select parent");
  EXPECT_EQ(main.Designer().GetSelections(), std::vector{main.GetRootComponent()});
  main.Designer().SelectComponent(panel);
  Click("Select form");
  EXPECT_EQ(main.Designer().GetSelections(), std::vector{main.GetRootComponent()});
  EXPECT_EQ(DesignerOf(main), nullptr) << "shown though nobody wanted it";
  Click("Show form");
  EXPECT_EQ(Screen().ActiveForm(), DesignerOf(main));
}

TEST_F(FormList, FormsThatAreRenamedClosedOrReadAgainWhileTheyAreShown) {
  Show("Main");
  QTreeWidget& grid = Workbench->Inspector().Grid();
  grid.findItems("Name", Qt::MatchExactly).value(0)->setText(1, "Renamed");
  Settle();
  EXPECT_EQ(Items(), "ChildForm, Renamed");
  EXPECT_EQ(Chosen(), "Renamed");
  Form("Main").Undo();
  Settle();
  EXPECT_EQ(Items(), "ChildForm, MainForm");
  // Another program writes the form.
  Folder.Write("Main.dfm", "object Other: TMainForm\r\nend\r\n");
  Workbench->DiskWatch().Check();
  Settle();
  EXPECT_EQ(Items(), "ChildForm, Other");
  EXPECT_EQ(grid.findItems("Name", Qt::MatchExactly).value(0)->text(1), "Other");
  Workbench->Documents().CloseModule(*Workbench->Workspace().Find(FileOf("Main")), false);
  Settle();
  EXPECT_EQ(Items(), "ChildForm");
}

TEST_F(FormList, SwitchedLanguageMakesTheListAnewWithItsChoiceAndTheFocusInIt) {
  // A unit without a form leaves the choice to the user.
  OpenPage(FileOf("Tools"));
  Workbench->activateWindow();
  Combo()->setFocus();
  Settle();
  Combo()->setCurrentIndex(Combo()->findText("ChildForm"));
  TMenuItem* german = FindItem(*Workbench->Commands().Menu().Items(), "German");
  ASSERT_NE(german, nullptr);
  german->Click();
  Settle();
  EXPECT_EQ(Menu().Count(), PlainMenu + 9);
  EXPECT_EQ(Menu().Find("Display panel"), nullptr) << "still in the language before";
  EXPECT_EQ(Items(), "ChildForm, MainForm");
  EXPECT_EQ(Chosen(), "ChildForm");
  EXPECT_EQ(QApplication::focusWidget(), Combo());
}

TEST_F(FormList, UnloadedPackageLeavesTheInspectorAsItWasAndComesBack) {
  Show("Main");
  for (int round = 0; round < 2; ++round) {
    Combo()->setFocus();
    Workbench->Packages().Unload();
    Settle();
    EXPECT_EQ(Combo(), nullptr);
    EXPECT_EQ(Menu().Count(), PlainMenu);
    EXPECT_EQ(Workbench->Commands().Find("FileCloseAllCommand")->OnExecute, CloseAll);
    EXPECT_EQ(Screen().OnActiveFormChange, Active);
    Workbench->Inspector().PopupMenu()->OnPopup(nullptr);
    Show("Child");
    Show("Main");
    LoadPackage();
    EXPECT_EQ(Items(), "ChildForm, MainForm");
    EXPECT_EQ(Chosen(), "MainForm");
  }
  // The workbench ends, and the inspector with it, while the package is loaded.
}

}  // namespace
}  // namespace wrenfold
