#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/guard/process/seat.h"
#include "platform/wayland/client/connection.h"
#include "platform/wayland/guard/field_watch.h"
#include "platform/wayland/guard/key_stream.h"

namespace kivra::wayland {

/// What the seats of all compositors do alike that let an input method grab the keyboard: keys come
/// from the grab, and go on as a stream of keys.
class GrabSeat : public guard::Seat {
 public:
  GrabSeat(const GrabSeat&) = delete;
  GrabSeat& operator=(const GrabSeat&) = delete;

  std::vector<int> fds() const override;
  bool dispatch(guard::SeatListener& listener) override;
  bool flush() override;

  const KeyMap& keyMap() const override { return stream_.keyMap(); }
  std::uint32_t group() override { return stream_.group(); }
  bool isCapsLocked() override { return stream_.isCapsLocked(); }

  void pass(const guard::SeatKey& key) override;
  void drop(const guard::SeatKey& /*key*/) override {}
  void type(const guard::Steps& steps) override { stream_.type(steps); }

 protected:
  /// The outlet is asked for nothing before a map has come.
  explicit GrabSeat(KeyOutlet& outlet) : stream_(outlet) {}

  /// Tells the listener of a key.
  virtual void hand(const guard::SeatKey& key);
  /// All that the compositor has sent has been taken in.
  virtual void settle() {}

  // What is told of the field and of the window that have the focus.
  virtual bool takeMove() = 0;
  virtual bool isSecret() const = 0;

  // The events of the grab.
  void takeMap(std::uint32_t format, std::int32_t fd, std::uint32_t size);
  void takeKey(std::uint32_t serial, std::uint32_t time, std::uint32_t key, std::uint32_t state);
  void takeModifiers(std::uint32_t serial, std::uint32_t depressed, std::uint32_t latched,
                     std::uint32_t locked, std::uint32_t group);
  void takeRepeatInfo(std::int32_t rate, std::int32_t delay);

  /// The hands hold nothing any more, as far as the grab goes.
  void releaseHeld();

  // NOLINTBEGIN(*-non-private-*): these are what the seats are made of
  Connection connection_;
  KeyStream stream_;
  std::optional<ModifierState> hands_;  // at the keyboard that the keys come from
                                        // NOLINTEND(*-non-private-*)

 private:
  void turn(const guard::SeatKey& key);
  void releaseLost(std::uint32_t modifiers);
  void tellFocus();

  guard::KeySet held_;                       // at that keyboard
  guard::SeatListener* listener_ = nullptr;  // while it is told what has come
};

}  // namespace kivra::wayland
