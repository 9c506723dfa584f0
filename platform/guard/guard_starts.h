#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>

namespace kivra::guard {

/// Whether a guard that has ended is replaced, and how soon. One may be killed while it starts, and
/// once more; one that fails every time stays away.
class GuardStarts {
 public:
  /// A guard has found that it cannot serve here.
  void refused() { isUnavailable_ = true; }
  bool isUnavailable() const { return isUnavailable_; }

  /// A guard has shown that it works.
  void served() { attempts_ = 0; }

  /// How long after the end of a guard the next is started; nothing when none is.
  std::optional<std::chrono::milliseconds> next() {
    if (isUnavailable_ || attempts_ == delays.size()) return std::nullopt;
    return std::chrono::milliseconds(delays[attempts_++]);
  }

 private:
  static constexpr std::array delays = {0, 200, 500, 1000, 2000, 5000, 5000};  // ms

  bool isUnavailable_ = false;
  std::size_t attempts_ = 0;
};

}  // namespace kivra::guard
