#include "locale/ResourceLibrary.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "platform/core/stream/Bytes.h"
#include "platform/core/system/Files.h"
#include "platform/core/text/Unicode.h"

namespace wrenfold {

// Walks the headers and the three levels of the resource directory: type, block, language. The
// depth is fixed, so directories that point back at each other do no harm.
class TStringTableReader {
 public:
  explicit TStringTableReader(std::string_view image) : FImage(image) {}

  std::vector<TResourceLibrary::TBlock> Read();

 private:
  struct TSection {
    std::uint32_t Address, RawSize, RawOffset;
  };
  struct TEntry {
    std::uint32_t Id, Offset;
    bool IsDirectory() const { return (Offset & cHighBit) != 0; }
    bool IsNamed() const { return (Id & cHighBit) != 0; }
    bool IsNeutral() const { return (Id & 0x3FF) == 0; }  // the primary language
  };
  static constexpr std::uint32_t cHighBit = 0x80000000;
  static constexpr std::uint32_t cStringTableType = 6;
  // 65536 numbers in blocks of 16; a directory with more entries is no table of texts.
  static constexpr std::size_t cMaxEntries = 4096;

  TByteReader At(std::uint64_t position, const char* expected) const;
  std::uint64_t ReadHeaders();
  std::uint64_t FileOffset(std::uint32_t address, std::uint32_t size, std::uint64_t place,
                           const char* expected) const;
  TByteReader AtEntry(const TEntry& entry, bool directory, const char* expected) const;
  std::vector<TEntry> ReadDirectory(const TEntry& entry) const;
  TResourceLibrary::TBlock ReadBlock(std::uint32_t number, const TEntry& entry) const;

