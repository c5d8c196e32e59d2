// Replays the seeds of the fuzz targets and every input that one of them once stumbled over.
#include <gtest/gtest.h>

#include <filesystem>

#include "fuzz/Targets.h"
#include "platform/core/Files.h"

namespace wrenfold {
namespace {

class ReplayTest : public testing::TestWithParam<TFuzzTarget> {};

TEST_P(ReplayTest, InputsOfTheFolderDoNoHarm) {
  const std::filesystem::path folder =
      std::filesystem::path(WRENFOLD_SOURCE_DIR) / "tests/data/fuzz" / GetParam().Name;
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    SCOPED_TRACE(entry.path());
    GetParam().Run(ReadWholeFile(entry.path().string()));
    ++count;
  }
  EXPECT_GT(count, 0);
}

INSTANTIATE_TEST_SUITE_P(Targets, ReplayTest, testing::ValuesIn(FuzzTargets()),
                         [](const auto& row) { return std::string(row.param.Name); });

}  // namespace
}  // namespace wrenfold
