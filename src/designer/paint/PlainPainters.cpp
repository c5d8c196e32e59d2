// Paints texts, lines, shapes and pictures.
#include <QPainterPath>

#include "designer/paint/Colours.h"
#include "designer/paint/Painters.h"
#include "designer/paint/Pictures.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

int HorizontalFlag(const TDesignNode& node) {
  if (node.Is("Alignment", "taRightJustify")) return Qt::AlignRight;
  return node.Is("Alignment", "taCenter") ? Qt::AlignHCenter : Qt::AlignLeft;
}

int VerticalFlag(const TDesignNode& node) {
  if (node.Is("Layout", "tlBottom")) return Qt::AlignBottom;
  return node.Is("Layout", "tlCenter") ? Qt::AlignVCenter : Qt::AlignTop;
}

// What a label of some class shows, the first that is stored.
QString LabelText(const TDesignNode& node) {
  QString text = TPainting::Caption(node);
  for (const std::string_view property : {"Text", "DataField", "Expression"})
    if (text.isEmpty()) text = ToQString(node.Text(property));
  if (text.isEmpty()) text = ToQString(node.Text("Caption.Strings"));
  return text;
}

struct TPenStyle {
  std::string_view Name;
  Qt::PenStyle Style;
};
constexpr TPenStyle PenStyles[] = {
    {"psDash", Qt::DashLine},       {"psDot", Qt::DotLine},
    {"psDashDot", Qt::DashDotLine}, {"psDashDotDot", Qt::DashDotDotLine},
    {"psClear", Qt::NoPen},
};

QPen PenOf(TPainting& painting, const TDesignNode& node) {
  QPen pen(painting.Colour(node, "Pen.Color", painting.SystemColour(QPalette::WindowText)),
           std::clamp(node.Bound("Pen.Width", 1), 1, 100));
  for (const TPenStyle& style : PenStyles)
    if (node.Is("Pen.Style", style.Name)) pen.setStyle(style.Style);
  pen.setJoinStyle(Qt::MiterJoin);
  return pen;
}

QBrush BrushOf(TPainting& painting, const TDesignNode& node) {
  if (node.Is("Brush.Style", "bsClear")) return Qt::NoBrush;
  return painting.Colour(node, "Brush.Color", painting.SystemColour(QPalette::Base));
}

QRect SquareIn(const QRect& area) {
  const int side = std::min(area.width(), area.height());
  QRect square(0, 0, side, side);
  square.moveCenter(area.center());
  return square;
}

void DrawShape(QPainter& canvas, std::string_view shape, QRect area) {
  const bool square = shape.starts_with("stSquare") || shape.starts_with("stRoundSquare") ||
                      shape.starts_with("stCircle");
  if (square) area = SquareIn(area);
  if (shape == "stCircle" || shape == "stEllipse") return canvas.drawEllipse(area);
  if (shape.starts_with("stRound")) {
    const int radius = std::min(area.width(), area.height()) / 8;
    return canvas.drawRoundedRect(area, radius, radius);
  }
  if (shape == "stTriangle")
    return canvas.drawPolygon(
        QPolygon({QPoint(area.center().x(), area.top()), area.bottomRight(), area.bottomLeft()}));
  if (shape == "stDiamond" || shape == "stSquaredDiamond")
    return canvas.drawPolygon(QPolygon(
        {QPoint(area.center().x(), area.top()), QPoint(area.right(), area.center().y()),
         QPoint(area.center().x(), area.bottom()), QPoint(area.left(), area.center().y())}));
  canvas.drawRect(area);
}

// Where a picture is drawn in the room of its component.
QRect PictureArea(const TDesignNode& node, const QRect& room, QSize size) {
  const bool proportional = node.Boolean("Proportional", false);
  const bool tooLarge = size.width() > room.width() || size.height() > room.height();
  if (node.Boolean("Stretch", false) || (proportional && tooLarge)) {
    if (!proportional) return room;
    size.scale(room.size(), Qt::KeepAspectRatio);
  }
  QRect area(room.topLeft(), size);
  if (node.Boolean("Center", false)) area.moveCenter(room.center());
  return area;
}

