#include "designer/paint/Painting.h"

#include <fmt/format.h>

#include <algorithm>

#include "designer/model/HitTest.h"
#include "designer/paint/Colours.h"
#include "designer/paint/Painters.h"
#include "designer/paint/Pictures.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

// A substitute that is this much wider is squeezed; a text wider than that was cut by its author.
constexpr double MostSqueezed = 0.72;

// No screen shows more of one text.
constexpr qsizetype MostLetters = 20'000;

}  // namespace

TPainting::TPainting(QPainter& canvas, TComposedForm& form, const TTheme& theme, TFontBook& fonts)
    : Canvas(canvas), Theme(theme), FForm(form), FFonts(fonts), FBase(canvas.worldTransform()) {}

void TPainting::DrawForm() {
  TDesignNode& root = FForm.Root();
  const TAppearance usual{UsualFont(root), Theme.Palette.color(QPalette::WindowText),
                          Theme.Palette.color(QPalette::Window), true};
  DrawNode(root, usual);
  Canvas.setWorldTransform(FBase);
  Canvas.setClipping(false);
}

void TPainting::DrawNode(TDesignNode& node, const TAppearance& inherited) {
  if (node.Clip.Empty()) return;
  const TAppearance appearance = AppearanceOf(node, inherited);
  FAppearance = &appearance;
  FArea = QRect(0, 0, node.Bounds.Width, node.Bounds.Height);
  Canvas.setWorldTransform(QTransform::fromTranslate(node.Origin.X, node.Origin.Y) * FBase);
  Canvas.setClipRect(RectOf(node.Clip.Moved(-node.Origin.X, -node.Origin.Y)));
  PainterOf(node.Look()).Paint(*this, node);
  for (TDesignNode* child : PaintOrder(node)) DrawNode(*child, appearance);
}

QColor TPainting::GroundOf(const TDesignNode& node, const TAppearance& inherited) const {
  const QColor stored = ColourOf(node.Value("Color"), Theme.Palette);
  if (stored.isValid()) return stored;
  const TGround ground = node.Class.Row->Ground;
  const bool follows =
      ground == TGround::Parent || (ground == TGround::Face && node.Form->FromFreeEnvironment());
  if (node.Boolean("ParentColor", follows) && !node.IsRoot()) return inherited.Ground;
  return Theme.Palette.color(ground == TGround::Window ? QPalette::Base : QPalette::Window);
}

TAppearance TPainting::AppearanceOf(const TDesignNode& node, const TAppearance& inherited) const {
  TAppearance appearance = inherited;
  appearance.Font = WithStoredFont(inherited.Font, node);
  if (const QColor colour = ColourOf(node.Value("Font.Color"), Theme.Palette); colour.isValid())
    appearance.FontColour = colour;
  appearance.Ground = GroundOf(node, inherited);
  appearance.Enabled = inherited.Enabled && StoredBoolean(node.OwnOrAction("Enabled"), true);
  return appearance;
}

QColor TPainting::TextColour() const {
  return FAppearance->Enabled ? FAppearance->FontColour
                              : Theme.Palette.color(QPalette::Disabled, QPalette::WindowText);
}

QColor TPainting::Colour(const TDesignNode& node, std::string_view path,
                         const QColor& otherwise) const {
  const QColor colour = ColourOf(node.Value(path), Theme.Palette);
  return colour.isValid() ? colour : otherwise;
}

QString TPainting::Caption(const TDesignNode& node) {
  return ToQString(StoredText(node.OwnOrAction("Caption"), node.Form->CodePage()));
}

void TPainting::DrawText(const QRect& area, int flags, const QString& text) {
  DrawText(area, flags, text, TextColour());
}

void TPainting::DrawText(const QRect& area, int flags, const QString& text, const QColor& colour) {
  if (text.isEmpty()) return;
  Canvas.setFont(Font());
  Canvas.setPen(colour);
  Canvas.drawText(area, flags, text.left(MostLetters));
}

void TPainting::DrawFittedText(const QRect& area, int flags, const QString& text) {
  const int width = TextWidth(text);
  const double squeeze = width > 0 ? static_cast<double>(area.width()) / width : 1;
  if (squeeze >= 1 || squeeze < MostSqueezed) return DrawText(area, flags, text);
  Canvas.save();
  Canvas.translate(area.left(), area.top());
  Canvas.scale(squeeze, 1);
  DrawText(QRect(0, 0, width + 1, area.height()), flags, text);
  Canvas.restore();
}

int TPainting::TextWidth(const QString& text) {
  return QFontMetrics(Font()).size(Qt::TextShowMnemonic, text.left(MostLetters)).width();
}

