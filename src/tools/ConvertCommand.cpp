// wrenfold-spc convert: files from one form into another.
#include <fmt/format.h>

#include "tools/Commands.h"

namespace wrenfold {
namespace {

// True when the conversion changes the bytes; text that differs in its line ends only is unchanged.
bool Convert(std::string_view bytes, const TConversion& conversion, TByteWriter& converted) {
  const TStoredFile file = ParseStoredFile(bytes, *conversion.Style);
  RenderStoredFile(file, conversion.Form, *conversion.Style, converted);
  if (converted.View() == bytes) return false;
  const bool textToText = file.Form == TStoredForm::Text && conversion.Form == TStoredForm::Text;
  return !textToText || WithCrLf(bytes) != converted.View();
}

}  // namespace

int RunConvert(const std::string& from, const std::string& to, const TConversion& conversion,
               TOutput& output) {
  try {
    TByteWriter converted;
    const std::string bytes = ReadInput(from);
    try {
      Convert(bytes, conversion, converted);
    } catch (const Exception& error) {
      throw EReadError(from + ": " + error.what());
    }
    WriteOutput(to, converted.View());
    return ecFine;
  } catch (const Exception& error) {
    output.Error(error.what());
    return ecTrouble;
  }
}

int RunConvertInPlace(const std::vector<std::string>& names, const TConversion& conversion,
                      TOutput& output) {
  const std::vector<std::string> files = ListFiles(names);
  std::size_t changed = 0;
  std::size_t failed = 0;
  TByteWriter converted;
  for (std::size_t i = 0; i < files.size(); ++i) {
    output.Progress(i, files.size(), files[i]);
    try {
      converted.Clear();
      if (!Convert(ReadInput(files[i]), conversion, converted)) continue;
      WriteOutput(files[i], converted.View());
      ++changed;
    } catch (const Exception& error) {
      output.Error(files[i] + ": " + error.what());
      ++failed;
    }
  }
  output.Progress(files.size(), files.size(), "");
  output.Line(fmt::format("converted {} files: {} changed, {} unchanged, {} failed", files.size(),
                          changed, files.size() - changed - failed, failed));
  return failed == 0 ? ecFine : ecTrouble;
}

}  // namespace wrenfold
