#pragma once

#include <X11/Xlib.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/guard/process/seat.h"
#include "platform/x11/guard/focus_watch.h"
#include "platform/x11/guard/keyboards.h"
#include "platform/x11/guard/session_keyboard.h"
#include "platform/x11/guard/x_display.h"
#include "platform/x11/guard/xtest_keyboard.h"

union _XkbEvent;

namespace kivra::x11 {

/// An X11 session's keyboard: the user's devices are held and float, and every key goes on through
/// XTEST, from one device and in one order. The server gives the devices back when this connection
/// ends.
class X11Seat : public guard::Seat {
 public:
  /// Throws std::runtime_error when the server lacks what that needs.
  X11Seat();
  ~X11Seat() override;
  X11Seat(const X11Seat&) = delete;
  X11Seat& operator=(const X11Seat&) = delete;

  std::vector<int> fds() const override { return {ConnectionNumber(display_.get()), timer_}; }
  bool dispatch(guard::SeatListener& listener) override;
  bool flush() override;

  const KeyMap& keyMap() const override { return session_.keyMap(); }
  std::uint32_t group() override { return state().group; }
  bool isCapsLocked() override { return state().isCapsLocked; }

  void pass(const guard::SeatKey& key) override;
  void drop(const guard::SeatKey& /*key*/) override {}
  void type(const guard::Steps& steps) override;

 private:
  void selectEvents();
  void handle(XEvent& event, guard::SeatListener& listener);
  void takeInput(XGenericEventCookie& cookie, guard::SeatListener& listener);
  void takeKey(const void* data, bool isDown, guard::SeatListener& listener);
  void takeXkb(const _XkbEvent& event);

  void settle(guard::SeatListener& listener);
  void updateKeyboards(guard::SeatListener& listener);
  void releaseKeysOf(int device, guard::SeatListener& listener);
  void tellSecrecy(guard::SeatListener& listener);
  void setTimer(bool isOn);

  void send(std::uint32_t evdev, bool isDown);

  struct State {
    std::uint32_t group = 0;
    bool isCapsLocked = false;
  };
  const State& state();

  /// What has happened since the seat last settled.
  struct Changes {
    bool map = false;
    bool state = false;
    bool controls = false;
    bool hierarchy = true;
  };

  DisplayPointer display_;
  int inputOpcode_ = 0;
  int xkbEvent_ = 0;
  XtestKeyboard xtest_;
  SessionKeyboard session_;
  Keyboards keyboards_;
  FocusWatch focus_;
  int timer_ = -1;
  std::optional<State> state_;  // as far as it is known
  Changes changes_;
};

}  // namespace kivra::x11
