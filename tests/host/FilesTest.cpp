// Files as they come: encodings, changes by others, read-only ones, broken projects, drops.
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <filesystem>

#include "host/HostTest.h"
#include "platform/widgets/Text.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

struct TBytesCase {
  const char* Name;
  std::string Before;
  std::string After;  // with an "x" typed in front of the text
};
class StoredForm : public HostTest, public testing::WithParamInterface<TBytesCase> {};

TEST_P(StoredForm, IsKeptByASave) {
  const std::string file = Folder.Write("A.pas", GetParam().Before);
  OpenPage(file);
  Type("x");
  ASSERT_TRUE(Workbench->Documents().SaveAll());
  EXPECT_EQ(Folder.Read(file), GetParam().After);
  EXPECT_FALSE(Document(file).Modified());
}
const TBytesCase BytesCases[] = {
    {"Utf8",
     "gr\xC3\xB6\xC3\x9F"
     "e\n",
     "xgr\xC3\xB6\xC3\x9F"
     "e\n"},
    {"Utf8WithMark",
     "\xEF\xBB\xBF"
     "a\r\n",
     "\xEF\xBB\xBF"
     "xa\r\n"},
    {"Utf16",
     "\xFF\xFE"
     "a\0\r\0\n\0"s,
     "\xFF\xFE"
     "x\0a\0\r\0\n\0"s},
    {"CodePage",
     "gr\xF6\xDF"
     "e\r\n",
     "xgr\xF6\xDF"
     "e\r\n"},
    {"MixedLineEnds", "a\r\nb\nc\rd", "xa\r\nb\nc\rd"},
    {"ZeroBytes", "a\0b\r\n"s, "xa\0b\r\n"s},
    {"Empty", "", "x"},
};
INSTANTIATE_TEST_SUITE_P(Host, StoredForm, testing::ValuesIn(BytesCases), CaseName);

class Files : public HostTest {
 protected:
  // Another program writes: the time differs, whatever the clock's steps.
  void ChangeOnDisk(const std::string& file, const std::string& bytes) {
    Folder.Write(fs::path(file).filename().string(), bytes);
    fs::last_write_time(file, fs::last_write_time(file) + std::chrono::seconds(5));
  }
};

TEST_F(Files, CharacterThatTheEncodingLacksIsSavedAsUtf8OnlyWhenWanted) {
  const std::string file = Folder.Write("A.pas",
                                        "gr\xF6\xDF"
                                        "e\r\n");
  OpenPage(file);
  Type("\xE4\xB8\xAD");
  Answers = {mbNo};
  EXPECT_FALSE(Workbench->Documents().SaveAll());
  EXPECT_EQ(Folder.Read(file),
            "gr\xF6\xDF"
            "e\r\n");
  EXPECT_TRUE(Document(file).Modified());
  Answers = {mbYes};
  EXPECT_TRUE(Workbench->Documents().SaveAll());
  EXPECT_EQ(Folder.Read(file),
            "\xEF\xBB\xBF\xE4\xB8\xADgr\xC3\xB6\xC3\x9F"
            "e\r\n");
}

TEST_F(Files, ChangedOnDiskIsReadAgainWhenTheUserWantsIt) {
  const std::string file = Folder.Write("A.pas", "one\r\n");
  OpenPage(file);
  ChangeOnDisk(file, "two\r\n");
  Answers = {mbYes};
  Workbench->DiskWatch().Check();
  EXPECT_EQ(Document(file).Text(), "two\r\n");
  EXPECT_FALSE(Document(file).Modified());
  Workbench->DiskWatch().Check();
}

TEST_F(Files, EditsStayWhenTheChangeOnDiskIsRefusedAndItIsNotAskedAgain) {
  const std::string file = Folder.Write("A.pas", "one\r\n");
  OpenPage(file);
  Type("mine ");
  ChangeOnDisk(file, "two\r\n");
  Answers = {mbNo};
  Workbench->DiskWatch().Check();
  EXPECT_EQ(Document(file).Text(), "mine one\r\n");
  Workbench->DiskWatch().Check();
  EXPECT_EQ(Folder.Read(file), "two\r\n");
}

