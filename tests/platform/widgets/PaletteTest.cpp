// Colours of the desktop that cannot be read.
#include <gtest/gtest.h>

#include <QApplication>
#include <QPalette>

namespace wrenfold {
namespace {

TEST(Palette, HintsOfFieldsAreSeenInADarkPaletteThatForgotThem) {
  const QPalette before = QApplication::palette();
  const auto hint = [] { return QApplication::palette().color(QPalette::PlaceholderText); };
  QPalette dark;
  dark.setColor(QPalette::Base, QColor(35, 38, 41));
  dark.setColor(QPalette::Text, QColor(239, 240, 241));
  dark.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 128));
  QApplication::setPalette(dark);
  EXPECT_GT(hint().lightness(), 200);
  QPalette readable = dark;
  readable.setColor(QPalette::PlaceholderText, QColor(150, 150, 150));
  QApplication::setPalette(readable);
  EXPECT_EQ(hint(), QColor(150, 150, 150)) << "the desktop's own choice";
  QApplication::setPalette(before);
}

}  // namespace
}  // namespace wrenfold
