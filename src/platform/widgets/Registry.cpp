#include "platform/widgets/Registry.h"

#include <QSettings>
#include <QStringList>

#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

QString ValuePath(const std::string& key, const std::string& name) {
  return ToQString(key.empty() ? name : key + '/' + name);
}

}  // namespace

TRegistry::TRegistry()
    : FSettings(std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                            QStringLiteral("Wrenfold"),
                                            QStringLiteral("Registry"))) {
  FSettings->setFallbacksEnabled(false);
}

TRegistry::~TRegistry() = default;

std::string TRegistry::FullKey(const std::string& key) const {
  const bool fromRoot = !key.empty() && key[0] == '\\';
  std::string path = fromRoot || FKey.empty() ? std::string() : FKey + '/';
  for (char c : key) path += c == '\\' ? '/' : c;
  while (!path.empty() && path.front() == '/') path.erase(0, 1);
  while (!path.empty() && path.back() == '/') path.pop_back();
  return path;
}

bool TRegistry::KeyExists(const std::string& key) const {
  const QString prefix = ToQString(FullKey(key)) + '/';
  const QStringList all = FSettings->allKeys();
  return std::any_of(all.begin(), all.end(),
                     [&prefix](const QString& known) { return known.startsWith(prefix); });
}

bool TRegistry::OpenKey(const std::string& key, bool canCreate) {
  if (!canCreate && !KeyExists(key)) return false;
  FKey = FullKey(key);
  return true;
}

bool TRegistry::ValueExists(const std::string& name) const {
  return FSettings->contains(ValuePath(FKey, name));
}

std::string TRegistry::ReadString(const std::string& name) const {
  return FromQString(FSettings->value(ValuePath(FKey, name)).toString());
}

int TRegistry::ReadInteger(const std::string& name) const {
  return FSettings->value(ValuePath(FKey, name)).toInt();
}

bool TRegistry::ReadBool(const std::string& name) const {
  return FSettings->value(ValuePath(FKey, name)).toBool();
}

void TRegistry::WriteString(const std::string& name, const std::string& value) {
  FSettings->setValue(ValuePath(FKey, name), ToQString(value));
}

void TRegistry::WriteInteger(const std::string& name, int value) {
  FSettings->setValue(ValuePath(FKey, name), value);
}

void TRegistry::WriteBool(const std::string& name, bool value) {
  FSettings->setValue(ValuePath(FKey, name), value);
}

bool TRegistry::DeleteValue(const std::string& name) {
  if (!ValueExists(name)) return false;
  FSettings->remove(ValuePath(FKey, name));
  return true;
}

bool TRegistry::DeleteKey(const std::string& key) {
  if (!KeyExists(key)) return false;
  FSettings->remove(ToQString(FullKey(key)));
  return true;
}

std::vector<std::string> TRegistry::ValueNames() const {
  std::vector<std::string> names;
  FSettings->beginGroup(ToQString(FKey));
  for (const QString& name : FSettings->childKeys()) names.push_back(FromQString(name));
  FSettings->endGroup();
  return names;
}

bool TRegistry::Flush() {
  FSettings->sync();
  return FSettings->status() == QSettings::NoError;
}

}  // namespace wrenfold
