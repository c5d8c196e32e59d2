// The object inspector: what its rows do to the form file, to the designer and to the source.
#include "host/HostTest.h"

namespace wrenfold {
namespace {

class Inspector : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    ASSERT_TRUE(Workbench->Documents().OpenProject(WriteProject()));
  }
  QTreeWidgetItem* Row(const char* property) {
    return Workbench->Inspector()
        .Grid()
        .findItems(property, Qt::MatchExactly | Qt::MatchRecursive)
        .value(0);
  }
  std::string Value(const char* property) { return Row(property)->text(1).toStdString(); }
  void Put(const char* property, const char* value) {
    Row(property)->setText(1, value);
    Application().ProcessMessages();
  }
  TFormEditor& Form() { return *Workbench->Workspace().Find(FileOf("Main"))->FormEditor(); }
  std::string FormFile() { return Folder.Path() + "/Main.dfm"; }
  void DoubleClick(const char* property) {
    emit Workbench->Inspector().Grid().itemDoubleClicked(Row(property), 1);
    Application().ProcessMessages();
  }
};

TEST_F(Inspector, EditedValueChangesItsLineOfTheFormFileAlone) {
  std::string expected = Folder.Read(FormFile());
  expected.replace(expected.find("'Main'"), 6, "'It'#39's new'");
  Put("Caption", "It's new");
  EXPECT_TRUE(Workbench->Documents().SaveAll());
  EXPECT_EQ(Folder.Read(FormFile()), expected);
}

TEST_F(Inspector, WhatIsNoValueIsRefusedAtItsRowAndTheOldOneStays) {
  Put("Left", "'open");
  EXPECT_EQ(Value("Left"), "10");
  EXPECT_NE(Row("Left")->toolTip(1).indexOf("expected a whole number"), -1);
  Put("Name", "no name");
  EXPECT_EQ(Value("Name"), "MainForm");
  EXPECT_FALSE(Workbench->Documents().Modified());
}

TEST_F(Inspector, UndoTakesEachStrokeBackAndTheFormIsAsItWasSaved) {
  const std::string before = Folder.Read(FormFile());
  Run("ViewInspectorCommand");
  Put("Left", "11");
  Put("KeyPreview", "True");
  Put("Name", "Renamed");
  EXPECT_EQ(Form().GetRootComponent()->Name(), "Renamed");
  for (const char* expected : {"MainForm", "MainForm", "MainForm"}) {
    Run("EditUndoCommand");
    EXPECT_EQ(Value("Name"), expected);
  }
  EXPECT_EQ(Value("Left"), "10");
  EXPECT_FALSE(Form().Modified()) << "what was taken back still counts as a change";
  EXPECT_EQ(Form().Document()->Text(), before);
  for (int i = 0; i < 3; ++i) Run("EditRedoCommand");
  EXPECT_EQ(Value("Name"), "Renamed");
  EXPECT_EQ(Value("Left"), "11");
  Form().Undo();
  Workbench->Documents().SaveAll();
}

TEST_F(Inspector, OneValueGoesIntoAllSelectedComponents) {
  const std::string file = Folder.Write(
      "Two.dfm",
      "object Two: TTwo\r\n  object A: TButton\r\n    Left = 1\r\n  end\r\n"
      "  object B: TButton\r\n    Left = 2\r\n    Enabled = False\r\n  end\r\nend\r\n");
  ASSERT_TRUE(Workbench->Documents().OpenFile(file));
  TFormEditor& form = *Workbench->Workspace().Find(file)->FormEditor();
  IDesigner* designer = form.GetFormDesigner();
  designer->SetSelections({form.FindComponent("A"), form.FindComponent("B")});
  EXPECT_TRUE(Workbench->Inspector().Grid().findItems("Name", Qt::MatchExactly).isEmpty());
  EXPECT_EQ(Value("Left"), "");
  EXPECT_EQ(Row("Left")->toolTip(1).toStdString(), "The components have different values");
  Put("Left", "7");
  DoubleClick("ShowHint");
  EXPECT_EQ(form.Document()->Text(),
            "object Two: TTwo\r\n  object A: TButton\r\n    Left = 7\r\n    ShowHint = True\r\n"
            "  end\r\n  object B: TButton\r\n    Left = 7\r\n    Enabled = False\r\n"
            "    ShowHint = True\r\n  end\r\nend\r\n");
  form.Undo();
  form.Undo();
  EXPECT_FALSE(form.Modified());
}

TEST_F(Inspector, FilterAndChangedOnlyHideRowsAndKeepTheParentsOfShownOnes) {
  TPropertyInspector& inspector = Workbench->Inspector();
  const auto shown = [&](const char* property) { return !Row(property)->isHidden(); };
  EXPECT_TRUE(shown("Caption") && shown("Font"));
  EXPECT_FALSE(shown("OnClick"));
  inspector.Filter().setText("charset");
  EXPECT_TRUE(shown("Font") && shown("Charset"));
  EXPECT_FALSE(shown("Caption"));
  inspector.Filter().clear();
  inspector.ChangedOnly().setChecked(true);
  EXPECT_TRUE(shown("Caption") && shown("Left"));
  EXPECT_FALSE(shown("Top") || shown("Font"));
  inspector.ChangedOnly().setChecked(false);
  inspector.Pages().setCurrentIndex(1);
  EXPECT_TRUE(shown("OnClick"));
  EXPECT_FALSE(shown("Caption"));
}

TEST_F(Inspector, DoubleClickOnAnEventWritesItsMethodAndGoesThere) {
  Workbench->Inspector().Pages().setCurrentIndex(1);
  DoubleClick("OnShow");
  EXPECT_EQ(Value("OnShow"), "FormShow");
  const std::string text = Document(FileOf("Main")).Text();
  EXPECT_NE(text.find("procedure FormShow(Sender: TObject);"), std::string::npos) << text;
  EXPECT_NE(text.find("procedure TMainForm.FormShow(Sender: TObject);\r\nbegin\r\n\r\nend;"),
            std::string::npos)
      << text;
  int line = 0, column = 0;
  TEditPage& page = *Workbench->EditWindow().ActivePage();
  Workbench->EditWindow().CursorOf(page, line, column);
  EXPECT_EQ(page.Source().FileName(), FileOf("Main"));
  const std::size_t body = text.find("begin\r\n\r\nend;");
  EXPECT_EQ(line, std::count(text.begin(), text.begin() + static_cast<long>(body), '\n') + 2);
  // The second time it is only shown.
  DoubleClick("OnShow");
  EXPECT_EQ(Document(FileOf("Main")).Text(), text);
  Workbench->Documents().SaveAll();
}

TEST_F(Inspector, PanelOfAPackageHasItsPlaceAboveTheProperties) {
  TForm* inspector = Screen().FindForm("PropertyInspector");
  QWidget* place = WidgetOf(inspector->FindComponent(InspectorTopPlace));
  ASSERT_NE(place, nullptr);
  EXPECT_EQ(place->height(), 0);
  auto* panel = new QLineEdit(place);
  panel->show();
  Application().ProcessMessages();
  EXPECT_GE(place->height(), panel->sizeHint().height());
  EXPECT_EQ(panel->width(), place->width());
  delete panel;
}

}  // namespace
}  // namespace wrenfold
