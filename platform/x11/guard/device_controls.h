#pragma once

#include <X11/Xlib.h>

#include <functional>

namespace kivra::x11 {

/// The session's keyboard controls (how keys repeat, slow, bounce, sticky and mouse keys). The
/// server keeps them for each device, and sets those of the session for the devices that do not
/// float. While keyboards are held, slow and bounce keys act on them alone, since hands have been
/// filtered before XTEST types and nothing of a script may be lost; sticky and mouse keys act on
/// XTEST alone.
class DeviceControls {
 public:
  explicit DeviceControls(Display* display) : display_(display) {}

  /// Keeps the session's filters from XTEST's keys. To be called again when the session's controls
  /// have changed.
  void takeFilters();

  /// Gives a keyboard that is held the session's controls and filters.
  void giveTo(int keyboard) const;

  /// Gives the filters back to the session, and to all keyboards that are not held any more.
  void giveFiltersBack() const;

  /// What an ended guard has left to a keyboard counts as the session's.
  void findFiltersOf(int keyboard);

 private:
  void change(int device, const std::function<void(unsigned int& enabled)>& adjust) const;
  unsigned int enabledOn(int device) const;

  Display* display_;
  unsigned int filters_ = 0;  // XkbSlowKeysMask, XkbBounceKeysMask: the session's
};

}  // namespace kivra::x11
