// Modal forms that ask for a line or an entry of a list.
#include "host/shell/Dialogs.h"

#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <memory>

#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Forms.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

class TDialog : public TForm {
 public:
  TDialog(const std::string& name, const std::string& caption)
      : FColumn(new QVBoxLayout(this)),
        FButtons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel)) {
    SetName(name);
    SetCaption(caption);
    SetBorderStyle(bsDialog);
    KeyPreview = true;
    QPushButton* ok = FButtons->button(QDialogButtonBox::Ok);
    ok->setObjectName("OK");
    ok->setToolTip(tr("Take the choice (Enter)"));
    QPushButton* cancel = FButtons->button(QDialogButtonBox::Cancel);
    cancel->setObjectName("Cancel");
    cancel->setToolTip(tr("Leave everything as it is (Esc)"));
    connect(FButtons, &QDialogButtonBox::accepted, this, [this] { SetModalResult(mrOk); });
    connect(FButtons, &QDialogButtonBox::rejected, this, [this] { SetModalResult(mrCancel); });
  }

  bool Ask(QWidget* first) {
    FColumn->addWidget(FButtons);
    if (!testAttribute(Qt::WA_Resized)) resize(sizeHint());
    CenterOnScreen();
    first->setFocus();
    return ShowModal() == mrOk;
  }

 protected:
  void KeyDown(QKeyEvent& key) override {
    TForm::KeyDown(key);
    const bool enter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    if (!enter && key.key() != Qt::Key_Escape) return;
    SetModalResult(enter ? mrOk : mrCancel);
    key.accept();
  }

  QVBoxLayout* FColumn;

 private:
  QDialogButtonBox* FButtons;
};

class TLineDialog : public TDialog {
 public:
  TLineDialog(int line, int lines) : TDialog("GoToLineForm", "Go to line"), FLine(new QSpinBox) {
    auto* label = new QLabel(tr("&Line (1 to %1):").arg(lines));
    label->setBuddy(FLine);
    FLine->setObjectName("Line");
    FLine->setAccessibleName(tr("Line"));
    FLine->setToolTip(tr("The number of the line to go to"));
    FLine->setRange(1, lines);
    FLine->setValue(line);
    FLine->selectAll();
    FColumn->addWidget(label);
    FColumn->addWidget(FLine);
  }
  QSpinBox* FLine;
};

class TListDialog : public TDialog {
 public:
  TListDialog(const std::string& name, const std::string& caption,
              const std::vector<TChoice>& choices)
      : TDialog(name, caption), FFilter(new QLineEdit), FList(new QTreeWidget) {
    FFilter->setObjectName("Filter");
    FFilter->setAccessibleName(tr("Filter"));
    FFilter->setPlaceholderText(tr("Type to filter"));
    FFilter->setToolTip(tr("Shows the entries that contain this text"));
    FList->setObjectName("List");
    FList->setAccessibleName(ToQString(caption));
    FList->setToolTip(tr("Enter or a double click opens; Ctrl and Shift choose several"));
    FList->setColumnCount(2);
    FList->setHeaderHidden(true);
    FList->setRootIsDecorated(false);
    FList->setUniformRowHeights(true);
    FList->setSelectionMode(QAbstractItemView::ExtendedSelection);
    for (const TChoice& choice : choices)
      new QTreeWidgetItem(FList, {ToQString(choice.Text), ToQString(choice.Detail)});
    FList->resizeColumnToContents(0);
    FColumn->addWidget(FFilter);
    FColumn->addWidget(FList);
    resize(460, 380);
    connect(FFilter, &QLineEdit::textChanged, this, [this] { Filter(); });
    connect(FList, &QTreeWidget::itemDoubleClicked, this, [this] { SetModalResult(mrOk); });
    Filter();
  }

  std::vector<int> Chosen() const {
    std::vector<int> chosen;
    for (int i = 0; i < FList->topLevelItemCount(); ++i)
      if (FList->topLevelItem(i)->isSelected()) chosen.push_back(i);
    return chosen;
  }

  QLineEdit* FFilter;

 protected:
  // Up and down move in the list while the user types.
  void KeyDown(QKeyEvent& key) override {
    TDialog::KeyDown(key);
    const bool move = key.key() == Qt::Key_Up || key.key() == Qt::Key_Down;
    if (!move || !FFilter->hasFocus()) return;
    FList->setFocus();
  }

 private:
  void Filter() {
    QTreeWidgetItem* first = nullptr;
    for (int i = 0; i < FList->topLevelItemCount(); ++i) {
      QTreeWidgetItem* item = FList->topLevelItem(i);
      const bool shown = item->text(0).contains(FFilter->text(), Qt::CaseInsensitive);
      item->setHidden(!shown);
      item->setSelected(false);
      if (shown && first == nullptr) first = item;
    }
    FList->setCurrentItem(first);
  }

  QTreeWidget* FList;
};

class TReplaceDialog : public TDialog {
 public:
  explicit TReplaceDialog(const std::vector<TFoundPlace>& places)
      : TDialog("ReplaceForm", "Replace"), FList(new QTreeWidget) {
    FList->setObjectName("Replacements");
    FList->setAccessibleName(tr("Places to replace"));
    FList->setToolTip(tr("Checked places are replaced (Space switches one)"));
    FList->setColumnCount(3);
    FList->setHeaderLabels({tr("Place"), tr("It reads"), tr("It will read")});
    FList->setRootIsDecorated(false);
    FList->setUniformRowHeights(true);
    QList<QTreeWidgetItem*> items;
    for (const TFoundPlace& found : places) {
      const std::string place = ExtractFileName(found.FileName) + ":" + std::to_string(found.Line);
      auto* item = new QTreeWidgetItem({ToQString(place), ToQString(found.LineText).trimmed(),
                                        ToQString(ReplacedLine(found)).trimmed()});
      item->setCheckState(0, Qt::Checked);
      item->setToolTip(0, ToQString(found.FileName));
      items.append(item);
    }
    FList->addTopLevelItems(items);
    FList->setCurrentItem(FList->topLevelItem(0));
    FColumn->addWidget(FList);
    resize(820, 440);
    FList->setColumnWidth(0, 170);
    FList->setColumnWidth(1, 300);
  }

  QTreeWidget* FList;
};

}  // namespace

std::vector<TFoundPlace> ConfirmReplacements(const std::vector<TFoundPlace>& places) {
  TReplaceDialog dialog(places);
  std::vector<TFoundPlace> chosen;
  if (!dialog.Ask(dialog.FList)) return chosen;
  for (std::size_t i = 0; i < places.size(); ++i)
    if (dialog.FList->topLevelItem(static_cast<int>(i))->checkState(0) == Qt::Checked)
      chosen.push_back(places[i]);
  return chosen;
}

bool AskLine(int& line, int lines) {
  TLineDialog dialog(line, lines);
  if (!dialog.Ask(dialog.FLine)) return false;
  line = dialog.FLine->value();
  return true;
}

std::vector<int> ChooseFromList(const std::string& name, const std::string& caption,
                                const std::vector<TChoice>& choices) {
  TListDialog dialog(name, caption, choices);
  return dialog.Ask(dialog.FFilter) ? dialog.Chosen() : std::vector<int>();
}

}  // namespace wrenfold
