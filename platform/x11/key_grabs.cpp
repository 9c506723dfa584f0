#include "platform/x11/key_grabs.h"

#include <algorithm>
#include <optional>

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
  std::set<std::pair<Grab, std::uint16_t>> wanted;
  chords_.clear();
  const auto locks = modifiers.lockCombinations();
  for (const auto& chord : chords) {
    const auto evdev = evdevCode(chord.keyCode);
    if (!evdev || *evdev + xkbOffset > 255) continue;
    const auto code = static_cast<std::uint8_t>(*evdev + xkbOffset);
    chords_.insert({code, chord.flags & chordFlags});
    const auto window = endsWord(chord) ? focus_ : DefaultRootWindow(display_);
    for (const auto lock : locks) {
      wanted.insert({{window, code, modifiers.mask(chord.flags) | lock}, chord.keyCode});
    }
  }
  std::erase_if(grabbed_, [&](const Grab& old) {
    const auto keep =
        std::ranges::any_of(wanted, [&](const auto& entry) { return entry.first == old; });
    if (keep) return false;
    const auto& [window, code, mask] = old;
    XUngrabKey(display_, code, mask, window);
    return true;
  });
  std::vector<Grab> added;
  for (const auto& [key, virtualKey] : wanted) {
    if (!grabbed_.contains(key)) added.push_back(key);
  }
  // Nearly always nobody else wants them: one question for all.
  if (added.empty() || grab(added)) {
    grabbed_.insert(added.begin(), added.end());
    return {};
  }
  std::vector<std::uint16_t> taken;
  for (const auto& [key, virtualKey] : wanted) {
    if (grabbed_.contains(key)) continue;
    if (grab({key})) {
      grabbed_.insert(key);
      refused_.erase(key);
    } else if (std::get<Window>(key) == DefaultRootWindow(display_) &&
               refused_.insert(key).second && std::ranges::find(taken, virtualKey) == taken.end()) {
      taken.push_back(virtualKey);
    }
  }
  return taken;
}

bool KeyGrabs::grab(const std::vector<Grab>& grabs) {
  ErrorTrap trap(display_);
  for (const auto& [window, code, modifiers] : grabs) {
    XGrabKey(display_, code, modifiers, window, False, GrabModeAsync, GrabModeSync);
  }
  return !trap.failed();
}

}  // namespace kivra::x11
