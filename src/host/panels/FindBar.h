// The bar below the editor that finds text in the active unit.
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QWidget>

#include "host/panels/EditWindow.h"

namespace wrenfold {

class TFindBar : public QWidget {
 public:
  explicit TFindBar(TEditWindow& window);

  // Opens the bar with the selected text, if that is of one line.
  void Open();
  // Finds the text of the bar once more.
  void Next() { Find(false); }
  void Previous() { Find(true); }
  QLineEdit& Text() { return *FText; }

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Find(bool backward);

  TEditWindow& FWindow;
  QLineEdit* FText;
  QCheckBox* FCaseSensitive;
  QCheckBox* FWholeWords;
  QLabel* FResult;
};

}  // namespace wrenfold
