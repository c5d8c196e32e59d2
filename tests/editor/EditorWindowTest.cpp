// The rows inside the settings editor's window: every kind side by side.
#include <gmock/gmock.h>

#include <QTest>

#include "controls/rkComCtrls.h"
#include "editor/RowSample.h"
#include "editor/rkSpcEdPro.h"
#include "editor/rkSpcForm.h"
#include "platform/widgets/Application.h"

namespace wrenfold {
namespace {

struct TEditorWindow {
  TEditorWindow() {
    Editor.ShowTreeEx(&Sample);
    QApplication::setActiveWindow(Editor.Form());
  }
  template <class Control>
  Control* Find() {
    return Editor.Form()->findChild<Control*>();
  }
  test::TRowSample Sample;
  TSpcEditorPro Editor;
};

TEST(EditorWindow, ShowsEveryKindAndEveryControlHasAName) {
  TEditorWindow window;
  const auto properties = test::TRowSample::ClassInfo().Properties().size();
  int controls = 0;
  for (const QWidget* widget : window.Editor.Form()->findChildren<QWidget*>())
    if (ControlOf(const_cast<QWidget*>(widget)) != nullptr && !widget->accessibleName().isEmpty())
      ++controls;
  EXPECT_GE(controls, static_cast<int>(properties));
}

TEST(EditorWindow, AHotKeyRowTakesTheKeyOfTheWindowsOwnCommand) {
  TEditorWindow window;
  auto* key = window.Find<THotKeyEx>();
  ASSERT_NE(key, nullptr);
  key->setFocus();
  QTest::keyClick(key, Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(key->Text(), "Ctrl+S");
}

}  // namespace
}  // namespace wrenfold
