#include "layout/word_fixes.h"

#include <algorithm>
#include <string>

#include "layout/edit_distance.h"
#include "support/text.h"

namespace kivra {

namespace {

/// Shift on the first two keystrokes and on no other; Caps Lock is not recorded and does not count.
bool startsWithTwoCapitals(const Word& word) {
  return word.size() >= 3 && word[0].shift && word[1].shift &&
         std::none_of(word.begin() + 2, word.end(), [](const Keystroke& key) { return key.shift; });
}

constexpr std::size_t shortestCorrectedWord = 4;

std::size_t largestAcceptedDistance(std::string_view typed) {
  return text::characterCount(typed) < 7 ? 1 : 2;
}

}  // namespace

bool WordFixes::apply(const FinishedWord& word) {
  if (!questions_.ask(Question::letters, text::isAllLetters(word.typed), word.typed)) return false;
  return fixDoubleCapital(word) || correctTypo(word);
}

bool WordFixes::fixDoubleCapital(const FinishedWord& word) {
  if (!settings_.autoFixDoubleCapitals() ||
      !questions_.ask(Question::twoCapitals, startsWithTwoCapitals(word.word), word.typed)) {
    return false;
  }
  auto fixed = word.word;
  fixed[1].shift = false;
  changer_.change(UndoStack::ActionKind::doubleCapital, word.typed,
                  {.deletes = word.word.size(), .words = {{fixed, word.trigger}}},
                  {.deletes = word.word.size() + 1, .words = {{word.word, word.trigger}}});
  return true;
}

bool WordFixes::correctTypo(const FinishedWord& word) {
  const auto& [keys, trigger, from, to, typed] = word;
  if (!settings_.autoCorrectTypos() ||
      !questions_.ask(Question::longEnough, keys.size() >= shortestCorrectedWord, typed) ||
      questions_.ask(Question::wordHere, validator_.isValid(typed, from.language()), typed)) {
    return false;
  }
  const auto guess = validator_.correction(typed, from.language());
  const auto fixed = matchCase(typed, guess.value_or(typed));
  if (!questions_.ask(Question::guess, fixed != typed, fixed)) return false;
  const auto fixedLowered = text::lowercased(fixed);
  const auto distance = editDistance(text::lowercased(typed), fixedLowered);
  if (!questions_.ask(Question::close, distance <= largestAcceptedDistance(typed), fixed,
                      distance) ||
      questions_.ask(Question::learned, exceptions_.contains(fixedLowered), fixedLowered)) {
    return false;
  }
  changer_.change(UndoStack::ActionKind::correct, typed,
                  {.deletes = keys.size(), .text = fixed, .words = {{Word{}, trigger}}},
                  {.deletes = text::characterCount(fixed) + 1, .words = {{keys, trigger}}});
  return true;
}

std::string matchCase(std::string_view typed, std::string_view guess) {
  const auto first = text::firstCharacter(guess);
  if (!text::isUppercase(text::firstCharacter(typed)) || !text::isLowercase(first)) {
    return std::string(guess);
  }
  return text::uppercased(first) + std::string(guess.substr(first.size()));
}

}  // namespace kivra
