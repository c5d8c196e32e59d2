// Answers the toolkit's file dialog that opens next, as a user does.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <string>

#include "platform/widgets/Text.h"

namespace wrenfold::test {

// What the dialog offered when it opened.
struct TOffered {
  std::string Folder, Filters, Title;
};

// Enters the name and presses Enter; an empty name presses Escape. The filter is chosen by its
// place (from 1). A dialog that refuses the name is closed, and the test fails.
inline void AnswerFileDialog(const std::string& name, int filter = 1, TOffered* offered = nullptr) {
  QTimer::singleShot(0, [=] {
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    if (offered != nullptr)
      *offered = {FromQString(dialog->directory().absolutePath()),
                  FromQString(dialog->nameFilters().join('|')), FromQString(dialog->windowTitle())};
    auto* field = dialog->findChild<QLineEdit*>("fileNameEdit");
    ASSERT_NE(field, nullptr);
    if (name.empty()) return QTest::keyClick(field, Qt::Key_Escape);
    dialog->selectNameFilter(dialog->nameFilters().value(filter - 1));
    // Typed letters would race with the list of files, which is still being filled.
    dialog->selectFile(ToQString(name));
    QTest::keyClick(field, Qt::Key_Return);
    if (!dialog->isVisible()) return;
    ADD_FAILURE() << "the dialog does not take " << name;
    dialog->reject();
  });
}

}  // namespace wrenfold::test
