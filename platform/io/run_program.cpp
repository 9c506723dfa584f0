#include "platform/io/run_program.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <string_view>
#include <utility>

namespace kivra {

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr int stopCheckInterval = 50;  // ms
constexpr auto locale = "LC_ALL=C.UTF-8";

class FileDescriptor {
 public:
  explicit FileDescriptor(int fd = -1) : fd_(fd) {}
  ~FileDescriptor() { close(); }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;

  int get() const { return fd_; }
  void set(int fd) { fd_ = fd; }
  void close() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
  }

 private:
  int fd_;
};

/// A pipe; our end does not block. Not a socket: Apertium opens /dev/stdin by its name.
struct Pipe {
  enum class Direction { toProgram, fromProgram };

  explicit Pipe(Direction direction) {
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return;
    const auto isOurs = direction == Direction::toProgram ? 1U : 0U;
    ours.set(ends.at(isOurs));
    theirs.set(ends.at(1 - isOurs));
    ::fcntl(ours.get(), F_SETFL, O_NONBLOCK);
  }
  FileDescriptor ours;
  FileDescriptor theirs;
};

/// While it lives, writing to a program that does not read raises no signal in this thread.
class NoPipeSignal {
 public:
  NoPipeSignal() {
    sigemptyset(&pipeSignal_);
    sigaddset(&pipeSignal_, SIGPIPE);
    ::pthread_sigmask(SIG_BLOCK, &pipeSignal_, &before_);
  }
  ~NoPipeSignal() {
    const timespec atOnce{};
    while (::sigtimedwait(&pipeSignal_, nullptr, &atOnce) > 0) {
    }
    ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }
  NoPipeSignal(const NoPipeSignal&) = delete;
  NoPipeSignal& operator=(const NoPipeSignal&) = delete;

 private:
  sigset_t pipeSignal_{};
  sigset_t before_{};
};

std::vector<char*> pointers(std::vector<std::string>& strings) {
  std::vector<char*> result;
  result.reserve(strings.size() + 1);
  for (auto& string : strings) result.push_back(string.data());
  result.push_back(nullptr);
  return result;
}

std::vector<std::string> environmentOfPrograms() {
  std::vector<std::string> variables;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    if (!std::string_view(*variable).starts_with("LC_ALL=")) variables.emplace_back(*variable);
  }
  variables.emplace_back(locale);
  return variables;
}

/// Starts the program as a process group of its own, with no signal blocked; -1 when it cannot.
pid_t spawn(std::vector<std::string> command, int input, int output) {
  posix_spawn_file_actions_t actions{};
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  // Libraries have files open that are not closed by themselves.
  posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
  posix_spawnattr_t attributes{};
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK);
  sigset_t none;
  sigemptyset(&none);
  posix_spawnattr_setsigmask(&attributes, &none);
  auto environment = environmentOfPrograms();
  pid_t pid = -1;
  if (::posix_spawnp(&pid, command.front().c_str(), &actions, &attributes, pointers(command).data(),
                     pointers(environment).data()) != 0) {
    pid = -1;
  }
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  return pid;
}

/// Writes what the program takes and reads what it gives until it closes its output; false when
/// that does not come in time.
class Exchange {
 public:
  Exchange(const ProgramRun& run, Pipe& input, Pipe& output)
      : left_(run.input),
        deadline_(SteadyClock::now() + run.timeout),
        input_(input),
        output_(output) {}

  bool run(const std::stop_token& stop) {
    while (!stop.stop_requested() && SteadyClock::now() < deadline_) {
      if (left_.empty()) input_.ours.close();
      std::array<pollfd, 2> descriptors{
          {{.fd = output_.ours.get(), .events = POLLIN, .revents = 0},
           {.fd = input_.ours.get(), .events = POLLOUT, .revents = 0}}};
      ::poll(descriptors.data(), descriptors.size(), stopCheckInterval);
      if (descriptors[1].revents != 0) write();
      if (descriptors[0].revents != 0 && !read()) return true;
    }
    return false;
  }

  std::string given;

 private:
  void write() {
    const auto size = ::write(input_.ours.get(), left_.data(), left_.size());
    if (size < 0 && errno == EAGAIN) return;
    // A program need not read everything.
    left_.remove_prefix(size < 0 ? left_.size() : static_cast<std::size_t>(size));
  }

  bool read() {
    std::array<char, 65536> buffer{};
    const auto size = ::read(output_.ours.get(), buffer.data(), buffer.size());
    if (size > 0) given.append(buffer.data(), static_cast<std::size_t>(size));
    return size > 0 || (size < 0 && errno == EAGAIN);
  }

  std::string_view left_;
  SteadyClock::time_point deadline_;
  Pipe& input_;
  Pipe& output_;
};

}  // namespace

std::optional<std::string> outputOfProgram(const ProgramRun& run, const std::stop_token& stop) {
  const NoPipeSignal noPipeSignal;
  Pipe input(Pipe::Direction::toProgram);
  Pipe output(Pipe::Direction::fromProgram);
  const auto pid = spawn(run.command, input.theirs.get(), output.theirs.get());
  if (pid < 0) return std::nullopt;
  input.theirs.close();
  output.theirs.close();
  Exchange exchange(run, input, output);
  const auto isWhole = exchange.run(stop);
  // Whatever the program started goes with it.
  if (!isWhole) ::kill(-pid, SIGKILL);
  int status = 0;
  while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
  }
  if (!isWhole || !WIFEXITED(status) || WEXITSTATUS(status) != 0) return std::nullopt;
  return std::move(exchange.given);
}

}  // namespace kivra
