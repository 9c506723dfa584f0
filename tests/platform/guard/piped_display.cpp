#include "platform/guard/piped_display.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <memory>
#include <span>
#include <stdexcept>
#include <utility>

#include "platform/events.h"
#include "platform/guard/screen.h"

namespace kivra::guard {

namespace {

using InputMessage = GuardedPipes::Message<GuardedPipes::Input>;
using OutputMessage = GuardedPipes::Message<GuardedPipes::Output>;

// Nothing takes so long; it only ends a test that fails.
constexpr int patience = 20'000;

void write(int fd, const OutputMessage& message) {
  [[maybe_unused]] const auto size = ::write(fd, &message, sizeof message);
}

class PipedSeat : public Seat {
 public:
  PipedSeat(int input, int output) : input_(input), output_(output) {
    write(output_, {GuardedPipes::Output::seatOpened, {}, ::getpid()});
  }

  std::vector<int> fds() const override { return {input_}; }
  bool dispatch(SeatListener& listener) override {
    InputMessage message;
    while (::read(input_, &message, sizeof message) == sizeof message) {
      if (message.kind == GuardedPipes::Input::vanish) return false;
      if (message.kind == GuardedPipes::Input::hang) hang();
      listener.key(message.key);
    }
    return true;
  }
  bool flush() override { return false; }
  const KeyMap& keyMap() const override { return Layouts::plain().keyMap(); }
  std::uint32_t group() override { return 0; }
  bool isCapsLocked() override { return false; }
  void pass(const SeatKey& key) override {
    write(output_, {GuardedPipes::Output::passed, key, ::getpid()});
  }
  void drop(const SeatKey& /*key*/) override {}
  void type(const Steps& /*steps*/) override {}

 private:
  [[noreturn]] static void hang() {
    for (volatile bool isBusy = true; isBusy;) {
    }
    std::abort();
  }

  int input_;
  int output_;
};

class PipedRescue : public KeyboardRescue {
 public:
  explicit PipedRescue(int output) : output_(output) {}

  int fd() const override { return -1; }
  bool readEvents() override { return true; }
  void letGoOfKeys() override { write(output_, {GuardedPipes::Output::letGo, {}, ::getpid()}); }

 private:
  int output_;
};

bool isReadable(int fd) {
  pollfd waited{.fd = fd, .events = POLLIN, .revents = 0};
  return ::poll(&waited, 1, patience) == 1;
}

}  // namespace

GuardedPipes::GuardedPipes(Fault fault) {
  std::array<int, 2> ends{};
  if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    throw std::runtime_error("no socket");
  }
  programFd_ = ends[0];
  start(fault, {.channelFd = ends[1]});
  ::close(ends[1]);
}

GuardedPipes::GuardedPipes(const GuardedProgram& program) { start(Fault::none, program); }

void GuardedPipes::start(Fault fault, const GuardedProgram& program) {
  if (::pipe2(input_.data(), O_CLOEXEC) != 0 || ::pipe2(output_.data(), O_CLOEXEC) != 0) {
    throw std::runtime_error("no pipes");
  }
  ::fcntl(input_[0], F_SETFL, O_NONBLOCK);
  watcher_ = ::fork();
  if (watcher_ == 0) run(fault, program);
  ::close(input_[0]);
  ::close(std::exchange(output_[1], -1));
}

GuardedPipes::~GuardedPipes() {
  hangUp();
  if (guard_ > 0) ::kill(guard_, SIGKILL);
  ::close(input_[1]);
  ::close(output_[0]);
  ::kill(watcher_, SIGKILL);
  ::waitpid(watcher_, nullptr, 0);
}

void GuardedPipes::run(Fault fault, const GuardedProgram& program) {
  if (programFd_ >= 0) ::close(programFd_);
  ::close(input_[1]);
  ::close(output_[0]);
  const auto openSeat = [this, fault]() -> std::unique_ptr<Seat> {
    if (fault == Fault::noSeat) throw std::runtime_error("no keyboard here");
    return std::make_unique<PipedSeat>(input_[0], output_[1]);
  };
  const auto openRescue = [this] { return std::make_unique<PipedRescue>(output_[1]); };
  ::_exit(runGuard({.openSeat = openSeat, .openRescue = openRescue}, program));
}

void GuardedPipes::hangUp() {
  if (programFd_ >= 0) ::close(std::exchange(programFd_, -1));
}

void GuardedPipes::send(Input kind, std::uint16_t evdev, bool isDown) {
  const InputMessage message{kind, {.evdev = evdev, .isDown = isDown}, ::getpid()};
  [[maybe_unused]] const auto size = ::write(input_[1], &message, sizeof message);
}

void GuardedPipes::tap(std::uint16_t evdev) {
  send(Input::key, evdev);
  send(Input::key, evdev, false);
}

std::optional<OutputMessage> GuardedPipes::next() {
  OutputMessage message;
  if (!isReadable(output_[0])) return std::nullopt;
  if (::read(output_[0], &message, sizeof message) != sizeof message) return std::nullopt;
  if (message.kind == Output::seatOpened) guard_ = message.process;
  letGo_ = letGo_ || message.kind == Output::letGo;
  return message;
}

std::vector<std::uint16_t> GuardedPipes::presses(std::size_t count) {
  std::vector<std::uint16_t> presses;
  while (presses.size() < count) {
    const auto message = next();
    if (!message) break;
    if (message->kind == Output::passed && message->key.isDown) {
      presses.push_back(message->key.evdev);
    }
  }
  return presses;
}

bool GuardedPipes::listenForSpace() {
  const Order chords{.kind = OrderKind::setConsumable};
  const Chord space{.keyCode = key_codes::space};
  sendFrame(programFd_, FrameKind::chords, std::as_bytes(std::span(&chords, 1)),
            std::as_bytes(std::span(&space, 1)));
  sendRecord(programFd_, FrameKind::order, Order{.kind = OrderKind::enable});
  return await(ReportKind::wordBroken).has_value();
}

std::optional<Report> GuardedPipes::await(ReportKind kind) {
  while (isReadable(programFd_)) {
    const auto received = receiveFrame(programFd_);
    if (received.isClosed) break;
    if (!received.frame || received.frame->kind != FrameKind::report) continue;
    if (const auto report = received.frame->head<Report>(); report->kind == kind) return report;
  }
  return std::nullopt;
}

bool GuardedPipes::haveEnded() {
  while (next()) {
  }
  // An end that is closed can be read at once, and there is nothing in it.
  char byte = 0;
  const auto isDisplayFree = isReadable(output_[0]) && ::read(output_[0], &byte, 1) == 0;
  return isDisplayFree && (programFd_ < 0 || !await(ReportKind{0xFF}));
}

}  // namespace kivra::guard
