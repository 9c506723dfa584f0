#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "test_window.h"
#include "typist.h"
#include "x_session.h"

namespace kivra::soak {

/// Two windows and a person who types in them; the windows are read while keys are typed, so that
/// each key's effect has its time.
class Screen {
 public:
  static constexpr std::size_t windowCount = 2;

  explicit Screen(e2e::XSession& session);

  /// Runs what the hands do, and `meanwhile` beside it.
  void hands(const std::function<void(e2e::Typist&)>& work,
             const std::function<void()>& meanwhile = nullptr);

  e2e::Typist& typist() { return typist_; }
  e2e::TestWindow& window(std::size_t index) { return windows_.at(index); }
  std::size_t focused() const { return focused_; }
  void focus(std::size_t index);
  void click();
  void clear();

  /// The longest time that passed since the last `clear` from a key's press to the next effect of
  /// any key.
  std::chrono::milliseconds longestSilence();

  /// How many Spaces had been pressed by then.
  int spacesUntil(std::chrono::steady_clock::time_point time);

 private:
  struct Press {
    std::chrono::steady_clock::time_point time;
    std::uint8_t code = 0;
  };

  e2e::XSession& session_;
  std::array<e2e::TestWindow, windowCount> windows_;
  std::size_t focused_ = 0;
  std::mutex mutex_;
  std::vector<Press> presses_;
  e2e::Typist typist_;
};

}  // namespace kivra::soak
