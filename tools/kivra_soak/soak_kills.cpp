// What is typed while the program or its guard is killed.

#include <signal.h>

#include <algorithm>
#include <sstream>
#include <thread>

#include "soak.h"

namespace kivra::soak {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

constexpr auto patience = 1s;  // from the kill until the keyboard must work again

std::vector<std::string> wordsOf(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> result;
  for (std::string word; stream >> word;) result.push_back(word);
  return result;
}

}  // namespace

void Soak::kill() {
  const auto victim = any(std::vector{Victim::guard, Victim::stoppedGuard, Victim::program});
  std::string text;
  for (int i = 0; i < 3; ++i) text += any(lines()) + " ";
  const auto delay = std::chrono::milliseconds(std::uniform_int_distribution(0, 2000)(random_));
  const auto before = processesOn(session_.display());
  Clock::time_point killed;
  screen_.hands([&](e2e::Typist& typist) { typist.type(keysOf(text)); },
                [&] {
                  std::this_thread::sleep_for(delay);
                  killAt(victim);
                  killed = Clock::now();
                });
  screen_.window(screen_.focused()).textWhenQuiet(1s);
  // The word that is under way when time is up is the last one that may be cut.
  const auto firstSafe = static_cast<std::size_t>(screen_.spacesUntil(killed + patience)) + 1;
  checkWordsAround(wordsOf(text), firstSafe);
  counts_.longestSilenceAtKills = std::max(counts_.longestSilenceAtKills, screen_.longestSilence());
  checkKeyboard("kill");
  waitUntilMended(victim);
  if (victim == Victim::program) counts_.leftBehind += figuresOf(before).processes;
  ++counts_.kills;
}

void Soak::killAt(Victim victim) {
  if (victim == Victim::program) {
    session_.kivra().signal(SIGKILL);
  } else if (const auto guard = session_.guardPid(); guard > 0) {
    ::kill(guard, victim == Victim::guard ? SIGKILL : SIGSTOP);
  }
}

void Soak::waitUntilMended(Victim victim) {
  if (victim == Victim::program) {
    session_.stopKivra();
    if (!e2e::waitFor([&] { return !session_.isKeyboardHeld(); }, 1s)) {
      log_ << "kill: the keyboard is still held" << std::endl;
    }
    start();
  } else if (!e2e::waitFor([&] { return corrects(); })) {
    ++counts_.lettersOff;
    log_ << "kill: nothing is corrected afterwards" << std::endl;
    session_.stopKivra();
    start();
  }
}

void Soak::checkWordsAround(const std::vector<std::string>& words, std::size_t firstSafe) {
  const auto shownWords = wordsOf(screen_.window(screen_.focused()).text());
  counts_.words += static_cast<int>(words.size());
  for (std::size_t fromEnd = 1; fromEnd <= words.size(); ++fromEnd) {
    const auto index = words.size() - fromEnd;
    const auto& word = words[index];
    const auto got = fromEnd <= shownWords.size() ? shownWords[shownWords.size() - fromEnd] : "";
    if (got == word) continue;
    const auto keys = keysOf(word);
    if (got == keys || got == inRussian(keys)) {
      ++counts_.wholeWords;
    } else if (index < firstSafe) {
      ++counts_.cutWords;
    } else {
      counts_.lettersOff += static_cast<int>(word.size());
      log_ << "kill: \"" << got << "\" instead of \"" << word << "\"" << std::endl;
    }
  }
}

}  // namespace kivra::soak
