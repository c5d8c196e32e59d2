// What packages get from the open tools interface, and what they may do to the environment.
#include "host/HostTest.h"
#include "platform/widgets/ToolBar.h"

namespace wrenfold {
namespace {

class ToolsApi : public HostTest {
 protected:
  IOTAProject* Project() {
    const auto services = Supports<IOTAModuleServices>(BorlandIDEServices);
    for (int i = 0; i < services->GetModuleCount(); ++i)
      if (const auto group = Supports<IOTAProjectGroup>(services->GetModule(i)))
        return group->GetActiveProject();
    return nullptr;
  }
};

TEST_F(ToolsApi, ComponentsThatPackagesLookForHaveTheirNames) {
  const auto services = Supports<INTAServices>(BorlandIDEServices);
  EXPECT_NE(services->GetMainMenu()->Items()->Find("tools"), nullptr);
  EXPECT_NE(services->GetActionList()->FindAction("FileCloseAllCommand"), nullptr);
  TToolBar* bar = services->GetToolBar("viewtoolbar");
  ASSERT_NE(bar, nullptr);
  std::string captions;
  for (int i = 0; i < bar->ButtonCount(); ++i) captions += bar->Buttons(i)->Caption() + ";";
  EXPECT_NE(captions.find("View Unit;View Form;"), std::string::npos) << captions;
  TForm* edit = Screen().FindForm("EditWindow_0");
  ASSERT_NE(edit, nullptr);
  EXPECT_TRUE(edit->isVisible());
  EXPECT_NE(dynamic_cast<TTabControl*>(edit->FindComponent("TabControl")), nullptr);
  EXPECT_NE(WidgetOf(edit->FindComponent("Editor")), nullptr);
  EXPECT_NE(Screen().FindForm("PropertyInspector"), nullptr);
}

// What a screen reader and a user who looks for a key need of every command and control.
TEST_F(ToolsApi, EverythingHasANameAnAccessibleNameAndItsKeyInTheToolTip) {
  for (const TAction* action : Workbench->Commands().Actions().Actions()) {
    EXPECT_FALSE(action->Name().empty()) << action->Caption();
    EXPECT_FALSE(action->Hint().empty()) << action->Name();
  }
  for (const TForm* form : Screen().Forms()) EXPECT_FALSE(form->Name().empty()) << form->Caption();
  for (const QWidget* widget : Workbench->findChildren<QWidget*>()) {
    // The toolkit's own parts of controls have names that begin so, or none and a named parent.
    const bool control = widget->focusPolicy() != Qt::NoFocus && widget->focusProxy() == nullptr;
    const QString parent = widget->parentWidget()->metaObject()->className();
    if (!control || widget->objectName().startsWith("qt_") || parent == "QTreeWidget" ||
        parent == "QTabBar" || parent == "QComboBoxPrivateContainer" || parent == "QDockWidget")
      continue;
    const std::string shown =
        std::string(widget->metaObject()->className()) + " " + widget->objectName().toStdString();
    EXPECT_FALSE(widget->objectName().isEmpty()) << shown;
    EXPECT_FALSE(widget->accessibleName().isEmpty() &&
                 widget->property("text").toString().isEmpty())
        << shown;
    // A tip over the source text would cover it.
    const bool text = widget == &Workbench->EditWindow().Editor();
    EXPECT_EQ(widget->toolTip().isEmpty(), text) << shown;
  }
  TToolBar* bar = Supports<INTAServices>(BorlandIDEServices)->GetToolBar("StandardToolBar");
  EXPECT_NE(bar->Buttons(0)->toolTip().indexOf("Ctrl+N"), -1);
}

TEST_F(ToolsApi, ProjectListsItsModulesAndOpensThem) {
  ASSERT_TRUE(Workbench->Documents().OpenProject(WriteProject()));
  IOTAProject* project = Project();
  ASSERT_NE(project, nullptr);
  std::string listed;
  for (int i = 0; i < project->GetModuleCount(); ++i) {
    IOTAModuleInfo* info = project->GetModule(i);
    listed += info->GetName() + ":" + info->GetFormName() + " ";
  }
  EXPECT_EQ(listed, "Main:MainForm Child:ChildForm Tools: ");
  EXPECT_EQ(project->GetModule(3), nullptr);

  IOTAModule* module = project->GetModule(1)->OpenModule();
  ASSERT_NE(module, nullptr);
  ASSERT_EQ(module->GetModuleFileCount(), 2);
  EXPECT_EQ(module->GetModuleFileEditor(0)->GetFileName(), FileOf("Child"));
  EXPECT_EQ(module->GetOwner(0), project);
  const auto form = Supports<INTAFormEditor>(module->GetModuleFileEditor(1));
  ASSERT_TRUE(form);
  const TComponent* root = form->GetFormDesigner()->GetRoot();
  EXPECT_EQ(root->Name(), "ChildForm");
  EXPECT_TRUE(IsFormClass(root->GetClassInfo())) << "the chain through the other unit is not known";
  EXPECT_EQ(root->GetClassInfo().Parent()->Name(), "TMainForm");
}

TEST_F(ToolsApi, BrokenFormGivesNoRootAndOneMessage) {
  const std::string file = Folder.Write("A.pas", "unit A;\r\n");
  Folder.Write("A.dfm", "object A: TA\r\n  Caption = 'broken\r\n");
  OpenPage(file);
  const TModule* module = Workbench->Workspace().Find(file);
  EXPECT_EQ(module->FormEditor()->GetRootComponent(), nullptr);
  EXPECT_EQ(module->FormEditor()->GetFormDesigner(), nullptr);
  EXPECT_TRUE(HasMessage("A.dfm"));
  EXPECT_EQ(Workbench->Messages().Count(), 1);
}

TEST_F(ToolsApi, TabsRewrittenByOthersKeepThePageAndItsText) {
  for (const char* name : {"A", "B", "C"}) OpenPage(Folder.Write(std::string(name) + ".pas", name));
  TTabControl& tabs = Workbench->EditWindow().Tabs();
  TStringList turned;
  for (int i = 2; i >= 0; --i) turned.AddObject(tabs.Tabs()->Get(i), tabs.Tabs()->GetObject(i));
  tabs.SetTabs(&turned);
  tabs.SetTabIndex(0);
  Application().ProcessMessages();
  EXPECT_EQ(EditorText(Workbench->EditWindow().Editor()), "C") << "the page that shows changed";
  EXPECT_EQ(tabs.tabToolTip(2).toStdString(), Folder.Path() + "/A.pas");
  // As a user's click does.
  tabs.SetTabIndex(2);
  tabs.Change();
  EXPECT_EQ(EditorText(Workbench->EditWindow().Editor()), "A");
}

TEST_F(ToolsApi, ViewsRememberTheirCursors) {
  TEditPage& first = OpenPage(Folder.Write("A.pas", "one\r\ntwo\r\nthree\r\n"));
  Run("ViewNewEditWindowCommand");
  TEditPage& second = *Workbench->EditWindow().ActivePage();
  second.View().SetCursorPos(3, 2);
  first.View().SetCursorPos(2, 3);
  int line = 0, column = 0;
  for (const auto& [page, expected] : {std::pair(&first, 2), std::pair(&second, 3)}) {
    Workbench->EditWindow().Activate(*page);
    page->View().GetCursorPos(line, column);
    EXPECT_EQ(line, expected);
  }
}

TEST_F(ToolsApi, HeldNotifiersHearOfSavesAndOfTheEnd) {
  class TNotifier : public TInterfacedObject<IOTANotifier> {
   public:
    explicit TNotifier(std::string& heard) : FHeard(heard) {}
    void AfterSave() override { FHeard += "after "; }
    void BeforeSave() override { FHeard += "before "; }
    void Destroyed() override { FHeard += "end "; }
    void Modified() override { FHeard += "modified "; }

   private:
    std::string& FHeard;
  };
  std::string heard;
  TEditPage& page = OpenPage(Folder.Write("A.pas", "one"));
  page.Source().AddNotifier(new TNotifier(heard));
  Type("x");
  Workbench->Documents().SaveAll();
  page.Source().GetModule()->Close();
  EXPECT_EQ(heard, "modified before after end ");
}

}  // namespace
}  // namespace wrenfold
