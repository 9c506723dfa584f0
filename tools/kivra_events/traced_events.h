#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/event_posting.h"
#include "platform/event_tap.h"
#include "platform/input_sources.h"
#include "platform/platform.h"
#include "platform/workspace.h"

namespace kivra::events {

/// Takes a line without its end.
using Print = std::function<void(const std::string&)>;

/// The taps of a desktop, printing each event that a tap's callback is called with: the key, the
/// flags, the layout that it met, whose it is, whether it was held for the verdict, the verdict and
/// the microseconds that the callback took. In a password field keys stay unnamed.
class TracedEventTaps : public EventTaps {
 public:
  TracedEventTaps(const Platform& desktop, Print print)
      : taps_(desktop.eventTaps),
        sources_(desktop.inputSources),
        workspace_(desktop.workspace),
        print_(std::move(print)) {}

  std::shared_ptr<EventTapPort> eventTapCreate(std::uint64_t mask,
                                               EventTapCallback callback) override;
  std::shared_ptr<RunLoopSource> createRunLoopSource(EventTapPort& port) override;
  void runLoopAddSource(RunLoopSource& source) override;
  void runLoopRemoveSource(RunLoopSource& source) override;
  void eventTapEnable(EventTapPort& port, bool enable) override;
  void setConsumableKeys(const std::vector<KeyChord>& keys) override;

 private:
  EventVerdict call(const EventTapCallback& callback, EventType type, const Event& event) const;
  bool isHeld(EventType type, const Event& event) const;
  std::string layout() const;

  EventTaps& taps_;
  InputSources& sources_;
  Workspace& workspace_;
  Print print_;
  std::vector<KeyChord> consumable_;
};

/// The posting of a desktop, printing each event that the program posts; of a text its length.
class TracedEventPosting : public EventPosting {
 public:
  TracedEventPosting(EventPosting& posting, Print print)
      : posting_(posting), print_(std::move(print)) {}

  std::unique_ptr<EventSource> eventSourceCreate(int stateId) override;
  std::optional<KeyboardEvent> createKeyboardEvent(EventSource& source, std::uint16_t keyCode,
                                                   bool down) override;
  void eventPost(const KeyboardEvent& event) override;
  void onRefusal(const std::function<void()>& called) override;

 private:
  EventPosting& posting_;
  Print print_;
};

}  // namespace kivra::events
