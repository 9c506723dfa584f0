#include "platform/x11/guard/x11_seat.h"

#include <X11/XKBlib.h>
#include <X11/extensions/XI2.h>
#include <X11/extensions/XInput2.h>
#include <sys/timerfd.h>
#include <unistd.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/x11/guard/x11_rescue.h"
#include "platform/xkb/virtual_keys.h"

namespace kivra::x11 {

namespace {

std::uint8_t keyCodeOf(std::uint32_t evdev) { return static_cast<std::uint8_t>(xkbCode(evdev)); }

/// XTEST's device, once what an ended guard has left down on it is up.
int cleanXtestKeyboard(Display* display) {
  releaseXtestKeys(display);
  return xtestKeyboard(display);
}

}  // namespace

X11Seat::X11Seat()
    : display_(openDisplay()),
      inputOpcode_(extensionOpcode(display_.get(), "XInputExtension")),
      xtest_(display_.get(), cleanXtestKeyboard(display_.get())),
      session_(display_.get(), xtest_),
      keyboards_(display_.get(), xtest_.device()),
      focus_(display_.get()),
      timer_(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)) {
  int opcode = 0;
  int error = 0;
  XkbQueryExtension(display_.get(), &opcode, &xkbEvent_, &error, nullptr, nullptr);
  selectEvents();
}

X11Seat::~X11Seat() {
  keyboards_.release();
  releaseXtestKeys(display_.get());
  ::close(timer_);
}

void X11Seat::selectEvents() {
  auto* const display = display_.get();
  constexpr unsigned int whole =
      XkbNewKeyboardNotifyMask | XkbMapNotifyMask | XkbControlsNotifyMask;
  XkbSelectEvents(display, XkbUseCoreKbd, whole, whole);
  constexpr unsigned int states = XkbGroupStateMask | XkbModifierLockMask;
  XkbSelectEventDetails(display, XkbUseCoreKbd, XkbStateNotify, states, states);
  std::array<unsigned char, XIMaskLen(XI_LASTEVENT)> hierarchy{};
  XISetMask(hierarchy.data(), XI_HierarchyChanged);
  std::array<unsigned char, XIMaskLen(XI_LASTEVENT)> buttons{};
  // Unlike other events of buttons, these come to every client, whoever has grabbed the pointer.
  XISetMask(buttons.data(), XI_RawButtonPress);
  std::array masks = {
      XIEventMask{.deviceid = XIAllDevices, .mask_len = hierarchy.size(), .mask = hierarchy.data()},
      XIEventMask{
          .deviceid = XIAllMasterDevices, .mask_len = buttons.size(), .mask = buttons.data()}};
  XISelectEvents(display, DefaultRootWindow(display), masks.data(), masks.size());
}

bool X11Seat::dispatch(guard::SeatListener& listener) {
  std::uint64_t ticks = 0;
  if (::read(timer_, &ticks, sizeof ticks) > 0) {
    changes_.hierarchy = true;
    if (focus_.isSecret()) focus_.checkHold();
  }
  do {
    while (XPending(display_.get()) > 0) {
      XEvent event;
      XNextEvent(display_.get(), &event);
      handle(event, listener);
    }
    settle(listener);
  } while (XPending(display_.get()) > 0);
  return true;
}

// To ask the server anything reads what has come before the answer.
bool X11Seat::flush() { return XPending(display_.get()) > 0; }

void X11Seat::handle(XEvent& event, guard::SeatListener& listener) {
  if (event.type == MappingNotify) {
    XRefreshKeyboardMapping(&event.xmapping);
  } else if (event.type == xkbEvent_) {
    takeXkb(reinterpret_cast<const XkbEvent&>(event));
  } else if (event.type == GenericEvent && event.xcookie.extension == inputOpcode_) {
    if (XGetEventData(display_.get(), &event.xcookie) == 0) return;
    takeInput(event.xcookie, listener);
    XFreeEventData(display_.get(), &event.xcookie);
  } else {
    focus_.notice(event);
    if (focus_.follow()) listener.focusMoved();
    tellSecrecy(listener);
  }
}

void X11Seat::takeInput(XGenericEventCookie& cookie, guard::SeatListener& listener) {
  switch (cookie.evtype) {
    case XI_KeyPress:
    case XI_KeyRelease:
      takeKey(cookie.data, cookie.evtype == XI_KeyPress, listener);
      break;
    case XI_RawKeyPress:
    case XI_RawKeyRelease: {
      const auto code = static_cast<const XIRawEvent*>(cookie.data)->detail;
      const auto isPress = cookie.evtype == XI_RawKeyPress;
      const auto isForeign = xtest_.isForeign(static_cast<std::uint8_t>(code), isPress);
      if (isForeign && isPress) listener.foreignKey();
      break;
    }
    case XI_RawButtonPress: {
      // The second button pastes where the pointer is, and takes the cursor there; those above the
      // third are wheels.
      const auto button = static_cast<const XIRawEvent*>(cookie.data)->detail;
      if (button <= Button3) listener.button(button == Button3);
      break;
    }
    default:
      changes_.hierarchy = true;
      break;
  }
}