int TPainting::LineHeight() {
  return QFontMetrics(Font()).height();
}

void TPainting::Fill(const QRect& area, const QColor& colour) {
  if (colour.isValid()) Canvas.fillRect(area, colour);
}

void TPainting::DrawEdge(const QRect& area, bool raised) {
  if (area.width() < 1 || area.height() < 1) return;
  const QColor light = SystemColour(QPalette::Light), dark = SystemColour(QPalette::Mid);
  const QRect box = area.adjusted(0, 0, -1, -1);
  Canvas.setPen(raised ? light : dark);
  Canvas.drawLine(box.topLeft(), box.topRight());
  Canvas.drawLine(box.topLeft(), box.bottomLeft());
  Canvas.setPen(raised ? dark : light);
  Canvas.drawLine(box.bottomLeft(), box.bottomRight());
  Canvas.drawLine(box.topRight(), box.bottomRight());
}

void TPainting::DrawOutline(const QRect& area, const QColor& colour) {
  Canvas.setPen(colour);
  Canvas.setBrush(Qt::NoBrush);
  Canvas.drawRect(area.adjusted(0, 0, -1, -1));
}

QRect TPainting::DrawField(const TDesignNode& node) {
  FillGround();
  if (node.Is("BorderStyle", "bsNone")) return FArea;
  DrawOutline(FArea, SystemColour(QPalette::Mid));
  return FArea.adjusted(2, 2, -2, -2);
}

void TPainting::DrawImage(const QRect& area, const QImage& image) {
  Canvas.setRenderHint(QPainter::SmoothPixmapTransform, area.size() != image.size());
  Canvas.drawImage(area, image);
}

void TPainting::DrawImageCentred(const QRect& area, const QImage& image) {
  if (image.isNull() || area.isEmpty()) return;
  QSize size = image.size();
  if (size.width() > area.width() || size.height() > area.height())
    size.scale(area.size(), Qt::KeepAspectRatio);
  QRect place(QPoint(), size);
  place.moveCenter(area.center());
  DrawImage(place, image);
}

void TPainting::Prepare(QStyleOption& option, const QRect& area) {
  option.rect = area;
  option.palette = Theme.Palette;
  option.palette.setColor(QPalette::Window, FAppearance->Ground);
  option.fontMetrics = QFontMetrics(Font());
  option.direction = Qt::LeftToRight;
  option.state = QStyle::State_Active;
  if (FAppearance->Enabled) option.state |= QStyle::State_Enabled;
  Canvas.setFont(Font());
}

const std::vector<QImage>& TPainting::Images(const TDesignNode* list) {
  auto [entry, isNew] = FImages.try_emplace(list);
  if (!isNew || list == nullptr) return entry->second;
  std::string trouble;
  for (const std::string_view property : {"Bitmap", "BitmapAdv"}) {
    const std::string_view stored = StoredBinary(list->Value(property));
    if (stored.empty()) continue;
    entry->second =
        DecodeImages(stored, list->Bound("Width", 16), list->Bound("Height", 16), trouble);
    break;
  }
  if (!trouble.empty()) Note(*list, trouble);
  return entry->second;
}

QImage TPainting::ImageAt(const TDesignNode* list, std::int64_t index) {
  const std::vector<QImage>& images = Images(list);
  if (index < 0 || index >= static_cast<std::int64_t>(images.size())) return {};
  return images[static_cast<std::size_t>(index)];
}

QImage TPainting::Glyph(const TDesignNode& node) {
  if (const std::string_view stored = StoredBinary(node.Value("Glyph.Data")); !stored.empty()) {
    TDecodedPicture glyph = DecodeGlyph(
        stored, static_cast<int>(std::clamp<std::int64_t>(node.Integer("NumGlyphs", 1), 1, 8)));
    if (!glyph.Trouble.empty()) Note(node, glyph.Trouble);
    return glyph.Image;
  }
  const TDesignNode* action = node.Linked("Action");
  const TDesignNode* actions = action != nullptr ? action->Parent : nullptr;
  const TDesignNode* list = node.Linked("Images");
  for (const std::string_view property : {"LargeImages", "ImageList"})
    if (list == nullptr) list = node.Linked(property);
  if (list == nullptr && actions != nullptr) list = actions->Linked("Images");
  return list != nullptr ? ImageAt(list, StoredInteger(node.OwnOrAction("ImageIndex"), -1))
                         : QImage();
}

void TPainting::Note(const TDesignNode& node, const std::string& trouble) {
  FForm.AddNote(fmt::format("{}: {}", node.Name(), trouble));
}

}  // namespace wrenfold
