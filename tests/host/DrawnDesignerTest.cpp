// The drawn designer in the workbench: one selection everywhere, changes that are undone and saved.
#include <QTest>
#include <QTextBlock>

#include "host/HostTest.h"
#include "platform/widgets/Desktop.h"

namespace wrenfold {
namespace {

constexpr const char* MainForm =
    "object MainForm: TMainForm\r\n  Left = 10\r\n  BorderStyle = bsNone\r\n  Caption = 'Main'\r\n"
    "  ClientWidth = 300\r\n  ClientHeight = 200\r\n  ActiveControl = Button1\r\n"
    "  object Panel: TPanel\r\n    Left = 8\r\n    Top = 8\r\n    Width = 120\r\n    Height = "
    "80\r\n"
    "    object Button1: TButton\r\n      Left = 16\r\n      Top = 16\r\n    end\r\n  end\r\n"
    "  object Edit1: TEdit\r\n    Left = 160\r\n    Top = 16\r\n  end\r\nend\r\n";

// The edit has no field, as users leave them out.
constexpr const char* MainUnit =
    "unit Main;\r\ninterface\r\nuses Forms;\r\ntype\r\n  TMainForm = class(TForm)\r\n"
    "    Panel: TPanel;\r\n    Button1: TButton;\r\n  private\r\n  end;\r\nimplementation\r\n"
    "end.\r\n";

class DrawnDesigner : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    const std::string project = WriteProject();
    Folder.Write("Main.dfm", MainForm);
    Folder.Write("Main.pas", MainUnit);
    ASSERT_TRUE(Workbench->Documents().OpenProject(project));
    Editor = Workbench->Documents().OpenModule(FileOf("Main"))->FormEditor();
    Editor->Show();
    Designer = Workbench->Designers().Find(*Editor);
    ASSERT_NE(Designer, nullptr);
  }
  TDesignSurface& Surface() { return Designer->Surface(); }
  const TDesignComponent& At(const char* name) {
    return *dynamic_cast<TDesignComponent*>(Editor->FindComponent(name));
  }
  void Click(const char* name, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseClick(&Surface(), Qt::LeftButton, modifiers, Surface().PlaceOf(At(name)).center());
  }
  void Key(int key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&Surface(), static_cast<Qt::Key>(key), modifiers);
  }
  std::string Inspected() {
    return Workbench->Inspector().Components().currentText().toStdString();
  }
  std::string SavedForm() {
    EXPECT_TRUE(Workbench->Documents().SaveAll());
    return Folder.Read(Folder.Path() + "/Main.dfm");
  }
  static std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
  }

  TFormEditor* Editor = nullptr;
  TDesignerForm* Designer = nullptr;
};

TEST_F(DrawnDesigner, OneSelectionInFormTreeAndInspector) {
  Click("Button1");
  EXPECT_EQ(Inspected(), "Button1: TButton");
  auto* tree = Designer->findChild<QTreeWidget*>("ComponentTree");
  EXPECT_EQ(tree->currentItem()->text(0).toStdString(), "Button1: TButton");
  Editor->Designer().SelectComponent(Editor->FindComponent("Edit1"));
  ASSERT_EQ(Surface().Selection().size(), 1u);
  EXPECT_EQ(Surface().Selection()[0], &At("Edit1"));
  Click("Button1", Qt::ControlModifier);
  EXPECT_EQ(Editor->Designer().GetSelections().size(), 2u);
}

TEST_F(DrawnDesigner, MovedComponentChangesItsLinesAloneAndUndoGivesTheFileBack) {
  Click("Edit1");
  for (int press = 0; press < 3; ++press) Key(Qt::Key_Right, Qt::ControlModifier);
  EXPECT_TRUE(Editor->Modified());
  EXPECT_EQ(Designer->Caption(), "MainForm *");
  EXPECT_EQ(SavedForm(), Replaced(MainForm, "Left = 160", "Left = 163"));
  // A run of presses is one step, which does not go on across the saved state.
  Key(Qt::Key_Right, Qt::ControlModifier);
  Key(Qt::Key_Right, Qt::ControlModifier);
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_FALSE(Editor->Modified());
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_TRUE(Editor->Modified()) << "the file has the moved component";
  EXPECT_EQ(SavedForm(), MainForm);
}

TEST_F(DrawnDesigner, InspectorAndDesignerShareOneUndo) {
  Editor->Document()->History().Begin("Change");
  Editor->Document()->History().SetInteger(
      *dynamic_cast<TDesignComponent*>(Editor->FindComponent("Panel")), "Width", 140);
  Editor->Document()->History().Commit();
  Click("Edit1");
  Key(Qt::Key_Down, Qt::ShiftModifier);
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_TRUE(At("Edit1").FindValue("Height").empty()) << "what was not stored is gone again";
  EXPECT_EQ(StoredInteger(At("Panel").FindValue("Width"), 0), 140);
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_FALSE(Editor->Modified());
  Key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(StoredInteger(At("Panel").FindValue("Width"), 0), 140);
}

