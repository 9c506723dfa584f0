#pragma once

#include <cstdint>
#include <optional>
#include <type_traits>
#include <variant>

#include "platform/guard/process/keyboard_guard.h"

namespace kivra::guard {

/// A number that stands for all that has been added, in its order.
class Digest {
 public:
  template <class T>
  requires std::is_integral_v<T> || std::is_enum_v<T> Digest& add(T value) {
    // 64-bit FNV-1a, a word at a time.
    value_ = (value_ ^ static_cast<std::uint64_t>(value)) * 0x100000001B3ULL;
    value_ ^= value_ >> 29;
    return *this;
  }
  Digest& add(const KeySet& keys) {
    for (auto key = keys._Find_first(); key < keys.size(); key = keys._Find_next(key)) add(key);
    return add(keys.size());
  }
  Digest& add(const SeatKey& key) { return add(key.evdev).add(key.isDown).add(key.isRepeat); }

  std::uint64_t value() const { return value_; }

 private:
  std::uint64_t value_ = 0xCBF29CE484222325ULL;
};

/// All that the further doing of a guard depends on, between two calls, while no time passes.
class GuardState {
 public:
  /// The number of the last event: two states may differ by it in all numbers.
  static std::uint32_t number(const KeyboardGuard& guard) { return guard.reports_.number(); }

  static bool isPausing(const KeyboardGuard& guard) { return guard.player_.isPlaying(); }
  static bool isDeciding(const KeyboardGuard& guard) { return guard.decision_.has_value(); }

  static void add(Digest& digest, const KeyboardGuard& guard) {
    const auto number = GuardState::number(guard);
    for (const auto& item : guard.waiting_) {
      digest.add(item.index());
      if (const auto* key = std::get_if<SeatKey>(&item)) digest.add(*key);
    }
    digest.add(guard.decision_.has_value());
    if (guard.decision_) digest.add(guard.decision_->number - number).add(guard.decision_->key);
    for (const auto& post : guard.posts_) {
      digest.add(post.message.order.number - number).add(post.message.order.drop);
      digest.add(post.message.keys.size()).add(post.key.has_value());
    }
    if (const auto& playing = guard.player_.playing_) {
      const auto& [from, script, next, pauseEnd] = *playing;
      digest.add(from - number).add(next);
      for (const auto& step : script.body) digest.add(step.kind).add(step.value);
      for (const auto& step : script.after) digest.add(step.kind).add(step.value);
    }
    const auto& reporter = guard.reporter_;
    digest.add(reporter.isLone_).add(reporter.isMidWord_).add(reporter.repeat_);
    digest.add(guard.keys_.held()).add(guard.keys_.down());
    const auto& reports = guard.reports_;
    digest.add(reports.lastChange_ - number);
    digest.add(reports.isEnabled_).add(reports.isSecret_).add(reports.owesNotice_);
  }
};

}  // namespace kivra::guard
