// The controls area: rows of labels and controls in columns under a header.
#pragma once

#include <QHeaderView>
#include <QLabel>
#include <QRubberBand>
#include <QScrollArea>
#include <QStandardItemModel>
#include <functional>
#include <string>
#include <vector>

#include "editor/rkAreaInfo.h"
#include "editor/rkControlInfo.h"

namespace wrenfold {

// How the area is laid out. The descriptions of the columns outlive the area.
struct TAreaLook {
  const TLabelAreaInfo* Labels = nullptr;
  const TControlAreaInfo* Controls = nullptr;
  int ColCount = 1;
  int TopInc = 4;              // between rows
  bool EllipsisLabels = true;  // labels that do not fit end in an ellipsis
  bool DynamicResize = false;  // columns follow the drag of their border
};

// Does not own the rows. Widths and heights are logical pixels.
class TControlsArea : public QWidget {
 public:
  explicit TControlsArea(QWidget* parent = nullptr);

  // Makes the panels of the columns anew; rows of the old ones must be gone.
  void SetLook(const TAreaLook& look);
  void SetHeaderTexts(const std::string& parameter, const std::string& value);
  void SetHeaderFont(const QFont& font) { FHeader->setFont(font); }
  // What the labels (controls) of a column stand on; raises ESpcEditorError for a column below 0.
  QWidget* Panel(TAreaKind kind, int column) const;
  int ColCount() const { return static_cast<int>(FColumns.size()); }

  // A label for the row, in its column; the caption's line breaks are kept.
  QLabel* MakeLabel(const TControlInfo& row, const std::string& caption);
  // Places the rows; those that are hidden take no place.
  void Arrange(const TControlList* rows);
  // Shows (or takes away) what is to be told at a row.
  void ShowMessage(TControlInfo& row, TRowMessageKind kind, const std::string& text);
  void ScrollTo(const TControlInfo& row);

  // Of a column; the control area may be wider on the screen where its width is automatic.
  int AreaWidth(TAreaKind kind, int column) const;
  // Resizes the area that belongs to a section of the header. Raises ESpcEditorError for a section
  // that is no column's.
  void SectionResize(int section, int width);

  // Switches redrawing of an area and, for controls, of the columns behind it off and on. For akAll
  // the column is not looked at. Raises ESpcEditorError for a column below 0.
  void BeginUpdate(TAreaKind kind, int column) { SetUpdateState(true, kind, column); }
  void EndUpdate(TAreaKind kind, int column) { SetUpdateState(false, kind, column); }

  // The user asks for the menu of a row; the place is on the screen.
  std::function<void(TControlInfo& row, const QPoint& place)> OnRowMenu;
  // The text of a row's tool tip.
  std::function<std::string(const TControlInfo& row)> OnRowHint;
  // May take the sizing of a control over.
  std::function<bool(TControlInfo& row)> OnResizeControl;

 protected:
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct TColumn {
    QWidget* Labels;
    QWidget* Controls;
    int LabelWidth;
    int ControlWidth;
    int Locks = 0;
  };
  class TPanel;

  void SetUpdateState(bool updating, TAreaKind kind, int column);
  TColumn& ColumnAt(int column);
  int ShownControlWidth(int column) const;
  void PlacePanels(int height);
  int PlaceRow(TControlInfo& row, int top);
  int PlaceParts(TControlInfo& row, int top);
  static void ShowParts(const TControlInfo& row);
  int ControlWidth(const TControlInfo& row) const;
  void PlaceControl(TControlInfo& row, int top);
  int FitLabel(const TControlInfo& row);
  void SectionDragged(int section, int width);
  void DragEnded();
  void SyncHeader();
  TControlInfo* RowOfLabel(const QObject* label) const;

  TAreaLook FLook;
  QStandardItemModel FSections;
  QHeaderView* FHeader;
  QScrollArea* FScroll;
  QWidget* FBody;
  QRubberBand* FTrackLine;
  std::vector<TColumn> FColumns;
  const TControlList* FRows = nullptr;
  int FDraggedSection = -1, FDraggedWidth = 0;
  bool FSyncing = false;
};

}  // namespace wrenfold
