// Paints fields that are typed into or chosen from.
#include <QDate>
#include <QStyleOptionComboBox>
#include <QStyleOptionSpinBox>

#include "designer/paint/Colours.h"
#include "designer/paint/Painters.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr int FieldButton = 17;

int AlignmentFlag(const TDesignNode& node) {
  if (node.Is("Alignment", "taRightJustify")) return Qt::AlignRight;
  return node.Is("Alignment", "taCenter") ? Qt::AlignHCenter : Qt::AlignLeft;
}

// What an edit of some class shows, the first that is stored.
QString FieldText(const TDesignNode& node) {
  for (const std::string_view property : {"Text", "FileName", "Directory", "EditText", "DataField"})
    if (QString text = ToQString(node.Text(property)); !text.isEmpty()) return text;
  return {};
}

QString Masked(const TDesignNode& node, const QString& text) {
  QString mask = ToQString(node.Text("PasswordChar"));
  if (mask.isEmpty() || mask[0] == QChar(0)) return text;
  return QString(text.size(), mask[0]);
}

void DrawFieldText(TPainting& painting, const TDesignNode& node, const QRect& room,
                   const QString& text) {
  const QRect area = room.adjusted(2, 0, -1, 0);
  if (!text.isEmpty())
    return painting.DrawText(area, AlignmentFlag(node) | Qt::AlignVCenter | Qt::TextSingleLine,
                             text);
  painting.DrawText(area, Qt::AlignLeft | Qt::AlignVCenter, ToQString(node.Text("TextHint")),
                    painting.SystemColour(QPalette::PlaceholderText));
}

// A small button at the right end of the field; answers the room left of it.
QRect DrawFieldButton(TPainting& painting, const QRect& room, const QString& mark) {
  const int width = std::min(FieldButton, room.width() / 2);
  const QRect button(room.right() - width + 1, room.top(), width, room.height());
  painting.Fill(button, painting.SystemColour(QPalette::Button));
  painting.DrawOutline(button, painting.SystemColour(QPalette::Mid));
  painting.DrawText(button, Qt::AlignCenter, mark, painting.SystemColour(QPalette::ButtonText));
  return room.adjusted(0, 0, -width, 0);
}

QRect DrawFieldArrow(TPainting& painting, const QRect& room, QStyle::PrimitiveElement arrow) {
  const QRect rest = DrawFieldButton(painting, room, {});
  const QRect button(rest.right() + 1, room.top(), room.right() - rest.right(), room.height());
  QStyleOption option;
  QRect mark(0, 0, 9, 9);
  mark.moveCenter(button.center());
  painting.Prepare(option, mark);
  painting.Theme.Style->drawPrimitive(arrow, &option, &painting.Canvas);
  return rest;
}

void DrawUpAndDown(TPainting& painting, const QRect& room) {
  const int half = room.height() / 2;
  DrawFieldArrow(painting, QRect(room.left(), room.top(), room.width(), half),
                 QStyle::PE_IndicatorArrowUp);
  DrawFieldArrow(painting,
                 QRect(room.left(), room.top() + half, room.width(), room.height() - half),
                 QStyle::PE_IndicatorArrowDown);
}

QString NumberText(const TDesignNode& node) {
  const std::string_view value = node.Value("Value");
  const auto decimals =
      static_cast<int>(std::clamp<std::int64_t>(node.Integer("DecimalPlaces", 2), 0, 10));
  const double number = StoredNumber(value, 0);
  const bool whole = StoredInteger(value, INT64_MIN) != INT64_MIN || value.empty();
  if (value.empty() && node.Has("Text")) return ToQString(node.Text("Text"));
  return whole ? QString::number(static_cast<qint64>(number))
               : QString::number(number, 'f', decimals);
}

