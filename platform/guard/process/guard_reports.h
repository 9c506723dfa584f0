#pragma once

#include <cstdint>
#include <set>

#include "platform/guard/process/guard_channel.h"
#include "platform/guard/process/seat.h"

namespace kivra::guard {

/// Numbers what happens at the keyboard, tells the program of it while the program listens, and
/// remembers what it cannot know yet.
class GuardReports {
 public:
  GuardReports(Seat& seat, GuardChannel& channel) : seat_(seat), channel_(channel) {}

  /// Nothing is reported while the tap is off or the session secret.
  bool isOn() const { return isEnabled_ && !isSecret_; }
  bool isSecret() const { return isSecret_; }
  void setEnabled(bool enabled);
  void setSecret(bool isSecret) { isSecret_ = isSecret; }

  /// Gives the event the next number and tells of it; false when the program is not told.
  bool event(Report report);
  /// The number of the last event.
  std::uint32_t number() const { return number_; }

  /// With event `number`, what stands before the cursor has changed.
  void changedAt(std::uint32_t number) { lastChange_ = number; }
  /// It has changed, with an event that is not told.
  void changedUntold() { lastChange_ = ++number_; }
  /// Whether it has changed since event `number`; 0 fits anywhere.
  bool isOvertaken(std::uint32_t number) const { return number != 0 && lastChange_ > number; }

  /// Tells whoever is at the other end, whether or not the tap is on.
  void notice(ReportKind kind, std::uint32_t number = 0);
  /// The same, of what has not been told yet.
  void noticeOnce(ReportKind kind);

  /// The program has not answered in time: the tap is off.
  void timeOut();
  /// Whoever it was for is gone.
  void forgetNotice() { owesNotice_ = false; }
  /// Tells of that later to a program that had stopped reading.
  void serve();

 private:
  friend class GuardState;

  Seat& seat_;
  GuardChannel& channel_;
  std::uint32_t number_ = 0;
  std::uint32_t lastChange_ = 0;
  bool isEnabled_ = false;
  bool isSecret_ = false;
  bool owesNotice_ = false;
  std::set<ReportKind> told_;
};

}  // namespace kivra::guard
