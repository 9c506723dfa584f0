#include "platform/xkb/xkb_layout.h"

#include <xkbcommon/xkbcommon.h>

#include <array>

#include "platform/xkb/virtual_keys.h"

namespace kivra {

namespace {

template <class T, void (*release)(T*)>
struct Release {
  void operator()(T* object) const { release(object); }
};
using Context = std::unique_ptr<xkb_context, Release<xkb_context, xkb_context_unref>>;
using State = std::unique_ptr<xkb_state, Release<xkb_state, xkb_state_unref>>;

/// Quiet: an unknown layout is an ordinary answer here, not something to print about.
void ignoreMessage(xkb_context* /*context*/, xkb_log_level /*level*/, const char* /*format*/,
                   va_list /*arguments*/) {}

xkb_mod_mask_t modifier(xkb_keymap* keymap, const char* name) {
  const auto index = xkb_keymap_mod_get_index(keymap, name);
  return index == XKB_MOD_INVALID ? 0 : xkb_mod_mask_t{1} << index;
}

State stateWith(xkb_keymap* keymap, std::uint32_t group, bool shift) {
  State state(xkb_state_new(keymap));
  xkb_state_update_mask(state.get(), shift ? modifier(keymap, XKB_MOD_NAME_SHIFT) : 0, 0,
                        modifier(keymap, XKB_MOD_NAME_NUM), 0, 0, group);
  return state;
}

}  // namespace

std::shared_ptr<const XkbLayout> XkbLayout::named(const std::string& name) {
  const auto open = name.find('(');
  const auto layout = name.substr(0, open);
  if (layout.empty() || name.find(',') != std::string::npos ||
      (open != std::string::npos && name.back() != ')'))
    return nullptr;
  const auto variant =
      open == std::string::npos ? std::string() : name.substr(open + 1, name.size() - open - 2);
  const Context context(xkb_context_new(XKB_CONTEXT_NO_ENVIRONMENT_NAMES));
  if (!context) return nullptr;
  xkb_context_set_log_fn(context.get(), ignoreMessage);
  const xkb_rule_names names = {.rules = "evdev",
                                .model = "pc105",
                                .layout = layout.c_str(),
                                .variant = variant.c_str(),
                                .options = ""};
  auto* keymap = xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
  return keymap == nullptr ? nullptr : std::make_shared<const XkbLayout>(keymap);
}

XkbLayout::~XkbLayout() { xkb_keymap_unref(keymap_); }

std::uint32_t XkbLayout::symbol(std::uint16_t virtualKey, bool shift) const {
  const auto evdev = evdevCode(virtualKey);
  if (!evdev) return XKB_KEY_NoSymbol;
  const auto state = stateWith(keymap_, group_, shift);
  return xkb_state_key_get_one_sym(state.get(), xkbCode(*evdev));
}

std::optional<std::string> XkbLayout::character(std::uint16_t virtualKey, bool shift) const {
  const auto evdev = evdevCode(virtualKey);
  if (!evdev) return std::nullopt;
  const auto state = stateWith(keymap_, group_, shift);
  std::array<char, 32> bytes{};
  const auto length =
      xkb_state_key_get_utf8(state.get(), xkbCode(*evdev), bytes.data(), bytes.size());
  if (length <= 0 || static_cast<std::size_t>(length) >= bytes.size()) return std::nullopt;
  return std::string(bytes.data(), static_cast<std::size_t>(length));
}

}  // namespace kivra
