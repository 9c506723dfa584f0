#pragma once

#include <functional>

#include "platform/event_posting.h"
#include "platform/guard/posted_keys.h"

namespace kivra::guard {

/// Hands the program's key events to the guard. Flags and text go along; what they mean on this
/// desktop the guard knows.
class GuardEventPosting : public EventPosting {
 public:
  explicit GuardEventPosting(PostedKeys& posted) : posted_(posted) {}

  std::unique_ptr<EventSource> eventSourceCreate(int stateId) override;
  std::optional<KeyboardEvent> createKeyboardEvent(EventSource& source, std::uint16_t keyCode,
                                                   bool down) override;
  void eventPost(const KeyboardEvent& event) override;
  void onRefusal(const std::function<void()>& called) override { refused_ = called; }

  /// The guard has refused a post.
  void refuse() const {
    if (refused_) refused_();
  }

 private:
  PostedKeys& posted_;
  std::function<void()> refused_;
};

}  // namespace kivra::guard
