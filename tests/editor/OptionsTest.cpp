// What a client sets of the editor and hears from it: every option, property and event.
#include <gmock/gmock.h>

#include <QHeaderView>
#include <QScrollArea>
#include <QScrollBar>
#include <QStatusBar>
#include <QTemporaryDir>

#include "EditorSupport.h"
#include "RowSample.h"
#include "controls/rkStdCtrls.h"
#include "platform/core/system/Files.h"
#include "platform/widgets/DrawnIcon.h"
#include "platform/widgets/Text.h"

namespace wrenfold::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class EditorOptions : public testing::Test {
 protected:
  void SetUp() override { Garden().AddPlace("Pond"); }
  void Show() {
    Editor.ShowTree(Spc);
    QApplication::setActiveWindow(Editor.Form());
    Application().ProcessMessages();
  }
  TGarden& Garden() { return static_cast<TGarden&>(*Spc); }
  TGarden& Edited() { return static_cast<TGarden&>(*Editor.GetUpdatingSpc()); }
  TControlsArea& Area() { return Editor.Form()->Area(); }
  bool IsOpen(const char* path) {
    return Editor.Form()->Tree().isExpanded(
        Editor.Form()->Tree().Model().IndexOf(Editor.NodeAt(path)));
  }

  TAnswers Answers{{mbNo}};
  std::unique_ptr<TSpcObject> Spc = std::make_unique<TGarden>();
  TTestEditor Editor;
};

TEST_F(EditorOptions, AComponentIsARowOrANodeButNeverWithoutEnd) {
  TRowSample sample, neighbour;
  neighbour.SetName("Neighbour");
  sample.Friend = &neighbour;
  neighbour.Friend = &sample;
  Editor.ShowTreeEx(&sample);
  EXPECT_EQ(Editor.RootNode()->Children.size(), 0u);
  EXPECT_NE(Editor.Widget("Friend"), nullptr);
  Editor.Options.Include(eoExpandCompProps);
  Editor.ShowTreeEx(&sample);
  ASSERT_EQ(Editor.RootNode()->Children.size(), 1u);
  const TTreeNode& node = *Editor.RootNode()->Children[0];
  EXPECT_EQ(node.Instance, &neighbour);
  EXPECT_TRUE(node.Children.empty()) << "it leads back to what is shown already";
  EXPECT_THROW(Editor.Row("Friend"), Exception);
}

TEST_F(EditorOptions, ColumnsStandBesideEachOtherAndHaveWidthsOfTheirOwn) {
  Editor.ColCount = 2;
  Show();
  EXPECT_EQ(Area().findChild<QHeaderView*>()->count(), 4);
  EXPECT_EQ(Editor.Row("Title").Column, 0);
  EXPECT_EQ(Editor.Row("Lines").Column, 1);
  const QWidget* left = Editor.Widget("Title");
  const QLabel* right = Editor.Row("Lines").Label;
  EXPECT_GE(right->mapToGlobal(QPoint()).x(), left->mapToGlobal(QPoint(left->width(), 0)).x());
  Area().SectionResize(2, 99);
  EXPECT_EQ(Area().AreaWidth(akLabel, 1), 99);
  EXPECT_NE(Area().AreaWidth(akLabel, 0), 99);
  Editor.Form()->Close();
  Application().ProcessMessages();
  EXPECT_THAT(Editor.Setting, HasSubstr("LabelSectionWidth2=99"));
}

TEST_F(EditorOptions, CaptionsNameWhatIsEdited) {
  const auto caption = [&] { return Editor.Form()->Caption(); };
  Editor.FormCaption.clear();
  Show();
  EXPECT_EQ(caption(), "Specification ");
  Editor.SetFile("/tmp/garden.sbn", osfBin);
  EXPECT_EQ(caption(), "Specification /tmp/garden.sbn");
  TRowSample sample;
  Editor.ShowTreeEx(&sample);
  EXPECT_EQ(caption(), "Component Sample");
  Editor.ShowTreeEx(Garden().Places.get());
  EXPECT_EQ(caption(), "Collection TSpcCollection");
  Editor.ShowTreeEx(Garden().Inner.get());
  EXPECT_EQ(caption(), "Object TInner");
  Editor.FormCaption = "Mine";
  Editor.SetCaption();
  EXPECT_EQ(caption(), "Mine");
}

