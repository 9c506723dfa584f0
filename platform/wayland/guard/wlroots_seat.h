#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "input-method-unstable-v2-client-protocol.h"
#include "platform/guard/process/seat.h"
#include "platform/wayland/client/connection.h"
#include "platform/wayland/guard/field_watch.h"
#include "platform/wayland/guard/key_stream.h"
#include "platform/wayland/client/toplevel_watch.h"
#include "platform/wayland/guard/virtual_keyboard.h"

namespace kivra::wayland {

/// The keyboard of a compositor that lets an input method grab it: every key goes on through a
/// virtual keyboard with the compositor's own key map. The compositor gives the keyboard back when
/// this connection ends.
class WlrootsSeat : public guard::Seat {
 public:
  /// Throws std::runtime_error when the compositor lacks what that needs, or has another input
  /// method.
  WlrootsSeat();
  ~WlrootsSeat() override;
  WlrootsSeat(const WlrootsSeat&) = delete;
  WlrootsSeat& operator=(const WlrootsSeat&) = delete;

  /// Whether the compositor of the environment has what the seat needs.
  static bool isOffered();

  std::vector<int> fds() const override;
  bool dispatch(guard::SeatListener& listener) override;
  bool flush() override;

  const KeyMap& keyMap() const override { return stream_.keyMap(); }
  std::uint32_t group() override { return stream_.group(); }
  bool isCapsLocked() override { return stream_.isCapsLocked(); }

  void pass(const guard::SeatKey& key) override;
  void drop(const guard::SeatKey& /*key*/) override {}
  void type(const guard::Steps& steps) override { stream_.type(steps); }

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

  void takeMap(std::uint32_t format, std::int32_t fd, std::uint32_t size);
  void takeKey(std::uint32_t serial, std::uint32_t time, std::uint32_t key, std::uint32_t state);
  void takeModifiers(std::uint32_t serial, std::uint32_t depressed, std::uint32_t latched,
                     std::uint32_t locked, std::uint32_t group);
  void takeRepeatInfo(std::int32_t rate, std::int32_t delay);
  void handKey(const guard::SeatKey& key);
  void releaseLost(std::uint32_t modifiers);
  void tellFocus();

  Connection connection_;
  Owned<wl_seat> seat_;
  ToplevelWatch toplevels_;
  VirtualKeyboard keyboard_;
  KeyStream stream_{keyboard_};
  std::optional<ModifierState> hands_;  // at the keyboard that the keys come from
  guard::KeySet held_;                  // there
  Owned<zwp_input_method_v2> method_;
  Owned<zwp_input_method_keyboard_grab_v2> grab_;
  Announced announced_;
  FieldWatch field_;
  bool isRefused_ = false;
  guard::SeatListener* listener_ = nullptr;  // while it is told what has come
};

}  // namespace kivra::wayland
