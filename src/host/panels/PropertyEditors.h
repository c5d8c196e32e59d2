// The editors of the object inspector's values: one row of a table for each kind of property.
#pragma once

#include <QStyledItemDelegate>
#include <functional>
#include <string>
#include <vector>

#include "designer/model/PropertyRows.h"

namespace wrenfold {

// Makes the editors of the value column. The model's row of an index comes from whoever shows it.
class TValueDelegate : public QStyledItemDelegate {
 public:
  using TRowOf = std::function<const TInspectedRow*(const QModelIndex&)>;
  // What a row that leads to other things of the form offers: components, methods.
  using TChoicesOf = std::function<std::vector<std::string>(const TInspectedRow&)>;
  TValueDelegate(QObject* parent, TRowOf rowOf, TChoicesOf choicesOf)
      : QStyledItemDelegate(parent), FRowOf(std::move(rowOf)), FChoicesOf(std::move(choicesOf)) {}

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model,
                    const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
  TRowOf FRowOf;
  TChoicesOf FChoicesOf;
};

// Whether the value can be written in the row itself, is chosen from a list.
bool HasInlineEditor(const TInspectedRow& row);
bool HasChoices(const TInspectedRow& row);
// The text that comes after the row's in its list, the first one after the last.
std::string NextChoice(const TInspectedRow& row);
// The row's text as it is shown and typed: keys have names there. Raises EConvertError for what
// names no keys.
std::string ShownText(const TInspectedRow& row);
std::string TypedText(const TInspectedRow& row, const std::string& text);
// A small picture of the colour; an empty one of none.
QPixmap SwatchOf(const QColor& color);
// The colour that the text of a row stands for; not valid when it is none.
QColor ColorOfText(const std::string& text);

}  // namespace wrenfold
