#pragma once

#include <X11/Xlib.h>

#include <cstdint>
#include <set>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/x11/guard_protocol.h"
#include "platform/x11/modifier_map.h"

namespace kivra::x11 {

/// The passive grabs of the keys that may be consumed: pressed, they freeze the keyboard until the
/// program has decided. Each stands once for every state of the lock keys.
///
/// They are grabbed on the window with the focus, not on the root: a grab there sends no XInput 2
/// focus events at all, and to programs that read the core ones a loss that is made good at once.
/// On a loss toolkits close their pop-ups, reset input methods and tell those who wait for it;
/// their field is not the focused one for a while, and its selection cannot be read. A grab that
/// another program has on the root goes first.
class KeyGrabs {
 public:
  explicit KeyGrabs(Display* display) : display_(display), focus_(DefaultRootWindow(display)) {}

  /// Grabs exactly these chords from now on. Answers the virtual key codes of new hotkeys that
  /// another program holds on the root.
  std::vector<std::uint16_t> set(const std::vector<Chord>& chords, const ModifierMap& modifiers);

  /// Where the keys are grabbed from the next `set` on; the root when no window has the focus.
  void setFocus(Window window) { focus_ = window; }
  Window focus() const { return focus_; }

  /// Whether a press of the key with these flags is one to be consumed.
  bool covers(std::uint8_t code, std::uint64_t flags) const {
    return chords_.contains({code, flags & chordFlags});
  }

 private:
  using Grab = std::tuple<Window, std::uint8_t, unsigned int>;  // key code, modifiers
  static constexpr std::uint64_t chordFlags =
      event_flags::shift | event_flags::control | event_flags::option | event_flags::command;

  void replace(const std::set<Grab>& wanted);
  bool isTaken(std::uint8_t code, unsigned int mask);
  bool grab(const std::vector<Grab>& grabs);

  Display* display_;
  Window focus_;
  std::set<std::pair<std::uint8_t, std::uint64_t>> chords_;
  std::set<Grab> grabbed_;
  std::set<std::pair<std::uint8_t, unsigned int>> asked_;  // whether others hold them
};

}  // namespace kivra::x11
