#include "designer/paint/Fonts.h"

#include <QFontDatabase>
#include <QStringList>
#include <algorithm>

#include "designer/model/Composition.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

// Debian's package fonts-wine keeps fonts with the original widths here.
constexpr const char* WineFonts = "/usr/share/wine/fonts/";
constexpr const char* WineFiles[] = {
    "ms_sans_serif.ttf", "tahoma.ttf",   "tahomabd.ttf", "small_fonts.ttf",
    "system.ttf",        "fixedsys.ttf", "courier.ttf",  "marlett.ttf",
    "wingding.ttf",      "webdings.ttf", "symbol.ttf",
};

// What stands for a font, the best first, and how wide it must be drawn to have its width.
struct TSubstitute {
  const char* Name;
  const char* Family;
  int WidthPercent;
};
constexpr TSubstitute Substitutes[] = {
    {"MS Shell Dlg 2", "Tahoma", 100},
    {"MS Shell Dlg", "MS Sans Serif", 100},
    {"MS Shell Dlg", "Tahoma", 100},
    {"MS Sans Serif", "Tahoma", 100},
    {"MS Sans Serif", "Liberation Sans", 100},
    {"Microsoft Sans Serif", "Liberation Sans", 100},
    {"Tahoma", "Liberation Sans", 98},
    {"Tahoma", "DejaVu Sans", 88},
    {"Segoe UI", "Liberation Sans", 101},
    {"Segoe UI", "DejaVu Sans", 90},
    {"Arial", "Liberation Sans", 100},
    {"Helvetica", "Liberation Sans", 100},
    {"Helv", "Liberation Sans", 100},
    {"Arial Narrow", "Liberation Sans Narrow", 100},
    {"Arial Black", "Liberation Sans", 120},
    {"Calibri", "Carlito", 100},
    {"Calibri", "Liberation Sans", 90},
    {"Verdana", "DejaVu Sans", 99},
    {"Trebuchet MS", "Liberation Sans", 95},
    {"Comic Sans MS", "Liberation Sans", 103},
    {"Lucida Sans Unicode", "DejaVu Sans", 97},
    {"Georgia", "Liberation Serif", 107},
    {"Times New Roman", "Liberation Serif", 100},
    {"Times", "Liberation Serif", 100},
    {"MS Serif", "Liberation Serif", 100},
    {"Courier New", "Liberation Mono", 100},
    {"Courier", "Liberation Mono", 100},
    {"Consolas", "Liberation Mono", 92},
    {"Consolas", "DejaVu Sans Mono", 91},
    {"Lucida Console", "Liberation Mono", 100},
    {"Terminal", "Fixedsys", 100},
    {"Terminal", "Liberation Mono", 100},
    {"Monospace", "DejaVu Sans Mono", 100},
    {"Sans", "DejaVu Sans", 100},
};
constexpr const char* LastResort[] = {"Liberation Sans", "DejaVu Sans"};

void LoadWineFonts() {
  static const bool loaded = [] {
    for (const char* file : WineFiles)
      QFontDatabase::addApplicationFont(QString::fromLatin1(WineFonts) + file);
    return true;
  }();
  (void)loaded;
}

const QStringList& Families() {
  static const QStringList families = QFontDatabase::families();
  return families;
}

bool HasFamily(const QString& name) {
  return Families().contains(name, Qt::CaseInsensitive);
}

void ChooseFamily(QFont& font, const QString& name) {
  if (HasFamily(name)) return font.setFamily(name);
  for (const TSubstitute& substitute : Substitutes) {
    if (name.compare(QLatin1String(substitute.Name), Qt::CaseInsensitive) != 0) continue;
    if (!HasFamily(substitute.Family)) continue;
    font.setFamily(substitute.Family);
    if (substitute.WidthPercent != 100) font.setStretch(substitute.WidthPercent);
    return;
  }
  for (const char* family : LastResort)
    if (HasFamily(family)) return font.setFamily(family);
}

constexpr int MaxPixelSize = 1000;

// Heights above zero count the space above the letters, negative ones do not.
int PixelSizeOf(std::int64_t height) {
  const std::int64_t size = height < 0 ? -height : height * 5 / 6;
  return static_cast<int>(std::clamp<std::int64_t>(size, 1, MaxPixelSize));
}

int PixelsPerInch(const TDesignNode& root) {
  const std::int64_t stored = root.Integer("DesignTimePPI", root.Integer("PixelsPerInch", 96));
  return static_cast<int>(std::clamp<std::int64_t>(stored, 48, 480));
}

}  // namespace

TFontSpec UsualFont(const TDesignNode& root) {
  if (!root.Form->FromFreeEnvironment()) return {"MS Sans Serif", 11};
  return {"Segoe UI", 12 * PixelsPerInch(root) / 96};
}

TFontSpec WithStoredFont(TFontSpec font, const TDesignNode& node, std::string_view path) {
  const std::string prefix = std::string(path) + ".";
  const std::string name = node.Text(prefix + "Name");
  if (!name.empty() && name != "default") font.Name = ToQString(name);
  const std::int64_t height = node.Integer(prefix + "Height", 0);
  const std::int64_t size = node.Integer(prefix + "Size", 0);
  if (height != 0) font.PixelSize = PixelSizeOf(height);
  else if (size != 0) font.PixelSize = PixelSizeOf(-size * PixelsPerInch(node.Form->Root()) / 72);
  const std::string_view style = node.Value(prefix + "Style");
  font.Bold = StoredSetHas(style, "fsBold", font.Bold);
  font.Italic = StoredSetHas(style, "fsItalic", font.Italic);
  font.Underline = StoredSetHas(style, "fsUnderline", font.Underline);
  font.StrikeOut = StoredSetHas(style, "fsStrikeOut", font.StrikeOut);
  return font;
}

TFontBook::TFontBook() {
  LoadWineFonts();
}

const QFont& TFontBook::Font(const TFontSpec& spec) {
  const auto [entry, isNew] = FFonts.try_emplace(spec);
  QFont& font = entry->second;
  if (!isNew) return font;
  ChooseFamily(font, spec.Name);
  font.setPixelSize(spec.PixelSize);
  font.setBold(spec.Bold);
  font.setItalic(spec.Italic);
  font.setUnderline(spec.Underline);
  font.setStrikeOut(spec.StrikeOut);
  font.setHintingPreference(QFont::PreferFullHinting);
  return font;
}

}  // namespace wrenfold
