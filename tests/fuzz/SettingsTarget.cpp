// A settings file: a root with keyed collections, loaded as at the start of the suite.
#include <unistd.h>

#include <filesystem>

#include "fuzz/Targets.h"
#include "platform/core/system/Files.h"
#include "storage/TestObjects.h"

namespace wrenfold {
namespace {

struct TSettings {
  TSettings() {
    Root.Fixed.AddValue("A", 1);
    Root.Fixed.AddValue("B", 2);
    Root.Free.Add(&First, "First");
    Root.Free.Add(&Second, "Second");
  }
  std::string Stored() {
    TObjectSaver saver;
    return saver.GetObjectProps({&Root});
  }
  TSample First;
  TSample Second;
  TKeyedRoot Root;
};

void PromiseKeys(const TSettings& settings) {
  const TKeyedRoot& root = settings.Root;
  Promise(
      root.Fixed.Count() == 2 && root.Fixed.Find("A") != nullptr && root.Fixed.Find("B") != nullptr,
      "a fixed collection keeps its items");
  Promise(root.Free.Count() == 2, "a free collection keeps its items");
  const TWrapperItem* first = root.Free.Find("First");
  const TWrapperItem* second = root.Free.Find("Second");
  Promise(first != nullptr && first->NestedObject() == &settings.First && second != nullptr &&
              second->NestedObject() == &settings.Second,
          "a free collection keeps its objects under their keys");
}

// A file for one process, gone with it.
const std::string& ScratchFile() {
  static const struct TScratch {
    std::string Name =
        std::filesystem::temp_directory_path() / ("wrenfold-settings-" + std::to_string(getpid()));
    ~TScratch() { std::filesystem::remove(Name); }
  } scratch;
  return scratch.Name;
}

void WriteScratch(std::string_view bytes) {
  std::FILE* file = std::fopen(ScratchFile().c_str(), "wb");
  Promise(file != nullptr, "the folder for temporary files can be written");
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::fclose(file);
}

void Load(std::string_view bytes, bool ignoreErrors) {
  const TAnswers answers(mbNo);
  TSettings settings;
  settings.Root.Reorder = ignoreErrors;
  const std::string before = settings.Stored();
  TObjectSaver saver;
  saver.RecognitionOn = true;
  saver.IgnoreErrors = ignoreErrors;
  WriteScratch(bytes);
  const auto load = [&] { saver.SafeLoadObjects({&settings.Root}, ScratchFile()); };
  const bool loaded = Succeeds(load, {"offset ", "Line ", "line "});
  PromiseKeys(settings);
  const std::string after = settings.Stored();
  if (!loaded) Promise(after == before, "a failed load leaves the settings as they were");
  TSettings again;
  TObjectSaver().SetObjectProps({&again.Root}, after);
  // Without Reorder the stored order is not taken over.
  if (!ignoreErrors) Promise(again.Stored() == after, "settings come back from their own bytes");
}

}  // namespace

void FuzzSettingsFile(std::string_view bytes) {
  Load(bytes, false);
  Load(bytes, true);
}

}  // namespace wrenfold
