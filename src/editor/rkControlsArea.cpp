#include "editor/rkControlsArea.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>
#include <QVBoxLayout>
#include <algorithm>

#include "locale/rkLocale.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

// What a label needs beside its text, and where the mark of a changed value stands.
constexpr int LabelExtra = 12;
constexpr int MarkSide = 6;
constexpr int MinAreaWidth = 40;
constexpr const char* CaptionProperty = "caption";

QColor MessageColour(const QPalette& palette, TRowMessageKind kind) {
  const bool dark = palette.color(QPalette::Window).lightness() < 128;
  if (kind == rmRefusal) return dark ? QColor(0xff, 0x8f, 0x85) : QColor(0xb0, 0x22, 0x16);
  return dark ? QColor(0xf0, 0xc0, 0x60) : QColor(0x8a, 0x5a, 0x00);
}

Qt::Alignment ToQt(TAreaAlignment alignment) {
  constexpr Qt::Alignment alignments[] = {Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter};
  return alignments[alignment];
}

}  // namespace

// The labels of a column; beside those of changed values it draws a mark.
class TControlsArea::TPanel : public QWidget {
 public:
  TPanel(TControlsArea& area, QWidget* parent) : QWidget(parent), FArea(area) {}

 protected:
  void paintEvent(QPaintEvent*) override {
    if (FArea.FRows == nullptr) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(QPalette::Link));
    for (const auto& row : *FArea.FRows) {
      if (!row->Differs || row->Hidden || row->Label == nullptr ||
          row->Label->parentWidget() != this)
        continue;
      const QRect label = row->Label->geometry();
      const int middle = label.top() + row->Label->fontMetrics().height() / 2;
      const int top = row->CentredLabel ? label.center().y() : middle;
      painter.drawEllipse(QRect(2, top - MarkSide / 2, MarkSide, MarkSide));
    }
  }

 private:
  TControlsArea& FArea;
};

TControlsArea::TControlsArea(QWidget* parent)
    : QWidget(parent),
      FHeader(new QHeaderView(Qt::Horizontal)),
      FScroll(new QScrollArea),
      FBody(new QWidget),
      FTrackLine(new QRubberBand(QRubberBand::Line, FScroll)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(FHeader);
  layout->addWidget(FScroll, 1);
  FHeader->setModel(&FSections);
  FHeader->setSectionsClickable(false);
  FHeader->setSectionsMovable(false);
  FHeader->setMinimumSectionSize(MinAreaWidth);
  FHeader->setFocusPolicy(Qt::NoFocus);
  FScroll->setWidget(FBody);
  FScroll->setFrameShape(QFrame::NoFrame);
  FScroll->setFocusPolicy(Qt::NoFocus);
  FTrackLine->hide();
  FHeader->viewport()->installEventFilter(this);
  FScroll->viewport()->installEventFilter(this);
  connect(FHeader, &QHeaderView::sectionResized, this, [this](int section, int, int width) {
    Guarded(nullptr, [&] { SectionDragged(section, width); });
  });
  connect(FScroll->horizontalScrollBar(), &QScrollBar::valueChanged, FHeader,
          &QHeaderView::setOffset);
}

void TControlsArea::SetLook(const TAreaLook& look) {
  FLook = look;
  FRows = nullptr;
  for (const TColumn& column : FColumns) {
    delete column.Labels;
    delete column.Controls;
  }
  FColumns.clear();
  FSyncing = true;
  FSections.setColumnCount(2 * look.ColCount);
  for (int i = 0; i < look.ColCount; ++i) {
    FColumns.push_back({new TPanel(*this, FBody), new QWidget(FBody), look.Labels->DefAreaWidth,
                        look.Controls->DefAreaWidth});
    FColumns.back().Labels->show();
    FColumns.back().Controls->show();
    for (const int part : {0, 1}) {
      const auto alignment = part == 0 ? look.Labels->Alignment : look.Controls->Alignment;
      FSections.setHeaderData(2 * i + part, Qt::Horizontal,
                              QVariant(ToQt(alignment) | Qt::AlignVCenter), Qt::TextAlignmentRole);
    }
  }
  FSyncing = false;
  FHeader->setFixedHeight(FHeader->sizeHint().height());
  SyncHeader();
}

