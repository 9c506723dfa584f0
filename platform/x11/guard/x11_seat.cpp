#include "platform/x11/guard/x11_seat.h"

#include <X11/XKBlib.h>
#include <X11/extensions/XI2.h>
#include <X11/extensions/XInput2.h>
#include <sys/timerfd.h>
#include <unistd.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "platform/x11/guard/x11_rescue.h"
#include "platform/xkb/virtual_keys.h"

namespace kivra::x11 {

namespace {

std::uint8_t keyCodeOf(std::uint32_t evdev) { return static_cast<std::uint8_t>(evdev + xkbOffset); }

/// XTEST's device, once what an ended guard has left down on it is up.
int cleanXtestKeyboard(Display* display) {
  releaseXtestKeys(display);
  return xtestKeyboard(display);
}

KeyMap parsed(const std::string& text) {
  const std::unique_ptr<xkb_context, void (*)(xkb_context*)> context(
      xkb_context_new(XKB_CONTEXT_NO_FLAGS), xkb_context_unref);
  const std::unique_ptr<xkb_keymap, void (*)(xkb_keymap*)> map(
      xkb_keymap_new_from_string(context.get(), text.c_str(), XKB_KEYMAP_FORMAT_TEXT_V1,
                                 XKB_KEYMAP_COMPILE_NO_FLAGS),
      xkb_keymap_unref);
  return map ? KeyMap(map.get()) : KeyMap();
}

}  // namespace

X11Seat::X11Seat()
    : display_(openDisplay()),
      inputOpcode_(extensionOpcode(display_.get(), "XInputExtension")),
      xtest_(display_.get(), cleanXtestKeyboard(display_.get())),
      keyboards_(display_.get(), xtest_.device()),
      maps_(display_.get()),
      spares_(display_.get()),
      focus_(display_.get()),
      timer_(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)) {
  int opcode = 0;
  int error = 0;
  XkbQueryExtension(display_.get(), &opcode, &xkbEvent_, &error, nullptr, nullptr);
  selectEvents();
  readMap();
}

X11Seat::~X11Seat() {
  spares_.unbind();
  keyboards_.release();
  releaseXtestKeys(display_.get());
  ::close(timer_);
}

void X11Seat::selectEvents() {
  auto* const display = display_.get();
  constexpr unsigned int maps = XkbNewKeyboardNotifyMask | XkbMapNotifyMask;
  XkbSelectEvents(display, XkbUseCoreKbd, maps, maps);
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
    hierarchyChanged_ = true;
    if (focus_.isSecret()) focus_.checkHold();
  }
  do {
    while (XPending(display_.get()) > 0) {
      XEvent event;
      XNextEvent(display_.get(), &event);
      take(event, listener);
    }
    settle(listener);
  } while (XEventsQueued(display_.get(), QueuedAlready) > 0);
  return true;
}

void X11Seat::flush() { XFlush(display_.get()); }

void X11Seat::take(XEvent& event, guard::SeatListener& listener) {
  if (event.type == MappingNotify) {
    XRefreshKeyboardMapping(&event.xmapping);
  } else if (event.type == xkbEvent_) {
    takeXkb(reinterpret_cast<const XkbEvent&>(event));
  } else if (event.type == GenericEvent && event.xcookie.extension == inputOpcode_) {
    if (XGetEventData(display_.get(), &event.xcookie) == 0) return;
    takeInput(event.xcookie, listener);
    XFreeEventData(display_.get(), &event.xcookie);
  } else {
    focus_.take(event);
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
      hierarchyChanged_ = true;
      break;
  }
}

void X11Seat::takeKey(const void* data, bool isDown, guard::SeatListener& listener) {
  const auto& event = *static_cast<const XIDeviceEvent*>(data);
  if (!keyboards_.isHeld(event.deviceid)) return;
  const auto code = static_cast<std::size_t>(event.detail);
  auto& keys = keyboards_.keys(event.deviceid);
  const auto isRepeat = isDown && ((event.flags & XIKeyRepeat) != 0 || keys.test(code));
  if (code >= keys.size() || code < xkbOffset || (!isDown && !keys.test(code))) return;
  keys.set(code, isDown);
  useMapOf(event.deviceid);
  listener.key({.evdev = static_cast<std::uint16_t>(code - xkbOffset),
                .isDown = isDown,
                .isRepeat = isRepeat,
                .timeMs = static_cast<std::uint32_t>(event.time)});
}

