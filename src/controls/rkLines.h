// Lines that a control shows and the user changes one by one.
#pragma once

#include <string>

#include "platform/core/model/StringList.h"

namespace wrenfold {

// Each change raises one change event of the control. What belongs to a line (its check mark, being
// selected) stays with it. Indices are from 0.
class ILines {
 public:
  virtual void GetLines(TStrings& lines) const = 0;
  virtual void SetLines(const TStrings& lines) = 0;
  // -1: none.
  virtual int SelectedLine() const = 0;
  virtual void SelectLine(int index) = 0;
  virtual void InsertLine(int index, const std::string& text) = 0;
  virtual void DeleteLine(int index) = 0;
  virtual void PutLine(int index, const std::string& text) = 0;

 protected:
  ~ILines() = default;
};

}  // namespace wrenfold
