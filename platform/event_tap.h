#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/events.h"

namespace kivra {

/// An installed tap; destroying it removes it from the event stream.
class EventTapPort {
 public:
  virtual ~EventTapPort() = default;
};

/// What delivers a tap's events to the run loop.
class RunLoopSource {
 public:
  virtual ~RunLoopSource() = default;
};

/// What a tap's callback decides of an event.
enum class EventVerdict { pass, drop };

/// A key pressed with exactly these of the modifiers Shift, Control, Option and Command.
struct KeyChord {
  std::uint16_t keyCode = 0;
  std::uint64_t flags = 0;

  bool operator==(const KeyChord&) const = default;
};

using EventTapCallback = std::function<EventVerdict(EventType, const Event&)>;

/// Active taps at the head of the login session's event stream. Callbacks come on the main thread,
/// in event order, one at a time; a callback that takes too long gets its tap switched off and is
/// told so with `tapDisabledByTimeout`, whatever the mask.
class EventTaps {
 public:
  virtual ~EventTaps() = default;

  /// A tap for the event types whose bits (1 << type) are in `mask`; none when the system refuses.
  virtual std::shared_ptr<EventTapPort> eventTapCreate(std::uint64_t mask,
                                                       EventTapCallback callback) = 0;
  virtual std::shared_ptr<RunLoopSource> createRunLoopSource(EventTapPort& port) = 0;
  virtual void runLoopAddSource(RunLoopSource& source) = 0;
  virtual void runLoopRemoveSource(RunLoopSource& source) = 0;
  virtual void eventTapEnable(EventTapPort& port, bool enable) = 0;

  /// The only key-downs that callbacks may drop from now on. A desktop that holds keys back for its
  /// taps holds back no others; one that can drop any event has no use for the list.
  virtual void setConsumableKeys(const std::vector<KeyChord>& /*keys*/) {}
};

}  // namespace kivra
