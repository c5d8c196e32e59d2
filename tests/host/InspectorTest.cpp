// The object inspector: what its rows do to the form file, to the designer and to the source.
#include <QColorDialog>
#include <QDialog>
#include <QFontDialog>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "host/HostTest.h"
#include "platform/core/system/Files.h"

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
  // Opens a form of one component, "It", and shows that.
  TFormEditor& OpenOne(const std::string& component) {
    const std::string file =
        Folder.Write("One.dfm", "object One: TOne\r\n" + component + "end\r\n");
    EXPECT_TRUE(Workbench->Documents().OpenFile(file));
    TFormEditor& form = *Workbench->Workspace().Find(file)->FormEditor();
    form.GetFormDesigner()->SetSelections({form.FindComponent("It")});
    return form;
  }
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
  Put("ActiveControl", "Nobody");
  EXPECT_EQ(Value("ActiveControl"), "");
  EXPECT_NE(Row("ActiveControl")->toolTip(1).indexOf("expected a component"), -1);
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

TEST_F(Inspector, MethodOfACppUnitIsDeclaredInTheHeaderAndHasItsBodyInTheSource) {
  const std::string header =
      Folder.Write("Pane.h",
                   "class TPane : public TForm\r\n{\r\n__published:\r\n"
                   "  void __fastcall Fits(TObject *Any, Word &Key, TShiftState Shift);\r\n"
                   "  void __fastcall FitsNot(TObject *Sender);\r\n};\r\n");
  const std::string source = Folder.Write("Pane.cpp", "#include \"Pane.h\"\r\n");
  Folder.Write("Pane.dfm", "object Pane: TPane\r\nend\r\n");
  ASSERT_TRUE(Workbench->Documents().OpenFile(source));
  TFormEditor& form = *Workbench->Workspace().Find(source)->FormEditor();
  form.GetFormDesigner()->SetSelections({form.GetRootComponent()});
  TInspectedRow key;
  key.Type = "TKeyEvent";
  EXPECT_EQ(Workbench->Inspector().MethodsFor(form, key), (std::vector<std::string>{"", "Fits"}));
  Workbench->Inspector().Pages().setCurrentIndex(1);
  DoubleClick("OnKeyDown");
  EXPECT_EQ(Value("OnKeyDown"), "FormKeyDown");
  const auto text = [&](const std::string& file) {
    return Workbench->Workspace().Find(source)->FindSource(file)->Document().Text();
  };
  EXPECT_NE(text(header).find("  void __fastcall FitsNot(TObject *Sender);\r\n"
                              "  void __fastcall FormKeyDown(TObject *Sender, Word &Key, "
                              "TShiftState Shift);\r\n}"),
            std::string::npos)
      << text(header);
  EXPECT_NE(text(source).find("void __fastcall TPane::FormKeyDown(TObject *Sender, Word &Key, "
                              "TShiftState Shift)\r\n{\r\n\r\n}"),
            std::string::npos)
      << text(source);
  int line = 0, column = 0;
  TEditPage& page = *Workbench->EditWindow().ActivePage();
  EXPECT_EQ(page.Source().FileName(), source);
  Workbench->EditWindow().CursorOf(page, line, column);
  EXPECT_EQ(line, 4) << "the empty line of the body";
  Workbench->Documents().SaveAll();
}

TEST_F(Inspector, EventOfAnUnknownTypeSaysWhyItsMethodCannotBeWritten) {
  const std::string source =
      Folder.Write("Pane.pas",
                   "unit Pane;\r\ninterface\r\nuses Forms;\r\ntype TPane = class(TForm) end;\r\n"
                   "implementation\r\nend.\r\n");
  Folder.Write("Pane.dfm", "object Pane: TPane\r\n  OnStrange = Old\r\nend\r\n");
  ASSERT_TRUE(Workbench->Documents().OpenFile(source));
  TFormEditor& form = *Workbench->Workspace().Find(source)->FormEditor();
  form.GetFormDesigner()->SetSelections({form.GetRootComponent()});
  Workbench->Inspector().Pages().setCurrentIndex(1);
  DoubleClick("OnStrange");
  EXPECT_TRUE(HasMessage("TPane.Old cannot be written: the parameters of the event are unknown"));
  EXPECT_FALSE(Document(source).Modified());
}

