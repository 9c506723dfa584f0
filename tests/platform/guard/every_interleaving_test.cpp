// The proof that no letter is lost: the guard, the program and the hands in every order that they
// can take turns in.
//
// Hands type a phrase of up to eight keys: letters (l), letters with Shift (u), Caps Lock (c) and
// Space (_), which the program may consume. Whatever is held when a key is pressed is let go of
// before it or rolls over it, Shift included, in every combination. Between any two movements of
// the hands, as often as it can be:
//   - the program answers the Space that it has been asked about, or does not: so every verdict
//     comes at once, later, last, or never;
//   - the time to decide runs out: a verdict after that is late;
//   - the program decides to undo its last correction, outside a decision, and its post arrives
//     then or after any number of further movements;
// and, once in a run, the focus moves, a button is pressed, or the program dies.
// All phrases of up to three keys are tried with all of that, all of four keys without undo and
// disturbances, and some of eight keys with either. A state that an earlier run has been in is not
// gone on from: all that follows has been seen.
// What the program is told besides the Space it takes in at once: it changes nothing but what the
// program knows, and what it knows too late is what the Space behind it waits for.
//
// Where scripts pause, for applications that need it, the pause ends between any two movements; a
// focus that moves meanwhile takes the word with it that has been erased, so that is left out.
//
// On the screen, afterwards: the keys that were typed, each once and in their order, every word of
// one layout; the layout that the scripts that were not refused have chosen; no key down; the lock
// as the hands made it.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iostream>
#include <map>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "platform/guard/choices.h"
#include "platform/guard/guard_state.h"
#include "platform/guard/model_program.h"

namespace kivra::guard {
namespace {

using namespace std::chrono_literals;

/// What may happen besides typing and verdicts.
struct World {
  bool hasUndo = false;
  bool hasDisturbances = false;
  std::uint32_t pause = 0;  // of the scripts, in milliseconds
  bool rolls = true;        // else each key is let go of before the next
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

const std::map<char32_t, Origin>& origins() {
  static const auto found = [] {
    std::map<char32_t, Origin> map;
    for (const char letter : std::string_view("qwertyuiopasdfghjklzxcvbnm ")) {
      const auto key = keyOf(letter);
      for (const auto group : {1U, 0U}) {
        for (const auto shift : {true, false}) {
          map[Layouts::plain().character(key, group, shift)] = {{key, shift}, group};
        }
      }
    }
    return map;
  }();
  return found;
}

class Session {
 public:
  using States = std::unordered_set<std::uint64_t>;

  Session(std::string_view phrase, const World& world, Choices& choices, States& seen)
      : phrase_(phrase), world_(world), choices_(choices), seen_(seen) {
    bench_.enable(spaces());
  }

  /// False when all that the run can come to has been seen before.
  bool play() {
    try {
      playPhrase();
    } catch (const SeenBefore&) {
      return false;
    }
    return true;
  }
  /// What is wrong with the outcome; nothing when all is well.
  std::string verify() const {
    const auto& screen = bench_.screen;
    if (screen.down().any()) return "a key is down";
    if (screen.faults() > 0) return "a key twice, or a BackSpace too many";
    if (screen.isCapsOn() != isCapsOn_) return "the lock";
    if (!isDead_ && bench_.guard.deadline()) return "something waits";
    if (!isDead_ && screen.group() != static_cast<std::uint32_t>(program_.typed() % 2)) {
      return "the layout";
    }
    return verifyText();
  }

  int typed() const { return program_.typed(); }
  int refused() const { return program_.decided() - program_.typed(); }
  std::string text() const { return bench_.screen.text(); }
  const std::string& story() const { return story_; }

 private:
  struct SeenBefore {};

  struct Held {
    std::uint16_t key = 0;
    bool isOld = false;  // another key has been pressed since
  };

  void playPhrase() {
    gap();
    for (const char element : phrase_) {
      ++elements_;
      const auto key = keyFor(element);
      letGoOfSome(key);
      if (element == 'u' && !isHeld(KEY_LEFTSHIFT)) press(KEY_LEFTSHIFT);
      press(key);
    }
    ++elements_;
    while (!held_.empty()) release(held_.front());
    bench_.pass(10s);
    if (!isDead_) program_.readToTheEnd();
  }

