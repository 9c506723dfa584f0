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

#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/guard/choices.h"
#include "platform/guard/interleaved_session.h"

namespace kivra::guard {
namespace {

class EveryInterleaving : public testing::Test {
 protected:
  void explore(std::string_view phrase, const World& world) {
    Choices choices;
    InterleavedSession::States seen;
    do {
      InterleavedSession run(phrase, world, choices, seen);
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
