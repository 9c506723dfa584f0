#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "platform/ibus/client/desktop_watch.h"

namespace kivra::ibus {

/// The keys that select a layout, on their way to the shell: it takes a moment until its layout is
/// the one that was selected last.
class LayoutMarkers {
 public:
  /// The layout after all that has been sent.
  std::uint32_t group() const { return group_; }

  void send(std::uint32_t group) {
    group_ = group;
    ++sent_;
    lastSent_ = Clock::now();
  }

  /// Takes what the shell tells; answers the layout if it is another than was to be expected:
  /// somebody else has selected it.
  std::optional<std::uint32_t> takeForeign(const DesktopWatch::State& state) {
    // One that the shell has not taken by then will not come any more.
    constexpr auto longestWay = std::chrono::seconds(1);
    const auto isOnItsWay = state.markers != sent_ && Clock::now() - lastSent_ < longestWay;
    if (isOnItsWay || state.group == DesktopWatch::noGroup) return std::nullopt;
    sent_ = state.markers;
    if (state.group == group_) return std::nullopt;
    group_ = state.group;
    return group_;
  }

 private:
  using Clock = std::chrono::steady_clock;

  std::uint32_t group_ = 0;
  std::uint32_t sent_ = 0;
  Clock::time_point lastSent_;
};

}  // namespace kivra::ibus
