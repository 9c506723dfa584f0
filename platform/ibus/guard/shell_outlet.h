#pragma once

#include <xkbcommon/xkbcommon.h>

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <variant>

#include "platform/guard/process/seat.h"
#include "platform/ibus/guard/engine.h"
#include "platform/ibus/guard/layout_markers.h"
#include "platform/wayland/client/compiled_map.h"
#include "platform/wayland/guard/key_outlet.h"

namespace kivra::ibus {

/// Where keys go on to GNOME Shell. What hands have typed is answered; what is typed for the
/// program is forwarded. The shell gives applications the modifiers that hands hold, whatever is
/// forwarded: it is told of others by markers, and what hands hold against a script is waited for.
class ShellOutlet : public wayland::KeyOutlet {
 public:
  explicit ShellOutlet(Engine& engine);
  ~ShellOutlet() override;
  ShellOutlet(const ShellOutlet&) = delete;
  ShellOutlet& operator=(const ShellOutlet&) = delete;

  void setCompiledMap(wayland::CompiledMap map) { map_ = std::move(map); }

  /// A field has the focus: what could not be sent without one is.
  void enter() { hold(0); }
  /// Hands hold these modifiers from now on.
  void setHands(std::uint32_t modifiers);
  /// A key that is answered when it is passed or dropped.
  void take(AskedKey key) { asked_.push_back(std::move(key)); }
  /// The next `key` is that of the hands; `drop` for one that does not go on.
  void beginPass() { isPassing_ = true; }
  void endPass() { isPassing_ = false; }
  void drop(const guard::SeatKey& key) { answer(key.evdev, key.isDown, true); }

  void key(std::uint16_t evdev, bool isDown) override;
  void modifiers(const wayland::Modifiers& modifiers) override;
  bool setMap(const std::string& /*text*/) override { return false; }
  void commit(std::uint32_t scalar) override;

  LayoutMarkers& layouts() { return layouts_; }

  /// Sends what had to wait, as far as its time has come; called before the guard waits.
  void flush();
  /// Readable when `flush` is to be called.
  int fd() const { return timer_; }

 private:
  struct Answer {
    AskedKey key;
    bool isConsumed = false;
  };
  struct TypedKey {
    std::uint16_t evdev = 0;
    bool isDown = true;
  };
  struct Text {
    std::string text;
  };
  struct Layout {
    std::uint32_t group = 0;
  };
  /// What is sent, with the modifiers that it is to have.
  struct Output {
    std::variant<Answer, TypedKey, Text, Layout> what;
    std::uint32_t modifiers = 0;
  };

  void answer(std::uint16_t evdev, bool isDown, bool isConsumed);
  void add(Output output);
  void play();
  bool hasToWait(const Output& output);
  void send(const Output& output);
  void hold(std::uint32_t wanted);
  void forward(std::uint16_t evdev, bool isDown, std::uint32_t state);
  void forwardMarker(std::uint16_t evdev, std::uint32_t masks);
  xkb_keysym_t symbol(std::uint16_t evdev) const;
  void setTimer(bool isOn) const;

  Engine& engine_;
  int timer_;
  wayland::CompiledMap map_;
  LayoutMarkers layouts_;
  std::deque<AskedKey> asked_;  // not answered yet, in the order of their typing
  std::deque<Output> outputs_;  // not sent yet
  bool isPassing_ = false;
  std::uint32_t hands_ = 0;  // modifiers that hands hold
  std::uint32_t typed_ = 0;  // modifiers of what goes on
  std::uint32_t held_ = 0;   // modifiers that the shell gives applications for us
  std::optional<std::chrono::steady_clock::time_point> waitsUntil_;
};

}  // namespace kivra::ibus
