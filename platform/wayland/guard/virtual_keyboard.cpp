#include "platform/wayland/guard/virtual_keyboard.h"

#include <sys/mman.h>
#include <unistd.h>

#include "platform/wayland/guard/event_time.h"

namespace kivra::wayland {

VirtualKeyboard::VirtualKeyboard(Connection& connection, wl_seat* seat)
    : connection_(connection), keyboard_(nullptr, zwp_virtual_keyboard_v1_destroy) {
  const Owned<zwp_virtual_keyboard_manager_v1> manager(
      connection.bind<zwp_virtual_keyboard_manager_v1>(zwp_virtual_keyboard_manager_v1_interface),
      zwp_virtual_keyboard_manager_v1_destroy);
  keyboard_.reset(zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(manager.get(), seat));
}

void VirtualKeyboard::key(std::uint16_t evdev, bool isDown) {
  zwp_virtual_keyboard_v1_key(
      keyboard_.get(), eventTime(), evdev,
      isDown ? WL_KEYBOARD_KEY_STATE_PRESSED : WL_KEYBOARD_KEY_STATE_RELEASED);
  connection_.makeRoom();
}

void VirtualKeyboard::modifiers(const Modifiers& modifiers) {
  zwp_virtual_keyboard_v1_modifiers(keyboard_.get(), modifiers.depressed, modifiers.latched,
                                    modifiers.locked, modifiers.group);
  connection_.makeRoom();
}

bool VirtualKeyboard::setMap(const std::string& text) {
  const auto size = text.size() + 1;
  const int fd = ::memfd_create("keymap", MFD_CLOEXEC);
  if (::write(fd, text.c_str(), size) == static_cast<ssize_t>(size)) {
    zwp_virtual_keyboard_v1_keymap(keyboard_.get(), WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, fd,
                                   static_cast<std::uint32_t>(size));
  }
  ::close(fd);
  return true;
}

}  // namespace kivra::wayland
