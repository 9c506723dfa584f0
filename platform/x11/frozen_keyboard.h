#pragma once

#include <X11/Xlib.h>

#include <bitset>
#include <cstddef>
#include <deque>
#include <functional>
#include <vector>

#include "platform/x11/key_script.h"
#include "platform/x11/record_stream.h"

namespace kivra::x11 {

/// Types into a frozen keyboard, ahead of everything that the user has typed since it froze.
///
/// What is posted while the keyboard is frozen queues in the server behind keys that already wait
/// there. Keys that wait when a script is to be typed are therefore taken out first: a keyboard
/// grab lets them come to this program instead of the application, and they are typed again behind
/// the script. The record stream tells whether another key slipped in meanwhile; then the queue is
/// taken out once more. So however fast the user types, the script stands first, in one block.
class FrozenKeyboard {
 public:
  FrozenKeyboard(Display* display, RecordStream& stream) : display_(display), stream_(stream) {}

  /// Makes the script for a keyboard on which the keys `now` are down and which is to be left with
  /// the modifiers among `then`.
  using Writer = std::function<std::vector<ScriptedKey>(const std::bitset<256>& now,
                                                        const std::bitset<256>& then)>;

  /// Freezes the keyboard; false when another program holds it. Afterwards `stream.countAtGrab()`
  /// tells how many events came before.
  bool freeze();

  /// Types the script ahead of the events of the stream from index `base` on, the first that came
  /// after the freeze, and lets go of the keyboard. `down` are the keys down at that point.
  void type(const Writer& write, const std::bitset<256>& down, std::size_t base);

  /// Lets go of the keyboard; what waits is played.
  void release();

  /// Types without a freeze.
  void typeUnfrozen(const Writer& write, const std::bitset<256>& down);

 private:
  void attempt(const Writer& write, const std::bitset<256>& down, std::size_t base);
  void takeOutWaitingKeys(std::size_t base);
  bool hasSlipped(std::size_t base) const;
  void send(const ScriptedKey& key, bool isReplay);
  bool grabKeyboard();
  void discardGrabbedKeys();

  Display* display_;
  RecordStream& stream_;
  std::size_t takenOut_ = 0;
  std::bitset<256> leftDown_;  // by the script
  std::bitset<256> down_;      // as the server sees the keyboard
  std::bitset<256> testDown_;  // pressed through XTEST and not yet released through it
};

}  // namespace kivra::x11
