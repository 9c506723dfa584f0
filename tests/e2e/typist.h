#pragma once

#include <X11/Xlib.h>

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

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

/// A person at the keyboard: presses keys at an even pace through XTEST, each character with the
/// key that gives it in the English layout, whatever layout is selected.
class Typist {
 public:
  explicit Typist(const std::string& display);
  ~Typist();
  Typist(const Typist&) = delete;
  Typist& operator=(const Typist&) = delete;

  /// The time between a press and its release, and from there to the next press.
  void setPace(std::chrono::microseconds hold, std::chrono::microseconds gap);

  void type(std::string_view text);
  void tap(std::uint8_t code);
  void press(std::uint8_t code);
  void release(std::uint8_t code);

  /// The keys held while the last is tapped.
  void chord(const std::vector<std::uint8_t>& codes);
  void click();

  /// Lets the server serve nobody else meanwhile; keys are typed all the same.
  void holdServer();
  void letServerGo();

  /// Adds a pointer and a keyboard beside the ones that every session has, and removes them again.
  void addMasterDevices(std::string name);
  void removeMasterDevices(const std::string& name);

  /// Selects an XKB group, as a desktop's own switcher does.
  void selectGroup(unsigned int group);
  unsigned int group();

 private:
  void send(std::uint8_t code, bool down);
  void pause(std::chrono::microseconds duration);

  struct Key {
    std::uint8_t code = 0;
    bool shift = false;
  };

  Display* display_;
  std::map<char, Key> keys_;
  std::chrono::microseconds hold_{1000};
  std::chrono::microseconds gap_{9000};
  std::chrono::steady_clock::time_point next_;
};

}  // namespace kivra::e2e
