#include "editor/rkAreaInfo.h"

namespace wrenfold {

const TTypeInfo& TPaintAreaInfo::ClassInfo() {
  static const TTypeInfo info = Publish<TPaintAreaInfo>("TPaintAreaInfo", TPersistent::ClassInfo())
                                    .Prop("Alignment", &TPaintAreaInfo::Alignment)
                                    .Prop("DefAreaWidth", &TPaintAreaInfo::DefAreaWidth)
                                    .Prop("Font", &TPaintAreaInfo::Font, &TPaintAreaInfo::SetFont)
                                    .StoredWhen(&TPaintAreaInfo::HasOwnFont)
                                    .Prop("LeftMargin", &TPaintAreaInfo::LeftMargin)
                                    .Prop("RightMargin", &TPaintAreaInfo::RightMargin);
  return info;
}

void TPaintAreaInfo::Assign(const TPersistent* source) {
  const auto* other = dynamic_cast<const TPaintAreaInfo*>(source);
  if (other == nullptr) return TPersistent::Assign(source);
  Alignment = other->Alignment;
  DefAreaWidth = other->DefAreaWidth;
  LeftMargin = other->LeftMargin;
  RightMargin = other->RightMargin;
  FFont->Assign(other->FFont.get());
  FHasOwnFont = other->FHasOwnFont;
}

void TPaintAreaInfo::SetFont(TFont* font) {
  if (font == nullptr) return;
  FFont->Assign(font);
  FHasOwnFont = true;
}

const TTypeInfo& TLabelAreaInfo::ClassInfo() {
  static const TTypeInfo info =
      Publish<TLabelAreaInfo>("TLabelAreaInfo", TPaintAreaInfo::ClassInfo());
  return info;
}

const TTypeInfo& TControlAreaInfo::ClassInfo() {
  static const TTypeInfo info =
      Publish<TControlAreaInfo>("TControlAreaInfo", TPaintAreaInfo::ClassInfo())
          .Prop("AutoWidth", &TControlAreaInfo::AutoWidth);
  return info;
}

void TControlAreaInfo::Assign(const TPersistent* source) {
  TPaintAreaInfo::Assign(source);
  if (const auto* other = dynamic_cast<const TControlAreaInfo*>(source))
    AutoWidth = other->AutoWidth;
}

}  // namespace wrenfold