  std::string verifyText() const {
    const auto hasCaps = phrase_.find('c') != std::string_view::npos;
    const auto& characters = bench_.screen.characters();
    if (characters.size() != typedKeys_.size()) return "the number of letters";
    std::uint32_t group = 2;
    for (std::size_t i = 0; i < characters.size(); ++i) {
      const auto& [typed, of] = origins().at(characters[i]);
      const auto isRight = hasCaps ? typed.key == typedKeys_[i].key : typed == typedKeys_[i];
      if (!isRight) return "letter " + std::to_string(i);
      const auto isApart = typed.key == KEY_SPACE || i == wordStart_;
      if (!isApart && group != 2 && group != of) return "a word of two layouts";
      group = isApart && typed.key == KEY_SPACE ? 2 : of;
    }
    return "";
  }

  void press(std::uint16_t key) {
    story_ += " +" + std::to_string(key);
    for (auto& held : held_) held.isOld = true;
    held_.push_back({key, false});
    if (key == KEY_CAPSLOCK) {
      isCapsOn_ = !isCapsOn_;
    } else if (key != KEY_LEFTSHIFT) {
      typedKeys_.push_back({key, key != KEY_SPACE && isHeld(KEY_LEFTSHIFT)});
    }
    if (isDead_) {
      bench_.screen.press(key);
    } else {
      bench_.press(key);
    }
    gap();
  }

  void release(const Held& held) {
    const auto key = held.key;
    story_ += " -" + std::to_string(key);
    std::erase_if(held_, [key](const Held& other) { return other.key == key; });
    if (isDead_) {
      if (bench_.screen.down().test(key)) bench_.screen.release(key);
    } else {
      bench_.release(key);
    }
    gap();
  }

  std::uint16_t keyFor(char element) {
    if (element == 'c') return KEY_CAPSLOCK;
    if (element == '_') return KEY_SPACE;
    return keyOf("ghbdtncfvs"[letters_++]);
  }

  // A key rolls over one other at most, Shift over all of its letters.
  void letGoOfSome(std::uint16_t next) {
    lookedAt_ = 0;
    for (const auto& held : std::vector(held_)) {
      ++lookedAt_;
      const auto mustGo = held.key == next || (held.isOld && held.key != KEY_LEFTSHIFT);
      if (mustGo || !world_.rolls || choices_.choose(2) == 0) release(held);
    }
  }

  bool isHeld(std::uint16_t key) const {
    return std::ranges::find(held_, key, &Held::key) != held_.end();
  }

  // Everybody but the hands, until it is their turn again.
  void gap() {
    enum class Move { handsOn, answer, timeOut, undo, arrive, pauseEnd, focus, click, die };
    while (!isDead_) {
      program_.read();
      std::vector moves{Move::handsOn};
      const auto isPausing = GuardState::isPausing(bench_.guard);
      if (GuardState::isDeciding(bench_.guard)) moves.push_back(Move::timeOut);
      if (isPausing) moves.push_back(Move::pauseEnd);
      if (program_.hasUndoToSend()) {
        moves.push_back(Move::arrive);
      } else {
        if (program_.isAsked()) moves.push_back(Move::answer);
        if (world_.hasUndo && program_.canUndo()) moves.push_back(Move::undo);
      }
      if (world_.hasDisturbances && !isDisturbed_) {
        moves.insert(moves.end(), {Move::click, Move::die});
        if (!isPausing) moves.push_back(Move::focus);
      }
      if (choices_.isNew() && !seen_.insert(state()).second) throw SeenBefore();
      const auto move = moves[choices_.choose(moves.size())];
      if (move == Move::handsOn) return;
      constexpr std::array names = {"",         "answer", "late",  "undo", "post",
                                    "pauseEnd", "focus",  "click", "die"};
      story_ += std::string(" ") + names.at(static_cast<std::size_t>(move));
      switch (move) {
        case Move::answer:
          program_.answer();
          break;
        case Move::timeOut:
          bench_.pass(KeyboardGuard::decisionTime);
          break;
        case Move::pauseEnd:
          bench_.pass(std::chrono::milliseconds(world_.pause));
          break;
        case Move::undo:
          program_.undo();
          break;
        case Move::arrive:
          program_.sendUndo();
          break;
        default:
          isDisturbed_ = true;
          wordStart_ = typedKeys_.size();
          if (move == Move::focus) bench_.moveFocus();
          if (move == Move::click) bench_.click();
          if (move == Move::die) die();
          break;
      }
    }
  }

