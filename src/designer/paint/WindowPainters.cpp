// Paints windows, menus, icons and boxes.
#include <QPainterPath>

#include "designer/paint/Colours.h"
#include "designer/paint/Painters.h"
#include "designer/paint/Pictures.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr int TitlePadding = 8, TitleButton = 26;

void DrawCross(QPainter& canvas, const QRect& area) {
  canvas.drawLine(area.topLeft(), area.bottomRight());
  canvas.drawLine(area.topRight(), area.bottomLeft());
}

QRect MiddleOf(const QRect& area, int side) {
  QRect middle(0, 0, side, side);
  middle.moveCenter(area.center());
  return middle;
}

// Closing, sizing and hiding, from the right.
void DrawTitleButtons(TPainting& painting, const TDesignNode& node, QRect title) {
  QPainter& canvas = painting.Canvas;
  canvas.setPen(painting.SystemColour(QPalette::WindowText));
  canvas.setBrush(Qt::NoBrush);
  const auto next = [&] {
    const QRect button(title.right() - TitleButton + 1, title.top(), TitleButton, title.height());
    title.setRight(button.left() - 1);
    return MiddleOf(button, 9);
  };
  DrawCross(canvas, next());
  const bool dialog = node.Is("BorderStyle", "bsDialog") ||
                      node.Is("BorderStyle", "bsToolWindow") ||
                      node.Is("BorderStyle", "bsSizeToolWin");
  if (dialog) return;
  const std::string_view icons = node.Value("BorderIcons");
  if (StoredSetHas(icons, "biMaximize", true)) canvas.drawRect(next());
  if (!StoredSetHas(icons, "biMinimize", true)) return;
  const QRect mark = next();
  canvas.drawLine(mark.bottomLeft(), mark.bottomRight());
}

void DrawTitle(TPainting& painting, const TDesignNode& node, int height) {
  const QRect title(1, 1, painting.Area().width() - 2, height - 1);
  const QColor ground = painting.SystemColour(QPalette::Midlight);
  painting.Fill(title, ground);
  int left = TitlePadding;
  const std::string_view icon = StoredBinary(node.Value("Icon.Data"));
  const TDecodedPicture picture = DecodePicture(ReadStoredPicture(icon), 16);
  if (!picture.Trouble.empty()) painting.Note(node, picture.Trouble);
  if (!picture.Image.isNull()) {
    painting.DrawImageCentred(QRect(left, title.top(), 16, title.height()), picture.Image);
    left += 20;
  }
  painting.Canvas.setFont(painting.Font({"Segoe UI", 12}));
  painting.Canvas.setPen(painting.SystemColour(QPalette::WindowText));
  const int buttons = 3 * TitleButton;
  painting.Canvas.drawText(
      QRect(left, 1, std::max(0, title.width() - left - buttons), title.height()),
      Qt::AlignVCenter | Qt::AlignLeft, TPainting::Caption(node));
  DrawTitleButtons(painting, node, title);
}

