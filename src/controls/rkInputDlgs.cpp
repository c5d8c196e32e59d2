#include "controls/rkInputDlgs.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QInputDialog>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "locale/rkLocale.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

bool Ask(QWidget* parent, const std::string& caption, const std::string& prompt, std::string& value,
         bool lines) {
  QInputDialog dialog(parent);
  dialog.setOption(QInputDialog::UsePlainTextEditForTextInput, lines);
  dialog.setWindowTitle(ToQString(caption));
  dialog.setLabelText(ToQString(prompt));
  dialog.setTextValue(ToQString(value));
  dialog.setOkButtonText(ToQString(LocaleStr(sOK)));
  dialog.setCancelButtonText(ToQString(LocaleStr(sCancel)));
  for (QWidget* entry : dialog.findChildren<QWidget*>())
    if (qobject_cast<QLineEdit*>(entry) != nullptr ||
        qobject_cast<QPlainTextEdit*>(entry) != nullptr)
      entry->setAccessibleName(ToQString(prompt));
  if (dialog.exec() != QDialog::Accepted) return false;
  value = FromQString(dialog.textValue());
  return true;
}

}  // namespace

bool InputSingleStrQuery(QWidget* parent, const std::string& caption, const std::string& prompt,
                         std::string& value) {
  return Ask(parent, caption, prompt, value, false);
}

bool InputMultiStrQuery(QWidget* parent, const std::string& caption, const std::string& prompt,
                        std::string& value) {
  return Ask(parent, caption, prompt, value, true);
}

}  // namespace wrenfold