  std::string_view FImage;
  std::vector<TSection> FSections;
  std::uint64_t FRoot = 0;  // file offset of the resource directory
};

TByteReader TStringTableReader::At(std::uint64_t position, const char* expected) const {
  TByteReader reader(FImage);
  if (position > FImage.size()) reader.FailAt(position, expected);
  reader.Seek(position);
  return reader;
}

// Returns the file offset of the resource directory.
std::uint64_t TStringTableReader::ReadHeaders() {
  TByteReader reader(FImage);
  if (reader.ReadView(2, "the mark \"MZ\" of a library") != "MZ")
    reader.FailAt(0, "the mark \"MZ\" of a library");
  reader = At(0x3C, "the offset of the library's header");
  const auto header = reader.ReadFixed<std::uint32_t>("the offset of the library's header");
  reader = At(header, "the mark \"PE\" of the library's header");
  if (reader.ReadView(4, "the mark \"PE\" of the library's header") !=
      std::string_view("PE\0\0", 4))
    reader.FailAt(header, "the mark \"PE\" of the library's header");
  reader.ReadView(2, "the machine");
  const auto sectionCount = reader.ReadFixed<std::uint16_t>("the number of sections");
  reader.ReadView(12, "the symbol table");
  const auto optionalSize = reader.ReadFixed<std::uint16_t>("the size of the optional header");
  reader.ReadView(2, "the flags of the library");

  const std::uint64_t optional = reader.Position();
  const auto magic = reader.ReadFixed<std::uint16_t>("the kind of the optional header");
  if (magic != 0x10B && magic != 0x20B) reader.FailAt(optional, "a header of 32 or 64 bits");
  const std::uint64_t directories = optional + (magic == 0x10B ? 92 : 108);
  reader = At(directories, "the number of data directories");
  constexpr std::uint32_t cResourceDirectory = 2;
  if (reader.ReadFixed<std::uint32_t>("the number of data directories") <= cResourceDirectory ||
      directories + 4 + 8 * (cResourceDirectory + 1) > optional + optionalSize)
    reader.FailAt(directories, "a directory of resources");
  reader.ReadView(8 * cResourceDirectory, "the data directories");
  const std::uint64_t place = reader.Position();
  const auto address = reader.ReadFixed<std::uint32_t>("the address of the resources");

  reader = At(optional + optionalSize, "the table of sections");
  for (int i = 0; i < sectionCount; ++i) {
    reader.ReadView(12, "the name of a section");
    TSection section{};
    section.Address = reader.ReadFixed<std::uint32_t>("the address of a section");
    section.RawSize = reader.ReadFixed<std::uint32_t>("the size of a section");
    section.RawOffset = reader.ReadFixed<std::uint32_t>("the offset of a section");
    reader.ReadView(16, "the flags of a section");
    FSections.push_back(section);
  }
  return FileOffset(address, 16, place, "the resources inside a section");
}

// Where the bytes of an address stand in the file; `place` is where the address was read.
std::uint64_t TStringTableReader::FileOffset(std::uint32_t address, std::uint32_t size,
                                             std::uint64_t place, const char* expected) const {
  for (const TSection& section : FSections) {
    if (address < section.Address) continue;
    const std::uint32_t inSection = address - section.Address;
    if (inSection < section.RawSize && size <= section.RawSize - inSection)
      return std::uint64_t{section.RawOffset} + inSection;
  }
  TByteReader(FImage).FailAt(place, expected);
}

TByteReader TStringTableReader::AtEntry(const TEntry& entry, bool directory,
                                        const char* expected) const {
  const std::uint64_t start = FRoot + (entry.Offset & ~cHighBit);
  const TByteReader reader = At(start, expected);
  if (entry.IsDirectory() != directory) reader.FailAt(start, expected);
  return reader;
}

std::vector<TStringTableReader::TEntry> TStringTableReader::ReadDirectory(
    const TEntry& entry) const {
  TByteReader reader = AtEntry(entry, true, "a resource directory, not data");
  reader.ReadView(12, "a resource directory");
  std::size_t count = reader.ReadFixed<std::uint16_t>("the number of named resources");
  count += reader.ReadFixed<std::uint16_t>("the number of resources");
  if (count > cMaxEntries)
    reader.FailAt(reader.Position(), "at most 4096 resources in a directory");
  std::vector<TEntry> entries(count);
  for (TEntry& child : entries) {
    child.Id = reader.ReadFixed<std::uint32_t>("the number of a resource");
    child.Offset = reader.ReadFixed<std::uint32_t>("the offset of a resource");
  }
  return entries;
}

TResourceLibrary::TBlock TStringTableReader::ReadBlock(std::uint32_t number,
                                                       const TEntry& entry) const {
  TByteReader reader = AtEntry(entry, false, "the place of a string table, not a directory");
  const std::uint64_t place = reader.Position();
  const auto address = reader.ReadFixed<std::uint32_t>("the address of a string table");
  const auto size = reader.ReadFixed<std::uint32_t>("the size of a string table");
  const std::uint64_t start = FileOffset(address, size, place, "a string table inside a section");
  reader = At(start, "a string table");
  const std::uint64_t end = start + size;

  TResourceLibrary::TBlock block{number, {}};
  for (std::string_view& text : block.Texts) {
    const std::size_t length = reader.ReadFixed<std::uint16_t>("the length of a text");
    if (reader.Position() + 2 * length > end)
      reader.FailAt(reader.Position(), "a text that ends inside its string table");
    text = reader.ReadView(2 * length, "a text");
  }
  return block;
}

std::vector<TResourceLibrary::TBlock> TStringTableReader::Read() {
  FRoot = ReadHeaders();
  const TEntry root{0, cHighBit};
  const std::vector<TEntry> types = ReadDirectory(root);
  const auto strings = std::ranges::find(types, cStringTableType, &TEntry::Id);
  if (strings == types.end()) TByteReader(FImage).FailAt(FRoot, "a string table in the resources");

  std::vector<TResourceLibrary::TBlock> blocks;
  for (const TEntry& entry : ReadDirectory(*strings)) {
    if (entry.IsNamed()) continue;
    const std::vector<TEntry> languages = ReadDirectory(entry);
    if (languages.empty()) continue;
    const auto neutral = std::ranges::find_if(languages, &TEntry::IsNeutral);
    const TEntry& chosen = neutral != languages.end() ? *neutral : languages.front();
    blocks.push_back(ReadBlock(entry.Id, chosen));
  }
  // The format demands this order, and a hostile file breaks it.
  std::ranges::stable_sort(blocks, {}, &TResourceLibrary::TBlock::Number);
  return blocks;
}

namespace {

std::string ReadLibraryFile(const std::string& fileName) {
  namespace fs = std::filesystem;
  std::error_code error;
  if (!fs::is_regular_file(fileName, error))
    throw EResourceLibraryError(fileName + ": expected a file with a library of texts");
  const std::uintmax_t size = fs::file_size(fileName, error);
  if (size > TResourceLibrary::MaxFileSize)
    throw EResourceLibraryError(fmt::format("{}: expected at most {} bytes, found {}", fileName,
                                            TResourceLibrary::MaxFileSize, size));
  try {
    return ReadWholeFile(fileName);
  } catch (const EStreamError& unreadable) {
    throw EResourceLibraryError(unreadable.Message());
  }
}

// At most `limit` units, without half of a surrogate pair at the cut.
std::string TextOfUnits(std::string_view bytes, std::size_t limit) {
  std::u16string units(std::min(bytes.size() / 2, limit), u'\0');
  std::memcpy(units.data(), bytes.data(), 2 * units.size());
  const bool isCut = bytes.size() / 2 > limit;
  if (isCut && units.back() >= 0xD800 && units.back() < 0xDC00) units.pop_back();
  return Utf8FromUtf16(units);
}

}  // namespace

TResourceLibrary::TResourceLibrary(const std::string& fileName)
    : TResourceLibrary(fileName, ReadLibraryFile(fileName)) {}

TResourceLibrary::TResourceLibrary(const std::string& name, std::string bytes)
    : FBytes(std::move(bytes)) {
  try {
    FBlocks = TStringTableReader(FBytes).Read();
  } catch (const EReadError& error) {
    throw EResourceLibraryError(fmt::format("{}: {}", name, error.Message()));
  }
}

std::string TResourceLibrary::FindString(int id) const {
  if (id < 0) return {};
  const auto number = static_cast<std::uint32_t>(id / cTextsInBlock + 1);
  const auto block = std::ranges::lower_bound(FBlocks, number, {}, &TBlock::Number);
  if (block == FBlocks.end() || block->Number != number) return {};
  return TextOfUnits(block->Texts[static_cast<std::size_t>(id % cTextsInBlock)], MaxTextLength);
}

}  // namespace wrenfold
