// Paints lists, trees and grids with the items that are stored.
#include <QStyleOptionButton>
#include <climits>

#include "designer/model/StoredItems.h"
#include "designer/paint/Colours.h"
#include "designer/paint/Painters.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Text.h"
#include "project/TextEncoding.h"

namespace wrenfold {

namespace {

QString TextOfBytes(const std::string& bytes, const TDesignNode& node) {
  TTextFormat format;
  return ToQString(DecodeText(bytes, node.Form->CodePage(), format));
}

// The heading of one column.
struct TColumn {
  QString Caption;
  int Width = 50;
  int Alignment = Qt::AlignLeft;
};

QString FirstText(const TCollectionEntry& item, std::initializer_list<std::string_view> properties,
                  int codePage) {
  for (const std::string_view property : properties)
    if (QString text = ToQString(StoredText(item.Value(property), codePage)); !text.isEmpty())
      return text;
  return {};
}

int ColumnAlignment(const TCollectionEntry& item) {
  const std::string_view stored = StoredIdentifier(item.Value("Alignment"));
  if (EqualText(stored, "taRightJustify")) return Qt::AlignRight;
  return EqualText(stored, "taCenter") ? Qt::AlignHCenter : Qt::AlignLeft;
}

std::vector<TColumn> ColumnsOf(const TDesignNode& node, std::string_view property, int usualWidth) {
  std::vector<TColumn> columns;
  for (const TCollectionEntry& item : StoredItems(node.Value(property))) {
    if (!StoredBoolean(item.Value("Visible"), true)) continue;
    columns.push_back(
        {FirstText(item, {"Caption", "Title.Caption", "Text", "FieldName"}, node.Form->CodePage()),
         std::clamp(CutToBound(StoredInteger(item.Value("Width"), usualWidth)), 0, 4000),
         ColumnAlignment(item)});
  }
  return columns;
}

// Headings side by side; answers the height they take.
int DrawHeadings(TPainting& painting, const QRect& room, const std::vector<TColumn>& columns) {
  const int height = painting.LineHeight() + 5;
  const QRect all(room.left(), room.top(), room.width(), height);
  painting.Fill(all, painting.SystemColour(QPalette::Button));
  int left = room.left();
  for (const TColumn& column : columns) {
    if (left > room.right()) break;
    const QRect cell(left, room.top(), column.Width, height);
    painting.DrawText(cell.adjusted(4, 0, -4, 0).intersected(room),
                      column.Alignment | Qt::AlignVCenter | Qt::TextSingleLine, column.Caption,
                      painting.SystemColour(QPalette::ButtonText));
    painting.Canvas.setPen(painting.SystemColour(QPalette::Mid));
    painting.Canvas.drawLine(cell.right(), cell.top() + 2, cell.right(), cell.bottom() - 2);
    left += column.Width;
  }
  painting.Canvas.setPen(painting.SystemColour(QPalette::Mid));
  painting.Canvas.drawLine(all.bottomLeft(), all.bottomRight());
  return height;
}

void DrawChosen(TPainting& painting, const QRect& line) {
  painting.Fill(line, painting.SystemColour(QPalette::Highlight));
}

void DrawMark(TPainting& painting, const QRect& box, bool on) {
  QStyleOptionButton option;
  painting.Prepare(option, box);
  option.state |= on ? QStyle::State_On : QStyle::State_Off;
  painting.Theme.Style->drawPrimitive(QStyle::PE_IndicatorCheckBox, &option, &painting.Canvas);
}

std::vector<std::string> ListLines(const TDesignNode& node) {
  for (const std::string_view property : {"Items.Strings", "Lines.Strings", "Strings.Strings"})
    if (auto lines = node.Strings(property); !lines.empty()) return lines;
  return {};
}

// Lines from the top of the room; `marks` puts a box before each.
void DrawLines(TPainting& painting, const TDesignNode& node, const QRect& room, bool marks) {
  const int least = painting.LineHeight();
  const int height = std::max(least, std::min(node.Bound("ItemHeight", least), 200));
  const std::int64_t chosen = node.Integer("ItemIndex", -1);
  int top = room.top();
  std::int64_t index = 0;
  for (const std::string& text : ListLines(node)) {
    if (top > room.bottom()) break;
    QRect line(room.left(), top, room.width(), height);
    const bool selected = index == chosen;
    if (selected) DrawChosen(painting, line);
    if (marks) {
      DrawMark(painting, QRect(line.left() + 1, line.top() + (height - 13) / 2, 13, 13), false);
      line.adjust(16, 0, 0, 0);
    }
    painting.DrawText(
        line.adjusted(2, 0, 0, 0), Qt::AlignVCenter | Qt::TextSingleLine, ToQString(text),
        selected ? painting.SystemColour(QPalette::HighlightedText) : painting.TextColour());
    top += height;
    ++index;
  }
}

const TDesignNode* PicturesOf(const TDesignNode& node) {
  for (const std::string_view property : {"SmallImages", "Images", "LargeImages"})
    if (const TDesignNode* list = node.Linked(property)) return list;
  return nullptr;
}

std::vector<TListItem> ListItemsOf(const TDesignNode& node) {
  if (const std::string_view bytes = StoredBinary(node.Value("Items.Data")); !bytes.empty())
    return DecodeListItems(bytes, false);
  return DecodeListItems(StoredBinary(node.Value("Items.LazData")), true);
}

// A picture before a text; answers the room that is left for the text.
QRect DrawItemPicture(TPainting& painting, const TDesignNode* list, int index, const QRect& line) {
  const QImage image = painting.ImageAt(list, index);
  if (image.isNull()) return line;
  const QRect place(line.left() + 1, line.top(), 16, line.height());
  painting.DrawImageCentred(place, image);
  return line.adjusted(19, 0, 0, 0);
}

void DrawReportLines(TPainting& painting, const TDesignNode& node, const QRect& room,
                     const std::vector<TColumn>& columns) {
  const int height = std::max(painting.LineHeight() + 2, 17);
  const TDesignNode* list = PicturesOf(node);
  int top = room.top();
  for (const TListItem& item : ListItemsOf(node)) {
    if (top > room.bottom()) break;
    int left = room.left();
    for (std::size_t i = 0; i < item.Texts.size() && left <= room.right(); ++i) {
      const int width = i < columns.size() ? columns[i].Width : columns.empty() ? room.width() : 0;
      QRect cell(left, top, width, height);
      if (i == 0) cell = DrawItemPicture(painting, list, item.Image, cell);
      painting.DrawText(cell.adjusted(3, 0, -2, 0), Qt::AlignVCenter | Qt::TextSingleLine,
                        TextOfBytes(item.Texts[i], node));
      left += width;
    }
    top += height;
  }
}

void DrawLargeItems(TPainting& painting, const TDesignNode& node, const QRect& room) {
  constexpr int width = 75, height = 60, pictureSide = 32;
  const int perRow = std::max(1, room.width() / width);
  const TDesignNode* list = node.Linked("LargeImages");
  int index = 0;
  for (const TListItem& item : ListItemsOf(node)) {
    const QRect cell(room.left() + index % perRow * width, room.top() + index / perRow * height,
                     width, height);
    if (cell.top() > room.bottom()) break;
    painting.DrawImageCentred(QRect(cell.left(), cell.top() + 2, width, pictureSide),
                              painting.ImageAt(list, item.Image));
    painting.DrawText(cell.adjusted(1, pictureSide + 4, -1, 0), Qt::AlignHCenter | Qt::TextWordWrap,
                      item.Texts.empty() ? QString() : TextOfBytes(item.Texts[0], node));
    ++index;
  }
}

// Only the first level is open where a tree does not say otherwise.
bool HasChildren(const std::vector<TListItem>& items, std::size_t index) {
  return index + 1 < items.size() && items[index + 1].Depth > items[index].Depth;
}

void DrawTreeItems(TPainting& painting, const TDesignNode& node, const QRect& room) {
  const auto items = DecodeTreeItems(StoredBinary(node.Value("Items.Data")));
  const TDesignNode* list = PicturesOf(node);
  const int height = std::max(painting.LineHeight() + 2, 17);
  const int indent = std::clamp(node.Bound("Indent", 19), 5, 100);
  const bool open = node.Boolean("AutoExpand", false);
  int top = room.top();
  int closed = INT_MAX;  // the depth below which nothing is shown
  for (std::size_t i = 0; i < items.size() && top <= room.bottom(); ++i) {
    if (items[i].Depth > closed) continue;
    const bool isOpen = open || items[i].Open;
    closed = isOpen ? INT_MAX : items[i].Depth;
    const int left = room.left() + items[i].Depth * indent;
    if (HasChildren(items, i)) {
      QStyleOption option;
      painting.Prepare(option, QRect(left + 4, top + height / 2 - 4, 9, 9));
      option.state |= QStyle::State_Children | (isOpen ? QStyle::State_Open : QStyle::State_None);
      painting.Theme.Style->drawPrimitive(QStyle::PE_IndicatorBranch, &option, &painting.Canvas);
    }
    const QRect line = DrawItemPicture(
        painting, list, items[i].Image,
        QRect(left + indent, top, std::max(0, room.right() - left - indent), height));
    painting.DrawText(line.adjusted(2, 0, 0, 0), Qt::AlignVCenter,
                      TextOfBytes(items[i].Texts[0], node));
    top += height;
  }
}

// Columns and rows of a grid in its room, at most what is seen.
struct TGridLines {
  std::vector<int> Columns;  // right edges
  std::vector<int> Rows;     // bottom edges
};

std::vector<int> Edges(const TDesignNode& node, std::string_view sizes, std::int64_t count,
                       int usual, int start, int end) {
  std::vector<int> edges;
  const auto stored = StoredList(node.Value(sizes));
  int at = start;
  for (std::int64_t i = 0; i < count && at < end; ++i) {
    const int size = static_cast<std::size_t>(i) < stored.size()
                         ? CutToBound(StoredInteger(stored[static_cast<std::size_t>(i)], usual))
                         : usual;
    at += std::max(1, size + 1);
    edges.push_back(at);
  }
  return edges;
}

void DrawGridLines(TPainting& painting, const QRect& room, const TGridLines& lines) {
  if (lines.Columns.empty() || lines.Rows.empty()) return;
  painting.Canvas.setPen(painting.SystemColour(QPalette::Mid));
  const int right = std::min(lines.Columns.back(), room.right());
  const int bottom = std::min(lines.Rows.back(), room.bottom());
  for (const int x : lines.Columns)
    if (x <= room.right()) painting.Canvas.drawLine(x - 1, room.top(), x - 1, bottom);
  for (const int y : lines.Rows)
    if (y <= room.bottom()) painting.Canvas.drawLine(room.left(), y - 1, right, y - 1);
}

int EdgeAfter(const std::vector<int>& edges, std::int64_t count, int start) {
  if (count <= 0 || edges.empty()) return start;
  return edges[std::min(static_cast<std::size_t>(count), edges.size()) - 1];
}

// "Cells" of the free environment: a count, then column, row and text of each cell.
void DrawCells(TPainting& painting, const TDesignNode& node, const QRect& room,
               const TGridLines& lines) {
  const auto stored = StoredList(node.Value("Cells"));
  for (std::size_t i = 1; i + 2 < stored.size(); i += 3) {
    const auto column = static_cast<std::size_t>(StoredInteger(stored[i], -1));
    const auto row = static_cast<std::size_t>(StoredInteger(stored[i + 1], -1));
    if (column >= lines.Columns.size() || row >= lines.Rows.size()) continue;
    const int left = column > 0 ? lines.Columns[column - 1] : room.left();
    const int top = row > 0 ? lines.Rows[row - 1] : room.top();
    painting.DrawText(QRect(left + 3, top, lines.Columns[column] - left - 5, lines.Rows[row] - top),
                      Qt::AlignVCenter | Qt::TextSingleLine,
                      ToQString(StoredText(stored[i + 2], node.Form->CodePage())));
  }
}

// The titles stand behind the fixed columns.
void DrawColumnTitles(TPainting& painting, const TDesignNode& node, const QRect& room,
                      const TGridLines& lines) {
  const auto columns = ColumnsOf(node, "Columns", 64);
  const std::size_t fixed =
      static_cast<std::size_t>(std::clamp<std::int64_t>(node.Integer("FixedCols", 1), 0, 100));
  for (std::size_t i = 0; i < columns.size() && i + fixed < lines.Columns.size(); ++i) {
    const int left = i + fixed > 0 ? lines.Columns[i + fixed - 1] : room.left();
    painting.DrawText(QRect(left + 3, room.top(), lines.Columns[i + fixed] - left - 5,
                            lines.Rows.front() - room.top()),
                      Qt::AlignVCenter | columns[i].Alignment, columns[i].Caption);
  }
}

}  // namespace

void PaintListBox(TPainting& painting, const TDesignNode& node) {
  DrawLines(painting, node, painting.DrawField(node), false);
}

void PaintCheckListBox(TPainting& painting, const TDesignNode& node) {
  DrawLines(painting, node, painting.DrawField(node), true);
}

void PaintListView(TPainting& painting, const TDesignNode& node) {
  QRect room = painting.DrawField(node);
  const std::string_view style = node.Identifier("ViewStyle");
  if (style == "vsIcon" || (style.empty() && node.Has("LargeImages")))
    return DrawLargeItems(painting, node, room);
  const auto columns = ColumnsOf(node, "Columns", 50);
  const bool report = style == "vsReport" || (style.empty() && !columns.empty());
  if (report && node.Boolean("ShowColumnHeaders", true))
    room.adjust(0, DrawHeadings(painting, room, columns), 0, 0);
  DrawReportLines(painting, node, room, report ? columns : std::vector<TColumn>());
}

void PaintTreeView(TPainting& painting, const TDesignNode& node) {
  const QRect room = painting.DrawField(node);
  if (!ListLines(node).empty()) return DrawLines(painting, node, room, false);
  DrawTreeItems(painting, node, room);
}

void PaintGrid(TPainting& painting, const TDesignNode& node) {
  const QRect room = painting.DrawField(node);
  const auto width = std::clamp(node.Bound("DefaultColWidth", 64), 1, 2000);
  const auto height = std::clamp(node.Bound("DefaultRowHeight", 24), 1, 2000);
  const auto titles = ColumnsOf(node, "Columns", 64);
  const std::int64_t fixedColumns = node.Integer("FixedCols", 1);
  const std::int64_t columns = titles.empty()
                                   ? node.Integer("ColCount", 5)
                                   : fixedColumns + static_cast<std::int64_t>(titles.size());
  const TGridLines lines{
      Edges(node, "ColWidths", columns, width, room.left(), room.right()),
      Edges(node, "RowHeights", node.Integer("RowCount", 5), height, room.top(), room.bottom())};
  const QColor fixed = painting.Colour(node, "FixedColor", painting.SystemColour(QPalette::Button));
  const int right = EdgeAfter(lines.Columns, columns, room.left());
  const int bottom = EdgeAfter(lines.Rows, node.Integer("RowCount", 5), room.top());
  painting.Fill(QRect(QPoint(room.left(), room.top()),
                      QPoint(std::min(right, room.right()),
                             EdgeAfter(lines.Rows, node.Integer("FixedRows", 1), room.top()) - 1)),
                fixed);
  painting.Fill(QRect(QPoint(room.left(), room.top()),
                      QPoint(EdgeAfter(lines.Columns, fixedColumns, room.left()) - 1,
                             std::min(bottom, room.bottom()))),
                fixed);
  DrawGridLines(painting, room, lines);
  if (!titles.empty() && !lines.Rows.empty()) DrawColumnTitles(painting, node, room, lines);
  DrawCells(painting, node, room, lines);
}

void PaintDataGrid(TPainting& painting, const TDesignNode& node) {
  const QRect room = painting.DrawField(node);
  constexpr int indicator = 12;
  const auto columns = ColumnsOf(node, "Columns", 64);
  const int height = painting.LineHeight() + 5;
  painting.Fill(QRect(room.left(), room.top(), indicator, room.height()),
                painting.SystemColour(QPalette::Button));
  DrawHeadings(painting, room.adjusted(indicator, 0, 0, 0), columns);
  TGridLines lines;
  for (int y = room.top() + 2 * height; y < room.bottom() && lines.Rows.size() < 3; y += height - 1)
    lines.Rows.push_back(y);
  int right = room.left() + indicator;
  for (const TColumn& column : columns) lines.Columns.push_back(right += column.Width);
  DrawGridLines(painting, room, lines);
}

void PaintHeader(TPainting& painting, const TDesignNode& node) {
  painting.FillGround();
  const QRect area = painting.Area();
  auto columns = ColumnsOf(node, "Sections", 50);
  // Oldest releases store lines of a width and a caption, parted by a zero.
  for (const std::string& line : node.Strings("Sections.Sections")) {
    const std::size_t cut = line.find('\0');
    const int width = QString::fromLatin1(line.c_str()).toInt();
    columns.push_back({ToQString(cut == std::string::npos ? line : line.substr(cut + 1)),
                       std::clamp(width, 10, 4000)});
  }
  DrawHeadings(painting, area, columns);
  painting.DrawOutline(area, painting.SystemColour(QPalette::Mid));
}

}  // namespace wrenfold
