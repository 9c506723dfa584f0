#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "platform/guard/process/guard_reports.h"
#include "platform/guard/process/seat_keys.h"

namespace kivra::guard {

/// Tells the program of the keys whose turn has come, as far as it may know them, and asks it about
/// those that it may consume.
class KeyReporter {
 public:
  KeyReporter(Seat& seat, const SeatKeys& keys, GuardReports& reports)
      : seat_(seat), keys_(keys), reports_(reports) {}

  /// The only keys that the program may consume.
  void setConsumable(std::vector<Chord> chords) { consumable_ = std::move(chords); }

  /// Tells of a key; true when the program has been asked about it, and the key has to wait.
  bool tell(const SeatKey& key, bool mayConsume);

  /// Tells of what ends the word that was being typed.
  void tellEndOfWord(ReportKind kind);

 private:
  friend class GuardState;

  bool press(const SeatKey& key, bool mayConsume);
  bool pressTyping(std::uint16_t keyCode, bool mayConsume);
  bool release(const SeatKey& key);
  void repeat(const SeatKey& key);
  bool ask(Report report);
  Report modifierChange(const SeatKey& key) const;
  bool isConsumable(std::uint16_t keyCode, std::uint64_t flags) const;

  Seat& seat_;
  const SeatKeys& keys_;
  GuardReports& reports_;
  std::vector<Chord> consumable_;
  bool isLone_ = false;       // a modifier has been pressed, and no other key since
  bool isMidWord_ = false;    // the program has not been told of all of the word
  std::uint16_t repeat_ = 0;  // the key whose repeats have been reported
};

}  // namespace kivra::guard
