#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <ostream>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "process_figures.h"
#include "screen.h"
#include "working_day.h"
#include "x_session.h"

namespace kivra::soak {

struct Counts {
  int words = 0;
  int corrections = 0;
  int lettersOff = 0;
  int keysHeld = 0;  ///< checks that found a key down that no hand holds, or another lock
  int kills = 0;
  int cutWords = 0;    ///< under way at a kill or in the second after it, and not whole
  int wholeWords = 0;  ///< left as typed after a kill
  int leftBehind = 0;  ///< processes that outlived their program
  std::chrono::milliseconds longestSilence{};
  std::chrono::milliseconds longestSilenceAtKills{};
};

enum class Victim { program, guard, watcher };

/// A signal to one of the program's processes while typing goes on, at any moment or, if there is
/// one, while this key is down.
struct Kill {
  Victim victim = Victim::program;
  int signal = 0;
  std::uint8_t heldKey = 0;
};

std::ostream& operator<<(std::ostream& out, const Kill& kill);

/// Each signal to each process, half of them with a key down.
std::vector<Kill> allKills(std::mt19937& random);

/// A day at the keyboard: step by step something is typed, and what stands in the windows then is
/// compared with what people mean. The model knows the words, the layout and the words that were
/// undone; it asks the program for nothing.
class Soak {
 public:
  struct Options {
    e2e::XServer::Kind server = e2e::XServer::Kind::xorg;
    std::chrono::milliseconds pace{100};
    unsigned int seed = 1;
    bool kills = true;
  };

  /// Starts the session and the program. Differences are written to `log` as they are found.
  Soak(const Options& options, std::ostream& log);

  void step();
  /// Kills in each way once, and looks whether the keyboard outlives it.
  void killInAllWays();

  const Counts& counts() const { return counts_; }
  ProcessFigures processes() const { return figuresOf(processesOn(session_.display())); }

 private:
  void start();
  bool corrects();

  // Steps. Each ends behind a Space.
  void line();
  void slip();
  void replace();
  void capitals();
  void digits();
  void undo();
  void switchByHand();
  void toggleLayout();
  void changeWindow();
  void leaveWordBehind();
  void clickInWord();

  // The model.
  /// What the word's keys give in the present layout.
  std::string shown(const std::string& word) const;
  bool isWrongHere(const std::string& word) const { return isRussian(word) != isInRussian_; }
  /// These words come out as they are meant.
  void expect(const std::string& text);
  void expectAsIs(const std::string& text) { expected_[screen_.focused()] += text; }
  void check(const std::string& step);
  void checkKeyboard(const std::string& step);
  void resume();

  void kill(const Kill& kill);
  std::chrono::steady_clock::time_point typeAround(const Kill& kill, const std::string& text);
  pid_t processOf(Victim victim);
  void strikeAt(const Kill& kill);
  void checkWordsAround(const std::string& kill, const std::vector<std::string>& words,
                        std::size_t firstSafe);
  void mend(const Kill& kill);
  void restart();

  template <class T>
  const T& any(const std::vector<T>& of) {
    return of[std::uniform_int_distribution<std::size_t>(0, of.size() - 1)(random_)];
  }
  void type(const std::string& keys) {
    screen_.hands([&](e2e::Typist& typist) { typist.type(keys); });
  }

  Options options_;
  std::ostream& log_;
  std::mt19937 random_;
  e2e::XSession session_;
  Screen screen_{session_};
  std::array<std::string, Screen::windowCount> expected_;
  bool isInRussian_ = false;
  std::set<std::string> undone_;  // as they were shown
  Counts counts_;
};

}  // namespace kivra::soak