TEST_F(Files, EditsReplacedByAReloadComeBackByUndo) {
  const std::string file = Folder.Write("A.pas", "one\r\n");
  OpenPage(file);
  Type("mine ");
  ChangeOnDisk(file, "two\r\n");
  Answers = {mbYes};
  Workbench->DiskWatch().Check();
  ASSERT_EQ(Document(file).Text(), "two\r\n");
  Run("EditUndoCommand");
  EXPECT_EQ(Document(file).Text(), "mine one\r\n");
  EXPECT_TRUE(Document(file).Modified());
}

TEST_F(Files, ChangeThatWasNotSeenYetIsNotWrittenOverUnasked) {
  const std::string file = Folder.Write("A.pas", "one\r\n");
  OpenPage(file);
  Type("x");
  ChangeOnDisk(file, "two\r\n");
  Answers = {mbNo};
  EXPECT_FALSE(Workbench->Documents().SaveAll());
  EXPECT_EQ(Folder.Read(file), "two\r\n");
}

TEST_F(Files, SavedFormDiffersInTheChangedValueAlone) {
  const std::string form =
      Folder.Write("Odd.lfm", "object Odd: TOdd\n  Left=1  \n\n  Caption = 'a' +\n   'b'\nend");
  TFormDocument document(form);
  TByteWriter two;
  two.WriteIntegerValue(2);
  document.Root().SetValue("Left", two.View());
  document.Save();
  EXPECT_EQ(Folder.Read(form), "object Odd: TOdd\n  Left=2  \n\n  Caption = 'a' +\n   'b'\nend");
}

TEST_F(Files, FormChangedOnDiskIsReadAgainAndEditsOfItAreAskedFor) {
  ASSERT_TRUE(Workbench->Documents().OpenProject(WriteProject()));
  const std::string file = Folder.Path() + "/Main.dfm", bytes = Folder.Read(file);
  TFormEditor& form = *Workbench->Workspace().Find(file)->FormEditor();
  ChangeOnDisk(file, "object MainForm: TMainForm\r\n  Left = 77\r\nend\r\n");
  Workbench->DiskWatch().Check();
  EXPECT_EQ(form.Document()->Root().Properties().size(), 1u);
  form.MarkModified();
  ChangeOnDisk(file, bytes);
  Answers = {mbNo};
  Workbench->DiskWatch().Check();
  EXPECT_EQ(form.Document()->Root().Properties().size(), 1u);
  Workbench->DiskWatch().Check();
  // A change that was not seen yet is not written over unasked.
  ChangeOnDisk(file, bytes + "\r\n");
  Answers = {mbNo};
  EXPECT_FALSE(Workbench->Documents().SaveAll());
  EXPECT_EQ(Folder.Read(file), bytes + "\r\n");
  fs::permissions(file, fs::perms::owner_read);
  Answers = {mbNo};
  EXPECT_FALSE(Workbench->Documents().SaveAll());
  EXPECT_EQ(Folder.Read(file), bytes + "\r\n");
}

TEST_F(Files, RemovedFileKeepsItsTextInTheEditor) {
  const std::string file = Folder.Write("A.pas", "one\r\n");
  OpenPage(file);
  fs::remove(file);
  Workbench->DiskWatch().Check();
  EXPECT_TRUE(Document(file).Modified());
  EXPECT_TRUE(HasMessage("A.pas is no longer on disk"));
  EXPECT_TRUE(Workbench->Documents().SaveAll());
  EXPECT_EQ(Folder.Read(file), "one\r\n");
}

