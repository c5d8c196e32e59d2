// Designers: which one counts as the active one, what goes with one, and who is told.
#include "host/HostTest.h"
#include "platform/widgets/ToolBar.h"

namespace wrenfold {
namespace {

class Designers : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    ASSERT_TRUE(Workbench->Documents().OpenProject(WriteProject()));
  }
  TModule& Module(const char* unit) { return *Workbench->Documents().OpenModule(FileOf(unit)); }
  TFormEditor& FormOf(const char* unit) { return *Module(unit).FormEditor(); }
  TDesignerForm& Show(const char* unit) {
    FormOf(unit).Show();
    return *Workbench->Designers().Find(FormOf(unit));
  }
  std::string ProjectRow(const char* unit) {
    const auto rows =
        Workbench->ProjectPanel().Tree().findItems(unit, Qt::MatchStartsWith | Qt::MatchRecursive);
    return rows.isEmpty() ? std::string() : rows[0]->text(0).toStdString();
  }
};

TEST_F(Designers, ClosedOneTakesItsOwnModuleAndNoOther) {
  Module("Tools");  // as a package opens it: shown nowhere
  TDesignerForm& child = Show("Child");
  child.Close();
  Application().ProcessMessages();
  EXPECT_NE(Workbench->Workspace().Find(FileOf("Tools")), nullptr) << "another's module went";
  EXPECT_EQ(Workbench->Workspace().Find(FileOf("Child")), nullptr) << "nothing shows it any more";
  Show("Main").Close();
  Application().ProcessMessages();
  EXPECT_NE(Workbench->Workspace().Find(FileOf("Main")), nullptr) << "its page is still open";
}

TEST_F(Designers, DestroyedFromOutsideIsForgotten) {
  delete &Show("Child");
  EXPECT_EQ(FormOf("Child").GetFormDesigner()->GetDesignerForm(), nullptr);
  FormOf("Child").MarkModified();
  EXPECT_TRUE(Show("Child").isVisible());
  Workbench->Documents().SaveAll();
}

TEST_F(Designers, LastActivatedOneIsTheCurrentModuleAndIsInspected) {
  TDesignerForm& main = Show("Main");
  Show("Child");
  EXPECT_EQ(Workbench->Views().CurrentModule(), &Module("Child"));
  main.BringToFront();
  Application().ProcessMessages();
  EXPECT_EQ(Workbench->Views().CurrentModule(), &Module("Main"));
  EXPECT_EQ(Workbench->Inspector().Editor(), &FormOf("Main"));
  // The inspector serves the form; being in it does not leave the form.
  Run("ViewInspectorCommand");
  Application().ProcessMessages();
  EXPECT_EQ(Workbench->Views().ActiveDesigner(), &main);
  Run("ViewEditorCommand");
  Application().ProcessMessages();
  EXPECT_EQ(Workbench->Views().ActiveDesigner(), nullptr);
}

TEST_F(Designers, SelectingInAFormThatIsNotInspectedShowsIt) {
  TComponent* panel = FormOf("Main").FindComponent("Panel");
  Workbench->Inspector().ShowForm(nullptr);
  FormOf("Main").GetFormDesigner()->SelectComponent(panel);
  EXPECT_EQ(Workbench->Inspector().Editor(), &FormOf("Main"));
  EXPECT_EQ(Workbench->Inspector().Components().currentText().toStdString(), "Panel: TPanel");
}

TEST_F(Designers, ChangedFormIsMarkedInItsWindowAndInTheProject) {
  TDesignerForm& child = Show("Child");
  FormOf("Child").MarkModified();
  EXPECT_EQ(child.Caption(), "ChildForm *");
  EXPECT_TRUE(ProjectRow("Child").ends_with(" *")) << ProjectRow("Child");
  EXPECT_FALSE(ProjectRow("Main").ends_with(" *"));
  Workbench->Documents().SaveAll();
  EXPECT_FALSE(ProjectRow("Child").ends_with(" *"));
  EXPECT_EQ(Workbench->Window().statusBar()->currentMessage().toStdString(),
            Folder.Path() + "/Child.dfm is saved");
}