void TControlsArea::SetHeaderTexts(const std::string& parameter, const std::string& value) {
  for (int section = 0; section < FSections.columnCount(); ++section)
    FSections.setHeaderData(section, Qt::Horizontal,
                            ToQString(section % 2 == 0 ? parameter : value));
}

TControlsArea::TColumn& TControlsArea::ColumnAt(int column) {
  if (column < 0) throw ESpcEditorError(LocaleStr(sSectionNumberError));
  return FColumns.at(static_cast<std::size_t>(column));
}

QWidget* TControlsArea::Panel(TAreaKind kind, int column) const {
  const TColumn& place = const_cast<TControlsArea*>(this)->ColumnAt(column);
  return kind == akLabel ? place.Labels : place.Controls;
}

int TControlsArea::AreaWidth(TAreaKind kind, int column) const {
  const TColumn& place = const_cast<TControlsArea*>(this)->ColumnAt(column);
  return kind == akLabel ? place.LabelWidth : place.ControlWidth;
}

// An automatic width takes what the window leaves; it is shared by the columns.
int TControlsArea::ShownControlWidth(int column) const {
  const int own = FColumns[static_cast<std::size_t>(column)].ControlWidth;
  if (!FLook.Controls->AutoWidth) return own;
  int left = FScroll->viewport()->width();
  for (const TColumn& each : FColumns) left -= each.LabelWidth + each.ControlWidth;
  return left > 0 ? own + left / ColCount() : own;
}

QLabel* TControlsArea::MakeLabel(const TControlInfo& row, const std::string& caption) {
  auto* label = new QLabel(Panel(akLabel, row.Column));
  label->setTextFormat(Qt::PlainText);
  label->setProperty(CaptionProperty, ToQString(caption));
  label->setText(ToQString(caption));
  if (FLook.Labels->HasOwnFont()) label->setFont(ToQFont(*FLook.Labels->Font()));
  label->setAlignment(ToQt(FLook.Labels->Alignment) | Qt::AlignVCenter);
  label->installEventFilter(this);
  return label;
}

// Answers the height that the label needs.
int TControlsArea::FitLabel(const TControlInfo& row) {
  QLabel& label = *row.Label;
  const int width = FColumns[static_cast<std::size_t>(row.Column)].LabelWidth - LabelExtra -
                    FLook.Labels->LeftMargin - FLook.Labels->RightMargin + LabelExtra / 2;
  QStringList lines = label.property(CaptionProperty).toString().split('\n');
  if (FLook.EllipsisLabels)
    for (QString& line : lines)
      line = label.fontMetrics().elidedText(line, Qt::ElideRight, std::max(width, 0));
  const QString text = lines.join('\n');
  if (text != label.text()) label.setText(text);
  return label.fontMetrics().lineSpacing() * static_cast<int>(lines.size());
}

int TControlsArea::ControlWidth(const TControlInfo& row) const {
  const int area =
      ShownControlWidth(row.Column) - FLook.Controls->LeftMargin - FLook.Controls->RightMargin;
  const int wanted = row.WidthIsPercent ? area * row.Width / 100 : row.Width;
  const int least = row.Row != nullptr ? row.Row->MinimumWidth() : 0;
  return std::max({wanted, least, 0});
}

void TControlsArea::PlaceControl(TControlInfo& row, int top) {
  QWidget* widget = row.EControl->Widget();
  widget->move(FLook.Controls->LeftMargin, top);
  if (OnResizeControl && OnResizeControl(row)) return;
  // The row gave the control the height of its kind, layout parameters may have given it another.
  widget->resize(ControlWidth(row), row.EControl->Height());
}

