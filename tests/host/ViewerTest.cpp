// The module viewer of the package inside the workbench: previews that leave nothing behind.
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QScrollArea>
#include <QTest>
#include <QTimer>

#include "host/HostTest.h"
#include "host/forms/RootWindow.h"
#include "platform/widgets/MessageDialogs.h"

namespace wrenfold {
namespace {

constexpr char Program[] =
    "program Sample;\r\nuses\r\n  Main in 'Main.pas' {MainForm},\r\n"
    "  Data in 'Data.pas' {Store: TDataModule},\r\n  Piece in 'Piece.pas' {Part: TFrame},\r\n"
    "  Tools in 'Tools.pas';\r\nbegin\r\nend.\r\n";

std::string UnitOf(const std::string& name, const std::string& root, const std::string& base) {
  return "unit " + name + ";\r\ninterface\r\nuses Forms;\r\ntype\r\n  T" + root + " = class(" +
         base + ")\r\n  end;\r\nimplementation\r\nend.\r\n";
}

class Viewer : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    // Keys of packages are the main form's.
    Application().SetMainForm(Workbench.get());
    Folder.Write("Sample.dpr", Program);
    Write("Main", "MainForm", "TForm",
          "BorderStyle = bsNone\r\n  ClientWidth = 300\r\n"
          "  ClientHeight = 200\r\n  Color = clRed");
    Write("Data", "Store", "TDataModule", "Height = 90\r\n  Width = 90");
    Write("Piece", "Part", "TFrame", "Width = 77\r\n  Height = 55\r\n  TabOrder = 0");
    Folder.Write("Tools.pas", "unit Tools;\r\ninterface\r\nimplementation\r\nend.\r\n");
    ASSERT_TRUE(Workbench->Documents().OpenProject(Folder.Path() + "/Sample.dpr"));
    // The project's main unit was opened with it.
    ASSERT_TRUE(Workbench->Workspace().Find(FileOf("Main"))->Interface()->CloseModule(true));
    OpenPage(FileOf("Tools"));
  }
  void TearDown() override {
    Workbench->Packages().Unload();
    Application().SetMainForm(nullptr);
    HostTest::TearDown();
  }
  void Write(const std::string& unit, const std::string& root, const std::string& base,
             const std::string& properties) {
    Folder.Write(unit + ".pas", UnitOf(unit, root, base));
    Folder.Write(unit + ".dfm",
                 "object " + root + ": T" + root + "\r\n  " + properties + "\r\nend\r\n");
  }
  // With these settings of the viewer, as they stand in the file of settings.
  void LoadSuite(const std::string& settings = {}) {
    Folder.Write("ExpData.spc",
                 "object ExpertData: TExpData\r\n  CustomData_ = <\r\n    item\r\n"
                 "      AObjectID = 'FormUnitViewData'\r\n" +
                     settings + "    end>\r\nend\r\n");
    const std::string file =
        Folder.Write("Wrenfold4.so", Folder.Read(std::string(WRENFOLD_BIN_DIR) + "/Wrenfold4.so"));
    ASSERT_TRUE(Workbench->Packages().Load(file));
    Settle();
  }
  static void Settle() {
    for (int round = 0; round < 3; ++round) Application().ProcessMessages();
  }
  // Opens the viewer by its key from the editor, runs the steps in it and closes it, unless they
  // did.
  void InViewer(int key, const std::function<void()>& steps) {
    Workbench->activateWindow();
    Workbench->ShowEditor();
    ASSERT_TRUE(QTest::qWaitForWindowActive(Workbench.get()));
    bool ran = false;
    QTimer opened;
    QObject::connect(&opened, &QTimer::timeout, &opened, [&] {
      Window = dynamic_cast<TForm*>(QApplication::activeModalWidget());
      if (Window == nullptr) return;
      opened.stop();
      Guarded(nullptr, [&] {
        QTest::qWait(100);
        steps();
        ran = true;
        if (Window != nullptr && Window->ModalResult() == mrNone) Press(Qt::Key_Escape);
      });
    });
    opened.start(10);
    QTest::keyClick(&Workbench->EditWindow().Editor(), static_cast<Qt::Key>(key),
                    Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return ran && Window == nullptr; }));
    EXPECT_TRUE(ran) << "the viewer did not open";
  }
  // A key into the control that has the focus; the preview follows a little later.
  void Press(int key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(Window->focusWidget(), static_cast<Qt::Key>(key), modifiers);
    QTest::qWait(100);
  }
  // The preview follows the keys a little later.
  bool PreviewGets(QSize size) const {
    return QTest::qWaitFor([&] { return Preview() != nullptr && Preview()->size() == size; });
  }
  QWidget* Preview() const { return Window->findChild<QWidget*>("RootWindow"); }
  std::string Chosen() const {
    return Window->findChild<QListView*>("ModuleList")
        ->currentIndex()
        .data()
        .toString()
        .toStdString();
  }
  QsciScintilla& SourcePreview() const { return *Window->findChild<QsciScintilla*>("UnitPanel"); }
  // What a preview must not change.
  std::string Trace() {
    std::string trace;
    for (const TModule* module : Workbench->Workspace().Modules())
      trace += module->FileName() + "\n";
    for (const TEditPage* page : Workbench->EditWindow().Pages())
      trace += page->Source().FileName() + "\n";
    for (const std::string& file : Workbench->Documents().Settings().ReopenList())
      trace += file + "\n";
    return trace + Workbench->Inspector().Components().currentText().toStdString();
  }

  QPointer<TForm> Window;
};

