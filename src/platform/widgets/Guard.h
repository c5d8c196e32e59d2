// The border that no exception crosses into the toolkit.
#pragma once

#include <utility>

namespace wrenfold {

class TObject;

// For catch blocks at the toolkit's border: hands the current exception to the application's
// handler, or writes it to the standard error while there is no application.
void ReportException(TObject* sender);

// Runs what a signal of the toolkit calls. The toolkit's own code is not built to be unwound, so
// every connection to its signals whose code may raise goes through here.
template <class Call>
void Guarded(TObject* sender, Call&& call) {
  try {
    std::forward<Call>(call)();
  } catch (...) {
    ReportException(sender);
  }
}

}  // namespace wrenfold
