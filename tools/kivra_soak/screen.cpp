#include "screen.h"

#include <algorithm>
#include <future>

namespace kivra::soak {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

Screen::Screen(e2e::XSession& session)
    : session_(session),
      windows_{e2e::TestWindow(session.display()), e2e::TestWindow(session.display())},
      typist_(session) {
  typist_.watch([this](std::uint8_t code, bool isDown) {
    const std::lock_guard lock(mutex_);
    if (isDown) presses_.push_back({Clock::now(), code});
  });
  focus(0);
}

void Screen::hands(const std::function<void(e2e::Typist&)>& work,
                   const std::function<void()>& meanwhile) {
  auto typing = std::async(std::launch::async, [&] { work(typist_); });
  auto other = std::async(std::launch::async, [&] {
    if (meanwhile) meanwhile();
  });
  while (typing.wait_for(0s) != std::future_status::ready) windows_[focused_].textWhenQuiet(2ms);
  typing.get();
  other.get();
}

void Screen::focus(std::size_t index) {
  focused_ = index;
  auto& window = windows_.at(index);
  session_.run({"xdotool", "windowactivate", "--sync", std::to_string(window.window())});
  window.focus();
}

void Screen::click() {
  session_.run({"xdotool", "mousemove", "--window", std::to_string(windows_[focused_].window()),
                "20", "20"});
  typist_.click();
  windows_[focused_].textWhenQuiet(50ms);
}

void Screen::clear() {
  for (auto& window : windows_) window.clear();
  const std::lock_guard lock(mutex_);
  presses_.clear();
}

std::chrono::milliseconds Screen::longestSilence() {
  std::vector<Clock::time_point> arrivals;
  for (const auto& window : windows_) {
    for (const auto& key : window.keys()) {
      if (key.down) arrivals.push_back(key.arrival);
    }
  }
  std::ranges::sort(arrivals);
  Clock::duration longest{};
  const std::lock_guard lock(mutex_);
  for (const auto& press : presses_) {
    const auto effect = std::ranges::lower_bound(arrivals, press.time);
    if (effect != arrivals.end()) longest = std::max(longest, *effect - press.time);
  }
  return std::chrono::duration_cast<std::chrono::milliseconds>(longest);
}

int Screen::spacesUntil(Clock::time_point time) {
  const std::lock_guard lock(mutex_);
  return static_cast<int>(std::ranges::count_if(presses_, [&](const Press& press) {
    return press.code == e2e::keys::space && press.time < time;
  }));
}

}  // namespace kivra::soak
