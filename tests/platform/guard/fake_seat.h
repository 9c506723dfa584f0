#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <utility>
#include <vector>

#include "platform/guard/process/seat.h"
#include "platform/guard/screen.h"

namespace kivra::guard {

/// A seat whose applications are a screen in memory, and whose hands are the test.
class FakeSeat : public Seat {
 public:
  explicit FakeSeat(Screen& screen, const Layouts& layouts = Layouts::plain())
      : screen_(screen), layouts_(layouts) {}

  /// Comes with the next dispatch.
  void add(std::function<void(SeatListener&)> event) { events_.push_back(std::move(event)); }
  void vanish() { isGone_ = true; }

  std::vector<int> fds() const override { return {}; }
  bool dispatch(SeatListener& listener) override {
    while (!events_.empty()) {
      const auto event = std::move(events_.front());
      events_.pop_front();
      event(listener);
    }
    return !isGone_;
  }
  bool flush() override { return !events_.empty(); }

  const KeyMap& keyMap() const override { return layouts_.keyMap(); }
  std::uint32_t group() override { return screen_.group(); }
  bool isCapsLocked() override { return screen_.isCapsOn(); }

  std::chrono::milliseconds pauseBeforeCharacters() const override { return characterPause; }

  void pass(const SeatKey& key) override {
    if (key.isRepeat) {
      screen_.repeat(key.evdev);
    } else if (key.isDown) {
      screen_.press(key.evdev);
    } else {
      screen_.release(key.evdev);
    }
  }
  void drop(const SeatKey& key) override { dropped.push_back(key); }
  void type(const Steps& steps) override {
    for (const auto& step : steps) type(step);
  }

  std::vector<SeatKey> dropped;
  std::chrono::milliseconds characterPause{0};

 private:
  void type(const Step& step) {
    switch (step.kind) {
      case Step::Kind::press:
        screen_.press(static_cast<std::uint16_t>(step.value));
        break;
      case Step::Kind::release:
        screen_.release(static_cast<std::uint16_t>(step.value));
        break;
      case Step::Kind::selectGroup:
        screen_.selectGroup(step.value);
        break;
      case Step::Kind::character:
        screen_.type(step.value);
        break;
      case Step::Kind::pause:
        break;
    }
  }

  Screen& screen_;
  const Layouts& layouts_;
  std::deque<std::function<void(SeatListener&)>> events_;
  bool isGone_ = false;
};

}  // namespace kivra::guard