TEST_F(Files, ReadOnlyFileIsMarkedAndSavedUnderAnotherName) {
  const std::string file = Folder.Write("A.pas", "one\r\n"), other = Folder.Path() + "/B.pas";
  fs::permissions(file, fs::perms::owner_read);
  OpenPage(file);
  EXPECT_TRUE(Document(file).ReadOnly());
  Type("x");
  Answers = {mbYes};
  Workbench->FileDialogs().Save = [&](auto&&...) { return other; };
  EXPECT_TRUE(Workbench->Documents().SaveAll());
  EXPECT_EQ(Folder.Read(file), "one\r\n");
  EXPECT_EQ(Folder.Read(other), "xone\r\n");
  EXPECT_EQ(Workbench->EditWindow().Tabs().Tabs()->Get(0), "B");
}

TEST_F(Files, FailedSaveKeepsPageTextAndMark) {
  const std::string file = Folder.Write("sub/A.pas", "one\r\n");
  TEditPage& page = OpenPage(file);
  Type("x");
  fs::remove_all(Folder.Path() + "/sub");
  Answers = {mbYes, mbOK};  // save it; the message that it failed
  EXPECT_FALSE(Workbench->Views().ClosePage(page));
  EXPECT_EQ(Document(file).Text(), "xone\r\n");
  EXPECT_TRUE(Document(file).Modified());
}

TEST_F(Files, NewUnitAsksForItsNameAndTakesTheFirstFreeOne) {
  ASSERT_TRUE(Workbench->Documents().OpenProject(WriteProject()));
  Folder.Write("Unit1.pas", "");
  Workbench->Documents().NewUnit(TSourceLanguage::Pascal);
  Workbench->Documents().NewUnit(TSourceLanguage::Pascal);
  EXPECT_EQ(Workbench->EditWindow().ActivePage()->Source().FileName(), FileOf("Unit3"));
  std::string asked;
  Workbench->FileDialogs().Save = [&](const std::string&, const std::string& name, auto&&...) {
    asked = name;
    return std::string();
  };
  Run("FileSaveCommand");
  EXPECT_EQ(asked, FileOf("Unit3"));
  EXPECT_FALSE(fs::exists(FileOf("Unit3"))) << "giving up wrote a file";
}

TEST_F(Files, UnitsOfOneNameInTwoFoldersAreTwoUnits) {
  OpenPage(Folder.Write("a/Same.pas", "first"));
  OpenPage(Folder.Write("b/Same.pas", "second"));
  EXPECT_EQ(Workbench->EditWindow().Pages().size(), 2u);
  EXPECT_EQ(Document(Folder.Path() + "/a/Same.pas").Text(), "first");
  EXPECT_EQ(Document(Folder.Path() + "/b/Same.pas").Text(), "second");
}

TEST_F(Files, DroppedProjectIsOpened) {
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(ToQString(WriteProject()))});
  QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  Application().notify(Workbench.get(), &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  Application().notify(Workbench.get(), &drop);
  Application().ProcessMessages();
  ASSERT_NE(Workbench->Workspace().Project(), nullptr);
  EXPECT_EQ(Workbench->Caption(), "Sample - Wrenfold");
}

struct TBrokenCase {
  const char* Name;
  const char* FileName;
  std::optional<std::string> Bytes;
};
class BrokenProject : public HostTest, public testing::WithParamInterface<TBrokenCase> {};

TEST_P(BrokenProject, IsRefusedInWordsAndTheOpenOneStays) {
  ASSERT_TRUE(Workbench->Documents().OpenProject(WriteProject()));
  const std::string file = GetParam().Bytes ? Folder.Write(GetParam().FileName, *GetParam().Bytes)
                                            : Folder.Path() + "/" + GetParam().FileName;
  EXPECT_FALSE(Workbench->Documents().OpenProject(file));
  EXPECT_TRUE(HasMessage(GetParam().FileName));
  ASSERT_NE(Workbench->Workspace().Project(), nullptr);
  EXPECT_EQ(Workbench->Workspace().Project()->Project().Name(), "Sample");
}
const TBrokenCase BrokenCases[] = {
    {"Missing", "None.dpr", {}},
    {"Empty", "Empty.dpr", ""},
    {"Binary", "Noise.dpr",
     std::string("\x7f"
                 "ELF\0\1\2\0\0\0\xff\xfe",
                 12)},
    {"NoProject", "Unit.dpr", "unit A; interface implementation end."},
};
INSTANTIATE_TEST_SUITE_P(Host, BrokenProject, testing::ValuesIn(BrokenCases), CaseName);

