#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "layout/keycode_map.h"
#include "platform/workspace.h"
#include "settings/settings_store.h"

namespace kivra {

/// Follows, under the extended rules, what the user types behind the last automatic change: so that
/// its undo can go back over it, or knows that the cursor is no longer there.
class TypedSince {
 public:
  TypedSince(const SettingsStore& settings, const KeycodeMap& map, Workspace& workspace)
      : settings_(settings), map_(map), workspace_(workspace) {}

  /// A change was made; the cursor is right behind it.
  void begin();

  void typed(std::uint16_t keyCode, bool shift);

  /// The cursor may be anywhere from now on.
  void lose();

  /// Whether the change was made, and all since, under the extended rules.
  bool isFollowed() const { return settings_.extendedRules() && state_ != State::notFollowed; }
  bool isWithinReach() const;

  /// What was typed, a character for each key: in the layout of that moment, which may differ from
  /// the one that the undo selects.
  const std::vector<std::string>& characters() const { return characters_; }

 private:
  enum class State { notFollowed, within, lost };

  void erase();
  std::optional<std::string> characterOf(std::uint16_t keyCode, bool shift) const;

  // More keys than anybody wants to see typed again.
  static constexpr std::size_t farthest = 200;

  const SettingsStore& settings_;
  const KeycodeMap& map_;
  Workspace& workspace_;
  State state_ = State::notFollowed;
  std::uint64_t place_ = 0;
  std::vector<std::string> characters_;
};

}  // namespace kivra
