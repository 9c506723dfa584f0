#pragma once

#include <X11/Xlib.h>

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

#include "platform/x11/character_keys.h"
#include "platform/x11/frozen_keyboard.h"
#include "platform/x11/guard_channel.h"
#include "platform/x11/key_grabs.h"
#include "platform/x11/keyboard_state.h"
#include "platform/x11/modifier_map.h"
#include "platform/x11/record_stream.h"
#include "platform/x11/x_display.h"

namespace kivra::x11 {

/// The process that holds the keyboard. It reports every key to the program and freezes the
/// keyboard where the program may consume one; the program itself holds nothing. So when the
/// program dies, hangs or is stopped in the middle of a decision, the guard still runs: it lets the
/// key pass, in its place before the keys typed after it, and leaves the keyboard alone until the
/// program is back. When the guard itself dies, the server drops its grabs.
class KeyboardGuard {
 public:
  /// How long the program may take to decide of a key. Well below the second after which users
  /// take a keyboard for dead, far above what a decision costs on a machine under load.
  static constexpr std::chrono::milliseconds decisionTime{700};

  /// With more presses than this waiting behind a key that could be consumed, a machine is typing
  /// and the key passes unasked: typing them all again behind each word would take longer than the
  /// machine types.
  static constexpr std::size_t mostWaiting = 200;

  /// Throws std::runtime_error when the server refuses what the guard needs.
  KeyboardGuard(DisplayPointer display, int channelFd);
  ~KeyboardGuard();

  /// Serves until the program closes its end.
  void run();

 private:
  void readServer();
  void takeEvent(XEvent& event);
  void readMap();
  void applyChords();

  void handleOrders(std::chrono::milliseconds timeout);
  void handle(const OrderMessage& message);
  void setEnabled(bool enabled);

  void handleInput();
  void handleOwn(const RecordedEvent& event);
  void handlePress(const RecordedEvent& event);
  void handleRelease(const RecordedEvent& event);
  void handleButton(const RecordedEvent& event);
  void reportModifier(const RecordedEvent& event, std::uint64_t flags);

  void awaitGrabbed();
  bool takeGrabbed(std::uint8_t code);
  void decide(const RecordedEvent& event);
  bool isFlooded();
  std::optional<OrderMessage> awaitVerdict(std::uint32_t number);
  void carryOut(const OrderMessage& verdict, const RecordedEvent& event);
  void replay();

  void post(const OrderMessage& message);
  void typeFrozen(std::vector<PostedKey> keys, std::uint32_t after);
  FrozenKeyboard::Writer writer(std::vector<PostedKey> keys);
  void collect(OrderMessage& message, const OrderMessage& part);

  std::uint32_t report(Report report);
  void sendNotice();

  DisplayPointer display_;
  GuardChannel channel_;
  RecordStream stream_;
  FrozenKeyboard keyboard_;
  KeyGrabs grabs_;
  CharacterKeys characters_;
  ModifierMap modifiers_;
  KeyboardState state_;
  std::vector<Chord> chords_;
  std::deque<std::uint8_t> grabbed_;  // presses for which the server froze the keyboard
  std::optional<OrderMessage> partial_;
  std::vector<OrderMessage> postponed_;  // came while a decision was awaited
  Atom activeWindow_;
  int xkbEvent_ = 0;
  int inputOpcode_ = 0;
  std::uint32_t group_ = 0;
  bool mapChanged_ = false;
  bool isEnabled_ = false;
  bool owesNotice_ = false;
  std::uint32_t number_ = 0;
  std::uint32_t lastPress_ = 0;  // the number of the last reported press of an ordinary key
};

}  // namespace kivra::x11
