#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/event_tap.h"
#include "platform/log.h"
#include "platform/run_loop.h"
#include "platform/x11/guard_link.h"
#include "platform/x11/guard_watchdog.h"
#include "platform/x11/input_group.h"
#include "platform/x11/posted_keys.h"
#include "platform/x11/watch_fd.h"

namespace kivra::x11 {

/// The one tap of the session: takes what the guard reports to the tap's callback and the verdicts
/// back. A guard that is gone or does not answer is replaced.
class X11EventTaps : public EventTaps {
 public:
  struct Environment {
    GuardLink& guard;
    PostedKeys& posted;
    InputGroup& group;
    RunLoop& runLoop;
    Log& log;
    WatchFd watchFd;
    std::function<void(std::uint32_t group)> groupSelected;  ///< the guard has been told already
    /// A selection stands in the focused field behind at least so many characters.
    std::function<bool(std::size_t characters)> hasSelectionBehind;
    /// Calls once at the next key in the session, whoever gets it.
    std::function<void(std::function<void()>)> atNextKey;
  };

  explicit X11EventTaps(Environment environment);
  ~X11EventTaps() override;

  std::shared_ptr<EventTapPort> eventTapCreate(std::uint64_t mask,
                                               EventTapCallback callback) override;
  std::shared_ptr<RunLoopSource> createRunLoopSource(EventTapPort& port) override;
  void runLoopAddSource(RunLoopSource& source) override;
  void runLoopRemoveSource(RunLoopSource& source) override;
  void eventTapEnable(EventTapPort& port, bool enable) override;
  void setConsumableKeys(const std::vector<KeyChord>& keys) override;

 private:
  struct Tap;
  struct Source;

  void attach(bool attached);
  void readReports();
  void take(const Report& report);
  EventVerdict call(const Report& report);
  void flushPosted();
  void hand(const Order& order, std::vector<PostedKey> keys);
  void deleteCompletion(std::vector<PostedKey>& keys) const;
  void replaceGuard();
  void replaceSilentGuard();
  void configureGuard();

  Environment environment_;
  std::weak_ptr<Tap> tap_;
  std::vector<Chord> chords_;
  bool isEnabled_ = false;
  bool isInCallback_ = false;
  GuardWatchdog watchdog_;
  std::shared_ptr<void> watch_;
  std::shared_ptr<X11EventTaps*> self_;  // emptied first, for blocks that come later
};

}  // namespace kivra::x11
