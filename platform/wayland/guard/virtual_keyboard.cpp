#include "platform/wayland/guard/virtual_keyboard.h"

#include <sys/mman.h>
#include <unistd.h>

#include <chrono>

namespace kivra::wayland {

namespace {

/// The time of events, as compositors give it.
std::uint32_t now() {
  const auto time = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint32_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

}  // namespace

VirtualKeyboard::VirtualKeyboard(Connection& connection, wl_seat* seat)
    : connection_(connection), keyboard_(nullptr, zwp_virtual_keyboard_v1_destroy) {
  const Owned<zwp_virtual_keyboard_manager_v1> manager(
      connection.bind<zwp_virtual_keyboard_manager_v1>(zwp_virtual_keyboard_manager_v1_interface),
      zwp_virtual_keyboard_manager_v1_destroy);
  keyboard_.reset(zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(manager.get(), seat));
}

void VirtualKeyboard::key(std::uint16_t evdev, bool isDown) {
  zwp_virtual_keyboard_v1_key(
      keyboard_.get(), now(), evdev,
      isDown ? WL_KEYBOARD_KEY_STATE_PRESSED : WL_KEYBOARD_KEY_STATE_RELEASED);
  makeRoom();
}

void VirtualKeyboard::modifiers(const Modifiers& modifiers) {
  zwp_virtual_keyboard_v1_modifiers(keyboard_.get(), modifiers.depressed, modifiers.latched,
                                    modifiers.locked, modifiers.group);
  makeRoom();
}

// libwayland keeps 4 KB back, and breaks the connection when a request finds no room in them.
void VirtualKeyboard::makeRoom() {
  constexpr int mostUnsent = 64;  // of 28 bytes at most
  if (++unsent_ < mostUnsent) return;
  connection_.flush();
  unsent_ = 0;
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
