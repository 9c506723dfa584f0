#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "layout/keycode_map.h"
#include "layout/keystroke.h"
#include "platform/clock.h"
#include "platform/event_posting.h"

namespace kivra {

/// The user-data value of every event that the program posts: its own tap lets such events pass.
inline constexpr std::int64_t syntheticEventMarker = 19286;

/// The one place where the program's key events are made and posted, each marked as its own. A pair
/// of key-down and key-up of which one cannot be made is left out; the rest goes on.
class KeyOutput {
 public:
  KeyOutput(EventPosting& posting, InputSources& inputSources, Clock& clock)
      : posting_(posting), inputSources_(inputSources), clock_(clock) {}

  /// Key-down and key-up with exactly these flags.
  void postKey(std::uint16_t keyCode, std::uint64_t flags);

  void postDeletes(std::size_t count);

  /// The same physical keys with Shift as recorded; no other modifier.
  void retype(const Word& word);

  /// Unicode text, one pair of events for each user-perceived character.
  void typeText(std::string_view text);

  /// Selects the layout's input source and pauses for 5 ms, so that keys posted next meet it.
  void selectLayout(const Layout& layout);

 private:
  template <class Adjust>
  void postPair(std::uint16_t keyCode, Adjust adjust);
  EventSource* source();

  EventPosting& posting_;
  InputSources& inputSources_;
  Clock& clock_;
  std::unique_ptr<EventSource> source_;
};

}  // namespace kivra
