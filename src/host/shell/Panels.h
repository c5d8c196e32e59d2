// The docked panels of the main window: one table makes and places them.
#pragma once

#include <QDockWidget>
#include <QMainWindow>
#include <vector>

#include "platform/core/system/Exceptions.h"
#include "platform/widgets/Forms.h"

namespace wrenfold {

class TPanels {
 public:
  // Makes all panels of the table. The panels belong to the owner, their docks to the window.
  TPanels(TForm& owner, QMainWindow& window);

  // The panel of that class; the table has one.
  template <class Panel>
  Panel& Get() const {
    for (TForm* form : FForms)
      if (auto* panel = dynamic_cast<Panel*>(form)) return *panel;
    throw Exception("The workbench has no panel of that class");
  }

  // Shows the panel and gives it the focus. One that the user is in is closed; the answer is then
  // false.
  bool Switch(TForm& panel);
  // Shows the panel as it was left, without taking the focus.
  static void Open(TForm& panel) {
    DockOf(panel).show();
    DockOf(panel).raise();
  }
  static QDockWidget& DockOf(TForm& panel);

 private:
  std::vector<TForm*> FForms;
};

}  // namespace wrenfold
