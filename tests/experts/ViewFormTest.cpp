// Tests the module viewer by its keys: list, preview, what is opened, the environment's buttons.
#include <gmock/gmock.h>

#include <QTemporaryDir>
#include <QTimer>
#include <QtTest/QTest>
#include <deque>

#include "FakeEnvironment.h"
#include "experts/rkViewForm.h"
#include "manager/rkExpMng.h"
#include "platform/core/stream/FormText.h"
#include "platform/core/system/Files.h"
#include "platform/widgets/Button.h"

namespace wrenfold {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char FormText[] = "object MainForm: TMainForm\r\n  Left = 1\r\nend\r\n";

class ViewForm : public testing::Test {
 protected:
  ViewForm()
      : Before(SetMessageDlgProc([this](const std::string& text, TMsgDlgType, TMsgDlgButtons) {
          Questions.push_back(text);
          return Answer;
        })) {
    InitExpManager(Directory.path().toStdString() + "/");
    RegisterFormView();
    RegisterExpManager();
    Settle();
    Environment.AddProject("Demo");
  }
  ~ViewForm() override {
    TFakeEnvironment::Wizard = nullptr;
    DoneExpManager();
    SetMessageDlgProc(Before);
  }
  static void Settle() {
    for (int round = 0; round < 3; ++round) Application().ProcessMessages();
  }
  std::string Path(const std::string& name) { return Directory.path().toStdString() + "/" + name; }

  TViewFormMng& Expert() {
    return static_cast<TViewFormMng&>(*CurrentManager()->Experts().Get(0).Expert);
  }
  struct TUnit {
    TFakeModuleInfo* Info;
    TFakeModule* Module;
    TIntf<TFakeFormEditor> FormEditor;
    TForm* Root = nullptr;
  };
  // A unit of the project whose form, when it has one, is a window of its own.
  TUnit& Add(const std::string& unit, const std::string& form, const std::string& stored = {}) {
    const std::string file = Path(unit + ".pas");
    TUnit& added = Units.emplace_back(new TFakeModuleInfo, new TFakeModule(file));
    added.Info->Unit = unit;
    added.Info->File = file;
    added.Info->Form = form;
    added.Info->Module = TIntf<IOTAModule>(added.Module);
    added.Module->Source->Text = "unit " + unit + ";";
    TFakeModule* module = added.Module;
    added.Info->OnOpen = [this, module] {
      for (const auto& open : Environment.Modules)
        if (open.get() == module) return;
      Environment.Modules.emplace_back(module);
      Environment.Log.push_back("open " + module->FileName.substr(module->FileName.rfind('/') + 1));
    };
    module->OnClose = [this, module] {
      Environment.Log.push_back("close " +
                                module->FileName.substr(module->FileName.rfind('/') + 1));
      std::erase_if(Environment.Modules, [&](const auto& open) { return open.get() == module; });
      return true;
    };
    module->Source->OnShow = [this, unit] { Environment.Log.push_back("show " + unit); };
    Environment.Project->Infos.emplace_back(added.Info);
    if (form.empty()) return added;
    added.Root = Roots.emplace_back(NewForm<TForm>()).get();
    added.Root->SetName(form);
    added.Root->setGeometry(30, 40, 220, 170);
    added.FormEditor = TIntf<TFakeFormEditor>(new TFakeFormEditor(Path(unit + ".dfm"), added.Root));
    module->Editors.emplace_back(static_cast<IOTAFormEditor*>(added.FormEditor.get()));
    SafeWriteFile(Path(unit + ".dfm"), stored.empty() ? std::string("\xFF\x0A") : stored);
    return added;
  }
  // Opens the viewer by its key from the editor and runs the steps in it.
  void Run(int key, const std::function<void(TViewForm&)>& steps) {
    QTimer::singleShot(0, [&] {
      Guarded(nullptr, [&] {
        Form = dynamic_cast<TViewForm*>(QApplication::activeModalWidget());
        ASSERT_NE(Form, nullptr);
        QTest::qWait(60);
        steps(*Form);
        if (Form && Form->ModalResult() == mrNone) Press(Qt::Key_Escape);
      });
    });
    QTest::keyClick(Environment.Editor, static_cast<Qt::Key>(key), Qt::ControlModifier);
    Settle();
  }
  void Press(int key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(Form->focusWidget(), static_cast<Qt::Key>(key), modifiers);
    QTest::qWait(60);
  }
  static std::string ListTexts(const TViewForm& form) {
    std::string texts;
    for (int i = 0; i < form.Modules().Count(); ++i)
      texts += (i > 0 ? " " : "") + form.Modules()[i].Name;
    return texts;
  }

