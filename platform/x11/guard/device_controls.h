#pragma once

#include <X11/Xlib.h>

namespace kivra::x11 {

/// The session's keyboard controls (how keys repeat, slow, bounce, sticky and mouse keys), which
/// the server keeps for each device, and which others set for the session while keyboards float.
class DeviceControls {
 public:
  explicit DeviceControls(Display* display) : display_(display) {}

  /// A keyboard that is held filters what hands do: slow and bounce keys. Sticky and mouse keys
  /// would act on the keyboard alone, and its keys would be lost to them.
  void giveTo(int keyboard) const;

  /// XTEST's keys come from hands that have been filtered already, or from a script, of which
  /// nothing may be lost.
  void giveToXtest(int keyboard) const;

  /// As the session has them, for a device that is not held any more.
  void giveBack(int device) const;

 private:
  void give(int device, unsigned int without) const;

  Display* display_;
};

}  // namespace kivra::x11
