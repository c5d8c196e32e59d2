// Keeps the settings in the toolkit's settings file of the user.
#include "host/documents/Settings.h"

#include <QFileInfo>
#include <QSettings>

#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr char ReopenKey[] = "Files/Reopen";
constexpr char SessionsKey[] = "Sessions";

QSettings Store() {
  return QSettings(QSettings::IniFormat, QSettings::UserScope, "Wrenfold", "Workbench");
}

}  // namespace

std::vector<std::string> TSettings::ReopenList() const {
  std::vector<std::string> files;
  for (const QString& name : Store().value(ReopenKey).toStringList())
    if (QFileInfo::exists(name)) files.push_back(FromQString(name));
  return files;
}

void TSettings::RememberFiles(const std::vector<std::string>& files) {
  QSettings store = Store();
  QStringList names = store.value(ReopenKey).toStringList();
  for (const std::string& file : files) {
    names.removeAll(ToQString(file));
    names.prepend(ToQString(file));
  }
  while (names.size() > ReopenCount) names.removeLast();
  store.setValue(ReopenKey, names);
}

// A session is one list: the project, the active page's index, the files. The latest stands first.
TSession TSettings::Session(const std::string& project) const {
  TSession session;
  for (const QVariant& value : Store().value(SessionsKey).toList()) {
    const QStringList entry = value.toStringList();
    if (entry.size() < 2 || entry[0] != ToQString(project)) continue;
    session.Active = entry[1].toInt();
    for (const QString& name : entry.mid(2)) session.Files.push_back(FromQString(name));
    break;
  }
  return session;
}

void TSettings::StoreSession(const std::string& project, const TSession& session) {
  QSettings store = Store();
  QVariantList sessions = store.value(SessionsKey).toList();
  const QString name = ToQString(project);
  sessions.removeIf([&](const QVariant& value) {
    const QStringList entry = value.toStringList();
    return entry.isEmpty() || entry[0] == name;
  });
  QStringList entry{name, QString::number(session.Active)};
  for (const std::string& file : session.Files) entry.append(ToQString(file));
  sessions.prepend(entry);
  while (sessions.size() > SessionCount) sessions.removeLast();
  store.setValue(SessionsKey, sessions);
}

QByteArray TSettings::Value(const char* key) const {
  return Store().value(key).toByteArray();
}

void TSettings::SetValue(const char* key, const QByteArray& value) {
  Store().setValue(key, value);
}

}  // namespace wrenfold
