#pragma once

#include "platform/session/kwin_input_method.h"
#include "platform/wayland/compositor_kind.h"

namespace kivra::wayland {

/// KWin, which starts the guard itself once its configuration names it.
class KwinKind : public CompositorKind {
 public:
  static bool isServing(const Connection& compositor) {
    return compositor.serverName().starts_with("kwin_wayland");
  }

  std::string problem(const Connection& compositor) const override;
  void request() override { inputMethod_.takeOver(); }
  std::unique_ptr<WindowWatch> watchWindows(Connection& compositor) const override;
  guard::GuardedKeyboard::Starter guardStarter() const override {
    return guard::GuardedKeyboard::Starter::desktop;
  }
  bool isInputMethodTaken(Connection& /*compositor*/, wl_seat* /*seat*/) const override {
    return !inputMethod_.isOurs() && !inputMethod_.current().empty();
  }

 private:
  KwinInputMethod inputMethod_;
};

}  // namespace kivra::wayland
