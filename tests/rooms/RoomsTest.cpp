// The order of the rooms inside a folder: the include path holds whole folders, so the compiler
// does not see it.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct TFolder {
  const char* Name;
  // From the lowest up. A room includes itself and rooms of a lower rank, none beside it.
  std::vector<std::vector<std::string>> Ranks;
};

const std::vector<TFolder> Folders = {
    {"platform/core", {{"system"}, {"text"}, {"model"}, {"stream"}}},
    {"host", {{"documents"}, {"panels", "forms", "debug"}, {"shell"}}},
    {"designer", {{"model"}, {"paint"}}},
    {"debugger", {{""}, {"lldb"}}},
};

std::map<std::string, std::size_t> RankOf(const TFolder& folder) {
  std::map<std::string, std::size_t> ranks;
  for (std::size_t rank = 0; rank < folder.Ranks.size(); ++rank)
    for (const std::string& room : folder.Ranks[rank]) ranks[room] = rank;
  return ranks;
}

std::string RoomOf(const fs::path& inFolder) {
  const std::string room = inFolder.parent_path().generic_string();
  return room.substr(0, room.find('/'));
}

// What stands wrong in one file: "file:line: includes a/b.h".
void CheckFile(const fs::path& file, const TFolder& folder, const fs::path& root) {
  const auto ranks = RankOf(folder);
  const std::string own = RoomOf(fs::relative(file, root));
  ASSERT_TRUE(ranks.contains(own)) << file << " stands in a room without a rank";
  const std::string prefix = std::string(folder.Name) + "/";
  static const std::regex include(R"(^\s*#\s*include\s*"([^"]+)\")");
  std::ifstream lines(file);
  std::string line;
  for (int number = 1; std::getline(lines, line); ++number) {
    std::smatch match;
    if (!std::regex_search(line, match, include) || !match[1].str().starts_with(prefix)) continue;
    const std::string other = RoomOf(match[1].str().substr(prefix.size()));
    const bool below = ranks.contains(other) && ranks.at(other) < ranks.at(own);
    EXPECT_TRUE(other == own || below) << file << ":" << number << ": " << line;
  }
}

TEST(Rooms, IncludesNothingOfARoomAboveOrBeside) {
  int checked = 0;
  for (const TFolder& folder : Folders) {
    const fs::path root = fs::path(WRENFOLD_SOURCE_DIR) / "src" / folder.Name;
    if (!fs::exists(root)) continue;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
      const fs::path extension = entry.path().extension();
      if (extension != ".h" && extension != ".cpp") continue;
      CheckFile(entry.path(), folder, root);
      ++checked;
    }
  }
  EXPECT_GT(checked, 100);
}

}  // namespace