// Lines of a memo; a rich text without its markup.
QString PlainText(QStringList lines) {
  if (lines.isEmpty() || !lines[0].startsWith("{\\rtf")) return lines.join('\n');
  QString text;
  int depth = 0;
  const QString markup = lines.join('\n');
  for (qsizetype i = 0; i < markup.size(); ++i) {
    const QChar c = markup[i];
    if (c == '{') ++depth;
    else if (c == '}') --depth;
    else if (c == '\\') {
      const qsizetype start = i + 1;
      while (i + 1 < markup.size() && markup[i + 1].isLetterOrNumber()) ++i;
      if (markup.mid(start, i + 1 - start).startsWith("par") && depth == 1) text += '\n';
      if (i + 1 < markup.size() && markup[i + 1] == ' ') ++i;
    } else if (depth == 1 && c != '\n' && c != '\r') {
      text += c;
    }
  }
  return text.trimmed();
}

QString MemoText(const TDesignNode& node) {
  QStringList lines;
  for (const std::string& line : node.Strings("Lines.Strings")) lines.append(ToQString(line));
  if (lines.isEmpty() && node.Has("DataField")) lines.append(ToQString(node.Text("DataField")));
  if (lines.isEmpty() && node.Has("Text")) lines.append(ToQString(node.Text("Text")));
  return PlainText(lines);
}

bool ScrollsAlong(const TDesignNode& node, bool vertical) {
  const std::string_view bars = node.Identifier("ScrollBars");
  if (bars == "ssBoth" || bars == "ssAutoBoth") return bars == "ssBoth";
  return bars == (vertical ? "ssVertical" : "ssHorizontal");
}

void DrawScrollTrack(TPainting& painting, const QRect& area) {
  painting.Fill(area, painting.SystemColour(QPalette::Midlight));
  painting.DrawOutline(area, painting.SystemColour(QPalette::Mid));
}

// The item of a combo box that is chosen, or its text.
QString ComboText(const TDesignNode& node) {
  const QString text = FieldText(node);
  if (!text.isEmpty()) return text;
  const std::int64_t index = node.Integer("ItemIndex", -1);
  const auto items = index >= 0 ? node.Strings("Items.Strings") : std::vector<std::string>();
  if (index >= static_cast<std::int64_t>(items.size()) || index < 0) return {};
  return ToQString(items[static_cast<std::size_t>(index)]);
}

constexpr double FirstDay = 0;
QDate DateOf(const TDesignNode& node) {
  const double days = StoredNumber(node.Value("Date"), FirstDay);
  if (days < 1 || days > 1'000'000) return QDate(2000, 1, 1);
  return QDate(1899, 12, 30).addDays(static_cast<qint64>(days));
}

void DrawDays(TPainting& painting, QRect room, QDate chosen) {
  constexpr const char* names[] = {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};
  const int line = painting.LineHeight() + 2;
  for (int day = 0; day < 7; ++day)
    painting.DrawText(
        QRect(room.left() + room.width() * day / 7, room.top(), room.width() / 7, line),
        Qt::AlignCenter, QString::fromLatin1(names[day]), painting.SystemColour(QPalette::Link));
  room.adjust(0, line, 0, 0);
  const QDate first(chosen.year(), chosen.month(), 1);
  const int offset = first.dayOfWeek() - 1;
  for (int day = 1; day <= first.daysInMonth(); ++day) {
    const int cell = offset + day - 1;
    const QRect place(room.left() + room.width() * (cell % 7) / 7,
                      room.top() + room.height() * (cell / 7) / 6, room.width() / 7,
                      room.height() / 6);
    if (day == chosen.day())
      painting.DrawOutline(place, painting.SystemColour(QPalette::Highlight));
    painting.DrawText(place, Qt::AlignCenter, QString::number(day));
  }
}

}  // namespace

void PaintEdit(TPainting& painting, const TDesignNode& node) {
  const QRect room = painting.DrawField(node);
  DrawFieldText(painting, node, room, Masked(node, FieldText(node)));
}

void PaintLabeledEdit(TPainting& painting, const TDesignNode& node) {
  PaintEdit(painting, node);
  const QString caption = ToQString(node.Text("EditLabel.Caption"));
  if (caption.isEmpty()) return;
  // The label lies outside of the edit, above it or at its left.
  const QRect area = painting.Area();
  painting.Canvas.setClipping(false);
  const int gap = std::clamp(node.Bound("LabelSpacing", 3), 0, 100);
  const int height = painting.LineHeight(), width = painting.TextWidth(caption);
  const bool left = node.Is("LabelPosition", "lpLeft");
  const QRect place = left ? QRect(-gap - width, (area.height() - height) / 2, width, height)
                           : QRect(0, -gap - height, std::max(area.width(), width), height);
  painting.DrawText(place, Qt::AlignLeft | Qt::TextShowMnemonic, caption);
}

