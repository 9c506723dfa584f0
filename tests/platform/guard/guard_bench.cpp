#include "platform/guard/guard_bench.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <span>
#include <stdexcept>
#include <utility>

#include "platform/events.h"
#include "platform/xkb/virtual_keys.h"

namespace kivra::guard {

namespace {

std::unique_ptr<GuardChannel> channelOf(int& programFd, int& guardFd) {
  std::array<int, 2> ends{};
  if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    throw std::runtime_error("no socket pair");
  }
  programFd = ends[0];
  guardFd = ends[1];
  return std::make_unique<GuardChannel>(guardFd);
}

}  // namespace

GuardBench::GuardBench(const Layouts& layouts)
    : screen(layouts),
      seat(screen, layouts),
      channel(channelOf(programFd, guardFd)),
      guard(seat, *channel) {
  sendRecord(programFd, FrameKind::hello, Hello{});
}

GuardBench::~GuardBench() {
  hangUp();
  ::close(guardFd);
}

void GuardBench::hand(const SeatKey& key) {
  seat.add([key](SeatListener& listener) { listener.key(key); });
  serve();
}

void GuardBench::tap(std::uint16_t key) {
  press(key);
  release(key);
}

void GuardBench::type(std::string_view letters) {
  for (const auto letter : letters) tap(keyOf(letter));
}

void GuardBench::moveFocus() {
  screen.moveFocus();
  seat.add([](SeatListener& listener) { listener.focusMoved(); });
  serve();
}

void GuardBench::click() {
  seat.add([](SeatListener& listener) { listener.button(false); });
  serve();
}

void GuardBench::foreignKey() {
  seat.add([](SeatListener& listener) { listener.foreignKey(); });
  serve();
}

void GuardBench::setSecret(bool isSecret) {
  seat.add([isSecret](SeatListener& listener) { listener.secrecyChanged(isSecret); });
  serve();
}

void GuardBench::pass(std::chrono::milliseconds time) {
  const auto end = now + time;
  while (const auto deadline = guard.deadline()) {
    if (*deadline > end) break;
    now = *deadline;
    serve();
  }
  now = end;
}

void GuardBench::enable(const std::vector<Chord>& consumable) {
  const Order chords{.kind = OrderKind::setConsumable};
  sendFrame(programFd, FrameKind::chords, std::as_bytes(std::span(&chords, 1)),
            std::as_bytes(std::span(consumable)));
  order({.kind = OrderKind::enable});
  // That the word is broken.
  report();
}

void GuardBench::send(FrameKind kind, const Order& order, const std::vector<PostedKey>& keys) {
  sendFrame(programFd, kind, std::as_bytes(std::span(&order, 1)), std::as_bytes(std::span(keys)));
}

void GuardBench::order(const Order& order, const std::vector<PostedKey>& keys) {
  send(keys.empty() ? FrameKind::order : FrameKind::postedKeys, order, keys);
  serve();
}

void GuardBench::verdict(std::uint32_t number, bool drop, const std::vector<PostedKey>& keys) {
  order({.kind = OrderKind::verdict, .drop = drop, .number = number}, keys);
}

void GuardBench::post(std::uint32_t number, const std::vector<PostedKey>& keys) {
  order({.kind = OrderKind::post, .number = number}, keys);
}

std::optional<Report> GuardBench::report() {
  const auto received = receiveFrame(programFd);
  return received.frame ? received.frame->head<Report>() : std::nullopt;
}

std::vector<Report> GuardBench::reports() {
  std::vector<Report> reports;
  while (const auto next = report()) reports.push_back(*next);
  return reports;
}

void GuardBench::hangUp() {
  if (programFd >= 0) ::close(std::exchange(programFd, -1));
}

std::uint16_t keyOf(char letter) {
  constexpr std::string_view rows[] = {"qwertyuiop[]", "asdfghjkl;'", "zxcvbnm,."};
  constexpr std::uint16_t first[] = {KEY_Q, KEY_A, KEY_Z};
  for (std::size_t row = 0; row < 3; ++row) {
    const auto column = rows[row].find(letter);
    if (column != std::string_view::npos) return static_cast<std::uint16_t>(first[row] + column);
  }
  return KEY_SPACE;
}

Posted& Posted::key(std::uint16_t evdev, std::uint64_t flags) {
  PostedKey key{.keyCode = virtualKey(evdev).value(), .flags = flags};
  keys_.push_back(key);
  key.down = 0;
  keys_.push_back(key);
  return *this;
}

Posted& Posted::erase(std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) key(KEY_BACKSPACE);
  return *this;
}

Posted& Posted::group(std::uint32_t group) {
  keys_.push_back({.kind = PostedKey::Kind::selectGroup, .value = group});
  return *this;
}

Posted& Posted::letters(std::string_view letters) {
  for (const auto letter : letters) key(keyOf(letter));
  return *this;
}

Posted& Posted::character(std::uint32_t scalar) {
  keys_.push_back({.kind = PostedKey::Kind::character, .value = scalar});
  return *this;
}

Posted& Posted::pause(std::uint32_t milliseconds) {
  keys_.push_back({.kind = PostedKey::Kind::pause, .value = milliseconds});
  return *this;
}

std::vector<Chord> spaces() {
  return {{key_codes::space, 0}, {key_codes::space, event_flags::shift}};
}

}  // namespace kivra::guard
