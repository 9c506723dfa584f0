#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace kivra::e2e {

/// A keyboard device of a test's X server, to be typed on as hands do. Key codes are X's.
class Keyboard {
 public:
  virtual ~Keyboard() = default;

  virtual void key(std::uint8_t code, bool isDown) = 0;

  /// Waits until the server has taken in all keys so far: each keyboard is read on its own, in no
  /// order with the others. Throws std::runtime_error when the device is switched off.
  virtual void waitUntilRead() {}
};

/// Each throws std::runtime_error when the server does not answer there.
///
/// A device of Xorg's "inputtest" driver; `socket` is the one of its configuration. It has to be
/// opened anew after the device was switched off and on again.
std::unique_ptr<Keyboard> openXorgKeyboard(const std::string& socket);

/// The keyboard of a viewer of Xvnc, which listens at `socket`: keys go by their place on the
/// keyboard, as from viewers that know the QEMU extended key event.
std::unique_ptr<Keyboard> openVncKeyboard(const std::string& socket);

/// The keys that programs type through XTEST, which no hand does.
std::unique_ptr<Keyboard> openXtestKeyboard(const std::string& display);

}  // namespace kivra::e2e
