#pragma once

#include <sys/types.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/guard/process/guard_process.h"
#include "platform/guard/protocol/frame.h"

namespace kivra::guard {

/// A guard and its watcher as processes of their own, on a display that is two pipes.
class GuardedPipes {
 public:
  enum class Input : std::uint8_t { key, hang, vanish };
  enum class Output : std::uint8_t { seatOpened, passed, letGo };

  /// What goes through the pipes.
  template <class Kind>
  struct Message {
    Kind kind{};
    SeatKey key;
    pid_t process = 0;  ///< the sender
  };

  enum class Fault { none, noSeat };
  explicit GuardedPipes(Fault fault = Fault::none);
  /// With a guard that looks for its program itself.
  explicit GuardedPipes(const GuardedProgram& program);
  ~GuardedPipes();
  GuardedPipes(const GuardedPipes&) = delete;
  GuardedPipes& operator=(const GuardedPipes&) = delete;

  pid_t watcher() const { return watcher_; }
  /// Known once the seat is open.
  pid_t guard() const { return guard_; }
  int program() const { return programFd_; }
  /// The program's end of the socket, from here on.
  void meet(int fd) { programFd_ = fd; }
  void hangUp();
  /// The program listens from now on, and may consume Space; answers whether it hears.
  bool listenForSpace();

  void send(Input kind, std::uint16_t evdev = 0, bool isDown = true);
  void tap(std::uint16_t evdev);
  /// Waits for what the display is given next; nothing when the processes have ended, or do not do
  /// anything for long.
  std::optional<Message<Output>> next();
  /// The presses that pass, to the end of both processes or up to `count`.
  std::vector<std::uint16_t> presses(std::size_t count = SIZE_MAX);
  /// Waits for the report.
  std::optional<Report> await(ReportKind kind);

  /// Both processes have ended, and nobody has the display or the socket open any more.
  bool haveEnded();
  /// Whether the keys were let go of before that.
  bool wereKeysLetGo() const { return letGo_; }

 private:
  void start(Fault fault, const GuardedProgram& program);
  [[noreturn]] void run(Fault fault, const GuardedProgram& program);

  std::array<int, 2> input_{};
  std::array<int, 2> output_{};
  int programFd_ = -1;
  pid_t watcher_ = -1;
  pid_t guard_ = -1;
  bool letGo_ = false;
};

}  // namespace kivra::guard
