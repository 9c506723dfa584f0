#include "platform/xkb/key_map.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>

#include "platform/xkb/virtual_keys.h"

namespace kivra {

namespace {

std::uint64_t flagOf(xkb_keysym_t symbol) {
  switch (symbol) {
    case XKB_KEY_Shift_L:
    case XKB_KEY_Shift_R:
      return event_flags::shift;
    case XKB_KEY_Control_L:
    case XKB_KEY_Control_R:
      return event_flags::control;
    case XKB_KEY_Alt_L:
    case XKB_KEY_Alt_R:
    case XKB_KEY_Meta_L:
    case XKB_KEY_Meta_R:
    case XKB_KEY_ISO_Level3_Shift:
    case XKB_KEY_ISO_Level5_Shift:
      return event_flags::option;
    case XKB_KEY_Super_L:
    case XKB_KEY_Super_R:
    case XKB_KEY_Hyper_L:
    case XKB_KEY_Hyper_R:
      return event_flags::command;
    case XKB_KEY_Menu:
    case XKB_KEY_XF86WakeUp:  // what laptops report for their Fn key, where they report it at all
      return event_flags::fn;
    default:
      return 0;
  }
}

bool hasSymbols(xkb_keymap* keymap, std::uint16_t key) {
  return xkb_keymap_num_layouts_for_key(keymap, xkbCode(key)) > 0;
}

bool choosesLayout(xkb_keysym_t symbol) {
  return symbol >= XKB_KEY_ISO_Group_Latch && symbol <= XKB_KEY_ISO_Last_Group_Lock;
}

/// Locks, latches and keys that choose the layout.
bool typesNothing(xkb_keysym_t symbol) {
  return (symbol >= XKB_KEY_ISO_Lock && symbol <= XKB_KEY_ISO_Level5_Lock) ||
         (symbol >= XKB_KEY_Shift_L && symbol <= XKB_KEY_Hyper_R) ||
         symbol == XKB_KEY_Mode_switch || symbol == XKB_KEY_Num_Lock ||
         symbol == XKB_KEY_Scroll_Lock || flagOf(symbol) != 0;
}

bool locks(xkb_keysym_t symbol) {
  switch (symbol) {
    case XKB_KEY_Caps_Lock:
    case XKB_KEY_Shift_Lock:
    case XKB_KEY_Num_Lock:
    case XKB_KEY_Scroll_Lock:
    case XKB_KEY_ISO_Lock:
    case XKB_KEY_ISO_Level3_Lock:
    case XKB_KEY_ISO_Level5_Lock:
      return true;
    default:
      return false;
  }
}

/// The event flags of a set of the map's modifiers.
std::uint64_t flagsOf(xkb_keymap* keymap, xkb_mod_mask_t mask) {
  constexpr struct {
    const char* name;
    std::uint64_t flag;
  } modifiers[] = {{XKB_MOD_NAME_SHIFT, event_flags::shift},
                   {XKB_MOD_NAME_CTRL, event_flags::control},
                   {XKB_MOD_NAME_ALT, event_flags::option},
                   {XKB_MOD_NAME_LOGO, event_flags::command}};
  std::uint64_t flags = 0;
  for (const auto& [name, flag] : modifiers) {
    const auto index = xkb_keymap_mod_get_index(keymap, name);
    if (index != XKB_MOD_INVALID && (mask >> index & 1U) != 0) flags |= flag;
  }
  return flags;
}

xkb_keysym_t symbolOf(xkb_keymap* keymap, std::uint16_t key, xkb_layout_index_t group,
                      xkb_level_index_t level) {
  const xkb_keysym_t* symbols = nullptr;
  const auto count = xkb_keymap_key_get_syms_by_level(keymap, xkbCode(key), group, level, &symbols);
  return count == 1 ? symbols[0] : xkb_keysym_t{XKB_KEY_NoSymbol};
}

// What the keypad types depends on Num Lock.
bool isOfMainBlock(std::uint16_t key) {
  const auto code = virtualKey(key);
  return code && (*code < 65 || *code > 95 || *code == 93 || *code == 94);
}

}  // namespace

KeyMap::KeyMap(xkb_keymap* keymap) : characters_(xkb_keymap_num_layouts(keymap)) {
  for (std::uint16_t key = 0; key < keyLimit; ++key) {
    if (!hasSymbols(keymap, key)) {
      if (!virtualKey(key)) emptyKey_ = key;
      continue;
    }
    addModifier(keymap, key);
    addLayoutChord(keymap, key);
    if (!keys_[key].isModifier && isOfMainBlock(key)) addCharacters(keymap, key);
  }
}

void KeyMap::addModifier(xkb_keymap* keymap, std::uint16_t key) {
  const auto symbol = symbolOf(keymap, key, 0, 0);
  keys_[key] = {
      .flag = flagOf(symbol), .isModifier = typesNothing(symbol), .isLock = locks(symbol)};
  // The map lists keys that no keyboard has (Meta, Hyper, a second Alt): those of a keyboard only.
  if (!virtualKey(key)) return;
  const auto keepFirst = [key](std::uint16_t& first) {
    if (first == 0) first = key;
  };
  if (symbol == XKB_KEY_Shift_L || symbol == XKB_KEY_Shift_R) keepFirst(shiftKey_);
  if (symbol == XKB_KEY_Control_L || symbol == XKB_KEY_Control_R) keepFirst(controlKey_);
  if (symbol == XKB_KEY_Alt_L || symbol == XKB_KEY_Alt_R) keepFirst(altKey_);
}

// With grp:win_space_toggle the layout key is another level of Space.
void KeyMap::addLayoutChord(xkb_keymap* keymap, std::uint16_t key) {
  const auto code = xkbCode(key);
  if (keys_[key].isModifier) return;
  const auto levels = xkb_keymap_num_levels_for_key(keymap, code, 0);
  for (xkb_level_index_t level = 1; level < levels; ++level) {
    if (!choosesLayout(symbolOf(keymap, key, 0, level))) continue;
    xkb_mod_mask_t mask = 0;
    if (xkb_keymap_key_get_mods_for_level(keymap, code, 0, level, &mask, 1) == 1) {
      keys_[key].layoutFlags = flagsOf(keymap, mask);
    }
  }
}

void KeyMap::addCharacters(xkb_keymap* keymap, std::uint16_t key) {
  for (xkb_layout_index_t group = 0; group < characters_.size(); ++group) {
    for (xkb_level_index_t level = 0; level < 2; ++level) {
      const auto scalar = xkb_keysym_to_utf32(symbolOf(keymap, key, group, level));
      if (scalar == 0) continue;
      const auto isCased =
          xkb_keysym_to_upper(symbolOf(keymap, key, group, 0)) != symbolOf(keymap, key, group, 0);
      const CharacterKey found{key, level == 1, isCased};
      auto& known =
          characters_[group].try_emplace(scalar == '\r' ? '\n' : scalar, found).first->second;
      if (known.shift && !found.shift) known = found;
    }
  }
}

std::optional<CharacterKey> KeyMap::keyFor(std::uint32_t scalar, std::uint32_t group) const {
  if (group >= characters_.size()) return std::nullopt;
  const auto found = characters_[group].find(scalar);
  return found == characters_[group].end() ? std::nullopt : std::optional(found->second);
}

}  // namespace kivra
