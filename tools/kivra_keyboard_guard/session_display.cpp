#include "session_display.h"

#include <cstdlib>
#include <stdexcept>

#include "platform/ibus/guard/ibus_guard_display.h"
#include "platform/wayland/guard/wayland_guard_display.h"
#include "platform/x11/guard/x11_guard_display.h"

namespace kivra {

namespace {

guard::GuardDisplay noDisplay() {
  constexpr auto why =
      "нет ни композитора Wayland, который даёт программам клавиатуру, ни X-сервера (DISPLAY)";
  return {.openSeat = []() -> std::unique_ptr<guard::Seat> { throw std::runtime_error(why); },
          .openRescue = []() -> std::unique_ptr<guard::KeyboardRescue> {
            throw std::runtime_error(why);
          }};
}

}  // namespace

guard::GuardDisplay sessionDisplay() {
  if (auto display = wayland::waylandGuardDisplay()) return *display;
  if (auto display = ibus::ibusGuardDisplay()) return *display;
  return std::getenv("DISPLAY") == nullptr ? noDisplay() : x11::x11GuardDisplay();
}

}  // namespace kivra