TEST_F(DrawnDesigner, DeletedComponentsComeBackWithWhatIsInThem) {
  Click("Button1", Qt::ControlModifier);
  Click("Button1");
  Key(Qt::Key_Escape);
  Key(Qt::Key_Delete);
  EXPECT_EQ(Editor->FindComponent("Button1"), nullptr);
  EXPECT_EQ(Inspected(), "MainForm: TMainForm");
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_NE(Editor->FindComponent("Button1"), nullptr);
  EXPECT_EQ(SavedForm(), MainForm);
}

TEST_F(DrawnDesigner, PastedCopyHasAFreeNameAndIsSelected) {
  Click("Button1");
  Key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_TRUE(ClipboardText().starts_with("object Button1: TButton"));
  Key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Inspected(), "Button2: TButton");
  EXPECT_EQ(At("Button2").GetParentComponent(), Editor->FindComponent("Panel"));
  EXPECT_EQ(StoredInteger(At("Button2").FindValue("Left"), 0), 24);
}

TEST_F(DrawnDesigner, FieldsFollowComponentsThroughUndoAndRedo) {
  TUnitDocument& unit = Document(FileOf("Main"));
  Click("Button1");
  Key(Qt::Key_Escape);
  Key(Qt::Key_Delete);
  const std::string without =
      Replaced(MainUnit, "    Panel: TPanel;\r\n    Button1: TButton;\r\n", "");
  EXPECT_EQ(unit.Text(), without);
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(unit.Text(), MainUnit);
  EXPECT_FALSE(Workbench->Documents().Modified()) << "all was taken back";
  Key(Qt::Key_Y, Qt::ControlModifier);
  EXPECT_EQ(unit.Text(), without);
  // The unit was changed in between: the fields come back all the same.
  unit.Replace(0, 0, "// mine\r\n");
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(unit.Text(), std::string("// mine\r\n") + MainUnit);
}

TEST_F(DrawnDesigner, ComponentWithoutAFieldGetsNoneByUndoAndAPastedOneGetsOne) {
  TUnitDocument& unit = Document(FileOf("Main"));
  Click("Button1");
  Key(Qt::Key_C, Qt::ControlModifier);
  Key(Qt::Key_V, Qt::ControlModifier);
  const std::string pasted = Replaced(MainUnit, "    Button1: TButton;\r\n",
                                      "    Button1: TButton;\r\n    Button2: TButton;\r\n");
  EXPECT_EQ(unit.Text(), pasted);
  Click("Edit1");
  Key(Qt::Key_Delete);
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(unit.Text(), pasted) << "undo of a step without fields took an older one back";
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(unit.Text(), MainUnit);
}

TEST_F(DrawnDesigner, FieldsOfACppFormStandInItsHeader) {
  const std::string header =
      "class TCppForm : public TForm\n{\n__published:\n\tTEdit *Edit1;\nprivate:\n};\n";
  Folder.Write("Cpp.h", header);
  const std::string unit = Folder.Write("Cpp.cpp", "#include \"Cpp.h\"\n");
  Folder.Write("Cpp.dfm", "object CppForm: TCppForm\r\n  object Edit1: TEdit\r\n  end\r\nend\r\n");
  TFormEditor* form = Workbench->Documents().OpenModule(unit)->FormEditor();
  TDesignComponent& edit = *dynamic_cast<TDesignComponent*>(form->FindComponent("Edit1"));
  form->Change({TFormEdits::Change(edit, NameOfComponent, "edName")});
  EXPECT_EQ(Document(Folder.Path() + "/Cpp.h").Text(), Replaced(header, "*Edit1", "*edName"));
  TFormHistory& history = form->Document()->History();
  history.Begin("Delete");
  history.Remove(edit);
  history.Commit();
  EXPECT_EQ(Document(Folder.Path() + "/Cpp.h").Text(), Replaced(header, "\tTEdit *Edit1;\n", ""));
}

TEST_F(DrawnDesigner, RenamedComponentTakesItsFieldAndReferencesAlong) {
  Editor->Change({TFormEdits::Change(At("Button1"), NameOfComponent, "btOK")});
  EXPECT_EQ(Document(FileOf("Main")).Text(), Replaced(MainUnit, "Button1: ", "btOK: "));
  EXPECT_EQ(Editor->Document()->Text(),
            Replaced(Replaced(MainForm, "object Button1", "object btOK"), "= Button1", "= btOK"));
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Document(FileOf("Main")).Text(), MainUnit);
  EXPECT_EQ(Editor->Document()->Text(), MainForm);
}

