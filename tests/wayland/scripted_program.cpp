#include "scripted_program.h"

#include <linux/input-event-codes.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <stdexcept>

#include "platform/events.h"
#include "platform/xkb/virtual_keys.h"
#include "x_session.h"

namespace kivra::e2e {

using guard::FrameKind;
using guard::Order;
using guard::OrderKind;
using guard::PostedKey;
using guard::Report;
using guard::ReportKind;

namespace {

using namespace std::chrono_literals;

template <class Key>
void append(std::vector<Key>& keys, const std::vector<Key>& more) {
  keys.insert(keys.end(), more.begin(), more.end());
}

std::vector<PostedKey> tapOf(std::uint16_t keyCode, std::uint64_t flags = 0) {
  return {{.kind = PostedKey::Kind::key, .down = 1, .keyCode = keyCode, .flags = flags},
          {.kind = PostedKey::Kind::key, .down = 0, .keyCode = keyCode, .flags = flags}};
}

}  // namespace

std::vector<PostedKey> postedTap(std::uint16_t evdev, std::uint64_t flags) {
  return tapOf(virtualKey(evdev).value(), flags);
}

PostedKey postedGroup(std::uint32_t group) {
  return {.kind = PostedKey::Kind::selectGroup, .value = group};
}

PostedKey postedCharacter(std::uint32_t scalar) {
  return {.kind = PostedKey::Kind::character, .value = scalar};
}

ScriptedProgram::ScriptedProgram(const Environment& environment, const std::string& logFile) {
  std::array<int, 2> ends{};
  if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    throw std::runtime_error("no socket");
  }
  fd_ = ends[0];
  watcher_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{KIVRA_GUARD},
      ChildProcess::Options{
          .environment = environment, .outputFile = logFile, .inheritedFd = ends[1]});
  ::close(ends[1]);
  begin();
}

ScriptedProgram::ScriptedProgram(int fd) : fd_(fd) { begin(); }

void ScriptedProgram::begin() {
  guard::sendRecord(fd_, FrameKind::hello, guard::Hello{});
  const guard::Chord space{.keyCode = key_codes::space};
  send(FrameKind::chords, {.kind = OrderKind::setConsumable}, std::as_bytes(std::span(&space, 1)));
  send(FrameKind::order, {.kind = OrderKind::enable});
  thread_ = std::thread([this] { run(); });
  waitFor([this] { return isReady() || count(ReportKind::unavailable) > 0; });
}

ScriptedProgram::~ScriptedProgram() {
  hangUp();
  thread_.join();
  ::close(fd_);
}

std::vector<Report> ScriptedProgram::reports() const {
  const std::lock_guard lock(mutex_);
  return reports_;
}

int ScriptedProgram::count(ReportKind kind) const {
  return static_cast<int>(std::ranges::count(reports(), kind, &Report::kind));
}

void ScriptedProgram::clear() {
  const std::lock_guard lock(mutex_);
  reports_.clear();
}

void ScriptedProgram::replaceWordsBy(std::vector<PostedKey> keys) {
  const std::lock_guard lock(mutex_);
  replacement_ = std::move(keys);
}

void ScriptedProgram::post(const std::vector<PostedKey>& keys) const {
  send(FrameKind::postedKeys, {.kind = OrderKind::post}, std::as_bytes(std::span(keys)));
}

bool ScriptedProgram::settleInSecret() const {
  // Posts are refused there. The guard reads keys before posts, and hands all over before it waits
  // for the next.
  for (int round = 0; round < 2; ++round) {
    const auto before = count(ReportKind::refused);
    const auto isRefused = [&] {
      post({postedGroup(0)});
      return waitFor([&] { return count(ReportKind::refused) > before; }, 200ms);
    };
    if (!waitFor(isRefused)) return false;
  }
  return true;
}

pid_t ScriptedProgram::guardPid() const {
  ucred peer{};
  socklen_t size = sizeof peer;
  ::getsockopt(fd_, SOL_SOCKET, SO_PEERCRED, &peer, &size);
  const auto pid = std::to_string(watcher_ ? watcher_->pid() : peer.pid);
  std::ifstream children("/proc/" + pid + "/task/" + pid + "/children");
  pid_t child = 0;
  if (!(children >> child)) throw std::runtime_error("there is no guard");
  return child;
}

void ScriptedProgram::hangUp() { ::shutdown(fd_, SHUT_RDWR); }

void ScriptedProgram::run() {
  pollfd waited{.fd = fd_, .events = POLLIN, .revents = 0};
  while (::poll(&waited, 1, -1) > 0) {
    const auto received = guard::receiveFrame(fd_);
    if (received.isClosed) return;
    if (!received.frame || received.frame->kind != FrameKind::report) continue;
    if (const auto report = received.frame->head<Report>()) take(*report);
  }
}

void ScriptedProgram::take(const Report& report) {
  const std::lock_guard lock(mutex_);
  reports_.push_back(report);
  if (report.awaitsVerdict != 0) {
    if (isAnswering_) decide(report);
    return;
  }
  switch (report.kind) {
    case ReportKind::keyDown:
      takeKey((report.flags & event_flags::command) == 0 ? report.keyCode : key_codes::space);
      break;
    case ReportKind::wordBroken:
    case ReportKind::leftMouseDown:
    case ReportKind::rightMouseDown:
      word_.clear();
      isWordKnown_ = true;
      break;
    case ReportKind::timedOut:
      send(FrameKind::order, {.kind = OrderKind::enable});
      break;
    default:
      break;
  }
}

void ScriptedProgram::takeKey(std::uint16_t keyCode) {
  if (keyCode == key_codes::space) {
    word_.clear();
    isWordKnown_ = true;
  } else if (keyCode == 0xFFFF) {
    isWordKnown_ = false;
  } else {
    word_.push_back(keyCode);
  }
}

void ScriptedProgram::decide(const Report& report) {
  Order verdict{.kind = OrderKind::verdict, .number = report.number};
  const auto isDue = report.kind == ReportKind::keyDown && isWordKnown_ && !word_.empty();
  if (isDue) {
    verdict.drop = 1;
    const auto keys = correction();
    send(FrameKind::postedKeys, verdict, std::as_bytes(std::span(keys)));
  } else {
    send(FrameKind::order, verdict);
  }
  if (report.kind == ReportKind::keyDown) takeKey(key_codes::space);
}

std::vector<PostedKey> ScriptedProgram::correction() const {
  std::vector<PostedKey> keys;
  for (std::size_t i = 0; i < word_.size(); ++i) append(keys, postedTap(KEY_BACKSPACE));
  if (replacement_) {
    append(keys, *replacement_);
  } else {
    keys.push_back(postedGroup(1));
    for (const auto keyCode : word_) append(keys, tapOf(keyCode));
  }
  append(keys, tapOf(key_codes::space));
  keys.push_back(postedGroup(0));
  return keys;
}

void ScriptedProgram::send(FrameKind kind, const Order& order,
                           std::span<const std::byte> records) const {
  guard::sendFrame(fd_, kind, std::as_bytes(std::span(&order, 1)), records);
}

}  // namespace kivra::e2e