void X11Seat::takeXkb(const XkbEvent& event) {
  if (event.any.xkb_type == XkbStateNotify) {
    isGroupKnown_ = false;
    stateChanged_ = true;
    return;
  }
  if (event.any.xkb_type == XkbMapNotify) {
    auto copy = event.map;
    XkbRefreshKeyboardMapping(&copy);
    // Our own: characters bound to spare keys.
    const auto isOwn = (copy.changed & XkbKeySymsMask) != 0 &&
                       spares_.areSpare(copy.first_key_sym, copy.num_key_syms);
    if (isOwn) return;
  }
  mapChanged_ = true;
}

void X11Seat::settle(guard::SeatListener& listener) {
  if (std::exchange(hierarchyChanged_, false)) updateKeyboards(listener);
  if (std::exchange(mapChanged_, false)) spreadMap();
  if (std::exchange(stateChanged_, false)) {
    for (const auto& [device, keys] : keyboards_.held()) copyState(device);
  }
}

void X11Seat::updateKeyboards(guard::SeatListener& listener) {
  const auto changes = keyboards_.update();
  for (const auto device : changes.lost) releaseKeysOf(device, listener);
  for (const auto device : changes.taken) {
    mapTexts_[device] = maps_.text(device);
    copyState(device);
  }
  if (!changes.taken.empty() && mapOwner_ == 0) useMapOf(changes.taken.front());
  if (changes.isBusy && !std::exchange(isBusyTold_, true)) listener.keyboardBusy();
  if (changes.isNoneLeft && !std::exchange(isMissingTold_, true)) listener.keyboardMissing();
  tellSecrecy(listener);
  setTimer(changes.isBusy || focus_.isSecret());
}

void X11Seat::releaseKeysOf(int device, guard::SeatListener& listener) {
  const auto keys = keyboards_.keys(device);
  keyboards_.forget(device);
  for (std::size_t code = xkbOffset; code < keys.size(); ++code) {
    if (!keys.test(code)) continue;
    listener.key({.evdev = static_cast<std::uint16_t>(code - xkbOffset),
                  .isDown = false,
                  .isRepeat = false,
                  .timeMs = 0});
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

void X11Seat::useMapOf(int device) {
  if (mapOwner_ == device) return;
  const auto& text = mapTexts_[device];
  const auto isSame = text.empty() || text == mapTexts_[std::exchange(mapOwner_, device)];
  if (isSame || text == mapText_) return;
  maps_.copy(device, xtest_.device());
  readMap();
  // The session takes a device's map over when the device types.
  if (const auto key = keyMap_.emptyKey(); key != 0) {
    xtest_.send(keyCodeOf(key), true);
    xtest_.send(keyCodeOf(key), false);
  }
}

void X11Seat::readMap() {
  mapText_ = maps_.text(xtest_.device());
  keyMap_ = parsed(mapText_);
  spares_.readMap();
  isGroupKnown_ = false;
}

// The session's map is XTEST's while the keyboards float; they keep what they had.
void X11Seat::spreadMap() {
  if (maps_.text(xtest_.device()) == mapText_) return;
  spares_.unbind();
  readMap();
  for (const auto& [device, keys] : keyboards_.held()) {
    maps_.copy(xtest_.device(), device);
    mapTexts_[device] = maps_.text(device);
    copyState(device);
  }
}

// What another program locks does not reach a floating keyboard: its lights would be wrong for
// good.
void X11Seat::copyState(int device) {
  XkbStateRec state{};
  XkbGetState(display_.get(), XkbUseCoreKbd, &state);
  constexpr unsigned int allModifiers = 0xFF;
  XkbLockModifiers(display_.get(), static_cast<unsigned int>(device), allModifiers,
                   state.locked_mods);
  XkbLockGroup(display_.get(), static_cast<unsigned int>(device), state.locked_group);
}

std::uint32_t X11Seat::group() {
  if (!std::exchange(isGroupKnown_, true)) {
    XkbStateRec state{};
    XkbGetState(display_.get(), XkbUseCoreKbd, &state);
    group_ = state.group;
  }
  return group_;
}

void X11Seat::pass(const guard::SeatKey& key) {
  xtest_.send(keyCodeOf(key.evdev), key.isDown);
  if (keyMap_.mayChangeState(key.evdev)) isGroupKnown_ = false;
}

void X11Seat::type(const guard::Steps& steps) {
  using Kind = guard::Step::Kind;
  for (const auto& step : steps) {
    switch (step.kind) {
      case Kind::press:
      case Kind::release:
        xtest_.send(keyCodeOf(step.value), step.kind == Kind::press);
        if (keyMap_.mayChangeState(static_cast<std::uint16_t>(step.value))) isGroupKnown_ = false;
        break;
      case Kind::selectGroup:
        XkbLockGroup(display_.get(), XkbUseCoreKbd, step.value);
        group_ = step.value;
        isGroupKnown_ = true;
        break;
      case Kind::character:
        if (const auto code = spares_.find(step.value)) {
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
