// Writing of the error log.
#include "manager/rkErrorLog.h"

#include <cstdio>

#include "foundation/rkAppUtils.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

std::string SourceName(const TObject* sender) {
  if (sender == nullptr) return "Unknown";
  const auto* component = dynamic_cast<const TComponent*>(sender);
  if (component == nullptr || component->Name().empty()) return sender->ClassName();
  return sender->ClassName() + ": " + component->Name();
}

std::string TrailText(const TTrail& trail, const char* what) {
  if (trail.Steps.empty() || trail.Reported) return {};
  return std::string("\r\n< Start ") + what + " >\r\n" + trail.Steps + "\r\n" + trail.Experts +
         "\r\n< Finish " + what + " >";
}

}  // namespace

std::string TErrorLog::EntryText(const TObject* sender, const std::exception_ptr& error) const {
  return "\r\n[ " + DateTimeToStr(Now()) + " ]\r\n" + ExceptionText(error) +
         "\r\nSource object: " + SourceName(sender) + TrailText(Constructor, "constructor") +
         TrailText(Destructor, "destructor");
}

void TErrorLog::Add(const TObject* sender, const std::exception_ptr& error) {
  if (!Enabled || (error && error == FLast)) return;
  FLast = error;
  const std::string text = EntryText(sender, error);
  Constructor.Reported = Destructor.Reported = true;
  try {
    AddLogData(FileName, text, std::uint64_t{MaxSize} * 1024);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
  }
}

TErrorLog& ErrorLog() {
  static TErrorLog log;
  return log;
}

}  // namespace wrenfold
