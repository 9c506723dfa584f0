#include "app/event_tap.h"

#include <utility>

#include "layout/key_output.h"

namespace kivra {

namespace {

constexpr std::uint64_t bit(EventType type) { return 1ULL << static_cast<std::uint32_t>(type); }

constexpr std::uint64_t eventMask = bit(EventType::leftMouseDown) | bit(EventType::rightMouseDown) |
                                    bit(EventType::keyDown) | bit(EventType::flagsChanged);
static_assert(eventMask == 5130);

}  // namespace

EventTap::EventTap(EventTaps& taps, Log& log, Handler handler)
    : taps_(taps), log_(log), handler_(std::move(handler)) {}

EventTap::~EventTap() { stop(); }

void EventTap::start() {
  if (tap_) return;
  auto tap = taps_.eventTapCreate(
      eventMask, [this](EventType type, const Event& event) { return callback(type, event); });
  if (!tap) {
    log_.log("Kivra: не удалось создать CGEventTap (проверь Accessibility/Input Monitoring)");
    return;
  }
  tap_ = std::move(tap);
  runLoopSource_ = taps_.createRunLoopSource(*tap_);
  taps_.runLoopAddSource(*runLoopSource_);
  taps_.eventTapEnable(*tap_, true);
  isRunning_ = true;
}

void EventTap::stop() {
  if (tap_) taps_.eventTapEnable(*tap_, false);
  if (runLoopSource_) taps_.runLoopRemoveSource(*runLoopSource_);
  tap_.reset();
  runLoopSource_.reset();
  isRunning_ = false;
}

EventVerdict EventTap::callback(EventType type, const Event& event) {
  if (type == EventType::tapDisabledByTimeout || type == EventType::tapDisabledByUserInput) {
    if (tap_) taps_.eventTapEnable(*tap_, true);
    return EventVerdict::pass;
  }
  if (event.userData == syntheticEventMarker) return EventVerdict::pass;
  return handler_(event, type) ? EventVerdict::drop : EventVerdict::pass;
}

}  // namespace kivra
