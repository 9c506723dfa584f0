#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "pace.h"
#include "platform/wayland/guard/virtual_keyboard.h"

namespace kivra::e2e {

/// The map of a keyboard with these layouts.
wayland::CompiledMap mapOf(const std::string& layouts, const std::string& options = "");

/// The evdev code of the key that gives the character in the English layout; capitals need Shift as
/// well.
std::uint16_t keyOfCharacter(char character);

/// A person at a keyboard of the compositor's of this process's environment. In wlroots compositors
/// the keyboard keeps its own modifiers, locks and layout, as a real one does; KWin keeps them.
class Hand {
 public:
  explicit Hand(const wayland::CompiledMap& map = mapOf("us,ru"));

  void press(std::uint16_t evdev) { key(evdev, true); }
  void release(std::uint16_t evdev) { key(evdev, false); }
  void tap(std::uint16_t evdev);
  /// The keys of the characters, letters, digits and line ends among them; each is let go of before
  /// it is pressed again.
  void type(std::string_view text, const Pace& pace);
  /// Quickly, key by key.
  void type(std::string_view text) { type(text, Pace()); }

  /// A desktop's own switcher selects another layout for this keyboard; not in KWin.
  void selectGroup(std::uint32_t group);

  /// Waits until the compositor has had all the keys.
  void settle() { connection_.roundtrip(); }

 private:
  void key(std::uint16_t evdev, bool isDown);

  wayland::Connection connection_;
  wayland::Owned<wl_seat> seat_;
  std::unique_ptr<wayland::KeyOutlet> keyboard_;
  wayland::ModifierState state_;
};

}  // namespace kivra::e2e
