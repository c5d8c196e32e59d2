// The font edit: the installed fonts that its options keep, each drawn in itself.
#include <QFontDatabase>
#include <QFontDialog>
#include <QPainter>
#include <QPointer>
#include <algorithm>

#include "controls/rkControls.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/DrawnIcon.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

bool IsScalable(const QString& family) {
  return QFontDatabase::isScalable(family);
}
bool IsTrueType(const QString& family) {
  return QFontDatabase::isSmoothlyScalable(family);
}
bool IsFixedPitch(const QString& family) {
  return QFontDatabase::isFixedPitch(family);
}
// Of signs: what such a font is called cannot be read in it. It may claim Latin letters as well.
bool IsSymbolFont(const QString& family) {
  return QFontDatabase::writingSystems(family).contains(QFontDatabase::Symbol);
}
bool HasLatin(const QString& family) {
  return !IsSymbolFont(family) &&
         QFontDatabase::writingSystems(family).contains(QFontDatabase::Latin);
}
// The fonts of text modes are those with pixels of one size.
bool IsOEMFont(const QString& family) {
  return !QFontDatabase::isScalable(family);
}

struct TFontRule {
  TFontListOption Option;
  bool (*Property)(const QString& family);
  bool Wanted;
};
constexpr TFontRule FontRules[] = {
    {foAnsiOnly, HasLatin, true},           {foTrueTypeOnly, IsTrueType, true},
    {foFixedPitchOnly, IsFixedPitch, true}, {foNoOEMFonts, IsOEMFont, false},
    {foOEMFontsOnly, IsOEMFont, true},      {foScalableOnly, IsScalable, true},
    {foNoSymbolFonts, IsSymbolFont, false},
};

bool Keeps(TFontDevice device, TFontListOptions options, const QString& family) {
  // A printer cannot use pixels of one size.
  if (device == fdPrinter && !IsScalable(family)) return false;
  return std::all_of(std::begin(FontRules), std::end(FontRules), [&](const TFontRule& rule) {
    return !options.Contains(rule.Option) || rule.Property(family) == rule.Wanted;
  });
}

// The name that the family has for the font's style. Without it the dialog begins with the family's
// first style, whatever that is.
QString StyleNameOf(const QFont& font) {
  const QString family = font.family();
  QString found;
  for (const QString& style : QFontDatabase::styles(family)) {
    const bool fits = QFontDatabase::bold(family, style) == font.bold() &&
                      QFontDatabase::italic(family, style) == font.italic();
    // The plain one has the shortest name: no "Condensed", no "Light".
    if (fits && (found.isEmpty() || style.size() < found.size())) found = style;
  }
  return found;
}

// Two letters for a font of outlines, a page for one of the device.
const QIcon& FontMark(const QString& family) {
  static const QIcon trueType =
      DrawnIcon("sM 2 4 L 10 4 M 6 4 L 6 13 aM 8 8 L 14 8 M 11 8 L 11 14");
  static const QIcon device = DrawnIcon("sM 4 6 L 4 2 L 12 2 L 12 6 R 2 6 12 6 aR 4 10 8 4");
  return IsTrueType(family) ? trueType : device;
}

}  // namespace

std::vector<std::string> InstalledFonts(TFontDevice device, TFontListOptions options) {
  std::vector<std::string> families;
  for (const QString& family : QFontDatabase::families())
    if (!QFontDatabase::isPrivateFamily(family) && Keeps(device, options, family))
      families.push_back(FromQString(family));
  return families;
}

const TTypeInfo& TNotifyingFont::ClassInfo() {
  static const TTypeInfo info = Publish<TNotifyingFont>("TNotifyingFont", TFont::ClassInfo());
  return info;
}

void TNotifyingFont::Changed() {
  TFont::Changed();
  OnNotify(this);
}

