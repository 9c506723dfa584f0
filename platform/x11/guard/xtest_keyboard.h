#pragma once

#include <X11/Xlib.h>

#include <cstdint>
#include <deque>

namespace kivra::x11 {

/// Types through XTEST, and tells its own keys from those that other programs type there.
class XtestKeyboard {
 public:
  XtestKeyboard(Display* display, int device);

  int device() const { return device_; }

  void send(std::uint8_t code, bool isDown);

  /// Takes a raw event of the device in. Answers whether another program has typed it.
  bool isForeign(std::uint8_t code, bool isDown);

 private:
  struct Sent {
    std::uint8_t code = 0;
    bool isDown = false;

    bool operator==(const Sent&) const = default;
  };

  Display* display_;
  int device_;
  std::deque<Sent> expected_;
};

}  // namespace kivra::x11
