#pragma once

#include <chrono>
#include <cstdint>
#include <vector>

#include "platform/xkb/key_map.h"

namespace kivra::guard {

/// A key as the user's keyboard gave it. On each keyboard a key is pressed and let go of by turns.
struct SeatKey {
  std::uint16_t evdev = 0;  ///< Linux input event code
  bool isDown = true;
  /// The keyboard repeats the key. How often the application sees it repeated may differ.
  bool isRepeat = false;
  std::uint32_t timeMs = 0;  ///< when it was typed, by the display's clock

  bool operator==(const SeatKey&) const = default;
};

/// One step of what is typed for the program. Steps take effect in their order, and in order with
/// the keys that pass.
struct Step {
  enum class Kind : std::uint8_t { press, release, selectGroup, character, pause };

  Kind kind = Kind::press;
  std::uint32_t value = 0;  ///< evdev code, group, scalar, or milliseconds

  bool operator==(const Step&) const = default;
};
using Steps = std::vector<Step>;

/// What a seat tells the guard, as it happens.
class SeatListener {
 public:
  virtual ~SeatListener() = default;

  /// Has come, has not gone on.
  virtual void key(const SeatKey& key) = 0;
  /// Another program typed a key: what stands before the cursor is not known any more.
  virtual void foreignKey() = 0;
  virtual void button(bool isRight) = 0;
  virtual void focusMoved() = 0;
  /// Locked, a password, nobody has the focus, another program holds the keyboard: while it lasts
  /// every key passes at once, nothing is reported and nothing is kept.
  virtual void secrecyChanged(bool isSecret) = 0;
  /// Both may be told as long as it is so.
  virtual void keyboardMissing() = 0;
  virtual void keyboardBusy() = 0;
};

/// A display whose keyboard the guard is: keys come from it and go on through it. `pass` and `type`
/// take effect in the order of the calls.
class Seat {
 public:
  virtual ~Seat() = default;

  /// Descriptors to wait on for input.
  virtual std::vector<int> fds() const = 0;
  /// Tells the listener what has come, without waiting. False when the display is gone.
  virtual bool dispatch(SeatListener& listener) = 0;
  /// Hands over what has been passed and typed; called before the guard waits.
  /// Answers whether input has been read meanwhile, of which the descriptors do not tell any more.
  virtual bool flush() = 0;

  virtual const KeyMap& keyMap() const = 0;
  /// The group in effect after all that went on.
  virtual std::uint32_t group() = 0;
  /// Caps Lock is on, likewise.
  virtual bool isCapsLocked() = 0;

  /// Goes on as typed.
  virtual void pass(const SeatKey& key) = 0;
  /// Does not go on.
  virtual void drop(const SeatKey& key) = 0;
  /// How long an application needs between keys and a character that is none: it is told of both by
  /// different ways, and may take the later first. Zero where characters are keys as well.
  virtual std::chrono::milliseconds pauseBeforeCharacters() const { return {}; }
  /// Types the steps. There are no pauses among them: those are the guard's.
  virtual void type(const Steps& steps) = 0;
};

}  // namespace kivra::guard