std::string_view StoredImageBytes(const TDesignNode& node) {
  for (const std::string_view property :
       {"Picture.Data", "Bitmap.Data", "Image.Data", "Background.Data", "Glyph.Data"})
    if (const std::string_view bytes = StoredBinary(node.Value(property)); !bytes.empty())
      return bytes;
  return {};
}

// A sign that a picture comes here when the program runs.
void DrawEmptyPicture(TPainting& painting) {
  const QRect area = painting.Area().adjusted(0, 0, -1, -1);
  painting.Canvas.setPen(QPen(painting.SystemColour(QPalette::Mid), 1, Qt::DashLine));
  painting.Canvas.setBrush(Qt::NoBrush);
  painting.Canvas.drawRect(area);
}

}  // namespace

void PaintLabel(TPainting& painting, const TDesignNode& node) {
  const bool own = ColourOf(node.Value("Color"), painting.Theme.Palette).isValid();
  if (own && !node.Boolean("Transparent", false)) painting.FillGround();
  const QString text = LabelText(node);
  const bool wraps = node.Boolean("WordWrap", false);
  const bool lines = wraps || text.contains('\n') || text.contains('\r');
  int flags = HorizontalFlag(node) | VerticalFlag(node) | (wraps ? Qt::TextWordWrap : 0);
  if (node.Boolean("ShowAccelChar", true)) flags |= Qt::TextShowMnemonic;
  const QRect area = painting.Area();
  if (lines) return painting.DrawText(area, flags, text);
  painting.DrawFittedText(area, flags | Qt::TextSingleLine, text);
}

void PaintBevel(TPainting& painting, const TDesignNode& node) {
  const bool raised = node.Is("Style", "bsRaised");
  const std::string_view shape = node.Identifier("Shape");
  const QRect area = painting.Area();
  const QString caption = TPainting::Caption(node);
  const int half = area.height() / 2;
  if (!caption.isEmpty()) {
    const int width = painting.TextWidth(caption) + 16;
    painting.DrawText(area.adjusted(8, 0, 0, 0), Qt::AlignVCenter | Qt::TextShowMnemonic, caption);
    return painting.DrawEdge(QRect(width, half, std::max(0, area.width() - width), 2), raised);
  }
  if (shape == "bsTopLine") return painting.DrawEdge(QRect(0, 0, area.width(), 2), raised);
  if (shape == "bsBottomLine")
    return painting.DrawEdge(QRect(0, area.bottom() - 1, area.width(), 2), raised);
  if (shape == "bsLeftLine") return painting.DrawEdge(QRect(0, 0, 2, area.height()), raised);
  if (shape == "bsRightLine")
    return painting.DrawEdge(QRect(area.right() - 1, 0, 2, area.height()), raised);
  if (shape == "bsSpacer") return;
  painting.DrawEdge(area, raised);
  if (shape == "bsFrame") painting.DrawEdge(area.adjusted(1, 1, -1, -1), !raised);
}

void PaintShape(TPainting& painting, const TDesignNode& node) {
  const QPen pen = PenOf(painting, node);
  painting.Canvas.setPen(pen);
  painting.Canvas.setBrush(BrushOf(painting, node));
  const int inset = pen.width() / 2;
  DrawShape(painting.Canvas, node.Identifier("Shape"),
            painting.Area().adjusted(inset, inset, -inset - 1, -inset - 1));
}

void PaintImage(TPainting& painting, const TDesignNode& node) {
  const TDecodedPicture picture = DecodePicture(ReadStoredPicture(StoredImageBytes(node)));
  if (!picture.Trouble.empty()) painting.Note(node, picture.Trouble);
  if (node.Class.Row->Ground == TGround::Window) painting.DrawField(node);
  QImage image = picture.Image;
  if (image.isNull()) image = painting.Glyph(node);
  if (image.isNull()) return DrawEmptyPicture(painting);
  painting.DrawImage(PictureArea(node, painting.Area(), image.size()), image);
}

void PaintPaintBox(TPainting& painting, const TDesignNode&) {
  DrawEmptyPicture(painting);
}

void PaintSplitter(TPainting& painting, const TDesignNode&) {
  painting.FillGround();
  const QRect area = painting.Area();
  if (std::min(area.width(), area.height()) >= 5) painting.DrawEdge(area, true);
}

}  // namespace wrenfold
