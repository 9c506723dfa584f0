#pragma once

#include <memory>

#include "platform/guard/process/guard_process.h"

namespace kivra::wayland {

/// Compositors give the keyboard back and let go of the keys by themselves.
class NoRescue : public guard::KeyboardRescue {
 public:
  int fd() const override { return -1; }
  bool readEvents() override { return true; }
  void letGoOfKeys() override {}
};

/// A compositor as a guard's display, by the seat that serves it.
template <class Seat>
guard::GuardDisplay displayOf() {
  return {.openSeat = [] { return std::make_unique<Seat>(); },
          .openRescue = [] { return std::make_unique<NoRescue>(); }};
}

}  // namespace kivra::wayland
