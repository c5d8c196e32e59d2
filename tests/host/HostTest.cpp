// The workbench that the tests drive, and their main program.
#include "host/HostTest.h"

#include <QSettings>

#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr char Program[] =
    "program Sample;\r\n\r\nuses\r\n  Forms,\r\n  Main in 'Main.pas' {MainForm},\r\n"
    "  Child in 'Child.pas' {ChildForm},\r\n  Tools in 'Tools.pas';\r\n\r\n{$R *.res}\r\n\r\n"
    "begin\r\n  Application.CreateForm(TMainForm, MainForm);\r\nend.\r\n";

std::string UnitText(const std::string& name, const std::string& declarations) {
  return "unit " + name + ";\r\ninterface\r\n" + declarations + "implementation\r\nend.\r\n";
}

}  // namespace

void HostTest::SetUp() {
  QSettings::setPath(QSettings::IniFormat, QSettings::UserScope,
                     ToQString(Folder.Path() + "/settings"));
  FDialogs = SetMessageDlgProc(
      [this](const std::string& text, TMsgDlgType, TMsgDlgButtons buttons) -> TMsgDlgBtn {
        Asked.push_back(text);
        if (Answers.empty()) {
          ADD_FAILURE() << "not expected to be asked: " << text;
          return buttons.Contains(mbCancel) ? mbCancel : buttons.Contains(mbNo) ? mbNo : mbOK;
        }
        const TMsgDlgBtn answer = Answers.front();
        Answers.pop_front();
        EXPECT_TRUE(buttons.Contains(answer)) << text;
        return answer;
      });
  Restart();
}

void HostTest::TearDown() {
  EXPECT_TRUE(Answers.empty()) << "a question was not asked";
  Workbench.reset();
  SetMessageDlgProc(FDialogs);
}

void HostTest::Restart() {
  Workbench.reset();
  Workbench = std::make_unique<TWorkbench>();
  Workbench->AfterConstruction();
  Workbench->Show();
}

std::string HostTest::WriteProject() {
  Folder.Write("Main.pas",
               UnitText("Main", "uses Forms;\r\ntype TMainForm = class(TForm) end;\r\n"));
  Folder.Write("Main.dfm",
               "object MainForm: TMainForm\r\n  Left = 10\r\n  Caption = 'Main'\r\n"
               "  object Panel: TPanel\r\n    Width = 5\r\n  end\r\nend\r\n");
  Folder.Write("Child.pas", UnitText("Child",
                                     "uses Main;\r\ntype TChildForm = class(TMainForm)"
                                     " end;\r\n"));
  Folder.Write("Child.dfm", "inherited ChildForm: TChildForm\r\n  Left = 3\r\nend\r\n");
  Folder.Write("Tools.pas", UnitText("Tools", ""));
  return Folder.Write("Sample.dpr", Program);
}

TEditPage& HostTest::OpenPage(const std::string& fileName) {
  EXPECT_TRUE(Workbench->Documents().OpenFile(fileName));
  return *Workbench->EditWindow().ActivePage();
}

void HostTest::Type(const std::string& text) {
  TEditControl& editor = Workbench->EditWindow().Editor();
  editor.SendScintilla(QsciScintilla::SCI_INSERTTEXT, 0UL, text.c_str());
}

TUnitDocument& HostTest::Document(const std::string& fileName) {
  return Workbench->Workspace().Find(fileName)->FindSource(fileName)->Document();
}

bool HostTest::HasMessage(const std::string& part) const {
  for (int i = 0; i < Workbench->Messages().Count(); ++i)
    if (Workbench->Messages().Text(i).find(part) != std::string::npos) return true;
  return false;
}

}  // namespace wrenfold

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  wrenfold::TApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
