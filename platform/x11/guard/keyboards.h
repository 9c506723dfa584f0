#pragma once

#include <X11/Xlib.h>
#include <X11/extensions/XInput2.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/x11/guard/device_keys.h"

namespace kivra::x11 {

/// The user's keyboard devices: all of the session's but XTEST's own. A device that is held floats:
/// its keys come here and nowhere else, until the guard lets go of it or ends.
class Keyboards {
 public:
  struct Changes {
    std::vector<int> taken;  ///< devices that are held from now on
    std::vector<int> lost;   ///< unplugged, or switched off
    bool isBusy = false;     ///< another program holds one; `update` is worth another try
    bool isNoneLeft = false;
  };

  Keyboards(Display* display, int xtest);

  /// Holds every keyboard that can be held and is not.
  Changes update();
  /// Gives all keyboards back.
  void release();

  bool isHeld(int device) const { return held_.contains(device); }
  const std::map<int, KeyCodes>& held() const { return held_; }
  /// A device that is lost is held no more.
  void forget(int device) { held_.erase(device); }
  /// The keys that are down on a held device; the seat keeps the account.
  KeyCodes& keys(int device) { return held_[device]; }

 private:
  bool grab(int device);
  bool isHeldByOther(const XIDeviceInfo& device);

  Display* display_;
  int master_ = 0;
  std::map<int, KeyCodes> held_;
};

}  // namespace kivra::x11
