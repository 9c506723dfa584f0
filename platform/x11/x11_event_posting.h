#pragma once

#include "platform/event_posting.h"
#include "platform/x11/posted_keys.h"

namespace kivra::x11 {

/// Hands the program's key events to the guard. Flags and text go along; what they mean on this
/// desktop the guard knows.
class X11EventPosting : public EventPosting {
 public:
  explicit X11EventPosting(PostedKeys& posted) : posted_(posted) {}

  std::unique_ptr<EventSource> eventSourceCreate(int stateId) override;
  std::optional<KeyboardEvent> createKeyboardEvent(EventSource& source, std::uint16_t keyCode,
                                                   bool down) override;
  void eventPost(const KeyboardEvent& event) override;

 private:
  PostedKeys& posted_;
};

}  // namespace kivra::x11
