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

// Whether the value can be written in the row itself, is chosen from a list, has a dialog.
bool HasInlineEditor(const TInspectedRow& row);
bool HasChoices(const TInspectedRow& row);
bool HasDialog(const TInspectedRow& row);
// The text that comes after the row's in its list, the first one after the last.
std::string NextChoice(const TInspectedRow& row);
// Asks for the value in the dialog of the row's kind; false when the user gave up. The font's text
// is "Name|Height|Style", of the parts that it is stored in.
bool EditInDialog(QWidget* parent, const TInspectedRow& row, std::string& text);
// The colour that the text of a row stands for; not valid when it is none.
QColor ColorOfText(const std::string& text);

}  // namespace wrenfold