  QTemporaryDir Directory;
  TFakeEnvironment Environment;
  std::deque<std::unique_ptr<TForm>> Roots;
  std::deque<TUnit> Units;
  std::vector<std::string> Questions;
  TMsgDlgBtn Answer = mbNo;
  TMessageDlgProc Before;
  QPointer<TViewForm> Form;
};

TEST_F(ViewForm, OpensAllSelectedModulesInListOrder) {
  for (const char* unit : {"Gamma", "Alpha", "Beta"}) Add(unit, "");
  Run(Qt::Key_A, [&](TViewForm& form) {
    EXPECT_EQ(ListTexts(form), "Alpha Beta Gamma");
    EXPECT_EQ(form.Caption(), "View Units");
    form.ModuleList()->selectionModel()->clear();
    Press(Qt::Key_Home);
    Press(Qt::Key_End);
    Press(Qt::Key_Up, Qt::ShiftModifier);
    Press(Qt::Key_Return);
  });
  EXPECT_EQ(Form, nullptr);
  EXPECT_THAT(Environment.Log, testing::Contains("show Beta"));
  EXPECT_THAT(Environment.Log, testing::Contains("show Gamma"));
  EXPECT_THAT(Environment.Log, testing::Not(testing::Contains("show Alpha")));
}

TEST_F(ViewForm, OkWithoutSelectionAndCurrentItemOpensTheFirst) {
  for (const char* unit : {"Beta", "Alpha"}) Add(unit, "");
  Run(Qt::Key_A, [&](TViewForm& form) {
    form.ModuleList()->selectionModel()->clear();
    Press(Qt::Key_Return);
  });
  EXPECT_THAT(Environment.TakeLog(), testing::EndsWith("open Alpha.pas, show Alpha"));
  Run(Qt::Key_A, [&](TViewForm&) { Press(Qt::Key_Escape); });
  EXPECT_EQ(Environment.TakeLog(), "") << "Escape opens nothing, the open module stays";
}

TEST_F(ViewForm, PreviewsWhileOneMovesAndClosesWhatItOpened) {
  TUnit& first = Add("First", "FormA");
  TUnit& second = Add("Second", "FormB");
  Environment.Modules.emplace_back(second.Module);
  second.Root->Show();
  Settle();
  Environment.TakeLog();
  Run(Qt::Key_D, [&](TViewForm& form) {
    EXPECT_EQ(form.Caption(), "View Forms");
    Press(Qt::Key_Home);
    EXPECT_TRUE(form.isAncestorOf(first.Root));
    EXPECT_TRUE(first.Root->isVisible());
    EXPECT_EQ(first.Root->size(), QSize(220, 170));
    EXPECT_FALSE(first.Root->Enabled()) << "the form takes input in the preview";
    EXPECT_EQ(form.FormKind(), "BIN");
    EXPECT_EQ(Environment.TakeLog(), "open First.pas");
    Press(Qt::Key_Down);
    EXPECT_EQ(Environment.TakeLog(), "close First.pas");
    EXPECT_EQ(first.Root->parentWidget(), nullptr);
    EXPECT_FALSE(first.Root->isVisible());
    EXPECT_TRUE(form.isAncestorOf(second.Root));
  });
  EXPECT_EQ(Environment.TakeLog(), "") << "a module that was open is not closed";
  EXPECT_EQ(second.Root->parentWidget(), nullptr);
  EXPECT_EQ(second.Root->geometry(), QRect(30, 40, 220, 170));
  EXPECT_TRUE(second.Root->isVisible());
  EXPECT_TRUE(second.Root->Enabled());
}

TEST_F(ViewForm, APreviewThatIsChosenStaysOpen) {
  TUnit& unit = Add("First", "FormA");
  Run(Qt::Key_D, [&](TViewForm&) {
    Press(Qt::Key_Home);
    Press(Qt::Key_Return);
  });
  EXPECT_EQ(Environment.TakeLog(), "open First.pas");
  EXPECT_EQ(unit.FormEditor->Shown, 1);
}

TEST_F(ViewForm, TellsWhatStandsInTheWayOfAPreview) {
  Add("A", "Binary");
  Add("B", "Frame").Info->DesignClass = "TFrame";
  Add("C", "Text", FormText);
  auto data = TDataModule();
  Add("D", "Windowless").FormEditor->Designer->Root = &data;
  const struct {
    int Row;
    const char *Kind, *Warning, *Designed;
  } rows[] = {{0, "BIN", "", ""},
              {1, "BIN", "Frames are not supported.", ""},
              {2, "TXT", "Text forms are not supported.", ""},
              {3, "BIN", "CLX forms are not supported.", "CLX forms are not supported."}};
  Run(Qt::Key_D, [&](TViewForm& form) {
    // In the order of the names: Binary, Frame, Text, Windowless.
    for (const auto& row : rows) {
      Press(row.Row == 0 ? Qt::Key_Home : Qt::Key_Down);
      EXPECT_EQ(form.FormKind(), row.Kind) << row.Row;
      EXPECT_EQ(form.Warning(), row.Warning) << row.Row;
    }
  });
  Environment.Designed = {dkTextForms, dkFrames};
  Run(Qt::Key_D, [&](TViewForm& form) {
    for (const auto& row : rows) {
      Press(row.Row == 0 ? Qt::Key_Home : Qt::Key_Down);
      EXPECT_EQ(form.Warning(), row.Designed) << row.Row;
    }
  });
}

TEST_F(ViewForm, ATextFormIsConvertedWhenTheUserWantsItAndTheTextIsKept) {
  TUnit& unit = Add("C", "Text", FormText);
  const auto choose = [&] {
    Run(Qt::Key_D, [&](TViewForm&) {
      Press(Qt::Key_Home);
      Press(Qt::Key_Return);
    });
  };
  choose();
  ASSERT_EQ(Questions.size(), 1u);
  EXPECT_EQ(Questions[0],
            "Text forms are not supported in Delphi4 IDE.Do you want to convert selected form "
            "resource to binary format?");
  EXPECT_EQ(unit.FormEditor->Shown, 0) << "opened as unit";
  EXPECT_EQ(ReadWholeFile(Path("C.dfm")), FormText);
  Answer = mbYes;
  SafeWriteFile(Path("C_txt.dfm"), "old");
  Environment.TakeLog();
  choose();
  EXPECT_EQ(TestFormFormat(ReadWholeFile(Path("C.dfm"))), TFormFormat::Resource);
  EXPECT_EQ(ReadWholeFile(Path("C_txt.dfm")), FormText);
  EXPECT_THAT(Environment.TakeLog(), testing::HasSubstr("close C.pas"))
      << "loaded from the old file";
  EXPECT_EQ(unit.FormEditor->Shown, 1);
}

TEST_F(ViewForm, AFailedConversionLeavesTheFileAndOpensTheForm) {
  TUnit& unit = Add("C", "Text", "object Broken");
  Answer = mbYes;
  Run(Qt::Key_D, [&](TViewForm&) { Press(Qt::Key_Return); });
  EXPECT_EQ(ReadWholeFile(Path("C.dfm")), "object Broken");
  EXPECT_EQ(unit.FormEditor->Shown, 1);
}

TEST_F(ViewForm, AnEnvironmentThatDesignsThemIsAskedNothing) {
  TUnit& text = Add("C", "Text", FormText);
  TUnit& frame = Add("D", "Frame");
  frame.Info->DesignClass = "TFrame";
  Environment.Designed = {dkTextForms, dkFrames};
  Run(Qt::Key_D, [&](TViewForm& form) {
    form.ModuleList()->selectAll();
    Press(Qt::Key_Return);
  });
  EXPECT_THAT(Questions, IsEmpty());
  EXPECT_EQ(text.FormEditor->Shown, 1);
  EXPECT_EQ(frame.FormEditor->Shown, 1);
}

TEST_F(ViewForm, FiltersByRankAndOpensTheFirstVisible) {
  for (const char* unit : {"Domain", "MainUnit", "Other"}) Add(unit, "");
  Expert().SetFocusToModules = false;
  Run(Qt::Key_A, [&](TViewForm& form) {
    EXPECT_EQ(form.focusWidget(), form.FilterEdit());
    QTest::keyClicks(form.FilterEdit(), "main");
    EXPECT_EQ(ListTexts(form), "MainUnit Domain");
    Press(Qt::Key_Down);
    EXPECT_EQ(form.ModuleList()->currentIndex().row(), 1) << "down moves in the list";
    Press(Qt::Key_Up);
    Press(Qt::Key_Return);
  });
  EXPECT_THAT(Environment.TakeLog(), testing::HasSubstr("show MainUnit"));
}

TEST_F(ViewForm, AnotherModeSelectsTheLinkedModuleWhenSynchronised) {
  Add("Alpha", "FormZ");
  Add("Beta", "FormA");
  for (const bool synchronised : {false, true}) {
    Expert().SynchronizeModules = synchronised;
    Run(Qt::Key_A, [&](TViewForm& form) {
      Press(Qt::Key_Home);
      form.SetViewMode(svmForm);
      EXPECT_EQ(ListTexts(form), "FormA FormZ");
      EXPECT_EQ(form.ModuleList()->currentIndex().row(), synchronised ? 1 : -1);
    });
  }
}

TEST_F(ViewForm, ASourceIsReadOnlyUnlessAllowedAndSavedWhenThePreviewMovesOn) {
  TUnit& unit = Add("Alpha", "");
  Add("Beta", "");
  const auto type = [&](TViewForm& form) {
    Press(Qt::Key_Home);
    EXPECT_EQ(form.SourcePreview()->text(), "unit Alpha;");
    form.SourcePreview()->setFocus();
    QTest::keyClicks(form.SourcePreview(), "// ");
    form.ModuleList()->setFocus();
    Press(Qt::Key_Down);
  };
  Run(Qt::Key_A, type);
  EXPECT_EQ(unit.Module->Source->Text, "unit Alpha;");
  Expert().EditorReadOnly = false;
  Run(Qt::Key_A, type);
  EXPECT_EQ(unit.Module->Source->Text, "// unit Alpha;");
  EXPECT_EQ(unit.Module->Saved, 0);
  unit.Module->Source->Text = "unit Alpha;";
  Expert().EditorAutoSave = true;
  Run(Qt::Key_A, type);
  EXPECT_EQ(unit.Module->Saved, 1);
}

TEST_F(ViewForm, AQuestionAboutAPreviewIsAnsweredNoUnseen) {
  TUnit& unit = Add("Alpha", "");
  Add("Beta", "");
  auto close = unit.Module->OnClose;
  TModalResult answered = mrNone;
  unit.Module->OnClose = [&] {
    const std::unique_ptr<TForm> question(
        CreateMessageDialog("Save?", mtConfirmation, {mbYes, mbNo, mbCancel}));
    QTimer::singleShot(2000, question.get(), [&] { question->SetModalResult(mrCancel); });
    answered = question->ShowModal();
    return close();
  };
  Run(Qt::Key_A, [&](TViewForm&) {
    Press(Qt::Key_Home);
    Press(Qt::Key_Down);
    Settle();
  });
  EXPECT_EQ(answered, mrNo);
}

TEST_F(ViewForm, MoreFoldsTheSwitchesOutAndRemembersIt) {
  Add("Alpha", "");
  Run(Qt::Key_A, [&](TViewForm& form) {
    auto* more = dynamic_cast<TButton*>(form.FindComponent("btMore"));
    auto* panel = form.findChild<QWidget*>("MorePanel");
    EXPECT_EQ(more->Caption(), "More >>");
    const int height = form.QWidget::height();
    more->Click();
    EXPECT_EQ(more->Caption(), "More <<");
    EXPECT_TRUE(panel->isVisible());
    EXPECT_GT(form.QWidget::height(), height);
    QTest::mouseClick(form.findChild<QCheckBox*>("cbGrouped"), Qt::LeftButton, {}, QPoint(8, 8));
  });
  EXPECT_TRUE(Expert().FormEnhancedState);
  EXPECT_TRUE(Expert().GroupedUnits);
}

TEST_F(ViewForm, TakesTheButtonsOverOnceAndGivesThemBack) {
  TToolBar bar(nullptr, Environment.MainForm);
  bar.SetName("ViewToolBar");
  Environment.ToolBar = &bar;
  struct TClicks : TObject {
    void Click(TObject*) { ++Count; }
    int Count = 0;
  } clicks;
  TToolButton unit(nullptr, &bar), form(nullptr, &bar), other(nullptr, &bar);
  unit.SetCaption("View Unit");
  form.SetCaption("View Form");
  other.SetCaption("View unit");
  for (TToolButton* button : {&unit, &form, &other})
    Bind<&TClicks::Click>(button->OnClick, &clicks);
  const TNotifyEvent before = unit.OnClick;
  Expert().SetToolBarUpdated(true);
  Expert().SetToolBarUpdated(true);
  EXPECT_EQ(unit.OnClick, before) << "inside the environment's own handling";
  Settle();
  EXPECT_NE(unit.OnClick, before);
  EXPECT_EQ(other.OnClick, before);
  bool shown = false;
  QTimer::singleShot(0, [&] {
    auto* window = dynamic_cast<TViewForm*>(QApplication::activeModalWidget());
    shown = window != nullptr && window->ViewMode() == svmForm;
    if (window != nullptr) window->Close();
  });
  form.Click();
  EXPECT_TRUE(shown);
  EXPECT_EQ(clicks.Count, 0);
  form.SetEnabled(false);
  EXPECT_FALSE(Expert().CheckFormViewState());
  Expert().SetToolBarUpdated(false);
  EXPECT_EQ(unit.OnClick, before);
  EXPECT_EQ(form.OnClick, before);
  Environment.ToolBar = nullptr;
}

TEST_F(ViewForm, AHandlerThatSomebodyKeptOutlivesTheExpert) {
  struct TClicks : TObject {
    void Change(TObject* sender) {
      ++Count;
      Kept(sender);
    }
    int Count = 0;
    TNotifyEvent Kept;
  } late;
  late.Kept = Screen().OnActiveFormChange;
  Bind<&TClicks::Change>(Screen().OnActiveFormChange, &late);
  TFakeEnvironment::Wizard = nullptr;
  Screen().OnActiveFormChange(&Screen());
  EXPECT_EQ(late.Count, 1);
  Screen().OnActiveFormChange = {};
}

}  // namespace
}  // namespace wrenfold
