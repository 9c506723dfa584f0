#include "typist.h"

#include <X11/XKBlib.h>
#include <X11/extensions/XTest.h>

#include <stdexcept>
#include <thread>

#include "platform/xkb/virtual_keys.h"
#include "platform/xkb/xkb_layout.h"

namespace kivra::e2e {

Typist::Typist(const std::string& display) : display_(XOpenDisplay(display.c_str())) {
  if (display_ == nullptr) throw std::runtime_error("no display " + display);
  const auto layout = XkbLayout::named("us");
  constexpr std::uint16_t keyLimit = 64;  // no keypad
  for (const auto shift : {false, true}) {
    for (std::uint16_t key = 0; key < keyLimit; ++key) {
      const auto character = layout->character(key, shift);
      if (!character || character->size() != 1) continue;
      const auto code = static_cast<std::uint8_t>(*evdevCode(key) + xkbOffset);
      keys_.try_emplace(character->front() == '\r' ? '\n' : character->front(), Key{code, shift});
    }
  }
}

Typist::~Typist() { XCloseDisplay(display_); }

void Typist::setPace(std::chrono::microseconds hold, std::chrono::microseconds gap) {
  hold_ = hold;
  gap_ = gap;
}

void Typist::type(std::string_view text) {
  next_ = std::chrono::steady_clock::now();
  for (const auto character : text) {
    const auto& key = keys_.at(character);
    if (key.shift) send(keys::shift, true);
    tap(key.code);
    if (key.shift) send(keys::shift, false);
  }
}

void Typist::tap(std::uint8_t code) {
  send(code, true);
  pause(hold_);
  send(code, false);
  pause(gap_);
}

void Typist::press(std::uint8_t code) { send(code, true); }
void Typist::release(std::uint8_t code) { send(code, false); }

void Typist::chord(const std::vector<std::uint8_t>& codes) {
  for (const auto code : codes) send(code, true);
  for (auto code = codes.rbegin(); code != codes.rend(); ++code) send(*code, false);
}

void Typist::click() {
  XTestFakeButtonEvent(display_, 1, True, CurrentTime);
  XTestFakeButtonEvent(display_, 1, False, CurrentTime);
  XSync(display_, False);
}

void Typist::holdServer() {
  XGrabServer(display_);
  XSync(display_, False);
}

void Typist::letServerGo() {
  XUngrabServer(display_);
  XFlush(display_);
}

void Typist::selectGroup(unsigned int group) {
  XkbLockGroup(display_, XkbUseCoreKbd, group);
  XSync(display_, False);
}

unsigned int Typist::group() {
  XkbStateRec state{};
  XkbGetState(display_, XkbUseCoreKbd, &state);
  return state.group;
}

void Typist::send(std::uint8_t code, bool down) {
  XTestFakeKeyEvent(display_, code, down ? True : False, CurrentTime);
  XFlush(display_);
}

void Typist::pause(std::chrono::microseconds duration) {
  if (duration.count() == 0) return;
  // Against the clock, so that the pace is even on average.
  const auto now = std::chrono::steady_clock::now();
  next_ = (next_ < now - std::chrono::milliseconds(50) ? now : next_) + duration;
  std::this_thread::sleep_until(next_);
}

}  // namespace kivra::e2e
