#include "layout/layout_switcher.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "layout/word_reading.h"
#include "platform/events.h"
#include "support/text.h"

namespace kivra {

namespace {

/// A capitalised word of up to so many letters within a sentence is a name, an initial, a label:
/// "in C", "кенга и Ру".
constexpr std::size_t longestName = 2;

/// The words of one letter, in lower case.
bool isSingleLetterWord(std::string_view letter, std::string_view language) {
  constexpr std::array<std::string_view, 8> russian = {"а", "в", "и", "к", "о", "с", "у", "я"};
  constexpr std::array<std::string_view, 2> english = {"a", "i"};
  return language == "ru" ? std::ranges::find(russian, letter) != russian.end()
                          : std::ranges::find(english, letter) != english.end();
}

bool isOneLetter(std::string_view text) {
  return text::characterCount(text) == 1 && text::isAllLetters(text);
}

/// Whether an entry of the skip list, in lower case, stands for the identifier.
bool covers(std::string_view entry, std::string_view identifier) {
  if (entry.empty()) return false;
  if (!entry.ends_with('.')) return identifier == entry;
  return identifier.starts_with(entry) || identifier == entry.substr(0, entry.size() - 1);
}

bool isMark(const std::optional<Keystroke>& trigger, const KeycodeMap& map) {
  return trigger && map.isMark(trigger->keyCode, trigger->shift);
}

}  // namespace

LayoutSwitcher::LayoutSwitcher(const Environment& environment)
    : map_(environment.map),
      validator_(environment.validator),
      settings_(environment.settings),
      replacements_(environment.replacements),
      exceptions_(environment.exceptions),
      output_(environment.output),
      workspace_(environment.workspace),
      changer_(std::make_shared<WordChanger>(environment.output, environment.undoStack,
                                             TypedSince(settings_, map_, workspace_))),
      replacementApplication_(replacements_, exceptions_, questions_, *changer_),
      fixes_(settings_, validator_, exceptions_, questions_, *changer_) {}

bool LayoutSwitcher::keyTyped(std::uint16_t keyCode, std::uint64_t flags) {
  const auto shift = (flags & event_flags::shift) != 0;
  if (settings_.extendedRules() && map_.isMark(keyCode, shift)) return endWord({{keyCode, shift}});
  changer_->since().typed(keyCode, shift);
  if (isMark(lastTrigger_, map_) && word_.empty()) lastTrigger_.reset();
  if (keyCode == key_codes::deleteKey) {
    if (!word_.empty()) word_.pop_back();
    return false;
  }
  if (map_.isWordKey(keyCode, shift)) {
    word_.push_back({keyCode, shift});
  } else {
    word_.clear();
    suppressAutoForCurrentWord_ = false;
  }
  return false;
}

bool LayoutSwitcher::wordBoundary(std::optional<std::uint16_t> trigger) {
  return endWord(trigger ? std::optional(Keystroke{*trigger}) : std::nullopt);
}

bool LayoutSwitcher::endWord(std::optional<Keystroke> trigger) {
  const auto suppressed = std::exchange(suppressAutoForCurrentWord_, false);
  const auto isDecided = trigger && !suppressed && !word_.empty();
  if (trigger) {
    // What comes right behind a mark ends the word with the mark.
    const auto endsBoth = word_.empty() && isMark(lastTrigger_, map_);
    if (endsBoth) {
      lastWord_.push_back(*lastTrigger_);
    } else {
      lastWord_ = word_;
    }
    lastTrigger_ = trigger;
  } else if (isMark(lastTrigger_, map_)) {
    lastTrigger_.reset();
  }
  word_.clear();
  if (isDecided && processWord(lastWord_, *trigger)) return true;
  if (!isDecided) history_.clear();
  if (trigger) {
    changer_->since().typed(trigger->keyCode, trigger->shift);
  } else {
    changer_->since().lose();
  }
  return false;
}

bool LayoutSwitcher::isSkippedApp() const {
  const auto identifier = workspace_.frontmostBundleIdentifier();
  if (!identifier) return false;
  const auto lowered = text::lowercased(*identifier);
  return std::ranges::any_of(settings_.skipBundleIDs(), [&](const std::string& entry) {
    return covers(text::lowercased(entry), lowered);
  });
}

bool LayoutSwitcher::processWord(const Word& word, Keystroke trigger) {
  if (map_.russian() == nullptr || map_.english() == nullptr) return false;
  const auto language = map_.currentLanguage();
  if ((language != "ru" && language != "en") || isSkippedApp()) return false;
  const auto isRussian = language == "ru";
  const auto& from = isRussian ? *map_.russian() : *map_.english();
  const auto& to = isRussian ? *map_.english() : *map_.russian();
  const FinishedWord finished{word, trigger, from, to, KeycodeMap::text(word, from)};
  if (finished.typed.empty()) return false;
  if (workspace_.isSecureEventInputEnabled() ||
      questions_.ask(Question::secret, WordValidator::looksLikeSecret(finished.typed),
                     finished.typed)) {
    history_.clear();
    return false;
  }
  if (replacementApplication_.apply(finished, history_)) {
    history_.clear();
    return true;
  }
  const auto isChanged = decide(finished);
  remember({word, trigger});
  return isChanged;
}

void LayoutSwitcher::remember(const HistoryEntry& entry) {
  history_.push_back(entry);
  const auto limit = std::max<std::size_t>(1, replacements_.maxWords());
  if (history_.size() > limit) {
    history_.erase(history_.begin(), history_.end() - static_cast<std::ptrdiff_t>(limit));
  }
}

bool LayoutSwitcher::decide(const FinishedWord& word) {
  if (!questions_.ask(Question::automatic, settings_.autoSwitchEnabled())) return false;
  if (questions_.ask(Question::learned, isException(word), text::lowercased(word.typed))) {
    return false;
  }
  if (settings_.extendedRules() && word.word.size() <= longestName && word.word.front().shift &&
      questions_.ask(Question::nameHere, isAmongWords(word), word.typed)) {
    return false;
  }
  const auto converted = KeycodeMap::text(word.word, word.to);
  if (word.word.size() == 1) return switchShortWord(word, converted);
  return switchLongWord(word, converted) || fixes_.apply(word);
}

bool LayoutSwitcher::isAmongWords(const FinishedWord& word) const {
  if (history_.empty() || history_.back().trigger != Keystroke{key_codes::space}) return false;
  const auto before = WordReading::withoutMarks(history_.back().word, word.from);
  const auto language = word.from.language();
  return before.after.empty() && (isSingleLetterWord(text::lowercased(before.core), language) ||
                                  validator_.isValid(before.core, language));
}

bool LayoutSwitcher::switchShortWord(const FinishedWord& word, const std::string& converted) {
  // Before a mark it is an initial.
  if (isMark(word.trigger, map_) || !isOneLetter(word.typed) ||
      !questions_.ask(Question::lettersThere, isOneLetter(converted), converted)) {
    return false;
  }
  if (questions_.ask(Question::letterHere,
                     isSingleLetterWord(text::lowercased(word.typed), word.from.language()),
                     word.typed)) {
    return false;
  }
  if (!questions_.ask(Question::letterThere,
                      isSingleLetterWord(text::lowercased(converted), word.to.language()),
                      converted)) {
    return false;
  }
  switchLayout(word, word.word);
  return true;
}

bool LayoutSwitcher::switchLongWord(const FinishedWord& word, const std::string& converted) {
  if (settings_.extendedRules()) return switchPunctuatedWord(word);
  const auto& [keys, trigger, from, to, typed] = word;
  if (!questions_.ask(Question::lettersThere, text::isAllLetters(converted), converted) ||
      questions_.ask(Question::wordHere, validator_.isValid(typed, from.language()), typed) ||
      !questions_.ask(Question::wordThere, validator_.isValid(converted, to.language()),
                      converted)) {
    return false;
  }
  switchLayout(word, word.word);
  return true;
}

bool LayoutSwitcher::switchPunctuatedWord(const FinishedWord& word) {
  const auto mended = fixes_.withoutSecondCapital(word.word, word.to).value_or(word.word);
  const auto to = WordReading::withoutMarks(mended, word.to);
  const auto from = WordReading::withoutMarks(mended, word.from);
  const auto isValidAsTyped =
      validator_.isValid(KeycodeMap::text(mended, word.from), word.from.language()) ||
      (from.isWord(word.from) && validator_.isValid(from.core, word.from.language()));
  if (questions_.ask(Question::wordHere, isValidAsTyped, from.core) ||
      !questions_.ask(Question::lettersThere, to.isWord(word.to), to.core) ||
      !questions_.ask(Question::wordThere, validator_.isValid(to.core, word.to.language()),
                      to.core)) {
    return false;
  }
  switchLayout(word, mended);
  return true;
}

bool LayoutSwitcher::isException(const FinishedWord& word) const {
  if (exceptions_.contains(text::lowercased(word.typed))) return true;
  return settings_.extendedRules() && exceptions_.contains(text::lowercased(
                                          WordReading::withoutMarks(word.word, word.from).core));
}

void LayoutSwitcher::switchLayout(const FinishedWord& word, const Word& retyped) {
  const auto count = word.word.size();
  changer_->change(
      UndoStack::ActionKind::layoutSwitch, word.typed,
      {.deletes = count, .select = &word.to, .words = {{retyped, word.trigger}}},
      {.deletes = count + 1, .select = &word.from, .words = {{word.word, word.trigger}}});
}

void LayoutSwitcher::manualSwitch() {
  if (map_.russian() == nullptr || map_.english() == nullptr) return;
  const auto language = map_.currentLanguage();
  if (!language) return;
  const auto& to = language == "ru" ? *map_.english() : *map_.russian();
  if (!changer_->since().characters().empty()) changer_->since().lose();
  if (!word_.empty()) {
    suppressAutoForCurrentWord_ = true;
    output_.postDeletes(word_.size());
    output_.selectLayout(to);
    output_.retype(word_);
  } else if (!lastWord_.empty() && lastTrigger_) {
    changer_->type(
        {.deletes = lastWord_.size() + 1, .select = &to, .words = {{lastWord_, *lastTrigger_}}});
  }
}

}  // namespace kivra
