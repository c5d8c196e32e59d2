// Probes of drawn forms: colours at points, and where something is drawn at all.
#include <gmock/gmock.h>

#include <QStyleFactory>

#include "designer/FormText.h"
#include "designer/paint/Colours.h"
#include "designer/paint/FormPicture.h"

namespace wrenfold {
namespace {

class TDrawn {
 public:
  explicit TDrawn(const std::string& components, bool dark = false)
      : Form(
            "object Form1: TForm1\n  Caption = 'x'\n  BorderStyle = bsNone\n"
            "  ClientWidth = 200\n  ClientHeight = 100\n  Color = clFuchsia\n" +
            components + "end\n"),
        Style(QStyleFactory::create("Fusion")) {
    TFontBook fonts;
    Image =
        DrawFormPicture(*Form.Form, {dark ? DarkPalette() : LightPalette(), Style.get()}, fonts);
  }
  QColor At(int x, int y) const { return Image.pixelColor(x, y); }
  // How many pixels of the area have another colour than this.
  int Others(const QRect& area, const QColor& colour) const {
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
      for (int x = area.left(); x <= area.right(); ++x) count += At(x, y) != colour;
    return count;
  }

  TTestForm Form;
  std::unique_ptr<QStyle> Style;
  QImage Image;
};

const QColor Ground(255, 0, 255);

struct TProbeRow {
  const char* Name;
  const char* Component;
  QPoint Place;
  QColor Expected;
};

TEST(Paint, ColoursStandWhereTheyAreStored) {
  const char* at = "    Left = 20\n    Top = 20\n    Width = 40\n    Height = 40\n";
  const TProbeRow rows[] = {
      {"form", "TTimer", {150, 50}, Ground},
      {"edit", "TEdit", {40, 40}, Qt::white},
      {"coloured edit", "TEdit\n Color = clAqua", {40, 40}, QColor(0, 255, 255)},
      {"shape", "TShape\n Brush.Color = clRed", {40, 40}, Qt::red},
      {"shape by number", "TShape\n Brush.Color = 65280", {40, 40}, QColor(0, 255, 0)},
      {"round shape keeps corners",
       "TShape\n Shape = stCircle\n Brush.Color = clRed",
       {22, 22},
       Ground},
      {"panel", "TPanel\n Color = clNavy", {40, 40}, QColor(0, 0, 128)},
      {"panel like its parent", "TPanel\n ParentColor = True", {40, 40}, Ground},
      {"label shows its parent", "TLabel\n Caption = ''", {40, 40}, Ground},
      {"opaque label", "TLabel\n Color = clLime", {58, 58}, QColor(0, 255, 0)},
      {"outside", "TEdit", {70, 40}, Ground},
      {"progress",
       "TProgressBar\n Position = 100",
       {40, 40},
       LightPalette().color(QPalette::Highlight)},
      {"memo like", "TAcmeMemo\n Color = clYellow", {50, 50}, QColor(255, 255, 0)},
      {"glyph of a bitmap",
       "TImage\n Picture.Data = {0754426974"
       "6D61703A000000424D3A0000000000000036000000280000000100000001000000010018000000000004000000"
       "0000000000000000000000000000000000FF0000}\n Stretch = True",
       {40, 40},
       QColor(0, 255, 0)},
  };
  for (const TProbeRow& row : rows) {
    std::string component = std::string("  object C: ") + row.Component + "\n";
    const TDrawn drawn(component + at + "  end\n");
    EXPECT_EQ(drawn.At(row.Place.x(), row.Place.y()).name(), row.Expected.name()) << row.Name;
  }
}

TEST(Paint, SystemColoursFollowTheTheme) {
  const std::string edit = "  object C: TEdit\n    Width = 40\n    Height = 40\n  end\n";
  EXPECT_EQ(TDrawn(edit).At(20, 20), LightPalette().color(QPalette::Base));
  EXPECT_EQ(TDrawn(edit, true).At(20, 20), DarkPalette().color(QPalette::Base));
}

struct TTextRow {
  const char* Name;
  const char* Component;
  QRect Place;
};

TEST(Paint, WhatAKindStoresIsSeen) {
  const TTextRow rows[] = {
      {"label", "TLabel\n Caption = 'Wide text'", {0, 0, 60, 13}},
      {"right label",
       "TLabel\n AutoSize = False\n Alignment = taRightJustify\n Caption = 'ab'",
       {80, 0, 20, 13}},
      {"button", "TButton\n Caption = 'Go'", {30, 20, 40, 30}},
      {"check box", "TCheckBox\n Caption = 'Go'", {18, 30, 30, 20}},
      {"list", "TListBox\n Items.Strings = ('one' 'two')", {3, 3, 20, 20}},
      {"combo", "TComboBox\n Items.Strings = ('one' 'two')\n ItemIndex = 1", {4, 30, 30, 20}},
      {"columns",
       "TListView\n Columns = <item\n Caption = 'Name'\n end>\n ViewStyle = vsReport",
       {3, 3, 40, 12}},
      {"group", "TRadioGroup\n Items.Strings = ('one' 'two')", {26, 20, 20, 50}},
      {"status",
       "TStatusBar\n Panels = <item\n Text = 'Ready'\n Width = 90\n end>",
       {4, 20, 30, 40}},
      {"spin", "TSpinEdit\n Value = 88", {4, 30, 20, 20}},
      {"tabs", "TTabControl\n Tabs.Strings = ('First')", {4, 4, 30, 16}},
      {"unknown", "TQuark", {4, 3, 60, 12}},
  };
  const char* size = "\n    Width = 100\n    Height = 80\n";
  for (const TTextRow& row : rows) {
    const TDrawn drawn(std::string("  object C: ") + row.Component + size + "  end\n");
    const QColor ground = drawn.At(row.Place.right(), row.Place.bottom());
    EXPECT_GT(drawn.Others(row.Place, ground), 8) << row.Name;
  }
}

TEST(Paint, NothingLeavesItsParent) {
  const TDrawn drawn(
      "  object P: TPanel\n    Width = 50\n    Height = 50\n    object M: TMemo\n      Left = 30\n"
      "      Width = 2000000000\n      Height = 2000000000\n    end\n  end\n");
  EXPECT_EQ(drawn.At(40, 40), QColor(Qt::white));
  EXPECT_EQ(drawn.At(60, 40), Ground);
}

struct THostileRow {
  const char* Name;
  const char* Component;
};

TEST(Paint, HostileValuesAreDrawnAsFarAsTheyGoWithAWord) {
  const THostileRow rows[] = {
      {"picture without pixels", "TImage\n Picture.Data = {07544269746D617004000000424D0000}"},
      {"picture of no kind", "TImage\n Picture.Data = {07544269746D61700400000041424344}"},
      {"lying glyph", "TSpeedButton\n NumGlyphs = 2000000000\n Glyph.Data = {04000000424D0000}"},
  };
  for (const THostileRow& row : rows) {
    const TDrawn drawn(std::string("  object C: ") + row.Component +
                       "\n    Width = 50\n    Height = 50\n  end\n");
    EXPECT_FALSE(drawn.Form->Notes().empty()) << row.Name;
    EXPECT_EQ(drawn.At(150, 80), Ground) << row.Name;
  }
  const TDrawn wild(
      "  object G: TStringGrid\n    ColCount = 2000000000\n    RowCount = 2000000000\n"
      "    DefaultColWidth = -5\n    FixedCols = -1\n    Width = 100\n    Height = 50\n  end\n"
      "  object R: TRadioGroup\n    Columns = 2000000000\n    Items.Strings = ('a')\n  end\n"
      "  object S: TTrackBar\n    Max = -5\n    Min = 2000000000\n    Width = 100\n  end\n"
      "  object L: TLabel\n    Caption = 'a'\n    Font.Height = -2000000000\n  end\n"
      "  object B: TPanel\n    BevelWidth = 2000000000\n    BorderWidth = 2000000000\n  end\n");
  EXPECT_EQ(wild.At(190, 95), Ground);
}

}  // namespace
}  // namespace wrenfold
