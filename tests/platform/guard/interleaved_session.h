#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "platform/guard/choices.h"
#include "platform/guard/model_program.h"

namespace kivra::guard {

/// What may happen besides typing and verdicts.
struct World {
  bool hasUndo = false;
  bool hasDisturbances = false;
  std::uint32_t pause = 0;  ///< of the scripts, in milliseconds
  bool rolls = true;        ///< else each key is let go of before the next
};

/// One run of hands, program and guard, in the order that the choices say.
class InterleavedSession {
 public:
  using States = std::unordered_set<std::uint64_t>;

  /// The phrase's letters are those of the test's alphabet. `seen` are the states that runs with
  /// the same phrase and world have been in.
  InterleavedSession(std::string_view phrase, const World& world, Choices& choices, States& seen);

  /// False when all that the run can come to has been seen before.
  bool play();

  /// What is wrong with the outcome; nothing when all is well.
  std::string verify() const;

  int typed() const { return program_.typed(); }
  int refused() const { return program_.decided() - program_.typed(); }
  std::string text() const { return bench_.screen.text(); }
  /// What has been done, in a line.
  const std::string& story() const { return story_; }

 private:
  struct SeenBefore {};

  struct Held {
    std::uint16_t key = 0;
    bool isOld = false;  // another key has been pressed since
  };

  /// A character as the key that typed it.
  struct TypedKey {
    std::uint16_t key = 0;
    bool shift = false;

    bool operator==(const TypedKey&) const = default;
  };

  struct Origin {
    TypedKey typed;
    std::uint32_t group = 0;
  };

  enum class Move { handsOn, answer, timeOut, undo, arrive, pauseEnd, focus, click, die };

  static Origin originOf(char32_t character);
  std::string verifyText() const;

  void playPhrase();
  void press(std::uint16_t key);
  void release(const Held& held);
  std::uint16_t keyFor(char element);
  void letGoOfSome(std::uint16_t next);
  bool isHeld(std::uint16_t key) const;

  void gap();
  std::vector<Move> moves() const;
  void make(Move move);
  void die();
  std::uint64_t state() const;

  std::string_view phrase_;
  const World& world_;
  Choices& choices_;
  States& seen_;
  std::size_t elements_ = 0;
  std::size_t lookedAt_ = 0;
  GuardBench bench_;
  ModelProgram program_{bench_, world_.pause};
  std::vector<Held> held_;
  std::vector<TypedKey> typedKeys_;
  std::size_t letters_ = 0;
  std::size_t wordStart_ = 0;  // where a new word begins without a Space
  bool isCapsOn_ = false;
  bool isDead_ = false;
  bool isDisturbed_ = false;
  std::string story_;
};

}  // namespace kivra::guard