TEST_F(Files, MissingUnitIsListedAndTheRestOpens) {
  const std::string project = WriteProject();
  fs::remove(FileOf("Child"));
  ASSERT_TRUE(Workbench->Documents().OpenProject(project));
  EXPECT_TRUE(HasMessage("Child.pas"));
  EXPECT_TRUE(Workbench->Documents().OpenFile(FileOf("Tools")));
  EXPECT_EQ(Workbench->Documents().OpenModule(FileOf("Child")), nullptr);
}

TEST_F(Files, PagesOfAProjectComeBackWithIt) {
  const std::string project = WriteProject();
  ASSERT_TRUE(Workbench->Documents().OpenProject(project));
  EXPECT_EQ(Workbench->EditWindow().ActivePage()->Source().FileName(), FileOf("Main"))
      << "the main form's unit is what one starts with";
  OpenPage(FileOf("Tools"));
  Run("ViewNewEditWindowCommand");
  ASSERT_TRUE(Workbench->CloseQuery());
  Restart();
  ASSERT_TRUE(Workbench->Documents().OpenProject(project));
  const auto pages = Workbench->EditWindow().Pages();
  ASSERT_EQ(pages.size(), 4u);
  EXPECT_EQ(&pages[2]->Source(), &pages[3]->Source());
  EXPECT_EQ(Workbench->EditWindow().ActivePage(), pages[3]);
}

TEST_F(Files, SaveAsRenamesTheUnitInItsSourceAndInTheProject) {
  const std::string project = WriteProject();
  ASSERT_TRUE(Workbench->Documents().OpenProject(project));
  OpenPage(FileOf("Tools"));
  const std::string name = Folder.Path() + "/Gear.pas";
  Workbench->FileDialogs().Save = [&](auto&&...) { return name; };
  Run("FileSaveAsCommand");
  EXPECT_TRUE(Folder.Read(name).starts_with("unit Gear;")) << Folder.Read(name);
  EXPECT_NE(Document(project).Text().find("Gear in 'Gear.pas';"), std::string::npos);
  EXPECT_NE(Workbench->Workspace().Project()->Project().FindModuleByUnit("Gear"), nullptr);
  EXPECT_TRUE(Document(project).Modified()) << "the project's source was changed without a word";
  Workbench->Documents().SaveAll();
}

TEST_F(Files, SaveAsOfACppUnitLeadsItToItsHeaderUnderTheNewName) {
  const std::string unit = Folder.Write("Old.cpp", "#include \"Old.h\"\r\n");
  Folder.Write("Old.h", "class TOld;\r\n");
  OpenPage(unit);
  Workbench->FileDialogs().Save = [&](auto&&...) { return Folder.Path() + "/New.cpp"; };
  Run("FileSaveAsCommand");
  EXPECT_EQ(Folder.Read(Folder.Path() + "/New.cpp"), "#include \"New.h\"\r\n");
  EXPECT_EQ(Folder.Read(Folder.Path() + "/New.h"), "class TOld;\r\n");
}

TEST_F(Files, NewUnitIsSavedAndAddedToTheProject) {
  const std::string project = WriteProject();
  ASSERT_TRUE(Workbench->Documents().OpenProject(project));
  Run("FileNewUnitCommand");
  Workbench->FileDialogs().Save = [&](auto&&...) { return Folder.Path() + "/sub/Extra.pas"; };
  std::filesystem::create_directory(Folder.Path() + "/sub");
  Run("ProjectAddUnitCommand");
  EXPECT_NE(Document(project).Text().find("Tools in 'Tools.pas',\r\n  Extra in 'sub\\Extra.pas';"),
            std::string::npos)
      << Document(project).Text();
  const TModule* module = Workbench->Views().CurrentModule();
  EXPECT_FALSE(Workbench->Documents().Saving().ProjectEditing().CanAdd(*module));
  Workbench->Documents().SaveAll();
}

