#include "platform/x11/keyboard_guard.h"

#include <X11/XKBlib.h>
#include <X11/extensions/XInput2.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <thread>
#include <utility>

#include "platform/events.h"
#include "platform/xkb/virtual_keys.h"

namespace kivra::x11 {

namespace {

// A key that the table of virtual keys does not know: it has no character in any layout.
constexpr std::uint16_t unknownKey = 0xFFFF;

// The Fn key of the platform's own keyboards.
constexpr std::uint16_t fnKey = 63;

std::uint16_t virtualKeyOf(std::uint8_t code) {
  if (code < xkbOffset) return unknownKey;
  return virtualKey(static_cast<std::uint16_t>(code - xkbOffset)).value_or(unknownKey);
}

PostedKey pressOf(std::uint8_t code, const KeyboardState& state, std::int64_t userData) {
  return {.keyCode = virtualKeyOf(code), .flags = state.flags(), .userData = userData};
}

void selectServerEvents(Display* display) {
  XSelectInput(display, DefaultRootWindow(display), PropertyChangeMask | FocusChangeMask);
  XkbSelectEvents(display, XkbUseCoreKbd, XkbNewKeyboardNotifyMask | XkbMapNotifyMask,
                  XkbNewKeyboardNotifyMask | XkbMapNotifyMask);
  XkbSelectEventDetails(display, XkbUseCoreKbd, XkbStateNotify, XkbGroupStateMask,
                        XkbGroupStateMask);
  std::array<unsigned char, XIMaskLen(XI_LASTEVENT)> bits{};
  XISetMask(bits.data(), XI_HierarchyChanged);
  XIEventMask mask{.deviceid = XIAllDevices, .mask_len = bits.size(), .mask = bits.data()};
  XISelectEvents(display, DefaultRootWindow(display), &mask, 1);
}

/// Tells all clients the group once more: some forget it when they read a changed keyboard map, and
/// the server tells of changes only.
void announceGroup(Display* display, unsigned int group) {
  XkbLockGroup(display, XkbUseCoreKbd, group == 0 ? 1 : 0);
  XkbLockGroup(display, XkbUseCoreKbd, group);
}

std::uint32_t currentGroup(Display* display) {
  XkbStateRec state{};
  XkbGetState(display, XkbUseCoreKbd, &state);
  return state.group;
}

}  // namespace

KeyboardGuard::KeyboardGuard(DisplayPointer display, int channelFd)
    : display_(std::move(display)),
      channel_(channelFd),
      stream_(display_.get()),
      keyboard_(display_.get(), stream_),
      grabs_(display_.get()),
      characters_(display_.get()),
      activeWindow_(XInternAtom(display_.get(), "_NET_ACTIVE_WINDOW", False)) {
  int error = 0;
  int opcode = 0;
  XkbQueryExtension(display_.get(), &opcode, &xkbEvent_, &error, nullptr, nullptr);
  inputOpcode_ = extensionOpcode(display_.get(), "XInputExtension");
  const ErrorTrap trap(display_.get());
  selectServerEvents(display_.get());
  group_ = currentGroup(display_.get());
  readMap();
  followFocus();
  report({.kind = ReportKind::ready});
}

KeyboardGuard::~KeyboardGuard() { characters_.unbind(); }

void KeyboardGuard::run() {
  while (channel_.isOpen()) {
    readServer();
    handleInput();
    handleOrders(std::chrono::milliseconds(0));
    if (XEventsQueued(display_.get(), QueuedAfterFlush) > 0 || stream_.wait({})) continue;
    const auto writable = static_cast<short>(channel_.hasBacklog() ? POLLOUT : 0);
    std::array<pollfd, 3> waited = {
        {{.fd = ConnectionNumber(display_.get()), .events = POLLIN, .revents = 0},
         {.fd = stream_.fd(), .events = POLLIN, .revents = 0},
         {.fd = channel_.fd(), .events = static_cast<short>(POLLIN | writable), .revents = 0}}};
    ::poll(waited.data(), waited.size(), -1);
    channel_.flush();
    if (owesNotice_ && !channel_.hasBacklog()) sendNotice();
  }
}

void KeyboardGuard::readServer() {
  while (XPending(display_.get()) > 0) {
    XEvent event;
    XNextEvent(display_.get(), &event);
    takeEvent(event);
  }
  if (std::exchange(mapChanged_, false)) readMap();
  if (std::exchange(focusChanged_, false)) followFocus();
}

void KeyboardGuard::takeEvent(XEvent& event) {
  if (event.type == KeyPress) {
    grabbed_.push_back(static_cast<std::uint8_t>(event.xkey.keycode));
  } else if (event.type == MappingNotify) {
    XRefreshKeyboardMapping(&event.xmapping);
    mapChanged_ = true;
  } else if (event.type == PropertyNotify && event.xproperty.atom == activeWindow_) {
    // Where one window has the focus for all that is on the screen, only this tells them apart.
    report({.kind = ReportKind::wordBroken});
    focusChanged_ = true;
  } else if (event.type == FocusIn || event.type == FocusOut) {
    const auto isGrab = event.xfocus.mode == NotifyGrab || event.xfocus.mode == NotifyUngrab;
    focusChanged_ = focusChanged_ || !isGrab;
  } else if (event.type == xkbEvent_) {
    auto& notice = reinterpret_cast<XkbEvent&>(event);
    if (notice.any.xkb_type == XkbStateNotify) {
      group_ = static_cast<std::uint32_t>(notice.state.group);
    } else {
      if (notice.any.xkb_type == XkbMapNotify) XkbRefreshKeyboardMapping(&notice.map);
      mapChanged_ = true;
    }
  } else if (event.type == GenericEvent && event.xcookie.extension == inputOpcode_) {
    mapChanged_ = true;
  }
}

void KeyboardGuard::readMap() {
  modifiers_ = ModifierMap(display_.get());
  state_.setMap(modifiers_);
  characters_.readMap();
  applyChords();
}

void KeyboardGuard::followFocus() {
  auto* const display = display_.get();
  const auto root = DefaultRootWindow(display);
  const auto before = grabs_.focus();
  // The focus may move on before its next move is sure to be told.
  for (auto window = focusWindow(display); window != grabs_.focus();
       window = focusWindow(display)) {
    if (grabs_.focus() != root) XSelectInput(display, grabs_.focus(), NoEventMask);
    if (window != root) XSelectInput(display, window, FocusChangeMask);
    grabs_.setFocus(window);
  }
  // Letters typed in one window must not be erased in another. Told before any key of the new one
  // is grabbed; the window manager tells of the active window only later.
  if (grabs_.focus() != before) report({.kind = ReportKind::wordBroken});
  applyChords();
}

void KeyboardGuard::applyChords() {
  for (const auto key : grabs_.set(isEnabled_ ? chords_ : std::vector<Chord>{}, modifiers_)) {
    report({.kind = ReportKind::keyTaken, .keyCode = key});
  }
}

void KeyboardGuard::handleOrders(std::chrono::milliseconds timeout) {
  while (const auto message = channel_.receive(timeout)) handle(*message);
}

void KeyboardGuard::handle(const OrderMessage& message) {
  switch (message.order.kind) {
    case OrderKind::post:
      post(message);
      break;
    case OrderKind::setConsumable:
      chords_ = message.chords;
      applyChords();
      break;
    case OrderKind::enable:
    case OrderKind::disable:
      setEnabled(message.order.kind == OrderKind::enable);
      break;
    case OrderKind::ping:
      channel_.send({.kind = ReportKind::pong});
      break;
    case OrderKind::verdict:  // too late: the key has passed
      break;
  }
}

void KeyboardGuard::setEnabled(bool enabled) {
  if (isEnabled_ == enabled) return;
  isEnabled_ = enabled;
  applyChords();
  // What was typed while nobody listened is not known.
  if (enabled) report({.kind = ReportKind::wordBroken});
}

void KeyboardGuard::handleInput() {
  stream_.drain();
  if (stream_.events().empty() && !grabbed_.empty()) {
    // The record of a key is on its way when the key has arrived.
    stream_.catchUp();
    if (stream_.events().empty()) stream_.events().push_back({.code = grabbed_.front()});
  }
  while (!stream_.events().empty()) {
    const auto event = stream_.events().front();
    stream_.events().pop_front();
    if (event.isOwn) {
      handleOwn(event);
    } else if (event.kind == RecordedEvent::Kind::keyDown) {
      handlePress(event);
    } else if (event.kind == RecordedEvent::Kind::keyUp) {
      handleRelease(event);
    } else {
      handleButton(event);
    }
  }
}

void KeyboardGuard::handleOwn(const RecordedEvent& event) {
  const auto flag = modifiers_.flag(event.code);
  if (event.kind != RecordedEvent::Kind::keyDown && flag == 0) return;
  // The program's own key met its own grab.
  if (event.kind == RecordedEvent::Kind::keyDown && takeGrabbed(event.code)) replay();
  report({.kind = flag == 0 ? ReportKind::keyDown : ReportKind::flagsChanged,
          .keyCode = virtualKeyOf(event.code),
          .flags = state_.flags(),
          .userData = event.userData});
}

void KeyboardGuard::handlePress(const RecordedEvent& event) {
  state_.press(event.code);
  if (takeGrabbed(event.code)) {
    decide(event);
    return;
  }
  const auto flags = state_.flags();
  if (modifiers_.isModifier(event.code)) {
    reportModifier(event, flags);
    return;
  }
  if (isEnabled_ && grabs_.covers(event.code, flags)) {
    // The server froze the keyboard for it if nobody else holds the key or the keyboard; else it
    // has reached somebody and can be neither consumed nor mended.
    awaitGrabbed();
    if (takeGrabbed(event.code)) {
      decide(event);
    } else {
      report({.kind = ReportKind::wordBroken});
    }
    return;
  }
  lastPress_ =
      report({.kind = ReportKind::keyDown, .keyCode = virtualKeyOf(event.code), .flags = flags});
}

void KeyboardGuard::handleRelease(const RecordedEvent& event) {
  state_.release(event.code);
  if (modifiers_.isModifier(event.code)) reportModifier(event, state_.flags());
}

void KeyboardGuard::reportModifier(const RecordedEvent& event, std::uint64_t flags) {
  const auto isFn = modifiers_.flag(event.code) == event_flags::fn;
  report({.kind = ReportKind::flagsChanged,
          .keyCode = isFn ? fnKey : virtualKeyOf(event.code),
          .flags = flags});
}

void KeyboardGuard::handleButton(const RecordedEvent& event) {
  switch (event.code) {
    case Button1:
    case Button2:  // pastes where the pointer is, and takes the cursor there
      report({.kind = ReportKind::leftMouseDown, .flags = state_.flags()});
      break;
    case Button3:
      report({.kind = ReportKind::rightMouseDown, .flags = state_.flags()});
      break;
    default:  // wheels
      break;
  }
}

void KeyboardGuard::awaitGrabbed() {
  // The server sends the record a moment before the event. To sleep for so short a time, or to ask
  // the server, delays the key more than the moment is long.
  constexpr std::chrono::microseconds moment(300);
  const auto end = std::chrono::steady_clock::now() + moment;
  while (XEventsQueued(display_.get(), QueuedAfterReading) == 0 &&
         std::chrono::steady_clock::now() < end) {
    std::this_thread::yield();
  }
  readServer();
  if (!grabbed_.empty()) return;
  XSync(display_.get(), False);
  readServer();
}

bool KeyboardGuard::takeGrabbed(std::uint8_t code) {
  if (grabbed_.empty() || grabbed_.front() != code) return false;
  grabbed_.pop_front();
  return true;
}

bool KeyboardGuard::isFlooded() {
  stream_.drain();
  return static_cast<std::size_t>(
             std::ranges::count_if(stream_.events(), [](const RecordedEvent& event) {
               return !event.isOwn && event.kind == RecordedEvent::Kind::keyDown;
             })) > mostWaiting;
}

void KeyboardGuard::decide(const RecordedEvent& event) {
  if (!isEnabled_ || isFlooded()) {
    report({.kind = ReportKind::wordBroken});
    replay();
    return;
  }
  const auto number = report({.kind = ReportKind::keyDown,
                              .awaitsVerdict = true,
                              .keyCode = virtualKeyOf(event.code),
                              .flags = state_.flags()});
  lastPress_ = number;
  const auto verdict = number == 0 ? std::nullopt : awaitVerdict(number);
  if (verdict) {
    carryOut(*verdict, event);
  } else {
    replay();
    isEnabled_ = false;
    applyChords();
    sendNotice();
  }
  for (const auto& message : std::exchange(postponed_, {})) post(message);
}

std::optional<OrderMessage> KeyboardGuard::awaitVerdict(std::uint32_t number) {
  using Clock = std::chrono::steady_clock;
  const auto deadline = Clock::now() + decisionTime;
  OrderMessage verdict;
  while (channel_.isOpen()) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    if (left.count() <= 0) return std::nullopt;
    const auto message = channel_.receive(left);
    if (!message) continue;
    if (message->order.kind == OrderKind::post) {
      postponed_.push_back(*message);
    } else if (message->order.kind != OrderKind::verdict) {
      handle(*message);
    } else if (message->order.number == number) {
      collect(verdict, *message);
      if (!message->order.more) return verdict;
    }
  }
  return std::nullopt;
}