TEST_F(EditorOptions, TheWindowIsAsTheOptionsSay) {
  Editor.ShowStatusBar = false;
  Editor.FormOptions = {foStayOnTop};
  Editor.VisibleButtons = {vbExitEditor, vbSaveSpc};
  Editor.TranslatingTable->SetText("[TGarden]\nTitle=Name of##the garden\n");
  Editor.TopInc = 31;
  Editor.LabelAreaInfo->Alignment = taRightJustify;
  Editor.ControlAreaInfo->AutoWidth = false;
  Editor.ControlAreaInfo->DefAreaWidth = 123;
  TFont font;
  font.SetSize(19);
  Editor.SetTreeFont(&font);
  Editor.SetHeaderFont(&font);
  Show();
  TSpcForm& form = *Editor.Form();
  EXPECT_FALSE(form.findChild<QStatusBar*>()->isVisible());
  EXPECT_EQ(form.FormStyle(), fsStayOnTop);
  EXPECT_FALSE(form.FindAction("ActLoadSpc")->Visible());
  EXPECT_TRUE(form.FindAction("ActSaveSpc")->Visible());
  EXPECT_EQ(Editor.Row("Title").Label->text(), "Name of the garden :");
  EXPECT_TRUE(Editor.Row("Title").Label->alignment().testFlag(Qt::AlignRight));
  EXPECT_GE(Editor.Widget("Title")->y(), 31);
  EXPECT_EQ(Area().AreaWidth(akControl, 0), 123);
  EXPECT_EQ(form.Tree().font().pointSize(), 19);
  EXPECT_EQ(Area().findChild<QHeaderView*>()->font().pointSize(), 19);
}

TEST_F(EditorOptions, ALabelThatDoesNotFitEndsInAnEllipsisAndItsHintIsWhole) {
  const std::string label = "A label that is a good deal longer than the column is wide";
  Editor.TranslatingTable->SetText("[TGarden]\nTitle=" + label + "\n");
  Show();
  Area().SectionResize(0, 120);
  EXPECT_TRUE(Editor.Row("Title").Label->text().endsWith(u'…'));
  EXPECT_THAT(Editor.RowHint(Editor.Row("Title")), HasSubstr(label));
  Area().SectionResize(0, 900);
  EXPECT_EQ(Editor.Row("Title").Label->text().toStdString(), label + " :");
}

// Drags the border of the first section of the header by 50 pixels.
int WidthInTheDrag(TControlsArea& area) {
  auto* header = area.findChild<QHeaderView*>();
  QWidget* viewport = header->viewport();
  const QPoint border(header->sectionSize(0) - 1, viewport->height() / 2);
  QTest::mousePress(viewport, Qt::LeftButton, {}, border);
  for (int step = 1; step <= 5; ++step) {
    const QPoint place = border + QPoint(10 * step, 0);
    QMouseEvent move(QEvent::MouseMove, place, viewport->mapToGlobal(place), Qt::LeftButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &move);
  }
  const int width = area.AreaWidth(akLabel, 0);
  QTest::mouseRelease(viewport, Qt::LeftButton, {}, border + QPoint(50, 0));
  return width;
}

TEST_F(EditorOptions, ColumnsFollowTheDragOnRequestElseWhenItEnds) {
  for (const bool follows : {false, true}) {
    Editor.FormOptions = follows ? TSpcFormOptions{foAreasDynamicResize} : TSpcFormOptions();
    Show();
    const int before = Area().AreaWidth(akLabel, 0);
    EXPECT_EQ(WidthInTheDrag(Area()), follows ? before + 50 : before);
    EXPECT_EQ(Area().AreaWidth(akLabel, 0), before + 50);
    Editor.Setting.clear();
    Editor.Form()->Close();
    Application().ProcessMessages();
    Editor.Setting.clear();
  }
}

