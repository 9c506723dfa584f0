#pragma once

#include <bitset>
#include <cstdint>

#include "platform/x11/modifier_map.h"

namespace kivra::x11 {

/// The keys that the user holds down, in the order of the event stream.
class KeyboardState {
 public:
  void setMap(const ModifierMap& map) { map_ = &map; }

  void press(std::uint8_t code) { down_.set(code); }
  void release(std::uint8_t code) { down_.reset(code); }
  bool isDown(std::uint8_t code) const { return down_.test(code); }
  const std::bitset<256>& down() const { return down_; }

  /// The event flags of the modifiers held.
  std::uint64_t flags() const {
    std::uint64_t flags = 0;
    for (std::size_t code = 0; code < down_.size(); ++code) {
      if (down_.test(code)) flags |= map_->flag(static_cast<std::uint8_t>(code));
    }
    return flags;
  }

 private:
  const ModifierMap* map_ = nullptr;
  std::bitset<256> down_;
};

}  // namespace kivra::x11
