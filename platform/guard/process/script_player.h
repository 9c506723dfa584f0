#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/guard/process/key_script.h"
#include "platform/guard/process/seat_keys.h"

namespace kivra::guard {

/// Types a script, with its pauses.
class ScriptPlayer {
 public:
  using Clock = std::chrono::steady_clock;

  /// Keys wait while a script pauses: never for longer than this, whatever it asks for.
  static constexpr std::chrono::milliseconds longestPause{500};

  explicit ScriptPlayer(SeatKeys& keys) : keys_(keys) {}

  /// `number` is the event at which the script was decided.
  void start(std::uint32_t number, KeyScript script);
  /// Types on as far as the time allows; false while a pause lasts.
  bool play(Clock::time_point now);
  /// Gives up what is left and puts the keyboard back; the number of the event, nothing when no
  /// script was being typed.
  std::optional<std::uint32_t> breakOff();

  bool isPlaying() const { return playing_.has_value(); }
  std::optional<Clock::time_point> pauseEnd() const;

 private:
  friend class GuardState;

  struct Playing {
    std::uint32_t number = 0;
    KeyScript script;
    std::size_t next = 0;
    std::optional<Clock::time_point> pauseEnd;
  };

  SeatKeys& keys_;
  std::optional<Playing> playing_;
};

}  // namespace kivra::guard
