#include "platform/x11/modifier_map.h"

#include <X11/XKBlib.h>
#include <X11/keysym.h>

#include <memory>

#include "platform/x11/x_display.h"

namespace kivra::x11 {

namespace {

// What laptops report for their Fn key where they report it at all; Xlib's own header with the name
// is not installed everywhere.
constexpr KeySym wakeUpSymbol = 0x1008FF2B;

std::uint64_t flagOf(KeySym symbol) {
  switch (symbol) {
    case XK_Shift_L:
    case XK_Shift_R:
      return event_flags::shift;
    case XK_Control_L:
    case XK_Control_R:
      return event_flags::control;
    case XK_Alt_L:
    case XK_Alt_R:
    case XK_Meta_L:
    case XK_Meta_R:
    case XK_ISO_Level3_Shift:
      return event_flags::option;
    case XK_Super_L:
    case XK_Super_R:
    case XK_Hyper_L:
    case XK_Hyper_R:
      return event_flags::command;
    case XK_Menu:
    case wakeUpSymbol:
      return event_flags::fn;
    default:
      return 0;
  }
}

bool isLock(KeySym symbol) {
  return symbol == XK_Caps_Lock || symbol == XK_Num_Lock || symbol == XK_Scroll_Lock ||
         symbol == XK_Shift_Lock;
}

}  // namespace

ModifierMap::ModifierMap(Display* display) {
  const std::unique_ptr<XModifierKeymap, int (*)(XModifierKeymap*)> map(
      XGetModifierMapping(display), XFreeModifiermap);
  std::array<unsigned int, keyCodeLimit> masks{};
  if (map) {
    for (int i = 0; i < 8 * map->max_keypermod; ++i) {
      masks[map->modifiermap[i]] |= 1U << (i / map->max_keypermod);
    }
  }
  for (int code = firstKeyCode; code < keyCodeLimit; ++code) {
    const auto key = static_cast<std::uint8_t>(code);
    addKey(key, XkbKeycodeToKeysym(display, key, 0, 0), masks[key]);
  }
}

void ModifierMap::addKey(std::uint8_t code, KeySym symbol, unsigned int mask) {
  flags_[code] = flagOf(symbol);
  isModifier_[code] = flags_[code] != 0 || isLock(symbol);
  const auto keepFirst = [code](std::uint8_t& key) {
    if (key == 0) key = code;
  };
  // The map lists keys that no keyboard has (Meta, Hyper): only bound ones count for the masks.
  if (mask == 0) return;
  if (symbol == XK_Shift_L || symbol == XK_Shift_R) keepFirst(shiftKey_);
  if (symbol == XK_Control_L || symbol == XK_Control_R) keepFirst(controlKey_);
  if (symbol == XK_Caps_Lock) keepFirst(capsLockKey_);
  if (symbol == XK_Num_Lock) numLockMask_ |= mask;
  if (symbol == XK_Scroll_Lock) scrollLockMask_ |= mask;
  if (symbol == XK_Super_L || symbol == XK_Super_R) superMask_ |= mask;
  if (symbol == XK_Alt_L || symbol == XK_Alt_R) {
    altMask_ |= mask;
    keepFirst(altKey_);
  }
}

unsigned int ModifierMap::mask(std::uint64_t flags) const {
  unsigned int mask = 0;
  if ((flags & event_flags::shift) != 0) mask |= ShiftMask;
  if ((flags & event_flags::control) != 0) mask |= ControlMask;
  if ((flags & event_flags::option) != 0) mask |= altMask_;
  if ((flags & event_flags::command) != 0) mask |= superMask_;
  return mask;
}

std::vector<unsigned int> ModifierMap::lockCombinations() const {
  std::vector<unsigned int> combinations = {0};
  for (const unsigned int lock : {unsigned{LockMask}, numLockMask_, scrollLockMask_}) {
    if (lock == 0) continue;
    const auto count = combinations.size();
    for (std::size_t i = 0; i < count; ++i) combinations.push_back(combinations[i] | lock);
  }
  return combinations;
}

}  // namespace kivra::x11