// What a user does in the dialog that a row opens; `Accept` is false when he gives up.
struct TDialogCase {
  const char* Name;
  const char* Component;  // as it stands in the form
  const char* Row;
  std::function<void(QDialog& dialog)> Do;
  const char* Expected;  // the line of the form afterwards
};
class InspectorDialog : public Inspector, public testing::WithParamInterface<TDialogCase> {
 protected:
  void Open(bool accept) {
    bool shown = false;
    QTimer::singleShot(0, qApp, [&] {
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr) << "no dialog";
      shown = true;
      GetParam().Do(*dialog);
      if (accept) dialog->accept();
      else dialog->reject();
    });
    Workbench->Inspector().Grid().setCurrentItem(Row(GetParam().Row));
    Workbench->Inspector().EditValue();
    EXPECT_TRUE(shown);
  }
};

TEST_P(InspectorDialog, StoresWhatIsAcceptedInOneStrokeAndNothingWhenGivenUp) {
  TFormEditor& form = OpenOne(std::string("  object It: ") + GetParam().Component + "  end\r\n");
  const std::string before = form.Document()->Text();
  const std::string picture = Folder.Write("in.bmp", "BM\1\2");
  Workbench->FileDialogs().Open = [&](auto&&...) { return std::vector{picture}; };
  Workbench->FileDialogs().Save = [&](auto&&...) { return Folder.Path() + "/out.bmp"; };
  Open(false);
  EXPECT_EQ(form.Document()->Text(), before);
  Open(true);
  EXPECT_NE(form.Document()->Text().find(GetParam().Expected), std::string::npos)
      << form.Document()->Text();
  form.Undo();
  EXPECT_EQ(form.Document()->Text(), before) << "more than one stroke";
}
void PutLines(QDialog& dialog) {
  dialog.findChild<QPlainTextEdit*>("Lines")->setPlainText("one\ntwo");
}
void PutColor(QDialog& dialog) {
  static_cast<QColorDialog&>(dialog).setCurrentColor(Qt::red);
}
void PutFont(QDialog& dialog) {
  QFont font("Sans");
  font.setPixelSize(20);
  font.setItalic(true);
  static_cast<QFontDialog&>(dialog).setCurrentFont(font);
}
void LoadAndSave(QDialog& dialog) {
  auto* save = dialog.findChild<QPushButton*>("SavePicture");
  EXPECT_FALSE(save->isEnabled()) << "there is nothing to save";
  dialog.findChild<QPushButton*>("LoadPicture")->click();
  save->click();
}
const TDialogCase DialogCases[] = {
    {"Text", "TButton\r\n    Hint = 'a'\r\n", "Hint", PutLines, "    Hint = 'one'#13#10'two'\r\n"},
    {"Lines", "TMemo\r\n", "Lines", PutLines,
     "    Lines.Strings = (\r\n      'one'\r\n      'two')\r\n"},
    {"Colour", "TEdit\r\n    Color = clBlue\r\n", "Color", PutColor, "    Color = clRed\r\n"},
    {"Font", "TEdit\r\n    Font.Height = -11\r\n", "Font", PutFont,
     "    Font.Style = [fsItalic]\r\n"},
    {"Picture", "TBitBtn\r\n", "Glyph", LoadAndSave, "    Glyph.Data = {04000000424D0102}\r\n"},
    {"PictureOfAnyKind", "TImage\r\n", "Picture", LoadAndSave,
     "    Picture.Data = {07544269746D617004000000424D0102}\r\n"},
};
INSTANTIATE_TEST_SUITE_P(Host, InspectorDialog, testing::ValuesIn(DialogCases), CaseName);

TEST_F(Inspector, PictureThatIsSavedIsTheFileThatWasLoaded) {
  OpenOne(
      "  object It: TImage\r\n    Picture.Data = {07544269746D617004000000424D0102}\r\n"
      "  end\r\n");
  Workbench->FileDialogs().Save = [&](const std::string&, const std::string& name, auto&&...) {
    EXPECT_EQ(name, "Picture.bmp");
    return Folder.Path() + "/out.bmp";
  };
  QTimer::singleShot(0, qApp, [] {
    QWidget* dialog = QApplication::activeModalWidget();
    dialog->findChild<QPushButton*>("SavePicture")->click();
    dialog->close();
  });
  Workbench->Inspector().Grid().setCurrentItem(Row("Picture"));
  Workbench->Inspector().EditValue();
  EXPECT_EQ(Folder.Read(Folder.Path() + "/out.bmp"), "BM\1\2");
}

