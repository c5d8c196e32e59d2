// Forms in a real repository: diff, merge and conflict as git shows them.
#include <gmock/gmock.h>

#include <cstdio>

#include "CommandsSupport.h"

namespace wrenfold {
namespace {

using testing::HasSubstr;
using testing::Not;

class GitTest : public CommandsTest {
 protected:
  void SetUp() override {
    CommandsTest::SetUp();
    if (std::system("git --version > /dev/null 2>&1") != 0) GTEST_SKIP() << "there is no git";
    Git("init -q -b main .");
    Git("config user.email a@example.org");
    Git("config user.name A");
    Git("config core.autocrlf false");
    const auto setup = Run("PATH=" WRENFOLD_BIN_DIR ":$PATH wrenfold-spc git-setup --apply");
    ASSERT_THAT(setup, HasSubstr("info/attributes"));
  }

  // What a command in the repository prints, errors included.
  std::string Run(const std::string& command) {
    const std::string line = "cd '" + Folder.string() + "' && { " + command + " ; } 2>&1";
    std::string text;
    FILE* pipe = popen(line.c_str(), "r");
    for (int c = 0; (c = std::fgetc(pipe)) != EOF;) text += static_cast<char>(c);
    Code = pclose(pipe);
    return text;
  }
  std::string Git(const std::string& arguments) {
    return Run("PATH=" WRENFOLD_BIN_DIR ":$PATH git " + arguments);
  }

  // A form of two buttons, binary.
  std::string FormOf(const std::string& first, const std::string& left, const std::string& second) {
    const std::string text = "object Main: TMain\r\n  object " + first +
                             ": TButton\r\n    Left = " + left + "\r\n    Caption = '" + first[0] +
                             "'\r\n  end\r\n  object Two: TButton\r\n    Caption = '" + second +
                             "'\r\n  end\r\nend\r\n";
    const std::string from = Write("text", text), to = (Folder / "binary").string();
    RunConvert(from, to, {TStoredForm::Resource}, Output);
    const std::string bytes = ReadWholeFile(to);
    fs::remove(from);
    fs::remove(to);
    return bytes;
  }
  void Commit(const std::string& form) {
    Write("Main.dfm", form);
    Git("add Main.dfm");
    Git("commit -qm change");
  }
  // Merges a branch with theirs into ours, both from base.
  std::string Merge(const std::string& base, const std::string& ours, const std::string& theirs) {
    Commit(base);
    Git("checkout -qB side");
    Commit(theirs);
    Git("checkout -q main");
    Commit(ours);
    return Git("merge -q -m merged side");
  }
  int Code = 0;
};

TEST_F(GitTest, DiffOfBinaryFormsShowsTheirText) {
  Commit(FormOf("One", "1", "two"));
  Write("Main.dfm", FormOf("One", "5", "two"));
  const std::string diff = Git("diff");
  EXPECT_THAT(diff, HasSubstr("-    Left = 1"));
  EXPECT_THAT(diff, HasSubstr("+    Left = 5"));
  Write("Main.dfm", "no form\n");
  EXPECT_THAT(Git("diff"), HasSubstr("+no form")) << "what cannot be read passes through";
}

struct TGitCase {
  const char* Name;
  std::array<const char*, 3> Ours;  // name and place of the first button, caption of the second
  std::array<const char*, 3> Theirs;
  std::array<const char*, 3> Merged;
  const char* Conflict = nullptr;
};

TEST_F(GitTest, BranchesMergeByMeaning) {
  const TGitCase rows[] = {
      {"DifferentComponents", {"One", "5", "two"}, {"One", "1", "zwei"}, {"One", "5", "zwei"}},
      {"RenamedAndChanged", {"One", "1", "zwei"}, {"Other", "1", "two"}, {"Other", "1", "zwei"}},
      {"Conflict",
       {"One", "5", "two"},
       {"One", "6", "zwei"},
       {"One", "5", "zwei"},
       "Main.One.Left/Top/Width/Height: 1, (none), (none), (none) | 5,"},
  };
  const auto form = [&](const std::array<const char*, 3>& parts) {
    return FormOf(parts[0], parts[1], parts[2]);
  };
  for (const TGitCase& row : rows) {
    SCOPED_TRACE(row.Name);
    const std::string output = Merge(FormOf("One", "1", "two"), form(row.Ours), form(row.Theirs));
    EXPECT_EQ(Code == 0, row.Conflict == nullptr) << output;
    EXPECT_THAT(output, HasSubstr(row.Conflict != nullptr ? row.Conflict : ""));
    EXPECT_EQ(ReadWholeFile((Folder / "Main.dfm").string()), form(row.Merged));
    Git("reset -q --hard");
  }
}

TEST_F(GitTest, SecondSetupAddsNothing) {
  const std::string attributes = (Folder / ".git/info/attributes").string();
  const std::string once = ReadWholeFile(attributes);
  EXPECT_THAT(once, HasSubstr("*.dfm diff=wrenfold merge=wrenfold\n"));
  Run("PATH=" WRENFOLD_BIN_DIR ":$PATH wrenfold-spc git-setup --apply");
  EXPECT_EQ(ReadWholeFile(attributes), once);
  EXPECT_THAT(Run("cd / && '" WRENFOLD_BIN_DIR "/wrenfold-spc' git-setup --apply"),
              HasSubstr("git rev-parse failed"));
  EXPECT_THAT(Run("'" WRENFOLD_BIN_DIR "/wrenfold-spc' git-setup"),
              HasSubstr("git config merge.wrenfold.driver \"'"));
}

}  // namespace
}  // namespace wrenfold
