#pragma once

#include <linux/input-event-codes.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/guard/fake_seat.h"
#include "platform/guard/process/keyboard_guard.h"

namespace kivra::guard {

/// A guard between a screen and hands, with the program's end of its socket and a clock, all in the
/// test's own hands.
class GuardBench {
 public:
  using Clock = KeyboardGuard::Clock;

  explicit GuardBench(const Layouts& layouts = Layouts::plain());
  ~GuardBench();
  GuardBench(const GuardBench&) = delete;
  GuardBench& operator=(const GuardBench&) = delete;

  // Hands.
  void press(std::uint16_t key) { hand({.evdev = key}); }
  void release(std::uint16_t key) { hand({.evdev = key, .isDown = false}); }
  void repeat(std::uint16_t key) { hand({.evdev = key, .isRepeat = true}); }
  void tap(std::uint16_t key);
  /// Taps the keys of the letters and spaces, by their English names.
  void type(std::string_view letters);
  void moveFocus();
  void click();
  void foreignKey();
  void setSecret(bool isSecret);

  /// Time passes; the guard wakes when it has asked for.
  void pass(std::chrono::milliseconds time);
  /// The guard does what it has to.
  bool serve() { return guard.serve(now); }

  // The program.
  void enable(const std::vector<Chord>& consumable);
  void order(const Order& order, const std::vector<PostedKey>& keys = {});
  void verdict(std::uint32_t number, bool drop, const std::vector<PostedKey>& keys = {});
  void post(std::uint32_t number, const std::vector<PostedKey>& keys);
  /// The next report; nothing when there is none.
  std::optional<Report> report();
  /// All reports that have come.
  std::vector<Report> reports();
  /// Sends a frame as it is.
  void send(FrameKind kind, const Order& order, const std::vector<PostedKey>& keys);
  void hangUp();

  Screen screen;
  FakeSeat seat;
  int programFd = -1;
  int guardFd = -1;
  std::unique_ptr<GuardChannel> channel;
  KeyboardGuard guard;
  Clock::time_point now{std::chrono::hours(1)};

 private:
  void hand(const SeatKey& key);
};

/// The evdev code of a letter or a space.
std::uint16_t keyOf(char letter);

/// What a program posts: BackSpaces, a layout, letters with their virtual codes.
class Posted {
 public:
  Posted& erase(std::size_t count);
  Posted& group(std::uint32_t group);
  Posted& key(std::uint16_t evdev, std::uint64_t flags = 0);
  Posted& letters(std::string_view letters);
  Posted& character(std::uint32_t scalar);
  Posted& pause(std::uint32_t milliseconds);

  operator const std::vector<PostedKey>&() const { return keys_; }  // NOLINT(*-explicit-*)

 private:
  std::vector<PostedKey> keys_;
};

/// Space, as it ends a word, and with Shift.
std::vector<Chord> spaces();

}  // namespace kivra::guard
