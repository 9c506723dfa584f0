#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>
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

  std::chrono::milliseconds pauseBeforeCharacters() const override;

 protected:
  void hand(const guard::SeatKey& key) override;
  void settle() override;
  bool takeMove() override { return field_.takeMove(); }
  /// KWin shows no keys but those for a field, from when the grab has its map.
  bool isSecret() const override { return !isGrabbed_ || field_.isSecret(); }

 private:
  /// Modifiers that KWin has not yet made its own.
  struct Underway {
    Modifiers modifiers;
    Owned<wl_callback> answer;
  };

  void activate(zwp_input_method_context_v1* context);
  void deactivate(zwp_input_method_context_v1* context);
  void leave();
  void takeContent(std::uint32_t hints, std::uint32_t purpose);
  void takeGrabsMap(std::uint32_t format, std::int32_t fd, std::uint32_t size);
  void takeModifiersBehindKey(std::uint32_t serial, std::uint32_t depressed, std::uint32_t latched,
                              std::uint32_t locked, std::uint32_t group);
  void takeAnswer(std::uint32_t serial);

  void key(std::uint16_t evdev, bool isDown) override;
  void modifiers(const Modifiers& modifiers) override;
  void sendModifiers();
  bool setMap(const std::string& /*text*/) override { return false; }
  void commit(std::uint32_t scalar) override;

  Owned<zwp_input_method_v1> method_;
  Owned<zwp_input_method_context_v1> context_;
  Owned<wl_keyboard> grab_;
  bool isGrabbed_ = false;
  FieldWatch field_;
  std::optional<guard::SeatKey> last_;  // of those that have come
  Modifiers current_;                   // of what goes on
  std::deque<Underway> underway_;
};

}  // namespace kivra::wayland
