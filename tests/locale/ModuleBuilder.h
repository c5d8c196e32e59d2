// Builds small resource-only libraries in memory, whole or damaged in one place.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace wrenfold {

struct TModuleBlock {
  std::uint32_t Number;    // texts 16 * (Number - 1) and on
  std::uint32_t Language;  // 0 is neutral
  std::map<int, std::u16string> Texts;
};

// Blocks of one number must follow each other.
class TModuleBuilder {
 public:
  static constexpr std::uint32_t cHeader = 0x40, cRaw = 0x200, cAddress = 0x1000;

  explicit TModuleBuilder(const std::vector<TModuleBlock>& blocks, bool wide = true) : FWide(wide) {
    BuildResources(blocks);
    BuildHeaders();
  }

  std::uint32_t OptionalHeader() const { return cHeader + 24; }
  std::uint32_t Directories() const { return OptionalHeader() + (FWide ? 108 : 92); }
  std::uint32_t SectionTable() const { return OptionalHeader() + (FWide ? 240 : 224); }
  // Offsets in the file of the levels of the resource directory.
  static constexpr std::uint32_t cTypes = cRaw;
  static constexpr std::uint32_t cBlocks = cRaw + 24;
  std::uint32_t FirstLanguages() const { return cRaw + FFirstLanguages; }
  std::uint32_t FirstData() const { return cRaw + FFirstData; }
  std::uint32_t FirstTexts() const { return cRaw + FFirstTexts; }

  TModuleBuilder& Put16(std::size_t offset, std::uint16_t value) { return Put(offset, value, 2); }
  TModuleBuilder& Put32(std::size_t offset, std::uint32_t value) { return Put(offset, value, 4); }
  const std::string& Bytes() const { return FBytes; }

 private:
  static constexpr std::uint32_t cSubdirectory = 0x80000000;

  TModuleBuilder& Put(std::size_t offset, std::uint32_t value, std::size_t size) {
    if (FBytes.size() < offset + size) FBytes.resize(offset + size);
    for (std::size_t i = 0; i < size; ++i) FBytes[offset + i] = static_cast<char>(value >> 8 * i);
    return *this;
  }

  void BuildResources(const std::vector<TModuleBlock>& blocks) {
    std::map<std::uint32_t, std::vector<const TModuleBlock*>> byNumber;
    std::vector<std::uint32_t> order;
    for (const TModuleBlock& block : blocks) {
      if (byNumber[block.Number].empty()) order.push_back(block.Number);
      byNumber[block.Number].push_back(&block);
    }
    PutDirectory(0, 1);
    PutEntry(0, 0, 6, 24 | cSubdirectory);
    PutDirectory(24, order.size());
    std::uint32_t languages = FFirstLanguages = Next(24, order.size());
    std::uint32_t data = FFirstLanguages;
    for (const auto& [number, list] : byNumber) data = Next(data, list.size());
    FFirstData = data;
    std::uint32_t texts = FFirstTexts = data + 16 * static_cast<std::uint32_t>(blocks.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
      const auto& list = byNumber[order[i]];
      PutEntry(24, i, order[i], languages | cSubdirectory);
      PutDirectory(languages, list.size());
      for (std::size_t j = 0; j < list.size(); ++j, data += 16) {
        PutEntry(languages, j, list[j]->Language, data);
        const std::uint32_t end = PutTexts(texts, *list[j]);
        Put32(cRaw + data, cAddress + texts).Put32(cRaw + data + 4, end - texts);
        texts = end;
      }
      languages = Next(languages, list.size());
    }
  }

  void BuildHeaders() {
    const auto size = static_cast<std::uint32_t>(FBytes.size() - cRaw);
    Put16(0, 0x5A4D).Put32(0x3C, cHeader).Put32(cHeader, 0x4550);
    Put16(cHeader + 6, 1).Put16(cHeader + 20, FWide ? 240 : 224);
    Put16(OptionalHeader(), FWide ? 0x20B : 0x10B).Put32(Directories(), 16);
    Put32(Directories() + 20, cAddress).Put32(Directories() + 24, size);
    Put32(SectionTable() + 12, cAddress).Put32(SectionTable() + 16, size);
    Put32(SectionTable() + 20, cRaw);
  }

  static std::uint32_t Next(std::uint32_t directory, std::size_t count) {
    return directory + 16 + 8 * static_cast<std::uint32_t>(count);
  }
  void PutDirectory(std::uint32_t at, std::size_t count) {
    Put16(cRaw + at + 14, static_cast<std::uint16_t>(count));
  }
  void PutEntry(std::uint32_t directory, std::size_t index, std::uint32_t id,
                std::uint32_t offset) {
    const std::size_t at = cRaw + directory + 16 + 8 * index;
    Put32(at, id).Put32(at + 4, offset);
  }
  std::uint32_t PutTexts(std::uint32_t at, const TModuleBlock& block) {
    for (int i = 0; i < 16; ++i) {
      const auto found = block.Texts.find(i);
      const std::u16string text = found != block.Texts.end() ? found->second : u"";
      Put16(cRaw + at, static_cast<std::uint16_t>(text.size()));
      at += 2;
      for (const char16_t unit : text) {
        Put16(cRaw + at, unit);
        at += 2;
      }
    }
    return at;
  }

  bool FWide;
  std::string FBytes;
  std::uint32_t FFirstLanguages = 0, FFirstData = 0, FFirstTexts = 0;
};

}  // namespace wrenfold
