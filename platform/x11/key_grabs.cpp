#include "platform/x11/key_grabs.h"

#include <algorithm>
#include <iterator>

#include "platform/x11/x_display.h"
#include "platform/xkb/virtual_keys.h"

namespace kivra::x11 {

namespace {

bool endsWord(const Chord& chord) {
  constexpr auto shortcut = event_flags::control | event_flags::option | event_flags::command;
  return (chord.flags & shortcut) == 0 &&
         (chord.keyCode == key_codes::space || chord.keyCode == key_codes::returnKey ||
          chord.keyCode == key_codes::tab || chord.keyCode == key_codes::keypadEnter);
}

}  // namespace

std::vector<std::uint16_t> KeyGrabs::set(const std::vector<Chord>& chords,
                                         const ModifierMap& modifiers) {
  std::set<Grab> wanted;
  std::vector<std::uint16_t> taken;
  chords_.clear();
  const auto locks = modifiers.lockCombinations();
  for (const auto& chord : chords) {
    const auto evdev = evdevCode(chord.keyCode);
    if (!evdev || *evdev + xkbOffset > 255) continue;
    const auto code = static_cast<std::uint8_t>(*evdev + xkbOffset);
    const auto mask = modifiers.mask(chord.flags);
    chords_.insert({code, chord.flags & chordFlags});
    for (const auto lock : locks) wanted.insert({focus_, code, mask | lock});
    if (!endsWord(chord) && asked_.insert({code, mask}).second && isTaken(code, mask)) {
      taken.push_back(chord.keyCode);
    }
  }
  replace(wanted);
  return taken;
}

void KeyGrabs::replace(const std::set<Grab>& wanted) {
  std::erase_if(grabbed_, [&](const Grab& old) {
    if (wanted.contains(old)) return false;
    const auto& [window, code, mask] = old;
    XUngrabKey(display_, code, mask, window);
    return true;
  });
  std::vector<Grab> added;
  std::ranges::set_difference(wanted, grabbed_, std::back_inserter(added));
  // Nearly always nobody else wants them: one question for all.
  if (added.empty() || grab(added)) {
    grabbed_.insert(added.begin(), added.end());
    return;
  }
  for (const auto& key : added) {
    if (grab({key})) grabbed_.insert(key);
  }
}

bool KeyGrabs::isTaken(std::uint8_t code, unsigned int mask) {
  const Grab there{DefaultRootWindow(display_), code, mask};
  if (grabbed_.contains(there)) return false;
  if (!grab({there})) return true;
  XUngrabKey(display_, code, mask, DefaultRootWindow(display_));
  return false;
}

bool KeyGrabs::grab(const std::vector<Grab>& grabs) {
  ErrorTrap trap(display_);
  for (const auto& [window, code, modifiers] : grabs) {
    XGrabKey(display_, code, modifiers, window, False, GrabModeAsync, GrabModeSync);
  }
  return !trap.failed();
}

}  // namespace kivra::x11
