// Files through the editor: its dialogs, and everything that can be wrong with a file.
#include <gmock/gmock.h>

#include <QTemporaryDir>
#include <filesystem>

#include "EditorSupport.h"
#include "FileDialogDriver.h"
#include "Station.h"
#include "StationFile.h"
#include "editor/rkStrEdit.h"
#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"
#include "spec/rkSpcMng.h"
#include "spec/rkSpcVers.h"
#include "storage/rkStorage.h"

namespace wrenfold::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class EditorFiles : public testing::Test {
 protected:
  void Show() {
    Editor.ShowTree(Spc);
    QApplication::setActiveWindow(Editor.Form());
    Application().ProcessMessages();
  }
  void Press(const char* action) {
    Application().Idle();
    ASSERT_TRUE(Editor.Form()->FindAction(action)->Enabled()) << action;
    Editor.Form()->FindAction(action)->Execute();
  }
  TGarden& Edited() { return static_cast<TGarden&>(*Editor.GetUpdatingSpc()); }
  std::string File(const std::string& name) const {
    return Folder.path().toStdString() + "/" + name;
  }
  static std::string Bytes(TPersistent& object) { return GetProps({&object}, osfBin); }

  QTemporaryDir Folder;
  std::unique_ptr<TSpcObject> Spc = std::make_unique<TGarden>();
  TTestEditor Editor;
};

TEST_F(EditorFiles, SavingUnderANameTakesTheFormatOfTheFilterAndItsExtension) {
  const struct {
    int Filter;
    const char *Typed, *Written;
    TObjectStorageFormat Format;
  } rows[] = {{1, "plain", "plain.sbn", osfBin},
              {2, "plain", "plain.stx", osfText},
              {3, "whole", "whole.sbn", osfBin},
              {2, "named.dat", "named.dat", osfText}};
  for (const auto& row : rows) {
    const TAnswers answers({mbNo});
    Show();
    TOffered offered;
    AnswerFileDialog(File(row.Typed), row.Filter, &offered);
    Press("ActSaveAsSpc");
    EXPECT_EQ(offered.Title, "Save specification");
    EXPECT_EQ(offered.Filters,
              "Binary specification files (*.sbn)|Text specification files (*.stx)|All files (*)");
    EXPECT_EQ(Editor.FileName(), File(row.Written));
    EXPECT_EQ(Editor.FileFormat(), row.Format);
    ASSERT_TRUE(FileExists(File(row.Written))) << row.Written;
    EXPECT_EQ(ReadWholeFile(File(row.Written)).starts_with("object"), row.Format == osfText);
    EXPECT_THAT(answers.Asked, IsEmpty()) << "the name is a new one";
    Editor.Form()->Close();
    Application().ProcessMessages();
  }
  EXPECT_THAT(Editor.Setting, HasSubstr("SaveDir=" + File("")));
}

TEST_F(EditorFiles, AFileThatIsThereIsReplacedOnRequestAlone) {
  SafeWriteFile(File("taken.sbn"), "mine");
  TAnswers answers({mbNo, mbYes});
  Show();
  AnswerFileDialog(File("taken"));
  Press("ActSaveAsSpc");
  EXPECT_EQ(ReadWholeFile(File("taken.sbn")), "mine");
  EXPECT_EQ(Editor.FileName(), "");
  AnswerFileDialog(File("taken"));
  Press("ActSaveAsSpc");
  EXPECT_NE(ReadWholeFile(File("taken.sbn")), "mine");
  EXPECT_EQ(answers.Asked[0], "File with name " + File("taken.sbn") + " already exists. Replace?");
  AnswerFileDialog("");
  Press("ActSaveAsSpc");
  EXPECT_EQ(answers.Asked.size(), 2u);
}

TEST_F(EditorFiles, OpeningAsksAboutChangesAndShowsTheOtherSpecification) {
  TGarden other;
  other.Title = "Sissinghurst";
  other.AddPlace("Tower");
  SaveSpc(other, File("other.stx"), osfText);
  TAnswers answers({mbCancel, mbNo});
  Show();
  Editor.SetFile(File("mine.sbn"), osfBin);
  Editor.Type("Title", "Wisley");
  TOffered offered;
  AnswerFileDialog(File("other.stx"), 3, &offered);
  Press("ActLoadSpc");
  EXPECT_EQ(offered.Folder + "/", File("")) << "the folder of the current file";
  EXPECT_EQ(offered.Title, "Load specification");
  EXPECT_EQ(Edited().Title, "Wisley") << "cancelled";
  AnswerFileDialog(File("other.stx"), 3);
  Press("ActLoadSpc");
  EXPECT_EQ(Edited().Title, "Sissinghurst");
  EXPECT_NE(Editor.NodeAt("Places\nTower[1]"), nullptr);
  EXPECT_EQ(Editor.FileFormat(), osfText);
  EXPECT_EQ(Editor.Journal().Count(), 0);
  EXPECT_FALSE(Editor.Changed());
  EXPECT_EQ(answers.Asked.size(), 2u);
  EXPECT_TRUE(Editor.Form()->Close());
  Application().ProcessMessages();
  EXPECT_THAT(Editor.Setting, HasSubstr("LoadDir=" + File("")));
}

