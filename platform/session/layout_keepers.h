#pragma once

#include <cstdint>
#include <memory>

#include "platform/io/background_worker.h"

namespace kivra {

/// The programs of a session that keep the selected keyboard layout themselves, and so ignore or
/// undo an XKB group that another program locks. Tells those that run, found by the names that they
/// own on the session bus, what has been selected.
class LayoutKeepers {
 public:
  explicit LayoutKeepers(CallOnMainThread callOnMainThread);

  /// Has the keepers select the layout of the XKB group. Returns at once, tells them in the order
  /// of the calls, and waits for nobody's answer; without a session bus nothing is told.
  void selectGroup(std::uint32_t group);

 private:
  class Bus;

  std::shared_ptr<Bus> bus_;
  BackgroundWorker worker_;
};

}  // namespace kivra
