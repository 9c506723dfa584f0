#pragma once

#include <chrono>

namespace kivra::e2e {

/// How keys follow each other.
struct Pace {
  std::chrono::microseconds key{10000};  ///< from one press to the next
  /// How long each key is held, unless it is pressed again meanwhile; longer than `key` for hands
  /// that roll.
  std::chrono::microseconds hold{1000};
  std::chrono::microseconds spread{0};  ///< `hold` is up to so much longer, as with real hands
};

/// From 30 ms a key on hands hold keys for 50 to 120 ms, below that for half again the pace if they
/// roll, and for half the pace if not.
inline Pace paceOfHands(std::chrono::milliseconds key, bool isRolling) {
  using std::chrono::milliseconds;
  if (key >= milliseconds(30)) return {key, milliseconds(50), milliseconds(70)};
  return {.key = key, .hold = std::chrono::microseconds(key) * (isRolling ? 3 : 1) / 2};
}

}  // namespace kivra::e2e
