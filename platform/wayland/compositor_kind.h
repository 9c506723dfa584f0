#pragma once

#include <memory>
#include <string>

#include "platform/guard/guarded_keyboard.h"
#include "platform/wayland/client/connection.h"
#include "platform/wayland/client/window_watch.h"

namespace kivra::wayland {

/// What compositors that the program can work in have each in their own way.
class CompositorKind {
 public:
  virtual ~CompositorKind() = default;

  /// Why the compositor does not serve, a line for the user; empty when it does.
  virtual std::string problem(const Connection& compositor) const = 0;
  /// The user wants that to be changed, as far as the program can.
  virtual void request() {}

  virtual std::unique_ptr<WindowWatch> watchWindows(Connection& compositor) const = 0;
  virtual guard::GuardedKeyboard::Starter guardStarter() const = 0;
  /// Another program is the input method.
  virtual bool isInputMethodTaken(Connection& compositor, wl_seat* seat) const = 0;
};

/// The compositor of the environment with its kind.
struct ServingCompositor {
  std::unique_ptr<Connection> connection;
  std::unique_ptr<CompositorKind> kind;
};

/// That of the environment, if it is of a kind that can serve; else both are null.
ServingCompositor servingCompositor();

}  // namespace kivra::wayland
