// What the workbench remembers for its user: layout, files used last, open pages of projects.
#pragma once

#include <QByteArray>
#include <string>
#include <vector>

namespace wrenfold {

// The pages that were open in a project, in the order of their tabs.
struct TSession {
  std::vector<std::string> Files;
  int Active = 0;
};

class TSettings {
 public:
  static constexpr int ReopenCount = 12;
  static constexpr int SessionCount = 50;

  // The latest first; files that are gone since are left out.
  std::vector<std::string> ReopenList() const;
  // The last one becomes the latest.
  void RememberFiles(const std::vector<std::string>& files);

  TSession Session(const std::string& project) const;
  void StoreSession(const std::string& project, const TSession& session);

  QByteArray Value(const char* key) const;
  void SetValue(const char* key, const QByteArray& value);
};

}  // namespace wrenfold
