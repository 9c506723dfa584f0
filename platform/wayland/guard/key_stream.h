#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/guard/process/seat.h"
#include "platform/guard/process/seat_keys.h"
#include "platform/wayland/guard/key_outlet.h"
#include "platform/wayland/guard/repeat_watch.h"
#include "platform/wayland/guard/spare_keys.h"
#include "platform/xkb/key_map.h"

namespace kivra::wayland {

/// The keys that go on, each followed by what it makes of modifiers, locks and layout, as from a
/// keyboard that the hands type on directly.
class KeyStream {
 public:
  explicit KeyStream(KeyOutlet& outlet) : outlet_(outlet) {}

  /// The hands' keyboard has this map, or the compositor may have put another in the place of the
  /// one that was sent: it goes out once more before the next key. A map that cannot be read is
  /// left out of account.
  void setMap(const std::string& text);
  const CompiledMap& map() const { return map_; }

  const KeyMap& keyMap() const { return keyMap_; }
  std::uint32_t group() const { return state_ ? state_->modifiers().group : 0; }
  bool isCapsLocked() const;

  const guard::KeySet& down() const { return down_; }
  void send(std::uint16_t evdev, bool isDown);
  void type(const guard::Steps& steps);
  /// Lets go of every key that is down.
  void release();

  /// The hands' keyboard has got other modifiers than its keys explain: locks and a layout that
  /// others have set, and keys held that never came.
  void follow(const Modifiers& explained, const Modifiers& told);

  RepeatWatch& repeats() { return repeats_; }
  const RepeatWatch& repeats() const { return repeats_; }

 private:
  void sendMap();
  void sendModifiers();
  void bindCharacters(const guard::Steps& steps);

  KeyOutlet& outlet_;
  std::string mapText_;
  CompiledMap map_;
  KeyMap keyMap_;
  SpareKeys spares_;
  std::optional<ModifierState> state_;  // there is one as soon as there is a map
  bool isMapDue_ = false;
  Modifiers sent_;
  std::uint32_t foreign_ = 0;  // modifiers held on keys that never came
  guard::KeySet down_;
  RepeatWatch repeats_;
};

}  // namespace kivra::wayland