// What is shown before it has a size is measured for nothing: it is placed first.
void TControlsArea::ShowParts(const TControlInfo& row) {
  const bool shown = !row.Hidden;
  for (QWidget* widget : {static_cast<QWidget*>(row.Label), static_cast<QWidget*>(row.Message),
                          row.EControl != nullptr ? row.EControl->Widget() : nullptr})
    if (widget != nullptr && widget->isHidden() == shown) widget->setVisible(shown);
}

// Answers where the next row begins.
int TControlsArea::PlaceRow(TControlInfo& row, int top) {
  if (!row.Hidden) top = PlaceParts(row, top);
  ShowParts(row);
  return top;
}

int TControlsArea::PlaceParts(TControlInfo& row, int top) {
  int height = 0;
  if (row.EControl != nullptr) {
    PlaceControl(row, top);
    height = row.EControl->Widget()->height();
  }
  const int labelHeight = row.Label != nullptr ? FitLabel(row) : 0;
  const int rowHeight = std::max(height, labelHeight);
  if (row.EControl != nullptr && height < rowHeight)
    row.EControl->Widget()->move(FLook.Controls->LeftMargin, top + (rowHeight - height) / 2);
  if (row.Label != nullptr) {
    const int line = row.Label->fontMetrics().height();
    const int labelTop = row.CentredLabel ? top + (rowHeight - labelHeight) / 2 : top + line / 4;
    const int left = FLook.Labels->LeftMargin + LabelExtra / 2;
    row.Label->setGeometry(left, labelTop,
                           FColumns[static_cast<std::size_t>(row.Column)].LabelWidth - left -
                               FLook.Labels->RightMargin,
                           labelHeight);
  }
  top += rowHeight;
  if (row.Message == nullptr) return top;
  const int width =
      ShownControlWidth(row.Column) - FLook.Controls->LeftMargin - FLook.Controls->RightMargin;
  const int messageHeight = row.Message->heightForWidth(width);
  row.Message->setGeometry(FLook.Controls->LeftMargin, top + 1, width, messageHeight);
  return top + 1 + messageHeight;
}

void TControlsArea::Arrange(const TControlList* rows) {
  FRows = rows;
  std::vector<int> tops(FColumns.size(), FLook.TopInc);
  if (rows != nullptr)
    for (const auto& row : *rows) {
      int& top = tops[static_cast<std::size_t>(row->Column)];
      const int next = PlaceRow(*row, top);
      if (next != top) top = next + FLook.TopInc;
    }
  PlacePanels(*std::max_element(tops.begin(), tops.end()));
  SyncHeader();
}

void TControlsArea::PlacePanels(int height) {
  height = std::max(height, FScroll->viewport()->height());
  int left = 0;
  for (int i = 0; i < ColCount(); ++i) {
    const TColumn& column = FColumns[static_cast<std::size_t>(i)];
    column.Labels->setGeometry(left, 0, column.LabelWidth, height);
    left += column.LabelWidth;
    const int width = ShownControlWidth(i);
    column.Controls->setGeometry(left, 0, width, height);
    left += width;
  }
  FBody->resize(std::max(left, FScroll->viewport()->width()), height);
  for (const TColumn& column : FColumns) column.Labels->update();
}

void TControlsArea::SyncHeader() {
  FSyncing = true;
  for (int i = 0; i < ColCount(); ++i) {
    FHeader->resizeSection(2 * i, FColumns[static_cast<std::size_t>(i)].LabelWidth);
    FHeader->resizeSection(2 * i + 1, ShownControlWidth(i));
  }
  FSyncing = false;
}

void TControlsArea::ShowMessage(TControlInfo& row, TRowMessageKind kind, const std::string& text) {
  if (kind == rmNone || text.empty()) {
    delete row.Message;
  } else {
    if (row.Message == nullptr) {
      row.Message = new QLabel(Panel(akControl, row.Column));
      row.Message->setTextFormat(Qt::PlainText);
      row.Message->setWordWrap(true);
    }
    QPalette palette = this->palette();
    palette.setColor(QPalette::WindowText, MessageColour(palette, kind));
    row.Message->setPalette(palette);
    row.Message->setText(ToQString(text));
    row.Message->show();
  }
  if (row.EControl != nullptr)
    row.EControl->Widget()->setAccessibleDescription(ToQString(kind == rmNone ? "" : text));
  Arrange(FRows);
}

