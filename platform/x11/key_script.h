#pragma once

#include <bitset>
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "platform/x11/character_keys.h"
#include "platform/x11/guard_protocol.h"
#include "platform/x11/modifier_map.h"

namespace kivra::x11 {

/// One press or release to be sent through XTEST.
struct ScriptedKey {
  std::uint8_t code = 0;
  bool down = true;
  std::int64_t userData = 0;

  bool operator==(const ScriptedKey&) const = default;
};

/// Turns the keys that the program posts into presses and releases that come out the same whatever
/// the user holds down: held modifiers and Caps Lock are taken away at the start and given back at
/// the end, and each key gets exactly the modifiers that it was posted with. A Command chord
/// becomes the desktop's own shortcut.
class KeyScript {
 public:
  /// What the keyboard is like when the script is played.
  struct Situation {
    const ModifierMap& modifiers;
    std::bitset<256> now;   ///< keys that are down
    std::bitset<256> then;  ///< keys whose modifiers are to be down afterwards
    bool capsLock = false;
    /// The key for a scalar; nothing when there is none.
    std::function<std::optional<CharacterKey>(std::uint32_t scalar)> characterKey;
  };

  explicit KeyScript(Situation situation) : situation_(std::move(situation)) {}

  std::vector<ScriptedKey> write(const std::vector<PostedKey>& keys);

 private:
  void tapCapsLock(std::int64_t userData);
  void giveModifiers(const std::bitset<256>& keys, bool down, std::int64_t userData);
  void add(const PostedKey& key);
  void addCharacter(const PostedKey& key);
  void stroke(std::uint8_t code, bool down, std::uint64_t flags, std::int64_t userData);
  void setModifiers(std::uint64_t flags, std::int64_t userData);
  void send(std::uint8_t code, bool down, std::int64_t userData);

  Situation situation_;
  std::uint64_t flags_ = 0;  // modifiers that the script holds
  std::vector<ScriptedKey> script_;
};

}  // namespace kivra::x11
