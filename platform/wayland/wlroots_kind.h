#pragma once

#include "platform/wayland/compositor_kind.h"

namespace kivra::wayland {

/// Compositors that give programs the keyboard by wlroots' protocols.
class WlrootsKind : public CompositorKind {
 public:
  static bool isServing(const Connection& compositor);

  std::string problem(const Connection& compositor) const override;
  std::unique_ptr<WindowWatch> watchWindows(Connection& compositor) const override;
  guard::GuardedKeyboard::Starter guardStarter() const override {
    return guard::GuardedKeyboard::Starter::program;
  }
  bool isInputMethodTaken(Connection& compositor, wl_seat* seat) const override;
};

}  // namespace kivra::wayland
