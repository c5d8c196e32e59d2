#include "experts/rkModuleListView.h"

#include <QPainter>
#include <QPen>

#include "controls/rkIcons.h"
#include "platform/widgets/Control.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr int PictureSize = 16;
constexpr int Padding = 3;

struct TPen {
  TPenStyle Style;
  Qt::PenStyle Shown;
};
constexpr TPen Pens[] = {
    {psSolid, Qt::SolidLine},
    {psDash, Qt::DashLine},
    {psDot, Qt::DotLine},
    {psDashDot, Qt::DashDotLine},
    {psDashDotDot, Qt::DashDotDotLine},
    {psClear, Qt::NoPen},
    {psInsideFrame, Qt::SolidLine},
};

}  // namespace

QVariant TModuleListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= FModules.Count()) return {};
  const TListedModule& module = FModules[index.row()];
  switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
      return ToQString(module.Name);
    case Qt::ToolTipRole:
      return ToQString(module.FileName);
    default:
      return {};
  }
}

const TFont& TModuleDelegate::FontOf(const TListedModule& module) const {
  if (FMode == svmForm) return *FSettings.FormFont;
  return module.FormName.empty() ? *FSettings.UnitFont : *FSettings.FormUnitFont;
}

void TModuleDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
  if (index.row() >= FModules.Count()) return;
  const TListedModule& module = FModules[index.row()];
  QStyleOptionViewItem item(option);
  if (FSettings.ExtendedDrawing) {
    const TFont& font = FontOf(module);
    item.font = ToQFont(font);
    if (font.Color() != clWindowText) item.palette.setColor(QPalette::Text, ToQColor(font.Color()));
    const bool hasForm = FMode == svmForm || !module.FormName.empty();
    item.icon = SuiteIcon(hasForm ? siViewForms : siViewUnits);
    item.features |= QStyleOptionViewItem::HasDecoration;
    item.decorationSize = QSize(PictureSize, PictureSize);
  }
  item.index = index;
  item.text = ToQString(module.Name);
  item.features |= QStyleOptionViewItem::HasDisplay;
  QStyle* style = item.widget->style();
  style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);
  if (index.row() > 0 && index.row() == FModules.Separator() && FSettings.SeparatorAllowed)
    DrawSeparator(*painter, item.rect);
}

void TModuleDelegate::DrawSeparator(QPainter& painter, const QRect& item) const {
  QPen pen(ToQColor(FSettings.SeparatorColor));
  for (const TPen& known : Pens)
    if (known.Style == FSettings.SeparatorStyle) pen.setStyle(known.Shown);
  painter.save();
  painter.setPen(pen);
  painter.drawLine(item.topLeft(), item.topRight());
  painter.restore();
}

QSize TModuleDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
  int height = option.fontMetrics.height();
  if (FSettings.ExtendedDrawing) {
    height = std::max(height, PictureSize);
    for (const TFont* font :
         {FSettings.FormFont.get(), FSettings.FormUnitFont.get(), FSettings.UnitFont.get()})
      height = std::max(height, QFontMetrics(ToQFont(*font)).height());
  }
  return {0, height + Padding};
}

}  // namespace wrenfold
