#include "platform/x11/guard/device_maps.h"

#include <X11/XKBlib.h>
#include <X11/Xlib-xcb.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#include <cstdlib>
#include <memory>

namespace kivra::x11 {

namespace {

/// Xorg refuses a whole map for an action on one of the last key codes, which no keyboard has: it
/// counts the symbols of the first 248 codes only.
void dropActionsOfHighKeys(XkbDescRec& map) {
  constexpr int firstUncounted = 248;
  for (int code = firstUncounted; code <= map.max_key_code; ++code) map.server->key_acts[code] = 0;
}

}  // namespace

DeviceMaps::DeviceMaps(Display* display)
    : display_(display), context_(xkb_context_new(XKB_CONTEXT_NO_FLAGS)) {
  xkb_x11_setup_xkb_extension(XGetXCBConnection(display_), XKB_X11_MIN_MAJOR_XKB_VERSION,
                              XKB_X11_MIN_MINOR_XKB_VERSION, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS,
                              nullptr, nullptr, nullptr, nullptr);
}

DeviceMaps::~DeviceMaps() { xkb_context_unref(context_); }

std::string DeviceMaps::text(int device) const {
  const std::unique_ptr<xkb_keymap, void (*)(xkb_keymap*)> map(
      xkb_x11_keymap_new_from_device(context_, XGetXCBConnection(display_), device,
                                     XKB_KEYMAP_COMPILE_NO_FLAGS),
      xkb_keymap_unref);
  if (!map) return {};
  const std::unique_ptr<char, void (*)(void*)> text(
      xkb_keymap_get_as_string(map.get(), XKB_KEYMAP_FORMAT_TEXT_V1), std::free);
  return text ? text.get() : "";
}

void DeviceMaps::copy(int from, int to) const {
  XkbDescPtr const map =
      XkbGetMap(display_, XkbAllMapComponentsMask, static_cast<unsigned int>(from));
  if (map == nullptr) return;
  XkbGetIndicatorMap(display_, XkbAllIndicatorsMask, map);
  XkbGetCompatMap(display_, XkbAllCompatMask, map);
  XkbGetNames(display_, XkbAllNamesMask, map);
  dropActionsOfHighKeys(*map);
  map->device_spec = static_cast<unsigned short>(to);
  XkbSetMap(display_, XkbAllMapComponentsMask, map);
  XkbSetIndicatorMap(display_, XkbAllIndicatorsMask, map);
  XkbSetCompatMap(display_, XkbAllCompatMask, map, True);
  XkbSetNames(display_, XkbAllNamesMask, 0, map->map->num_types, map);
  XkbFreeKeyboard(map, XkbAllComponentsMask, True);
}

}  // namespace kivra::x11
