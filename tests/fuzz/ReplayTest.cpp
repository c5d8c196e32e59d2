// Replays the seeds of the fuzz targets, every input that one of them once stumbled over, and those
// that reached something new: under all sanitizers, while the fuzzer itself has fewer.
#include <gtest/gtest.h>

#include <filesystem>

#include "fuzz/Targets.h"
#include "platform/core/system/Files.h"

namespace wrenfold {
namespace {

class ReplayTest : public testing::TestWithParam<TFuzzTarget> {};

// The count of inputs in the target's part of the folder, each of which was run.
int Replay(const TFuzzTarget& target, const std::filesystem::path& folder) {
  if (!std::filesystem::exists(folder / target.Name)) return 0;
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder / target.Name)) {
    // Told before the run: a broken promise aborts.
    std::printf("%s\n", entry.path().c_str());
    target.Run(ReadWholeFile(entry.path().string()));
    ++count;
  }
  return count;
}

TEST_P(ReplayTest, KnownInputsDoNoHarm) {
  const auto sources = std::filesystem::path(WRENFOLD_SOURCE_DIR) / "tests/fuzz";
  EXPECT_GT(Replay(GetParam(), sources / "seeds"), 0);
  Replay(GetParam(), sources / "regressions");
  EXPECT_GT(Replay(GetParam(), WRENFOLD_CORPUS_DIR), 0);
}

INSTANTIATE_TEST_SUITE_P(Targets, ReplayTest, testing::ValuesIn(FuzzTargets()),
                         [](const auto& row) { return std::string(row.param.Name); });

}  // namespace
}  // namespace wrenfold
