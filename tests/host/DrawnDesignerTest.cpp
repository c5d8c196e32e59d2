// The drawn designer in the workbench: one selection everywhere, changes that are undone and saved.
#include <QTest>
#include <QTextBlock>

#include "host/HostTest.h"
#include "platform/widgets/Desktop.h"

namespace wrenfold {
namespace {

constexpr const char* MainForm =
    "object MainForm: TMainForm\r\n  Left = 10\r\n  BorderStyle = bsNone\r\n  Caption = 'Main'\r\n"
    "  ClientWidth = 300\r\n  ClientHeight = 200\r\n"
    "  object Panel: TPanel\r\n    Left = 8\r\n    Top = 8\r\n    Width = 120\r\n    Height = "
    "80\r\n"
    "    object Button1: TButton\r\n      Left = 16\r\n      Top = 16\r\n    end\r\n  end\r\n"
    "  object Edit1: TEdit\r\n    Left = 160\r\n    Top = 16\r\n  end\r\nend\r\n";

class DrawnDesigner : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    const std::string project = WriteProject();
    Folder.Write("Main.dfm", MainForm);
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
  Key(Qt::Key_Right, Qt::ControlModifier);
  EXPECT_TRUE(Editor->Modified());
  EXPECT_EQ(Designer->Caption(), "MainForm *");
  EXPECT_EQ(SavedForm(), Replaced(MainForm, "Left = 160", "Left = 161"));
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

TEST_F(DrawnDesigner, InheritedFormIsDrawnWithItsBase) {
  TFormEditor* child = Workbench->Documents().OpenModule(FileOf("Child"))->FormEditor();
  child->Show();
  const TComposedForm* form = Workbench->Designers().Find(*child)->Surface().Form();
  ASSERT_NE(form->Find("Button1"), nullptr);
  EXPECT_EQ(form->Root().Client.Width, 300);
}

}  // namespace
}  // namespace wrenfold
