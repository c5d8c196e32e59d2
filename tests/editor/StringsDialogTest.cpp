// The strings editor: counts, saves, gives up, offers the file that was loaded.
#include <gmock/gmock.h>

#include <QFileDialog>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "editor/rkStrEdit.h"
#include "platform/core/system/Files.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/Text.h"

namespace wrenfold {
namespace {

TStrEditDlg* Shown() {
  return dynamic_cast<TStrEditDlg*>(QApplication::activeModalWidget());
}

// Edits the lines in the dialog; the call gets it when it shows.
bool Edit(TStrings& lines, const std::function<void(TStrEditDlg&)>& use) {
  QTimer::singleShot(0, [&] {
    TStrEditDlg* dialog = Shown();
    ASSERT_NE(dialog, nullptr);
    use(*dialog);
  });
  return TStrEditDlg::Execute(lines, "Notes");
}

TEST(StringsDialog, TakesTheLinesBackOnSaveOnly) {
  TStringList lines;
  lines.SetText("one\ntwo");
  EXPECT_FALSE(Edit(lines, [](TStrEditDlg& dialog) {
    QTest::keyClicks(dialog.Memo(), "x");
    QTest::keyClick(dialog.Memo(), Qt::Key_Escape);
  }));
  EXPECT_EQ(lines.Text(), "one\r\ntwo\r\n");
  EXPECT_TRUE(Edit(lines, [](TStrEditDlg& dialog) {
    QTest::keyClicks(dialog.Memo(), "x");
    QTest::keyClick(dialog.Memo(), Qt::Key_Return);
    QTest::mouseClick(dialog.OKButton(), Qt::LeftButton);
  }));
  EXPECT_EQ(lines.Text(), "x\r\none\r\ntwo\r\n");
}

TEST(StringsDialog, CountsNoLineInAnEmptyText) {
  const std::unique_ptr<TStrEditDlg> dialog(NewForm<TStrEditDlg>(nullptr));
  EXPECT_EQ(dialog->LineCount()->text(), "0 lines");
  dialog->Memo()->setPlainText("a\nb");
  EXPECT_EQ(dialog->LineCount()->text(), "Lines count: 2");
  dialog->Memo()->selectAll();
  QTest::keyClick(dialog->Memo(), Qt::Key_Delete);
  EXPECT_EQ(dialog->LineCount()->text(), "Lines count: 0");
}

TEST(StringsDialog, SavingAfterLoadingOffersTheLoadedFile) {
  const QTemporaryDir folder;
  const std::string name = FromQString(folder.path()) + "/lines.txt";
  SafeWriteFile(name, "from the file\n");
  const std::unique_ptr<TStrEditDlg> dialog(NewForm<TStrEditDlg>(nullptr));
  dialog->OpenDialog()->FileName = name;
  const auto acceptFileDialog = [] {
    auto* shown = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(shown, nullptr);
    static_cast<QDialog*>(shown)->accept();
  };
  QTimer::singleShot(0, acceptFileDialog);
  dialog->LoadItem()->Click();
  EXPECT_EQ(FromQString(dialog->Memo()->toPlainText()), "from the file");
  QTimer::singleShot(0, [&] {
    auto* shown = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(FromQString(shown->selectedFiles().value(0)), name);
    shown->reject();
  });
  dialog->SaveItem()->Click();
}

}  // namespace
}  // namespace wrenfold
