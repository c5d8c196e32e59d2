// Finds and loads the module that owns the debugger's library.
#include <dlfcn.h>
#include <fmt/format.h>

#include <filesystem>

#include "debugger/Backend.h"

namespace wrenfold {

namespace {

constexpr const char* ModuleName = "wrenfold-lldb.so";

// The module stands beside the program, or in the installed library folder.
std::string ModulePath() {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::path folder = fs::read_symlink("/proc/self/exe", error).parent_path();
  for (const fs::path& path : {folder / ModuleName, folder / WRENFOLD_LIBRARY_PATH / ModuleName})
    if (fs::exists(path, error)) return path.string();
  throw EDebugError(fmt::format(
      "There is no debugger: {} was not found beside the program. The package wrenfold-debugger "
      "brings it.",
      ModuleName));
}

}  // namespace

std::unique_ptr<TDebugBackend> LoadDebugBackend() {
  const std::string path = ModulePath();
  // Never closed: the library leaves threads and handlers behind.
  void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr)
    throw EDebugError(
        fmt::format("There is no debugger: {}. Debian's package lldb-16 brings it.", dlerror()));
  const auto make = reinterpret_cast<TMakeDebugBackend>(dlsym(module, DebugBackendEntry));
  if (make == nullptr)
    throw EDebugError(fmt::format("{} has no entry {}", path, DebugBackendEntry));
  return std::unique_ptr<TDebugBackend>(make());
}

}  // namespace wrenfold
