#pragma once

#include <cstdint>

#include "input-method-unstable-v2-client-protocol.h"
#include "platform/wayland/client/toplevel_watch.h"
#include "platform/wayland/guard/field_watch.h"
#include "platform/wayland/guard/grab_seat.h"
#include "platform/wayland/guard/virtual_keyboard.h"

namespace kivra::wayland {

/// The keyboard of a wlroots compositor: every key goes on through a virtual keyboard with the
/// compositor's own key map, whatever window has the focus. The compositor gives the keyboard back
/// when this connection ends.
class WlrootsSeat : public GrabSeat {
 public:
  /// Throws std::runtime_error when the compositor lacks what that needs, or has another input
  /// method.
  WlrootsSeat();
  ~WlrootsSeat() override;

  /// Whether the compositor of the environment has what the seat needs.
  static bool isOffered();

 protected:
  bool takeMove() override;
  bool isSecret() const override { return !toplevels_.isAnyActive() || field_.isSecret(); }

 private:
  /// What the input method is told of the field that has the focus; holds from `done` on.
  struct Announced {
    bool isInField = false;
    FieldWatch::Content content;
  };

  void activate() { announced_ = {.isInField = true, .content = {}}; }
  void deactivate() { announced_.isInField = false; }
  void takeContent(std::uint32_t hints, std::uint32_t purpose);
  void takeField();
  void refuse() { isRefused_ = true; }

  Owned<wl_seat> seat_;
  ToplevelWatch toplevels_;
  VirtualKeyboard keyboard_;
  Owned<zwp_input_method_v2> method_;
  Owned<zwp_input_method_keyboard_grab_v2> grab_;
  Announced announced_;
  FieldWatch field_;
  bool isRefused_ = false;
};

}  // namespace kivra::wayland
