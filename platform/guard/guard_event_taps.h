#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/event_tap.h"
#include "platform/guard/guard_link.h"
#include "platform/guard/guard_starts.h"
#include "platform/guard/posted_keys.h"
#include "platform/guard/watch_fd.h"
#include "platform/log.h"
#include "platform/run_loop.h"

namespace kivra::guard {

/// The one tap of the session: takes what the guard reports to the tap's callback and the verdicts
/// back. A guard that has ended is replaced: at once, and then, while guards end before a key has
/// been typed, a few times more at growing distances. Where the desktop starts guards, the next one
/// is waited for.
class GuardEventTaps : public EventTaps {
 public:
  struct Environment {
    GuardLink& guard;
    PostedKeys& posted;
    RunLoop& runLoop;
    Log& log;
    WatchFd watchFd;
    /// The group that the event being handled met; nothing when it has been handled.
    std::function<void(std::optional<std::uint32_t> group)> groupMet;
    std::function<void(std::uint32_t group)> groupSelected;  ///< the guard has been told already
    /// A selection stands in the focused field behind at least so many characters.
    std::function<bool(std::size_t characters)> hasSelectionBehind;
    /// When the caret moved last; empty where the guard is told of clicks.
    std::function<std::chrono::steady_clock::time_point()> lastCaretMove{};
    /// What the application in front needs between erasing and typing.
    std::function<std::chrono::milliseconds()> pauseAfterErasing;
    /// What was decided last has not been typed.
    std::function<void()> postRefused;
    /// A key that the program's own windows take, before the tap does.
    std::function<bool(const Event&)> isTakenByOwnWindow = [](const Event&) { return false; };
  };

  explicit GuardEventTaps(Environment environment);
  ~GuardEventTaps() override;

  std::shared_ptr<EventTapPort> eventTapCreate(std::uint64_t mask,
                                               EventTapCallback callback) override;
  std::shared_ptr<RunLoopSource> createRunLoopSource(EventTapPort& port) override;
  void runLoopAddSource(RunLoopSource& source) override;
  void runLoopRemoveSource(RunLoopSource& source) override;
  void eventTapEnable(EventTapPort& port, bool enable) override;
  void setConsumableKeys(const std::vector<KeyChord>& keys) override;

  /// The guard that was started last has found that it cannot serve here.
  bool isUnavailable() const { return starts_.isUnavailable(); }

 private:
  struct Tap;
  struct Source;

  void attach(bool attached);
  void meetGuard();
  void readReports();
  void handle(const Report& report);
  void handleEvent(const Report& report);
  bool handleNotice(const Report& report);
  void noticeClick(const Report& key);
  EventVerdict callTap(const Report& report);
  void flushPosted();
  void sendKeys(const Order& order, std::vector<PostedKey> keys);
  void prepareErasing(std::vector<PostedKey>& keys) const;
  void flushLater();
  void flush();
  void replaceGuard();
  void startAnew();
  void configureGuard();
  void later(std::chrono::microseconds delay, void (GuardEventTaps::*called)());

  Environment environment_;
  std::weak_ptr<Tap> tap_;
  std::vector<Chord> chords_;
  bool isEnabled_ = false;
  bool isInCallback_ = false;
  bool isFlushing_ = false;
  GuardStarts starts_;
  std::chrono::steady_clock::time_point lastKey_{};
  std::shared_ptr<void> watch_;
  std::shared_ptr<GuardEventTaps*> self_;  // emptied first, for blocks that come later
};

}  // namespace kivra::guard
