#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <variant>

#include "platform/guard/process/guard_channel.h"
#include "platform/guard/process/guard_reports.h"
#include "platform/guard/process/key_reporter.h"
#include "platform/guard/process/script_player.h"
#include "platform/guard/process/seat.h"
#include "platform/guard/process/seat_keys.h"

namespace kivra::guard {

/// The keyboard of the session: every key comes from the seat to it and goes on through the seat in
/// the order that it decides. It reports each key when its turn comes and keeps back those that the
/// program may consume, with all that was typed behind them, until the verdict or `decisionTime`
/// later. So a script stands where the word that it mends was typed, however fast the hands are,
/// and a program that hangs, stops or dies never stops the keyboard. One thread; never waits.
class KeyboardGuard : public SeatListener {
 public:
  using Clock = ScriptPlayer::Clock;

  /// How long the program may take to decide of a key. Well below the second after which users
  /// take a keyboard for dead, far above what a decision costs on a machine under load.
  static constexpr std::chrono::milliseconds decisionTime{700};

  /// With more presses than this waiting behind a key that could be consumed, a machine is typing
  /// and the key passes unasked.
  static constexpr std::size_t mostWaiting = 200;

  KeyboardGuard(Seat& seat, GuardChannel& channel)
      : seat_(seat), channel_(channel), reports_(seat, channel) {}

  /// Tells the program that all is set up.
  void announce() { reports_.notice(ReportKind::ready); }

  /// Takes in what has come from the seat and from the program, and goes on where the time has
  /// come. False when the display is gone.
  bool serve(Clock::time_point now);

  /// When `serve` wants to be called at the latest; nothing while only input matters.
  std::optional<Clock::time_point> deadline() const;

  /// The program is gone: every key passes until another one listens.
  void forgetProgram();

  /// Types to its end what is being typed, and lets every key go on that waits: the guard ends.
  void letGo();

  void key(const SeatKey& key) override;
  void foreignKey() override { add(ReportKind::wordBroken); }
  void button(bool isRight) override {
    add(isRight ? ReportKind::rightMouseDown : ReportKind::leftMouseDown);
  }
  void focusMoved() override;
  void secrecyChanged(bool isSecret) override;
  void keyboardMissing() override { reports_.noticeOnce(ReportKind::noKeyboard); }
  void keyboardBusy() override { reports_.noticeOnce(ReportKind::keyboardBusy); }

 private:
  friend class GuardState;  // of the test that tells equal states from others

  using Item = std::variant<SeatKey, ReportKind>;  // a key, or what ends the word

  struct Decision {
    std::uint32_t number = 0;
    SeatKey key;
    Clock::time_point deadline;
  };

  /// What the program has decided, or what has become of a key without it; takes its turn.
  struct Post {
    OrderMessage message;
    std::optional<SeatKey> key;  // that was decided of
  };

  void handle(const OrderMessage& message);
  void setEnabled(bool enabled);
  void applyVerdict(const OrderMessage& verdict);
  void endDecision(const OrderMessage& verdict);
  void breakOff();

  void add(const Item& item);
  void run();
  bool play();
  void begin(const Post& post);
  bool isRefused(const OrderMessage& message) const;

  void process(const SeatKey& key);
  bool isFlooded() const;

  Seat& seat_;
  GuardChannel& channel_;
  GuardReports reports_;
  SeatKeys keys_{seat_};
  KeyReporter reporter_{seat_, keys_, reports_};
  ScriptPlayer player_{keys_};
  std::deque<Item> waiting_;
  std::optional<Decision> decision_;
  std::deque<Post> posts_;
  Clock::time_point now_;
};

}  // namespace kivra::guard
