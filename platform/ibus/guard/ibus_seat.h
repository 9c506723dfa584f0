#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/guard/process/seat.h"
#include "platform/guard/process/seat_keys.h"
#include "platform/ibus/client/desktop_watch.h"
#include "platform/ibus/guard/engine.h"
#include "platform/ibus/guard/shell_outlet.h"
#include "platform/wayland/client/connection.h"
#include "platform/wayland/client/keymap_watch.h"
#include "platform/wayland/guard/field_watch.h"
#include "platform/wayland/guard/key_stream.h"

namespace kivra::ibus {

/// The keyboard of GNOME Shell, which asks an engine of IBus's about each key for a text field. A
/// key goes on when it is answered; what is typed for the program is forwarded before that.
class IbusSeat : public guard::Seat, private EngineListener {
 public:
  /// Throws std::runtime_error, with a line for the user, when the session lacks something. Without
  /// the shell's extension no key comes.
  IbusSeat();
  ~IbusSeat() override;
  IbusSeat(const IbusSeat&) = delete;
  IbusSeat& operator=(const IbusSeat&) = delete;

  std::vector<int> fds() const override;
  bool dispatch(guard::SeatListener& listener) override;
  bool flush() override;

  const KeyMap& keyMap() const override { return stream_.keyMap(); }
  std::uint32_t group() override { return stream_.group(); }
  bool isCapsLocked() override { return stream_.isCapsLocked(); }

  void pass(const guard::SeatKey& key) override;
  void drop(const guard::SeatKey& key) override { outlet_.drop(key); }
  void type(const guard::Steps& steps) override { stream_.type(steps); }

 private:
  /// What hands do, as far as keys are asked about.
  struct Hands {
    std::optional<wayland::ModifierState> state;  // there is one as soon as there is a map
    guard::KeySet held;
  };

  void askKey(AskedKey key) override;
  void enterField(std::string_view client) override;
  void leaveField() override;
  void takeContent(const FieldContent& content) override;

  void takeMap();
  void takeDesktop();
  void takeLocks(std::uint32_t state);
  void tellKey(const guard::SeatKey& key);
  void tellFocus();
  void releaseHeld();

  wayland::Connection connection_;
  wayland::KeymapWatch map_;
  Engine engine_;
  DesktopWatch desktop_;
  ShellOutlet outlet_;
  wayland::KeyStream stream_;
  wayland::FieldWatch field_;
  FieldContent content_;  // of the field that has the focus, or had it last
  Hands hands_;
  std::uint32_t window_ = 0;                 // that was in front when this was told last
  guard::SeatListener* listener_ = nullptr;  // while it is told what has come
};

}  // namespace kivra::ibus
