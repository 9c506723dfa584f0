#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace kivra::wayland {

/// Tells when applications begin to repeat a key that is down: they do so by themselves, and nobody
/// says.
class RepeatWatch {
 public:
  RepeatWatch();
  ~RepeatWatch();
  RepeatWatch(const RepeatWatch&) = delete;
  RepeatWatch& operator=(const RepeatWatch&) = delete;

  /// After how long they do; zero for never.
  void setDelay(std::chrono::milliseconds delay) { delay_ = delay; }

  /// A key that repeats is pressed, or one is let go of.
  void press(std::uint16_t evdev);
  void release(std::uint16_t evdev);

  /// Sets the timer to what has been pressed; called before the guard waits.
  void arm();
  /// Readable when `take` has something to tell.
  int fd() const { return timer_; }
  /// The key that is about to be repeated, once for each press.
  std::optional<std::uint16_t> take();

 private:
  int timer_;
  std::chrono::milliseconds delay_{0};
  std::optional<std::uint16_t> key_;
  bool isArmed_ = true;
};

}  // namespace kivra::wayland
