// What the tests of the commands share: a folder of their own and an output that keeps its lines.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/core/system/Files.h"
#include "tools/Commands.h"

namespace wrenfold {

namespace fs = std::filesystem;

class TCollected : public TOutput {
 public:
  std::vector<std::string> Lines;
  std::vector<std::string> Errors;

 private:
  void PutLine(const std::string& text) override { Lines.push_back(text); }
  void PutError(const std::string& text) override { Errors.push_back(text); }
  void PutProgress(std::size_t, std::size_t, const std::string&) override {}
};

class CommandsTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "wrenfold-spc-XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    Folder = pattern;
  }
  void TearDown() override { fs::remove_all(Folder); }

  std::string Write(const std::string& name, std::string_view bytes) {
    const std::string path = (Folder / name).string();
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << bytes;  // nobody waits for the disk
    return path;
  }

  fs::path Folder;
  TCollected Output;
};

}  // namespace wrenfold
