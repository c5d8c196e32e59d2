// Recognition and reading of form files, and the classes of their roots.
#include "project/FormFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "platform/core/stream/TextScan.h"
#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"
#include "project/FileLookup.h"
#include "project/UnitSource.h"

namespace wrenfold {

namespace {

constexpr std::string_view FormExtensions[] = {".dfm", ".xfm", ".nfm", ".fmx", ".lfm"};
constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";

std::string BinaryStream(std::string bytes, TFormFormat format) {
  if (format == TFormFormat::Binary) return bytes;
  if (format == TFormFormat::Resource) {
    TByteReader reader(bytes);
    std::string_view name;
    std::uint32_t size = 0;
    reader.ReadResourceHeader(name, size);
    return std::string(reader.ReadView(size, "the form of the resource"));
  }
  std::size_t position = 0;
  TByteWriter binary;
  ObjectTextToBinary(bytes, position, binary);
  if (AtTextEnd(bytes, position)) return binary.ToString();
  const TSourcePlace place = TPlaceFinder(bytes).At(position);
  throw EParserError(fmt::format("({},{}): expected the end of the file behind the form",
                                 place.Line, place.Column));
}

// The extension of the form file that the source names, of the last one that counts, as a compiler
// would end up with.
std::string NamedFormExtension(const std::string& unitFile, const TDefinedSymbols& symbols) {
  try {
    const TUnitSource unit = ParseUnitSource(ReadWholeFile(unitFile), unitFile, symbols);
    for (auto name = unit.Resources.rbegin(); name != unit.Resources.rend(); ++name)
      if (IsFormFileName(*name)) return ExtractFileExt(*name);
  } catch (const Exception&) {
    // A unit that is not there decides nothing.
  }
  return {};
}

// The place that stands at the beginning of what a parser says.
TSourcePlace PlaceIn(const std::string& message) {
  for (const char* form : {"Line %d, column %d", "(%d,%d)"}) {
    TSourcePlace place;
    if (std::sscanf(message.c_str(), form, &place.Line, &place.Column) == 2) return place;
  }
  return {};
}

}  // namespace

bool IsFormFileName(std::string_view fileName) {
  const std::string extension = LowerCase(ExtractFileExt(std::string(fileName)));
  return std::find(std::begin(FormExtensions), std::end(FormExtensions), extension) !=
         std::end(FormExtensions);
}

std::string FindFormFile(const std::string& unitFile, const TDefinedSymbols& symbols) {
  const std::filesystem::path path(unitFile);
  TFileLookup lookup;
  std::vector<std::string> found;
  for (std::string_view extension : FormExtensions) {
    std::string name =
        lookup.Find(path.parent_path().string(), path.stem().string() + std::string(extension));
    if (!name.empty()) found.push_back(std::move(name));
  }
  if (found.size() > 1) {
    const std::string named = NamedFormExtension(unitFile, symbols);
    for (const std::string& name : found)
      if (EqualText(ExtractFileExt(name), named)) return name;
  }
  return found.empty() ? std::string() : found[0];
}

TFormHeader ReadFormHeader(const std::string& fileName) {
  std::array<char, 512> buffer{};
  std::ifstream file(fileName, std::ios::binary);
  file.read(buffer.data(), buffer.size());
  std::string_view text(buffer.data(), static_cast<size_t>(file.gcount()));
  if (text.starts_with(Utf8Mark)) text.remove_prefix(Utf8Mark.size());
  if (TestFormFormat(text) != TFormFormat::Text) return {};

  const char* const end = text.data() + text.size();
  const char* next = SkipBlanks(SkipWord(SkipBlanks(text.data(), end), end), end);
  const auto word = [&] {
    const char* const begin = next;
    next = SkipWord(next, end);
    const std::string_view taken(begin, static_cast<size_t>(next - begin));
    next = SkipBlanks(next, end);
    return std::string(taken);
  };
  TFormHeader header;
  header.FormName = word();
  if (header.FormName.empty() || next == end || *next != ':') return {};
  next = SkipBlanks(next + 1, end);
  header.ClassName = word();
  return header.ClassName.empty() ? TFormHeader{} : header;
}

TFormFile LoadFormFile(const std::string& fileName) {
  return ReadFormFile(ReadWholeFile(fileName), fileName);
}

TFormFile LoadFormFile(const std::string& fileName, std::optional<TFormSource>& source) {
  std::string bytes = ReadWholeFile(fileName);
  try {
    source.emplace(std::move(bytes), fileName);
    return {fileName, source->Format(), source->ReadForm()};
  } catch (const Exception& error) {
    throw EFormFileError(fmt::format("{}: {}", fileName, error.Message()),
                         PlaceIn(error.Message()));
  }
}

TFormFile ReadFormFile(std::string bytes, const std::string& fileName) {
  if (bytes.starts_with(Utf8Mark)) bytes.erase(0, Utf8Mark.size());
  const TFormFormat format = TestFormFormat(bytes);
  if (format == TFormFormat::Unknown)
    throw EFormFileError(fmt::format(
        "{}: expected a form, as text that begins with \"object\" or in binary; found {}", fileName,
        bytes.empty() ? "an empty file" : "something else"));
  try {
    return {fileName, format, ReadDesignForm(BinaryStream(std::move(bytes), format))};
  } catch (const Exception& error) {
    throw EFormFileError(fmt::format("{}: {}", fileName, error.Message()),
                         PlaceIn(error.Message()));
  }
}

const TTypeInfo& TDesignClasses::Record(const std::vector<std::string>& chain) {
  if (chain.empty()) return TDesignComponent::ClassInfo();
  const auto known = FRecords.find(chain);
  if (known != FRecords.end()) return *known->second;
  const TTypeInfo& parent = Record({chain.begin() + 1, chain.end()});
  return *FRecords.emplace(chain, TTypeInfo::MakeClass(chain[0], parent)).first->second;
}

bool IsDesignClass(const TTypeInfo& info, std::string_view className) {
  for (const TTypeInfo* type = &info; type != nullptr; type = type->Parent())
    if (EqualText(type->Name(), className)) return true;
  return false;
}

}  // namespace wrenfold
