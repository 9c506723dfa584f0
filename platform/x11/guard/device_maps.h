#pragma once

#include <X11/Xlib.h>

#include <string>

struct xkb_context;

namespace kivra::x11 {

/// The keyboard maps of single devices.
class DeviceMaps {
 public:
  explicit DeviceMaps(Display* display);
  ~DeviceMaps();
  DeviceMaps(const DeviceMaps&) = delete;
  DeviceMaps& operator=(const DeviceMaps&) = delete;

  /// A device's whole map in xkb's text form, which tells maps apart; empty when it has none.
  std::string text(int device) const;

  /// Gives one device the map of another.
  void copy(int from, int to) const;

 private:
  Display* display_;
  xkb_context* context_;
};

}  // namespace kivra::x11