void PaintEditButton(TPainting& painting, const TDesignNode& node) {
  const QRect room = DrawFieldButton(painting, painting.DrawField(node), QStringLiteral("…"));
  DrawFieldText(painting, node, room, FieldText(node));
}

void PaintSpinEdit(TPainting& painting, const TDesignNode& node) {
  const QRect room = painting.DrawField(node);
  DrawUpAndDown(painting, room);
  DrawFieldText(painting, node, room.adjusted(0, 0, -FieldButton, 0), NumberText(node));
}

void PaintMemo(TPainting& painting, const TDesignNode& node) {
  QRect room = painting.DrawField(node);
  constexpr int track = 16;
  if (ScrollsAlong(node, true)) {
    DrawScrollTrack(painting, QRect(room.right() - track + 1, room.top(), track, room.height()));
    room.adjust(0, 0, -track, 0);
  }
  if (ScrollsAlong(node, false)) {
    DrawScrollTrack(painting, QRect(room.left(), room.bottom() - track + 1, room.width(), track));
    room.adjust(0, 0, 0, -track);
  }
  const bool wraps = node.Boolean("WordWrap", true);
  painting.DrawText(room.adjusted(2, 1, -1, 0),
                    AlignmentFlag(node) | Qt::AlignTop | (wraps ? Qt::TextWordWrap : 0),
                    MemoText(node));
}

void PaintComboBox(TPainting& painting, const TDesignNode& node) {
  const QRect room = painting.DrawField(node);
  if (node.Is("Style", "csSimple")) return DrawFieldText(painting, node, room, ComboText(node));
  const QRect text = DrawFieldArrow(painting, room, QStyle::PE_IndicatorArrowDown);
  DrawFieldText(painting, node, text, ComboText(node));
}

void PaintColorBox(TPainting& painting, const TDesignNode& node) {
  const QRect room =
      DrawFieldArrow(painting, painting.DrawField(node), QStyle::PE_IndicatorArrowDown);
  const QRect swatch(room.left() + 2, room.top() + 2, std::min(20, room.width() / 2),
                     room.height() - 4);
  std::string_view property = "Selected";
  if (!node.Has(property)) property = "ColorValue";
  painting.Fill(swatch, painting.Colour(node, property, Qt::black));
  painting.DrawOutline(swatch, painting.SystemColour(QPalette::Dark));
  QString name = ToQString(node.Identifier(property));
  if (name.startsWith("cl")) name.remove(0, 2);
  painting.DrawText(room.adjusted(28, 0, 0, 0), Qt::AlignVCenter,
                    name.isEmpty() ? QStringLiteral("Black") : name);
}

void PaintDateEdit(TPainting& painting, const TDesignNode& node) {
  const QRect room =
      DrawFieldArrow(painting, painting.DrawField(node), QStyle::PE_IndicatorArrowDown);
  const bool time = node.Is("Kind", "dtkTime");
  const QString text = time ? QStringLiteral("00:00:00") : DateOf(node).toString(Qt::ISODate);
  DrawFieldText(painting, node, room, text);
}

void PaintCalendar(TPainting& painting, const TDesignNode& node) {
  const QRect room = painting.DrawField(node);
  const QDate date = DateOf(node);
  const int title = painting.LineHeight() + 6;
  const QRect head(room.left(), room.top(), room.width(), title);
  painting.Fill(head, painting.SystemColour(QPalette::Highlight));
  painting.DrawText(head, Qt::AlignCenter, date.toString("yyyy-MM"),
                    painting.SystemColour(QPalette::HighlightedText));
  DrawDays(painting, room.adjusted(4, title + 4, -4, -4), date);
}

}  // namespace wrenfold
