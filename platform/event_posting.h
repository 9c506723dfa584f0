#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "platform/events.h"

namespace kivra {

/// Where synthetic events come from.
class EventSource {
 public:
  virtual ~EventSource() = default;
};

/// Making and posting of synthetic keyboard events. Posted events reach the focused application in
/// the order of posting; those from a tap's callback behind the event that it decides of, and ahead
/// of everything that the user typed after that.
class EventPosting {
 public:
  virtual ~EventPosting() = default;

  /// A source in the state table `stateId` (0: the combined state of the session), or none.
  virtual std::unique_ptr<EventSource> eventSourceCreate(int stateId) = 0;

  /// A key event with no flags and no marker; nothing when it cannot be made.
  virtual std::optional<KeyboardEvent> createKeyboardEvent(EventSource& source,
                                                           std::uint16_t keyCode, bool down) = 0;

  /// Posts at the session's tap location, exactly with the event's flags.
  virtual void eventPost(const KeyboardEvent& event) = 0;

  /// `called` is called, between events, when what was posted from a tap's callback has not been
  /// typed, or not to its end, because the user had typed on: what the callback did to the text has
  /// not happened. A system in which nothing can come between never calls it.
  virtual void onRefusal(const std::function<void()>& /*called*/) {}
};

}  // namespace kivra