void KeyboardGuard::collect(OrderMessage& message, const OrderMessage& part) {
  message.order = part.order;
  message.keys.insert(message.keys.end(), part.keys.begin(), part.keys.end());
}

void KeyboardGuard::carryOut(const OrderMessage& verdict, const RecordedEvent& event) {
  if (verdict.keys.empty()) {
    if (verdict.order.drop) {
      keyboard_.release();
      readServer();
    } else {
      replay();
    }
    return;
  }
  auto keys = verdict.keys;
  if (!verdict.order.drop) {
    // What is posted while the tap decides of a key comes after that key.
    keys.insert(keys.begin(), pressOf(event.code, state_, keys.front().userData));
  }
  keyboard_.type(writer(std::move(keys)), state_.down(), 0);
  readServer();
}

void KeyboardGuard::replay() {
  XAllowEvents(display_.get(), ReplayKeyboard, CurrentTime);
  XSync(display_.get(), False);
  readServer();
}

void KeyboardGuard::post(const OrderMessage& message) {
  if (!partial_) partial_.emplace();
  collect(*partial_, message);
  if (message.order.more) return;
  auto whole = *std::exchange(partial_, std::nullopt);
  if (keyboard_.freeze()) {
    typeFrozen(std::move(whole.keys), whole.order.number);
  } else {
    keyboard_.typeUnfrozen(writer(std::move(whole.keys)), state_.down());
  }
}

