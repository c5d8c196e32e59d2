// wrenfold-spc convert: files from one form into another.
#include <fmt/format.h>

#include "tools/Commands.h"

namespace wrenfold {
namespace {

// Reads the bytes even where they stay, so that what cannot be read is told.
void Convert(std::string_view bytes, const TConversion& conversion, TByteWriter& converted) {
  const bool hasStyle = conversion.Style != nullptr;
  const TFormTextStyle& style = hasStyle ? *conversion.Style : DefaultFormTextStyle();
  const TStoredFile file = ParseStoredFile(bytes, style);
  if (hasStyle || file.Form != conversion.Form)
    RenderStoredFile(file, conversion.Form, style, converted);
  else if (file.Form == TStoredForm::Text) converted.WriteBytes(WithCrLf(bytes));
  else converted.WriteBytes(bytes);
}

// Text that differs in its line ends only is unchanged.
bool IsChanged(std::string_view bytes, TStoredForm form, std::string_view converted) {
  if (converted == bytes) return false;
  return form != TStoredForm::Text || WithCrLf(bytes) != converted;
}

bool ReplaceConverted(const std::string& name, const TConversion& conversion) {
  RequireReplaceable(name);
  const std::string bytes = ReadInput(name);
  TByteWriter converted;
  Convert(bytes, conversion, converted);
  if (!IsChanged(bytes, conversion.Form, converted.View())) return false;
  WriteOutput(name, converted.View());
  return true;
}

}  // namespace

int RunConvert(const std::string& from, const std::string& to, const TConversion& conversion,
               TOutput& output) {
  try {
    TByteWriter converted;
    try {
      Convert(ReadInput(from), conversion, converted);
    } catch (const Exception& error) {
      throw EReadError(NamedTrouble(from, error));
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
  for (std::size_t i = 0; i < files.size(); ++i) {
    output.Progress(i, files.size(), files[i]);
    try {
      if (ReplaceConverted(files[i], conversion)) ++changed;
    } catch (const Exception& error) {
      output.Error(NamedTrouble(files[i], error));
      ++failed;
    }
  }
  output.Progress(files.size(), files.size(), "");
  output.Line(fmt::format("converted {} files: {} changed, {} unchanged, {} failed", files.size(),
                          changed, files.size() - changed - failed, failed));
  return failed == 0 ? ecFine : ecTrouble;
}

}  // namespace wrenfold
