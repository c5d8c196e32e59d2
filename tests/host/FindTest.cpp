// Finding and replacing in the editor and in files, by the keys and buttons of the user.
#include <QTreeWidget>
#include <QtTest/QTest>

#include "host/HostTest.h"
#include "host/shell/FindFiles.h"
#include "platform/widgets/Text.h"

namespace wrenfold {
namespace {

class Find : public HostTest {
 protected:
  template <class Widget>
  static Widget& In(QWidget& form, const char* name) {
    auto* widget = form.findChild<Widget*>(name);
    if (widget == nullptr) throw Exception(std::string("no ") + name);
    return *widget;
  }
  QString Result() { return In<QLabel>(Workbench->FindBar(), "FindResult").text(); }
  void SearchFiles(const char* button) {
    QTest::mouseClick(&In<QPushButton>(Workbench->FindFiles(), button), Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !Workbench->FindFiles().Running(); }));
  }
};

TEST_F(Find, HitsAreCountedAndGoneThroughAroundTheEnds) {
  OpenPage(Folder.Write("A.pas", "aab AB xab"));
  TFindBar& bar = Workbench->FindBar();
  Run("SearchFindCommand");
  QTest::keyClicks(&bar.Text(), "ab");
  const std::pair<Qt::KeyboardModifiers, std::size_t> steps[] = {
      {{}, 1}, {{}, 4}, {{}, 8}, {{}, 1}, {Qt::ShiftModifier, 8}, {Qt::ShiftModifier, 4}};
  for (const auto& [modifiers, offset] : steps) {
    QTest::keyClick(&bar.Text(), Qt::Key_Return, modifiers);
    EXPECT_EQ(Workbench->EditWindow().Selection(), (TTextMatch{offset, 2}));
  }
  EXPECT_EQ(Result(), "2 of 3");
  In<QCheckBox>(bar, "FindRegularExpression").setChecked(true);
  bar.Text().setText("(");
  QTest::keyClick(&bar.Text(), Qt::Key_Return);
  EXPECT_TRUE(Result().contains("at 2")) << Result().toStdString();
  QTest::keyClick(&bar.Text(), Qt::Key_Escape);
  EXPECT_FALSE(bar.isVisible());
}

TEST_F(Find, ReplacingAllShowsThePlacesAndIsOneStepToTakeBack) {
  const std::string file = Folder.Write("A.pas", "SetX(1);\r\nSetY(2);\r\nSetZ(3);\r\n");
  OpenPage(file);
  TFindBar& bar = Workbench->FindBar();
  Run("SearchReplaceCommand");
  In<QCheckBox>(bar, "FindRegularExpression").setChecked(true);
  bar.Text().setText("Set(\\w)\\((\\d)\\)");
  bar.With().setText("$1 := $2");
  std::string shown;
  bar.Confirm = [&](const std::vector<TFoundPlace>& places) {
    for (const TFoundPlace& found : places) shown += ReplacedLine(found) + "|";
    return std::vector(places.begin() + 1, places.end());
  };
  QTest::mouseClick(&In<QToolButton>(bar, "ReplaceAll"), Qt::LeftButton);
  EXPECT_EQ(shown, "X := 1;|Y := 2;|Z := 3;|");
  EXPECT_EQ(Document(file).Text(), "SetX(1);\r\nY := 2;\r\nZ := 3;\r\n");
  Run("EditUndoCommand");
  EXPECT_EQ(Document(file).Text(), "SetX(1);\r\nSetY(2);\r\nSetZ(3);\r\n");
  Workbench->EditWindow().Select({0, 0});
  QTest::keyClick(&bar.Text(), Qt::Key_Return);
  Workbench->activateWindow();
  bar.With().setFocus();
  ASSERT_TRUE(QTest::qWaitFor([&] { return bar.With().hasFocus(); }));
  QTest::keyClick(&bar.With(), Qt::Key_Return);
  EXPECT_EQ(Document(file).Text(), "X := 1;\r\nSetY(2);\r\nSetZ(3);\r\n");
  EXPECT_EQ(Workbench->EditWindow().Selection(), (TTextMatch{9, 7})) << "goes on to the next one";
}

TEST_F(Find, FilesAreSearchedAndReplacedAsTheyStandWithTheirEncodings) {
  ASSERT_TRUE(Workbench->Documents().OpenProject(WriteProject()));
  const std::string latin =
      "unit Tools; // Gr\xF6\xDF"
      "e needle\ninterface implementation end.\r\n";
  Folder.Write("Tools.pas", latin);
  OpenPage(FileOf("Child"));
  Type("{ Needle } ");
  Run("SearchFilesCommand");
  TFindFilesForm& form = Workbench->FindFiles();
  In<QLineEdit>(form, "FindFilesText").setText("needle");
  SearchFiles("FindFilesFind");
  QTreeWidget& list = Workbench->Messages().List();
  QTreeWidgetItem* group = list.topLevelItem(list.topLevelItemCount() - 1);
  EXPECT_EQ(group->text(1), "\"needle\": 2 places in 2 files");
  ASSERT_EQ(group->childCount(), 2) << "an edited text is searched as it stands";
  Q_EMIT list.itemActivated(group->child(1)->child(0), 0);
  EXPECT_EQ(Workbench->EditWindow().ActivePage()->Source().FileName(),
            FromQString(group->child(1)->text(1)));
  In<QLineEdit>(form, "FindFilesWith").setText("pin");
  form.Confirm = [&](const std::vector<TFoundPlace>& places) { return places; };
  Workbench->Views().ClosePage(*Workbench->EditWindow().ActivePage());
  SearchFiles("FindFilesReplace");
  std::string expected = latin;
  EXPECT_EQ(Folder.Read(FileOf("Tools")), expected.replace(expected.find("needle"), 6, "pin"));
  EXPECT_TRUE(Document(FileOf("Child")).Text().starts_with("{ pin } "));
  EXPECT_TRUE(Document(FileOf("Child")).Modified()) << "an open file is changed in the editor";
  Workbench->Documents().SaveAll();
}

TEST_F(Find, FileThatChangedSinceItWasSearchedIsLeftAlone) {
  const std::string file = Folder.Write("A.pas", "one two");
  TFoundPlace place{file, 1, {4, 3}, "one two", 4, "2"};
  Folder.Write("A.pas", "another two");
  const auto troubles = ReplaceInFiles(Workbench->Workspace(), {place});
  ASSERT_EQ(troubles.size(), 1u);
  EXPECT_NE(troubles[0].find("A.pas(1)"), std::string::npos);
  EXPECT_EQ(Folder.Read(file), "another two");
}

}  // namespace
}  // namespace wrenfold
