#include "platform/guard/process/guard_reports.h"

namespace kivra::guard {

void GuardReports::setEnabled(bool enabled) {
  if (isEnabled_ == enabled) return;
  isEnabled_ = enabled;
  // What was typed while nobody listened is not known.
  if (enabled) event({.kind = ReportKind::wordBroken});
}

bool GuardReports::event(Report report) {
  report.number = ++number_;
  if (!isOn()) return false;
  report.group = seat_.group();
  if (channel_.send(report)) return true;
  // The program has stopped reading: the tap is off until it is back.
  isEnabled_ = false;
  owesNotice_ = true;
  return false;
}

void GuardReports::notice(ReportKind kind, std::uint32_t number) {
  channel_.send({.number = number, .kind = kind, .group = seat_.group()});
}

void GuardReports::noticeOnce(ReportKind kind) {
  if (told_.insert(kind).second) notice(kind);
}

void GuardReports::timeOut() {
  isEnabled_ = false;
  owesNotice_ = !channel_.send({.kind = ReportKind::timedOut, .group = seat_.group()});
}

void GuardReports::serve() {
  if (owesNotice_ && !channel_.hasBacklog()) timeOut();
}

}  // namespace kivra::guard
