// What is typed while the program, its guard or the one that watches over it is killed.

#include <signal.h>

#include <algorithm>
#include <array>
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

const char* nameOf(Victim victim) {
  constexpr std::array names = {"program", "guard", "watcher"};
  return names.at(static_cast<std::size_t>(victim));
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const Kill& kill) {
  out << nameOf(kill.victim) << ", signal " << kill.signal;
  if (kill.heldKey != 0) out << ", key " << int{kill.heldKey} << " down";
  return out;
}

std::vector<Kill> allKills(std::mt19937& random) {
  using namespace e2e::keys;
  constexpr std::array<std::uint8_t, 6> heldKeys = {0, 0, 0, backspace, shift, space};
  std::uniform_int_distribution<std::size_t> any(0, heldKeys.size() - 1);
  std::vector<Kill> kills;
  for (const auto victim : {Victim::program, Victim::guard, Victim::watcher}) {
    for (const auto signal : {SIGKILL, SIGSTOP, SIGSEGV}) {
      kills.push_back({victim, signal, heldKeys.at(any(random))});
    }
  }
  return kills;
}

void Soak::killInAllWays() {
  for (const auto& way : allKills(random_)) kill(way);
}

void Soak::kill(const Kill& kill) {
  std::string text;
  for (int i = 0; i < 3; ++i) text += any(lines()) + " ";
  const auto words = wordsOf(text);
  const auto killed = typeAround(kill, text);
  screen_.window(screen_.focused()).textWhenQuiet(1s);
  // The word that is under way when time is up is the last one that may be cut.
  const auto firstSafe = static_cast<std::size_t>(screen_.spacesUntil(killed + patience)) + 1;
  std::ostringstream name;
  name << kill;
  checkWordsAround(name.str(), words, firstSafe);
  counts_.longestSilenceAtKills = std::max(counts_.longestSilenceAtKills, screen_.longestSilence());
  checkKeyboard(name.str());
  mend(kill);
  ++counts_.kills;
}

/// Answers when the signal was sent: at any moment of the first line, or with the key down.
Clock::time_point Soak::typeAround(const Kill& kill, const std::string& text) {
  Clock::time_point killed;
  const auto strike = [&] {
    strikeAt(kill);
    killed = Clock::now();
  };
  const auto keys = keysOf(text);
  if (kill.heldKey == 0) {
    const auto delay = std::chrono::milliseconds(std::uniform_int_distribution(0, 2000)(random_));
    screen_.hands([&](e2e::Typist& typist) { typist.type(keys); },
                  [&] {
                    std::this_thread::sleep_for(delay);
                    strike();
                  });
    return killed;
  }
  const auto middle = std::uniform_int_distribution<std::size_t>(1, keys.size() / 3)(random_);
  screen_.hands([&](e2e::Typist& typist) {
    typist.type(keys.substr(0, middle));
    typist.press(kill.heldKey);
    strike();
    std::this_thread::sleep_for(2 * options_.pace);
    typist.release(kill.heldKey);
    typist.type(keys.substr(middle));
  });
  return killed;
}

pid_t Soak::processOf(Victim victim) {
  switch (victim) {
    case Victim::program:
      return session_.kivra().pid();
    case Victim::guard:
      return session_.guardPid();
    case Victim::watcher:
      return session_.watcherPid();
  }
  return 0;
}

void Soak::strikeAt(const Kill& kill) {
  if (const auto process = processOf(kill.victim); process > 0) ::kill(process, kill.signal);
}

void Soak::mend(const Kill& kill) {
  if (kill.victim == Victim::program) {
    restart();
  } else {
    if (kill.signal == SIGSTOP) {
      if (const auto process = processOf(kill.victim); process > 0) ::kill(process, SIGCONT);
    }
    if (!e2e::waitFor([&] { return corrects(); })) {
      ++counts_.lettersOff;
      log_ << kill << ": nothing is corrected afterwards" << std::endl;
      restart();
    }
  }
  constexpr int running = 3;  // program, watcher, guard
  if (e2e::waitFor([&] { return processes().processes == running; }, patience)) return;
  ++counts_.leftBehind;
  log_ << kill << ": " << processes().processes << " processes instead of " << running << std::endl;
}

void Soak::restart() {
  session_.kivra().signal(SIGKILL);
  session_.stopKivra();
  if (!e2e::waitFor([&] { return !session_.isKeyboardHeld(); }, patience)) {
    ++counts_.leftBehind;
    log_ << "the keyboard is still held after the program's end" << std::endl;
  }
  start();
}

void Soak::checkWordsAround(const std::string& kill, const std::vector<std::string>& words,
                            std::size_t firstSafe) {
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
      ++counts_.lettersOff;
      log_ << kill << ": word " << index << " is \"" << got << "\" instead of \"" << word
           << "\"; the first that counts is " << firstSafe << std::endl;
    }
  }
}

}  // namespace kivra::soak
