#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "child_process.h"
#include "platform/guard/protocol/frame.h"
#include "platform/guard/protocol/guard_protocol.h"

namespace kivra::e2e {

/// Stands where the program does, with the real guard: each word typed in the first layout comes
/// out in the second, and the first is selected again behind it.
class ScriptedProgram {
 public:
  /// Starts a guard in this environment and waits until it is the keyboard, or says that it cannot
  /// be. What it prints goes to the file.
  ScriptedProgram(const Environment& environment, const std::string& logFile);
  /// The same with a guard that has been started, at the other end of the socket.
  explicit ScriptedProgram(int fd);
  ~ScriptedProgram();
  ScriptedProgram(const ScriptedProgram&) = delete;
  ScriptedProgram& operator=(const ScriptedProgram&) = delete;

  bool isReady() const { return count(guard::ReportKind::ready) > 0; }
  std::vector<guard::Report> reports() const;
  int count(guard::ReportKind kind) const;
  void clear();

  /// From now on this is typed for a word, whatever the word is.
  void replaceWordsBy(std::vector<guard::PostedKey> keys);
  /// Posts outside a decision.
  void post(const std::vector<guard::PostedKey>& keys) const;

  /// Waits until the guard has passed on all that the compositor had sent, where it reports
  /// nothing. False when it does.
  bool settleInSecret() const;

  /// From now on no decision is answered.
  void stopAnswering() { isAnswering_ = false; }

  /// The guard, and the process that watches over it. Throws std::runtime_error when the guard has
  /// ended: its number must not be taken for another's.
  pid_t guardPid() const;
  ChildProcess& watcher() { return *watcher_; }
  /// Ends as a program that is killed.
  void hangUp();

 private:
  void begin();
  void run();
  void take(const guard::Report& report);
  void decide(const guard::Report& report);
  void takeKey(std::uint16_t keyCode);
  void send(guard::FrameKind kind, const guard::Order& order,
            std::span<const std::byte> records = {}) const;
  std::vector<guard::PostedKey> correction() const;

  int fd_ = -1;
  std::unique_ptr<ChildProcess> watcher_;  // unless somebody else has started it
  mutable std::mutex mutex_;
  std::vector<guard::Report> reports_;
  std::optional<std::vector<guard::PostedKey>> replacement_;
  std::vector<std::uint16_t> word_;  // virtual key codes
  bool isWordKnown_ = true;
  std::atomic<bool> isAnswering_ = true;
  std::thread thread_;
};

/// What programs post.
std::vector<guard::PostedKey> postedTap(std::uint16_t evdev, std::uint64_t flags = 0);
guard::PostedKey postedGroup(std::uint32_t group);
guard::PostedKey postedCharacter(std::uint32_t scalar);

}  // namespace kivra::e2e