TEST_F(Viewer, PreviewsOfDrawnFormsFollowTheKeysAndLeaveNoTrace) {
  LoadSuite();
  const std::string before = Trace();
  QPointer<QWidget> last;
  InViewer(Qt::Key_D, [&] {
    Press(Qt::Key_Home);
    EXPECT_EQ(Chosen(), "MainForm");
    ASSERT_TRUE(PreviewGets(QSize(300, 200))) << "a form stored as text is not previewed";
    EXPECT_TRUE(Preview()->isVisible());
    EXPECT_EQ(Preview()->grab().toImage().pixelColor(150, 100), QColor(Qt::red));
    last = Preview();
    Press(Qt::Key_Down);
    EXPECT_EQ(Chosen(), "Part");
    ASSERT_TRUE(PreviewGets(QSize(77, 55))) << "a frame is not previewed";
    EXPECT_EQ(last, nullptr) << "the module of the preview before is still open";
    Press(Qt::Key_Down);
    EXPECT_EQ(Chosen(), "Store");
    EXPECT_TRUE(QTest::qWaitFor([&] { return Preview() == nullptr; })) << "data has no window";
    Press(Qt::Key_Home);
    last = Preview();
  });
  EXPECT_EQ(last, nullptr);
  EXPECT_EQ(Trace(), before);
  EXPECT_TRUE(Asked.empty());
}

TEST_F(Viewer, OpenModuleStaysOpenAndItsDesignerKeepsTheForm) {
  LoadSuite();
  TFormEditor* main = Workbench->Documents().OpenModule(FileOf("Main"))->FormEditor();
  main->Show();
  TDesignerForm* designer = Workbench->Designers().Find(*main);
  Workbench->ShowEditor();
  InViewer(Qt::Key_D, [&] {
    Press(Qt::Key_Home);
    ASSERT_NE(Preview(), nullptr);
    EXPECT_NE(Screen().ActiveForm(), designer) << "a form in a preview is no active form";
  });
  QWidget* window = Workbench->Designers().RootWindow(*main);
  EXPECT_EQ(window->parentWidget(), nullptr);
  EXPECT_FALSE(window->isVisible());
  EXPECT_TRUE(designer->isVisible());
  EXPECT_EQ(Workbench->Designers().Find(*main), designer);
}

TEST_F(Viewer, ChosenFormsAreOpenedWithoutAQuestionOfConversion) {
  LoadSuite();
  InViewer(Qt::Key_D, [&] {
    Press(Qt::Key_End);
    Press(Qt::Key_Home);
    Press(Qt::Key_Down, Qt::ShiftModifier);
    Press(Qt::Key_Return);
  });
  for (const char* unit : {"Main", "Piece"}) {
    TModule* module = Workbench->Workspace().Find(FileOf(unit));
    ASSERT_NE(module, nullptr) << unit;
    EXPECT_TRUE(Workbench->Designers().Shows(*module->FormEditor())) << unit;
  }
  EXPECT_TRUE(Asked.empty());
}

