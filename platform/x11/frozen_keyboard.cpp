#include "platform/x11/frozen_keyboard.h"

#include <X11/extensions/XTest.h>

#include <algorithm>
#include <iterator>

namespace kivra::x11 {

namespace {

/// The window with the focus. A grab there, unlike one on another window, sends no focus events to
/// the application, which might close its pop-ups on them.
Window focusWindow(Display* display) {
  Window window = None;
  int revert = 0;
  XGetInputFocus(display, &window, &revert);
  return window == None || window == PointerRoot ? DefaultRootWindow(display) : window;
}

}  // namespace

bool FrozenKeyboard::freeze() {
  const auto window = focusWindow(display_);
  auto result = XGrabKeyboard(display_, window, False, GrabModeAsync, GrabModeSync, CurrentTime);
  if (result == GrabNotViewable) {
    result = XGrabKeyboard(display_, DefaultRootWindow(display_), False, GrabModeAsync,
                           GrabModeSync, CurrentTime);
  }
  stream_.catchUp();
  return result == GrabSuccess;
}

void FrozenKeyboard::type(const Writer& write, const std::bitset<256>& down, std::size_t base) {
  takenOut_ = 0;
  // Programs that type are held off meanwhile. One that types without a pause would always be
  // ahead; and all of them share the test device, on which the server drops the press of a key that
  // is down between a press and a release of the script. A keyboard of wood and wires is a device
  // of its own, and slower than one repetition.
  constexpr int patience = 20;
  XGrabServer(display_);
  attempt(write, down, base);
  for (int i = 0; i < patience && hasSlipped(base); ++i) {
    takeOutWaitingKeys(base);
    attempt(write, down, base);
  }
  XUngrabServer(display_);
  // Now the script comes first for those who read the stream as well.
  const auto first = stream_.events().begin() + static_cast<std::ptrdiff_t>(base);
  if (takenOut_ > 0) {
    std::stable_partition(first, stream_.events().end(),
                          [](const RecordedEvent& event) { return event.isOwn; });
  }
  release();
}

void FrozenKeyboard::attempt(const Writer& write, const std::bitset<256>& down, std::size_t base) {
  const auto first = stream_.events().begin() + static_cast<std::ptrdiff_t>(base);
  const std::vector<RecordedEvent> takenOut(first, first + static_cast<std::ptrdiff_t>(takenOut_));
  down_ = down;
  for (const auto& event : takenOut) {
    if (event.isKey()) down_.set(event.code, event.kind == RecordedEvent::Kind::keyDown);
  }
  // What an attempt before has left down counts as down; to release a key once more does no harm.
  down_ |= testDown_;
  const auto script = write(down_, down);
  leftDown_.reset();
  for (const auto& key : script) {
    send(key, false);
    leftDown_.set(key.code, key.down);
  }
  for (const auto& event : takenOut) {
    if (event.isKey()) send({event.code, event.kind == RecordedEvent::Kind::keyDown, 0}, true);
  }
  stream_.catchUp();
}

void FrozenKeyboard::typeUnfrozen(const Writer& write, const std::bitset<256>& down) {
  down_ = down;
  for (const auto& key : write(down, down)) send(key, false);
  stream_.catchUp();
}

void FrozenKeyboard::release() {
  XUngrabKeyboard(display_, CurrentTime);
  XSync(display_, False);
}

bool FrozenKeyboard::hasSlipped(std::size_t base) const {
  const auto& events = stream_.events();
  const auto begin = std::min(base + takenOut_, events.size());
  const auto end = std::clamp(stream_.countAtLastPosted(), begin, events.size());
  // Whether before the script or in its midst. A release alone does no harm there, unless it ends a
  // press that is made again: one that was taken out, or a modifier that is given back.
  return std::any_of(events.begin() + static_cast<std::ptrdiff_t>(begin),
                     events.begin() + static_cast<std::ptrdiff_t>(end),
                     [this](const RecordedEvent& event) {
                       if (event.isOwn) return false;
                       return event.kind == RecordedEvent::Kind::keyDown ||
                              (event.kind == RecordedEvent::Kind::keyUp &&
                               (takenOut_ > 0 || leftDown_.test(event.code)));
                     });
}

void FrozenKeyboard::takeOutWaitingKeys(std::size_t base) {
  grabKeyboard(DefaultRootWindow(display_));
  XAllowEvents(display_, AsyncKeyboard, CurrentTime);
  grabKeyboard(DefaultRootWindow(display_));
  XSync(display_, False);
  stream_.catchUp();
  discardGrabbedKeys();
  auto& events = stream_.events();
  const auto first = events.begin() + static_cast<std::ptrdiff_t>(base);
  const auto frozen = events.begin() + static_cast<std::ptrdiff_t>(stream_.countAtGrab());
  takenOut_ = static_cast<std::size_t>(
      std::count_if(first, frozen, [](const RecordedEvent& event) { return !event.isOwn; }));
  events.erase(
      std::remove_if(first, events.end(), [](const RecordedEvent& event) { return event.isOwn; }),
      events.end());
}

void FrozenKeyboard::send(const ScriptedKey& key, bool isReplay) {
  // The server drops the press of a key that is down, be it held by the user or left down on the
  // test device by giving back a modifier that the user then let go of.
  if (key.down && (down_.test(key.code) || testDown_.test(key.code))) {
    stream_.expect({.isReplay = true});
    XTestFakeKeyEvent(display_, key.code, False, CurrentTime);
  }
  stream_.expect({.isReplay = isReplay, .userData = key.userData});
  XTestFakeKeyEvent(display_, key.code, key.down ? True : False, CurrentTime);
  down_.set(key.code, key.down);
  testDown_.set(key.code, key.down);
}

void FrozenKeyboard::grabKeyboard(Window window) {
  XGrabKeyboard(display_, window, False, GrabModeAsync, GrabModeSync, CurrentTime);
}

void FrozenKeyboard::discardGrabbedKeys() {
  XEvent event;
  while (XCheckMaskEvent(display_, KeyPressMask | KeyReleaseMask, &event) != 0) {
  }
}

}  // namespace kivra::x11
