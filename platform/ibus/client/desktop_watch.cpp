#include "platform/ibus/client/desktop_watch.h"

#include <chrono>
#include <stdexcept>
#include <utility>

namespace kivra::ibus {

namespace {

Bus connectToSession() {
  sd_bus* bus = nullptr;
  sd_bus_open_user(&bus);
  return Bus(bus);
}

}  // namespace

DesktopWatch::DesktopWatch(const char* name) : bus_(connectToSession()), name_(name) {
  if (!bus_) throw std::runtime_error("нет сеансовой шины D-Bus");
  // It is sent to this connection alone.
  sd_bus_match_signal(bus_.get(), nullptr, nullptr, "/app/kivra/Desktop", "app.kivra.Desktop",
                      "State", &DesktopWatch::take, this);
  if (sd_bus_request_name(bus_.get(), name, 0) < 0) {
    throw std::runtime_error("в сеансе уже работает другая Kivra");
  }
}

void DesktopWatch::leave() { sd_bus_release_name(bus_.get(), name_); }

bool DesktopWatch::waitUntilTold() {
  using Clock = std::chrono::steady_clock;
  const auto until = Clock::now() + std::chrono::seconds(2);
  while (!isTold_ && dispatch()) {
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(until - Clock::now());
    if (left.count() <= 0) break;
    sd_bus_wait(bus_.get(), static_cast<std::uint64_t>(left.count()));
  }
  return isTold_;
}

int DesktopWatch::take(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
  auto& watch = *static_cast<DesktopWatch*>(self);
  State state;
  const char* application = nullptr;
  if (sd_bus_message_read(message, "uuus", &state.group, &state.markers, &state.window,
                          &application) >= 0) {
    state.application = application;
    watch.state_ = std::move(state);
    watch.isTold_ = true;
  }
  return 0;
}

}  // namespace kivra::ibus
