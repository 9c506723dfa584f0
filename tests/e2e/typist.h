#pragma once

#include <X11/Xlib.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "keyboard.h"
#include "pace.h"
#include "x_session.h"

namespace kivra::e2e {

/// X key codes of keys that have no character, and of some that do.
namespace keys {
inline constexpr std::uint8_t escape = 9;
inline constexpr std::uint8_t backspace = 22;
inline constexpr std::uint8_t tab = 23;
inline constexpr std::uint8_t enter = 36;
inline constexpr std::uint8_t control = 37;
inline constexpr std::uint8_t a = 38;
inline constexpr std::uint8_t shift = 50;
inline constexpr std::uint8_t alt = 64;
inline constexpr std::uint8_t space = 65;
inline constexpr std::uint8_t capsLock = 66;
inline constexpr std::uint8_t down = 116;
inline constexpr std::uint8_t pause = 127;
inline constexpr std::uint8_t p = 33;
}  // namespace keys

/// A person at the keyboard: presses the keys of a device, each character with the key that gives
/// it in the English layout, whatever layout is selected.
class Typist {
 public:
  explicit Typist(XSession& session);
  ~Typist();
  Typist(const Typist&) = delete;
  Typist& operator=(const Typist&) = delete;

  void setPace(const Pace& pace) { pace_ = pace; }
  /// The time between a press and its release, and from there to the next press.
  void setPace(std::chrono::microseconds hold, std::chrono::microseconds gap) {
    pace_ = {.key = hold + gap, .hold = hold};
  }
  void setHand(std::chrono::milliseconds key, bool isRolling) {
    pace_ = paceOfHands(key, isRolling);
  }

  void type(std::string_view text);
  void tap(std::uint8_t code);
  void press(std::uint8_t code) { key(code, true); }
  void release(std::uint8_t code) { key(code, false); }

  /// Called before each press and release from now on, in the thread that types.
  void watch(std::function<void(std::uint8_t code, bool isDown)> watcher) {
    watcher_ = std::move(watcher);
  }

  /// The keys held while the last is tapped.
  void chord(const std::vector<std::uint8_t>& codes);
  /// The same by names: "ctrl+shift+Left". Throws std::out_of_range for a name that is not known.
  void chord(std::string_view names);
  void click();

  /// Types on another keyboard of the server from now on, when the keys so far have been taken in;
  /// or on the same one after it was switched off and on again.
  void use(int keyboard, bool isReopened = false);
  /// The same after the one in use was switched off.
  void leaveFor(int keyboard);

  /// Adds a pointer and a keyboard beside the ones that every session has, and removes them again.
  void addMasterDevices(std::string name);
  void removeMasterDevices(const std::string& name);

  /// Selects an XKB group, as a desktop's own switcher does.
  void selectGroup(unsigned int group);
  unsigned int group();
  /// The modifiers that are locked: Caps Lock, Num Lock.
  unsigned int locks();
  /// Whether any key is down for the applications.
  bool isAnyKeyDown();

 private:
  struct Key {
    std::uint8_t code = 0;
    bool shift = false;
  };
  struct Event {
    std::chrono::microseconds time;
    std::uint8_t code = 0;
    bool isDown = true;
  };

  void key(std::uint8_t code, bool isDown);
  std::vector<Event> eventsOf(std::string_view text);
  std::chrono::microseconds nextHold();

  XSession& session_;
  Keyboard* keyboard_;
  Display* display_;
  std::map<char, Key> keys_;
  std::function<void(std::uint8_t code, bool isDown)> watcher_;
  Pace pace_;
  unsigned int random_ = 1;
};

}  // namespace kivra::e2e