TEST_F(Inspector, ItemsAreAddedMovedAndDeletedByKeysAndKeepWhatTheyStore) {
  TFormEditor& form = OpenOne(
      "  object It: TStatusBar\r\n    Panels = <\r\n      item\r\n        Own = 5\r\n"
      "        Text = 'A'\r\n      end>\r\n  end\r\n");
  const std::string before = form.Document()->Text();
  QTreeWidget& grid = Workbench->Inspector().Grid();
  EXPECT_EQ(Value("Panels"), "(1 item)");
  EXPECT_EQ(Value("[0]"), "A") << "an item without a title";
  EXPECT_EQ(Value("Own"), "5") << "what the table does not know of an item";
  Workbench->activateWindow();
  grid.setFocus();
  Application().ProcessMessages();
  grid.setCurrentItem(Row("Panels"));
  QTest::keyClick(&grid, Qt::Key_Insert);
  ASSERT_EQ(grid.currentItem()->text(0).toStdString(), "[1]")
      << form.Document()->Text() << QApplication::focusWidget();
  EXPECT_FALSE(Row("Panels")->isHidden() || !Row("Panels")->isExpanded());
  // The width of a new item is not stored yet.
  Row("[1]")->child(4)->setText(1, "70");
  Application().ProcessMessages();
  grid.setCurrentItem(Row("[1]"));
  QTest::keyClick(&grid, Qt::Key_Up, Qt::ControlModifier);
  EXPECT_EQ(grid.currentItem()->text(0), "[0]");
  EXPECT_EQ(form.Document()->Text(),
            "object One: TOne\r\n  object It: TStatusBar\r\n    Panels = <\r\n      item\r\n"
            "        Width = 70\r\n      end\r\n      item\r\n        Own = 5\r\n"
            "        Text = 'A'\r\n      end>\r\n  end\r\nend\r\n");
  QTest::keyClick(&grid, Qt::Key_Up, Qt::ControlModifier);
  QTest::keyClick(&grid, Qt::Key_Delete);
  EXPECT_EQ(form.Document()->Text(), before);
  for (int i = 0; i < 4; ++i) form.Undo();
  EXPECT_EQ(form.Document()->Text(), before);
  EXPECT_FALSE(form.Modified());
}

TEST_F(Inspector, KeysOfAShortCutArePressedInItsRowAndRunNoCommand) {
  TFormEditor& form = OpenOne("  object It: TMenuItem\r\n    ShortCut = 16462\r\n  end\r\n");
  QTreeWidget& grid = Workbench->Inspector().Grid();
  EXPECT_EQ(Value("ShortCut"), "Ctrl+N");
  const auto press = [&](Qt::Key key, Qt::KeyboardModifiers modifiers) {
    Run("ViewInspectorCommand");
    grid.setCurrentItem(Row("ShortCut"), 1);
    QTest::keyClick(&grid, Qt::Key_F2);
    auto* edit = grid.findChild<QLineEdit*>();
    ASSERT_NE(edit, nullptr);
    QTest::keyClick(edit, key, modifiers);
    QTest::keyClick(edit, Qt::Key_Return);
    Application().ProcessMessages();
  };
  press(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(Value("ShortCut"), "Ctrl+Shift+S");
  EXPECT_NE(form.Document()->Text().find("ShortCut = 24659"), std::string::npos);
  EXPECT_TRUE(form.Modified()) << "the keys saved the form";
  press(Qt::Key_Delete, Qt::NoModifier);
  EXPECT_EQ(form.Document()->Text().find("ShortCut"), std::string::npos);
  Put("ShortCut", "Nonsense");
  EXPECT_NE(Row("ShortCut")->toolTip(1).indexOf("expected keys"), -1);
}

TEST_F(Inspector, DefaultOfAGroupIsThatOfAllItsParts) {
  TFormEditor& form = OpenOne(
      "  object It: TEdit\r\n    Font.Height = -20\r\n    Font.Style = [fsBold]\r\n"
      "    Left = 3\r\n  end\r\n");
  Workbench->Inspector().Grid().setCurrentItem(Row("Font"));
  Workbench->Inspector().ResetValue();
  EXPECT_EQ(form.Document()->Text(),
            "object One: TOne\r\n  object It: TEdit\r\n    Left = 3\r\n  end\r\nend\r\n");
  form.Undo();
  EXPECT_FALSE(form.Modified());
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
