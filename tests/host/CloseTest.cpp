// Closing and the question before it.
#include <QTimer>

#include "host/HostTest.h"
#include "platform/widgets/Button.h"
#include "platform/widgets/MessageDialogs.h"

namespace wrenfold {
namespace {

enum TWayToClose { ByPage, ByModule, ByCloseAll, ByCloseProject, ByExit };
struct TCloseCase {
  const char* Name;
  TWayToClose Way;
  TMsgDlgBtn Answer;
};
class SaveQuestion : public HostTest, public testing::WithParamInterface<TCloseCase> {
 protected:
  bool CloseIt(TEditPage& page) {
    switch (GetParam().Way) {
      case ByPage:
        return Workbench->Views().ClosePage(page);
      case ByModule:
        return page.Source().GetModule()->Close();
      case ByCloseAll:
        return Workbench->Documents().CloseAll();
      case ByCloseProject:
        return Workbench->Documents().CloseProject();
      default:
        return Workbench->CloseQuery();
    }
  }
};

TEST_P(SaveQuestion, DecidesOverTextAndPage) {
  ASSERT_TRUE(Workbench->Documents().OpenProject(WriteProject()));
  const std::string file = FileOf("Tools"), before = Folder.Read(file);
  TEditPage& page = OpenPage(file);
  const TIntf<TSourceEditor> source(&page.Source());
  Type("{x}");
  ASSERT_TRUE(Document(file).Modified());

  Answers = {GetParam().Answer};
  const bool closes = GetParam().Answer != mbCancel;
  EXPECT_EQ(CloseIt(page), closes);
  ASSERT_EQ(Asked.size(), 1u);
  EXPECT_EQ(Asked[0], "Save changes to " + file + "?");
  EXPECT_EQ(Folder.Read(file), (GetParam().Answer == mbYes ? "{x}" : "") + before);
  // Leaving the workbench takes its pages down later, by itself.
  const bool gone = closes && GetParam().Way != ByExit;
  EXPECT_EQ(Workbench->EditWindow().PagesOf(*source).empty(), gone);
  if (!gone) {
    EXPECT_EQ(Document(file).Modified(), GetParam().Answer != mbYes);
  }
}
std::vector<TCloseCase> CloseCases() {
  static std::deque<std::string> names;
  constexpr const char* Ways[] = {"Page", "Module", "CloseAll", "CloseProject", "Exit"};
  std::vector<TCloseCase> cases;
  for (const TWayToClose way : {ByPage, ByModule, ByCloseAll, ByCloseProject, ByExit})
    for (const auto& [answer, name] :
         {std::pair(mbYes, "Yes"), std::pair(mbNo, "No"), std::pair(mbCancel, "Cancel")})
      cases.push_back({names.emplace_back(std::string(Ways[way]) + name).c_str(), way, answer});
  return cases;
}
INSTANTIATE_TEST_SUITE_P(Host, SaveQuestion, testing::ValuesIn(CloseCases()), CaseName);

class Closing : public HostTest {};

TEST_F(Closing, CancelKeepsEveryUnitWhenSeveralAreModified) {
  ASSERT_TRUE(Workbench->Documents().OpenProject(WriteProject()));
  for (const char* unit : {"Tools", "Child"}) {
    OpenPage(FileOf(unit));
    Type("{x}");
  }
  const auto pages = Workbench->EditWindow().Pages().size();
  Answers = {mbNo, mbCancel};
  EXPECT_FALSE(Workbench->Documents().CloseAll());
  EXPECT_EQ(Workbench->EditWindow().Pages().size(), pages);
  EXPECT_TRUE(Document(FileOf("Tools")).Modified()) << "an answer was carried out too early";
}

TEST_F(Closing, OneOfTwoViewsGoesWithoutAQuestionTheLastOneAsks) {
  const std::string file = Folder.Write("A.pas", "unit A;\r\n");
  TEditPage& first = OpenPage(file);
  const TIntf<TSourceEditor> source(&first.Source());
  Run("ViewNewEditWindowCommand");
  TEditPage& second = *Workbench->EditWindow().ActivePage();
  EXPECT_EQ(source->GetEditViewCount(), 2);
  Type("x");
  EXPECT_TRUE(Workbench->Views().ClosePage(second));
  EXPECT_EQ(source->GetEditViewCount(), 1);
  EXPECT_EQ(source->GetText(0, 2), "xu") << "the other view lost the edit";
  Answers = {mbNo};
  EXPECT_TRUE(Workbench->Views().ClosePage(first));
  EXPECT_EQ(Workbench->Workspace().Find(file), nullptr) << "a module without a page stayed open";
  EXPECT_EQ(source->GetEditViewCount(), 0);
  EXPECT_EQ(source->GetText(0, 2), "") << "a closed module's editor still answers";
}

TEST_F(Closing, DiscardedEditsOfTheProjectSourceDoNotComeBack) {
  const std::string file = WriteProject();
  ASSERT_TRUE(Workbench->Documents().OpenProject(file));
  TEditPage& page = OpenPage(file);
  Type("{x}");
  Answers = {mbNo};
  EXPECT_TRUE(Workbench->Views().ClosePage(page));
  ASSERT_NE(Workbench->Workspace().Project(), nullptr) << "closing the page closed the project";
  OpenPage(file);
  EXPECT_FALSE(Document(file).Modified());
  EXPECT_EQ(Document(file).Text(), Folder.Read(file));
}

// As the unit manager closes a page: by the local menu, which is built when it is opened.
TEST_F(Closing, TheLocalMenuClosesTheActivePage) {
  OpenPage(Folder.Write("A.pas", "unit A;\r\n"));
  OpenPage(Folder.Write("B.pas", "unit B;\r\n"));
  TEditControl& editor = Workbench->EditWindow().Editor();
  ASSERT_EQ(editor.PopupMenu()->Items()->Count(), 0);
  editor.PopupMenu()->OnPopup(editor.PopupMenu());
  auto* item = dynamic_cast<TMenuItem*>(editor.FindComponent("ecClosePage"));
  ASSERT_NE(item, nullptr);
  item->Click();
  ASSERT_EQ(Workbench->EditWindow().Pages().size(), 1u);
  EXPECT_EQ(Workbench->EditWindow().Tabs().Tabs()->Get(0), "A");
  item->Click();
  EXPECT_TRUE(Workbench->EditWindow().Pages().empty());
}

// A timer must find the question by its caption while it is open, and its buttons by their names.
TEST_F(Closing, TheQuestionIsAFormThatTimersSee) {
  const std::string file = Folder.Write("A.pas", "unit A;\r\n");
  TEditPage& page = OpenPage(file);
  Type("x");
  SetMessageDlgProc({});
  InstallMessageDialogs();
  bool seen = false;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    for (TForm* form : Screen().Forms()) {
      if (form->Caption() != "Confirm") continue;
      seen = form->FindComponent("Yes") != nullptr && form->FindComponent("Cancel") != nullptr;
      timer.stop();
      if (auto* no = dynamic_cast<TButton*>(form->FindComponent("No"))) no->Click();
    }
  });
  timer.start(20);
  EXPECT_TRUE(Workbench->Views().ClosePage(page));
  EXPECT_TRUE(seen);
  EXPECT_EQ(Folder.Read(file), "unit A;\r\n");
}

}  // namespace
}  // namespace wrenfold
