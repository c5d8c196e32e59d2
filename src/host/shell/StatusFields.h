// The fields of the status line.
#pragma once

#include <QLabel>
#include <QStatusBar>
#include <string>

#include "host/panels/EditWindow.h"

namespace wrenfold {

class TStatusFields {
 public:
  explicit TStatusFields(QStatusBar& bar);

  // What is to be said of the active page, or of none.
  void ShowPage(TEditWindow& window);
  void ShowProject(const std::string& summary);
  // Gone after some seconds.
  void Say(const std::string& text, int milliseconds);

 private:
  QStatusBar& FBar;
  QLabel *FProject, *FModified, *FCaret, *FInsert, *FEncoding, *FLineEnds;
};

}  // namespace wrenfold