TEST_F(EditorOptions, TheWheelScrollsTheRowsAndNotTheFieldsThatItComesAcross) {
  TRowSample sample;
  Editor.ShowTreeEx(&sample);
  Application().ProcessMessages();
  auto* scroll = Area().findChild<QScrollArea*>();
  ASSERT_GT(scroll->verticalScrollBar()->maximum(), 0);
  for (const char* name : {"Number", "Pitch", "Count", "Day", "Colour", "Styles", "Notes"}) {
    scroll->verticalScrollBar()->setValue(0);
    QWidget* field = Editor.Widget(name);
    QWidget* target = field->childAt(5, 5) != nullptr ? field->childAt(5, 5) : field;
    QWheelEvent wheel(QPointF(5, 5), target->mapToGlobal(QPointF(5, 5)), {}, {0, -120},
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    // Only what comes from the desktop is passed on to what is around.
    QSpontaneKeyEvent::setSpontaneous(&wheel);
    qApp->notify(target, &wheel);
    EXPECT_GT(scroll->verticalScrollBar()->value(), 0) << name;
    EXPECT_FALSE(Editor.Row(name).Modified()) << name;
  }
}

TEST_F(EditorOptions, EnterFoldsOnRequestAndCtrlFoldsOneLevel) {
  Editor.FormOptions.Include(foTreeExpandOnEnter);
  Show();
  Editor.Select("Places");
  Editor.Form()->Tree().setFocus();
  EXPECT_FALSE(IsOpen("Places"));
  Editor.Press(Qt::Key_Return);
  EXPECT_TRUE(IsOpen("Places"));
  Editor.Press(Qt::Key_Return);
  EXPECT_FALSE(IsOpen("Places"));
  Editor.Select("");
  TTreeView& tree = Editor.Form()->Tree();
  tree.Fold(*Editor.RootNode(), false, true);
  tree.Fold(*Editor.RootNode(), true, false);
  EXPECT_TRUE(IsOpen(""));
  EXPECT_FALSE(IsOpen("Places"));
  Application().Idle();
  Editor.Form()->FindAction("ActExpand")->Execute();
  EXPECT_TRUE(IsOpen("Places"));
  Editor.Form()->FindAction("ActCollapse")->Execute();
  EXPECT_FALSE(IsOpen(""));
}

TEST_F(EditorOptions, F2EditsTheNameOfANodeInTheTree) {
  Show();
  Editor.Select("Places\nPond[1]");
  TTreeView& tree = Editor.Form()->Tree();
  tree.setFocus();
  Editor.Press(Qt::Key_F2);
  auto* field = tree.findChild<QLineEdit*>();
  ASSERT_NE(field, nullptr);
  field->selectAll();
  QTest::keyClicks(field, "Lake");
  QTest::keyClick(field, Qt::Key_Return);
  Application().ProcessMessages();
  EXPECT_EQ(static_cast<TPlace*>(Edited().Places->Item(0))->Name, "Lake");
}

// What the editor tells its client, in words.
class TClient {
 public:
  explicit TClient(TSpcEditor& editor) : FEditor(editor) {}

  void StartNode(TObject*, TTreeView* tree, bool& selectFirst) {
    selectFirst = !SelectsItself;
    if (SelectsItself) tree->Select(FEditor.RootNode()->Children.front().get());
  }
  void PlaceImage(TObject*, TTreeNode* node, TBaseClassIdent ident, TPersistent*,
                  const TPlaceImage& place) {
    place(*node, niiImageIndex, ident == ciCollection ? Image : -1);
  }
  void Saving(TObject*, TSpcObject*, const std::string&, bool& allow) {
    Log.push_back("saving");
    allow = AllowsSaving;
  }
  void Saved(TObject*, TSpcObject*, const std::string& fileName) {
    Log.push_back("saved " + fileName);
  }
  void Loaded(TObject*, TSpcObject*) { Log.push_back("loaded"); }
  void Created(TObject*, TSpcObject*) { Log.push_back("created"); }
  void Changed(TObject*, TCollection*, TCollectionItem*, TCollNotification action) {
    Log.push_back("items " + std::to_string(action));
  }
  void Read(TObject*, const std::string&, const std::string& section, std::string& data,
            bool& allow) {
    Log.push_back("read " + section);
    data = "TreeWidth=199\n";
    allow = false;
  }
  void Write(TObject*, const std::string&, const std::string&, const std::string& data,
             bool& allow) {
    Written = data;
    allow = false;
  }

  bool SelectsItself = true, AllowsSaving = false;
  int Image = -1;
  std::string Written;
  std::vector<std::string> Log;

 private:
  TSpcEditor& FEditor;
};

TEST_F(EditorOptions, TheClientChoosesTheFirstSelectionAndThePictures) {
  TClient client(Editor);
  Bind<&TClient::StartNode>(Editor.OnSelectStartNode, &client);
  Bind<&TClient::PlaceImage>(Editor.OnPlaceNodeImage, &client);
  EXPECT_EQ(Editor.AddNewImage(QIcon()), -1);
  client.Image = Editor.AddNewImage(DrawnIcon("sM 2 2 L 14 14"));
  EXPECT_EQ(client.Image, 0);
  Show();
  EXPECT_EQ(Editor.SelectedNode(), Editor.NodeAt("Inner"));
  const TSpcTreeModel& model = Editor.Form()->Tree().Model();
  const auto picture = [&](const char* path) {
    return model.data(model.IndexOf(Editor.NodeAt(path)), Qt::DecorationRole).isValid();
  };
  EXPECT_TRUE(picture("Places"));
  EXPECT_FALSE(picture("Inner"));
}

TEST_F(EditorOptions, TheClientHearsOfFilesAndItemsAndMayForbidSaving) {
  const QTemporaryDir folder;
  const std::string file = FromQString(folder.path()) + "/garden.sbn";
  TClient client(Editor);
  Bind<&TClient::Saving>(Editor.BeforeSaveSpc, &client);
  Bind<&TClient::Saved>(Editor.AfterSaveSpc, &client);
  Bind<&TClient::Loaded>(Editor.OnLoadSpc, &client);
  Bind<&TClient::Created>(Editor.OnCreateSpc, &client);
  Bind<&TClient::Changed>(Editor.OnCollectionChange, &client);
  Show();
  Editor.SetFile(file, osfBin);
  Editor.AddNode(*Editor.NodeAt("Places"));
  EXPECT_FALSE(Editor.Save());
  EXPECT_FALSE(FileExists(file));
  EXPECT_THAT(Answers.Asked, IsEmpty()) << "refused without a word";
  client.AllowsSaving = true;
  EXPECT_TRUE(Editor.Save());
  EXPECT_TRUE(Editor.LoadFromFile(file));
  EXPECT_THAT(client.Log,
              ElementsAre("created", "items 0", "saving", "saving", "saved " + file, "loaded"));
}

TEST_F(EditorOptions, WindowSettingsGoToTheClientOrToTheFileThatIsNamed) {
  const QTemporaryDir folder;
  TSpcEditorPro own;
  own.SetSpcRoot(Spc);
  own.IniFileName = FromQString(folder.path()) + "/windows.ini";
  own.IniSection = "Gardens";
  SafeWriteFile(own.IniFileName,
                "[Other]\nkept=1\n[Gardens]\nTreeWidth=222\nLabelSectionWidth=wide\n");
  own.ShowTree();
  EXPECT_EQ(own.Form()->Area().AreaWidth(akLabel, 0), own.LabelAreaInfo->DefAreaWidth);
  own.Form()->Close();
  Application().ProcessMessages();
  const std::string written = ReadWholeFile(own.IniFileName);
  EXPECT_THAT(written, HasSubstr("kept=1"));
  EXPECT_THAT(written, HasSubstr("TreeWidth=222"));
  EXPECT_THAT(written, HasSubstr("WindowPlacement="));

  TClient client(own);
  Bind<&TClient::Read>(own.OnReadFormSetting, &client);
  Bind<&TClient::Write>(own.OnWriteFormSetting, &client);
  own.ShowTree();
  own.Form()->Close();
  Application().ProcessMessages();
  EXPECT_THAT(client.Log, ElementsAre("read Gardens"));
  EXPECT_THAT(client.Written, HasSubstr("TreeWidth=199"));
  EXPECT_EQ(ReadWholeFile(own.IniFileName), written);
}

// A client that edits "Title" with a control of its own and watches every row.
class TRowClient {
 public:
  void Create(TObject*, TPersistent*, const TPropInfo* property, QWidget* parent,
              TNotifyEvent change, TNewControlData& data, bool& handled) {
    if (property->Name != "Title") return;
    Edit = new TEdit(nullptr, parent);
    Edit->OnChange = change;
    data.Control = Edit;
    data.Section = "StringControl";
    handled = true;
  }
  void Created(TObject*, TControlInfo& row) { Note("made", row); }
  void Label(TObject*, TControlInfo& row) { row.Label->setObjectName("mine"); }
  void Changed(TObject*, TControlInfo& row) { Note("changed", row); }
  void Dropped(TObject*, TControlInfo& row) { Note("dropped", row); }
  void Resize(TObject*, TControlInfo& row, bool& handled) {
    handled = row.EPropInfo->Name == "Count";
    if (handled) row.EControl->Widget()->resize(77, 20);
  }
  void Show(TObject*, TControlInfo& row, bool& handled) {
    handled = row.EControl == Edit;
    if (handled) Edit->SetText(row.EPropInfo->Access->GetStr(*row.EInstance));
  }
  void Shown(TObject*, TControlInfo& row) { Note("shown", row); }
  void Take(TObject*, TControlInfo& row, bool& handled, bool& abort) {
    abort = Aborts;
    handled = row.EControl == Edit;
    if (handled && !abort) row.EPropInfo->Access->SetStr(*row.EInstance, Edit->Text());
  }
  void Taken(TObject*, TControlInfo& row, bool&) { Note("taken", row); }
  void Note(const char* what, const TControlInfo& row) {
    if (row.EPropInfo->Name == "Title") Log += std::string(what) + ' ';
  }

  TEdit* Edit = nullptr;
  bool Aborts = false;
  std::string Log;
};

TEST_F(EditorOptions, AClientsOwnControlIsFilledStoredAndUndoneLikeAnyOther) {
  TRowClient client;
  Bind<&TRowClient::Create>(Editor.BeforeCreateControl, &client);
  Bind<&TRowClient::Created>(Editor.AfterCreateControl, &client);
  Bind<&TRowClient::Label>(Editor.OnCreateLabel, &client);
  Bind<&TRowClient::Changed>(Editor.OnControlChange, &client);
  Bind<&TRowClient::Dropped>(Editor.OnDropControl, &client);
  Bind<&TRowClient::Resize>(Editor.OnResizeControl, &client);
  Bind<&TRowClient::Show>(Editor.BeforeSetControlData, &client);
  Bind<&TRowClient::Shown>(Editor.AfterSetControlData, &client);
  Bind<&TRowClient::Take>(Editor.BeforeGetControlData, &client);
  Bind<&TRowClient::Taken>(Editor.AfterGetControlData, &client);
  Show();
  ASSERT_EQ(Editor.Widget("Title"), client.Edit);
  EXPECT_EQ(client.Edit->Text(), "Kew");
  EXPECT_EQ(client.Edit->accessibleName(), "Title");
  EXPECT_EQ(Editor.Row("Title").Label->objectName(), "mine");
  EXPECT_EQ(Editor.Widget("Count")->width(), 77);
  EXPECT_EQ(client.Log, "made shown ");
  client.Log.clear();

  client.Edit->selectAll();
  QTest::keyClicks(client.Edit, "W");
  client.Aborts = true;
  EXPECT_FALSE(Editor.StoreRows());
  EXPECT_EQ(Edited().Title, "Kew");
  client.Aborts = false;
  const QPointer<QWidget> shown = client.Edit;
  Editor.Select("Inner");
  EXPECT_EQ(shown, nullptr) << "it stays behind the rows of the next node";
  EXPECT_EQ(Edited().Title, "W");
  EXPECT_EQ(client.Log, "changed taken dropped ");
  EXPECT_EQ(Editor.JournalText(), "TGarden / Title: Kew -> W\n");
  ASSERT_TRUE(Editor.UndoLast());
  EXPECT_EQ(Edited().Title, "Kew");
  EXPECT_EQ(client.Edit->Text(), "Kew");
  Editor.Form()->Close();
  Application().ProcessMessages();
}

TEST_F(EditorOptions, AWrongLayoutIsToldAndTheNextNodeShows) {
  Editor.RedefiedParams->SetText("[TGarden.Title]\nWidth=101%\n[TInner.Depth]\nNoSuchKey=1\n");
  Show();
  EXPECT_THAT(Answers.Asked, ElementsAre(HasSubstr("range of 0-100%")));
  EXPECT_EQ(Editor.Rows().Count(), 0);
  Editor.Select("Inner");
  ASSERT_EQ(Answers.Asked.size(), 2u);
  EXPECT_THAT(Answers.Asked[1], HasSubstr("NoSuchKey"));
  EXPECT_EQ(Editor.Rows().Count(), 0);
  Editor.Select("Places\nPond[1]");
  EXPECT_GT(Editor.Rows().Count(), 0);
}

}  // namespace
}  // namespace wrenfold::test
