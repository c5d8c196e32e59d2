// How the columns of the controls area look: width, margins, font.
#pragma once

#include <memory>

#include "platform/core/model/Graphics.h"

namespace wrenfold {

enum TAreaAlignment : std::uint8_t { taLeftJustify, taRightJustify, taCenter };
template <>
struct TEnumDescription<TAreaAlignment> {
  static constexpr const char* Name = "TAlignment";
  static constexpr std::array Values{"taLeftJustify", "taRightJustify", "taCenter"};
};

// Widths are logical pixels.
class TPaintAreaInfo : public TPersistent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TPaintAreaInfo() : FFont(std::make_unique<TFont>()) {}

  void Assign(const TPersistent* source) override;
  TFont* Font() const { return FFont.get(); }
  // Copies the font; the area then no longer follows the desktop's.
  void SetFont(TFont* font);
  bool HasOwnFont() const { return FHasOwnFont; }

  TAreaAlignment Alignment = taLeftJustify;
  std::int32_t DefAreaWidth = 150;
  std::int32_t LeftMargin = 6;
  std::int32_t RightMargin = 6;

 private:
  std::unique_ptr<TFont> FFont;
  bool FHasOwnFont = false;
};

class TLabelAreaInfo : public TPaintAreaInfo {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TLabelAreaInfo() { DefAreaWidth = 210; }
};

class TControlAreaInfo : public TPaintAreaInfo {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TControlAreaInfo() { DefAreaWidth = 240; }

  void Assign(const TPersistent* source) override;

  // The area takes what the window leaves to it, never less than its own width.
  bool AutoWidth = true;
};

}  // namespace wrenfold