TEST_F(Files, ProjectFileFollowsUnitsThatComeAndGo) {
  std::string name = Folder.Path() + "/App.lpi";
  Workbench->FileDialogs().Save = [&](auto&&...) { return name; };
  Run("FileNewProjectCommand");
  const std::string before = Folder.Read(name), source = Folder.Read(Folder.Path() + "/App.lpr");
  ASSERT_EQ(Workbench->Workspace().Project()->Project().Modules().size(), 1u);
  EXPECT_EQ(Workbench->Workspace().Project()->Project().Statistics().Forms, 1u);
  name = Folder.Path() + "/Unit1.pas";
  Run("FileNewFormCommand");
  EXPECT_EQ(Workbench->Designers().Windows().size(), 1u);
  EXPECT_TRUE(Workbench->Documents().SaveAll());
  EXPECT_NE(Folder.Read(Folder.Path() + "/App.lpi").find("\"Unit1.pas\""), std::string::npos);
  EXPECT_NE(Folder.Read(Folder.Path() + "/App.lpr").find("CreateForm(TForm1, Form1);"),
            std::string::npos);
  Run("ProjectRemoveUnitCommand");
  EXPECT_TRUE(Workbench->Documents().SaveAll());
  EXPECT_EQ(Folder.Read(Folder.Path() + "/App.lpi"), before);
  EXPECT_EQ(Folder.Read(Folder.Path() + "/App.lpr"), source);
  name = Folder.Path() + "/sub/Other.lpi";
  fs::create_directory(Folder.Path() + "/sub");
  Folder.Write("sub/Main.pas", "mine");
  Run("FileNewProjectCommand");
  EXPECT_TRUE(HasMessage("there already"));
  EXPECT_FALSE(fs::exists(name));
}

TEST_F(Files, ProjectsOfAGroupStandInOneTreeAndAreOpenedFromIt) {
  const std::string first = Folder.Write("One/One.dpr", "program One; uses Tool in 'Tool.pas';");
  const std::string second = Folder.Write("Two.dpr", "program Two; uses Main in 'Main.pas';");
  Folder.Write("Main.pas", "unit Main;");
  ASSERT_TRUE(Workbench->Documents().OpenAny(
      Folder.Write("All.groupproj",
                   "<Project><ItemGroup><Projects Include=\"one\\One.dpr\"/>"
                   "<Projects Include=\"Two.dpr\"/></ItemGroup></Project>")));
  QTreeWidget& tree = Workbench->ProjectPanel().Tree();
  QTreeWidgetItem* top = tree.topLevelItem(0);
  ASSERT_EQ(top->childCount(), 2);
  EXPECT_EQ(Workbench->Workspace().Project()->FileName(), first);
  top->child(1)->setExpanded(true);
  ASSERT_EQ(top->child(1)->childCount(), 1);
  EXPECT_EQ(top->child(1)->child(0)->text(0), "Main");
  Q_EMIT tree.itemActivated(top->child(1), 0);
  EXPECT_EQ(Workbench->Workspace().Project()->FileName(), second);
  EXPECT_EQ(tree.topLevelItem(0)->childCount(), 2) << "the group goes with its first project";
  ASSERT_TRUE(Workbench->Documents().CloseProject());
  EXPECT_EQ(tree.topLevelItemCount(), 0);
}

