#pragma once

#include <X11/Xlib.h>

#include <cstdint>
#include <set>
#include <utility>
#include <vector>

#include "platform/x11/guard_protocol.h"
#include "platform/x11/modifier_map.h"

namespace kivra::x11 {

/// The passive grabs of the keys that may be consumed: pressed, they freeze the keyboard until the
/// program has decided. Each stands once for every state of the lock keys.
class KeyGrabs {
 public:
  explicit KeyGrabs(Display* display) : display_(display) {}

  /// Grabs exactly these chords from now on. Answers the virtual key codes that another program
  /// holds and that were not refused before.
  std::vector<std::uint16_t> set(const std::vector<Chord>& chords, const ModifierMap& modifiers);

  /// Whether a press of the key with these flags is one to be consumed.
  bool covers(std::uint8_t code, std::uint64_t flags) const {
    return chords_.contains({code, flags & chordFlags});
  }

 private:
  using Grab = std::pair<std::uint8_t, unsigned int>;  // key code, modifiers
  static constexpr std::uint64_t chordFlags =
      event_flags::shift | event_flags::control | event_flags::option | event_flags::command;

  bool grab(const std::vector<Grab>& grabs);

  Display* display_;
  std::set<std::pair<std::uint8_t, std::uint64_t>> chords_;
  std::set<Grab> grabbed_;
  std::set<Grab> refused_;
};

}  // namespace kivra::x11
