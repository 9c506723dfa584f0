#pragma once

#include <chrono>
#include <cstdint>

namespace kivra::wayland {

/// The present in milliseconds, as compositors tell the time of events.
inline std::uint32_t eventTime() {
  const auto time = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint32_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

}  // namespace kivra::wayland