TEST_F(EditorFiles, ABadFileIsToldByItsNameAndChangesNothing) {
  TGarden good;
  good.Title = "Good";
  for (int i = 0; i < 20; ++i) good.AddPlace("Place");
  SaveSpc(good, File("good.sbn"), osfBin);
  SaveSpc(good, File("good.stx"), osfText);
  const std::string binary = ReadWholeFile(File("good.sbn"));
  const std::string text = ReadWholeFile(File("good.stx"));
  SafeWriteFile(File("half.sbn"), binary.substr(0, binary.size() / 2));
  SafeWriteFile(File("half.stx"), text.substr(0, text.size() / 2));
  SafeWriteFile(File("empty.sbn"), "");
  SafeWriteFile(File("noise.sbn"), std::string(5000, '\xA7'));
  TInner inner;
  SaveSpc(inner, File("other.sbn"), osfBin);
  std::filesystem::create_directory(File("folder.sbn"));

  Show();
  Editor.Type("Title", "Wisley");
  const std::string root = Bytes(*Spc), edited = Bytes(Edited());
  for (const char* name : {"half.sbn", "half.stx", "empty.sbn", "noise.sbn", "other.sbn",
                           "folder.sbn", "missing.sbn"}) {
    TAnswers answers({mbOK});
    EXPECT_FALSE(Editor.LoadFromFile(File(name))) << name;
    ASSERT_GE(answers.Asked.size(), 1u) << name;
    EXPECT_THAT(answers.Asked.back(), HasSubstr(name));
    EXPECT_EQ(Bytes(*Spc), root) << name;
    EXPECT_EQ(Bytes(Edited()), edited) << name;
    EXPECT_EQ(Editor.FileName(), "") << name;
  }
  EXPECT_TRUE(Editor.Changed());
  const TAnswers no({mbNo});
  Editor.Form()->Close();
}

class TFullDisk : public TFileSystem {
 public:
  TFullDisk() : FBefore(SetFileSystem(this)) {}
  ~TFullDisk() override { SetFileSystem(FBefore); }
  int Write(int, std::string_view, std::size_t&) override { return ENOSPC; }

 private:
  TFileSystem* FBefore;
};

TEST_F(EditorFiles, AFullDiskIsToldAndTheOldFileAndTheChangesStay) {
  Show();
  Editor.SetFile(File("garden.sbn"), osfBin);
  ASSERT_TRUE(Editor.Save());
  const std::string before = ReadWholeFile(File("garden.sbn"));
  Editor.Type("Title", "Wisley");
  {
    const TFullDisk full;
    TAnswers answers({mbYes, mbOK});
    EXPECT_FALSE(Editor.Form()->Close());
    ASSERT_EQ(answers.Asked.size(), 2u);
    EXPECT_THAT(answers.Asked[1], HasSubstr("garden.sbn"));
    EXPECT_THAT(answers.Asked[1], HasSubstr("No space left"));
  }
  EXPECT_EQ(ReadWholeFile(File("garden.sbn")), before);
  EXPECT_TRUE(Editor.Changed());
  EXPECT_TRUE(Editor.Save());
}

TEST_F(EditorFiles, ClosingSavesWithoutAWordWhenItIsToldTo) {
  TAnswers answers;
  Editor.Options = {eoSaveSpcOnExit};
  Show();
  Editor.SetFile(File("garden.stx"), osfText);
  Editor.Type("Title", "Wisley", false);
  EXPECT_TRUE(Editor.Form()->Close());
  EXPECT_THAT(answers.Asked, IsEmpty());
  EXPECT_THAT(ReadWholeFile(File("garden.stx")), HasSubstr("Title = 'Wisley'"));
}