  std::uint64_t state() const {
    Digest digest;
    digest.add(elements_).add(lookedAt_).add(wordStart_).add(isDisturbed_).add(isDead_);
    for (const auto& [key, isOld] : held_) digest.add(key).add(isOld);
    for (const auto& typed : typedKeys_) digest.add(typed.key).add(typed.shift);
    bench_.screen.addTo(digest);
    program_.addTo(digest, GuardState::number(bench_.guard));
    GuardState::add(digest, bench_.guard);
    return digest.value();
  }

  // The guard ends as well, whoever watches it lets go of its keys, and hands type on without it.
  void die() {
    bench_.hangUp();
    bench_.serve();
    bench_.guard.letGo();
    KeySet held;
    for (const auto& [key, isOld] : held_) held.set(key);
    bench_.screen.letGo(held);
    isDead_ = true;
  }

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

class EveryInterleaving : public testing::Test {
 protected:
  void explore(std::string_view phrase, const World& world) {
    Choices choices;
    Session::States seen;
    do {
      Session run(phrase, world, choices, seen);
      ++runs;
      if (!run.play()) continue;
      ++outcomes;
      typed += run.typed();
      refused += run.refused();
      const auto fault = run.verify();
      ASSERT_EQ(fault, "") << phrase << ":" << run.story() << " gives \"" << run.text() << '"';
    } while (choices.next());
  }

  void TearDown() override {
    EXPECT_GT(typed, 500) << "scripts are typed";
    EXPECT_GT(refused, 500) << "and refused";
    std::cout << runs << " runs, " << outcomes << " outcomes, " << typed << " scripts typed, "
              << refused << " refused\n";
  }

  long runs = 0;
  long outcomes = 0;  // of the runs that came to something new
  long typed = 0;
  long refused = 0;
};

/// All phrases of the length over the alphabet.
std::vector<std::string> phrases(std::size_t length) {
  std::vector<std::string> all{""};
  for (std::size_t i = 0; i < length; ++i) {
    std::vector<std::string> longer;
    for (const auto& phrase : all) {
      for (const char element : {'l', 'u', 'c', '_'}) longer.push_back(phrase + element);
    }
    all = std::move(longer);
  }
  return all;
}

TEST_F(EveryInterleaving, OfAllPhrasesOfUpToThreeKeysWithAllThatCanHappen) {
  for (std::size_t length = 1; length <= 3; ++length) {
    for (const auto& phrase : phrases(length)) {
      explore(phrase, {.hasUndo = true, .hasDisturbances = true});
      if (HasFatalFailure()) return;
    }
  }
}

TEST_F(EveryInterleaving, OfAllPhrasesOfFourKeys) {
  for (const auto& phrase : phrases(4)) {
    explore(phrase, {});
    if (HasFatalFailure()) return;
  }
}

TEST_F(EveryInterleaving, OfShortPhrasesWhereScriptsPause) {
  for (const auto* phrase : {"lu_", "l_l", "l__", "_l_", "ll_c", "l_lu", "l_l_"}) {
    explore(phrase, {.hasUndo = true, .hasDisturbances = true, .pause = 20});
    if (HasFatalFailure()) return;
  }
}

TEST_F(EveryInterleaving, OfEightKeysThatRollAndAreUndone) {
  for (const auto* phrase : {"ll_lcul_", "_ul_l__l", "ullu_ll_"}) {
    explore(phrase, {.hasUndo = true});
    if (HasFatalFailure()) return;
  }
}

TEST_F(EveryInterleaving, OfEightKeysOneByOneWithADisturbance) {
  for (const auto* phrase : {"lu_cl_ul", "ll_ul_l_", "lll_c_lu"}) {
    explore(phrase, {.hasUndo = true, .hasDisturbances = true, .rolls = false});
    if (HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace kivra::guard
