// The colour edit: the colours of its table, as lines with a swatch each.
#include <QColorDialog>
#include <QPainter>

#include "controls/rkControls.h"
#include "platform/core/text/Format.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

struct TNamedColor {
  std::uint32_t Value;
  const char* Name;
};
// The values are this program's own, also where the platform has others of the name.
constexpr TNamedColor ColorTable[] = {
    {0x00000000, "Black"},         {0x00000080, "Maroon"},
    {0x00008000, "Green"},         {0x00008080, "Olive"},
    {0x00800000, "Navy"},          {0x00800080, "Purple"},
    {0x00808000, "Teal"},          {0x00808080, "Gray"},
    {0x00C0C0C0, "Silver"},        {0x000000FF, "Red"},
    {0x0000FF00, "Lime"},          {0x0000FFFF, "Yellow"},
    {0x00FF0000, "Blue"},          {0x00FF00FF, "Fuchsia"},
    {0x00FFFF00, "Aqua"},          {0x00FFFFFF, "White"},
    {0x80000000, "ScrollBar"},     {0x80000001, "Background"},
    {0x80000002, "ActiveCaption"}, {0x80000003, "InactiveCaption"},
    {0x80000004, "Menu"},          {0x80000005, "Window"},
    {0x80000006, "WindowFrame"},   {0x80000007, "MenuText"},
    {0x80000008, "WindowText"},    {0x80000009, "CaptionText"},
    {0x8000000A, "ActiveBorder"},  {0x8000000B, "InactiveBorder"},
    {0x8000000C, "AppWorkSpace"},  {0x8000000D, "Highlight"},
    {0x8000000E, "HighlightText"}, {0x8000000F, "BtnFace"},
    {0x80000010, "BtnShadow"},     {0x80000011, "GrayText"},
    {0x80000012, "BtnText"},       {0x80000013, "InactiveCaptionText"},
    {0x80000014, "BtnHighlight"},  {0x80000015, "3DDkShadow"},
    {0x80000016, "3DLight"},       {0x80000017, "InfoText"},
    {0x80000018, "InfoBk"},        {0x1FFFFFFF, "None"},
    {0x00A6CAF0, "Cream"},         {0x00C0DCC0, "MoneyGreen"},
    {0x00FFFBF0, "SkyBlue"},
};

TColor ColorOf(std::uint32_t bits) {
  return static_cast<std::int32_t>(bits);
}

std::string ColorAsNumber(TColor color) {
  return '$' + IntToHex(static_cast<std::uint32_t>(color.Value), 8);
}

// A frame that shows on every colour; no colour is crossed out.
void DrawSwatch(QPainter& painter, const QRect& place, TColor color, const QPalette& palette) {
  painter.save();
  painter.setPen(palette.color(QPalette::Mid));
  painter.setBrush(color == clNone ? QBrush(Qt::NoBrush) : QBrush(ToQColor(color)));
  const QRect frame = place.adjusted(0, 0, -1, -1);
  painter.drawRect(frame);
  if (color == clNone) painter.drawLine(frame.bottomLeft(), frame.topRight());
  painter.restore();
}

}  // namespace

const TTypeInfo& TColorEdit::ClassInfo() {
  static const TTypeInfo info =
      Publish<TColorEdit>("TColorEdit", TOwnerComboEdit::ClassInfo())
          .Prop("ColorNames", &TColorEdit::ColorNames, &TColorEdit::SetColorNames)
          .Prop("ColorValue", &TColorEdit::ColorValue, &TColorEdit::SetColorValue)
          .Default(clBlack)
          .Prop("ColorWidth", &TColorEdit::ColorWidth, &TColorEdit::SetColorWidth)
          .Default(22)
          .Prop("DisplayNames", &TColorEdit::DisplayNames, &TColorEdit::SetDisplayNames)
          .Default(true)
          .Prop("OnChange", &TColorEdit::OnChange)
          .Prop("Style", &TColorEdit::Style, &TColorEdit::SetStyle)
          .Default(esDropDown);
  return info;
}

TColorEdit::TColorEdit(TComponent* owner, QWidget* parent)
    : TOwnerComboEdit(owner, parent), FColorNames(std::make_unique<TStringList>()) {
  Bind<&TColorEdit::NamesChanged>(FColorNames->OnChange, this);
  CreateContents();
}

