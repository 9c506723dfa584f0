#include "child_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>
#include <thread>

namespace kivra::e2e {

namespace {

using namespace std::chrono_literals;

class FileActions {
 public:
  FileActions() { posix_spawn_file_actions_init(&actions_); }
  ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;

  void redirect(int from, int to) { posix_spawn_file_actions_adddup2(&actions_, from, to); }
  void open(int fd, const char* path, int flags) {
    posix_spawn_file_actions_addopen(&actions_, fd, path, flags, 0600);
  }
  const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

pid_t spawn(const std::vector<std::string>& command, const Environment& environment,
            const FileActions& actions) {
  std::vector<std::string> variables;
  for (const auto& [name, value] : environment) {
    variables.push_back(std::string(name).append("=").append(value));
  }
  const auto pointers = [](std::vector<std::string>& strings) {
    std::vector<char*> result;
    result.reserve(strings.size() + 1);
    for (auto& string : strings) result.push_back(string.data());
    result.push_back(nullptr);
    return result;
  };
  auto arguments = command;
  pid_t pid = -1;
  if (posix_spawnp(&pid, command.front().c_str(), actions.get(), nullptr,
                   pointers(arguments).data(), pointers(variables).data()) != 0) {
    throw std::runtime_error("cannot start " + command.front());
  }
  return pid;
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command, const Options& options) {
  FileActions actions;
  const auto* output = options.outputFile.empty() ? "/dev/null" : options.outputFile.c_str();
  actions.open(STDIN_FILENO, "/dev/null", O_RDONLY);
  actions.open(STDOUT_FILENO, output, O_WRONLY | O_CREAT | O_APPEND);
  actions.redirect(STDOUT_FILENO, STDERR_FILENO);
  if (options.inheritedFd >= 0) actions.redirect(options.inheritedFd, 3);
  pid_ = spawn(command, options.environment, actions);
}

ChildProcess::~ChildProcess() {
  if (status_) return;
  signal(SIGTERM);
  signal(SIGCONT);
  if (wait(2000ms)) return;
  signal(SIGKILL);
  wait(2000ms);
}

void ChildProcess::signal(int number) const {
  if (!status_) ::kill(pid_, number);
}

std::optional<int> ChildProcess::wait(std::chrono::milliseconds timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  while (!status_) {
    int status = 0;
    if (::waitpid(pid_, &status, WNOHANG) == pid_) {
      status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    } else if (std::chrono::steady_clock::now() >= deadline) {
      break;
    } else {
      std::this_thread::sleep_for(2ms);
    }
  }
  return status_;
}

std::string outputOf(const std::vector<std::string>& command, const Environment& environment) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return "";
  pid_t pid = -1;
  {
    FileActions actions;
    actions.redirect(ends[1], STDOUT_FILENO);
    actions.open(STDERR_FILENO, "/dev/null", O_WRONLY);
    pid = spawn(command, environment, actions);
  }
  ::close(ends[1]);
  std::string output;
  std::array<char, 4096> buffer{};
  for (ssize_t size = 0; (size = ::read(ends[0], buffer.data(), buffer.size())) > 0;) {
    output.append(buffer.data(), static_cast<std::size_t>(size));
  }
  ::close(ends[0]);
  ::waitpid(pid, nullptr, 0);
  return output;
}

}  // namespace kivra::e2e
