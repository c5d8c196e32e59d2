// The border that no exception crosses into the toolkit.
#pragma once

#include <QPointer>
#include <type_traits>
#include <utility>

namespace wrenfold {

class TObject;

// For catch blocks at the toolkit's border: hands the current exception to the application's
// handler, or writes it to the standard error while there is no application.
void ReportException(TObject* sender);

// Runs the call; an exception is reported, with the sender unless it went together with `life`.
template <class Call>
void GuardedWhile(QObject* life, TObject* sender, Call&& call) {
  const QPointer<QObject> alive(life);
  try {
    std::forward<Call>(call)();
  } catch (...) {
    ReportException(alive == nullptr ? nullptr : sender);
  }
}

// Runs what a signal of the toolkit calls. The toolkit's own code is not built to be unwound, so
// every connection to its signals whose code may raise goes through here. A sender that is a widget
// may be destroyed by the call; another one must outlive it.
template <class Sender, class Call>
void Guarded(Sender* sender, Call&& call) {
  if constexpr (std::is_base_of_v<QObject, Sender>) {
    GuardedWhile(sender, sender, std::forward<Call>(call));
  } else {
    try {
      std::forward<Call>(call)();
    } catch (...) {
      ReportException(sender);
    }
  }
}
template <class Call>
void Guarded(std::nullptr_t, Call&& call) {
  Guarded(static_cast<TObject*>(nullptr), std::forward<Call>(call));
}

}  // namespace wrenfold