void X11Seat::takeKey(const void* data, bool isDown, guard::SeatListener& listener) {
  const auto& event = *static_cast<const XIDeviceEvent*>(data);
  if (!keyboards_.isHeld(event.deviceid)) return;
  const auto code = static_cast<std::size_t>(event.detail);
  auto& keys = keyboards_.keys(event.deviceid);
  if (code >= keys.size() || code < xkbOffset) return;
  const auto isRepeat = isDown && ((event.flags & XIKeyRepeat) != 0 || keys.test(code));
  keys.set(code, isDown);
  session_.useMapOf(event.deviceid);
  listener.key({.evdev = evdevOfXkb(code),
                .isDown = isDown,
                .isRepeat = isRepeat,
                .timeMs = static_cast<std::uint32_t>(event.time)});
}

void X11Seat::takeXkb(const XkbEvent& event) {
  const auto device = static_cast<int>(event.any.device);
  if (keyboards_.isHeld(device)) {
    // Before the keys that it types next.
    session_.readMapOf(device);
    return;
  }
  switch (event.any.xkb_type) {
    case XkbStateNotify:
      changes_.state = true;
      state_.reset();
      break;
    case XkbControlsNotify:
      changes_.controls = true;
      break;
    case XkbMapNotify: {
      auto copy = event.map;
      XkbRefreshKeyboardMapping(&copy);
      // Our own: characters bound to spare keys.
      const auto isOwn = (copy.changed & XkbKeySymsMask) != 0 &&
                         session_.spares().areSpare(copy.first_key_sym, copy.num_key_syms);
      changes_.map = changes_.map || !isOwn;
      break;
    }
    default:
      changes_.map = true;
      break;
  }
}

void X11Seat::settle(guard::SeatListener& listener) {
  const auto changes = std::exchange(changes_, {.hierarchy = false});
  if (changes.hierarchy) updateKeyboards(listener);
  if (changes.map) {
    session_.spreadMap();
    state_.reset();
  }
  if (changes.state) session_.spreadState();
  if (changes.controls) session_.spreadControls();
}

void X11Seat::updateKeyboards(guard::SeatListener& listener) {
  const auto changes = keyboards_.update();
  for (const auto device : changes.lost) releaseKeysOf(device, listener);
  for (const auto device : changes.taken) session_.add(device);
  if (!changes.taken.empty()) state_.reset();
  if (changes.isBusy) listener.keyboardBusy();
  if (changes.isNoneLeft) listener.keyboardMissing();
  tellSecrecy(listener);
  setTimer(changes.isBusy || focus_.isSecret());
}

void X11Seat::releaseKeysOf(int device, guard::SeatListener& listener) {
  const auto keys = keyboards_.keys(device);
  keyboards_.forget(device);
  session_.remove(device);
  for (std::size_t code = xkbOffset; code < keys.size(); ++code) {
    if (!keys.test(code)) continue;
    listener.key({.evdev = evdevOfXkb(code), .isDown = false, .isRepeat = false, .timeMs = 0});
  }
}

void X11Seat::tellSecrecy(guard::SeatListener& listener) {
  listener.secrecyChanged(focus_.isSecret());
  if (focus_.isSecret()) setTimer(true);
}

void X11Seat::setTimer(bool isOn) {
  constexpr long interval = 500'000'000;  // ns
  itimerspec time{};
  if (isOn) time.it_value.tv_nsec = interval;
  ::timerfd_settime(timer_, 0, &time, nullptr);
}

const X11Seat::State& X11Seat::state() {
  if (!state_) {
    XkbStateRec state{};
    XkbGetState(display_.get(), XkbUseCoreKbd, &state);
    state_ = {.group = state.group, .isCapsLocked = (state.locked_mods & LockMask) != 0};
  }
  return *state_;
}

void X11Seat::pass(const guard::SeatKey& key) { send(key.evdev, key.isDown); }

void X11Seat::send(std::uint32_t evdev, bool isDown) {
  xtest_.send(keyCodeOf(evdev), isDown);
  if (keyMap().mayChangeState(static_cast<std::uint16_t>(evdev))) state_.reset();
}

void X11Seat::type(const guard::Steps& steps) {
  using Kind = guard::Step::Kind;
  for (const auto& step : steps) {
    switch (step.kind) {
      case Kind::press:
      case Kind::release:
        send(step.value, step.kind == Kind::press);
        break;
      case Kind::selectGroup:
        XkbLockGroup(display_.get(), XkbUseCoreKbd, step.value);
        if (state_) state_->group = step.value;
        break;
      case Kind::character:
        if (const auto code = session_.spares().find(step.value)) {
          xtest_.send(*code, true);
          xtest_.send(*code, false);
        }
        break;
      case Kind::pause:
        break;
    }
  }
}

}  // namespace kivra::x11
