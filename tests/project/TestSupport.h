// What the tests of the project model share: named rows and folders of their own.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace wrenfold {

// Names a parameterised test after its row.
inline constexpr auto CaseName = [](const auto& row) { return std::string(row.param.Name); };

// A folder for one test, removed with all its files at the end.
class TTemporaryFolder {
 public:
  TTemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "wrenfold-XXXXXX").string();
    FPath = mkdtemp(name.data());
  }
  ~TTemporaryFolder() { std::filesystem::remove_all(FPath); }

  const std::string& Path() const { return FPath; }
  std::string Write(const std::string& name, std::string_view bytes) const {
    const std::filesystem::path path = std::filesystem::path(FPath) / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
    return path.string();
  }
  static std::string Read(const std::string& fileName) {
    std::ifstream stream(fileName, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
  }

 private:
  std::string FPath;
};

}  // namespace wrenfold
