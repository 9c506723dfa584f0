#include "platform/wayland/client/keymap_watch.h"

#include <utility>

#include "platform/wayland/client/calls.h"
#include "platform/wayland/client/compiled_map.h"

namespace kivra::wayland {

KeymapWatch::KeymapWatch(Connection& connection, std::function<void()> changed)
    : changed_(std::move(changed)),
      seat_(connection.bind<wl_seat>(wl_seat_interface), wl_seat_destroy) {
  static constexpr wl_seat_listener listener = {
      .capabilities = Calls<&KeymapWatch::takeCapabilities>{}, .name = Ignores{}};
  wl_seat_add_listener(seat_.get(), &listener, this);
}

void KeymapWatch::takeCapabilities(std::uint32_t capabilities) {
  static constexpr wl_keyboard_listener listener = {.keymap = Calls<&KeymapWatch::takeMap>{},
                                                    .enter = Ignores{},
                                                    .leave = Ignores{},
                                                    .key = Ignores{},
                                                    .modifiers = Ignores{},
                                                    .repeat_info = Ignores{}};
  const auto hasKeyboard = (capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0;
  if (hasKeyboard == (keyboard_ != nullptr)) return;
  keyboard_.reset(hasKeyboard ? wl_seat_get_keyboard(seat_.get()) : nullptr);
  if (keyboard_) wl_keyboard_add_listener(keyboard_.get(), &listener, this);
}

// Told whenever another keyboard of the seat is typed on.
void KeymapWatch::takeMap(std::uint32_t /*format*/, std::int32_t fd, std::uint32_t size) {
  auto text = takeMapText(fd, size);
  if (text.empty() || text == text_) return;
  text_ = std::move(text);
  changed_();
}

}  // namespace kivra::wayland
