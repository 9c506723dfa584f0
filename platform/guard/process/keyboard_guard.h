#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>
#include <variant>
#include <vector>

#include "platform/guard/process/guard_channel.h"
#include "platform/guard/process/key_script.h"
#include "platform/guard/process/seat.h"

namespace kivra::guard {

/// The keyboard of the session: every key comes from the seat to it and goes on through the seat in
/// the order that it decides. It reports each key when its turn comes and keeps back those that the
/// program may consume, with all that was typed behind them, until the verdict or `decisionTime`
/// later. So a script stands where the word that it mends was typed, however fast the hands are,
/// and a program that hangs, stops or dies never stops the keyboard. One thread; never waits.
class KeyboardGuard : public SeatListener {
 public:
  using Clock = std::chrono::steady_clock;

  /// How long the program may take to decide of a key. Well below the second after which users
  /// take a keyboard for dead, far above what a decision costs on a machine under load.
  static constexpr std::chrono::milliseconds decisionTime{700};

  /// With more presses than this waiting behind a key that could be consumed, a machine is typing
  /// and the key passes unasked.
  static constexpr std::size_t mostWaiting = 200;

  KeyboardGuard(Seat& seat, GuardChannel& channel) : seat_(seat), channel_(channel) {}

  /// Tells the program that all is set up.
  void announce();

  /// Takes in what the program has ordered, and goes on where the time has come.
  void serve(Clock::time_point now);

  /// When `serve` wants to be called at the latest; nothing while only input matters.
  std::optional<Clock::time_point> deadline() const;

  /// Lets every key go on that waits, and gives up what is being typed.
  void letGo();

  /// Keys that are down at the application.
  const KeySet& down() const { return down_; }

  void key(const SeatKey& key) override;
  void foreignKey() override { add(Happening::wordBroken); }
  void button(bool isRight) override {
    add(isRight ? Happening::rightButton : Happening::leftButton);
  }
  void focusMoved() override;
  void secrecyChanged(bool isSecret) override;
  void keyboardMissing() override { notify(ReportKind::noKeyboard); }
  void keyboardBusy() override { notify(ReportKind::keyboardBusy); }

 private:
  enum class Happening : std::uint8_t { wordBroken, leftButton, rightButton };
  using Item = std::variant<SeatKey, Happening>;

  struct Decision {
    std::uint32_t number = 0;
    SeatKey key;
    Clock::time_point deadline;
  };

  struct Post {
    OrderMessage message;
    std::uint16_t trigger = 0;  // the key in whose place it stands, 0 for none
  };

  struct Playing {
    std::uint32_t number = 0;
    KeyScript script;
    std::size_t next = 0;
    std::optional<Clock::time_point> pauseEnd;
  };

  void handle(const OrderMessage& message);
  void setEnabled(bool enabled);

  void add(Item item);
  void run();
  bool isHeldUp() const { return decision_ || playing_ || !posts_.empty(); }
  void process(const SeatKey& key);
  void process(Happening happening);
  void press(const SeatKey& key);
  void release(const SeatKey& key);
  void repeat(const SeatKey& key);
  void decide(const SeatKey& key, Report report);
  void take(const OrderMessage& verdict);
  void expire();
  void pass(const SeatKey& key);
  void pressOwed(const SeatKey& key);

  void post(const OrderMessage& message);
  void play(Clock::time_point now);
  bool playUntilPause(Clock::time_point now);
  void breakOff();
  void type(const Steps& steps);
  bool isConsumable(std::uint16_t keyCode, std::uint64_t flags) const;
  bool isFlooded() const;

  std::uint64_t flags() const;
  std::uint32_t report(Report report);
  void notify(ReportKind kind, std::uint32_t number = 0);

  Seat& seat_;
  GuardChannel& channel_;
  std::deque<Item> waiting_;
  std::optional<Decision> decision_;
  std::deque<Post> posts_;
  std::optional<Playing> playing_;
  std::vector<Chord> consumable_;
  KeySet held_;               // by hands, as far as keys had their turn
  KeySet down_;               // at the application
  std::uint16_t lone_ = 0;    // the modifier that was pressed last, with no other key since
  std::uint16_t repeat_ = 0;  // the key whose repeats have been reported
  bool isEnabled_ = false;
  bool isSecret_ = false;
  bool owesNotice_ = false;
  std::uint32_t number_ = 0;
  std::uint32_t lastPassed_ = 0;  // the number of the last press that has gone on
};

}  // namespace kivra::guard