TEST(StringsRow, ATextOfAHundredMegabytesIsRefusedInTheDialogAndTheLinesStay) {
  const QTemporaryDir folder;
  const std::string name = FromQString(folder.path()) + "/large.txt";
  SafeWriteFile(name, "x");
  std::filesystem::resize_file(name, 100 * 1024 * 1024);
  TAnswers answers({mbOK});
  const std::unique_ptr<TStrEditDlg> dialog(NewForm<TStrEditDlg>(nullptr));
  dialog->Memo()->setPlainText("kept");
  dialog->Show();
  QApplication::setActiveWindow(dialog.get());
  AnswerFileDialog(name, 4);
  Guarded(dialog.get(), [&] { dialog->LoadItem()->Click(); });
  ASSERT_EQ(answers.Asked.size(), 1u);
  EXPECT_THAT(answers.Asked[0], HasSubstr("100 MB"));
  EXPECT_EQ(dialog->Memo()->toPlainText(), "kept");
  EXPECT_FALSE(dialog->windowFlags().testFlag(Qt::WindowMinimizeButtonHint));
  EXPECT_TRUE(dialog->windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
}

// The demonstration's files.

class StationFiles : public testing::Test {
 protected:
  StationFiles() {
    SaveSpcProc = demo::SaveStation;
    LoadSpcProc = demo::LoadStation;
    InitPropTypes();
    Editor.TranslatingTable->SetText(demo::StationTexts());
  }
  ~StationFiles() override {
    SaveSpcProc = SaveSpcInner;
    LoadSpcProc = LoadSpcInner;
  }
  demo::TStation& Station() { return static_cast<demo::TStation&>(*Spc); }
  std::string File(const char* name) const { return Folder.path().toStdString() + "/" + name; }
  // A file that says it is of these versions.
  void WriteVersioned(const std::string& versions) {
    demo::TStation other;
    other.Observer = "Somebody";
    SaveObjectDataBinary({&other}, File("station.sbn"), versions);
  }

  QTemporaryDir Folder;
  std::unique_ptr<TSpcObject> Spc = std::make_unique<demo::TStation>();
  TTestEditor Editor;
};

TEST_F(StationFiles, ALaterVersionIsAskedAboutAndNoMeansNothingHappened) {
  const struct {
    const char* Versions;
    int Questions;
  } rows[] = {{"1.01 4.00", 0}, {"9.50 4.00", 1}, {"1.01 99.99", 1}, {"9.50 99.99", 2}};
  for (const auto& row : rows) {
    WriteVersioned(row.Versions);
    Station().Observer = "A. Windsor";
    TAnswers no({mbNo});
    EXPECT_EQ(Editor.LoadFromFile(Spc, File("station.sbn")), row.Questions == 0) << row.Versions;
    EXPECT_EQ(no.Asked.size(), static_cast<std::size_t>(row.Questions)) << row.Versions;
    EXPECT_EQ(Station().Observer, row.Questions == 0 ? "Somebody" : "A. Windsor") << row.Versions;
    TAnswers yes({mbYes});
    EXPECT_TRUE(Editor.LoadFromFile(Spc, File("station.sbn"))) << row.Versions;
    EXPECT_EQ(Station().Observer, "Somebody");
  }
  WriteVersioned("no versions");
  TAnswers answers({mbOK});
  EXPECT_FALSE(Editor.LoadFromFile(Spc, File("station.sbn")));
  EXPECT_EQ(answers.Asked.size(), 1u);
}

TEST_F(StationFiles, EveryNodeIsLookedAtAndTheSavedBytesAreTheSame) {
  Station().Recorder = demo::Recorders().Components()[1];
  for (const char* name : {"Rain", "Wind"})
    static_cast<demo::TSensor&>(*Station().Sensors->Add()).NodeName = name;
  static_cast<TFixedCollection&>(*Station().Contacts).Add("Ann");
  for (const TObjectStorageFormat format : {osfBin, osfText}) {
    demo::SaveStation(*Spc, File("before"), format);
    const std::string before = ReadWholeFile(File("before"));
    Editor.SetFile(File("after"), format);
    Editor.ShowTree(Spc);
    std::vector<TTreeNode*> nodes;
    ForEachNode(*Editor.RootNode(), [&](TTreeNode& node) { nodes.push_back(&node); });
    EXPECT_GE(nodes.size(), 9u);
    for (TTreeNode* node : nodes) {
      Editor.SelectNode(node);
      for (const auto& row : Editor.Rows())
        if (row->EControl->Enabled()) row->EControl->Widget()->setFocus();
    }
    ASSERT_TRUE(Editor.Save());
    EXPECT_EQ(ReadWholeFile(File("after")), before);
    TAnswers answers;
    EXPECT_TRUE(Editor.Form()->Close());
    EXPECT_THAT(answers.Asked, IsEmpty());
    Application().ProcessMessages();
  }
}

TEST_F(StationFiles, TheComponentRowOffersWhatTheClientNamesAndTheFileKeepsTheChoice) {
  Editor.Candidates = [](const TPersistent&, const TPropInfo&) {
    return demo::Recorders().Components();
  };
  Editor.SetFile(File("station.stx"), osfText);
  Editor.ShowTree(Spc);
  QApplication::setActiveWindow(Editor.Form());
  auto* box = static_cast<QComboBox*>(Editor.Widget("Recorder"));
  std::string offered;
  for (int i = 0; i < box->count(); ++i) offered += FromQString(box->itemText(i)) + ' ';
  EXPECT_EQ(offered, "(none) PaperStrip MemoryCard RadioLink ");
  box->setFocus();
  QTest::keyClick(box, Qt::Key_Down);
  QTest::keyClick(box, Qt::Key_Down);
  ASSERT_TRUE(Editor.Save());
  Station().Recorder = nullptr;
  ASSERT_TRUE(Editor.LoadFromFile(Spc, File("station.stx")));
  ASSERT_NE(Station().Recorder, nullptr);
  EXPECT_EQ(Station().Recorder->Name(), "MemoryCard");
}

}  // namespace
}  // namespace wrenfold::test
