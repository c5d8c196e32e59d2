// Which painter draws which kind of component.
#include <array>

#include "designer/paint/Painters.h"

namespace wrenfold {

namespace {

using L = TLook;

constexpr TPainterRow Table[] = {
    {L::Form, PaintForm},
    {L::Frame, PaintFrame},
    {L::DataModule, PaintDataModule},
    {L::Label, PaintLabel},
    {L::Button, PaintButton},
    {L::BitButton, PaintBitButton},
    {L::SpeedButton, PaintSpeedButton},
    {L::CheckBox, PaintCheckBox},
    {L::RadioButton, PaintRadioButton},
    {L::GroupBox, PaintGroupBox},
    {L::RadioGroup, PaintRadioGroup},
    {L::Panel, PaintPanel},
    {L::Bevel, PaintBevel},
    {L::Shape, PaintShape},
    {L::Image, PaintImage},
    {L::PaintBox, PaintPaintBox},
    {L::Edit, PaintEdit},
    {L::LabeledEdit, PaintLabeledEdit},
    {L::EditButton, PaintEditButton},
    {L::SpinEdit, PaintSpinEdit},
    {L::Memo, PaintMemo},
    {L::ComboBox, PaintComboBox},
    {L::ColorBox, PaintColorBox},
    {L::DateEdit, PaintDateEdit},
    {L::Calendar, PaintCalendar},
    {L::ListBox, PaintListBox},
    {L::CheckListBox, PaintCheckListBox},
    {L::ListView, PaintListView},
    {L::TreeView, PaintTreeView},
    {L::Grid, PaintGrid},
    {L::DataGrid, PaintDataGrid},
    {L::Header, PaintHeader},
    {L::Navigator, PaintNavigator},
    {L::PageControl, PaintPageControl},
    {L::TabControl, PaintTabControl},
    {L::TabSet, PaintTabSet},
    {L::Notebook, PaintNotebook},
    {L::Page, PaintPage},
    {L::StatusBar, PaintStatusBar},
    {L::ToolBar, PaintToolBar},
    {L::ToolButton, PaintToolButton},
    {L::SpeedBar, PaintSpeedBar},
    {L::ButtonPanel, PaintButtonPanel},
    {L::UpDown, PaintUpDown},
    {L::ScrollBar, PaintScrollBar},
    {L::TrackBar, PaintTrackBar},
    {L::ProgressBar, PaintProgressBar},
    {L::ScrollBox, PaintScrollBox},
    {L::Splitter, PaintSplitter},
    {L::Band, PaintBand},
    {L::Icon, PaintIcon},
    {L::Hidden, PaintNothing},
    {L::Box, PaintBox},
};

constexpr bool InOrder() {
  std::size_t index = 0;
  for (const TPainterRow& row : Table)
    if (static_cast<std::size_t>(row.Look) != index++) return false;
  return index == LookCount;
}
static_assert(InOrder(), "each look has one row, in the order of the looks");

}  // namespace

const TPainterRow& PainterOf(TLook look) {
  return Table[static_cast<std::size_t>(look)];
}

}  // namespace wrenfold