TEST_F(Designers, FormNotifierHearsOfActivationAndSelection) {
  class TNotifier : public TInterfacedObject<IOTAFormNotifier> {
   public:
    explicit TNotifier(std::string& heard) : FHeard(heard) {}
    HResult QueryInterface(const TGuid& iid, void** result) override {
      return QueryAmong<IOTAFormNotifier, IOTANotifier>(this, iid, result);
    }
    void AfterSave() override {}
    void BeforeSave() override {}
    void Destroyed() override { FHeard += "end "; }
    void Modified() override {}
    void FormActivated() override { FHeard += "activated "; }
    void ComponentRenamed(TComponent*, const std::string&, const std::string&) override {}
    void SelectionChanged() override { FHeard += "selected "; }

   private:
    std::string& FHeard;
  };
  std::string heard;
  FormOf("Child").AddNotifier(new TNotifier(heard));
  Show("Child");
  Show("Main");
  FormOf("Child").GetFormDesigner()->SelectComponent(FormOf("Child").GetRootComponent());
  Module("Child").Interface()->CloseModule(true);
  EXPECT_EQ(heard, "activated selected end ");
}

TEST_F(Designers, ToolButtonsKeepTheirCaptionsAndTheHandlersThatArePutOnThem) {
  TToolBar* bar = Supports<INTAServices>(BorlandIDEServices)->GetToolBar("ViewToolBar");
  Application().Idle();
  TToolButton* units = bar->Buttons(0);
  ASSERT_EQ(units->Caption(), "View Unit") << "the action's caption took its place";
  EXPECT_EQ(bar->Buttons(1)->Caption(), "View Form");
  EXPECT_TRUE(units->Enabled());
  struct TTaker {
    int Count = 0;
    void Click(TObject*) { ++Count; }
  } taker;
  const TNotifyEvent own = units->OnClick;
  ASSERT_TRUE(own) << "there is no handler to give back";
  Bind<&TTaker::Click>(units->OnClick, &taker);
  units->Click();
  units->OnClick = own;
  EXPECT_EQ(taker.Count, 1);
}

// Every way in which files come and go.
TEST_F(Designers, NotifiersOfTheEnvironmentHearOfEveryFile) {
  class TNotifier : public TInterfacedObject<IOTAIDENotifier> {
   public:
    std::string Heard;
    void AfterSave() override {}
    void BeforeSave() override {}
    void Destroyed() override {}
    void Modified() override {}
    void BeforeCompile(IOTAProject*, bool&) override {}
    void AfterCompile(bool) override {}
    void FileNotification(TOTAFileNotification code, const std::string& fileName, bool&) override {
      const char* words[] = {"opening", "opened", "closing"};
      if (code <= ofnFileClosing) Heard += std::string(words[code]) + " " + Name(fileName) + "; ";
    }
    static std::string Name(const std::string& file) { return file.substr(file.rfind('/') + 1); }
  };
  const TIntf<TNotifier> notifier(new TNotifier);
  const auto services = Supports<IOTAServices>(BorlandIDEServices);
  const int index = services->AddNotifier(notifier.get());
  struct TRow {
    const char* Way;
    std::function<void()> Do;
    const char* Heard;
  };
  TDocuments& documents = Workbench->Documents();
  const std::string project = Folder.Path() + "/Sample.dpr";
  const TRow rows[] = {
      {"module info", [&] { documents.Workspace().Project()->GetModule(2)->OpenModule(); },
       "opening Tools.pas; opened Tools.pas; "},
      {"open already", [&] { documents.OpenFile(FileOf("Tools")); }, ""},
      {"page", [&] { Workbench->Views().ClosePage(*Workbench->EditWindow().ActivePage()); },
       "closing Tools.pas; "},
      {"new unit", [&] { documents.NewUnit(TSourceLanguage::Pascal); }, "opened Unit1.pas; "},
      {"project closed", [&] { documents.CloseProject(); },
       "closing Sample.dpr; closing Main.pas; "},
      {"session", [&] { documents.OpenProject(project); },
       "opening Sample.dpr; opened Sample.dpr; opening Main.pas; opened Main.pas; "},
      {"all", [&] { documents.CloseAll(); },
       "closing Unit1.pas; closing Sample.dpr; closing Main.pas; "},
  };
  for (const TRow& row : rows) {
    notifier->Heard.clear();
    row.Do();
    EXPECT_EQ(notifier->Heard, row.Heard) << row.Way;
  }
  services->RemoveNotifier(index);
}

}  // namespace
}  // namespace wrenfold
