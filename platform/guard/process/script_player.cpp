#include "platform/guard/process/script_player.h"

#include <algorithm>
#include <utility>

namespace kivra::guard {

void ScriptPlayer::start(std::uint32_t number, KeyScript script) {
  playing_ = {.number = number, .script = std::move(script), .next = 0, .pauseEnd = {}};
}

bool ScriptPlayer::play(Clock::time_point now) {
  if (!playing_) return true;
  auto& [number, script, next, pauseEnd] = *playing_;
  if (pauseEnd && now < *pauseEnd) return false;
  const auto first = script.body.begin() + static_cast<std::ptrdiff_t>(next);
  const auto pause = std::ranges::find(first, script.body.end(), Step::Kind::pause, &Step::kind);
  keys_.type(Steps(first, pause));
  if (pause == script.body.end()) {
    keys_.type(std::exchange(playing_, std::nullopt)->script.after);
    return true;
  }
  next = static_cast<std::size_t>(pause - script.body.begin()) + 1;
  pauseEnd = now + std::min(std::chrono::milliseconds(pause->value), longestPause);
  return false;
}

std::optional<std::uint32_t> ScriptPlayer::breakOff() {
  if (!playing_) return std::nullopt;
  const auto broken = *std::exchange(playing_, std::nullopt);
  keys_.type(broken.script.after);
  return broken.number;
}

std::optional<ScriptPlayer::Clock::time_point> ScriptPlayer::pauseEnd() const {
  return playing_ ? playing_->pauseEnd : std::nullopt;
}

}  // namespace kivra::guard
