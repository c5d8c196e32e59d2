#include "locale/ResourceLibrary.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/core/Bytes.h"

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
  };
  static constexpr std::uint32_t cHighBit = 0x80000000;
  static constexpr std::uint32_t cStringTableType = 6;
  // 65536 numbers in blocks of 16; a directory with more entries is no table of texts.
  static constexpr std::size_t cMaxEntries = 4096;

  TByteReader At(std::uint64_t position, const char* expected) const;
  std::uint64_t ReadHeaders();
  std::uint64_t FileOffset(std::uint32_t address, std::uint32_t size, const char* expected) const;
  std::vector<TEntry> ReadDirectory(const TEntry& parent) const;
  TResourceLibrary::TBlock ReadBlock(std::uint32_t number, const TEntry& data) const;

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
  return FileOffset(address, 16, "the resources inside a section");
}

std::uint64_t TStringTableReader::FileOffset(std::uint32_t address, std::uint32_t size,
                                             const char* expected) const {
  for (const TSection& section : FSections) {
    if (address < section.Address) continue;
    const std::uint32_t inSection = address - section.Address;
    if (inSection < section.RawSize && size <= section.RawSize - inSection)
      return std::uint64_t{section.RawOffset} + inSection;
  }
  TByteReader(FImage).FailAt(0, expected);
}

std::vector<TStringTableReader::TEntry> TStringTableReader::ReadDirectory(
    const TEntry& parent) const {
  const std::uint64_t start = FRoot + (parent.Offset & ~cHighBit);
  TByteReader reader = At(start, "a resource directory");
  if (!parent.IsDirectory()) reader.FailAt(start, "a resource directory, not data");
  reader.ReadView(12, "a resource directory");
  std::size_t count = reader.ReadFixed<std::uint16_t>("the number of named resources");
  count += reader.ReadFixed<std::uint16_t>("the number of resources");
  if (count > cMaxEntries) reader.FailAt(start, "at most 4096 resources in a directory");
  std::vector<TEntry> entries(count);
  for (TEntry& entry : entries) {
    entry.Id = reader.ReadFixed<std::uint32_t>("the number of a resource");
    entry.Offset = reader.ReadFixed<std::uint32_t>("the offset of a resource");
  }
  return entries;
}

TResourceLibrary::TBlock TStringTableReader::ReadBlock(std::uint32_t number,
                                                       const TEntry& data) const {
  const std::uint64_t place = FRoot + data.Offset;
  TByteReader reader = At(place, "the place of a string table");
  if (data.IsDirectory()) reader.FailAt(place, "a string table, not a directory");
  const auto address = reader.ReadFixed<std::uint32_t>("the address of a string table");
  const auto size = reader.ReadFixed<std::uint32_t>("the size of a string table");
  const std::uint64_t start = FileOffset(address, size, "a string table inside a section");
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
    const auto neutral = std::ranges::find(languages, 0u, &TEntry::Id);
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
  const auto fail = [&](std::string_view reason) {
    throw EResourceLibraryError(fmt::format("{}: {}", fileName, reason));
  };
  if (!fs::is_regular_file(fileName, error)) fail("expected a file with a library of texts");
  const std::uintmax_t size = fs::file_size(fileName, error);
  if (error) fail(error.message());
  if (size > TResourceLibrary::MaxFileSize)
    fail(fmt::format("expected at most {} bytes, found {}", TResourceLibrary::MaxFileSize, size));
  std::ifstream file(fileName, std::ios::binary);
  std::string bytes(size, '\0');
  if (!file.read(bytes.data(), static_cast<std::streamsize>(size))) fail("cannot be read");
  return bytes;
}

void AppendUtf8(std::string& text, char32_t code) {
  const auto append = [&text](char32_t byte) { text += static_cast<char>(byte); };
  if (code < 0x80) {
    append(code);
  } else if (code < 0x800) {
    append(0xC0 | code >> 6);
    append(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    append(0xE0 | code >> 12);
    append(0x80 | (code >> 6 & 0x3F));
    append(0x80 | (code & 0x3F));
  } else {
    append(0xF0 | code >> 18);
    append(0x80 | (code >> 12 & 0x3F));
    append(0x80 | (code >> 6 & 0x3F));
    append(0x80 | (code & 0x3F));
  }
}

// A surrogate without its other half, also one that was cut off, becomes U+FFFD.
std::string Utf8OfUtf16(std::string_view bytes) {
  const std::size_t count = bytes.size() / 2;
  const auto unit = [&bytes](std::size_t i) -> char32_t {
    return static_cast<unsigned char>(bytes[2 * i]) | static_cast<unsigned char>(bytes[2 * i + 1])
                                                          << 8;
  };
  const auto isIn = [](char32_t code, char32_t first) {
    return code >= first && code < first + 0x400;
  };
  std::string text;
  text.reserve(bytes.size());
  for (std::size_t i = 0; i < count; ++i) {
    char32_t code = unit(i);
    if (isIn(code, 0xD800) && i + 1 < count && isIn(unit(i + 1), 0xDC00))
      code = 0x10000 + ((code - 0xD800) << 10) + (unit(++i) - 0xDC00);
    else if (isIn(code, 0xD800) || isIn(code, 0xDC00)) code = 0xFFFD;
    AppendUtf8(text, code);
  }
  return text;
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
  const std::string_view text = block->Texts[static_cast<std::size_t>(id % cTextsInBlock)];
  return Utf8OfUtf16(text.substr(0, 2 * MaxTextLength));
}

}  // namespace wrenfold