const TTypeInfo& TFontEdit::ClassInfo() {
  static const TTypeInfo info = Publish<TFontEdit>("TFontEdit", TOwnerComboEdit::ClassInfo())
                                    .Prop("Device", &TFontEdit::Device, &TFontEdit::SetDevice)
                                    .Default(fdScreen)
                                    .Prop("Options", &TFontEdit::Options, &TFontEdit::SetOptions)
                                    .Default(TFontListOptions())
                                    .Prop("SelFont", &TFontEdit::SelFont, &TFontEdit::SetSelFont)
                                    .Prop("UseFonts", &TFontEdit::UseFonts, &TFontEdit::SetUseFonts)
                                    .Default(false)
                                    .Prop("OnChange", &TFontEdit::OnChange)
                                    .Prop("Style", &TFontEdit::Style, &TFontEdit::SetStyle)
                                    .Default(esDropDown);
  return info;
}

TFontEdit::TFontEdit(TComponent* owner, QWidget* parent)
    : TOwnerComboEdit(owner, parent), FSelFont(std::make_unique<TNotifyingFont>()) {
  Bind<&TFontEdit::SelFontChanged>(FSelFont->OnNotify, this);
  CreateContents();
}

void TFontEdit::SetDevice(TFontDevice device) {
  if (device == FDevice) return;
  FDevice = device;
  CreateContents();
}

void TFontEdit::SetOptions(TFontListOptions options) {
  if (options == FOptions) return;
  FOptions = options;
  CreateContents();
}

void TFontEdit::SetUseFonts(bool use) {
  if (use == FUseFonts) return;
  FUseFonts = use;
  CreateContents();
}

void TFontEdit::SetSelFont(TFont* font) {
  if (font != nullptr) FSelFont->Assign(font);
}

void TFontEdit::CreateContents() {
  {
    const QSignalBlocker quiet(this);
    clear();
    if (FUseFonts)
      for (const std::string& family : InstalledFonts(FDevice, FOptions))
        addItem(ToQString(family));
  }
  ShowSelFont();
}

void TFontEdit::ShowSelFont() {
  const QString name = ToQString(FSelFont->Name());
  SelectQuietly(findText(name, Qt::MatchFixedString));
  PutText(name);
}

void TFontEdit::SelFontChanged(TObject*) {
  if (!FShowing) ShowSelFont();
  OnChange(this);
}

bool TFontEdit::TakeName(const std::string& name) {
  if (name.empty() || name == FSelFont->Name()) return false;
  FShowing = true;
  FSelFont->SetName(name);
  FShowing = false;
  return true;
}

void TFontEdit::Click() {
  if (currentIndex() >= 0) TakeName(FromQString(itemText(currentIndex())));
}

void TFontEdit::Change() {
  const int line = findText(ToQString(Text()), Qt::MatchFixedString);
  if (line >= 0) SelectQuietly(line);
  const bool known = line >= 0 || !FUseFonts;
  const std::string name = line >= 0 ? FromQString(itemText(line)) : Text();
  if (!known || !TakeName(name)) OnTyped(this);
}

bool TFontEdit::TextIsTaken() const {
  return EqualText(Text(), FSelFont->Name());
}

void TFontEdit::Enter() {
  if (Style() == esDropDown) PutText(ToQString(FSelFont->Name()));
}

QFont TFontEdit::LineFont(int index) const {
  const QString family = itemText(index);
  if (!HasLatin(family)) return font();
  QFont own(family);
  own.setPointSizeF(font().pointSizeF());
  return own;
}

void TFontEdit::DrawPicture(QPainter& painter, const QRect& place, int index) const {
  const QString family = index < 0 ? ToQString(FSelFont->Name()) : itemText(index);
  if (index < 0 && findText(family, Qt::MatchFixedString) < 0) return;
  FontMark(family).paint(&painter, place);
}

void TFontEdit::CustomQuery() {
  const QPointer<TFontEdit> life(this);
  bool chosen = false;
  QFont before = ToQFont(*FSelFont);
  before.setStyleName(StyleNameOf(before));
  const QFont font = QFontDialog::getFont(&chosen, before, this);
  if (life == nullptr || !chosen) return;
  TFont taken;
  taken.Assign(FSelFont.get());
  FromQFont(font, taken);
  FSelFont->Assign(&taken);
  OnPick(this);
}

}  // namespace wrenfold