TEST_F(DrawnDesigner, TextTabFollowsChanges) {
  auto* tabs = Designer->findChild<QTabWidget*>("DesignerTabs");
  auto* text = Designer->findChild<QPlainTextEdit*>("FormText");
  tabs->setCurrentWidget(text);
  Editor->Designer().SelectComponent(Editor->FindComponent("Edit1"));
  EXPECT_FALSE(text->extraSelections().isEmpty());
  EXPECT_EQ(text->textCursor().block().text().trimmed().toStdString(), "object Edit1: TEdit");
  tabs->setCurrentIndex(0);
  Key(Qt::Key_Right, Qt::ControlModifier);
  tabs->setCurrentWidget(text);
  EXPECT_TRUE(text->toPlainText().contains("Left = 161"));
}

TEST_F(DrawnDesigner, CommandsThatDoNotApplyAreNotToBeHad) {
  const auto enabled = [&](const char* name) {
    return Designer->findChild<QAction*>(name)->isEnabled();
  };
  SetClipboardText("no component");
  Editor->Designer().SelectComponent(Editor->GetRootComponent());
  for (const char* name :
       {"dsUndo", "dsRedo", "dsCut", "dsPaste", "dsDelete", "dsLefts", "dsFront"})
    EXPECT_FALSE(enabled(name)) << name;
  EXPECT_TRUE(enabled("dsSelectAll"));
  Click("Edit1");
  Key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_TRUE(enabled("dsPaste"));
  EXPECT_TRUE(enabled("dsFront"));
  EXPECT_FALSE(enabled("dsLefts")) << "there is nothing to align one component to";
  Click("Button1", Qt::ControlModifier);
  EXPECT_TRUE(enabled("dsLefts"));
  EXPECT_FALSE(enabled("dsSpaceAcross"));
  Key(Qt::Key_Delete);
  EXPECT_TRUE(enabled("dsUndo"));
}

TEST_F(DrawnDesigner, InheritedComponentIsMovedByAnOverrideAlone) {
  const std::string before = Folder.Read(Folder.Path() + "/Child.dfm");
  TFormEditor* child = Workbench->Documents().OpenModule(FileOf("Child"))->FormEditor();
  child->Show();
  Designer = Workbench->Designers().Find(*child);
  const auto place = [&](const char* name) {
    const TBounds bounds = Surface().Form()->Find(name)->BoundsInForm();
    return QPoint(16 + bounds.Left + 4, 16 + bounds.Top + 4);
  };
  QTest::mouseClick(&Surface(), Qt::LeftButton, {}, place("Button1"));
  EXPECT_EQ(Inspected(), "Button1: TButton");
  EXPECT_EQ(child->Document()->Text(), before) << "choosing alone says something in the file";
  Key(Qt::Key_Right, Qt::ControlModifier);
  EXPECT_EQ(child->Document()->Text(),
            "inherited ChildForm: TChildForm\r\n  Left = 3\r\n  inherited Panel: TPanel\r\n"
            "    inherited Button1: TButton\r\n      Left = 17\r\n    end\r\n  end\r\nend\r\n");
  EXPECT_FALSE(Designer->findChild<QAction*>("dsDelete")->isEnabled()) << "it is the base's";
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(child->Document()->Text(), before);
}

TEST_F(DrawnDesigner, UnsavedChangesOfTheBaseShowInTheDerivedForm) {
  TFormEditor* child = Workbench->Documents().OpenModule(FileOf("Child"))->FormEditor();
  child->Show();
  const TDesignSurface& derived = Workbench->Designers().Find(*child)->Surface();
  Click("Edit1");
  Key(Qt::Key_Right, Qt::ControlModifier);
  EXPECT_EQ(derived.Form()->Find("Edit1")->Bounds.Left, 161);
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(derived.Form()->Find("Edit1")->Bounds.Left, 160);
  Key(Qt::Key_Delete);
  EXPECT_EQ(derived.Form()->Find("Edit1"), nullptr);
  Editor->Module()->Interface()->CloseModule(true);
  EXPECT_NE(derived.Form()->Find("Edit1"), nullptr) << "what was lost with the base still shows";
}

TEST_F(DrawnDesigner, InheritedFormIsDrawnWithItsBase) {
  TFormEditor* child = Workbench->Documents().OpenModule(FileOf("Child"))->FormEditor();
  child->Show();
  const TComposedForm* form = Workbench->Designers().Find(*child)->Surface().Form();
  ASSERT_NE(form->Find("Button1"), nullptr);
  EXPECT_EQ(form->Root().Client.Width, 300);
}

}  // namespace
}  // namespace wrenfold