TEST_F(Viewer, EditsOfAPreviewGoToTheEditorsTextAndAreDroppedUnasked) {
  LoadSuite("      NestedObject.EditorReadOnly = False\r\n");
  InstallMessageDialogs();
  const std::string main = Folder.Read(FileOf("Main"));
  InViewer(Qt::Key_A, [&] {
    Press(Qt::Key_End);
    ASSERT_EQ(Chosen(), "Tools");
    SourcePreview().setFocus();
    QTest::keyClicks(SourcePreview().viewport(), "xy");
    EXPECT_TRUE(Document(FileOf("Tools")).Text().starts_with("xyunit Tools;"));
    Window->findChild<QListView*>("ModuleList")->setFocus();
    Press(Qt::Key_Up);
    Press(Qt::Key_Up);
    ASSERT_EQ(Chosen(), "Main");
    SourcePreview().setFocus();
    QTest::keyClicks(SourcePreview().viewport(), "lost");
    EXPECT_TRUE(Workbench->Workspace().Find(FileOf("Main"))->Modified());
    // The question whether to save is answered before anybody sees it.
    Window->findChild<QListView*>("ModuleList")->setFocus();
    Press(Qt::Key_Up);
  });
  EXPECT_EQ(Workbench->Workspace().Find(FileOf("Main")), nullptr);
  EXPECT_EQ(Folder.Read(FileOf("Main")), main);
  TUnitDocument& tools = Document(FileOf("Tools"));
  EXPECT_TRUE(tools.Modified()) << "the page that was open keeps what was typed";
  Workbench->EditWindow().Editor().undo();
  EXPECT_FALSE(tools.Modified()) << "what was typed is undone in the editor";
}

TEST_F(Viewer, FieldsAndDesignersKeepTheKeysThatTheyNeedThemselves) {
  LoadSuite();
  Workbench->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(Workbench.get()));
  auto* filter = Workbench->findChild<QLineEdit*>("PropertyFilter");
  filter->setFocus();
  filter->setText("width");
  bool opened = false;
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
    QWidget* modal = QApplication::activeModalWidget();
    if (modal == nullptr) return;
    opened = true;
    QTest::keyClick(modal, Qt::Key_Escape);
  });
  watch.start(10);
  QTest::keyClick(filter, Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(filter->selectedText(), "width");
  EXPECT_FALSE(opened) << "the key of a package went before the field's";
  TFormEditor* main = Workbench->Documents().OpenModule(FileOf("Main"))->FormEditor();
  main->Show();
  TDesignSurface& surface = Workbench->Designers().Find(*main)->Surface();
  surface.setFocus();
  QTest::keyClick(&surface, Qt::Key_A, Qt::ControlModifier);
  EXPECT_FALSE(opened) << "the key of a package went first";
}

TEST_F(Viewer, ReplacedTextIsOneStepOfUndoAndIsCutToTheText) {
  const auto writer = Supports<IOTATextWriter>(
      Workbench->Workspace().Find(FileOf("Tools"))->Sources()[0]->Interface());
  ASSERT_TRUE(writer);
  TUnitDocument& tools = Document(FileOf("Tools"));
  const std::string before = tools.Text();
  writer->Replace(5, 5, "Things");
  EXPECT_TRUE(tools.Text().starts_with("unit Things;"));
  Workbench->EditWindow().Editor().undo();
  EXPECT_EQ(tools.Text(), before) << "more than one step";
  writer->Replace(1 << 20, 7, "end");
  EXPECT_EQ(tools.Text(), before + "end");
  writer->Replace(-4, 1 << 20, "all");
  EXPECT_EQ(tools.Text(), "all");
}

TEST_F(Viewer, DesignedWindowSurvivesWhoHeldIt) {
  TFormEditor* main = Workbench->Documents().OpenModule(FileOf("Main"))->FormEditor();
  const auto drawn = Supports<INTADesignWindow>(main->GetFormDesigner());
  ASSERT_TRUE(drawn);
  QWidget* window = drawn->GetRootWindow();
  ASSERT_NE(window, nullptr);
  EXPECT_FALSE(window->isVisible());
  EXPECT_TRUE(window->isWindow());
  auto holder = std::make_unique<QWidget>();
  auto* inner = new QWidget(holder.get());
  window->setParent(inner);
  window->show();
  holder->show();
  holder.reset();
  EXPECT_EQ(drawn->GetRootWindow(), window);
  EXPECT_EQ(window->parentWidget(), nullptr);
  EXPECT_FALSE(window->isVisible());
  main->Document()->History().Begin("Width");
  main->Document()->History().SetInteger(main->Document()->Root(), "ClientWidth", 320);
  main->Document()->History().Commit();
  EXPECT_EQ(window->width(), 320) << "the window shows an old form";
  TFormEditor* data = Workbench->Documents().OpenModule(FileOf("Data"))->FormEditor();
  EXPECT_EQ(Supports<INTADesignWindow>(data->GetFormDesigner())->GetRootWindow(), nullptr);
}

}  // namespace
}  // namespace wrenfold