void TControlsArea::ScrollTo(const TControlInfo& row) {
  if (row.EControl != nullptr) FScroll->ensureWidgetVisible(row.EControl->Widget());
}

void TControlsArea::SectionResize(int section, int width) {
  const int column = section / 2;
  if (section < 0 || column >= ColCount()) throw ESpcEditorError(LocaleStr(sSectionTransformError));
  TColumn& place = FColumns[static_cast<std::size_t>(column)];
  (section % 2 == 0 ? place.LabelWidth : place.ControlWidth) = std::max(width, MinAreaWidth);
  Arrange(FRows);
}

// While the border is dragged a line shows where it would come to stand.
void TControlsArea::SectionDragged(int section, int width) {
  if (FSyncing) return;
  FDraggedSection = section;
  FDraggedWidth = width;
  if (FLook.DynamicResize) return SectionResize(section, width);
  const int place = FHeader->sectionViewportPosition(section) + width;
  FTrackLine->setGeometry(place, 0, 1, FScroll->height());
  FTrackLine->show();
}

void TControlsArea::DragEnded() {
  FTrackLine->hide();
  const int section = std::exchange(FDraggedSection, -1);
  if (section >= 0) SectionResize(section, FDraggedWidth);
}

void TControlsArea::SetUpdateState(bool updating, TAreaKind kind, int column) {
  if (kind != akAll) ColumnAt(column);
  const int first = kind == akAll ? 0 : column;
  const int last = kind == akLabel ? column + 1 : ColCount();
  for (int i = first; i < last; ++i) {
    TColumn& place = FColumns[static_cast<std::size_t>(i)];
    place.Locks += updating ? 1 : -1;
    const bool draws = place.Locks <= 0;
    if (kind != akControl || i > column) place.Labels->setUpdatesEnabled(draws);
    if (kind != akLabel) place.Controls->setUpdatesEnabled(draws);
  }
}

TControlInfo* TControlsArea::RowOfLabel(const QObject* label) const {
  if (FRows == nullptr) return nullptr;
  for (const auto& row : *FRows)
    if (row->Label == label) return row.get();
  return nullptr;
}

void TControlsArea::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange && !FColumns.empty()) Arrange(FRows);
}

bool TControlsArea::eventFilter(QObject* watched, QEvent* event) {
  if (watched == FHeader->viewport() && event->type() == QEvent::MouseButtonRelease) DragEnded();
  // A scroll bar that appears takes room from the rows.
  if (watched == FScroll->viewport() && event->type() == QEvent::Resize && !FColumns.empty())
    Arrange(FRows);
  constexpr QEvent::Type ofLabels[] = {QEvent::ToolTip, QEvent::ContextMenu,
                                       QEvent::MouseButtonPress};
  if (std::find(std::begin(ofLabels), std::end(ofLabels), event->type()) == std::end(ofLabels))
    return QWidget::eventFilter(watched, event);
  TControlInfo* row = RowOfLabel(watched);
  if (row == nullptr) return QWidget::eventFilter(watched, event);
  switch (event->type()) {
    case QEvent::ToolTip:
      if (OnRowHint)
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), ToQString(OnRowHint(*row)),
                           row->Label);
      return true;
    case QEvent::ContextMenu:
      if (OnRowMenu) OnRowMenu(*row, static_cast<QContextMenuEvent*>(event)->globalPos());
      return true;
    case QEvent::MouseButtonPress:
      if (row->EControl != nullptr) row->EControl->Widget()->setFocus(Qt::MouseFocusReason);
      return false;
    default:
      return QWidget::eventFilter(watched, event);
  }
}

}  // namespace wrenfold
