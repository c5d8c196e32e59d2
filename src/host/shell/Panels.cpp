// Has the table of panels; a new panel is a row.
#include "host/shell/Panels.h"

#include <QApplication>
#include <QTabBar>

#include "host/debug/BreakpointPanel.h"
#include "host/debug/CpuWindow.h"
#include "host/debug/ProgramPanel.h"
#include "host/debug/StackPanel.h"
#include "host/debug/WatchPanel.h"
#include "host/panels/MessagePanel.h"
#include "host/panels/ProjectPanel.h"
#include "host/panels/PropertyInspector.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

template <class Panel>
TForm* Make(TForm& owner) {
  return NewForm<Panel>(&owner);
}

struct TPanel {
  TForm* (*Make)(TForm& owner);
  Qt::DockWidgetArea Area;
  int Width, Height;  // at first, in device-independent pixels
  bool Open;          // at first
  bool Tab = false;   // shares the place of the one before it
};
// In the order in which those of one side stand below each other.
constexpr TPanel Table[] = {
    {Make<TProjectPanel>, Qt::LeftDockWidgetArea, 250, 210, true},
    {Make<TPropertyInspector>, Qt::LeftDockWidgetArea, 250, 390, true},
    {Make<TMessagePanel>, Qt::BottomDockWidgetArea, 600, 110, true},
    {Make<TProgramPanel>, Qt::BottomDockWidgetArea, 400, 110, false},
    {Make<TStackPanel>, Qt::BottomDockWidgetArea, 400, 110, false, true},
    {Make<TBreakpointPanel>, Qt::BottomDockWidgetArea, 400, 110, false, true},
    {Make<TWatchPanel>, Qt::BottomDockWidgetArea, 400, 110, false, true},
    {Make<TCpuWindow>, Qt::RightDockWidgetArea, 760, 500, false},
};

QDockWidget* Dock(TForm& panel, QMainWindow& window) {
  auto* dock = new QDockWidget(ToQString(panel.Caption()), &window);
  dock->setObjectName(ToQString(panel.Name() + "Dock"));
  dock->setWidget(&panel);
  panel.show();
  return dock;
}

}  // namespace

TPanels::TPanels(TForm& owner, QMainWindow& window) {
  window.setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
  QList<QDockWidget*> docks;
  QList<int> widths, heights;
  for (const TPanel& row : Table) {
    TForm* panel = FForms.emplace_back(row.Make(owner));
    docks.append(Dock(*panel, window));
    window.addDockWidget(row.Area, docks.back());
    if (row.Tab) window.tabifyDockWidget(docks[docks.size() - 2], docks.back());
    docks.back()->setVisible(row.Open);
    widths.append(row.Width);
    heights.append(row.Height);
  }
  // The toolkit makes the bars of panels that share a place itself.
  for (auto* tabs : window.findChildren<QTabBar*>(Qt::FindDirectChildrenOnly)) {
    tabs->setObjectName("PanelTabs");
    tabs->setAccessibleName(QObject::tr("Panels"));
    tabs->setToolTip(QObject::tr("Panels that share this place"));
    tabs->setElideMode(Qt::ElideNone);
  }
  window.resizeDocks(docks, widths, Qt::Horizontal);
  window.resizeDocks(docks, heights, Qt::Vertical);
}

QDockWidget& TPanels::DockOf(TForm& panel) {
  return dynamic_cast<QDockWidget&>(*panel.parentWidget());
}

bool TPanels::Switch(TForm& panel) {
  QDockWidget& dock = DockOf(panel);
  if (dock.isVisible() && panel.isAncestorOf(QApplication::focusWidget())) {
    dock.hide();
    return false;
  }
  dock.show();
  dock.raise();
  panel.Show();
  if (panel.focusProxy() != nullptr) panel.focusProxy()->setFocus();
  return true;
}

}  // namespace wrenfold