TColorEdit::~TColorEdit() = default;

void TColorEdit::CreateContents() {
  PopulateList();
  SetColorValue(FColorValue);
  ShowPictureOfValue();
}

void TColorEdit::PopulateList() {
  const QSignalBlocker quiet(this);
  clear();
  int line = 0;
  for (const auto& [value, name] : ColorTable) {
    const bool renamed = line < FColorNames->Count() && !FColorNames->Get(line).empty();
    addItem(ToQString(renamed ? FColorNames->Get(line) : name), ColorOf(value).Value);
    ++line;
  }
  setCurrentIndex(-1);
}

void TColorEdit::SetColorNames(TStrings* names) {
  FColorNames->Assign(names);
}

void TColorEdit::SetColorWidth(std::int32_t width) {
  FColorWidth = std::max(0, width);
  ShowPictureOfValue();
}

void TColorEdit::SetDisplayNames(bool display) {
  if (display == FDisplayNames) return;
  FDisplayNames = display;
  ShowPictureOfValue();
}

int TColorEdit::LineOf(TColor color) const {
  return findData(color.Value);
}

TColor TColorEdit::LineColor(int index) const {
  return itemData(index).toInt();
}

void TColorEdit::SetColorValue(TColor value) {
  if (currentIndex() >= 0 && value == FColorValue) return;
  FColorValue = value;
  const int line = LineOf(value);
  SelectQuietly(line);
  PutText(line >= 0 ? itemText(line) : ToQString(InternalColorToString(value)));
  OnChange(this);
}

bool TColorEdit::TakeColor(TColor color) {
  if (color == FColorValue) return false;
  FColorValue = color;
  return true;
}

void TColorEdit::Click() {
  if (currentIndex() >= 0 && TakeColor(LineColor(currentIndex()))) OnChange(this);
  ShowPictureOfValue();
}

void TColorEdit::Change() {
  TColor named;
  const bool isName = InternalIdentToColor(Text(), named);
  const bool changed = TakeColor(InternalStringToColor(Text(), FColorValue));
  if (isName) SelectQuietly(LineOf(named));
  else if (changed) SelectQuietly(-1);
  (changed ? OnChange : OnTyped)(this);
}

// A half-typed text becomes that of the value again.
void TColorEdit::Enter() {
  if (Style() == esDropDown) PutText(ToQString(InternalColorToString(FColorValue)));
}

bool TColorEdit::InternalIdentToColor(const std::string& name, TColor& color) const {
  const int line = findText(ToQString(name), Qt::MatchFixedString);
  if (line < 0) return false;
  color = LineColor(line);
  return true;
}

bool TColorEdit::InternalColorToIdent(TColor color, std::string& name) const {
  const int line = LineOf(color);
  if (line < 0) return false;
  name = FromQString(itemText(line));
  return true;
}

TColor TColorEdit::InternalStringToColor(const std::string& text, TColor defaultColor) const {
  TColor color;
  if (InternalIdentToColor(text, color)) return color;
  std::int32_t number = 0;
  return TryStrToInt(text, number) ? TColor(number) : defaultColor;
}

std::string TColorEdit::InternalColorToString(TColor color) const {
  std::string name;
  return InternalColorToIdent(color, name) ? name : ColorAsNumber(color);
}

std::string ColorAsShownText(TColor color) {
  for (const auto& [value, name] : ColorTable)
    if (ColorOf(value) == color) return name;
  return ColorAsNumber(color);
}

void TColorEdit::DrawPicture(QPainter& painter, const QRect& place, int index) const {
  DrawSwatch(painter, place, index < 0 ? FColorValue : LineColor(index), palette());
}

void TColorEdit::CustomQuery() {
  const QPointer<TColorEdit> life(this);
  const QColor before = FColorValue == clNone ? QColor(Qt::white) : ToQColor(FColorValue);
  const QColor chosen = QColorDialog::getColor(before, this);
  if (life == nullptr || !chosen.isValid()) return;
  SetColorValue(chosen.red() | chosen.green() << 8 | chosen.blue() << 16);
  OnPick(this);
}

}  // namespace wrenfold
