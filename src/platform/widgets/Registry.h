// Named values of the user's own settings, kept by the toolkit's settings files.
#pragma once

#include <memory>
#include <string>
#include <vector>

class QSettings;

namespace wrenfold {

// Access to the user's values under keys like "\\Software\\Wrenfold\\Language". The values stand in
// the file Wrenfold/Registry of the toolkit's user scope (QSettings::setPath moves it).
class TRegistry {
 public:
  TRegistry();
  // Writes what changed; a failure shows as the last false of Flush.
  ~TRegistry();

  // A key opens as the place for values; a leading backslash starts at the root, else it stands in
  // the key that is open. False when it does not exist and is not to be created.
  bool OpenKey(const std::string& key, bool canCreate);
  void CloseKey() { FKey.clear(); }
  bool KeyExists(const std::string& key) const;
  const std::string& CurrentPath() const { return FKey; }

  bool ValueExists(const std::string& name) const;
  // A value that is not there reads as an empty text, 0, false.
  std::string ReadString(const std::string& name) const;
  int ReadInteger(const std::string& name) const;
  bool ReadBool(const std::string& name) const;
  void WriteString(const std::string& name, const std::string& value);
  void WriteInteger(const std::string& name, int value);
  void WriteBool(const std::string& name, bool value);
  bool DeleteValue(const std::string& name);
  bool DeleteKey(const std::string& key);
  std::vector<std::string> ValueNames() const;
  // False when the values could not be written.
  bool Flush();

 private:
  std::string FullKey(const std::string& key) const;
  std::unique_ptr<QSettings> FSettings;
  std::string FKey;
};

}  // namespace wrenfold
