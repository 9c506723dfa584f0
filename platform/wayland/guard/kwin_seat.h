#pragma once

#include <cstdint>
#include <string>

#include "input-method-unstable-v1-client-protocol.h"
#include "platform/wayland/guard/field_watch.h"
#include "platform/wayland/guard/grab_seat.h"
#include "platform/wayland/guard/key_outlet.h"

namespace kivra::wayland {

/// The keyboard of KWin, which starts its input method itself: keys come while a text field has the
/// focus, and go on through the context that stands for the field.
class KwinSeat : public GrabSeat, private KeyOutlet {
 public:
  /// Throws std::runtime_error when the compositor does not take this process for its input method.
  KwinSeat();
  ~KwinSeat() override;

 protected:
  bool takeMove() override { return field_.takeMove(); }
  /// KWin shows no keys but those for a field.
  bool isSecret() const override { return !context_ || field_.isSecret(); }

 private:
  void activate(zwp_input_method_context_v1* context);
  void deactivate(zwp_input_method_context_v1* context);
  void leave();
  void takeContent(std::uint32_t hints, std::uint32_t purpose);
  void takeOverruled(std::uint32_t serial, std::uint32_t depressed, std::uint32_t latched,
                     std::uint32_t locked, std::uint32_t group);

  void key(std::uint16_t evdev, bool isDown) override;
  void modifiers(const Modifiers& modifiers) override;
  bool setMap(const std::string& /*text*/) override { return false; }
  void commit(std::uint32_t scalar) override;

  Owned<zwp_input_method_v1> method_;
  Owned<zwp_input_method_context_v1> context_;
  Owned<wl_keyboard> grab_;
  FieldWatch field_;
  std::uint32_t serial_ = 0;
  Modifiers told_;     // by KWin
  Modifiers current_;  // of what goes on
};

}  // namespace kivra::wayland
