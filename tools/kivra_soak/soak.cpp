#include "soak.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

#include "kivra_session.h"
#include "support/text.h"

namespace kivra::soak {

using namespace std::chrono_literals;

namespace {

constexpr std::uint8_t numLock = 77;
constexpr std::uint8_t keypadOne = 87;

/// The characters in which two texts differ, from the first difference to the last.
int difference(const std::string& got, const std::string& wanted) {
  const auto gotCharacters = text::characters(got);
  const auto wantedCharacters = text::characters(wanted);
  const auto shorter = std::min(gotCharacters.size(), wantedCharacters.size());
  std::size_t head = 0;
  while (head < shorter && gotCharacters[head] == wantedCharacters[head]) ++head;
  std::size_t tail = 0;
  while (tail < shorter - head &&
         gotCharacters.rbegin()[static_cast<std::ptrdiff_t>(tail)] ==
             wantedCharacters.rbegin()[static_cast<std::ptrdiff_t>(tail)]) {
    ++tail;
  }
  return static_cast<int>(std::max(gotCharacters.size(), wantedCharacters.size()) - head - tail);
}

}  // namespace

Soak::Soak(const Options& options, std::ostream& log)
    : options_(options),
      log_(log),
      random_(options.seed),
      session_({.xkbOptions = "grp:alt_shift_toggle", .server = {.kind = options.server}}) {
  screen_.typist().setHand(options_.pace, true);
  e2e::storeReplacement(session_, replacement().typed, replacement().meant);
  start();
}

void Soak::start() {
  // What was undone is left alone for good; a new start shall know nothing of it.
  session_.run({KIVRA_DEFAULTS, "delete", "kivra.exceptions"});
  undone_.clear();
  session_.startKivra();
  if (!e2e::waitFor([&] { return corrects(); }, 60s)) {
    throw std::runtime_error("Kivra corrects nothing: " + session_.kivraLog());
  }
}

bool Soak::corrects() {
  screen_.window(screen_.focused()).textWhenQuiet(50ms);
  screen_.clear();
  screen_.typist().selectGroup(0);
  type("ghbdtn hello ");
  const auto text = screen_.window(screen_.focused()).textAfter("привет hello ");
  resume();
  return text == "привет hello ";
}

void Soak::resume() {
  screen_.typist().selectGroup(0);
  isInRussian_ = false;
  screen_.clear();
  for (auto& text : expected_) text.clear();
}

void Soak::step() {
  using Step = void (Soak::*)();
  // As often as they stand here.
  static const std::vector<Step> steps = {
      &Soak::line,         &Soak::line,         &Soak::line,           &Soak::line,
      &Soak::line,         &Soak::slip,         &Soak::slip,           &Soak::replace,
      &Soak::capitals,     &Soak::digits,       &Soak::undo,           &Soak::undo,
      &Soak::switchByHand, &Soak::toggleLayout, &Soak::toggleLayout,   &Soak::changeWindow,
      &Soak::changeWindow, &Soak::clickInWord,  &Soak::leaveWordBehind};
  constexpr int stepsBetweenKills = 12;
  if (options_.kills && std::uniform_int_distribution(1, stepsBetweenKills)(random_) == 1) {
    kill(any(allKills(random_)));
  } else {
    (this->*any(steps))();
  }
}

std::string Soak::shown(const std::string& word) const {
  return isInRussian_ ? inRussian(keysOf(word)) : keysOf(word);
}

void Soak::expect(const std::string& text) {
  std::istringstream stream(text);
  for (std::string word; stream >> word;) {
    ++counts_.words;
    if (isWrongHere(word)) ++counts_.corrections;
    isInRussian_ = isRussian(word);
  }
  expectAsIs(text);
}

void Soak::check(const std::string& step) {
  for (std::size_t i = 0; i < Screen::windowCount; ++i) {
    const auto text = screen_.window(i).textAfter(expected_.at(i));
    if (text == expected_.at(i)) continue;
    counts_.lettersOff += difference(text, expected_.at(i));
    log_ << step << ": window " << i << " has \"" << text << "\" instead of \"" << expected_.at(i)
         << "\"" << std::endl;
  }
  const auto isOff = std::ranges::any_of(expected_, [&, i = 0](const std::string& text) mutable {
    return screen_.window(static_cast<std::size_t>(i++)).text() != text;
  });
  counts_.longestSilence = std::max(counts_.longestSilence, screen_.longestSilence());
  checkKeyboard(step);
  screen_.clear();
  for (auto& text : expected_) text.clear();
  if (isOff) resume();
}

void Soak::checkKeyboard(const std::string& step) {
  auto& typist = screen_.typist();
  // The last key has gone up by now, but its release may still be on its way.
  const auto isClean = [&] { return !typist.isAnyKeyDown() && typist.locks() == 0; };
  if (e2e::waitFor(isClean, 1s)) return;
  ++counts_.keysHeld;
  log_ << step << ": " << (typist.isAnyKeyDown() ? "a key is down" : "a lock is on") << std::endl;
}

void Soak::line() {
  const auto& text = any(lines());
  type(keysOf(text) + " ");
  expect(text + " ");
  check("line");
}

void Soak::slip() {
  const auto& mend = any(slips());
  const std::string before = isRussian(mend.meant) ? "привет" : "hello";
  type(keysOf(before + " " + mend.typed) + " ");
  expect(before + " ");
  ++counts_.corrections;
  expect(mend.meant + " ");
  check("slip");
}

void Soak::replace() {
  const auto& word = any(words());
  type(replacement().typed + " " + keysOf(word) + " ");
  ++counts_.words;
  ++counts_.corrections;
  expectAsIs(replacement().meant + " ");
  expect(word + " ");
  check("replacement");
}

void Soak::capitals() {
  const auto& word = any(words());
  screen_.hands([&](e2e::Typist& typist) {
    typist.tap(e2e::keys::capsLock);
    typist.type(keysOf(word) + " ");
    typist.tap(e2e::keys::capsLock);
  });
  ++counts_.words;
  if (isWrongHere(word)) ++counts_.corrections;
  isInRussian_ = isRussian(word);
  expectAsIs(text::uppercased(word) + " ");
  check("Caps Lock");
}

void Soak::digits() {
  const auto& word = any(words());
  screen_.hands([&](e2e::Typist& typist) {
    typist.tap(numLock);
    typist.type(keysOf(word) + " ");
    typist.tap(keypadOne);
    typist.type(" ");
    typist.tap(numLock);
  });
  expect(word + " ");
  expectAsIs("1 ");
  check("Num Lock");
}

void Soak::undo() {
  const auto& word = any(undoneWords());
  const auto asTyped = shown(word);
  if (!isWrongHere(word) || undone_.contains(asTyped)) {
    type(keysOf(word) + " ");
    expectAsIs(asTyped + " ");
  } else {
    screen_.hands([&](e2e::Typist& typist) {
      typist.type(keysOf(word) + " ");
      typist.tap(e2e::keys::shift);
      typist.tap(e2e::keys::shift);
    });
    undone_.insert(asTyped);
    ++counts_.corrections;
    expectAsIs(asTyped + " ");
  }
  ++counts_.words;
  check("undo");
}

void Soak::switchByHand() {
  const auto& word = any(words());
  const auto asTyped = shown(word);
  screen_.hands([&](e2e::Typist& typist) {
    typist.type(keysOf(word));
    typist.tap(e2e::keys::pause);
    typist.type(" ");
  });
  ++counts_.words;
  ++counts_.corrections;
  isInRussian_ = !isInRussian_;
  expectAsIs(shown(word) + " ");
  check("manual switch");
}

void Soak::toggleLayout() {
  screen_.hands([](e2e::Typist& typist) { typist.chord({e2e::keys::alt, e2e::keys::shift}); });
  isInRussian_ = !isInRussian_;
  line();
}

void Soak::changeWindow() {
  screen_.focus(1 - screen_.focused());
  line();
}

/// The Space that comes to the other window ends no word there.
void Soak::leaveWordBehind() {
  const auto& word = any(words());
  type(keysOf(word));
  expectAsIs(shown(word));
  screen_.window(screen_.focused()).textAfter(expected_[screen_.focused()]);
  screen_.focus(1 - screen_.focused());
  type(" ");
  expectAsIs(" ");
  ++counts_.words;
  check("word left behind");
}

void Soak::clickInWord() {
  const auto& word = any(words());
  type(keysOf(word));
  screen_.click();
  type(" ");
  expectAsIs(shown(word) + " ");
  ++counts_.words;
  check("click");
}

}  // namespace kivra::soak