void DrawMenuBar(TPainting& painting, const TDesignNode& menu, const QRect& bar) {
  painting.Fill(bar, painting.SystemColour(QPalette::Window));
  painting.Canvas.setFont(painting.Font({"Segoe UI", 12}));
  int left = bar.left() + 6;
  for (const TDesignNode* item : menu.Children) {
    if (!item->Boolean("Visible", true)) continue;
    const QString caption = TPainting::Caption(*item);
    const int width =
        QFontMetrics(painting.Canvas.font()).size(Qt::TextShowMnemonic, caption).width();
    const bool enabled = StoredBoolean(item->OwnOrAction("Enabled"), true);
    painting.Canvas.setPen(painting.Theme.Palette.color(
        enabled ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
    painting.Canvas.drawText(QRect(left, bar.top(), width + 2, bar.height()),
                             Qt::AlignVCenter | Qt::TextShowMnemonic, caption);
    left += width + 14;
    if (left > bar.right()) break;
  }
}

void DrawDots(TPainting& painting, const QRect& area) {
  constexpr int grid = 8, most = 2000;
  if (area.width() > most || area.height() > most) return;
  painting.Canvas.setPen(painting.SystemColour(QPalette::Mid));
  QList<QPoint> dots;
  for (int y = area.top() + grid; y <= area.bottom(); y += grid)
    for (int x = area.left() + grid; x <= area.right(); x += grid) dots.append(QPoint(x, y));
  painting.Canvas.drawPoints(dots.constData(), static_cast<int>(dots.size()));
}

// The name below the icon, outside of its bounds.
void DrawIconName(TPainting& painting, const TDesignNode& node) {
  constexpr int widest = 84;
  const QFont& font = painting.Font({"Tahoma", 9});
  const QFontMetrics metrics(font);
  const QString name = metrics.elidedText(ToQString(node.Name()), Qt::ElideRight, widest);
  QRect place(0, 0, metrics.horizontalAdvance(name) + 4, metrics.height());
  place.moveCenter(QPoint(painting.Area().center().x(), IconSide + metrics.height() / 2));
  painting.Canvas.setClipRect(place.united(painting.Area()));
  QColor ground = painting.SystemColour(QPalette::Window);
  ground.setAlpha(190);
  painting.Fill(place, ground);
  painting.Canvas.setFont(font);
  painting.Canvas.setPen(painting.SystemColour(QPalette::WindowText));
  painting.Canvas.drawText(place, Qt::AlignCenter, name);
}

bool IsBlank(const QImage& image) {
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (image.pixelColor(x, y).alpha() > 0) return false;
  return true;
}

// Letters of a class name that tell it from others: "OD" for TOpenDialog.
QString Initials(std::string_view className) {
  QString capitals;
  for (const QChar letter : ToQString(className.substr(className.starts_with('T') ? 1 : 0)))
    if (letter.isUpper()) capitals += letter;
  return capitals.isEmpty() ? QStringLiteral("?") : capitals.left(3);
}

}  // namespace

void PaintForm(TPainting& painting, const TDesignNode& node) {
  const QRect area = painting.Area();
  const QRect client = RectOf(node.Client);
  painting.Fill(client, painting.Appearance().Ground);
  const TDesignNode* menu = MenuOf(node);
  if (client.top() == 0) return;
  const bool framed = !node.Is("BorderStyle", "bsNone");
  int bottom = client.top();
  if (menu != nullptr) {
    const int height = TWindowFrame().Menu;
    bottom -= height;
    DrawMenuBar(painting, *menu, QRect(client.left(), bottom, client.width(), height));
  }
  if (!framed) return;
  DrawTitle(painting, node, bottom);
  painting.DrawOutline(area, painting.SystemColour(QPalette::Dark));
}

void PaintFrame(TPainting& painting, const TDesignNode&) {
  painting.FillGround();
}

void PaintDataModule(TPainting& painting, const TDesignNode&) {
  painting.Fill(painting.Area(), painting.SystemColour(QPalette::Base));
  DrawDots(painting, painting.Area());
  painting.DrawOutline(painting.Area(), painting.SystemColour(QPalette::Mid));
}

void PaintIcon(TPainting& painting, const TDesignNode& node) {
  const QRect area = painting.Area();
  painting.Fill(area, painting.SystemColour(QPalette::Window));
  painting.DrawOutline(area, painting.SystemColour(QPalette::Mid));
  DrawIconName(painting, node);
  const QImage first = painting.ImageAt(&node, 0);
  if (!IsBlank(first)) return painting.DrawImageCentred(area.adjusted(3, 3, -3, -3), first);
  painting.Canvas.setFont(painting.Font({"Tahoma", 11, true}));
  painting.Canvas.setPen(painting.SystemColour(QPalette::Link));
  painting.Canvas.drawText(area, Qt::AlignCenter, Initials(node.ClassName()));
}

void PaintNothing(TPainting&, const TDesignNode&) {}

void PaintBox(TPainting& painting, const TDesignNode& node) {
  const QRect area = painting.Area();
  painting.FillGround();
  painting.Canvas.setPen(QPen(painting.SystemColour(QPalette::Dark), 1, Qt::DashLine));
  painting.Canvas.setBrush(Qt::NoBrush);
  painting.Canvas.drawRect(area.adjusted(0, 0, -1, -1));
  painting.DrawText(area.adjusted(4, 2, -4, -2), Qt::AlignLeft | Qt::AlignTop,
                    ToQString(node.Name() + ": " + std::string(node.ClassName())),
                    painting.SystemColour(QPalette::Dark));
}

void PaintBand(TPainting& painting, const TDesignNode& node) {
  painting.Fill(painting.Area(), painting.SystemColour(QPalette::Base));
  painting.DrawOutline(painting.Area(), painting.SystemColour(QPalette::Mid));
  painting.DrawText(painting.Area().adjusted(2, 0, -2, -1), Qt::AlignRight | Qt::AlignBottom,
                    ToQString(node.Name()), painting.SystemColour(QPalette::Mid));
}

}  // namespace wrenfold
