#include "controls/rkFileDialogs.h"

#include <QFileInfo>
#include <algorithm>

#include "platform/widgets/Text.h"

namespace wrenfold {

QStringList ToNameFilters(const std::string& filter) {
  QStringList filters;
  const QStringList parts = ToQString(filter).split('|');
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    QString name = parts[i];
    // The toolkit puts the patterns behind the description itself.
    const qsizetype bracket = name.indexOf('(');
    if (bracket >= 0 && name.contains('*')) name = name.left(bracket).trimmed();
    QString patterns = parts[i + 1];
    // Every file: "*.*" would want a dot.
    patterns = patterns == "*.*" ? QString("*") : patterns.replace(';', ' ');
    filters << name + " (" + patterns + ')';
  }
  return filters;
}

const TTypeInfo& TFileDialog::ClassInfo() {
  static const TTypeInfo info = Publish<TFileDialog>("TFileDialog", TComponent::ClassInfo())
                                    .Prop("DefaultExt", &TFileDialog::DefaultExt)
                                    .Prop("FileName", &TFileDialog::FileName)
                                    .Prop("Filter", &TFileDialog::Filter)
                                    .Prop("FilterIndex", &TFileDialog::FilterIndex)
                                    .Default(1)
                                    .Prop("InitialDir", &TFileDialog::InitialDir)
                                    .Prop("Title", &TFileDialog::Title);
  return info;
}

bool TFileDialog::Execute(QWidget* parent) {
  QFileDialog dialog(parent == nullptr ? nullptr : parent->window());
  if (!Title.empty()) dialog.setWindowTitle(ToQString(Title));
  const QStringList filters = ToNameFilters(Filter);
  if (!filters.isEmpty()) {
    dialog.setNameFilters(filters);
    const qsizetype index = std::clamp<qsizetype>(FilterIndex - 1, 0, filters.size() - 1);
    dialog.selectNameFilter(filters[index]);
  }
  dialog.setDefaultSuffix(ToQString(DefaultExt).toLower());
  if (!InitialDir.empty()) dialog.setDirectory(ToQString(InitialDir));
  if (!FileName.empty()) {
    const QFileInfo file(ToQString(FileName));
    if (file.isAbsolute()) dialog.setDirectory(file.absolutePath());
    dialog.selectFile(file.fileName());
  }
  Prepare(dialog);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return false;
  FileName = FromQString(dialog.selectedFiles().constFirst());
  const qsizetype chosen = filters.indexOf(dialog.selectedNameFilter());
  if (chosen >= 0) FilterIndex = static_cast<std::int32_t>(chosen + 1);
  return true;
}

const TTypeInfo& TOpenDialog::ClassInfo() {
  static const TTypeInfo info = Publish<TOpenDialog>("TOpenDialog", TFileDialog::ClassInfo());
  return info;
}

void TOpenDialog::Prepare(QFileDialog& dialog) const {
  dialog.setAcceptMode(QFileDialog::AcceptOpen);
  dialog.setFileMode(QFileDialog::ExistingFile);
}

const TTypeInfo& TSaveDialog::ClassInfo() {
  static const TTypeInfo info = Publish<TSaveDialog>("TSaveDialog", TFileDialog::ClassInfo())
                                    .Prop("OverwritePrompt", &TSaveDialog::OverwritePrompt)
                                    .Default(true);
  return info;
}

void TSaveDialog::Prepare(QFileDialog& dialog) const {
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  dialog.setOption(QFileDialog::DontConfirmOverwrite, !OverwritePrompt);
}

}  // namespace wrenfold
