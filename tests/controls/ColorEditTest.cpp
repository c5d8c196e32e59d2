// The colour edit: names and numbers, what the user types, picks and sees.
#include <gmock/gmock.h>

#include <QLineEdit>
#include <QTest>

#include "controls/rkControls.h"
#include "platform/widgets/Application.h"

namespace wrenfold {
namespace {

class ColorEdit : public testing::Test {
 protected:
  ColorEdit() {
    Edit.setParent(&Form);
    Bind<&ColorEdit::Count>(Edit.OnChange, this);
    Form.Show();
    QApplication::setActiveWindow(&Form);
    Edit.setFocus();
  }
  void Count(TObject*) { ++Changes; }
  void Type(const char* text) {
    Edit.lineEdit()->selectAll();
    QTest::keyClicks(&Edit, text);
  }
  void RenameRed() {
    TStringList names;
    for (int i = 0; i < 9; ++i) names.Add("");
    names.Add("Rot");
    Edit.SetColorNames(&names);
  }

  TForm Form;
  TColorEdit Edit;
  int Changes = 0;
};

TEST_F(ColorEdit, BeginsWithBlack) {
  EXPECT_EQ(Edit.ColorValue(), clBlack);
  EXPECT_EQ(Edit.Text(), "Black");
  EXPECT_EQ(Edit.count(), 45);
}

TEST_F(ColorEdit, TakesOtherNamesByPositionAndForgetsTheTablesOwn) {
  RenameRed();
  Type("rot");
  EXPECT_EQ(Edit.ColorValue(), clRed);
  EXPECT_EQ(Edit.currentIndex(), 9);
  Edit.SetColorValue(clBlack);
  Type("Red");
  EXPECT_EQ(Edit.ColorValue(), clBlack);
}

TEST_F(ColorEdit, ShowsAColourWithoutANameAsANumberOrNotAtAll) {
  Edit.SetColorValue(0x00123456);
  EXPECT_EQ(Edit.Text(), "$00123456");
  Edit.SetStyle(esDropDownList);
  EXPECT_EQ(Edit.currentIndex(), -1);
  EXPECT_EQ(Edit.ColorValue(), TColor(0x00123456));
}

TEST_F(ColorEdit, ATypedNumberSelectsNothingUntilTheControlIsEnteredAgain) {
  Type("$000000FF");
  EXPECT_EQ(Edit.ColorValue(), clRed);
  EXPECT_EQ(Edit.Text(), "$000000FF");
  Edit.clearFocus();
  Edit.setFocus();
  EXPECT_EQ(Edit.Text(), "Red");
}

TEST_F(ColorEdit, KeepsItsOwnValuesOfCreamAndSkyBlue) {
  Type("Cream");
  EXPECT_EQ(Edit.ColorValue(), TColor(0x00A6CAF0));
  Type("SkyBlue");
  EXPECT_EQ(Edit.ColorValue(), TColor(0x00FFFBF0));
}

TEST_F(ColorEdit, AKeyInTheListPicksAndTellsOnce) {
  Changes = 0;
  QTest::keyClick(&Edit, Qt::Key_Down);
  EXPECT_EQ(Edit.Text(), "Maroon");
  EXPECT_EQ(Edit.ColorValue(), clMaroon);
  EXPECT_EQ(Changes, 1);
}

}  // namespace
}  // namespace wrenfold