void KeyboardGuard::typeFrozen(std::vector<PostedKey> keys, std::uint32_t after) {
  auto state = state_;
  auto isOvertaken = after != 0 && lastPress_ > after;
  const auto base = stream_.countAtGrab();
  for (std::size_t i = 0; i < base; ++i) {
    const auto& event = stream_.events()[i];
    if (event.isOwn || !event.isKey()) continue;
    if (event.kind == RecordedEvent::Kind::keyUp) {
      state.release(event.code);
    } else {
      state.press(event.code);
      isOvertaken = isOvertaken || (after != 0 && !modifiers_.isModifier(event.code));
    }
  }
  const auto userData = keys.empty() ? 0 : keys.front().userData;
  // The text that was to be changed has grown in the meantime: nothing may be erased any more.
  if (isOvertaken) keys.clear();
  // The freeze took the place of that for a key pressed just before it, which reached nobody.
  readServer();
  for (const auto code : std::exchange(grabbed_, {})) {
    keys.insert(keys.begin(), pressOf(code, state, userData));
  }
  if (keys.empty()) {
    keyboard_.release();
  } else {
    keyboard_.type(writer(std::move(keys)), state.down(), base);
  }
  readServer();
}

FrozenKeyboard::Writer KeyboardGuard::writer(std::vector<PostedKey> keys) {
  return [this, keys = std::move(keys)](const std::bitset<256>& now, const std::bitset<256>& then) {
    for (const auto& key : keys) {
      // At once, for all that is still in the queue: nothing before it depends on the group.
      if (key.kind == PostedKey::Kind::selectGroup) {
        XkbLockGroup(display_.get(), XkbUseCoreKbd, key.value);
      }
    }
    XkbStateRec state{};
    XkbGetState(display_.get(), XkbUseCoreKbd, &state);
    KeyScript script({.modifiers = modifiers_,
                      .now = now,
                      .then = then,
                      .capsLock = (state.locked_mods & LockMask) != 0,
                      .characterKey = [this, group = state.group](std::uint32_t scalar) {
                        return characters_.find(scalar, group);
                      }});
    auto written = script.write(keys);
    if (characters_.takeHasBound()) announceGroup(display_.get(), state.group);
    return written;
  };
}

void KeyboardGuard::sendNotice() {
  owesNotice_ = !channel_.send({.kind = ReportKind::timedOut, .group = group_});
}

std::uint32_t KeyboardGuard::report(Report report) {
  const auto isNotice = report.kind == ReportKind::ready || report.kind == ReportKind::keyTaken;
  if (!isEnabled_ && !isNotice) return 0;
  report.number = ++number_;
  report.group = group_;
  if (channel_.send(report)) return report.number;
  // The program has stopped reading: the tap is off until it is back.
  isEnabled_ = false;
  owesNotice_ = true;
  applyChords();
  return 0;
}

}  // namespace kivra::x11
