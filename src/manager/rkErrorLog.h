// The error log beside the package, with the trails that a start or an end of the manager left.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include "platform/core/model/Persistent.h"

namespace wrenfold {

// The way that the manager's constructor or destructor went, to tell where it failed.
struct TTrail {
  std::string Steps;      // "0" and the markers of the steps that were reached
  std::string Experts;    // the experts that were created or destroyed, joined by CR LF
  bool Reported = false;  // in the log already; steps that follow are not worth a second entry
  void Clear() { *this = {}; }
  void AddExpert(const std::string& name) { Experts += (Experts.empty() ? "" : "\r\n") + name; }
};

class TErrorLog {
 public:
  std::string FileName;
  bool Enabled = false;
  std::uint32_t MaxSize = 0;  // kilobytes; 0: no limit
  TTrail Constructor, Destructor;

  // Appends an entry while the log is enabled; the trails are written once. An
  // exception that is handed on from one handler to the next is written once. A log that cannot be
  // written is not worth another error: the failure goes to the standard error.
  void Add(const TObject* sender, const std::exception_ptr& error);
  // The text of an entry.
  std::string EntryText(const TObject* sender, const std::exception_ptr& error) const;

 private:
  std::exception_ptr FLast;
};

// The one log of the loaded package.
TErrorLog& ErrorLog();

}  // namespace wrenfold
