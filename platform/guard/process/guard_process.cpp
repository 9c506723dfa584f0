#include "platform/guard/process/guard_process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <vector>

#include "platform/guard/process/guard_channel.h"
#include "platform/guard/process/guard_watcher.h"
#include "platform/guard/process/heartbeat.h"
#include "platform/guard/process/keyboard_guard.h"
#include "platform/guard/process/program_finder.h"

namespace kivra::guard {

namespace {

constexpr auto foreignBuild = "программа и сторож клавиатуры разных версий";

/// Keys must not wait for a disk. Locks as much as the user's limit allows.
void lockMemory() {
  if (::mlockall(MCL_CURRENT | MCL_ONFAULT) == 0) return;
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) {
    const auto begin = std::strtoul(line.c_str(), nullptr, 16);
    const auto end = std::strtoul(line.c_str() + line.find('-') + 1, nullptr, 16);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the addresses are the system's own
    if (::mlock2(reinterpret_cast<const void*>(begin), end - begin, MLOCK_ONFAULT) != 0) return;
  }
}

int millisecondsUntil(std::optional<KeyboardGuard::Clock::time_point> deadline) {
  if (!deadline) return -1;
  const auto left =
      std::chrono::ceil<std::chrono::milliseconds>(*deadline - KeyboardGuard::Clock::now());
  return static_cast<int>(std::max<std::chrono::milliseconds::rep>(0, left.count()));
}

/// The program's end of a guard: the socket, and where the next program is looked for.
struct ProgramEnd {
  explicit ProgramEnd(const GuardedProgram& program) : channel(program.channelFd) {
    if (program.channelFd < 0) finder.emplace(program.place, program.executable);
  }

  GuardChannel channel;
  std::optional<ProgramFinder> finder;
};

/// Goes over to the next program if there is one already; false when none can come.
bool meetNext(ProgramEnd& program, KeyboardGuard& guard) {
  auto& [channel, finder] = program;
  if (!finder) return false;
  if (channel.fd() >= 0) {
    guard.forgetProgram();
    if (channel.isForeignBuild()) std::cerr << "Kivra: " << foreignBuild << '\n';
    if (channel.hasGreeted()) finder->lookAgain();
    ::close(channel.fd());
    channel = GuardChannel(-1);
  }
  const int fd = finder->find();
  if (fd < 0) return true;
  channel = GuardChannel(fd);
  channel.sendHello();
  guard.announce();
  return true;
}

/// Waits for input, for the time of the guard's next step, or for the end of the watcher, which
/// holds the other end of `lifeline`: then answers false.
bool waitForWork(const Seat& seat, const ProgramEnd& program, int lifeline, int timeout) {
  const auto& [channel, finder] = program;
  const auto writable = static_cast<short>(channel.hasBacklog() ? POLLOUT : 0);
  std::vector<pollfd> waited = {
      {.fd = lifeline, .events = POLLIN, .revents = 0},
      {.fd = channel.fd(), .events = static_cast<short>(POLLIN | writable), .revents = 0},
      {.fd = finder ? finder->fd() : -1, .events = POLLIN, .revents = 0}};
  for (const auto fd : seat.fds()) waited.push_back({.fd = fd, .events = POLLIN, .revents = 0});
  ::poll(waited.data(), waited.size(), timeout);
  return waited[0].revents == 0;
}

void serve(Seat& seat, ProgramEnd& program, Heartbeat& heartbeat, int lifeline) {
  auto& channel = program.channel;
  KeyboardGuard guard(seat, channel);
  if (channel.isOpen()) guard.announce();
  bool isWatched = true;
  while (isWatched) {
    heartbeat.beginWork();
    if (!guard.serve(KeyboardGuard::Clock::now())) return;
    channel.flush();
    if (!channel.isOpen() && !meetNext(program, guard)) break;
    const auto hasInput = seat.flush();
    heartbeat.rest();
    const auto timeout = hasInput ? 0 : millisecondsUntil(guard.deadline());
    isWatched = waitForWork(seat, program, lifeline, timeout);
  }
  heartbeat.beginWork();
  guard.letGo();
  seat.flush();
}

int complain(const std::exception& error) {
  std::cerr << "Kivra: " << error.what() << '\n';
  return EXIT_FAILURE;
}

int guardMain(const GuardDisplay& display, const GuardedProgram& guarded, Heartbeat& heartbeat,
              int lifeline) try {
  ::prctl(PR_SET_NAME, "keyboard-guard");
  ProgramEnd program(guarded);
  auto& channel = program.channel;
  if (channel.isOpen()) channel.sendHello();
  heartbeat.beginWork();
  try {
    const auto seat = display.openSeat();
    lockMemory();
    serve(*seat, program, heartbeat, lifeline);
  } catch (const std::exception& error) {
    const auto status = complain(error);
    channel.send({.kind = ReportKind::unavailable});  // whoever hears of it finds the reason
    return status;
  }
  if (channel.isForeignBuild()) throw std::runtime_error(foreignBuild);
  return EXIT_SUCCESS;
} catch (const std::exception& error) {
  return complain(error);
}

void ignoreTerminal() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGTSTP, SIGTTIN, SIGTTOU, SIGPIPE}) {
    std::signal(signal, SIG_IGN);
  }
}

}  // namespace

int runGuard(const GuardDisplay& display, const GuardedProgram& program) {
  ::setsid();
  ignoreTerminal();
  // Whoever starts this may ignore it.
  std::signal(SIGCHLD, SIG_DFL);
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGCHLD);
  ::sigprocmask(SIG_BLOCK, &signals, nullptr);
  auto& heartbeat = Heartbeat::shared();
  std::array<int, 2> lifeline{};
  if (::pipe2(lifeline.data(), O_CLOEXEC) != 0) return EXIT_FAILURE;
  const auto guard = ::fork();
  if (guard < 0) return EXIT_FAILURE;
  if (guard == 0) {
    ::close(lifeline[1]);
    ::_exit(guardMain(display, program, heartbeat, lifeline[0]));
  }
  ::close(lifeline[0]);
  ::prctl(PR_SET_NAME, "keyboard-watch");
  // A desktop ends what it has started by this, and waits for it: the guard, which is left, ends
  // in its own time.
  if (program.channelFd < 0) std::signal(SIGTERM, SIG_DFL);
  bool wasKilled = false;
  try {
    const auto rescue = display.openRescue();
    wasKilled = GuardWatcher(guard, heartbeat, *rescue).watch();
    rescue->letGoOfKeys();
  } catch (const std::exception&) {
    // The guard meets the same display and says what it lacks.
  }
  // Only now does the program learn that the guard has ended, and may start another.
  if (program.channelFd >= 0) ::close(program.channelFd);
  // A desktop that has started this starts it anew only when it ends like that.
  if (wasKilled) ::kill(::getpid(), SIGKILL);
  return EXIT_SUCCESS;
}

}  // namespace kivra::guard
