#include "layout/word_fixes.h"

#include <algorithm>
#include <span>
#include <string>

#include "layout/edit_distance.h"
#include "support/text.h"

namespace kivra {

namespace {

/// Shift on the first two keystrokes and on no other; Caps Lock is not recorded and does not count.
bool startsWithTwoCapitals(std::span<const Keystroke> word) {
  return word.size() >= 3 && word[0].shift && word[1].shift &&
         std::none_of(word.begin() + 2, word.end(), [](const Keystroke& key) { return key.shift; });
}

constexpr std::size_t shortestCorrectedWord = 4;

std::size_t largestAcceptedDistance(std::string_view typed) {
  return text::characterCount(typed) < 7 ? 1 : 2;
}

}  // namespace

bool WordFixes::apply(const FinishedWord& word) {
  const auto reading = read(word.word, word.from);
  const auto isWord = !reading.core.empty() && text::isAllLetters(reading.core);
  if (!questions_.ask(Question::letters, isWord, reading.core)) return false;
  return fixDoubleCapital(word) || correctTypo(word, reading);
}

WordReading WordFixes::read(const Word& word, const Layout& layout) const {
  return settings_.extendedRules() ? WordReading::withoutMarks(word, layout)
                                   : WordReading::whole(word, layout);
}

std::optional<Word> WordFixes::withoutSecondCapital(const Word& word, const Layout& layout) const {
  const auto reading = read(word, layout);
  if (!settings_.autoFixDoubleCapitals() ||
      !startsWithTwoCapitals(std::span(word).subspan(reading.first, reading.count))) {
    return std::nullopt;
  }
  auto fixed = word;
  fixed[reading.first + 1].shift = false;
  return fixed;
}

bool WordFixes::fixDoubleCapital(const FinishedWord& word) {
  if (!settings_.autoFixDoubleCapitals()) return false;
  const auto fixed = withoutSecondCapital(word.word, word.from);
  if (!questions_.ask(Question::twoCapitals, fixed.has_value(), word.typed)) return false;
  changer_.change(UndoStack::ActionKind::doubleCapital, word.typed,
                  {.deletes = word.word.size(), .words = {{*fixed, word.trigger}}},
                  {.deletes = word.word.size() + 1, .words = {{word.word, word.trigger}}});
  return true;
}

bool WordFixes::correctTypo(const FinishedWord& word, const WordReading& reading) {
  const auto& [keys, trigger, from, to, whole] = word;
  const auto& typed = reading.core;
  if (!settings_.autoCorrectTypos() ||
      !questions_.ask(Question::longEnough, reading.count >= shortestCorrectedWord, typed) ||
      reading.after.starts_with('\'') ||  // "goin'"
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
  const auto mended = reading.before + fixed + reading.after;
  changer_.change(UndoStack::ActionKind::correct, whole,
                  {.deletes = keys.size(), .text = mended, .words = {{Word{}, trigger}}},
                  {.deletes = text::characterCount(mended) + 1, .words = {{keys, trigger}}});
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