TEST_F(Files, FormThatCannotBeReadOpensAsTextAtThePlaceOfTheTrouble) {
  const std::string unit = Folder.Write("A.pas", "unit A;\r\n");
  const std::string form =
      Folder.Write("A.dfm", "object A: TA\r\n  Left = 1\r\n  Top = = 2\r\nend\r\n");
  ASSERT_TRUE(Workbench->Documents().OpenFile(form));
  TEditPage& page = *Workbench->EditWindow().ActivePage();
  EXPECT_EQ(page.Source().FileName(), form);
  int line = 0, column = 0;
  Workbench->EditWindow().CursorOf(page, line, column);
  EXPECT_EQ(std::pair(line, column), std::pair(3, 9));
  // Mended as text, it is a form again.
  page.Source().Document().Replace(page.Source().Document().Text().find("= 2"), 2, "");
  ASSERT_TRUE(Workbench->Documents().SaveAll());
  ASSERT_TRUE(Workbench->Documents().OpenFile(form));
  EXPECT_EQ(Workbench->Designers().Windows().size(), 1u);
  Workbench->Documents().CloseAll();
}

TEST_F(Files, FolderOpensTheOneProjectInItOrAsks) {
  EXPECT_FALSE(Workbench->Documents().OpenAny(Folder.Path()));
  EXPECT_TRUE(HasMessage("expected a project"));
  const std::string first = WriteProject();
  std::vector<std::string> offered;
  Workbench->FileDialogs().Choose = [&](const std::string&, const std::vector<std::string>& files) {
    offered = files;
    return files[1];
  };
  EXPECT_TRUE(Workbench->Documents().OpenAny(Folder.Path()));
  EXPECT_TRUE(offered.empty()) << "asked although there is one";
  Workbench->Documents().CloseAll();
  const std::string second = Folder.Write("Second.dpr", "program Second; uses Tools; begin end.");
  EXPECT_TRUE(Workbench->Documents().OpenAny(Folder.Path()));
  EXPECT_EQ(Workbench->Workspace().Project()->FileName(), second);
}

TEST_F(Files, StartWithoutFilesOpensWhatWasOpenAtTheEnd) {
  const std::string project = WriteProject();
  const std::string loose = Folder.Write("Loose.pas", "unit Loose;");
  struct TRow {
    std::string Project;
    std::vector<std::string> Pages;
  };
  for (const TRow& row :
       {TRow{project, {FileOf("Tools"), loose}}, TRow{"", {loose}}, TRow{"", {}}}) {
    Workbench->Documents().CloseAll();
    if (!row.Project.empty()) Workbench->Documents().OpenProject(row.Project);
    while (TEditPage* page = Workbench->EditWindow().ActivePage())
      Workbench->Views().ClosePage(*page);
    for (const std::string& file : row.Pages) OpenPage(file);
    ASSERT_TRUE(Workbench->CloseQuery());
    Restart();
    Workbench->Sessions().OpenLast();
    std::vector<std::string> pages;
    for (const TEditPage* page : Workbench->EditWindow().Pages())
      pages.push_back(page->Source().FileName());
    EXPECT_EQ(pages, row.Pages);
    const TProjectHolder* open = Workbench->Workspace().Project();
    EXPECT_EQ(open != nullptr ? open->FileName() : "", row.Project);
  }
}

TEST_F(Files, ManyAreOpenedInOneGoAndAllHaveTheirPages) {
  std::vector<std::string> files;
  for (const char* name : {"A", "B", "C"})
    files.push_back(Folder.Write(std::string(name) + ".pas", std::string("unit ") + name + ";"));
  files.insert(files.begin() + 1, Folder.Path() + "/Gone.pas");
  Workbench->Documents().OpenAll(files);
  EXPECT_EQ(Workbench->EditWindow().Pages().size(), 3u);
  EXPECT_TRUE(HasMessage("Gone.pas"));
  EXPECT_EQ(EditorText(Workbench->EditWindow().Editor()), "unit C;");
  EXPECT_TRUE(Workbench->EditWindow().Tabs().isVisible());
  EXPECT_EQ(Workbench->Documents().Settings().ReopenList(),
            std::vector({files[3], files[2], files[0]}));
}

}  // namespace
}  // namespace wrenfold
