// The bar below the editor that finds and replaces text in the active unit.
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <QToolButton>
#include <QWidget>
#include <functional>
#include <vector>

#include "host/documents/Replacement.h"
#include "host/panels/EditWindow.h"

namespace wrenfold {

class TFindBar : public QWidget {
 public:
  explicit TFindBar(TEditWindow& window);

  // Opens the bar with the selected text, if that is of one line; with the field for replacing.
  void Open(bool replace = false);
  // Finds the text of the bar once more.
  void Next() { Find(false); }
  void Previous() { Find(true); }
  QLineEdit& Text() { return *FText; }
  QLineEdit& With() { return *FWith; }
  TSearchOptions Options() const;

  // Shows what would be replaced and lets the user choose; answers the places that remain.
  std::function<std::vector<TFoundPlace>(const std::vector<TFoundPlace>&)> Confirm;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  QCheckBox* AddOption(const char* name, const QString& caption, const QString& hint);
  QToolButton* AddButton(const char* name, const QString& caption, const QString& hint,
                         void (TFindBar::*pressed)());
  void LayOut();
  void Search();
  void Say(const QString& text, bool trouble = false);
  void Find(bool backward);
  void ReplaceOne();
  void ReplaceAll();
  void Close();

  TEditWindow& FWindow;
  QLineEdit* FText;
  QLineEdit* FWith;
  QCheckBox* FCaseSensitive;
  QCheckBox* FWholeWords;
  QCheckBox* FRegularExpression;
  QLabel* FResult;
  QWidget* FReplaceRow;
  QTimer FLater;
  std::vector<TTextMatch> FHits;
};

}  // namespace wrenfold
