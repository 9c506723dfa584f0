#include "platform/wayland/guard/spare_keys.h"

#include <algorithm>
#include <iomanip>
#include <sstream>

#include "platform/xkb/key_map.h"
#include "platform/xkb/virtual_keys.h"

namespace kivra::wayland {

SpareKeys::SpareKeys(xkb_keymap* map) {
  for (std::uint16_t key = 0; key < KeyMap::keyLimit; ++key) {
    const char* const name = xkb_keymap_key_get_name(map, xkbCode(key));
    const auto isFree = xkb_keymap_num_layouts_for_key(map, xkbCode(key)) == 0;
    // A code that the table of real keys knows may be pressed by somebody.
    if (name != nullptr && isFree && !virtualKey(key)) {
      spares_.push_back({.evdev = key, .name = name});
    }
  }
  // The last one stays without a character, for a key that does nothing.
  if (!spares_.empty()) spares_.pop_back();
}

bool SpareKeys::bind(std::uint32_t scalar) {
  if (spares_.empty()) return false;
  auto spare = std::ranges::find(spares_, scalar, &Spare::scalar);
  const auto isNew = spare == spares_.end();
  if (isNew) spare = std::ranges::min_element(spares_, {}, &Spare::lastUse);
  spare->scalar = scalar;
  spare->lastUse = ++uses_;
  return isNew;
}

std::optional<std::uint16_t> SpareKeys::find(std::uint32_t scalar) const {
  const auto spare = std::ranges::find(spares_, scalar, &Spare::scalar);
  return spare == spares_.end() ? std::nullopt : std::optional(spare->evdev);
}

std::string SpareKeys::extended(const std::string& mapText) const {
  std::ostringstream keys;
  keys << std::hex << std::uppercase << std::setfill('0');
  for (const auto& spare : spares_) {
    if (spare.scalar == 0) continue;
    keys << "\nkey <" << spare.name << "> { [ U" << std::setw(4) << spare.scalar << " ] };";
  }
  auto text = mapText;
  const auto begin = text.find('{', text.find("xkb_symbols"));
  if (begin != std::string::npos) text.insert(begin + 1, keys.str());
  return text;
}

}  // namespace kivra::wayland
