#pragma once

#include <X11/Xlib.h>

#include <string>

namespace kivra::e2e {

/// A look at single keyboards of a server, as another program has it. Devices go by their names;
/// one that is not there throws std::runtime_error.
class KeyboardDevices {
 public:
  explicit KeyboardDevices(const std::string& display);
  ~KeyboardDevices();
  KeyboardDevices(const KeyboardDevices&) = delete;
  KeyboardDevices& operator=(const KeyboardDevices&) = delete;

  int id(const std::string& name) const;
  /// The device that it types into; 0 while it floats.
  int master(const std::string& name) const;

  /// The modifiers that are locked on this device, and whether its lamp of this name is on.
  unsigned int locks(const std::string& name) const;
  bool isLit(const std::string& name, const char* lamp) const;

  /// Locks modifiers for the session, as programs do that switch Num Lock on.
  void lock(unsigned int modifiers, bool isOn);

  /// Holds a device, so that nobody else can; answers whether it could be had.
  bool grab(const std::string& name);
  void letGo(const std::string& name);

 private:
  Display* display_;
};

}  // namespace kivra::e2e
