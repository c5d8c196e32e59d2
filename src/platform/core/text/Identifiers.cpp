#include "platform/core/text/Identifiers.h"

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

constexpr std::int32_t SystemColor(std::int32_t index) {
  return INT32_MIN + index;
}

}  // namespace

const TIdentMap& ColorMap() {
  static const TIdentMap map({
      {0x000000, "clBlack"},
      {0x000080, "clMaroon"},
      {0x008000, "clGreen"},
      {0x008080, "clOlive"},
      {0x800000, "clNavy"},
      {0x800080, "clPurple"},
      {0x808000, "clTeal"},
      {0x808080, "clGray"},
      {0xC0C0C0, "clSilver"},
      {0x0000FF, "clRed"},
      {0x00FF00, "clLime"},
      {0x00FFFF, "clYellow"},
      {0xFF0000, "clBlue"},
      {0xFF00FF, "clFuchsia"},
      {0xFFFF00, "clAqua"},
      {0xFFFFFF, "clWhite"},
      {SystemColor(0), "clScrollBar"},
      {SystemColor(1), "clBackground"},
      {SystemColor(2), "clActiveCaption"},
      {SystemColor(3), "clInactiveCaption"},
      {SystemColor(4), "clMenu"},
      {SystemColor(5), "clWindow"},
      {SystemColor(6), "clWindowFrame"},
      {SystemColor(7), "clMenuText"},
      {SystemColor(8), "clWindowText"},
      {SystemColor(9), "clCaptionText"},
      {SystemColor(10), "clActiveBorder"},
      {SystemColor(11), "clInactiveBorder"},
      {SystemColor(12), "clAppWorkSpace"},
      {SystemColor(13), "clHighlight"},
      {SystemColor(14), "clHighlightText"},
      {SystemColor(15), "clBtnFace"},
      {SystemColor(16), "clBtnShadow"},
      {SystemColor(17), "clGrayText"},
      {SystemColor(18), "clBtnText"},
      {SystemColor(19), "clInactiveCaptionText"},
      {SystemColor(20), "clBtnHighlight"},
      {SystemColor(21), "cl3DDkShadow"},
      {SystemColor(22), "cl3DLight"},
      {SystemColor(23), "clInfoText"},
      {SystemColor(24), "clInfoBk"},
      {0x1FFFFFFF, "clNone"},
      {0x20000000, "clDefault"},
      {0xC0DCC0, "clMoneyGreen"},
      {0xF0CAA6, "clSkyBlue"},
      {0xF0FBFF, "clCream"},
      {0xA4A0A0, "clMedGray"},
      // Other names of the same values: read, never written.
      {0x808080, "clDkGray"},
      {0xC0C0C0, "clLtGray"},
  });
  return map;
}

const TIdentMap& CursorMap() {
  static const TIdentMap map({
      {0, "crDefault"},     {-1, "crNone"},     {-2, "crArrow"},      {-3, "crCross"},
      {-4, "crIBeam"},      {-6, "crSizeNESW"}, {-7, "crSizeNS"},     {-8, "crSizeNWSE"},
      {-9, "crSizeWE"},     {-10, "crUpArrow"}, {-11, "crHourGlass"}, {-12, "crDrag"},
      {-13, "crNoDrop"},    {-14, "crHSplit"},  {-15, "crVSplit"},    {-16, "crMultiDrag"},
      {-17, "crSQLWait"},   {-18, "crNo"},      {-19, "crAppStart"},  {-20, "crHelp"},
      {-21, "crHandPoint"}, {-22, "crSizeAll"}, {-22, "crSize"},
  });
  return map;
}

const TIdentMap& CharsetMap() {
  static const TIdentMap map({
      {0, "ANSI_CHARSET"},      {1, "DEFAULT_CHARSET"},    {2, "SYMBOL_CHARSET"},
      {77, "MAC_CHARSET"},      {128, "SHIFTJIS_CHARSET"}, {129, "HANGEUL_CHARSET"},
      {130, "JOHAB_CHARSET"},   {134, "GB2312_CHARSET"},   {136, "CHINESEBIG5_CHARSET"},
      {161, "GREEK_CHARSET"},   {162, "TURKISH_CHARSET"},  {163, "VIETNAMESE_CHARSET"},
      {177, "HEBREW_CHARSET"},  {178, "ARABIC_CHARSET"},   {186, "BALTIC_CHARSET"},
      {204, "RUSSIAN_CHARSET"}, {222, "THAI_CHARSET"},     {238, "EASTEUROPE_CHARSET"},
      {255, "OEM_CHARSET"},
  });
  return map;
}

TIdentMap::TIdentMap(std::vector<TIdentMapEntry> entries) : FEntries(std::move(entries)) {
  for (const TIdentMapEntry& entry : FEntries) {
    FNames.try_emplace(entry.Value, entry.Name);
    FValues.try_emplace(LowerCase(entry.Name), entry.Value);
  }
}

bool TIdentMap::IntToIdent(std::int32_t value, std::string& name) const {
  const auto found = FNames.find(value);
  if (found == FNames.end()) return false;
  name = found->second;
  return true;
}

bool TIdentMap::IdentToInt(std::string_view name, std::int32_t& value) const {
  const auto found = FValues.find(LowerCase(name));
  if (found == FValues.end()) return false;
  value = found->second;
  return true;
}

bool ColorToIdent(TColor color, std::string& name) {
  return ColorMap().IntToIdent(color, name);
}

bool IdentToColor(std::string_view name, TColor& color) {
  return ColorMap().IdentToInt(name, color.Value);
}

}  // namespace wrenfold
