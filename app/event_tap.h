#pragma once

#include <functional>
#include <memory>

#include "platform/event_tap.h"
#include "platform/log.h"

namespace kivra {

/// The tap through which every key of the user enters the program. Events that carry the program's
/// own marker pass without being handled. Must outlive its installed tap.
class EventTap {
 public:
  /// True: the event is consumed.
  using Handler = std::function<bool(const Event&, EventType)>;

  EventTap(EventTaps& taps, Log& log, Handler handler);
  ~EventTap();
  EventTap(const EventTap&) = delete;
  EventTap& operator=(const EventTap&) = delete;

  /// Installs the tap; a refusal is logged and can be tried again. Does nothing while one is set.
  void start();
  void stop();

  /// True only after a successful start and until stop.
  bool isRunning() const { return isRunning_; }

 private:
  EventVerdict callback(EventType type, const Event& event);

  EventTaps& taps_;
  Log& log_;
  Handler handler_;
  std::shared_ptr<EventTapPort> tap_;
  std::shared_ptr<RunLoopSource> runLoopSource_;
  bool isRunning_ = false;
};

}  // namespace kivra
