// Replays the seeds of the fuzz targets and every input that one of them once stumbled over.
#include <gtest/gtest.h>

#include <filesystem>

#include "fuzz/Targets.h"
#include "platform/core/Files.h"

namespace wrenfold {
namespace {

class ReplayTest : public testing::TestWithParam<TFuzzTarget> {};

// The count of inputs in the folder, each of which was run.
int Replay(const TFuzzTarget& target, const char* kind) {
  const auto folder =
      std::filesystem::path(WRENFOLD_SOURCE_DIR) / "tests/fuzz" / kind / target.Name;
  if (!std::filesystem::exists(folder)) return 0;
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    // Told before the run: a broken promise aborts.
    std::printf("%s\n", entry.path().c_str());
    target.Run(ReadWholeFile(entry.path().string()));
    ++count;
  }
  return count;
}

TEST_P(ReplayTest, SeedsAndFormerFindingsDoNoHarm) {
  EXPECT_GT(Replay(GetParam(), "seeds"), 0);
  Replay(GetParam(), "regressions");
}

INSTANTIATE_TEST_SUITE_P(Targets, ReplayTest, testing::ValuesIn(FuzzTargets()),
                         [](const auto& row) { return std::string(row.param.Name); });

}  // namespace
}  // namespace wrenfold
