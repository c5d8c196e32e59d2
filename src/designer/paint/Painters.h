// The painters of component kinds, one row of one table each.
#pragma once

#include "designer/paint/Painting.h"

namespace wrenfold {

// A painter draws the component without its children.
struct TPainterRow {
  TLook Look;
  void (*Paint)(TPainting& painting, const TDesignNode& node);
};

const TPainterRow& PainterOf(TLook look);

// Windows and what has no place of its own.
void PaintForm(TPainting& painting, const TDesignNode& node);
void PaintFrame(TPainting& painting, const TDesignNode& node);
void PaintDataModule(TPainting& painting, const TDesignNode& node);
void PaintIcon(TPainting& painting, const TDesignNode& node);
void PaintNothing(TPainting& painting, const TDesignNode& node);
void PaintBox(TPainting& painting, const TDesignNode& node);
void PaintBand(TPainting& painting, const TDesignNode& node);

// Texts, decoration, pictures.
void PaintLabel(TPainting& painting, const TDesignNode& node);
void PaintBevel(TPainting& painting, const TDesignNode& node);
void PaintShape(TPainting& painting, const TDesignNode& node);
void PaintImage(TPainting& painting, const TDesignNode& node);
void PaintPaintBox(TPainting& painting, const TDesignNode& node);
void PaintSplitter(TPainting& painting, const TDesignNode& node);

// Buttons.
void PaintButton(TPainting& painting, const TDesignNode& node);
void PaintBitButton(TPainting& painting, const TDesignNode& node);
void PaintSpeedButton(TPainting& painting, const TDesignNode& node);
void PaintCheckBox(TPainting& painting, const TDesignNode& node);
void PaintRadioButton(TPainting& painting, const TDesignNode& node);
void PaintButtonPanel(TPainting& painting, const TDesignNode& node);
void PaintNavigator(TPainting& painting, const TDesignNode& node);
void PaintToolButton(TPainting& painting, const TDesignNode& node);

// Boxes with others inside.
void PaintGroupBox(TPainting& painting, const TDesignNode& node);
void PaintRadioGroup(TPainting& painting, const TDesignNode& node);
void PaintPanel(TPainting& painting, const TDesignNode& node);
void PaintScrollBox(TPainting& painting, const TDesignNode& node);
void PaintToolBar(TPainting& painting, const TDesignNode& node);
void PaintSpeedBar(TPainting& painting, const TDesignNode& node);
void PaintStatusBar(TPainting& painting, const TDesignNode& node);

// Edits.
void PaintEdit(TPainting& painting, const TDesignNode& node);
void PaintLabeledEdit(TPainting& painting, const TDesignNode& node);
void PaintEditButton(TPainting& painting, const TDesignNode& node);
void PaintSpinEdit(TPainting& painting, const TDesignNode& node);
void PaintMemo(TPainting& painting, const TDesignNode& node);
void PaintComboBox(TPainting& painting, const TDesignNode& node);
void PaintColorBox(TPainting& painting, const TDesignNode& node);
void PaintDateEdit(TPainting& painting, const TDesignNode& node);
void PaintCalendar(TPainting& painting, const TDesignNode& node);

// Lists and grids.
void PaintListBox(TPainting& painting, const TDesignNode& node);
void PaintCheckListBox(TPainting& painting, const TDesignNode& node);
void PaintListView(TPainting& painting, const TDesignNode& node);
void PaintTreeView(TPainting& painting, const TDesignNode& node);
void PaintGrid(TPainting& painting, const TDesignNode& node);
void PaintDataGrid(TPainting& painting, const TDesignNode& node);
void PaintHeader(TPainting& painting, const TDesignNode& node);

// Pages.
void PaintPageControl(TPainting& painting, const TDesignNode& node);
void PaintTabControl(TPainting& painting, const TDesignNode& node);
void PaintTabSet(TPainting& painting, const TDesignNode& node);
void PaintNotebook(TPainting& painting, const TDesignNode& node);
void PaintPage(TPainting& painting, const TDesignNode& node);
// The page whose tab is at the place, relative to the page control; null when there is none.
TDesignNode* PageAtTab(TFontBook& fonts, const TDesignNode& pages, TPlace place);

// Values.
void PaintUpDown(TPainting& painting, const TDesignNode& node);
void PaintScrollBar(TPainting& painting, const TDesignNode& node);
void PaintTrackBar(TPainting& painting, const TDesignNode& node);
void PaintProgressBar(TPainting& painting, const TDesignNode& node);

}  // namespace wrenfold
